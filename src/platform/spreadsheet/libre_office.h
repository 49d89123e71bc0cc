#pragma once

#include "spreadsheet.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace spreadsheet {

struct LibreOfficeOptions {
    /// The program that links LibreOffice's libraries and does the reading.
    std::string readerProgram;
    /// Sockets to look at; nothing means all of this user's.
    std::optional<std::vector<std::string>> sockets;
    /// How long a spreadsheet that shows no sign of life is waited for.
    std::chrono::milliseconds limit{15000};
    /// How long each instance has before the next one is asked; a live one answers within a few milliseconds.
    std::chrono::milliseconds answer{4000};
};

/// The reader program as it is installed: beside the running program. May name a file that is not there.
[[nodiscard]] std::string installedReader();

/// The Calc sheet of a LibreOffice that the user started in the ordinary way.
///
/// A running instance is asked over its single-instance socket to accept connections on a pipe of its own
/// name, "zavrogrl_<process>"; then the reader program fetches the cells through it. The pipe stays open
/// until LibreOffice ends: taking it back while a connection is still closing can lock LibreOffice up for
/// good.
class LibreOffice : public RunningSpreadsheet {
  public:
    explicit LibreOffice(LibreOfficeOptions options) : m_options(std::move(options)) {}

    [[nodiscard]] std::vector<Row> readSheet(const GoOn& goOn) override;

  private:
    LibreOfficeOptions m_options;
};

} // namespace spreadsheet
