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
    std::vector<std::uint8_t> entry;
    makeEntry(key, row, entry);
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
    eraseEntry(edit(number), m_pager.layout(), leaf, at);
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
    const Step& step = path.steps[level];
    const IndexPage page = read(step.page);
    const std::uint32_t previous = page.previous();
    const std::uint32_t next = page.next();
    if (previous != 0) editOwn(previous).set32(m_pager.layout().nextAt, next);
    if (next != 0) editOwn(next).set32(m_pager.layout().previousAt, previous);
    giveBack(step.page);
    // Without the last of the lowest nodes, the node before it gets a tail, unless it has one.
    if (level + 2 == path.size && step.edge && previous != 0) makeTail(previous);
    removeChild(path, level - 1);
}

/// Drops the reference that was followed from the node at `level`.
void Index::removeChild(Path& path, std::size_t level) {
    const Step& step = path.steps[level];
    Edit page = edit(step.page);
    const IndexPage node(page, m_pager.layout(), m_owner);
    if (!step.viaTail) {
        eraseEntry(page, m_pager.layout(), node, step.at);
    } else {
        page.set32(m_pager.layout().tailAt, 0);
        makeTail(step.page);
    }
    const IndexPage left = read(step.page);
    if (!left.empty() || level == 0) return;
    if (left.tail() == 0)
        removePage(path, level);
    else
        settleTailNode(path, level);
}

/// The last child of a node moves from its entry to the tail.
void Index::makeTail(std::uint32_t number) {
    Edit page = editOwn(number);
    const IndexPage node(page, m_pager.layout(), m_owner);
    if (node.leaf() || node.empty() || node.tail() != 0) return;
    const std::size_t at = node.before(node.end());
    page.set32(m_pager.layout().tailAt, node.child(at));
    eraseEntry(page, m_pager.layout(), node, at);
}

/// A node that has only its tail. At the right edge the node before it takes the tail over if it has none;
/// elsewhere the child gets an entry.
void Index::settleTailNode(Path& path, std::size_t level) {
    const Layout& layout = m_pager.layout();
    const Step& step = path.steps[level];
    const IndexPage node = read(step.page);
    const std::uint32_t child = node.tail();
    if (step.edge) {
        const std::uint32_t previous = node.previous();
        if (previous == 0 || read(previous).leaf() || read(previous).tail() != 0) return;
        Edit before = editOwn(previous);
        before.set32(layout.tailAt, child);
        before.set32(layout.nextAt, 0);
        giveBack(step.page);
        removeChild(path, level - 1);
        return;
    }
    const std::vector<std::uint8_t> entry = withChild(lastEntryBelow(child), child);
    Edit page = edit(step.page);
    page.set32(layout.tailAt, 0);
    if (!insertEntry(page, layout, node, node.end(), entry))
        page.fail(freeSpaceAt, "an index entry is too long");
}

std::vector<std::uint8_t> Index::lastEntryBelow(std::uint32_t page) const {
    for (std::size_t depth = 0; depth < Path::most; ++depth) {
        const IndexPage here = read(page);
        if (here.leaf() && here.empty()) break;
        if (here.leaf()) {
            std::vector<std::uint8_t> entry;
            here.entry(here.before(here.end()), entry);
            return entry;
        }
        page = here.lastChild();
    }
    m_pager.view(page).fail(0, "an index has no entries where they are expected");
}

void Index::collapseRoot() {
    m_last.size = 0;
    const Layout& layout = m_pager.layout();
    for (std::size_t levels = 0; levels < Path::most; ++levels) {
        Edit page = edit(m_data.root);
        const IndexPage root(page, layout, m_owner);
        if (root.leaf()) return;
        std::uint32_t child = 0;
        if (root.empty())
            child = root.tail();
        else if (root.tail() == 0 && root.after(root.begin()) == root.end())
            child = root.child(root.begin());
        else
            return;
        if (child == 0) {
            initIndexPage(page, layout, m_owner, true);
            return;
        }
        const View only = m_pager.view(child);
        (void)read(child);
        page.setBytes(0, only.bytes());
        page.set32(layout.previousAt, 0);
        page.set32(layout.nextAt, 0);
        giveBack(child);
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
    initIndexPage(edit(m_data.root), m_pager.layout(), m_owner, true);
    m_data.entries = 0;
    m_data.keys = 0;
    m_edgeOpen = false;
}

} // namespace jet
