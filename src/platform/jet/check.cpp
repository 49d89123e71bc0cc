#include "check.h"

#include "check_table.h"
#include "inside.h"
#include "rc4.h"

#include <algorithm>
#include <array>

namespace jet {

namespace {

constexpr std::uint32_t maskedAt = 0x18;
constexpr std::uint32_t maskKey = 0x6B39DAC7; ///< bytes C7 DA 39 6B
constexpr std::uint32_t localTable = 1;

/// What the catalog says about a local table.
struct CatalogRow {
    std::uint32_t page;
    std::string name;
};

/// Page 0: fixed texts, and what the masked area says about the first pages.
void checkHeader(Pager& pager, Faults& faults) {
    const Layout& layout = pager.layout();
    const View page = pager.view(0);
    constexpr std::string_view signature = "Standard Jet DB";
    if (!std::ranges::equal(page.bytes(4, signature.size()), signature) || page.u32(0) != 0x100)
        faults.add(0, "no header of a Jet file");
    if (page.u32(0x14) != (layout.jet4() ? 1U : 0U)) faults.add(0, "another version");
    const ByteView masked = page.bytes(maskedAt, layout.jet4() ? 128 : 126);
    Bytes plain(masked.begin(), masked.end());
    rc4(plain, maskKey);
    const View fields(0, plain, maskedAt);
    constexpr std::array<std::uint32_t, 6> first{0x100, 0x101, 2, 3, 4, 5};
    for (std::size_t i = 0; i < first.size(); ++i)
        if (fields.u32(4 * i) != first[i]) faults.add(0, "the header names other first pages");
    if (fields.u16(0x3C - maskedAt) == 0) faults.add(0, "no code page");
}

/// Both sides of a relation name each other.
void checkRelations(const std::map<std::uint32_t, TableDef>& tables, Faults& faults) {
    for (const auto& [page, def] : tables) {
        for (const LogicalIndex& index : def.indexes) {
            if (index.relation == 0) continue;
            const auto other = tables.find(index.otherTable);
            const bool mutual = other != tables.end() &&
                                std::ranges::any_of(other->second.indexes, [&](const LogicalIndex& back) {
                                    return back.number == index.otherIndex && back.otherTable == page &&
                                           back.otherIndex == index.number;
                                });
            if (!mutual) faults.add(page, "the relation of index '" + index.name + "' has no other side");
        }
    }
}

class DatabaseCheck {
  public:
    DatabaseCheck(Pager& pager, Faults& faults) : m_pager(pager), m_faults(faults), m_ledger(pager, faults) {}

    void run() {
        m_faults.guarded("header", [&] { checkHeader(m_pager, m_faults); });
        const TableDef* catalog = load(catalogPage, "MSysObjects");
        if (catalog == nullptr) return;
        TableCheck(m_pager, m_ledger, m_faults, *catalog, "MSysObjects").run(catalogReader(*catalog));
        std::ranges::sort(m_catalog, {}, &CatalogRow::page);
        for (const CatalogRow& row : m_catalog) {
            if (row.page == catalogPage) continue;
            if (const TableDef* def = load(row.page, row.name))
                TableCheck(m_pager, m_ledger, m_faults, *def, row.name).run([](const Row&) {});
        }
        if (std::ranges::none_of(m_catalog, [](const CatalogRow& row) { return row.page == catalogPage; }))
            m_faults.add(catalogPage, "the catalog does not list itself");
        checkRelations(m_tables, m_faults);
        m_ledger.finish();
    }

  private:
    const TableDef* load(std::uint32_t page, const std::string& name) {
        if (m_tables.contains(page)) {
            m_faults.add(page, "two tables of the catalog have this definition");
            return nullptr;
        }
        m_faults.guarded("definition of '" + name + "'",
                         [&] { m_tables.emplace(page, TableDef::load(m_pager, page)); });
        const auto found = m_tables.find(page);
        return found == m_tables.end() ? nullptr : &found->second;
    }

    /// Takes the local tables from the rows of the catalog.
    std::function<void(const Row&)> catalogReader(const TableDef& catalog) {
        const auto at = [&catalog](std::string_view name) {
            return static_cast<std::size_t>(std::ranges::find(catalog.columns, name, &ColumnDef::name) -
                                            catalog.columns.begin());
        };
        const std::size_t id = at("Id"), name = at("Name"), type = at("Type");
        if (std::max({id, name, type}) == catalog.columns.size())
            throw Error::corrupt(catalogPage, 0, "the catalog lacks a column");
        return [this, id, name, type](const Row& row) {
            const auto* number = std::get_if<std::int32_t>(&row[id]);
            const auto* kind = std::get_if<std::int16_t>(&row[type]);
            const auto* text = std::get_if<std::string>(&row[name]);
            if (number == nullptr || kind == nullptr || text == nullptr) {
                m_faults.add(catalogPage, "a row of the catalog lacks a value");
            } else if (*kind == localTable) {
                m_catalog.push_back({static_cast<std::uint32_t>(*number), *text});
            }
        };
    }

    Pager& m_pager;
    Faults& m_faults;
    PageLedger m_ledger;
    std::map<std::uint32_t, TableDef> m_tables;
    std::vector<CatalogRow> m_catalog;
};

} // namespace

std::vector<std::string> check(Database& database, CheckLevel level, std::vector<std::string>* notes) {
    Faults faults(level);
    faults.guarded("database", [&] { DatabaseCheck(Inside::pager(database), faults).run(); });
    if (notes != nullptr) *notes = faults.takeNotes();
    return faults.take();
}

} // namespace jet
