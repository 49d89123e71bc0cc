#include "index_page.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace jet {

namespace {

constexpr std::size_t longestPrefix = 255;
constexpr std::size_t wordBits = 64;

/// Bits of a mask, 64 at a time. The mask that is read goes on into the entries up to a whole number of
/// words, so bits behind the last entry mean nothing.
std::uint64_t loadWord(ByteView mask, std::size_t word) {
    std::uint64_t bits = 0;
    const std::uint8_t* from = mask.subspan(word * 8, 8).data();
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&bits, from, 8);
    } else {
        for (std::size_t i = 0; i < 8; ++i)
            bits |= std::uint64_t{from[i]} << (8 * i);
    }
    return bits;
}

/// Stores the bits of a word that belong to the mask itself, which is `length` bytes long.
void storeWord(ByteSpan mask, std::size_t length, std::size_t word, std::uint64_t bits) {
    const std::size_t at = word * 8;
    for (std::size_t i = 0; i < std::min<std::size_t>(8, length - at); ++i)
        mask[at + i] = static_cast<std::uint8_t>(bits >> (8 * i));
}

std::size_t wordBytes(std::size_t maskBytes) {
    return (maskBytes + 7) / 8 * 8;
}

std::size_t wordCount(ByteView mask) {
    return (mask.size() + 7) / 8;
}

/// Bits of `word` that lie at `from` or behind.
std::uint64_t notBelow(std::size_t word, std::size_t from) {
    if (from <= word * wordBits) return ~std::uint64_t{0};
    if (from >= (word + 1) * wordBits) return 0;
    return ~std::uint64_t{0} << from % wordBits;
}

void setBit(ByteSpan mask, std::size_t bit) {
    mask[bit / 8] = static_cast<std::uint8_t>(mask[bit / 8] | 1U << bit % 8);
}

/// Clears the bits from `from` on, in the words that hold those up to `to`.
void clearBits(ByteSpan mask, std::size_t length, std::size_t from, std::size_t to) {
    for (std::size_t word = from / wordBits; word <= std::min(to / wordBits, wordCount(mask) - 1); ++word) {
        const std::uint64_t bits = loadWord(mask, word) & ~notBelow(word, length * 8);
        if ((bits & notBelow(word, from)) != 0) storeWord(mask, length, word, bits & ~notBelow(word, from));
    }
}

/// Moves the bits at `from` and behind up by `by`.
void shiftUp(ByteSpan mask, std::size_t length, std::size_t from, std::size_t by) {
    const std::size_t words = by / wordBits;
    const std::size_t bits = by % wordBits;
    for (std::size_t word = wordCount(mask); word-- > from / wordBits;) {
        const auto source = [&](std::size_t i) {
            return loadWord(mask, i) & notBelow(i, from) & ~notBelow(i, length * 8);
        };
        std::uint64_t moved = 0;
        if (word >= words) {
            moved = source(word - words) << bits;
            if (bits != 0 && word > words) moved |= source(word - words - 1) >> (wordBits - bits);
        }
        storeWord(mask, length, word, (loadWord(mask, word) & ~notBelow(word, from)) | moved);
    }
}

/// Moves the bits at `from` and behind down by `by`, over the bits before them.
void shiftDown(ByteSpan mask, std::size_t length, std::size_t from, std::size_t by) {
    const std::size_t to = from - by;
    const std::size_t words = by / wordBits;
    const std::size_t bits = by % wordBits;
    for (std::size_t word = to / wordBits; word < wordCount(mask); ++word) {
        const auto source = [&](std::size_t i) {
            return i < wordCount(mask) ? loadWord(mask, i) & notBelow(i, from) & ~notBelow(i, length * 8) : 0;
        };
        std::uint64_t moved = source(word + words) >> bits;
        if (bits != 0) moved |= source(word + words + 1) << (wordBits - bits);
        storeWord(mask, length, word, (loadWord(mask, word) & ~notBelow(word, to)) | moved);
    }
}

int compare(ByteView a, ByteView b) {
    const std::size_t common = std::min(a.size(), b.size());
    const int order = common == 0 ? 0 : std::memcmp(a.data(), b.data(), common);
    if (order != 0) return order;
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

std::size_t commonLength(ByteView a, ByteView b) {
    const std::size_t most = std::min(a.size(), b.size());
    return static_cast<std::size_t>(
        std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(most), b.begin()).first - a.begin());
}

/// The entries are in order, so what the first and the last share, all share.
std::size_t commonPrefix(const EntryList& entries, std::size_t from, std::size_t to, std::size_t trail) {
    if (to - from < 2) return 0;
    std::size_t prefix = std::min(commonLength(entries[from], entries[to - 1]), longestPrefix);
    for (std::size_t i = from; i < to; ++i)
        prefix = std::min(prefix, entries[i].size() - std::min(entries[i].size(), trail + entryRowBytes));
    return prefix;
}

void saveUsed(Edit& page, const Layout& layout, std::size_t used) {
    page.set16(freeSpaceAt, layout.entryRoom() - used);
}

void savePrefix(Edit& page, const Layout& layout, std::size_t prefix) {
    if (layout.prefixBytes == 1)
        page.set8(layout.prefixAt, static_cast<std::uint8_t>(prefix));
    else
        page.set16(layout.prefixAt, prefix);
}

} // namespace

std::vector<std::uint8_t> withChild(ByteView entry, std::uint32_t child) {
    std::vector<std::uint8_t> result(entry.begin(), entry.end());
    for (int shift = 24; shift >= 0; shift -= 8)
        put8(result, child >> shift & 0xFF);
    return result;
}

bool less(ByteView a, ByteView b) {
    return compare(a, b) < 0;
}

IndexPage::IndexPage(const View& page, const Layout& layout, std::uint32_t owner)
    : m_page(page),
      m_layout(&layout),
      m_leaf(page.u8(0) == static_cast<std::uint8_t>(PageKind::IndexLeaf)),
      m_prefix(layout.prefixBytes == 1 ? page.u8(layout.prefixAt) : page.u16(layout.prefixAt)),
      m_trail(m_leaf ? 0 : entryChildBytes),
      m_entries(page.bytes(layout.entriesAt, layout.entryRoom())),
      m_mask(page.bytes(layout.maskAt, wordBytes(layout.maskBytes))) {
    if (!m_leaf && page.u8(0) != static_cast<std::uint8_t>(PageKind::IndexNode))
        page.fail(0, "an index page is expected");
    if (page.u32(ownerAt) != owner) page.fail(ownerAt, "an index page belongs to another table");
    const std::uint16_t free = page.u16(freeSpaceAt);
    if (free > layout.entryRoom()) page.fail(freeSpaceAt, "an index page has an impossible length");
    m_used = layout.entryRoom() - free;
    if (m_used == 0)
        m_prefix = 0;
    else if (m_prefix != 0 && (m_prefix >= m_used || nextEnd(1) <= m_prefix))
        page.fail(layout.prefixAt, "an index page has an impossible prefix");
}

std::size_t IndexPage::nextEnd(std::size_t from) const {
    for (std::size_t word = from / wordBits; word < wordCount(m_mask); ++word) {
        const std::uint64_t bits = loadWord(m_mask, word) & notBelow(word, from);
        if (bits == 0) continue;
        const std::size_t end = word * wordBits + static_cast<std::size_t>(std::countr_zero(bits));
        if (end <= m_used) return end;
        break;
    }
    m_page.fail(m_layout->maskAt, "an entry of an index has no end");
}

std::size_t IndexPage::lastEnd(std::size_t from) const {
    for (std::size_t word = from / wordBits + 1; word-- > 0;) {
        const std::uint64_t bits = loadWord(m_mask, word) & ~notBelow(word, from + 1);
        if (bits != 0) return word * wordBits + 63 - static_cast<std::size_t>(std::countl_zero(bits));
    }
    return 0;
}

std::size_t IndexPage::after(std::size_t at) const {
    return nextEnd(at + 1);
}

std::size_t IndexPage::before(std::size_t at) const {
    return std::max(m_prefix, lastEnd(at - 1));
}

void IndexPage::entry(std::size_t at, std::vector<std::uint8_t>& into) const {
    into.assign(m_entries.begin(), m_entries.begin() + static_cast<std::ptrdiff_t>(m_prefix));
    const ByteView part = rest(at);
    if (part.size() < m_trail) m_page.fail(m_layout->entriesAt + at, "an entry of an index is too short");
    putBytes(into, part.first(part.size() - m_trail));
}

std::uint32_t IndexPage::child(std::size_t at) const {
    const std::size_t end = after(at);
    if (m_trail == 0 || end < entryChildBytes)
        m_page.fail(m_layout->entriesAt + at, "an entry of an index is too short");
    const ByteView bytes = m_entries.subspan(end - entryChildBytes, entryChildBytes);
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 |
           bytes[3];
}

std::uint32_t IndexPage::lastChild() const {
    if (tail() != 0) return tail();
    if (empty()) m_page.fail(freeSpaceAt, "an index node has no children");
    return child(before(end()));
}

RowPointer IndexPage::row(std::size_t at) const {
    std::array<std::uint8_t, entryRowBytes> bytes{};
    // The pointer may reach into the prefix.
    const ByteView part = rest(at);
    const std::size_t length = m_prefix + part.size();
    if (length < entryRowBytes + m_trail)
        m_page.fail(m_layout->entriesAt + at, "an entry of an index is too short");
    for (std::size_t i = 0; i < entryRowBytes; ++i) {
        const std::size_t place = length - m_trail - entryRowBytes + i;
        bytes[i] = place < m_prefix ? m_entries[place] : part[place - m_prefix];
    }
    return {std::uint32_t{bytes[0]} << 16 | std::uint32_t{bytes[1]} << 8 | bytes[2], bytes[3]};
}

bool IndexPage::startsWith(std::size_t at, ByteView bytes) const {
    const ByteView part = rest(at);
    const std::size_t shared = std::min(bytes.size(), m_prefix);
    return m_prefix + part.size() - std::min(part.size(), m_trail) >= bytes.size() &&
           compare(m_entries.first(shared), bytes.first(shared)) == 0 &&
           compare(part.first(bytes.size() - shared), bytes.subspan(shared)) == 0;
}

bool IndexPage::equals(std::size_t at, ByteView entry) const {
    return m_prefix + rest(at).size() == entry.size() + m_trail && startsWith(at, entry);
}

std::size_t IndexPage::find(ByteView wanted) const {
    const std::size_t shared = std::min(wanted.size(), m_prefix);
    const int order = compare(wanted.first(shared), m_entries.first(shared));
    if (order < 0 || (order == 0 && wanted.size() < m_prefix)) return begin();
    if (order > 0) return end();
    const ByteView part = wanted.subspan(m_prefix);
    std::size_t low = begin();
    std::size_t high = end();
    while (low < high) {
        const std::size_t middle = low + (high - low) / 2;
        const std::size_t start = std::max(low, lastEnd(middle));
        const std::size_t stop = nextEnd(middle + 1);
        if (stop - start < m_trail)
            m_page.fail(m_layout->entriesAt + start, "an entry of an index is too short");
        if (compare(m_entries.subspan(start, stop - start - m_trail), part) < 0)
            low = stop;
        else
            high = start;
    }
    return low;
}

EntryList IndexPage::entries() const {
    EntryList list;
    for (std::size_t at = begin(); at < end(); at = after(at))
        list.add(prefix(), rest(at));
    return list;
}

void initIndexPage(Edit page, const Layout& layout, std::uint32_t owner, bool leaf) {
    page.fill(0, layout.pageSize, 0);
    page.set8(0, static_cast<std::uint8_t>(leaf ? PageKind::IndexLeaf : PageKind::IndexNode));
    page.set8(1, 1);
    page.set32(ownerAt, owner);
    page.set8(layout.nodeByteAt, leaf ? 0 : 1);
    saveUsed(page, layout, 0);
}

bool insertEntry(Edit page, const Layout& layout, const IndexPage& read, std::size_t at, ByteView entry) {
    const std::size_t prefix = read.prefixLength();
    if (entry.size() <= prefix || compare(entry.first(prefix), read.prefix()) != 0) return false;
    const ByteView part = entry.subspan(prefix);
    const std::size_t used = read.end();
    if (used + part.size() > layout.entryRoom()) return false;
    page.move(layout.entriesAt + at, layout.entriesAt + at + part.size(), used - at);
    page.setBytes(layout.entriesAt + at, part);
    const ByteSpan mask = page.room(layout.maskAt, wordBytes(layout.maskBytes));
    if (at < used)
        shiftUp(mask, layout.maskBytes, at + 1, part.size());
    else
        clearBits(mask, layout.maskBytes, used + 1, used + part.size()); // left-over bits of other writers
    setBit(mask, at + part.size());
    saveUsed(page, layout, used + part.size());
    return true;
}

void eraseEntry(Edit page, const Layout& layout, const IndexPage& read, std::size_t at) {
    const std::size_t stop = read.after(at);
    const std::size_t used = read.end();
    std::size_t left = used - (stop - at);
    if (at == read.begin() && stop == used) {
        page.fill(layout.maskAt, layout.maskBytes, 0);
        page.fill(layout.entriesAt, used, 0);
        savePrefix(page, layout, 0);
        left = 0;
    } else {
        page.move(layout.entriesAt + stop, layout.entriesAt + at, used - stop);
        page.fill(layout.entriesAt + left, used - left, 0);
        shiftDown(page.room(layout.maskAt, wordBytes(layout.maskBytes)), layout.maskBytes, stop + 1,
                  stop - at);
    }
    saveUsed(page, layout, left);
}

std::size_t packedSize(const EntryList& entries, std::size_t from, std::size_t to, std::size_t trail) {
    const std::size_t prefix = commonPrefix(entries, from, to, trail);
    std::size_t size = prefix;
    for (std::size_t i = from; i < to; ++i)
        size += entries[i].size() - prefix;
    return size;
}

void writeEntries(Edit page, const Layout& layout, const EntryList& entries, std::size_t from, std::size_t to,
                  std::size_t trail) {
    const std::size_t prefix = commonPrefix(entries, from, to, trail);
    page.fill(layout.maskAt, layout.maskBytes, 0);
    page.fill(layout.entriesAt, layout.entryRoom(), 0);
    const ByteSpan mask = page.room(layout.maskAt, layout.maskBytes);
    std::size_t at = 0;
    for (std::size_t i = from; i < to; ++i) {
        const ByteView part = entries[i].subspan(i == from ? 0 : prefix);
        page.setBytes(layout.entriesAt + at, part);
        at += part.size();
        setBit(mask, at);
    }
    savePrefix(page, layout, prefix);
    saveUsed(page, layout, at);
}

} // namespace jet
