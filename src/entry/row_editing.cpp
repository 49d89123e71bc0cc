#include "row_editing.h"
