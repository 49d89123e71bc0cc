#include "window.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>

namespace {

using desktop::Answer;
using desktop::Buttons;

class QtDesktopTest : public MainWindow {
  protected:
    QtDesktopTest() { open(); }
    shell::QtDesktop& desktop() { return window->desktop(); }
};

TEST_F(QtDesktopTest, MessageBoxes) {
    struct Case {
        Buttons buttons;
        const char* title;
        const char* expectedButtons;
        std::optional<QMessageBox::StandardButton> press; // none: Esc
        Answer expected;
    };
    const Case cases[] = {
        {Buttons::Ok, "", "OK", QMessageBox::Ok, Answer::Ok},
        {Buttons::Ok, "Login", "OK", {}, Answer::Ok},
        {Buttons::YesNo, "", "Yes No", QMessageBox::Yes, Answer::Yes},
        {Buttons::YesNo, "", "Yes No", {}, Answer::No},
        {Buttons::YesNoCancel, "Conferm!!!", "Yes No Cancel", QMessageBox::No, Answer::No},
        {Buttons::YesNoCancel, "", "Yes No Cancel", {}, Answer::Cancel},
    };
    const std::string text = "Are you <b>sure</b> & \"certain\" to delete 3 Rows..";
    for (const Case& c : cases) {
        std::string shown, title, buttons;
        Answers answers([&](QWidget& modal) {
            auto& box = dynamic_cast<QMessageBox&>(modal);
            shown = shell::toUtf8(box.text());
            title = shell::toUtf8(box.windowTitle());
            for (const auto& [button, name] : {std::pair(QMessageBox::Ok, "OK"),
                                               {QMessageBox::Yes, "Yes"},
                                               {QMessageBox::No, "No"},
                                               {QMessageBox::Cancel, "Cancel"}})
                if (box.standardButtons().testFlag(button))
                    buttons += (buttons.empty() ? "" : " ") + std::string(name);
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            if (c.press)
                QTest::mouseClick(box.button(*c.press), Qt::LeftButton);
            else
                QTest::keyClick(&box, Qt::Key_Escape);
        });
        EXPECT_EQ(desktop().messageBox(text, c.buttons, c.title), c.expected);
        EXPECT_EQ(shown, text);
        EXPECT_EQ(title, *c.title == '\0' ? "ZavroGrl" : c.title);
        EXPECT_EQ(buttons, c.expectedButtons);
    }
}

TEST_F(QtDesktopTest, InputBoxes) {
    for (const bool cancelled : {false, true}) {
        Answers answers([&](QWidget& modal) {
            auto& box = dynamic_cast<QInputDialog&>(modal);
            EXPECT_EQ(box.labelText(), QStringLiteral("Enter New Value "));
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Check"));
            EXPECT_EQ(box.textValue(), QStringLiteral("1.2"));
            QTest::keyClicks(box.findChild<QLineEdit*>(), QStringLiteral("3.4"));
            QTest::keyClick(&box, cancelled ? Qt::Key_Escape : Qt::Key_Return);
        });
        EXPECT_EQ(desktop().inputBox("Enter New Value ", "Check", "1.2"), cancelled ? "" : "3.4");
        EXPECT_EQ(answers.count, 1);
    }
}

TEST_F(QtDesktopTest, FileDialogsTakeAnyName) {
    std::filesystem::create_directory(folder / "sub");
    folder.write("there.grl", "");
    struct Case {
        desktop::FileDialog kind;
        std::string initial;
        std::string typed; // empty: accepted as it opens
        std::string expected;
    };
    const Case cases[] = {
        {desktop::FileDialog::Save, "*.grl", folder / "there.grl", folder / "there.grl"},
        {desktop::FileDialog::Save, "*.grl", folder / "road", folder / "road.grl"},
        {desktop::FileDialog::Save, "", folder / "road.txt", folder / "road.txt"},
        {desktop::FileDialog::Open, "*.grl", folder / "missing.grl", folder / "missing.grl"},
        {desktop::FileDialog::Open, folder / "there.grl", "", folder / "there.grl"},
        {desktop::FileDialog::Open, "Road.mdb", folder / "sub/Road.mdb", folder / "sub/Road.mdb"},
        {desktop::FileDialog::Open, "*.grl", "*.grl", ""},
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
    EXPECT_EQ(desktop().fileDialog(desktop::FileDialog::Save, "*.grl"), std::nullopt);
}

TEST_F(QtDesktopTest, TheProgressBarIsPaintedOncePerPercent) {
    class Painted : public QObject {
      public:
        int count = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            count += event->type() == QEvent::Paint;
            return false;
        }
    } painted;
    auto& bar = control<QProgressBar>("pbr1");
    desktop().showProgress();
    EXPECT_TRUE(bar.isVisible());
    QApplication::processEvents();
    bar.installEventFilter(&painted);
    for (int row = 0; row <= 5000; ++row)
        desktop().setProgress(float(row) * 100.0F / 5000.0F);
    EXPECT_EQ(bar.value(), 100);
    EXPECT_NEAR(painted.count, 100, 1);
    desktop().setProgress(250.0F);
    EXPECT_EQ(bar.value(), 100);
    desktop().hideProgress();
    EXPECT_FALSE(bar.isVisible());
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
