#include "project/project_file.h"
#include "shell/controls/branding.h"
#include "shell/frmGrl.h"
#include "shell/start_chain.h"
#include "shell/text.h"
#include "tools/start_routine.h"

#include <QApplication>
#include <QFileInfo>

#include <memory>

namespace {

/// A book that was named on the command line, as a file manager does it, is opened like one chosen with Open.
void openBook(shell::frmGrl& window, const QString& path) {
    sheet::Book& book = window.book();
    book.FileName = shell::toUtf8(QFileInfo(path).absoluteFilePath());
    book.CurrentFile = book.FileName;
    project::op(book, window.desktop());
    window.showBook();
    window.desktop().focusGrid();
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("zavrogrl"));
    QApplication::setApplicationVersion(QStringLiteral(ZAVRO_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("zavrogrl"));
    QApplication::setWindowIcon(shell::branding::icon());
    QApplication::setQuitOnLastWindowClosed(false); // the exit command ends the program

    shell::QtDesktop desktop;
    std::unique_ptr<shell::frmGrl> window;
    shell::StartChain chain(
        desktop,
        [&window] {
            window = std::make_unique<shell::frmGrl>();
            window->Form_Load();
            if (const QStringList words = QApplication::arguments(); words.size() > 1)
                openBook(*window, words[1]);
        },
        [] { QApplication::exit(0); });
    mdlTools::Main([&chain] { chain.showSplash(); });
    return QApplication::exec();
}
