#include "reader_process.h"

#include "child_output.h"

#include <string_view>

namespace spreadsheet {

namespace {

/// Puts the reader's stream of fields together, however it is cut into pieces.
class FieldCollector {
  public:
    void take(std::string_view piece) {
        for (char c : piece) {
            if (c != '\0') {
                m_row[m_column] += c;
                continue;
            }
            if (++m_column < m_row.size()) continue;
            m_rows.push_back(std::move(m_row));
            m_row = {};
            m_column = 0;
        }
    }
    [[nodiscard]] std::size_t count() const { return m_rows.size(); }
    [[nodiscard]] bool endsWithWholeRow() const { return m_column == 0 && m_row[0].empty(); }
    std::vector<Row> rows() && { return std::move(m_rows); }

  private:
    std::vector<Row> m_rows;
    Row m_row;
    std::size_t m_column = 0;
};

} // namespace

ReaderResult runReader(const std::string& program, const std::vector<std::string>& arguments,
                       const std::string& libraries, Patience& patience) {
    FieldCollector fields;
    const int status = runProgram(program, arguments, libraries,
                                  "The program that reads LibreOffice sheets is not installed", patience,
                                  [&fields](std::string_view piece) {
                                      fields.take(piece);
                                      return fields.count();
                                  });
    if (status == ReadWell && !fields.endsWithWholeRow()) return {ConnectionLost, {}};
    return {status, std::move(fields).rows()};
}

} // namespace spreadsheet
