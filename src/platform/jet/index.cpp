#include "index.h"

#include "pager.h"

#include <algorithm>
#include <cstring>

namespace jet {

namespace {

/// Stands for the last separator of the upper nodes at the right edge while entries are being added: greater
/// than any entry (at most ten flag bytes FF and a row pointer).
const std::vector<std::uint8_t> openEdge(18, 0xFF);

} // namespace

/// What stands in a leaf for a row: its key, then page and slot, the page with its high byte first.
void Index::makeEntry(ByteView key, RowPointer row, std::vector<std::uint8_t>& entry) {
    entry.assign(key.begin(), key.end());
    for (int shift = 16; shift >= 0; shift -= 8)
        put8(entry, row.page >> shift & 0xFF);
    put8(entry, row.row);
}

Index::Index(Pager& pager, std::uint32_t owner, IndexData& data)
    : m_pager(pager), m_owner(owner), m_data(data), m_map(pager, data.map) {}

IndexPage Index::read(std::uint32_t page) const {
    return {m_pager.view(page), m_pager.layout(), m_owner};
}

/// The way to the leaf where `wanted` stands or belongs.
void Index::descend(ByteView wanted, Path& path) const {
    if (descendAgain(wanted, path)) return;
    path.size = 0;
    std::uint32_t number = m_data.root;
    bool edge = true;
    for (;;) {
        const IndexPage page = read(number);
        if (path.size == Path::most) m_pager.view(number).fail(0, "an index is too deep");
        std::size_t at = page.find(wanted);
        if (page.leaf()) {
            path.steps[path.size++] = {number, static_cast<std::uint32_t>(at), false, false, edge};
            m_last.take(path);
            m_lastWanted.assign(wanted.begin(), wanted.end());
            return;
        }
        const bool viaTail = at == page.end() && page.tail() != 0;
        const bool beyond = at == page.end() && !viaTail;
        if (beyond) {
            if (page.empty()) m_pager.view(number).fail(freeSpaceAt, "an index node has no children");
            at = page.before(at);
        }
        path.steps[path.size++] = {number, static_cast<std::uint32_t>(at), viaTail, beyond, edge};
        edge = edge && (viaTail || (page.tail() == 0 && page.after(at) == page.end()));
        number = viaTail ? page.tail() : page.child(at);
    }
}

/// Neighbouring keys are mostly wanted one after the other: the leaf of the last one is tried first. It is
/// the right one when `wanted` lies between its entries, or behind them and there is no leaf behind.
bool Index::descendAgain(ByteView wanted, Path& path) const {
    if (m_last.size == 0) return false;
    Step& step = m_last.back();
    const IndexPage leaf = read(step.page);
    if (isWhereLastWas(leaf, wanted)) {
        path.take(m_last);
        return true;
    }
    const std::size_t at = leaf.find(wanted);
    if (at == leaf.begin() && (leaf.previous() != 0 || leaf.empty())) return false;
    if (at == leaf.end()) {
        if (!step.edge) return false;
        for (std::size_t level = 0; level + 1 < m_last.size; ++level) {
            Step& above = m_last.steps[level];
            if (above.viaTail) continue;
            const IndexPage node = read(above.page);
            above.beyond = node.find(wanted) == node.end();
        }
    }
    step.at = static_cast<std::uint32_t>(at);
    path.take(m_last);
    m_lastWanted.assign(wanted.begin(), wanted.end());
    return true;
}

/// A key that was just sought is mostly inserted next; without an entry of that key it goes to the same
/// place.
bool Index::isWhereLastWas(const IndexPage& leaf, ByteView wanted) const {
    if (m_lastWanted.empty() || wanted.size() < m_lastWanted.size() ||
        std::memcmp(wanted.data(), m_lastWanted.data(), m_lastWanted.size()) != 0)
        return false;
    if (wanted.size() == m_lastWanted.size()) return true;
    const Step& step = m_last.steps[m_last.size - 1];
    if (step.at != leaf.end()) return !leaf.startsWith(step.at, m_lastWanted);
    // In higher trees the separators above may lie between what was wanted then and now.
    return m_last.size == 1 || (m_last.size == 2 && step.edge && m_last.steps[0].viaTail);
}

bool Index::contains(ByteView key) const {
    bool found = false;
    eachEntry(key, [&](const IndexPage& page, std::size_t at) {
        found = page.length(at) == key.size() + entryRowBytes;
        return !found;
    });
    return found;
}

void Index::each(ByteView key, const std::function<bool(RowPointer)>& take) const {
    eachEntry(key, [&](const IndexPage& page, std::size_t at) { return take(page.row(at)); });
}

void Index::eachEntry(ByteView key, const TakeEntry& take) const {
    Path path;
    descend(key, path);
    std::uint32_t number = path.back().page;
    std::size_t at = path.back().at;
    for (std::uint32_t visited = 0; number != 0; ++visited) {
        const IndexPage page = read(number);
        if (!page.leaf() || visited > m_pager.pageCount())
            m_pager.view(number).fail(m_pager.layout().nextAt, "the leaves of an index run in a circle");
        if (visited != 0) at = page.begin();
        for (; at < page.end(); at = page.after(at))
            if (!page.startsWith(at, key) || !take(page, at)) return;
        number = page.next();
    }
}

void Index::insert(ByteView key, RowPointer row) {
    makeEntry(key, row, m_entry);
    const ByteView entry = m_entry;
    Path path;
    descend(entry, path);
    const IndexPage leaf = read(path.back().page);
    const std::size_t at = path.back().at;
    const bool atEnd = at == leaf.end();
    if (!atEnd && leaf.equals(at, entry))
        m_pager.view(leaf.number()).fail(0, "a row is already in the index");
    const bool check = atEnd && std::any_of(path.steps.begin(), path.steps.begin() + path.size,
                                            [](const Step& step) { return step.beyond; });
    put(path, path.size - 1, entry);
    if (check) fixSeparators(entry, false);
}

/// Puts an entry on the page of that level of the path, splitting what is full.
void Index::put(Path& path, std::size_t level, ByteView entry) {
    const Layout& layout = m_pager.layout();
    const std::uint32_t number = path.steps[level].page;
    Edit page = edit(number);
    const IndexPage before(page, layout, m_owner);
    const std::size_t trail = before.leaf() ? 0 : entryChildBytes;
    const std::size_t at =
        before.leaf() ? path.steps[level].at : before.find(entry.first(entry.size() - trail));
    if (level + 1 != path.size) m_last.size = 0;
    m_lastWanted.clear();
    if (insertEntry(page, layout, before, at, entry)) return;
    EntryList all;
    std::size_t fresh = 0;
    for (std::size_t i = before.begin(); i < before.end(); i = before.after(i)) {
        if (i == at) {
            fresh = all.size();
            all.add(entry);
        }
        all.add(before.prefix(), before.rest(i));
    }
    if (at == before.end()) {
        fresh = all.size();
        all.add(entry);
    }
    if (packedSize(all, 0, all.size(), trail) <= layout.entryRoom())
        writeEntries(page, layout, all, 0, all.size(), trail);
    else
        split(path, level, all, fresh);
}

/// How many entries the left half gets. Keys that come in order leave full pages behind.
std::size_t Index::splitPlace(const EntryList& entries, std::size_t fresh, bool first, bool last,
                              std::size_t trail) const {
    const std::size_t count = entries.size();
    const std::size_t room = m_pager.layout().entryRoom();
    if (last && fresh == count - 1) return count - 1;
    if (first && fresh == 0) return 1;
    std::size_t total = 0;
    for (std::size_t i = 0; i < count; ++i)
        total += entries[i].size();
    // Near the end of the index the next keys are likely to come close behind.
    const std::size_t share = last && fresh * 4 > count * 3 ? total - total / 8 : total / 2;
    std::size_t middle = 0;
    for (std::size_t sum = 0; middle < count - 1 && sum < share; ++middle)
        sum += entries[middle].size();
    middle = std::max<std::size_t>(middle, 1);
    while (middle > 1 && packedSize(entries, 0, middle, trail) > room)
        --middle;
    while (middle < count - 1 && packedSize(entries, middle, count, trail) > room)
        ++middle;
    return middle;
}

void Index::split(Path& path, std::size_t level, const EntryList& entries, std::size_t fresh) {
    m_last.size = 0;
    const Layout& layout = m_pager.layout();
    const Step& step = path.steps[level];
    const IndexPage old = read(step.page);
    const bool leaf = old.leaf();
    const std::size_t trail = leaf ? 0 : entryChildBytes;
    const std::uint32_t previous = old.previous();
    const std::uint32_t next = old.next();
    const std::size_t middle = splitPlace(entries, fresh, previous == 0, step.edge, trail);
    if (level == 0) {
        splitRoot(entries, middle, leaf);
        return;
    }
    const ByteView last = entries[middle - 1];
    const std::vector<std::uint8_t> separator(last.begin(), last.end() - static_cast<std::ptrdiff_t>(trail));
    const std::uint32_t newPage = allocate(leaf);
    const Step& parent = path.steps[level - 1];
    const bool behind = leaf && parent.viaTail; // the new page becomes the tail
    const std::uint32_t left = behind ? step.page : newPage;
    const std::uint32_t right = behind ? newPage : step.page;
    writeEntries(edit(left), layout, entries, 0, middle, trail);
    writeEntries(edit(right), layout, entries, middle, entries.size(), trail);
    if (behind) {
        edit(parent.page).set32(layout.tailAt, right);
        if (next != 0) link(right, next); // a tail is the last of its node, not always of the tree
    } else if (previous != 0) {
        link(previous, left);
    }
    link(left, right);
    put(path, level - 1, withChild(separator, left));
}

void Index::splitRoot(const EntryList& entries, std::size_t middle, bool leaf) {
    const Layout& layout = m_pager.layout();
    const std::size_t trail = leaf ? 0 : entryChildBytes;
    const std::uint32_t tail = read(m_data.root).tail();
    const std::uint32_t left = allocate(leaf);
    const std::uint32_t right = allocate(leaf);
    writeEntries(edit(left), layout, entries, 0, middle, trail);
    writeEntries(edit(right), layout, entries, middle, entries.size(), trail);
    link(left, right);
    EntryList children;
    children.add(withChild(entries[middle - 1].first(entries[middle - 1].size() - trail), left));
    Edit root = edit(m_data.root);
    initIndexPage(root, layout, m_owner, false);
    if (leaf) {
        root.set32(layout.tailAt, right);
    } else {
        edit(right).set32(layout.tailAt, tail);
        children.add(withChild(openEdge, right));
        m_edgeOpen = true;
    }
    writeEntries(root, layout, children, 0, children.size(), entryChildBytes);
}

/// Corrects the separators on the way to the leaf of `entry`, so that each is the last entry of its child.
void Index::fixSeparators(ByteView entry, bool exactEdge) {
    Path path;
    std::vector<std::uint8_t> last;
    bool again = true;
    for (std::size_t rounds = 0; again; ++rounds) {
        again = false;
        descend(entry, path);
        if (rounds > 4 * Path::most) m_pager.view(m_data.root).fail(0, "an index is out of order");
        const IndexPage leaf = read(path.back().page);
        if (leaf.empty()) return;
        leaf.entry(leaf.before(leaf.end()), last);
        for (std::size_t level = path.size - 1; level-- > 0 && !again;) {
            const Step& step = path.steps[level];
            if (step.viaTail) continue;
            again = fixSeparator(path, level, last, exactEdge);
            const IndexPage page = read(step.page);
            if (!again && (page.tail() != 0 || page.after(step.at) != page.end())) break;
        }
    }
}

/// True when the separator had to be changed; the path is then out of date.
bool Index::fixSeparator(Path& path, std::size_t level, ByteView last, bool exactEdge) {
    const Step& step = path.steps[level];
    const IndexPage page = read(step.page);
    if (page.equals(step.at, last)) return false;
    m_last.size = 0;
    const std::uint32_t child = page.child(step.at);
    const bool upper = level + 2 < path.size;
    const bool edge = upper && step.edge && page.after(step.at) == page.end();
    ByteView separator = last;
    if (edge && !exactEdge) {
        std::vector<std::uint8_t> old;
        page.entry(step.at, old);
        m_edgeOpen = true;
        if (!less(old, last)) return false;
        separator = openEdge;
    }
    const std::vector<std::uint8_t> kept(separator.begin(), separator.end());
    eraseEntry(edit(step.page), m_pager.layout(), page, step.at);
    put(path, level, withChild(kept, child));
    return true;
}

void Index::settle() {
    if (!m_edgeOpen) return;
    fixSeparators(openEdge, true);
    m_edgeOpen = false;
}

std::uint32_t Index::allocate(bool leaf) {
    const std::uint32_t page = m_pager.allocate();
    initIndexPage(edit(page), m_pager.layout(), m_owner, leaf);
    m_map.add(page);
    return page;
}

/// A page to be changed.
Edit Index::edit(std::uint32_t page) {
    if (page >= m_touched.size()) m_touched.resize(m_pager.pageCount());
    m_touched[page] = true;
    return m_pager.edit(page);
}

void Index::giveBack(std::uint32_t page) {
    m_map.remove(page);
    m_pager.release(page);
}

void Index::link(std::uint32_t left, std::uint32_t right) {
    editOwn(left).set32(m_pager.layout().nextAt, right);
    editOwn(right).set32(m_pager.layout().previousAt, left);
}

/// A page that a link of another page names. A damaged link must not lead to a change elsewhere.
Edit Index::editOwn(std::uint32_t page) {
    const View view = m_pager.view(page);
    if (!m_map.contains(page)) view.fail(0, "an index refers to a page that is not its own");
    (void)read(page);
    return edit(page);
}

} // namespace jet
