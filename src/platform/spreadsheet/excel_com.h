#pragma once

#include "spreadsheet.h"

namespace spreadsheet {

/// The active sheet of the Excel that is running, over late-bound automation. Windows only; written from the
/// documented interfaces and never run. A call into an Excel that hangs blocks: there is no time limit here.
class ExcelCom : public RunningSpreadsheet {
  public:
    [[nodiscard]] std::vector<Row> readSheet(const GoOn& goOn) override;
};

} // namespace spreadsheet
