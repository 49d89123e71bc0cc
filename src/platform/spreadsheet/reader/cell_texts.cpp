#include "cell_texts.h"

#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/beans/XPropertyState.hpp>
#include <com/sun/star/sheet/XCellRangeAddressable.hpp>
#include <com/sun/star/sheet/XCellRangeData.hpp>
#include <com/sun/star/text/XTextRange.hpp>
#include <com/sun/star/util/NumberFormat.hpp>

#include <algorithm>
#include <array>
#include <charconv>

namespace reader {

namespace beans = com::sun::star::beans;
namespace sheet = com::sun::star::sheet;
namespace table = com::sun::star::table;
namespace text = com::sun::star::text;
namespace uno = com::sun::star::uno;
namespace util = com::sun::star::util;
using spreadsheet::Row;

namespace {

constexpr int blockRows = 200;
constexpr std::array<int, 2> textColumns{0, 9}; // chainage and remark are taken as they are shown

std::string utf8(const rtl::OUString& from) {
    const rtl::OString bytes = rtl::OUStringToOString(from, RTL_TEXTENCODING_UTF8);
    std::string result(bytes.getStr(), static_cast<std::size_t>(bytes.getLength()));
    std::erase(result, '\0'); // it ends a field
    return result;
}

/// A number with up to 15 significant digits, as Basic puts it into a text: "12.5", "1E+15".
std::string numberText(double value) {
    if (value == 0) return "0"; // never "-0"
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::general, 15).ptr;
    std::string result(buffer.begin(), end);
    std::ranges::replace(result, 'e', 'E');
    return result;
}

bool isEmpty(const Row& row) {
    return std::ranges::all_of(row, [](const std::string& cell) { return cell.empty(); });
}

} // namespace

CellTexts::CellTexts(const FrontSheet& sheet) : m_sheet(sheet) {
    const uno::Reference<sheet::XCellRangeAddressable> whole(sheet.cells, uno::UNO_QUERY_THROW);
    m_lastRow = whole->getRangeAddress().EndRow;
}

std::optional<std::vector<Row>> CellTexts::nextBlock() {
    if (m_ended || m_row > m_lastRow) return std::nullopt;
    const int last = std::min(m_row + blockRows - 1, m_lastRow);
    const uno::Reference<sheet::XCellRangeData> range(
        m_sheet.cells->getCellRangeByPosition(0, m_row, spreadsheet::columnCount - 1, last),
        uno::UNO_QUERY_THROW);
    const uno::Sequence<uno::Sequence<uno::Any>> data = range->getDataArray();

    const auto count = static_cast<std::size_t>(data.getLength());
    std::vector<Row> rows(count);
    std::array<std::vector<bool>, spreadsheet::columnCount> isNumber;
    isNumber.fill(std::vector<bool>(count));
    for (std::size_t r = 0; r < count; ++r) {
        for (int column = 0; column < spreadsheet::columnCount; ++column) {
            const uno::Any& value = data[static_cast<sal_Int32>(r)][column];
            const auto c = static_cast<std::size_t>(column);
            rtl::OUString string;
            double number = 0;
            // What >>= answers is whether it could take a value out.
            // NOLINTBEGIN(bugprone-assignment-in-if-condition)
            if (value >>= string)
                rows[r][c] = utf8(string);
            else if (value >>= number) {
                rows[r][c] = numberText(number);
                isNumber[c][r] = true;
            } else
                rows[r][c] = shown(column, m_row + static_cast<int>(r)); // an error
            // NOLINTEND(bugprone-assignment-in-if-condition)
        }
        if (!isEmpty(rows[r])) continue;
        rows.resize(r);
        m_ended = true;
        break;
    }
    for (int column : textColumns)
        if (!rows.empty())
            showSpecialNumbers(column, isNumber[static_cast<std::size_t>(column)], rows, 0, rows.size() - 1);
    m_row = last + 1;
    return rows;
}

void CellTexts::showSpecialNumbers(int column, const std::vector<bool>& isNumber, std::vector<Row>& rows,
                                   std::size_t first, std::size_t last) {
    const auto from = isNumber.begin() + static_cast<std::ptrdiff_t>(first);
    const auto to = isNumber.begin() + static_cast<std::ptrdiff_t>(last) + 1;
    if (std::find(from, to, true) == to) return;
    const auto stretch = m_sheet.cells->getCellRangeByPosition(column, m_row + static_cast<int>(first),
                                                               column, m_row + static_cast<int>(last));
    const uno::Reference<beans::XPropertyState> state(stretch, uno::UNO_QUERY_THROW);
    const rtl::OUString property("NumberFormat");
    if (first < last && state->getPropertyState(property) == beans::PropertyState_AMBIGUOUS_VALUE) {
        const std::size_t middle = first + (last - first) / 2;
        showSpecialNumbers(column, isNumber, rows, first, middle);
        showSpecialNumbers(column, isNumber, rows, middle + 1, last);
        return;
    }
    sal_Int32 key = 0;
    uno::Reference<beans::XPropertySet>(stretch, uno::UNO_QUERY_THROW)->getPropertyValue(property) >>= key;
    const int type = formatType(key);
    const bool isMoment = (type & (util::NumberFormat::DATE | util::NumberFormat::TIME)) != 0;
    const bool isTruth = (type & util::NumberFormat::LOGICAL) != 0;
    if (!isMoment && !isTruth) return;
    for (std::size_t r = first; r <= last; ++r) {
        std::string& cell = rows[r][static_cast<std::size_t>(column)];
        if (!isNumber[r]) continue;
        if (isTruth)
            cell = cell == "0" ? "False" : "True";
        else
            cell = shown(column, m_row + static_cast<int>(r));
    }
}

std::string CellTexts::shown(int column, int row) const {
    const uno::Reference<text::XTextRange> cell(m_sheet.cells->getCellByPosition(column, row),
                                                uno::UNO_QUERY_THROW);
    return utf8(cell->getString());
}

int CellTexts::formatType(int key) {
    const auto known = m_formatTypes.find(key);
    if (known != m_formatTypes.end()) return known->second;
    sal_Int16 type = 0;
    m_sheet.formats->getByKey(key)->getPropertyValue("Type") >>= type;
    return m_formatTypes[key] = type;
}

} // namespace reader
