// A library zol of other tables, as far as an assembly asks before it refuses it.

#include "bridge/zol_helpers.h"

unsigned ZOL_CALL zol_version() { return 0x090807; }
unsigned ZOL_CALL zol_model() { return 0; }
