#include "scripted_desktop.h"
#include "temp_folder.h"

#include "shell/frmAbout.h"
#include "shell/frmHelp.h"
#include "shell/frmLogin.h"
#include "shell/frmPwd.h"
#include "shell/frmSplash.h"
#include "shell/frmStart.h"
#include "shell/start_chain.h"
#include "shell/text.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>

#include <gmock/gmock.h>

#include <algorithm>
#include <sys/stat.h>

namespace {

using testing::ElementsAre;

template <typename Control>
Control& find(const QWidget& window, const char* name) {
    auto* found = window.findChild<Control*>(QLatin1String(name));
    if (found == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *found;
}
QLineEdit& box(const QWidget& window, const char* name) {
    return find<QLineEdit>(window, name);
}
QPushButton& button(const QWidget& window, const char* name) {
    return find<QPushButton>(window, name);
}
std::string labelText(const QWidget& window, const char* name) {
    return shell::toUtf8(find<QLabel>(window, name).text());
}
void click(const QWidget& window, const char* name) {
    QTest::mouseClick(&button(window, name), Qt::LeftButton);
}

void open(QWidget& window) {
    window.show();
    if (!QTest::qWaitForWindowActive(&window)) ADD_FAILURE() << "the window does not open";
}

class SmallWindows : public testing::Test {
  protected:
    TempFolder folder;
    ScriptedDesktop desktop;
    int went = 0;  // times that the next window was asked for
    int ended = 0; // times that the program was ended

    SmallWindows() {
        desktop.folder = folder.path();
        QApplication::setApplicationVersion(QStringLiteral("1.2.3"));
    }
    std::function<void()> next() {
        return [this] { ++went; };
    }
    std::function<void()> end() {
        return [this] { ++ended; };
    }
    std::vector<std::string> messages() const {
        std::vector<std::string> texts;
        for (const ScriptedDesktop::Box& box : desktop.boxes)
            texts.push_back(box.text + "|" + box.title);
        return texts;
    }
    mode_t modeOf(const char* name) const {
        struct stat found {};
        return stat((folder / name).c_str(), &found) == 0 ? found.st_mode & 0777 : 0;
    }
};

TEST_F(SmallWindows, SplashGivesWayByTimeEscOrClick) {
    shell::frmSplash timed(next());
    open(timed);
    EXPECT_EQ(labelText(timed, "lblVer"), "Version 1.2.3");
    EXPECT_EQ(timed.windowTitle(), QString());
    EXPECT_EQ(went, 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return went == 1; }, 10'000));

    shell::frmSplash keyed(next());
    open(keyed);
    QTest::keyClick(&keyed, Qt::Key_A);
    EXPECT_EQ(went, 1);
    QTest::keyClick(&keyed, Qt::Key_Escape);
    QTest::keyClick(&keyed, Qt::Key_Escape);
    EXPECT_EQ(went, 2);

    shell::frmSplash clicked(next());
    open(clicked);
    QTest::mouseClick(&clicked, Qt::LeftButton);
    EXPECT_EQ(went, 3);
}

TEST_F(SmallWindows, ProductScreenShowsItsButtonAfterAMoment) {
    shell::frmStart window(next(), end());
    open(window);
    EXPECT_TRUE(button(window, "cmdOK").isHidden());
    QTest::keyClick(&window, Qt::Key_Return);
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(went, 0);
    const QPoint start = find<QLabel>(window, "lbl2").pos();
    ASSERT_TRUE(QTest::qWaitFor([&window] { return !button(window, "cmdOK").isHidden(); }, 10'000));
    EXPECT_FALSE(find<QLabel>(window, "lblGo").isHidden());
    EXPECT_NE(find<QLabel>(window, "lbl2").pos(), start);
    QTest::keyClick(&button(window, "cmdOK"), Qt::Key_Return);
    EXPECT_EQ(went, 1);
    EXPECT_EQ(ended, 0);

    shell::frmStart closed(next(), end());
    open(closed);
    closed.close();
    EXPECT_EQ(ended, 1);
}

struct Login {
    const char* file; ///< content of lgn.lgn, null for none
    const char* typed;
    bool enters;
};

TEST_F(SmallWindows, LoginComparesTheTrimmedTextExactly) {
    const Login cases[] = {
        {nullptr, "", true},
        {nullptr, "   ", true},
        {nullptr, "x", false},
        {"", "", true},
        {"\r\n", " ", true},
        {"Level7\r\n", "Level7", true},
        {"Level7", "  Level7 ", true},
        {"  Level7  \n", "Level7", true},
        {"Level7\n", "level7", false},
        {"Level7\n", "", false},
        {"a b\nc\n", "a b", true},
        {"\xEF\xBB\xBFpass\r\n", "pass", true},
        {"\xE9t\xE9\r\n", "été", true},
    };
    for (const Login& one : cases) {
        SCOPED_TRACE(std::string(one.file == nullptr ? "no file" : one.file) + " / " + one.typed);
        std::filesystem::remove(folder / "lgn.lgn");
        if (one.file != nullptr) folder.write("lgn.lgn", one.file);
        went = 0;
        desktop.boxes.clear();
        shell::frmLogin window(desktop, next(), end());
        open(window);
        EXPECT_EQ(QApplication::focusWidget(), &box(window, "txtPassword"));
        box(window, "txtUserName").setText(QStringLiteral("anybody"));
        box(window, "txtPassword").setText(QString::fromUtf8(one.typed));
        QTest::keyClick(&box(window, "txtPassword"), Qt::Key_Return);
        EXPECT_EQ(went, one.enters ? 1 : 0);
        if (one.enters)
            EXPECT_THAT(messages(), ElementsAre());
        else
            EXPECT_THAT(messages(), ElementsAre("Invalid Password, try again!|Login"));
    }
}

TEST_F(SmallWindows, LoginSelectsAWrongPasswordForRetyping) {
    folder.write("lgn.lgn", "right\r\n");
    shell::frmLogin window(desktop, next(), end());
    open(window);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Login"));
    EXPECT_EQ(box(window, "txtPassword").echoMode(), QLineEdit::Password);
    QTest::keyClicks(&box(window, "txtPassword"), QStringLiteral("wrong"));
    click(window, "cmdOK");
    EXPECT_EQ(QApplication::focusWidget(), &box(window, "txtPassword"));
    EXPECT_EQ(box(window, "txtPassword").selectedText().size(), 5);
    QTest::keyClicks(&box(window, "txtPassword"), QStringLiteral("right"));
    click(window, "cmdOK");
    EXPECT_EQ(went, 1);
}

TEST_F(SmallWindows, LoginMakesAnEmptyStoreForItsOwnerAlone) {
    const mode_t before = umask(0);
    const shell::frmLogin window(desktop, next(), end());
    umask(before);
    EXPECT_EQ(folder.read("lgn.lgn"), "\r\n");
    EXPECT_EQ(modeOf("lgn.lgn"), 0600U);
}

TEST_F(SmallWindows, LoginEndsOnCancelEscAndClose) {
    const std::function<void(shell::frmLogin&)> ways[] = {
        [](shell::frmLogin& window) { click(window, "cmdCancel"); },
        [](shell::frmLogin& window) { QTest::keyClick(&window, Qt::Key_Escape); },
        [](shell::frmLogin& window) { window.close(); }};
    for (const auto& way : ways) {
        ended = 0;
        shell::frmLogin window(desktop, next(), end());
        open(window);
        way(window);
        EXPECT_EQ(ended, 1);
    }
    EXPECT_EQ(went, 0);
}

TEST_F(SmallWindows, DamagedStoresAreToldAndLeftAlone) {
    folder.write("suprt.dll", "no database at all");
    shell::frmLogin login(desktop, next(), end());
    open(login);
    EXPECT_FALSE(find<QLabel>(login, "lblStore").isHidden());
    QTest::keyClicks(&box(login, "txtPassword"), QStringLiteral("guess"));
    click(login, "cmdOK");
    EXPECT_EQ(went, 0);

    shell::frmPwd change(desktop);
    open(change);
    click(change, "cmdOK"); // nothing is known of the old password
    QTest::keyClicks(&box(change, "txtNew"), QStringLiteral("n"));
    QTest::keyClicks(&box(change, "txtREnt"), QStringLiteral("n"));
    click(change, "cmdOK");
    EXPECT_TRUE(change.isVisible());
    EXPECT_THAT(labelText(change, "lblStore"), testing::StartsWith("The password was not changed: "));
    EXPECT_EQ(folder.read("suprt.dll"), "no database at all");
    EXPECT_FALSE(std::filesystem::exists(folder / "lgn.lgn"));
}

TEST_F(SmallWindows, AStoreInThePlaceOfAFolderIsTold) {
    std::filesystem::create_directory(folder / "lgn.lgn");
    const shell::frmLogin login(desktop, next(), end());
    EXPECT_THAT(labelText(login, "lblStore"), testing::StartsWith("The stored password cannot be read: "));
}

class ChangePassword : public SmallWindows {
  protected:
    std::unique_ptr<shell::frmPwd> window;

    void openWith(const char* stored) {
        folder.write("lgn.lgn", stored);
        window = std::make_unique<shell::frmPwd>(desktop);
        open(*window);
    }
    void type(const char* name, const char* text) {
        box(*window, name).clear();
        QTest::keyClicks(&box(*window, name), QString::fromUtf8(text));
    }
    void enter(const char* name) { QTest::keyClick(&box(*window, name), Qt::Key_Return); }
    bool focused(const char* name) const {
        const QWidget* focus = QApplication::focusWidget();
        return focus != nullptr && focus->objectName() == QLatin1String(name);
    }
};

TEST_F(ChangePassword, EnterGoesFromBoxToBoxAndStores) {
    openWith("old\r\n");
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Password..."));
    EXPECT_EQ(labelText(*window, "lblOld"), "Enter old Passward:");
    EXPECT_EQ(labelText(*window, "lblNew"), "Enter New Passward:");
    EXPECT_EQ(labelText(*window, "lblREnt"), "ReEnter New Passward:");
    for (const char* name : {"txtNew", "txtREnt", "lblNew", "lblREnt"})
        EXPECT_TRUE(find<QWidget>(*window, name).isHidden()) << name;

    type("txtOld", " old ");
    enter("txtOld");
    EXPECT_TRUE(focused("txtNew"));
    type("txtNew", " new one ");
    enter("txtNew");
    EXPECT_TRUE(focused("txtREnt"));
    type("txtREnt", " new one ");
    enter("txtREnt");
    EXPECT_TRUE(focused("cmdOK"));
    EXPECT_THAT(messages(), ElementsAre());
    QTest::keyClick(&button(*window, "cmdOK"), Qt::Key_Return);
    EXPECT_THAT(messages(), ElementsAre("Your Passward is successfully changed|"));
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(folder.read("lgn.lgn"), "new one\r\n");
    EXPECT_EQ(modeOf("lgn.lgn"), 0600U);
}

TEST_F(ChangePassword, AWrongOldOneIsRefused) {
    openWith("old\r\n");
    for (const char* wrong : {"", "Old", "new"}) {
        type("txtOld", wrong);
        enter("txtOld");
        EXPECT_TRUE(focused("txtOld"));
    }
    click(*window, "cmdOK"); // the same as Enter while the new boxes are hidden
    EXPECT_EQ(desktop.boxes.size(), 4U);
    EXPECT_EQ(messages().back(), "Your Password is wrong...Try again|");
    EXPECT_TRUE(box(*window, "txtNew").isHidden());
    click(*window, "cmdCancel");
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(folder.read("lgn.lgn"), "old\r\n");
}

TEST_F(ChangePassword, TheNewOnesAreComparedAsTyped) {
    openWith("\r\n");
    enter("txtOld");
    type("txtNew", "a ");
    type("txtREnt", "a");
    click(*window, "cmdOK");
    EXPECT_THAT(messages(), ElementsAre("Your ReEntered Passward is wrong..., try again|"));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(folder.read("lgn.lgn"), "\r\n");
    type("txtREnt", "a ");
    click(*window, "cmdOK");
    EXPECT_EQ(folder.read("lgn.lgn"), "a\r\n");
}

TEST_F(SmallWindows, HelpWithoutItsFileOpensEmpty) {
    shell::frmHelp window(desktop);
    EXPECT_THAT(messages(), ElementsAre("Sorry, Help File not available ...|"));
    open(window);
    EXPECT_EQ(find<QTextBrowser>(window, "RTB").toPlainText(), QString());
    EXPECT_EQ(QApplication::focusWidget(), &button(window, "cmdOK"));
    QTest::keyClick(&button(window, "cmdOK"), Qt::Key_Return);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(SmallWindows, HelpShowsItsFileAndBehindCtrlGTheCredits) {
    folder.write("zavrogrl.RTF", "{\\rtf1 Help \\b text\\par}");
    shell::frmHelp window(desktop);
    open(window);
    auto& help = find<QTextBrowser>(window, "RTB");
    const auto& credits = find<QLabel>(window, "lbl");
    EXPECT_EQ(help.toPlainText().trimmed(), QStringLiteral("Help text"));
    EXPECT_TRUE(credits.isHidden());

    QTest::keyClick(&button(window, "cmdOK"), Qt::Key_G); // G alone does nothing
    EXPECT_TRUE(credits.isHidden());
    QTest::keyClick(&button(window, "cmdOK"), Qt::Key_G, Qt::ControlModifier);
    EXPECT_TRUE(help.isHidden());
    EXPECT_EQ(help.toPlainText(), QString());
    EXPECT_FALSE(credits.isHidden());
    EXPECT_EQ(credits.palette().color(QPalette::WindowText), QColor(Qt::white));
    EXPECT_EQ(credits.font().pointSize(), 30);
    const int top = credits.y();
    EXPECT_TRUE(QTest::qWaitFor([&credits, top] { return credits.y() < top - 6; }, 10'000));

    const int later = credits.y();
    QTest::keyClick(&button(window, "cmdOK"), Qt::Key_G, Qt::ControlModifier); // again, from where it is
    EXPECT_EQ(credits.font().pointSize(), 30);
    EXPECT_LE(credits.y(), later);
    EXPECT_GT(credits.y(), 0);
}

TEST_F(SmallWindows, AboutNamesTheProgram) {
    shell::frmAbout window;
    open(window);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("About ZavroGrl"));
    EXPECT_EQ(labelText(window, "lblTitle"), "ZavroGrl");
    EXPECT_EQ(labelText(window, "lblVersion"), "Version 1.2.3");
    EXPECT_FALSE(labelText(window, "lblDescription").empty());
    EXPECT_EQ(button(window, "cmdSysInfo").text(), QStringLiteral("&System Info..."));
    click(window, "cmdSysInfo");
    EXPECT_TRUE(window.isVisible());
    click(window, "cmdOK");
    EXPECT_FALSE(window.isVisible());
}

TEST_F(SmallWindows, TheChainShowsOneWindowAfterTheOther) {
    folder.write("lgn.lgn", "pass\r\n");
    shell::StartChain chain(desktop, next(), end());
    const auto waitFor = [&chain](const char* name) {
        const auto shown = [&chain, name] {
            return chain.current() != nullptr && chain.current()->objectName() == QLatin1String(name) &&
                   chain.current()->isVisible();
        };
        return QTest::qWaitFor(shown, 10'000);
    };
    chain.showSplash();
    ASSERT_TRUE(waitFor("frmSplash"));
    QTest::keyClick(chain.current(), Qt::Key_Escape);
    ASSERT_TRUE(waitFor("frmStart"));
    ASSERT_TRUE(QTest::qWaitFor([&chain] { return !button(*chain.current(), "cmdOK").isHidden(); }, 10'000));
    click(*chain.current(), "cmdOK");
    ASSERT_TRUE(waitFor("frmLogin"));
    const QWidgetList windows = QApplication::topLevelWidgets();
    EXPECT_EQ(
        std::count_if(windows.begin(), windows.end(), [](const QWidget* one) { return one->isVisible(); }),
        1);
    QTest::keyClicks(&box(*chain.current(), "txtPassword"), QStringLiteral("pass"));
    QTest::keyClick(&box(*chain.current(), "txtPassword"), Qt::Key_Return);
    EXPECT_EQ(went, 1);
    EXPECT_EQ(chain.current(), nullptr);
    EXPECT_EQ(ended, 0);
}

} // namespace
