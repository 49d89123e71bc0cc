#include "safe_field_value.h"

namespace mdlTools {

dao::Value SafeFieldValue(const dao::Field& field) {
    dao::Value value = field.value();
    return dao::isNull(value) ? nullDefault(field.Type()) : value;
}

dao::Value nullDefault(dao::DataType type) {
    switch (type) {
    case dao::DataType::Boolean:
        return false;
    case dao::DataType::Byte:
    case dao::DataType::Integer:
    case dao::DataType::Long:
    case dao::DataType::Currency:
    case dao::DataType::Single:
    case dao::DataType::Double:
    case dao::DataType::LongBinary:
        return std::int32_t{0};
    case dao::DataType::Date:
        return std::string("01-01-2001"); // "01/01/01" in the form dd-MM-yyyy
    case dao::DataType::Text:
    case dao::DataType::Memo:
        return std::string();
    case dao::DataType::Binary:
    case dao::DataType::GUID:
    case dao::DataType::Numeric:
        break;
    }
    return dao::Null{};
}

} // namespace mdlTools
