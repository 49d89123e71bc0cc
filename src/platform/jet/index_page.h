#pragma once

#include "bytes.h"
#include "layout.h"

#include <vector>

namespace jet {

/// Bytes behind the key of an entry: the row pointer, and in nodes the child page.
constexpr std::size_t entryRowBytes = 4;
constexpr std::size_t entryChildBytes = 4;

/// What a node holds of a child: the last entry below it, then its page with the high byte first.
[[nodiscard]] std::vector<std::uint8_t> withChild(ByteView entry, std::uint32_t child);
/// The order of entries.
[[nodiscard]] bool less(ByteView a, ByteView b);

/// Whole entries, one after the other.
class EntryList {
  public:
    [[nodiscard]] std::size_t size() const { return m_ends.size(); }
    [[nodiscard]] ByteView operator[](std::size_t i) const {
        const std::size_t start = i == 0 ? 0 : m_ends[i - 1];
        return ByteView(m_bytes).subspan(start, m_ends[i] - start);
    }
    void add(ByteView head, ByteView rest) {
        putBytes(m_bytes, head);
        putBytes(m_bytes, rest);
        m_ends.push_back(m_bytes.size());
    }
    void add(ByteView entry) { add(entry, {}); }

  private:
    std::vector<std::uint8_t> m_bytes;
    std::vector<std::size_t> m_ends;
};

/// A page of an index, read. A position is the offset in the entry area at which the part of an entry behind
/// the common prefix starts: begin() for the first entry, end() behind the last one.
class IndexPage {
  public:
    /// Corrupt when it is no index page of `owner` or its head makes no sense.
    IndexPage(const View& page, const Layout& layout, std::uint32_t owner);

    [[nodiscard]] bool leaf() const { return m_leaf; }
    [[nodiscard]] std::uint32_t number() const { return m_page.page(); }
    [[nodiscard]] std::uint32_t previous() const { return m_page.u32(m_layout->previousAt); }
    [[nodiscard]] std::uint32_t next() const { return m_page.u32(m_layout->nextAt); }
    [[nodiscard]] std::uint32_t tail() const { return m_leaf ? 0 : m_page.u32(m_layout->tailAt); }
    [[nodiscard]] std::size_t prefixLength() const { return m_prefix; }
    [[nodiscard]] ByteView prefix() const { return m_entries.first(m_prefix); }

    [[nodiscard]] bool empty() const { return m_used == 0; }
    [[nodiscard]] std::size_t begin() const { return m_prefix; }
    [[nodiscard]] std::size_t end() const { return m_used; }
    /// The position behind the entry at `at`; Corrupt when the mask has no end for it.
    [[nodiscard]] std::size_t after(std::size_t at) const;
    /// The position of the entry before `at`, which is not begin().
    [[nodiscard]] std::size_t before(std::size_t at) const;
    /// What of the entry at `at` stands behind the prefix, the child page of a node included.
    [[nodiscard]] ByteView rest(std::size_t at) const { return m_entries.subspan(at, after(at) - at); }
    /// The whole entry without the child page.
    void entry(std::size_t at, std::vector<std::uint8_t>& into) const;
    [[nodiscard]] std::uint32_t child(std::size_t at) const;
    /// The tail, or the child of the last entry; Corrupt when the node has neither.
    [[nodiscard]] std::uint32_t lastChild() const;
    /// Bytes of the whole entry without the child page.
    [[nodiscard]] std::size_t length(std::size_t at) const { return m_prefix + rest(at).size() - m_trail; }
    [[nodiscard]] RowPointer row(std::size_t at) const;
    /// The entry at `at`, the child page aside, is exactly `entry`.
    [[nodiscard]] bool equals(std::size_t at, ByteView entry) const;
    /// The entry at `at` starts with `bytes`.
    [[nodiscard]] bool startsWith(std::size_t at, ByteView bytes) const;
    /// The position of the first entry that is not less than `wanted`.
    [[nodiscard]] std::size_t find(ByteView wanted) const;
    [[nodiscard]] EntryList entries() const;

  private:
    [[nodiscard]] std::size_t nextEnd(std::size_t from) const; ///< lowest end >= from
    [[nodiscard]] std::size_t lastEnd(std::size_t from) const; ///< highest end <= from, or 0

    View m_page;
    const Layout* m_layout;
    bool m_leaf;
    std::size_t m_prefix;
    std::size_t m_used;
    std::size_t m_trail; ///< bytes of the child page
    ByteView m_entries;
    ByteView m_mask;
};

void initIndexPage(Edit page, const Layout& layout, std::uint32_t owner, bool leaf);
/// Puts an entry (whole, with the child page in a node) at a position. False when it does not fit, or does
/// not share the page's prefix; then nothing is changed.
bool insertEntry(Edit page, const Layout& layout, const IndexPage& read, std::size_t at, ByteView entry);
void eraseEntry(Edit page, const Layout& layout, const IndexPage& read, std::size_t at);
/// Bytes that entries [from, to) take on a page with their longest common prefix.
[[nodiscard]] std::size_t packedSize(const EntryList& entries, std::size_t from, std::size_t to,
                                     std::size_t trail);
/// Writes entries [from, to), which fit, in place of what the page holds; the links stay.
void writeEntries(Edit page, const Layout& layout, const EntryList& entries, std::size_t from, std::size_t to,
                  std::size_t trail);

} // namespace jet
