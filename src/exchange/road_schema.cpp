#include "road_schema.h"

#include "basic/strings.h"
#include "tools/road_tables.h"

namespace exchange {

namespace {

bool hasField(dao::Recordset& table, std::string_view name) {
    for (int i = 0; i < table.FieldCount(); ++i)
        if (basic::sameText(table.Fields(i).Name(), name)) return true;
    return false;
}

} // namespace

void upgradeLSect() {
    for (std::int16_t i = 1; i <= mdlTools::lSectFieldCount; ++i)
        if (!hasField(*mdlTools::RoadLSect, mdlTools::LSectFieldName(i))) mdlTools::AddLSectField(i);
}

} // namespace exchange
