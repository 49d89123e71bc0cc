#include "journal.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>
#include <utility>

namespace sheet {
namespace {

enum class Kind : char { Text, Colour, Inserted, Removed };

// An entry of a log: kind, row and column or marks, then a number (colour, count or length) and the old text.
struct Entry {
    Kind kind;
    std::uint8_t col; ///< or Marks
    std::int32_t row;
    std::uint32_t number;
};

void append(std::string& packed, const Entry& entry, std::string_view text = {}) {
    char bytes[sizeof entry];
    std::memcpy(bytes, &entry, sizeof entry);
    packed.append(bytes, sizeof entry).append(text);
}

Entry entryAt(const std::string& packed, std::size_t at) {
    Entry entry{};
    std::memcpy(&entry, packed.data() + at, sizeof entry);
    return entry;
}

std::size_t sizeOf(const Entry& entry) {
    return sizeof entry + (entry.kind == Kind::Text ? entry.number : 0);
}

std::string_view textAt(const std::string& packed, std::size_t at, const Entry& entry) {
    return std::string_view(packed).substr(at + sizeof entry, entry.number);
}

Marks marksOf(const Entry& entry) {
    return static_cast<Marks>(entry.col);
}

std::size_t bytesOf(const RemovedRows& removed, int cols) {
    std::size_t bytes = removed.colours.size() * sizeof(RemovedRows::Mark);
    for (const RowTexts& row : removed.texts) {
        bytes += sizeof row + 4 * sizeof(void*);
        for (int col = 0; col < cols; ++col)
            bytes += sizeof(std::string) + (row[col].capacity() > 15 ? row[col].capacity() : 0);
    }
    return bytes;
}

} // namespace

Standing Standing::of(const Book& book) {
    const Grid& grid = book.MSFG;
    return {grid.Row(),     grid.Col(),       grid.RowSel(),   grid.ColSel(),
            book.CurrentHI, book.LastReading, book.CurrentSide};
}

void Standing::restore(Book& book) const {
    Grid& grid = book.MSFG;
    const int last = grid.Rows() - 1;
    if (last < 1) return;
    grid.moveTo(std::min(row, last), col);
    if (rowSel != row || colSel != col) grid.setSelection(std::min(rowSel, last), colSel);
    book.CurrentHI = height;
    book.LastReading = lastReading;
    book.CurrentSide = side;
}

std::size_t Journal::Log::bytes() const {
    return packed.capacity() + rowBytes;
}

Journal::Journal(Book& book, std::size_t limit) : m_book(book), m_limit(limit) {
    book.MSFG.addListener(*this);
}

Journal::~Journal() {
    m_book.MSFG.removeListener(*this);
}

void Journal::begin(std::string_view name, Action action) {
    if (m_depth++ > 0) return;
    m_open = {std::string(name), {}, Standing::of(m_book), {}};
    m_heading = m_book.JobHeading;
    m_action = action;
    m_newBook = m_tooLarge = false;
}

bool Journal::end() {
    if (--m_depth > 0) return true;
    const bool newBook = std::exchange(m_newBook, false);
    const bool tooLarge = std::exchange(m_tooLarge, false);
    if (tooLarge) clear();
    const bool heading = m_heading != m_book.JobHeading;
    const bool grid = !m_open.log.empty() && !changesNothing(m_open.log);
    if (newBook || tooLarge || !grid) m_open.log = {};
    if (newBook || tooLarge || (!grid && !heading)) return !tooLarge;
    if (heading) m_open.heading = std::make_unique<std::pair<Heading, Heading>>(m_heading, m_book.JobHeading);
    m_open.after = Standing::of(m_book);
    for (const Step& step : m_undone)
        m_bytes -= step.bytes();
    m_undone.clear();
    const bool typing = m_action == Action::Typing && !heading;
    if (typing && m_typingGoesOn && !m_done.empty()) {
        Step joined = std::move(m_done.back());
        m_done.pop_back();
        m_bytes -= joined.bytes();
        joined.log.packed += m_open.log.packed;
        joined.after = m_open.after;
        m_open = std::move(joined);
    }
    push(m_done, std::exchange(m_open, {}));
    m_typingGoesOn = typing;
    ++m_made;
    return true;
}

bool Journal::takeBack() {
    if (m_newBook || m_tooLarge) return false;
    Log log = std::exchange(m_open.log, {});
    try {
        revert(log);
    } catch (...) {
        clear();
        throw;
    }
    m_open.before.restore(m_book);
    m_book.JobHeading = m_heading;
    return true;
}

bool Journal::undo() {
    return move(m_done, m_undone, true);
}

bool Journal::redo() {
    return move(m_undone, m_done, false);
}

bool Journal::move(std::deque<Step>& from, std::deque<Step>& to, bool back) {
    if (from.empty() || isOpen()) return false;
    Step step = std::move(from.back());
    from.pop_back();
    m_bytes -= step.bytes();
    try {
        revert(step.log);
    } catch (...) {
        clear(); // half a step stands in the grid, and no other step fits it
        throw;
    }
    (back ? step.before : step.after).restore(m_book);
    if (step.heading) m_book.JobHeading = back ? step.heading->first : step.heading->second;
    m_book.MSFG.setVisible(true);
    m_book.BookChanged = true;
    push(to, std::move(step));
    m_typingGoesOn = false;
    return true;
}

void Journal::clear() {
    m_done.clear();
    m_undone.clear();
    m_bytes = 0;
    m_typingGoesOn = false;
    ++m_version;
}

void Journal::push(std::deque<Step>& steps, Step step) {
    // Typing that goes on adds to its step at every key.
    if (std::string& packed = step.log.packed; packed.capacity() > 2 * packed.size() + 64)
        packed.shrink_to_fit();
    m_bytes += step.bytes();
    steps.push_back(std::move(step));
    ++m_version;
    fitLimit();
}

// The step made last is the last to go: what is farthest from where the user stands goes first.
void Journal::fitLimit() {
    while (m_bytes > m_limit && m_done.size() + m_undone.size() > 1) {
        std::deque<Step>& steps = m_done.empty() ? m_undone : m_done;
        m_bytes -= steps.front().bytes();
        steps.pop_front();
    }
}

bool Journal::changesNothing(const Log& log) const {
    std::unordered_set<std::uint64_t> seen;
    for (std::size_t at = 0; at < log.packed.size();) {
        const Entry entry = entryAt(log.packed, at);
        if (entry.kind == Kind::Inserted || entry.kind == Kind::Removed) return false;
        if (entry.row >= m_book.MSFG.Rows()) return false; // rows went after it
        const bool text = entry.kind == Kind::Text;
        const std::uint64_t cell = (std::uint64_t{static_cast<std::uint32_t>(entry.row)} << 9) |
                                   (std::uint64_t{entry.col} << 1) | text;
        // What stood there before the action is what the first of its changes replaced.
        const bool same = text ? m_book.MSFG.Text(entry.row, entry.col) == textAt(log.packed, at, entry)
                               : m_book.MSFG.CellBackColor(entry.row, entry.col) == Colour{entry.number};
        if (same)
            seen.insert(cell);
        else if (!seen.contains(cell))
            return false;
        at += sizeOf(entry);
    }
    return true;
}

/// Makes the changes of the log undone, the last one first. The log then holds how to make them again.
void Journal::revert(Log& log) {
    const Log old = std::exchange(log, {});
    std::vector<std::size_t> places;
    for (std::size_t at = 0; at < old.packed.size(); at += sizeOf(entryAt(old.packed, at)))
        places.push_back(at);
    Grid& grid = m_book.MSFG;
    std::size_t removal = old.removed.size();
    Log open = std::exchange(m_open.log, {});
    m_reverting = true;
    try {
        for (auto place = places.rbegin(); place != places.rend(); ++place) {
            const Entry entry = entryAt(old.packed, *place);
            switch (entry.kind) {
            case Kind::Text:
                grid.setText(entry.row, entry.col, std::string(textAt(old.packed, *place, entry)));
                break;
            case Kind::Colour:
                grid.setCellBackColor(entry.row, entry.col, Colour{entry.number});
                break;
            case Kind::Inserted:
                grid.removeRows(entry.row, static_cast<int>(entry.number), marksOf(entry));
                break;
            case Kind::Removed: {
                const RemovedRows& rows = old.removed[--removal];
                grid.insertRows(entry.row, rows.texts, marksOf(entry));
                for (const RemovedRows::Mark& mark : rows.colours)
                    grid.setCellBackColor(mark.row, mark.col, mark.colour);
                break;
            }
            }
        }
    } catch (...) {
        m_reverting = false;
        throw;
    }
    m_reverting = false;
    log = std::exchange(m_open.log, std::move(open));
}

template <typename Write>
void Journal::record(std::string_view name, Write&& write) {
    if (m_newBook || m_tooLarge) return;
    const bool alone = !m_reverting && !isOpen();
    if (alone) begin(name);
    write(m_open.log);
    if (!m_reverting && m_open.log.bytes() > m_limit) {
        m_tooLarge = true;
        m_open.log = {};
    }
    if (alone) end();
}

void Journal::textChanged(int row, int col, const std::string& before) {
    if (row == 0) return; // the header is no part of the book
    record("Change", [&](Log& log) {
        append(log.packed,
               {Kind::Text, static_cast<std::uint8_t>(col), row, static_cast<std::uint32_t>(before.size())},
               before);
    });
}

void Journal::colourChanged(int row, int col, Colour before) {
    record("Change", [&](Log& log) {
        append(log.packed, {Kind::Colour, static_cast<std::uint8_t>(col), row, before.rgb});
    });
}

void Journal::rowsInserted(int row, int count, Marks marks) {
    record("Change", [&](Log& log) {
        append(log.packed,
               {Kind::Inserted, static_cast<std::uint8_t>(marks), row, static_cast<std::uint32_t>(count)});
    });
}

void Journal::rowsRemoved(int row, const RemovedRows& before, Marks marks) {
    record("Change", [&](Log& log) {
        append(log.packed, {Kind::Removed, static_cast<std::uint8_t>(marks), row, 0});
        log.rowBytes += bytesOf(before, m_book.MSFG.Cols());
        log.removed.push_back(before);
    });
}

void Journal::cursorMoved() {
    const Grid& grid = m_book.MSFG;
    if (grid.Row() == m_row && grid.Col() == m_col) return;
    m_row = grid.Row();
    m_col = grid.Col();
    m_typingGoesOn = false;
}

void Journal::bookBegins() {
    clear();
    m_open.log = {};
    m_newBook = isOpen();
}

} // namespace sheet
