#pragma once

#include "table_def.h"
#include "usage_map.h"

#include <optional>

namespace jet {

class Pager;

/// Reads the bytes that the 12-byte reference in a row (with the data behind it when they are inline) stands
/// for. Corrupt.
void readLongValue(Pager& pager, const View& reference, Bytes& into);

/// Bytes of the shape that a value of `length` bytes takes in its row.
[[nodiscard]] Bytes placeholderReference(std::size_t length);

/// The pages with the long values of one column.
class LongValues {
  public:
    LongValues(Pager& pager, const LongValueMaps& maps);

    /// Stores `data` and returns what the row holds: short values inline, others on one page or in a chain.
    [[nodiscard]] Bytes store(ByteView data);
    /// Gives the pieces of a stored value back.
    void release(const View& reference);
    void clear();
    [[nodiscard]] UsageMap& pages() { return m_pages; }

  private:
    RowPointer storePiece(ByteView piece);

    Pager& m_pager;
    UsageMap m_pages;
    std::optional<UsageMap> m_freeSpace;
};

} // namespace jet
