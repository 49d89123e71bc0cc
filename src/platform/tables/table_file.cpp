#include "table_file.h"

#include "table_stream.h"

#include "files/folder.h"
#include "files/status.h"
#include "spreadsheet/child_output.h"

namespace tables {
namespace {

constexpr std::chrono::seconds wholeTime{60};

} // namespace

std::string installedTableReader() {
    return files::folderOf(files::ownBinary()) + "/zavrogrl-table-reader";
}

Table readTableFile(const std::string& path, const ReadOptions& options, const spreadsheet::GoOn& goOn) {
    // A name that begins with "-" is no option.
    std::vector<std::string> arguments{files::wholePath(path)};
    if (options.sheet) arguments.push_back(*options.sheet);
    const std::string program =
        options.readerProgram.empty() ? installedTableReader() : options.readerProgram;
    spreadsheet::Patience patience(options.limit, goOn);
    const auto end = spreadsheet::Patience::Clock::now() + wholeTime;
    Collector collector;
    int status = 0;
    try {
        status =
            spreadsheet::runProgram(program, arguments, {}, "The program that reads tables is not installed",
                                    patience, [&](std::string_view piece) {
                                        collector.take(piece);
                                        if (spreadsheet::Patience::Clock::now() > end)
                                            throw Unreadable("Reading the file takes more than a minute");
                                        return collector.rows();
                                    });
    } catch (const spreadsheet::Error& error) {
        switch (error.failure()) {
        case spreadsheet::Failure::NotAnswering:
            throw Unreadable("Reading the file takes too long");
        case spreadsheet::Failure::NoReader:
            throw Unreadable(error.what());
        default:
            throw;
        }
    }
    if (status != 0 || !collector.isWhole())
        throw Unreadable(
            "The file cannot be read: its reader ended early, or it needs too much time or memory");
    return std::move(collector).table();
}

} // namespace tables
