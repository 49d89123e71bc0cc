#include "shell/controls/branding.h"
#include "shell/frmGrl.h"
#include "shell/start_chain.h"
#include "tools/start_routine.h"

#include <QApplication>

#include <memory>

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
        },
        [] { QApplication::exit(0); });
    mdlTools::Main([&chain] { chain.showSplash(); });
    return QApplication::exec();
}
