#include "cli/book_file.h"
#include "project/load.h"
#include "shell/application.h"
#include "shell/controls/branding.h"
#include "shell/frmGrl.h"
#include "shell/print/pdf_command.h"
#include "shell/start_chain.h"
#include "shell/text.h"
#include "tools/start_routine.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <memory>

namespace {

/// A book that was named on the command line, as a file manager does it, is opened like one chosen with Open.
void openBook(shell::frmGrl& window, const QString& path) {
    project::openPath(window.book(), window.desktop(), shell::toUtf8(QFileInfo(path).absoluteFilePath()));
    window.showBook();
    window.desktop().focusGrid();
}

/// --help and --version are answered, and end the program; what is left are books.
QStringList booksOf(const QCoreApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription(shell::text("The levelling book of a road survey."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption({QStringLiteral("pdf"),
                      shell::text("Write the printed book into this file instead; see the manual page."),
                      QStringLiteral("OUT.pdf")});
    parser.addPositionalArgument(QStringLiteral("book"), shell::text("A book to open after the login."),
                                 QStringLiteral("[book]"));
    parser.process(application);
    return parser.positionalArguments();
}

/// Without one, Qt ends the program as if it had crashed.
bool hasDisplay(int argc, char** argv) {
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    const auto isPlatform = [](std::string_view word) { return word == "-platform" || word == "--platform"; };
    return std::any_of(argv, argv + argc, isPlatform) || !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#else
    return argc >= 0 && argv != nullptr;
#endif
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication::setApplicationName(QStringLiteral("zavrogrl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ZAVRO_VERSION));
    if (shell::wantsPdf(argc, argv)) {
        if (!hasDisplay(argc, argv)) qputenv("QT_QPA_PLATFORM", "offscreen");
        const QGuiApplication application(argc, argv);
        return shell::writePdfOf(QGuiApplication::arguments(),
                                 [](project::Book& book, const std::string& path) {
                                     return cli::loadBook(book, path, std::cin, std::cerr);
                                 });
    }
    if (!hasDisplay(argc, argv)) {
        const QCoreApplication application(argc, argv);
        (void)booksOf(application);
        std::fputs("zavrogrl: there is no display to open a window on; zavrogrl-cli works without one\n",
                   stderr);
        return 1;
    }
    shell::Application application(argc, argv);
    const QStringList books = booksOf(application);
    QApplication::setDesktopFileName(QStringLiteral("org.zavrogrl.ZavroGrl"));
    QApplication::setWindowIcon(shell::branding::icon());
    QApplication::setQuitOnLastWindowClosed(false); // the exit command ends the program

    shell::QtDesktop desktop;
    std::unique_ptr<shell::frmGrl> window;
    shell::StartChain chain(
        desktop,
        [&application, &window, &desktop, &books] {
            window = std::make_unique<shell::frmGrl>(desktop);
            application.unexpected = [&window] { window->rescue("The program"); };
            window->Form_Load();
            if (!books.empty()) openBook(*window, books.front());
        },
        [] { QApplication::exit(0); });
    mdlTools::Main([&chain] { chain.showSplash(); });
    return QApplication::exec();
}
