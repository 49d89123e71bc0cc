#include "shell/frmGrl.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("zavrogrl"));
    QApplication::setApplicationVersion(QStringLiteral("1.0.0"));
    QApplication::setQuitOnLastWindowClosed(false); // the exit command ends the program
    shell::frmGrl window;
    window.Form_Load();
    return QApplication::exec();
}
