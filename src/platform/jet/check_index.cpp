#include "check_table.h"
#include "index_page.h"

#include <algorithm>
#include <set>

namespace jet {

namespace {

constexpr std::size_t rowBytes = 4;   ///< behind the key of an entry
constexpr std::size_t childBytes = 4; ///< behind that in nodes
constexpr int mostLevels = 24;
constexpr std::size_t mostMissing = 10; ///< faults listed of one index

std::uint32_t bigEndian(ByteView bytes) {
    std::uint32_t value = 0;
    for (std::uint8_t byte : bytes)
        value = value << 8 | byte;
    return value;
}

std::string rowOf(ByteView entry) {
    const ByteView row = entry.last(rowBytes);
    return "page " + std::to_string(bigEndian(row.first(3))) + " row " + std::to_string(row[3]);
}

ByteView keyOf(ByteView entry) {
    return entry.first(entry.size() - rowBytes);
}

/// Entries are in the order of key and row together. Where one key starts another, as that of an empty Binary
/// does, those with equal keys do not stand side by side.
void sortByKey(std::vector<ByteView>& entries) {
    const auto before = [](ByteView a, ByteView b) { return less(keyOf(a), keyOf(b)); };
    if (!std::ranges::is_sorted(entries, before)) std::ranges::stable_sort(entries, before);
}

/// Walks the tree from the root, page by page, and gathers the entries of its leaves.
class TreeWalk {
  public:
    TreeWalk(Pager& pager, Faults& faults, std::uint32_t owner, std::string name)
        : m_pager(pager), m_faults(faults), m_owner(owner), m_name(std::move(name)) {}

    /// Pages that the tree may use.
    std::set<std::uint32_t> unused;
    std::vector<Bytes> entries;

    void run(std::uint32_t root) {
        if (!visit(root, 0)) return;
        checkChain(m_leaves, true);
        for (const auto& [depth, nodes] : m_nodes)
            checkChain(nodes, false);
        for (std::uint32_t page : unused)
            m_faults.add(page, "in the map of " + m_name + ", but not in its tree");
    }

  private:
    /// A page's entries, whole, without the child pages.
    struct Read {
        bool leaf = true;
        std::vector<Bytes> entries;
        std::vector<std::uint32_t> children; ///< of a node; the tail comes last
    };
    struct Linked {
        std::uint32_t page, parent, previous, next;
    };

    void fault(std::uint32_t page, const std::string& what) { m_faults.add(page, m_name + ": " + what); }

    Read read(std::uint32_t number);
    void checkHead(const View& page, bool leaf, int depth);
    bool visit(std::uint32_t number, int depth, std::uint32_t parent = 0);
    bool visitChildren(std::uint32_t number, const Read& node, int depth);
    void checkChain(const std::vector<Linked>& pages, bool leaves);

    Pager& m_pager;
    Faults& m_faults;
    std::uint32_t m_owner;
    std::string m_name;
    int m_leafDepth = -1;
    std::vector<Linked> m_leaves;
    std::map<int, std::vector<Linked>> m_nodes; ///< by depth
};

TreeWalk::Read TreeWalk::read(std::uint32_t number) {
    const Layout& layout = m_pager.layout();
    const View page = m_pager.view(number);
    Read result;
    result.leaf = page.u8(0) == static_cast<std::uint8_t>(PageKind::IndexLeaf);
    const std::size_t prefix = layout.prefixBytes == 1 ? page.u8(layout.prefixAt) : page.u16(layout.prefixAt);
    const std::size_t least = rowBytes + (result.leaf ? 0 : childBytes);
    const ByteView area = page.bytes(layout.entriesAt, layout.entryRoom());
    std::size_t start = 0;
    for (std::size_t end = 1; end < layout.maskBytes * std::size_t{8}; ++end) {
        if ((page.u8(layout.maskAt + end / 8) >> end % 8 & 1) == 0) continue;
        if (end > area.size()) page.fail(layout.maskAt, "an index entry lies outside");
        Bytes entry;
        if (start > 0) putBytes(entry, area.first(prefix));
        putBytes(entry, area.subspan(start, end - start));
        if (entry.size() < least || (start == 0 && entry.size() <= prefix))
            page.fail(layout.entriesAt + start, "an index entry is too short");
        if (!result.leaf) {
            result.children.push_back(bigEndian(ByteView(entry).last(childBytes)));
            entry.resize(entry.size() - childBytes);
        }
        result.entries.push_back(std::move(entry));
        start = end;
    }
    if (result.entries.empty() && prefix != 0) page.fail(layout.prefixAt, "an empty index page has a prefix");
    if ((page.u8(layout.maskAt) & 1) != 0) page.fail(layout.maskAt, "an index entry ends at its start");
    if (page.u16(freeSpaceAt) != area.size() - start) fault(number, "wrong count of free bytes");
    if (const std::uint32_t tail = page.u32(layout.tailAt); tail != 0) {
        if (result.leaf)
            fault(number, "a leaf has a tail");
        else
            result.children.push_back(tail);
    }
    return result;
}

void TreeWalk::checkHead(const View& page, bool leaf, int depth) {
    const Layout& layout = m_pager.layout();
    const auto kind = leaf ? PageKind::IndexLeaf : PageKind::IndexNode;
    if (page.u8(0) != static_cast<std::uint8_t>(kind) || page.u8(1) != 1)
        page.fail(0, "an index page is expected");
    if (page.u32(ownerAt) != m_owner) fault(page.page(), "belongs to another table");
    // Other programs write 0 on nodes; nobody reads it.
    if (m_faults.strict() && page.u8(layout.nodeByteAt) != (leaf ? 0 : 1))
        fault(page.page(), "wrong node mark");
    if (depth == 0 && (page.u32(layout.previousAt) != 0 || page.u32(layout.nextAt) != 0))
        fault(page.page(), "the root has neighbours");
}

bool TreeWalk::visit(std::uint32_t number, int depth, std::uint32_t parent) {
    if (unused.erase(number) == 0) {
        fault(number, "met twice, or not in the map of the index");
        return false;
    }
    const View page = m_pager.view(number);
    const Read content = read(number);
    checkHead(page, content.leaf, depth);
    const Linked links{number, parent, page.u32(m_pager.layout().previousAt),
                       page.u32(m_pager.layout().nextAt)};
    if (m_faults.strict() && depth > 0 && content.leaf && content.entries.empty())
        fault(number, "an empty leaf");
    if (!content.leaf) {
        m_nodes[depth].push_back(links);
        return visitChildren(number, content, depth);
    }
    m_leaves.push_back(links);
    if (m_leafDepth < 0) m_leafDepth = depth;
    if (m_leafDepth != depth) fault(number, "a leaf at another depth");
    for (const Bytes& entry : content.entries) {
        if (!entries.empty() && !less(entries.back(), entry)) fault(number, "entries are not in order");
        entries.push_back(entry);
    }
    return true;
}

/// A separator is the last entry below its child (never less), and less than what follows.
bool TreeWalk::visitChildren(std::uint32_t number, const Read& node, int depth) {
    if (depth >= mostLevels || node.children.empty()) {
        fault(number, node.children.empty() ? "a node without children" : "the tree is too deep");
        return false;
    }
    for (std::size_t i = 0; i < node.children.size(); ++i) {
        const std::size_t before = entries.size();
        if (!visit(node.children[i], depth + 1, number)) return false;
        if (i > 0 && entries.size() > before && !less(node.entries[i - 1], entries[before]))
            fault(number, "a separator is not less than what follows it");
        if (i >= node.entries.size() || entries.size() == before) continue;
        if (less(node.entries[i], entries.back()))
            fault(number, "a separator is less than the last entry below it");
        else if (m_faults.strict() && node.entries[i] != entries.back())
            fault(number, "a separator is greater than the last entry below it");
    }
    const bool overLeaves = m_leafDepth == depth + 1;
    if (m_faults.strict() && !overLeaves && node.children.size() > node.entries.size())
        fault(number, "a node over nodes has a tail");
    return true;
}

/// Leaves form one chain; nodes at least those of one parent.
void TreeWalk::checkChain(const std::vector<Linked>& pages, bool leaves) {
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const Linked& here = pages[i];
        const Linked none{0, 0, 0, 0};
        const Linked& before = i == 0 ? none : pages[i - 1];
        const Linked& after = i + 1 == pages.size() ? none : pages[i + 1];
        const auto right = [&](std::uint32_t link, const Linked& neighbour) {
            return link == neighbour.page || (link == 0 && !leaves && neighbour.parent != here.parent);
        };
        if (!right(here.previous, before) || !right(here.next, after)) fault(here.page, "wrong neighbours");
    }
}

class EntryCompare {
  public:
    EntryCompare(Faults& faults, std::uint32_t table, const std::string& name)
        : m_faults(faults), m_table(table), m_name(name) {}

    void run(const std::vector<Bytes>& stored, const std::vector<ExpectedEntry>& expected) {
        std::size_t i = 0;
        std::size_t k = 0;
        while (i < stored.size() || k < expected.size()) {
            if (k == expected.size() || (i < stored.size() && less(stored[i], expected[k].bytes)))
                report(stored[i++], " is in it with a key that the row does not have");
            else if (i == stored.size() || less(expected[k].bytes, stored[i]))
                report(expected[k++].bytes, " is not in it with its key");
            else
                ++i, ++k;
        }
    }

    void unique(const std::vector<ExpectedEntry>& expected) {
        std::vector<ByteView> keyed;
        for (const ExpectedEntry& entry : expected)
            if (!entry.allNull) keyed.emplace_back(entry.bytes);
        sortByKey(keyed);
        for (std::size_t i = 1; i < keyed.size(); ++i)
            if (std::ranges::equal(keyOf(keyed[i - 1]), keyOf(keyed[i])))
                report(keyed[i], " has the key of another row, but keys are unique");
    }

  private:
    void report(ByteView entry, const std::string& what) {
        if (++m_reported <= mostMissing)
            m_faults.add(m_table, m_name + ": " + rowOf(entry) + what);
        else if (m_reported == mostMissing + 1)
            m_faults.add(m_table, m_name + ": more rows are wrong");
    }

    Faults& m_faults;
    std::uint32_t m_table;
    const std::string& m_name;
    std::size_t m_reported = 0;
};

std::size_t differentKeys(const std::vector<Bytes>& entries) {
    std::vector<ByteView> keyed(entries.begin(), entries.end());
    sortByKey(keyed);
    std::size_t count = keyed.empty() ? 0 : 1;
    for (std::size_t i = 1; i < keyed.size(); ++i)
        count += std::ranges::equal(keyOf(keyed[i - 1]), keyOf(keyed[i])) ? 0 : 1;
    return count;
}

} // namespace

void checkIndex(Pager& pager, PageLedger& ledger, Faults& faults, const TableDef& def, std::size_t number,
                const std::string& name, std::vector<ExpectedEntry>& expected, bool known) {
    const IndexData& index = def.indexData[number];
    TreeWalk walk(pager, faults, def.page, name);
    for (std::uint32_t page : ledger.readMap(index.map, name))
        if (ledger.claim(page, name)) walk.unused.insert(page);
    if (!faults.guarded(name, [&] { walk.run(index.root); })) return;
    if (!known) {
        if (walk.entries.size() != expected.size())
            faults.add(def.page, name + ": not as many entries as rows");
        return;
    }
    std::ranges::sort(expected, [](const auto& a, const auto& b) { return a.bytes < b.bytes; });
    EntryCompare compare(faults, def.page, name);
    compare.run(walk.entries, expected);
    if ((index.flags & indexUnique) != 0) compare.unique(expected);
    if (faults.strict() && index.keys < differentKeys(walk.entries))
        faults.add(def.page, name + ": counts fewer keys than it has");
}

} // namespace jet
