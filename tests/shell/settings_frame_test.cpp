#include "window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QRadioButton>

namespace {

class Settings : public MainWindow {
  protected:
    sheet::Settings& settings() { return window->book().settings; }
    QListWidget& list() { return control<QListWidget>("lstOft"); }
    void tick(const char* name, bool on = true) { control<QCheckBox>(name).setChecked(on); }
    void add(const char* distance, const char* side) {
        control<QRadioButton>(side).setChecked(true);
        control<QLineEdit>("txtOft").setText(QLatin1String(distance));
        click("cmdAdd");
    }
};

TEST_F(Settings, TheControlsAndTheSettingsSayTheSame) {
    open();
    click("cmdList");
    EXPECT_TRUE(shown("ff"));
    EXPECT_FALSE(window->grid().isEnabled());
    control<QComboBox>("cboIncr").setEditText(QStringLiteral("12.5"));
    struct Side {
        const char* typed;
        int index;
        bool left;
    };
    for (const Side& side : {Side{"right", -1, false}, Side{"L", -1, true}, Side{"Left", 0, true},
                             Side{"", -1, false}, Side{"Right", 1, false}}) {
        control<QComboBox>("cboSide").setEditText(QLatin1String(side.typed));
        EXPECT_EQ(settings().cboSide, side.typed);
        EXPECT_EQ(settings().cboSideIndex, side.index) << side.typed;
        EXPECT_EQ(settings().startsLeft(), side.left) << side.typed;
    }
    const char* offsets[] = {"lstOft",  "cmdAdd", "optLeft", "optRight",
                             "optBoth", "lblOft", "txtOft",  "txtAdd"};
    for (const bool on : {false, true, false, true}) {
        for (const char* name : {"chkAuto", "chkOft", "chkFinal", "chk005", "chkAdd"})
            tick(name, on);
        for (const char* name : offsets)
            EXPECT_EQ(shown(name), on) << name;
    }
    control<QLineEdit>("txtAdd").setText(QStringLiteral("0.1"));
    click("cmdOK");
    EXPECT_FALSE(shown("ff"));
    EXPECT_TRUE(window->grid().hasFocus());
    EXPECT_EQ(folder.read("ZavroGRL.LVX"), "0112.5\r\n021\r\n031\r\n041\r\n051\r\n510.1\r\n061\r\n");
}

TEST_F(Settings, TheListIsFilledByTheButtonAndEmptiedByItsKey) {
    folder.write("zavrogrl.lvx", "0125\r\n021\r\n031\r\n041\r\n061\r\n61R02.50\r\n61L03.00\r\n");
    open();
    EXPECT_EQ(control<QComboBox>("cboIncr").currentText(), QStringLiteral("25"));
    EXPECT_EQ(control<QComboBox>("cboSide").currentText(), QStringLiteral("Right"));
    EXPECT_TRUE(control<QCheckBox>("chk005").isChecked() && control<QCheckBox>("chkFinal").isChecked());
    EXPECT_FALSE(control<QCheckBox>("chkAdd").isChecked());
    ASSERT_EQ(list().count(), 2);
    EXPECT_EQ(list().item(1)->text(), QStringLiteral("L03.00")) << "in file order";
    settings().lstOft.clear();
    click("cmdList");
    tick("chkOft");
    add("10", "optRight");
    add("2.5", "optBoth");
    add("1", "optLeft");
    EXPECT_EQ(settings().lstOft, (std::vector<std::string>{"L01.00", "L02.50", "R02.50", "R10.00"}));
    EXPECT_EQ(list().count(), 4);
    EXPECT_TRUE(control<QLineEdit>("txtOft").hasFocus());
    list().setCurrentRow(1);
    QTest::keyClick(&list(), Qt::Key_Delete);
    EXPECT_EQ(settings().lstOft, (std::vector<std::string>{"L01.00", "R02.50", "R10.00"}));
    click("cmdOK");
    EXPECT_EQ(window->book().RightOffsets[2], 10.0F);
}

TEST_F(Settings, TooManyOffsetsKeepTheFrameOpenAndAFileThatCannotBeWrittenDoesNot) {
    open();
    std::filesystem::create_directory(folder / "ZavroGRL.LVX");
    for (const bool tooMany : {true, false}) {
        settings().lstOft.assign(tooMany ? 201 : 0, "L01.00");
        if (tooMany) click("cmdList");
        answering({"OK"}, [this] { click("cmdOK"); });
        EXPECT_EQ(shown("ff"), tooMany);
        EXPECT_EQ(window->grid().isEnabled(), !tooMany);
    }
}

TEST_F(Settings, NoTextIsCutAtAnyFontSize) {
    const QFont standard = QApplication::font();
    for (const double points : {8.0, 12.0, 20.0}) {
        SCOPED_TRACE(points);
        QFont larger = standard;
        larger.setPointSizeF(points);
        QApplication::setFont(larger);
        open();
        click("cmdList");
        tick("chkOft");
        tick("chkAdd");
        QApplication::processEvents();
        const auto& frame = control<QWidget>("ff");
        EXPECT_TRUE(frame.parentWidget()->rect().contains(frame.geometry()));
        for (const QWidget* widget : frame.findChildren<QWidget*>()) {
            const bool text = widget->inherits("QLabel") || widget->inherits("QAbstractButton");
            if (!text || !widget->isVisible()) continue;
            EXPECT_GE(widget->width(), widget->minimumSizeHint().width())
                << shell::toUtf8(widget->objectName());
            EXPECT_GE(widget->height(), widget->fontMetrics().height())
                << shell::toUtf8(widget->objectName());
        }
        const auto& ok = control("cmdOK");
        EXPECT_TRUE(frame.rect().contains(QRect(ok.mapTo(&frame, QPoint()), ok.size())))
            << "OK is always in reach";
        for (const char* name : {"cmdNew", "cmdS", "cmdP", "cmdExport", "cmdExit"}) {
            const auto& button = control(name);
            EXPECT_LE(button.heightForWidth(button.width()), button.height()) << name;
        }
        window.reset();
    }
    QApplication::setFont(standard);
}

} // namespace
