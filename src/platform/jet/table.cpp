#include "table.h"

#include "data_page.h"
#include "pager.h"
#include "table_store.h"
#include "text.h"

namespace jet {

bool Cursor::next() {
    UsageMap& owned = m_store->ownedPages();
    const Layout& layout = m_store->pager().layout();
    m_decoded = false;
    for (;;) {
        if (m_at.page != 0 && owned.contains(m_at.page)) {
            const View page = m_store->pager().view(m_at.page);
            requireDataPage(page, m_store->def().page);
            const int count = slotCount(page, layout);
            while (m_nextSlot < count) {
                const Slot slot = slotAt(page, layout, m_nextSlot++, count);
                if (slot.deleted() || slot.isOverflow()) continue;
                m_at.slot = static_cast<std::uint8_t>(m_nextSlot - 1);
                m_start = slot.isPointer() ? 0 : slot.start;
                m_length = slot.length;
                m_seen = m_store->changes();
                return true;
            }
        }
        const std::uint32_t following = owned.next(m_at.page + 1);
        if (following == 0) return false;
        m_at.page = following;
        m_nextSlot = 0;
    }
}

bool Cursor::isFresh() const {
    return m_seen == m_store->changes();
}

void Cursor::read(Row& into) const {
    if (m_start == 0 || !isFresh())
        m_store->read(m_at, into);
    else
        m_store->decode(m_store->pager().view(m_at.page).part(m_start, m_length), into);
}

const Row& Cursor::row() {
    if (m_decoded) return m_row;
    read(m_row);
    m_decoded = true;
    // Each stored piece belongs to one row, so that all of them together are no longer than the file; as
    // UTF-8 a text may be three times as long. Damaged rows could share a long one.
    m_longBytes += m_store->longValueSize(m_row);
    Pager& pager = m_store->pager();
    if (m_longBytes / 4 > std::uint64_t{pager.pageCount()} * pager.layout().pageSize)
        throw Error::corrupt(m_at.page, 0, "rows share their long values");
    return m_row;
}

namespace {

template <typename Named>
std::optional<int> positionOf(const std::vector<Named>& all, std::string_view name) {
    for (std::size_t i = 0; i < all.size(); ++i)
        if (sameName(all[i].name, name)) return static_cast<int>(i);
    return std::nullopt;
}

} // namespace

const std::string& Table::name() const {
    return m_store->name();
}
const std::vector<Column>& Table::columns() const {
    return m_store->columns();
}
std::optional<int> Table::column(std::string_view name) const {
    return positionOf(m_store->columns(), name);
}
const std::vector<IndexInfo>& Table::indexes() const {
    return m_store->indexes();
}
std::optional<int> Table::index(std::string_view name) const {
    return positionOf(m_store->indexes(), name);
}
std::uint32_t Table::rowCount() const {
    return m_store->def().rowCount;
}
std::uint32_t Table::countRows() const {
    return m_store->countRows();
}
std::uint64_t Table::changes() const {
    return m_store->changes();
}
std::int32_t Table::nextAutonumber() const {
    return m_store->nextAutonumber();
}
Cursor Table::scan() const {
    return Cursor(*m_store);
}
void Table::read(RowId id, Row& into) const {
    m_store->read(id, into);
}
bool Table::exists(RowId id) const {
    return m_store->exists(id);
}
RowId Table::insert(const Row& row) {
    return m_store->insert(row);
}
void Table::update(RowId id, const Row& row) {
    m_store->update(id, row);
}
void Table::erase(RowId id) {
    m_store->erase(id);
}
void Table::clear() {
    m_store->clear();
}

Row Table::read(RowId id) const {
    Row row;
    m_store->read(id, row);
    return row;
}

std::optional<RowId> Table::seek(int index, std::span<const Value> key) const {
    std::optional<RowId> found;
    m_store->seek(index, key, [&](RowId id) {
        found = id;
        return false;
    });
    return found;
}

std::vector<RowId> Table::seekAll(int index, std::span<const Value> key) const {
    std::vector<RowId> all;
    m_store->seek(index, key, [&](RowId id) {
        all.push_back(id);
        return true;
    });
    return all;
}

} // namespace jet
