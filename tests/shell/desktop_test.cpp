#include "window.h"

#include <QProgressBar>

namespace {

using desktop::Answer;
using desktop::Buttons;
using desktop::FileDialog;

class QtDesktopTest : public MainWindow {
  protected:
    QtDesktopTest() { open(); }
    shell::QtDesktop& desktop() { return window->desktop(); }
};

TEST_F(QtDesktopTest, MessageBoxesShowPlainTextAndEscBacksOut) {
    const std::tuple<Buttons, const char*, Answer> cases[] = {
        {Buttons::Ok, "Login", Answer::Ok},
        {Buttons::YesNo, "ZavroGrl", Answer::No},
        {Buttons::YesNoCancel, "Conferm!!!", Answer::Cancel}};
    const std::string text = "Are you <b>sure</b> & \"certain\" to delete 3 Rows..";
    for (const auto& [buttons, title, answer] : cases) {
        const Answers esc([&, title = title](QWidget& modal) {
            auto& box = dynamic_cast<QMessageBox&>(modal);
            EXPECT_EQ(shell::toUtf8(box.text()), text);
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            EXPECT_EQ(shell::toUtf8(box.windowTitle()), title);
            QTest::keyClick(&box, Qt::Key_Escape);
        });
        EXPECT_EQ(desktop().messageBox(text, buttons, buttons == Buttons::YesNo ? "" : title), answer);
    }
}

TEST_F(QtDesktopTest, FileDialogsTakeAnyName) {
    std::filesystem::create_directory(folder / "sub");
    folder.write("there.grl", "");
    struct Case {
        FileDialog kind;
        std::string initial;
        std::string typed; // empty: accepted as it opens
        std::string expected;
    };
    const Case cases[] = {
        {FileDialog::Save, "*.grl", folder / "there.grl", folder / "there.grl"},
        {FileDialog::Save, "*.grl", folder / "road", folder / "road.grl"},
        {FileDialog::Save, "", folder / "road.txt", folder / "road.txt"},
        {FileDialog::Open, "*.grl", folder / "missing.grl", folder / "missing.grl"},
        {FileDialog::Open, folder / "there.grl", "", folder / "there.grl"},
        {FileDialog::Open, "Road.mdb", folder / "sub/Road.mdb", folder / "sub/Road.mdb"},
        {FileDialog::Open, "*.grl", "*.grl", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.initial + " -> " + c.typed);
        Answers answers([&](QWidget& modal) {
            ASSERT_NE(dynamic_cast<QFileDialog*>(&modal), nullptr) << "asked something of its own";
            auto* name = modal.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            EXPECT_TRUE(name->hasFocus());
            if (!c.typed.empty()) name->setText(shell::fromUtf8(c.typed));
            QTest::keyClick(name, Qt::Key_Return);
        });
        EXPECT_EQ(desktop().fileDialog(c.kind, c.initial).value_or(""), c.expected);
        EXPECT_EQ(answers.count, 1);
    }
    Answers cancel([](QWidget& modal) { QTest::keyClick(&modal, Qt::Key_Escape); });
    EXPECT_EQ(desktop().fileDialog(FileDialog::Save, "*.grl"), std::nullopt);
}

/// Counts the events of one type that a widget gets.
class Counter : public QObject {
  public:
    Counter(QWidget& widget, QEvent::Type type) : m_type(type) { widget.installEventFilter(this); }
    int count = 0;
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == m_type;
        return false;
    }

  private:
    QEvent::Type m_type;
};

TEST_F(QtDesktopTest, TheProgressBarIsPaintedOncePerPercent) {
    auto& bar = control<QProgressBar>("pbr1");
    desktop().showProgress();
    EXPECT_TRUE(bar.isVisible());
    QApplication::processEvents();
    const Counter painted(bar, QEvent::Paint);
    for (int row = 0; row <= 5000; ++row)
        desktop().setProgress(float(row) * 100.0F / 5000.0F);
    EXPECT_NEAR(painted.count, 100, 1);
    desktop().setProgress(250.0F);
    EXPECT_EQ(bar.value(), 100);
    desktop().hideProgress();
    EXPECT_FALSE(bar.isVisible());
}

TEST_F(QtDesktopTest, TheGridIsHiddenOnlyWhenACommandLeavesItHidden) {
    const Counter hides(window->grid(), QEvent::Hide);
    window->grid().setFocus();
    book().setRows(5);
    click("cmdCal");
    QApplication::processEvents();
    EXPECT_EQ(hides.count, 0) << "no flicker";
    book().setText(2, 5, "1e39");
    answering({"OK"}, [this] { click("cmdCal"); });
    EXPECT_EQ(hides.count, 1);
    EXPECT_FALSE(shown("MSFG"));
    EXPECT_TRUE(shown("pbr1"));
    click("cmdIns");
    EXPECT_TRUE(shown("MSFG")) << "a row command shows it again";
}

TEST_F(QtDesktopTest, ClipboardAndTrash) {
    desktop().setClipboardText("1\t2\r");
    EXPECT_EQ(desktop().clipboardText(), "1\t2\r");
    const std::string kept = folder.write("kept.grl", "x");
    EXPECT_FALSE(desktop().moveToTrash(kept)) << "this desktop has no trash";
    EXPECT_TRUE(std::filesystem::exists(kept));

    const std::string home = std::getenv("HOME");
    const std::string old = home + "/old.grl";
    std::ofstream(old) << "old";
    shell::Surroundings real;
    real.programFolder = folder.path();
    real.templateFolder = folder.path();
    EXPECT_TRUE(shell::QtDesktop(real).moveToTrash(old));
    EXPECT_FALSE(std::filesystem::exists(old));
    EXPECT_TRUE(std::filesystem::exists(home + "/data/Trash/files/old.grl"));
    EXPECT_FALSE(shell::QtDesktop(real).moveToTrash(old)) << "nothing there";
}

} // namespace
