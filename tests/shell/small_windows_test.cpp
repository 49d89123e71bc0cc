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
void type(const QWidget& window, const char* name, const char* text) {
    box(window, name).clear();
    QTest::keyClicks(&box(window, name), QLatin1String(text));
}
void enter(const QWidget& window, const char* name) {
    QTest::keyClick(&find<QWidget>(window, name), Qt::Key_Return);
}
std::string focused() {
    const QWidget* focus = QApplication::focusWidget();
    return focus == nullptr ? "" : shell::toUtf8(focus->objectName());
}
void open(QWidget& window) {
    window.show();
    if (!QTest::qWaitForWindowActive(&window)) ADD_FAILURE() << "the window does not open";
}

using Texts = std::vector<std::string>;

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
    const std::function<void()> next = [this] { ++went; };
    const std::function<void()> end = [this] { ++ended; };
    std::vector<std::string> messages() const {
        std::vector<std::string> texts;
        for (const ScriptedDesktop::Box& box : desktop.boxes)
            texts.push_back(box.text + "|" + box.title);
        return texts;
    }
};

TEST_F(SmallWindows, SplashGivesWayByTimeEscOrClickOnce) {
    shell::frmSplash timed(next);
    open(timed);
    EXPECT_EQ(labelText(timed, "lblVer"), "Version 1.2.3");
    QTest::keyClick(&timed, Qt::Key_A);
    EXPECT_EQ(went, 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return went == 1; }, 10'000));
    shell::frmSplash clicked(next);
    open(clicked);
    QTest::mouseClick(&clicked, Qt::LeftButton);
    QTest::keyClick(&clicked, Qt::Key_Escape);
    EXPECT_EQ(went, 2);
}

TEST_F(SmallWindows, TheChainGoesFromTheSplashToTheMainWindow) {
    folder.write("lgn.lgn", "pass\r\n");
    shell::StartChain chain(desktop, next, end);
    const auto waitFor = [&chain](const char* name) -> QWidget& {
        const auto shown = [&chain, name] {
            return chain.current() != nullptr && chain.current()->objectName() == QLatin1String(name) &&
                   chain.current()->isVisible();
        };
        if (!QTest::qWaitFor(shown, 10'000)) throw std::runtime_error(std::string(name) + " does not come");
        return *chain.current();
    };
    chain.showSplash();
    QTest::keyClick(&waitFor("frmSplash"), Qt::Key_Escape);
    QWidget& product = waitFor("frmStart");
    QPushButton& ok = button(product, "cmdOK");
    EXPECT_TRUE(ok.isHidden()) << "its button comes after a moment";
    const QPoint start = find<QLabel>(product, "lbl2").pos();
    ASSERT_TRUE(QTest::qWaitFor([&ok] { return !ok.isHidden(); }, 10'000));
    EXPECT_NE(find<QLabel>(product, "lbl2").pos(), start);
    QTest::keyClick(&ok, Qt::Key_Return);
    QWidget& login = waitFor("frmLogin");
    const QWidgetList windows = QApplication::topLevelWidgets();
    EXPECT_EQ(1, std::count_if(windows.begin(), windows.end(),
                               [](const QWidget* one) { return one->isVisible(); }));
    type(login, "txtPassword", "pass");
    enter(login, "txtPassword");
    EXPECT_EQ(std::pair(went, ended), std::pair(1, 0));
    EXPECT_EQ(chain.current(), nullptr);
    shell::frmStart closed(next, end);
    open(closed);
    closed.close();
    EXPECT_EQ(ended, 1);
}

TEST_F(SmallWindows, LoginComparesTheTrimmedTextExactly) {
    folder.write("lgn.lgn", "  Level7 \n");
    for (const auto& [typed, enters] :
         {std::pair("  Level7  ", true), {"Level7", true}, {"level7", false}, {"", false}}) {
        SCOPED_TRACE(typed);
        went = 0;
        desktop.boxes.clear();
        shell::frmLogin window(desktop, next, end);
        open(window);
        EXPECT_EQ(focused(), "txtPassword");
        type(window, "txtPassword", typed);
        enter(window, "txtPassword");
        EXPECT_EQ(went, enters);
        EXPECT_EQ(messages(), enters ? Texts() : Texts{"Invalid Password, try again!|Login"});
        EXPECT_EQ(box(window, "txtPassword").selectedText().toStdString(), enters ? "" : typed)
            << "a wrong one is typed anew";
    }
}

TEST_F(SmallWindows, LoginEndsOnCancelEscAndClose) {
    const std::function<void(shell::frmLogin&)> ways[] = {
        [](shell::frmLogin& login) { click(login, "cmdCancel"); },
        [](shell::frmLogin& login) { QTest::keyClick(&login, Qt::Key_Escape); },
        [](shell::frmLogin& login) { login.close(); }};
    for (const auto& way : ways) {
        ended = 0;
        shell::frmLogin login(desktop, next, end);
        open(login);
        way(login);
        EXPECT_EQ(ended, 1);
    }
    EXPECT_EQ(went, 0);
}

TEST_F(SmallWindows, DamagedStoresAreToldAndLeftAlone) {
    std::filesystem::create_directory(folder / "lgn.lgn"); // in the place of a store
    for (const bool database : {false, true}) {
        if (database) folder.write("suprt.dll", "no database at all");
        shell::frmLogin login(desktop, next, end);
        EXPECT_THAT(labelText(login, "lblStore"),
                    testing::StartsWith("The stored password cannot be read: "));
        EXPECT_THAT(labelText(login, "lblStore"), testing::HasSubstr(database ? "suprt.dll" : "lgn.lgn"));
        open(login);
        QTest::keyClick(login.findChild<QLineEdit*>("txtPassword"), Qt::Key_Return);
        EXPECT_EQ(went, 0) << "the empty password opens nothing then";
    }
    shell::frmPwd change(desktop);
    open(change);
    enter(change, "txtOld"); // nothing is known of the old password
    click(change, "cmdOK");
    EXPECT_TRUE(find<QLineEdit>(change, "txtNew").isHidden());
    EXPECT_THAT(labelText(change, "lblStore"), testing::HasSubstr("Put a readable copy of the file back"));
    EXPECT_EQ(folder.read("suprt.dll"), "no database at all");
    EXPECT_TRUE(std::filesystem::is_empty(folder / "lgn.lgn"));
}

TEST_F(SmallWindows, APasswordIsChangedWhenAllThreeBoxesAreRight) {
    folder.write("lgn.lgn", "old\r\n");
    shell::frmPwd window(desktop);
    open(window);
    type(window, "txtOld", "Old");
    enter(window, "txtOld");
    EXPECT_EQ(focused(), "txtOld");
    click(window, "cmdOK"); // the same as Enter while the new boxes are hidden
    for (const char* name : {"txtNew", "txtREnt", "lblNew", "lblREnt"})
        EXPECT_TRUE(find<QWidget>(window, name).isHidden()) << name;
    type(window, "txtOld", " old ");
    enter(window, "txtOld");
    type(window, "txtNew", " new one ");
    enter(window, "txtNew");
    EXPECT_EQ(focused(), "txtREnt");
    type(window, "txtREnt", "new one"); // they are compared as typed
    enter(window, "txtREnt");
    EXPECT_EQ(focused(), "cmdOK");
    enter(window, "cmdOK");
    EXPECT_EQ(folder.read("lgn.lgn"), "old\r\n");
    type(window, "txtREnt", " new one ");
    enter(window, "cmdOK");
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(folder.read("lgn.lgn"), "new one\r\n");
    const std::string wrong = "Your Password is wrong...Try again|";
    EXPECT_THAT(messages(), ElementsAre(wrong, wrong, "Your ReEntered Passward is wrong..., try again|",
                                        "Your Passward is successfully changed|"));
}

TEST_F(SmallWindows, HelpWithoutItsFileOpensEmpty) {
    shell::frmHelp window(desktop);
    EXPECT_THAT(messages(), ElementsAre("Sorry, Help File not available ...|"));
    open(window);
    EXPECT_EQ(find<QTextBrowser>(window, "RTB").toPlainText(), QString());
    EXPECT_EQ(focused(), "cmdOK");
    enter(window, "cmdOK");
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
    const int top = credits.y();
    EXPECT_TRUE(QTest::qWaitFor([&credits, top] { return credits.y() < top - 6; }, 10'000));

    QTest::keyClick(&button(window, "cmdOK"), Qt::Key_G, Qt::ControlModifier); // again, from where it is
    EXPECT_EQ(credits.font().pointSize(), 30);
    EXPECT_LT(credits.y(), top);
}

TEST_F(SmallWindows, AboutNamesTheVersion) {
    shell::frmAbout window;
    open(window);
    EXPECT_EQ(labelText(window, "lblVersion"), "Version 1.2.3");
    click(window, "cmdSysInfo");
    EXPECT_TRUE(window.isVisible());
    click(window, "cmdOK");
    EXPECT_FALSE(window.isVisible());
}

} // namespace
