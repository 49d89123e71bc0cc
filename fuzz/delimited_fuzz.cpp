#include "exchange/table_import.h"
#include "table_parts.h"

// The table too is taken as a book, by guess and as any columns at all: each row comes from a row of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    return checkReading([&bytes](tables::Writer& out) { tables::readDelimited(bytes, out); },
                        [&bytes](const tables::Table& table) {
                            exchange::Layout layout =
                                exchange::guessLayout(table, exchange::guessHeadingRow(table));
                            for (int pass = 0; pass < 2; ++pass) {
                                const exchange::TakenTable taken = exchange::takeTable(table, layout);
                                if (taken.rows.size() != taken.sources.size()) std::abort();
                                if (taken.rows.size() > table.rows.size()) std::abort();
                                std::size_t kind = bytes.size();
                                for (exchange::ColumnKind& column : layout.columns)
                                    column =
                                        static_cast<exchange::ColumnKind>(kind++ % exchange::columnKinds);
                            }
                        });
}
