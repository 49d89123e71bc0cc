#include "chainage.h"
