#include "temp_folder.h"

#include "shell/application.h"

#include <gmock/gmock.h>

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
    return RUN_ALL_TESTS();
}
