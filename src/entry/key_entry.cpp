#include "key_entry.h"
