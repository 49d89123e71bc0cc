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
        : m_pager(pager),
          m_owner(owner),
          m_root(root),
          m_marked(pager.pageCount()),
          m_covered(pager.pageCount()) {}

    void mark(std::uint32_t page);
    void check();

  private:
    [[nodiscard]] IndexPage read(std::uint32_t page) const {
        return {m_pager.view(page), m_pager.layout(), m_owner};
    }
    [[noreturn]] void fail(std::uint32_t page, const char* what) const { m_pager.view(page).fail(0, what); }
    [[nodiscard]] std::uint32_t edgeLeaf(std::uint32_t page, bool last) const;
    void markNode(const IndexPage& node);
    void visit(const IndexPage& page);
    void visitChild(std::uint32_t before, std::uint32_t child);
    void pass(const IndexPage& first, const IndexPage& last);

    Pager& m_pager;
    std::uint32_t m_owner;
    std::uint32_t m_root;
    std::vector<bool> m_marked;
    std::vector<bool> m_covered;      ///< children of marked pages, which are looked at with them
    std::uint32_t m_leaf = 0;         ///< the last one that was passed; 0 = none yet
    std::uint32_t m_next = 0;         ///< the one that it names as the next
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
    if (m_marked[page] || (m_covered[page] && read(page).leaf())) return;
    std::uint32_t keyed = page;
    for (int level = 0; level < mostLevels && read(keyed).empty() && read(keyed).tail() != 0; ++level)
        keyed = read(keyed).tail();
    const IndexPage first = read(keyed);
    if (first.empty()) { // a leaf that has no entry is found from the node that has it
        markNode(read(m_root));
        return;
    }
    first.entry(first.begin(), m_entry);
    std::uint32_t number = m_root;
    for (int level = 0; level < mostLevels; ++level) {
        const IndexPage here = read(number);
        markNode(here);
        if (number == page) return;
        if (here.leaf()) break;
        const std::size_t at = here.find(m_entry);
        number = at == here.end() ? here.lastChild() : here.child(at);
    }
    fail(page, "a page of an index is not where its entries are sought");
}

void TouchedTree::markNode(const IndexPage& node) {
    if (m_marked[node.number()]) return;
    m_marked[node.number()] = true;
    const auto cover = [this](std::uint32_t child) {
        if (child < m_covered.size()) m_covered[child] = true;
    };
    if (node.leaf()) return;
    for (std::size_t at = node.begin(); at < node.end(); at = node.after(at))
        cover(node.child(at));
    cover(node.tail());
}

void TouchedTree::check() {
    visit(read(m_root));
    if (m_next != 0) fail(m_leaf, "the last leaf of an index has a next one");
}

/// A page that is not marked is taken with all below it as it is.
void TouchedTree::visit(const IndexPage& page) {
    if (page.leaf()) return pass(page, page);
    if (!m_marked[page.number()])
        return pass(read(edgeLeaf(page.number(), false)), read(edgeLeaf(page.number(), true)));
    m_marked[page.number()] = false; // when met again it is passed over, so that no circle is followed
    std::uint32_t before = 0;
    for (std::size_t at = page.begin(); at < page.end(); at = page.after(at)) {
        const std::uint32_t child = page.child(at);
        visitChild(before, child);
        before = child;
        page.entry(at, m_entry);
        if (less(m_entry, m_last))
            fail(page.number(), "a separator of an index is less than what stands below it");
        m_last.swap(m_entry);
    }
    if (page.tail() != 0) visitChild(before, page.tail());
}

/// Nodes are chained at least below one parent; leaves are all.
void TouchedTree::visitChild(std::uint32_t before, std::uint32_t number) {
    const IndexPage child = read(number);
    if (before != 0 && !child.leaf() && (child.previous() != before || read(before).next() != number))
        fail(number, "a page of an index is not chained to its neighbour");
    visit(child);
}

/// Goes on from the last leaf that was passed to `first`, and stands on `last` then.
void TouchedTree::pass(const IndexPage& first, const IndexPage& last) {
    if (first.previous() != m_leaf || (m_leaf != 0 && m_next != first.number()))
        fail(first.number(), "a leaf of an index is not chained to its neighbour");
    if (!first.empty()) {
        first.entry(first.begin(), m_entry);
        if (m_leaf != 0 && !less(m_last, m_entry))
            fail(first.number(), "a leaf of an index does not begin behind the one before it");
    }
    m_leaf = last.number();
    m_next = last.next();
    if (!last.empty()) last.entry(last.before(last.end()), m_last);
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
