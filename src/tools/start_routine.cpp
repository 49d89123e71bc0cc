#include "start_routine.h"

#include "road_tables.h"

namespace mdlTools {

void Main(const std::function<void()>& showFirstWindow) {
    InitLSectFieldTable();
    showFirstWindow();
}

} // namespace mdlTools
