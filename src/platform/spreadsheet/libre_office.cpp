#include "libre_office.h"

#include "office_socket.h"
#include "reader_process.h"

#include <filesystem>

namespace spreadsheet {

using std::chrono::milliseconds;

namespace {

constexpr milliseconds startingTime{2000}; // an instance that is starting or closing hangs up at first
constexpr milliseconds retryPause{50};
constexpr const char* usualProgramFolder = "/usr/lib/libreoffice/program";

/// Opens the pipe, trying an instance that hangs up again for a while.
Greeting openPipePatiently(Office& office, const std::string& name, milliseconds answer, Patience& patience) {
    const auto end = Patience::Clock::now() + startingTime;
    for (;;) {
        const Greeting greeting = openPipe(office, name, answer, patience);
        if (greeting != Greeting::Closed || Patience::Clock::now() >= end) return greeting;
        patience.pause(retryPause);
        std::vector<Office> again = runningOffices({office.socketPath});
        if (again.empty()) return Greeting::Closed;
        office = std::move(again.front());
    }
}

/// The rows that a reader's run brought; nothing when that instance has no sheet open.
std::optional<std::vector<Row>> rowsOf(ReaderResult result) {
    switch (result.exitStatus) {
    case ReadWell:
        return std::move(result.rows);
    case NoSheet:
        return std::nullopt;
    case LibrariesMissing:
        throw Error(Failure::NoReader,
                    "The program that reads LibreOffice sheets does not fit this LibreOffice");
    case OtherError:
        throw Error(Failure::Lost, "The spreadsheet program refused to be read");
    default:
        throw Error(Failure::Lost, "The connection to the spreadsheet program was lost");
    }
}

} // namespace

std::string installedReader() {
    std::error_code failed;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", failed);
    return (program.parent_path() / "zavrogrl-sheet-reader").string();
}

std::unique_ptr<RunningSpreadsheet> runningSpreadsheet() {
    return std::make_unique<LibreOffice>(LibreOfficeOptions{installedReader(), std::nullopt});
}

std::vector<Row> LibreOffice::readSheet(const GoOn& goOn) {
    Patience patience(m_options.limit, goOn);
    std::vector<Office> offices = runningOffices(m_options.sockets ? *m_options.sockets : officeSockets());
    while (!offices.empty()) {
        std::vector<Office> silent; // one that is only busy may answer later, until the patience ends
        for (Office& office : offices) {
            const std::string pipe = "zavrogrl_" + std::to_string(office.process);
            const Greeting greeting = openPipePatiently(office, pipe, m_options.answer, patience);
            if (greeting == Greeting::Silent) silent.push_back(std::move(office));
            if (greeting != Greeting::Accepted) continue;
            const std::string folder =
                office.programFolder.empty() ? usualProgramFolder : office.programFolder;
            if (auto rows = rowsOf(runReader(m_options.readerProgram, {pipe, folder}, folder, patience)))
                return std::move(*rows);
        }
        offices = std::move(silent);
    }
    throw Error(Failure::NotRunning, "No spreadsheet with an open sheet is running");
}

} // namespace spreadsheet
