#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

// The sheet that the user has open in a spreadsheet program. Nothing here ever starts such a program.

namespace spreadsheet {

inline constexpr int columnCount = 10; ///< A to J

/// The values of one sheet row as texts (UTF-8): numbers with up to 15 significant digits and a decimal
/// point, dates, times and truth values of A and J as they are shown, errors as they are shown, empty cells
/// as "".
using Row = std::array<std::string, columnCount>;

enum class Failure {
    NotRunning,   ///< no spreadsheet program, or none with a sheet open
    NotAnswering, ///< it hangs
    Lost,         ///< it ended, or the connection broke, while the sheet was read
    Cancelled,    ///< the caller asked to give up
    NoReader,     ///< what reads the sheet is not installed or cannot be started
};

/// Why no sheet was read; what() can be shown to the user.
class Error : public std::runtime_error {
  public:
    Error(Failure failure, const std::string& text) : std::runtime_error(text), m_failure(failure) {}
    [[nodiscard]] Failure failure() const noexcept { return m_failure; }

  private:
    Failure m_failure;
};

/// Asked about every 20 ms while the other program is waited for, with the number of rows read so far. False
/// gives up.
using GoOn = std::function<bool(std::size_t rowsRead)>;

class RunningSpreadsheet {
  public:
    virtual ~RunningSpreadsheet() = default;

    /// The rows of the sheet in front, from sheet row 2 on, at least up to the first one whose columns A to J
    /// are all empty. The program is made visible; its document is not changed. Raises Error.
    [[nodiscard]] virtual std::vector<Row> readSheet(const GoOn& goOn) = 0;
};

/// The spreadsheet program of this system: LibreOffice Calc, or Excel on Windows.
[[nodiscard]] std::unique_ptr<RunningSpreadsheet> runningSpreadsheet();

} // namespace spreadsheet
