#include "table_stream.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tables {
namespace {

constexpr std::size_t pieceSize = std::size_t{64} << 10;
constexpr std::size_t mostMerged = 100'000;
constexpr std::size_t mostNames = 10'000; // sheets, notes

[[noreturn]] void garbled() {
    throw Unreadable("The reader of tables gave no table");
}

template <typename Number>
std::string_view digits(std::array<char, 32>& room, Number number) {
    return {room.data(), std::to_chars(room.data(), room.data() + room.size(), number).ptr};
}

template <typename Number>
Number numberOf(const std::string& text) {
    Number number{};
    const auto end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end) garbled();
    return number;
}

int within(const std::string& text, int least, int most) {
    const int number = numberOf<int>(text);
    if (number < least || number > most) garbled();
    return number;
}

/// How many fields a record has; -1 for a letter that is none.
int fieldsOf(char kind) {
    switch (kind) {
    case 'S':
    case 'T':
    case 'D':
    case 'R':
    case 'N':
    case 'F':
        return 1;
    case 'C':
    case 'M':
        return 4;
    case '.':
        return 0;
    default:
        return -1;
    }
}

} // namespace

std::string columnName(int column) {
    std::string name;
    for (; column > 0; column = (column - 1) / 26)
        name.insert(name.begin(), static_cast<char>('A' + (column - 1) % 26));
    return name;
}

void Writer::field(std::string_view text) {
    if (text.size() > longestText) {
        std::size_t end = longestText;
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
            --end; // between characters
        text = text.substr(0, end);
    }
    for (;;) {
        const std::size_t nul = text.find('\0');
        m_bytes += text.substr(0, nul);
        if (nul == std::string_view::npos) break;
        text.remove_prefix(nul + 1);
    }
    m_bytes += '\0';
    if (m_bytes.size() >= pieceSize) flush();
}

void Writer::count(std::string_view text) {
    m_text += std::min(text.size(), longestText);
    if (m_text > mostText) throw Unreadable("The sheet holds more than 256 MB of text");
}

void Writer::flush() {
    m_put(m_bytes);
    m_bytes.clear();
}

void Writer::sheet(std::string_view name) {
    count(name);
    m_bytes += 'S';
    field(name);
}

void Writer::chosen(std::size_t sheet) {
    std::array<char, 32> room{};
    m_bytes += 'T';
    field(digits(room, sheet));
}

void Writer::separator(char character) {
    m_bytes += 'D';
    field({&character, 1});
}

void Writer::cell(int row, int column, const Cell& cell) {
    if (row > mostRows) throw Unreadable("The sheet has more than 1,048,576 rows");
    if (column > mostColumns) {
        m_beyond += cell.kind != CellKind::Empty;
        return;
    }
    if (++m_cells > mostCells) throw Unreadable("The sheet has more than 4,000,000 cells with content");
    std::array<char, 32> room{};
    if (row < 1 || row < m_row || (row == m_row && column <= m_column))
        throw Unreadable("Cell " + columnName(column) + std::to_string(row) + " comes twice or too late");
    count(cell.shown);
    m_column = column;
    if (row != m_row) {
        m_bytes += 'R';
        field(digits(room, row));
        m_row = row;
    }
    m_bytes += 'C';
    field(digits(room, column));
    field(digits(room, static_cast<int>(cell.kind)));
    field(cell.kind == CellKind::Number ? digits(room, cell.number) : std::string_view{});
    m_cut += cell.shown.size() > longestText;
    field(cell.shown);
}

void Writer::merged(const Merged& cells) {
    if (++m_merged > mostMerged) return;
    std::array<char, 32> room{};
    m_bytes += 'M';
    for (const int number : {cells.firstRow, cells.firstCol, cells.lastRow, cells.lastCol})
        field(digits(room, number));
}

void Writer::note(std::string_view text) {
    count(text);
    m_bytes += 'N';
    field(text);
}

void Writer::refused(std::string_view reason) {
    m_bytes += 'F';
    field(reason);
    flush();
}

void Writer::end() {
    if (m_beyond > 0)
        note(std::to_string(m_beyond) + (m_beyond == 1 ? " cell" : " cells") +
             " right of column ZZ left out");
    if (m_cut > 0)
        note(std::to_string(m_cut) + (m_cut == 1 ? " text" : " texts") + " cut after 32,767 bytes");
    m_bytes += '.';
    flush();
}

void Collector::take(std::string_view piece) {
    while (!piece.empty()) {
        if (m_whole) garbled();
        if (m_kind == 0) {
            m_kind = piece.front();
            piece.remove_prefix(1);
            if (fieldsOf(m_kind) < 0) garbled();
        } else {
            const std::size_t nul = piece.find('\0');
            m_field += piece.substr(0, nul);
            if (m_field.size() > longestText) garbled();
            if (nul == std::string_view::npos) return;
            piece.remove_prefix(nul + 1);
            m_fields.push_back(std::move(m_field));
            m_field.clear();
        }
        if (m_fields.size() == static_cast<std::size_t>(fieldsOf(m_kind))) finishRecord();
    }
}

void Collector::finishRecord() {
    if (m_kind == 'S' || m_kind == 'C' || m_kind == 'N') m_text += m_fields.back().size();
    if (m_text > mostText) garbled();
    switch (m_kind) {
    case 'S':
        if (m_table.sheets.size() >= mostNames) garbled();
        m_table.sheets.push_back(std::move(m_fields[0]));
        break;
    case 'T':
        m_table.sheet = numberOf<std::size_t>(m_fields[0]);
        break;
    case 'D':
        if (m_fields[0].size() != 1) garbled();
        m_table.separator = m_fields[0].front();
        break;
    case 'R': {
        const int row =
            within(m_fields[0], m_table.rows.empty() ? 1 : m_table.rows.back().number + 1, mostRows);
        m_table.rows.push_back({row, {}});
        break;
    }
    case 'C': {
        if (m_table.rows.empty() || ++m_cells > mostCells) garbled();
        std::vector<Cell>& cells = m_table.rows.back().cells;
        const auto column = static_cast<std::size_t>(within(m_fields[0], 1, mostColumns));
        if (column <= cells.size()) garbled();
        cells.resize(column);
        Cell& cell = cells.back();
        cell.kind = static_cast<CellKind>(within(m_fields[1], 0, static_cast<int>(CellKind::NoValue)));
        if (cell.kind == CellKind::Number) cell.number = numberOf<double>(m_fields[2]);
        if (!std::isfinite(cell.number)) garbled();
        cell.shown = std::move(m_fields[3]);
        break;
    }
    case 'M':
        if (m_table.merged.size() >= mostMerged) garbled();
        m_table.merged.push_back({numberOf<int>(m_fields[0]), numberOf<int>(m_fields[1]),
                                  numberOf<int>(m_fields[2]), numberOf<int>(m_fields[3])});
        break;
    case 'N':
        if (m_table.notes.size() >= mostNames) garbled();
        m_table.notes.push_back(std::move(m_fields[0]));
        break;
    case 'F':
        throw Unreadable(m_fields[0]);
    default:
        if (m_table.sheet >= m_table.sheets.size()) garbled();
        m_whole = true;
    }
    m_kind = 0;
    m_fields.clear();
}

} // namespace tables
