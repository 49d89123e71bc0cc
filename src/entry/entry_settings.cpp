#include "entry_settings.h"
