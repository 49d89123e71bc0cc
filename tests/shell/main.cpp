#include "temp_folder.h"

#include "shell/application.h"

#include <gmock/gmock.h>

#include <QLocale>

#include <clocale>
#include <cstdio>

namespace {

/// A run in another locale or scale proves nothing when it does not have it.
bool isAsAsked() {
    const bool comma = qgetenv("LC_ALL").startsWith("de");
    if (comma && QLocale().decimalPoint() != QStringLiteral(",")) return false;
    if (!qEnvironmentVariableIsEmpty("LOCPATH") && *std::localeconv()->decimal_point != ',') return false;
    return !qEnvironmentVariableIsSet("QT_SCALE_FACTOR") ||
           qApp->devicePixelRatio() == qEnvironmentVariable("QT_SCALE_FACTOR").toDouble();
}

} // namespace

// The windows run without a display, in a home folder of their own.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const TempFolder home;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("HOME", home.path().c_str());
    qputenv("XDG_DATA_HOME", (home / "data").c_str());
    qputenv("XDG_RUNTIME_DIR", home.path().c_str());
    const shell::Application application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (!isAsAsked()) {
        std::fputs("not the locale or the scale that this run is for\n", stderr);
        return 1;
    }
    return RUN_ALL_TESTS();
}
