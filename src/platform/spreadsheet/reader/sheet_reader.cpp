// zavrogrl-sheet-reader PIPE PROGRAM-FOLDER
//
// Reads the sheet in front of a running LibreOffice over its UNO pipe and writes the values of A to J, from
// row 2 on, to standard output: ten NUL-ended UTF-8 fields a row, up to and without the first row that is
// wholly empty. A program of its own, so that neither a fault nor a hang over there reaches the field book.

#include "../reader_process.h"
#include "cell_texts.h"
#include "front_sheet.h"

#include <com/sun/star/connection/NoConnectException.hpp>
#include <com/sun/star/lang/DisposedException.hpp>
#include <com/sun/star/uno/Exception.hpp>

#include <csignal>
#include <cstdio>
#include <span>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

using spreadsheet::ReaderExit;

int readSheet(const std::string& pipe, const std::string& programFolder) {
    try {
        const auto sheet = reader::sheetInFront(reader::connect(pipe, programFolder));
        if (!sheet.cells.is()) return ReaderExit::NoSheet;
        reader::CellTexts cells(sheet);
        while (const auto rows = cells.nextBlock()) {
            for (const spreadsheet::Row& row : *rows)
                for (const std::string& text : row)
                    std::fwrite(text.c_str(), 1, text.size() + 1, stdout);
            if (std::fflush(stdout) != 0) return ReaderExit::OtherError;
        }
        return ReaderExit::ReadWell;
    } catch (const com::sun::star::connection::NoConnectException&) {
        return ReaderExit::ConnectionLost;
    } catch (const com::sun::star::lang::DisposedException&) {
        return ReaderExit::ConnectionLost;
    } catch (const com::sun::star::uno::Exception&) {
        return ReaderExit::OtherError;
    }
}

} // namespace

int main(int count, char** words) {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // the field book must not leave a reader behind when it is killed
    const std::span arguments(words, static_cast<std::size_t>(count));
    if (arguments.size() != 3) {
        std::fputs("usage: zavrogrl-sheet-reader PIPE PROGRAM-FOLDER\n", stderr);
        return ReaderExit::BadUsage;
    }
    const int status = readSheet(arguments[1], arguments[2]);
    // The bridge's own threads are not waited for: with the spreadsheet hung they would never end.
    _exit(status);
}
