#pragma once

#include "catalog.h"
#include "index.h"
#include "memory_disk.h"
#include "pager.h"

namespace jet {

/// Which of the lowest nodes of a tree have a tail. Other writers give one to each, ours to the last alone.
enum class Tails { Every, EverySecond };

/// A tree as another program builds it: pages with so many entries, from the leaves up.
class ForeignTree {
  public:
    ForeignTree(Pager& pager, std::uint32_t owner, IndexData& data, std::size_t perPage, Tails tails)
        : m_pager(pager),
          m_owner(owner),
          m_data(data),
          m_map(pager, data.map),
          m_perPage(perPage),
          m_tails(tails) {}

    /// Takes the place of an empty tree. Entries ascend.
    void build(const std::vector<Bytes>& entries) {
        std::vector<Child> level;
        for (std::size_t at = 0; at < entries.size(); at += m_perPage) {
            EntryList list;
            for (std::size_t i = at; i < std::min(at + m_perPage, entries.size()); ++i)
                list.add(entries[i]);
            const bool root = entries.size() <= m_perPage;
            const std::uint32_t page = root ? m_data.root : allocate(true);
            writeEntries(m_pager.edit(page), m_pager.layout(), list, 0, list.size(), 0);
            const ByteView last = list[list.size() - 1];
            level.push_back({page, Bytes(last.begin(), last.end())});
        }
        for (bool lowest = true; level.size() > 1; lowest = false)
            level = nodesOver(level, lowest);
    }

  private:
    struct Child {
        std::uint32_t page;
        Bytes last;
    };

    std::vector<Child> nodesOver(const std::vector<Child>& children, bool lowest) {
        const Layout& layout = m_pager.layout();
        for (std::size_t i = 1; i < children.size(); ++i) {
            m_pager.edit(children[i - 1].page).set32(layout.nextAt, children[i].page);
            m_pager.edit(children[i].page).set32(layout.previousAt, children[i - 1].page);
        }
        std::vector<Child> nodes;
        for (std::size_t at = 0; at < children.size(); at += m_perPage) {
            const std::size_t end = std::min(at + m_perPage, children.size());
            const bool root = children.size() <= m_perPage;
            const bool last = end == children.size();
            const bool tail = lowest && (m_tails == Tails::Every || last || nodes.size() % 2 == 0);
            if (root) initIndexPage(m_pager.edit(m_data.root), layout, m_owner, false);
            Edit node = m_pager.edit(root ? m_data.root : allocate(false));
            if (tail) node.set32(layout.tailAt, children[end - 1].page);
            EntryList list;
            for (std::size_t i = at; i < end - tail; ++i)
                list.add(withChild(children[i].last, children[i].page));
            writeEntries(node, layout, list, 0, list.size(), entryChildBytes);
            nodes.push_back({node.page(), children[end - 1].last});
        }
        return nodes;
    }

    std::uint32_t allocate(bool leaf) {
        const std::uint32_t page = m_pager.allocate();
        initIndexPage(m_pager.edit(page), m_pager.layout(), m_owner, leaf);
        m_map.add(page);
        return page;
    }

    Pager& m_pager;
    std::uint32_t m_owner;
    IndexData& m_data;
    UsageMap m_map;
    std::size_t m_perPage;
    Tails m_tails;
};

/// The first page of each level of a tree, from the root down.
inline std::vector<std::uint32_t> levelsOf(Pager& pager, std::uint32_t owner, std::uint32_t root) {
    const auto read = [&](std::uint32_t page) { return IndexPage(pager.view(page), pager.layout(), owner); };
    std::vector<std::uint32_t> levels{root};
    for (std::uint32_t page = root; !read(page).leaf(); levels.push_back(page))
        page = read(page).empty() ? read(page).tail() : read(page).child(read(page).begin());
    return levels;
}

/// The entries of a tree, in order.
inline std::vector<Bytes> entriesOf(Pager& pager, std::uint32_t owner, std::uint32_t root) {
    const auto read = [&](std::uint32_t page) { return IndexPage(pager.view(page), pager.layout(), owner); };
    std::vector<Bytes> entries;
    for (std::uint32_t leaf = levelsOf(pager, owner, root).back(); leaf != 0; leaf = read(leaf).next())
        for (std::size_t at = read(leaf).begin(); at < read(leaf).end(); at = read(leaf).after(at))
            read(leaf).entry(at, entries.emplace_back());
    return entries;
}

/// The file with the trees of a table built anew as another program does.
inline Bytes withForeignTrees(const Bytes& content, std::string_view table, std::size_t perPage,
                              Tails tails) {
    const auto file = std::make_shared<MemoryFile>(content);
    Pager pager(std::make_unique<SharedFile>(file), OpenMode::ReadWrite);
    TableDef def = TableDef::load(pager, Catalog(pager).table(table)->page());
    for (IndexData& data : def.indexData) {
        const std::vector<Bytes> entries = entriesOf(pager, def.page, data.root);
        const IndexData counted = data;
        Index(pager, def.page, data).clear();
        ForeignTree(pager, def.page, data, perPage, tails).build(entries);
        data = counted;
    }
    pager.commit();
    return file->content();
}

} // namespace jet
