#include "index.h"
#include "pager.h"

namespace jet {

namespace {

/// Entries that are looked through in all for rows whose keys are not where they should be.
constexpr std::size_t mostSearched = 5'000'000;

} // namespace

bool Index::standsOn(const Path& path, ByteView entry) const {
    const Step& step = path.steps[path.size - 1];
    const IndexPage leaf = read(step.page);
    return step.at != leaf.end() && leaf.equals(step.at, entry);
}

/// The entry of a row, whatever its key; empty when there is none.
std::vector<std::uint8_t> Index::entryOf(RowPointer row) {
    std::vector<std::uint8_t> entry;
    Path path;
    descend({}, path);
    std::uint32_t number = path.back().page;
    for (std::uint32_t visited = 0; number != 0 && visited <= m_pager.pageCount(); ++visited) {
        const IndexPage page = read(number);
        for (std::size_t at = page.begin(); at < page.end(); at = page.after(at)) {
            if (++m_searched > mostSearched)
                m_pager.view(m_data.root).fail(0, "an index does not fit its rows");
            if (page.row(at) != row) continue;
            page.entry(at, entry);
            return entry;
        }
        number = page.next();
    }
    return entry;
}

void Index::remove(ByteView key, RowPointer row) {
    std::vector<std::uint8_t> entry = makeEntry(key, row);
    Path path;
    descend(entry, path);
    if (!standsOn(path, entry)) {
        // Another writer may have encoded the key in another way.
        entry = entryOf(row);
        descend(entry, path);
        if (entry.empty() || !standsOn(path, entry))
            m_pager.view(path.back().page).fail(0, "a row is missing in the index");
    }
    const std::uint32_t number = path.back().page;
    const IndexPage leaf = read(number);
    const std::size_t at = path.back().at;
    const bool wasLast = leaf.after(at) == leaf.end();
    m_lastWanted.clear();
    eraseEntry(m_pager.edit(number), m_pager.layout(), leaf, at);
    if (path.size == 1) return;
    if (read(number).empty()) {
        removePage(path, path.size - 1);
        collapseRoot();
        fixSeparators(entry, false);
    } else if (wasLast) {
        fixSeparators(entry, false);
    }
}

/// Takes an empty page out of its level and its parent.
void Index::removePage(Path& path, std::size_t level) {
    m_last.size = 0;
    const std::uint32_t number = path.steps[level].page;
    const IndexPage page = read(number);
    const std::uint32_t previous = page.previous();
    const std::uint32_t next = page.next();
    if (previous != 0) editOwn(previous).set32(m_pager.layout().nextAt, next);
    if (next != 0) editOwn(next).set32(m_pager.layout().previousAt, previous);
    m_map.remove(number);
    m_pager.release(number);
    // Without the last of the lowest nodes, the node before it gets the tail.
    if (level + 2 == path.size && path.steps[level].edge && previous != 0) makeTail(previous);
    removeChild(path, level - 1);
}

/// Drops the reference that was followed from the node at `level`.
void Index::removeChild(Path& path, std::size_t level) {
    const Step& step = path.steps[level];
    Edit edit = m_pager.edit(step.page);
    const IndexPage node(edit, m_pager.layout(), m_owner);
    if (!step.viaTail) {
        eraseEntry(edit, m_pager.layout(), node, step.at);
    } else {
        edit.set32(m_pager.layout().tailAt, 0);
        makeTail(step.page);
    }
    const IndexPage left = read(step.page);
    if (!left.empty()) return;
    if (left.tail() == 0 && level > 0)
        removePage(path, level);
    else if (left.tail() != 0 && level > 0)
        mergeTailNode(path, level);
}

/// The last child of a lowest node moves from its entry to the tail.
void Index::makeTail(std::uint32_t number) {
    Edit edit = editOwn(number);
    const IndexPage node(edit, m_pager.layout(), m_owner);
    if (node.leaf() || node.empty() || node.tail() != 0) return;
    const std::size_t at = node.before(node.end());
    edit.set32(m_pager.layout().tailAt, node.child(at));
    eraseEntry(edit, m_pager.layout(), node, at);
}

/// A node that has only its tail gives it to the node before it, whose last child gets the entry it lacks.
void Index::mergeTailNode(Path& path, std::size_t level) {
    const IndexPage node = read(path.steps[level].page);
    const std::uint32_t previous = node.previous();
    if (previous == 0) return;
    editOwn(previous).set32(m_pager.layout().tailAt, node.tail());
    m_pager.edit(node.number()).set32(m_pager.layout().tailAt, 0);
    editOwn(previous).set32(m_pager.layout().nextAt, 0);
    m_map.remove(node.number());
    m_pager.release(node.number());
    removeChild(path, level - 1);
}

void Index::collapseRoot() {
    m_last.size = 0;
    const Layout& layout = m_pager.layout();
    for (std::size_t levels = 0; levels < Path::most; ++levels) {
        Edit edit = m_pager.edit(m_data.root);
        const IndexPage root(edit, layout, m_owner);
        if (root.leaf()) return;
        std::uint32_t child = 0;
        if (root.empty())
            child = root.tail();
        else if (root.tail() == 0 && root.after(root.begin()) == root.end())
            child = root.child(root.begin());
        else
            return;
        if (child == 0) {
            initIndexPage(edit, layout, m_owner, true);
            return;
        }
        const View only = m_pager.view(child);
        (void)read(child);
        edit.setBytes(0, only.bytes());
        edit.set32(layout.previousAt, 0);
        edit.set32(layout.nextAt, 0);
        m_map.remove(child);
        m_pager.release(child);
    }
}

void Index::clear() {
    m_last.size = 0;
    for (std::uint32_t page : m_map.pages()) {
        if (page == m_data.root) continue;
        (void)read(page);
        m_pager.release(page);
    }
    m_map.clear();
    m_map.add(m_data.root);
    initIndexPage(m_pager.edit(m_data.root), m_pager.layout(), m_owner, true);
    m_data.entries = 0;
    m_data.keys = 0;
    m_edgeOpen = false;
}

} // namespace jet
