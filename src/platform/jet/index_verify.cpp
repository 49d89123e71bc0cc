#include "index.h"
#include "pager.h"

namespace jet {

namespace {

constexpr int mostLevels = 24;

/// Walks the marked pages of a tree from the root down and passes over the subtrees between them, whose edges
/// must fit too.
class TouchedTree {
  public:
    TouchedTree(Pager& pager, std::uint32_t owner, std::uint32_t root)
        : m_pager(pager), m_owner(owner), m_root(root), m_marked(pager.pageCount()) {}

    void mark(std::uint32_t page);
    void check();

  private:
    [[nodiscard]] IndexPage read(std::uint32_t page) const {
        return {m_pager.view(page), m_pager.layout(), m_owner};
    }
    [[noreturn]] void fail(std::uint32_t page, const char* what) const { m_pager.view(page).fail(0, what); }
    [[nodiscard]] std::uint32_t edgeLeaf(std::uint32_t page, bool last) const;
    void visit(std::uint32_t page);
    void pass(std::uint32_t page);
    void joinNode(std::uint32_t before, const IndexPage& child) const;

    Pager& m_pager;
    std::uint32_t m_owner;
    std::uint32_t m_root;
    std::vector<bool> m_marked;
    std::uint32_t m_leaf = 0;         ///< the last one that was passed; 0 = none yet
    std::vector<std::uint8_t> m_last; ///< the last entry or separator that was passed
    std::vector<std::uint8_t> m_entry;
};

std::uint32_t TouchedTree::edgeLeaf(std::uint32_t page, bool last) const {
    for (int level = 0; level < mostLevels; ++level) {
        const IndexPage here = read(page);
        if (here.leaf()) return page;
        page = last || here.empty() ? here.lastChild() : here.child(here.begin());
    }
    fail(page, "an index is too deep");
}

/// Marks a page and all above it: those on the way that a search for its first entry takes.
void TouchedTree::mark(std::uint32_t page) {
    if (m_marked[page]) return;
    std::uint32_t keyed = page;
    for (int level = 0; level < mostLevels && read(keyed).empty() && read(keyed).tail() != 0; ++level)
        keyed = read(keyed).tail();
    const IndexPage first = read(keyed);
    if (first.empty()) { // a leaf that has no entry is found from the node that has it
        m_marked[m_root] = true;
        return;
    }
    first.entry(first.begin(), m_entry);
    std::uint32_t number = m_root;
    for (int level = 0; level < mostLevels; ++level) {
        m_marked[number] = true;
        if (number == page) return;
        const IndexPage here = read(number);
        if (here.leaf()) break;
        const std::size_t at = here.find(m_entry);
        number = at == here.end() ? here.lastChild() : here.child(at);
    }
    fail(page, "a page of an index is not where its entries are sought");
}

void TouchedTree::check() {
    visit(m_root);
    if (m_leaf != 0 && read(m_leaf).next() != 0) fail(m_leaf, "the last leaf of an index has a next one");
}

void TouchedTree::visit(std::uint32_t number) {
    const IndexPage page = read(number);
    if (page.leaf() || !m_marked[number]) {
        pass(number);
        return;
    }
    m_marked[number] = false; // a page that is met again is passed over, so that no circle is followed
    std::uint32_t before = 0;
    for (std::size_t at = page.begin(); at < page.end(); at = page.after(at)) {
        const std::uint32_t child = page.child(at);
        joinNode(before, read(child));
        before = child;
        visit(child);
        page.entry(at, m_entry);
        if (less(m_entry, m_last)) fail(number, "a separator of an index is less than what stands below it");
        m_last.swap(m_entry);
    }
    if (page.tail() == 0) return;
    joinNode(before, read(page.tail()));
    visit(page.tail());
}

/// Takes a whole subtree as it is: its first leaf follows the last one that was passed.
void TouchedTree::pass(std::uint32_t number) {
    const std::uint32_t leftmost = edgeLeaf(number, false);
    const IndexPage first = read(leftmost);
    if (first.previous() != m_leaf || (m_leaf != 0 && read(m_leaf).next() != leftmost))
        fail(leftmost, "a leaf of an index is not chained to its neighbour");
    if (!first.empty()) {
        first.entry(first.begin(), m_entry);
        if (m_leaf != 0 && !less(m_last, m_entry))
            fail(leftmost, "a leaf of an index does not begin behind the one before it");
    }
    m_leaf = edgeLeaf(number, true);
    const IndexPage last = read(m_leaf);
    if (!last.empty()) last.entry(last.before(last.end()), m_last);
}

/// Nodes are chained at least below one parent.
void TouchedTree::joinNode(std::uint32_t before, const IndexPage& child) const {
    if (before != 0 && (child.previous() != before || read(before).next() != child.number()))
        fail(child.number(), "a page of an index is not chained to its neighbour");
}

} // namespace

void Index::verify() {
    if (m_touched.empty()) return;
    TouchedTree tree(m_pager, m_owner, m_data.root);
    for (std::size_t page = 0; page < m_touched.size(); ++page)
        if (m_touched[page] && m_map.contains(static_cast<std::uint32_t>(page)))
            tree.mark(static_cast<std::uint32_t>(page));
    tree.check();
    m_touched.clear();
}

} // namespace jet
