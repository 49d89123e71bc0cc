#include "pager.h"

#include "data_page.h"
#include "header.h"
#include "map_row.h"
#include "rc4.h"

#include <algorithm>

namespace jet {

namespace {

/// Bytes written at once.
constexpr std::size_t batchBytes = std::size_t{1} << 20;

bool looksAlive(const View& page) {
    const std::uint8_t kind = page.u8(0);
    return kind >= static_cast<std::uint8_t>(PageKind::Data) &&
           kind <= static_cast<std::uint8_t>(PageKind::UsageMap);
}

} // namespace

Pager::Pager(std::unique_ptr<File> file, OpenMode mode) : m_file(std::move(file)), m_mode(mode) {
    const std::uint64_t size = m_file->size();
    std::vector<std::uint8_t> start(std::min<std::uint64_t>(size, headerBytes));
    m_file->read(0, start);
    const Header header = readHeader(start);
    m_layout = &layoutOf(header.format);
    m_encodingKey = header.encodingKey;
    m_password = header.password;
    if (size > m_layout->mostBytes)
        throw Error(ErrorKind::NotADatabase, "The file is longer than a Jet database can be.");
    // A last page that is cut short is not there.
    m_filePages = static_cast<std::uint32_t>(size / m_layout->pageSize);
    m_pages.resize(m_filePages);
    if (m_filePages <= catalogPage) throw Error::corrupt(0, 0, "the file is too short");
}

Pager::Pager(std::unique_ptr<File> file, Format format)
    : m_file(std::move(file)), m_mode(OpenMode::ReadWrite), m_layout(&layoutOf(format)) {
    extend();
    extend();
    initDataPage(edit(freePagesPage), *m_layout, freePagesPage);
    for (int map = 0; map < 2; ++map)
        appendRow(editRows(freePagesPage), *m_layout, emptyMapRow(*m_layout));
}

View Pager::load(std::uint32_t number) {
    if (number >= m_pages.size()) throw Error::corrupt(number, 0, "a page lies behind the end of the file");
    auto bytes = std::make_unique_for_overwrite<std::uint8_t[]>(m_layout->pageSize);
    const ByteSpan span(bytes.get(), m_layout->pageSize);
    m_file->read(std::uint64_t{number} * m_layout->pageSize, span);
    if (m_encodingKey != 0 && number != 0) rc4(span, m_encodingKey ^ number);
    m_pages[number].bytes = std::move(bytes);
    return {number, span};
}

void Pager::requireWritable() const {
    if (m_encodingKey != 0)
        throw Error(ErrorKind::EncodedWrite, "The database is encoded; it can be read but not changed.");
    if (m_mode == OpenMode::ReadOnly)
        throw Error(ErrorKind::ReadOnly, "The database was opened for reading only.");
}

Edit Pager::edit(std::uint32_t number) {
    (void)view(number);
    Page& page = m_pages[number];
    page.rowsInOrder = false;
    if (!page.changed) {
        requireWritable();
        page.changed = true;
        ++m_changedPages;
    }
    return {number, {page.bytes.get(), m_layout->pageSize}};
}

RowEdit Pager::editRows(std::uint32_t number) {
    const View rows = view(number);
    if (!m_pages[number].rowsInOrder) requireOrder(rows, *m_layout);
    const RowEdit page(edit(number));
    m_pages[number].rowsInOrder = true;
    return page;
}

void Pager::extend() {
    if (std::uint64_t{pageCount() + 1} * m_layout->pageSize > m_layout->mostBytes)
        throw Error(ErrorKind::Full, "The database would become larger than its format allows.");
    Page page{std::make_unique<std::uint8_t[]>(m_layout->pageSize), true, false};
    m_pages.push_back(std::move(page));
    ++m_changedPages;
}

std::uint32_t Pager::allocate(std::uint32_t lowest) {
    requireWritable();
    lowest = std::max(lowest, catalogPage + 1);
    while (const std::uint32_t taken = freePages().take(lowest)) {
        // A released page has another kind. One that is marked as free and looks alive may be either; what it
        // holds is not risked for four kilobytes.
        if (!looksAlive(view(taken))) {
            edit(taken).fill(0, m_layout->pageSize, 0);
            return taken;
        }
        freePages().doubt(taken);
    }
    const std::uint32_t number = pageCount();
    extend();
    freePages().use(number);
    return number;
}

void Pager::release(std::uint32_t number, PageKind mark) {
    edit(number).set8(0, static_cast<std::uint8_t>(mark));
    freePages().release(number);
}

void Pager::requireSound() const {
    if (m_spoiled)
        throw Error(ErrorKind::Corrupt, "A change was broken off half-way; nothing of it is written.");
}

void Pager::commit() {
    if (!changed()) return;
    requireWritable();
    requireSound();
    flush();
    m_file->beginReplace();
    try {
        write(*m_file);
        m_file->finishReplace();
    } catch (...) {
        m_file->abandonReplace();
        throw;
    }
    for (Page& page : m_pages)
        page.changed = false;
    m_changedPages = 0;
    m_filePages = pageCount();
}

void Pager::write(File& file) {
    const std::size_t pageSize = m_layout->pageSize;
    std::vector<std::uint8_t> batch;
    for (std::uint32_t number = 0; number < pageCount();) {
        if (!m_pages[number].changed) {
            const std::uint32_t first = number;
            while (number < pageCount() && !m_pages[number].changed)
                ++number;
            file.keep(std::uint64_t{first} * pageSize, std::uint64_t{number - first} * pageSize);
            continue;
        }
        batch.clear();
        for (; number < pageCount() && m_pages[number].changed && batch.size() < batchBytes; ++number)
            batch.insert(batch.end(), m_pages[number].bytes.get(), m_pages[number].bytes.get() + pageSize);
        file.append(batch);
    }
}

} // namespace jet
