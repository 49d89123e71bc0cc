#include "long_value.h"

#include "data_page.h"
#include "pager.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::size_t referenceBytes = 12;
constexpr std::uint32_t lengthMask = 0x3FFFFFFF;
constexpr std::uint32_t inlineKind = 0x80000000;
constexpr std::uint32_t singleKind = 0x40000000;
constexpr std::size_t longestInline = 64;
constexpr int mostTries = 8;

/// Calls `take` with every piece's place and data.
template <typename Take>
void eachPiece(Pager& pager, const View& reference, Take take) {
    const std::uint32_t head = reference.u32(0);
    const std::uint32_t length = head & lengthMask;
    if (length / pager.layout().pageSize > pager.pageCount())
        reference.fail(0, "a long value is longer than the file");
    RowPointer at = RowPointer::unpack(reference.u32(4));
    std::uint32_t read = 0;
    while (!at.none() && read < length) {
        const View page = pager.view(at.page);
        requireDataPage(page, longValueOwner);
        const View row = rowAt(page, pager.layout(), at.row);
        const bool single = (head & singleKind) != 0;
        const View data = single ? row : row.part(4, row.size() - std::min<std::size_t>(row.size(), 4));
        if (data.size() == 0 || data.size() > length - read)
            row.fail(0, "a piece of a long value has a wrong length");
        const RowPointer next = single ? RowPointer{} : RowPointer::unpack(row.u32(0));
        read += static_cast<std::uint32_t>(data.size());
        take(at, data);
        at = next;
    }
    if (read != length || !at.none()) reference.fail(0, "a long value has a wrong length");
}

} // namespace

void readLongValue(Pager& pager, const View& reference, Bytes& into) {
    into.clear();
    const std::uint32_t head = reference.u32(0);
    if ((head & inlineKind) != 0) {
        const ByteView data = reference.bytes(referenceBytes, head & lengthMask);
        into.assign(data.begin(), data.end());
        return;
    }
    eachPiece(pager, reference, [&](RowPointer, const View& data) { putBytes(into, data.bytes()); });
}

Bytes placeholderReference(std::size_t length) {
    return Bytes(referenceBytes + (length <= longestInline ? length : 0));
}

LongValues::LongValues(Pager& pager, const LongValueMaps& maps) : m_pager(pager), m_pages(pager, maps.pages) {
    if (!maps.freeSpace.none()) m_freeSpace.emplace(pager, maps.freeSpace);
}

Bytes LongValues::store(ByteView data) {
    const Layout& layout = m_pager.layout();
    if (data.size() > lengthMask) throw Error(ErrorKind::TextTooLong, "A long value is longer than 1 GB.");
    Bytes reference;
    const auto length = static_cast<std::uint32_t>(data.size());
    if (data.size() <= longestInline) {
        put32(reference, length | inlineKind);
        put32(reference, 0);
        put32(reference, 0);
        putBytes(reference, data);
        return reference;
    }
    RowPointer first;
    const bool single = data.size() <= layout.longValuePiece;
    if (single) {
        first = storePiece(data);
    } else {
        // The last piece comes first, so that each knows the one behind it.
        const std::size_t full = layout.longValuePiece - 4;
        for (std::size_t at = (data.size() - 1) / full * full;; at -= full) {
            Bytes piece;
            put32(piece, first.pack());
            putBytes(piece, data.subspan(at, std::min(full, data.size() - at)));
            first = storePiece(piece);
            if (at == 0) break;
        }
    }
    put32(reference, length | (single ? singleKind : 0));
    put32(reference, first.pack());
    put32(reference, 0);
    return reference;
}

RowPointer LongValues::storePiece(ByteView piece) {
    const Layout& layout = m_pager.layout();
    UsageMap& candidates = m_freeSpace ? *m_freeSpace : m_pages;
    std::uint32_t page = 0;
    std::uint32_t candidate = candidates.next(0);
    for (int tries = 0; page == 0 && candidate != 0 && tries < mostTries; ++tries) {
        const View view = m_pager.view(candidate);
        requireDataPage(view, longValueOwner);
        if (!m_pages.contains(candidate))
            view.fail(ownerAt, "a page of another column has its free space here");
        if (hasRoom(view, layout, piece.size()))
            page = candidate;
        else if (m_freeSpace && freeSpace(view, layout) < layout.pageSize / 20)
            m_freeSpace->remove(candidate);
        candidate = candidates.next(candidate + 1);
    }
    if (page == 0) {
        page = m_pager.allocate();
        initDataPage(m_pager.edit(page), layout, longValueOwner);
        m_pages.add(page);
        if (m_freeSpace) m_freeSpace->add(page);
    }
    const std::uint8_t row = appendRow(m_pager.editRows(page), layout, piece);
    return {page, row};
}

void LongValues::release(const View& reference) {
    if ((reference.u32(0) & inlineKind) != 0) return;
    std::vector<RowPointer> pieces;
    eachPiece(m_pager, reference, [&](RowPointer at, const View&) { pieces.push_back(at); });
    for (RowPointer at : pieces) {
        const RowEdit page = m_pager.editRows(at.page);
        if (!m_pages.contains(at.page)) page.fail(0, "a long value lies on a page of another column");
        eraseRow(page, m_pager.layout(), at.row);
        if (isEmptyPage(page, m_pager.layout())) {
            m_pages.remove(at.page);
            if (m_freeSpace) m_freeSpace->remove(at.page);
            m_pager.release(at.page);
        } else if (m_freeSpace) {
            m_freeSpace->add(at.page);
        }
    }
}

void LongValues::clear() {
    for (std::uint32_t page : m_pages.pages()) {
        requireDataPage(m_pager.view(page), longValueOwner);
        m_pager.release(page);
    }
    m_pages.clear();
    if (m_freeSpace) m_freeSpace->clear();
}

} // namespace jet
