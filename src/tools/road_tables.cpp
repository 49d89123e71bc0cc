#include "road_tables.h"

#include "basic/runtime_error.h"

#include <array>
#include <string_view>

namespace mdlTools {

namespace {

using FieldTable = std::array<std::string, lSectFieldCount + 1>;

FieldTable fieldNames;
FieldTable fieldTypes;

constexpr std::array<std::string_view, lSectFieldCount> names{
    "Chn",   "Grl",    "Frl",    "LRW",   "RRW",    "RCam",   "LG",    "RG",      "CSlp",  "FSlp",
    "SElev", "DrnDep", "DrnWid", "WC",    "LCOft",  "LCRL",   "RCOft", "RCRL",    "LFA",   "RFA",
    "LCA",   "RCA",    "LGA",    "RGA",   "Chk",    "RCamH",  "RCamW", "DrnTWid", "RGD",   "RGW",
    "RGIS",  "LGOS",   "RGOS",   "TKPer", "CamPer", "ShdPer", "LCam",  "LCamH",   "LCamW", "Rem",
    "RNum",  "Rem1",   "RNum1",  "Rem2",  "RNum2",  "LExCrW", "RExCrW"};

const std::string& entryOf(const FieldTable& table, int index) {
    if (index < 0 || index > lSectFieldCount) throw basic::RuntimeError(basic::SubscriptOutOfRange);
    return table[static_cast<std::size_t>(index)];
}

void setTypes(std::string_view code, std::initializer_list<std::size_t> indices) {
    for (std::size_t index : indices)
        fieldTypes[index] = code;
}

std::string_view columnType(std::string_view code) {
    if (code == "N") return " Single";
    if (code == "B") return " Byte";
    if (code == "T25") return " Text(25)";
    if (code == "T50") return " Text(50)";
    if (code == "T01") return " Text(1)";
    return {};
}

} // namespace

const std::string& LSectFieldName(int index) {
    return entryOf(fieldNames, index);
}

const std::string& LSectFieldType(int index) {
    return entryOf(fieldTypes, index);
}

void InitLSectFieldTable() {
    for (std::size_t i = 1; i <= names.size(); ++i) {
        fieldNames[i] = names[i - 1];
        fieldTypes[i] = "N";
    }
    setTypes("Y", {7, 8, 14, 25});
    setTypes("T25", {1, 40, 42, 44});
    setTypes("T50", {20});
    setTypes("T01", {11});
    setTypes("B", {34});
}

void AddLSectField(std::int16_t index) {
    std::string statement = "alter table LSect add " + LSectFieldName(index);
    statement += columnType(LSectFieldType(index));
    RoadLSect->Close();
    RoadDb->Execute(statement);
    RoadLSect = RoadDb->OpenRecordset("LSect");
}

} // namespace mdlTools
