#pragma once

#include "table.h"

#include <functional>
#include <string>
#include <string_view>

// A table on its way from the reader program: records of a letter and fields that each end with a NUL.
//
//   S name                 a sheet of the file, in order
//   T number               the sheet that follows, from 0
//   D separator            delimited text
//   R number               a row begins
//   C column kind number shown
//   M row column row column
//   N text                 a note
//   F text                 the file is refused, and why
//   .                      all was written

namespace tables {

/// Takes a table piece by piece and passes it on as bytes. Rows come in ascending order, the cells of a row
/// too; empty cells need not come. Limits are kept here, for all formats: beyond them Unreadable is raised.
class Writer {
  public:
    using Put = std::function<void(std::string_view)>;
    explicit Writer(Put put) : m_put(std::move(put)) {}

    void sheet(std::string_view name);
    void chosen(std::size_t sheet);
    void separator(char character);
    /// `column` from 1. A cell right of the last column that is taken is counted and told at the end.
    void cell(int row, int column, const Cell& cell);
    void merged(const Merged& cells);
    void note(std::string_view text);
    void refused(std::string_view reason); ///< ends the stream
    void end();

  private:
    void field(std::string_view text);
    void count(std::string_view text); ///< towards mostText; before a record begins
    void flush();

    Put m_put;
    std::string m_bytes;
    int m_row = 0, m_column = 0;
    std::size_t m_cells = 0, m_text = 0, m_beyond = 0, m_merged = 0, m_cut = 0;
};

/// Puts such a stream together, however it is cut into pieces. Bytes that are no such stream raise
/// Unreadable, and so does the reader's own refusal.
class Collector {
  public:
    void take(std::string_view piece);
    [[nodiscard]] bool isWhole() const { return m_whole; }
    [[nodiscard]] std::size_t rows() const { return m_table.rows.size(); }
    [[nodiscard]] Table table() && { return std::move(m_table); }

  private:
    void finishRecord();

    Table m_table;
    char m_kind = 0;
    std::vector<std::string> m_fields;
    std::string m_field;
    std::size_t m_cells = 0, m_text = 0;
    bool m_whole = false;
};

} // namespace tables
