#include "player.h"

#include "key_text.h"
#include "outcome.h"

#include "shell/controls/flex_grid.h"
#include "shell/controls/grid_model.h"
#include "tools/start_routine.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPixmap>
#include <QScrollBar>
#include <QTest>

#include <array>
#include <cstring>
#include <utility>

namespace replay {
namespace {

constexpr const char* bookPath = "work/book.grl";

QStringList texts(const QJsonArray& values) {
    QStringList result;
    for (const QJsonValue value : values) {
        if (value.isBool())
            result += value.toBool() ? "True" : "False"; // as a spreadsheet gives it
        else
            result += value.isNull() ? QString() : value.toVariant().toString();
    }
    return result;
}

bool canBeUsed(const QWidget& widget) {
    return widget.isVisible() && widget.isEnabled();
}

// A check box or an option is clicked on its mark: its caption need not reach to the middle of its box.
void clickOn(QWidget& control) {
    if (!canBeUsed(control)) return;
    const auto* button = qobject_cast<QAbstractButton*>(&control);
    const bool hasMark = button != nullptr && button->isCheckable();
    QTest::mouseClick(&control, Qt::LeftButton, {}, hasMark ? QPoint(10, control.height() / 2) : QPoint());
}

void setText(QWidget* box, const QString& text) {
    if (auto* line = qobject_cast<QLineEdit*>(box)) line->setText(text);
    if (auto* combo = qobject_cast<QComboBox*>(box)) combo->setEditText(text);
}

} // namespace

class SheetStandIn final : public spreadsheet::RunningSpreadsheet {
  public:
    QJsonValue rows; // null: none running

    std::vector<spreadsheet::Row> readSheet(const spreadsheet::GoOn&) override {
        if (!rows.isArray())
            throw spreadsheet::Error(spreadsheet::Failure::NotRunning, "No spreadsheet program is running.");
        std::vector<spreadsheet::Row> result;
        const QJsonArray sheet = rows.toArray();
        for (qsizetype number = 0; number < sheet.size(); ++number) {
            const QStringList cells = texts(sheet[number].toArray());
            // The sheet's heading, which a session may leave out, is not part of what is read.
            if (number == 0 && cells.value(0).compare("chainage", Qt::CaseInsensitive) == 0) continue;
            spreadsheet::Row& row = result.emplace_back();
            for (std::size_t col = 0; col < row.size(); ++col)
                row[col] = cells.value(qsizetype(col)).toStdString();
        }
        return result;
    }
};

Player::Player(World& world)
    : m_world(world), m_watcher([&world](const QString& path) { return world.path(path); }) {}

Player::~Player() = default;

void Player::openWindow() {
    m_window.reset(); // the program that ran before is gone when the next one starts
    m_sheet = std::make_shared<SheetStandIn>();
    shell::Surroundings surroundings;
    surroundings.programFolder = m_world.programFolder();
    surroundings.hasTrash = false;
    surroundings.offersRecovery = false;
    surroundings.endProgram = [] {};
    surroundings.beeped = [this] { ++m_beeps; };
    surroundings.spreadsheet = m_sheet;
    mdlTools::Main([&] { m_window = std::make_unique<shell::frmGrl>(std::move(surroundings)); });
    m_window->Form_Load();
    m_window->activateWindow();
    settle();
}

void Player::start(const Session& session) {
    openWindow();
    if (session.settings) setSettings(*session.settings);
    if (session.fresh) return;
    // The box comes when the session lays down a book of that name.
    m_watcher.expect({QJsonObject{{"file", bookPath}}, QJsonObject{{"box", "Yes"}}});
    press("cmdNew");
    m_watcher.forgetDialogs();
}

void Player::settle() {
    for (int round = 0; round < 3; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

// Only in the active window does a control get and lose the focus; a dialog that closed leaves none active.
void Player::bringToFront() {
    m_window->activateWindow();
    static_cast<void>(QTest::qWaitForWindowActive(m_window.get(), 1000));
}

QWidget* Player::control(const QString& name) const {
    for (QWidget* found : m_window->findChildren<QWidget*>(name)) {
        if (found->isVisible()) return found;
    }
    return m_window->findChild<QWidget*>(name);
}

void Player::press(const QString& button) {
    QWidget* found = control(button);
    if (found == nullptr) throw SessionError("no button " + button);
    clickOn(*found);
    settle();
}

void Player::pressIn(const QString& frame, const QString& button) {
    const QWidget* panel = control(frame);
    QWidget* found = panel == nullptr ? nullptr : panel->findChild<QWidget*>(button);
    if (found == nullptr) throw SessionError("no button " + button + " in " + frame);
    clickOn(*found);
    settle();
}

void Player::chooseMenu(const QString& item) {
    auto* action = m_window->findChild<QAction*>(item);
    if (action == nullptr) throw SessionError("no menu item " + item);
    for (QAction* title : m_window->menuBar()->actions()) {
        QMenu* menu = title->menu();
        if (menu == nullptr || !menu->actions().contains(action) || !action->isVisible()) continue;
        menu->popup(
            m_window->menuBar()->mapToGlobal(m_window->menuBar()->actionGeometry(title).bottomLeft()));
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        menu->hide();
    }
    settle();
}

void Player::keys(const QString& keys, const QString& to) {
    QWidget* target = to.isEmpty() ? &m_window->grid() : control(to);
    if (target == nullptr) throw SessionError("no control " + to);
    for (const Stroke& stroke : parseKeys(keys)) {
        if (!canBeUsed(*target)) break;                  // keys never land in another control
        if (!m_window->isActiveWindow()) bringToFront(); // or a shortcut would reach the grid as a character
        target->setFocus();
        send(*target, stroke);
        settle();
    }
}

void Player::takeHistory(const char* item, const QJsonValue& steps) {
    auto* action = m_window->findChild<QAction*>(QLatin1String(item));
    const sheet::Journal& journal = m_window->journal();
    const bool back = std::strcmp(item, "mnuUndo") == 0;
    int left = steps.isString() ? (back ? journal.undoSteps() : journal.redoSteps()) : steps.toInt();
    for (; left > 0; --left) {
        action->trigger();
        settle();
    }
}

QPoint Player::showCell(int row, int col) {
    shell::FlexGrid& grid = m_window->grid();
    const QModelIndex index = grid.model()->index(row - 1, col);
    grid.scrollTo(index);
    return grid.visualRect(index).center();
}

void Player::click(const QJsonArray& cells) {
    shell::FlexGrid& grid = m_window->grid();
    if (!canBeUsed(grid)) return;
    const QPoint first = showCell(cells[0].toInt(), cells[1].toInt());
    QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, first);
    QPoint last = first;
    if (cells.size() == 4) {
        last = showCell(cells[2].toInt(), cells[3].toInt());
        QTest::mouseMove(grid.viewport(), last);
        settle();
    }
    QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, last);
    settle();
}

void Player::preset(const QJsonArray& rows) {
    QStringList lines;
    for (const QJsonValue row : rows) {
        QStringList cells = texts(row.toArray());
        cells.resize(sheet::columnCount);
        lines += cells.join(u'\t');
    }
    QGuiApplication::clipboard()->setText(lines.join(u'\r'));
    m_window->act({.name = "Preset"}, [this] {
        sheet::Grid& grid = m_window->book().MSFG;
        grid.setRows(1);
        grid.setRows(2);
        grid.moveTo(1, sheet::Chainage);
        keys("{CTRL+V}", {});
    });
}

void Player::listChangePoints() {
    m_watcher.handle("frmCP", [this](QWidget& list) {
        auto* grid = list.findChild<shell::FlexGrid*>("MSFG");
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {},
                           grid->visualRect(grid->model()->index(0, 0)).center());
        settle();
        if (onScene) onScene(QStringLiteral("list"), list.grab());
        list.close();
    });
    press("cmdCP");
}

void Player::setSettings(const QJsonObject& values) {
    press("cmdList");
    const auto setBox = [this](const char* name, const QJsonValue& value) {
        if (!value.isUndefined()) setText(control(name), value.toVariant().toString());
    };
    const auto tick = [this](const char* name, const QJsonValue& value) {
        auto* box = qobject_cast<QCheckBox*>(control(name));
        if (!value.isUndefined() && box != nullptr && box->isChecked() != (value.toInt() == 1))
            pressIn("ff", name);
    };
    setBox("cboIncr", values["incr"]);
    setBox("cboSide", values["side"]);
    tick("chkAuto", values["auto"]);
    tick("chkFinal", values["final"]);
    tick("chk005", values["chk005"]);
    tick("chkAdd", values["add"]);
    setBox("txtAdd", values["txt_add"]);
    const int oft = values["oft"].toInt(m_window->book().settings.chkOft ? 1 : 0);
    if (values.contains("list")) {
        tick("chkOft", 1); // shows the list's controls
        setOffsets(texts(values["list"].toArray()));
    }
    tick("chkOft", oft);
    pressIn("ff", "cmdOK");
    if (values.contains("guarded") && m_window->book().Guarded != (values["guarded"].toInt() == 1))
        chooseMenu("mnuGuarded");
}

// Added with the frame's own controls. A list that these would put into another order is laid in as it is, as
// a settings file would.
void Player::setOffsets(const QStringList& offsets) {
    auto* list = m_window->findChild<QListWidget*>("lstOft");
    while (list->count() > 0) {
        list->setCurrentRow(0);
        send(*list, {Qt::Key_Delete, {}, "\x7f"});
    }
    for (const QString& offset : offsets) {
        pressIn("ff", offset.startsWith(u'L') ? "optLeft" : "optRight");
        setText(control("txtOft"), offset.mid(1));
        pressIn("ff", "cmdAdd");
    }
    auto& kept = m_window->book().settings.lstOft;
    std::vector<std::string> asked;
    for (const QString& offset : offsets)
        asked.push_back(offset.toStdString());
    if (kept == asked) return;
    kept = std::move(asked);
    list->clear();
    list->addItems(offsets);
}

void Player::transfer(const QJsonObject& values) {
    // The boxes that compute when they are left come last, so that they compute with the others' values.
    static constexpr std::array<std::pair<const char*, const char*>, 15> boxes{{{"name", "txtName"},
                                                                                {"subdiv", "txtSubDiv"},
                                                                                {"div", "txtDiv"},
                                                                                {"survey", "txtSurvey"},
                                                                                {"lw", "txtLW"},
                                                                                {"rw", "txtRW"},
                                                                                {"tw", "txtTW"},
                                                                                {"crg", "txtCrgWid"},
                                                                                {"fill", "cboFill"},
                                                                                {"cut", "cboCut"},
                                                                                {"ddrn", "txtDDrn"},
                                                                                {"wdrn", "txtWDrn"},
                                                                                {"gis", "cboGIS"},
                                                                                {"gos", "cboGOS"},
                                                                                {"topw", "txtTopW"}}};
    press("cmdExport");
    const QWidget* frame = control("fExport");
    if (frame == nullptr || !frame->isVisible()) return;
    if (auto* box = frame->findChild<QCheckBox*>("chkFRL"); box->isChecked()) pressIn("fExport", "chkFRL");
    if (values.contains("width")) pressIn("fExport", values["width"] == "sides" ? "optWLR" : "optWTot");
    if (values.contains("gutter")) pressIn("fExport", values["gutter"] == "top" ? "optGut1" : "optGut0");
    const bool leave = values["leave"].toBool() || values["leave"].toInt() == 1;
    for (const auto& [name, box] : boxes) {
        if (!values.contains(name)) continue;
        QWidget* field = control(box);
        if (leave) {
            bringToFront();
            field->setFocus();
        }
        setText(field, values[name].toVariant().toString());
        if (!leave) continue;
        frame->findChild<QWidget*>("cmdTr")->setFocus();
        settle();
    }
    if (onScene) onScene(QStringLiteral("frame"), picture());
    pressIn("fExport", "cmdTr");
}

void Player::sendFormation(const QString& database, bool update) {
    press("cmdExport");
    const QWidget* frame = control("fExport");
    if (frame == nullptr || !frame->isVisible()) return;
    m_watcher.expect({QJsonObject{{"file", database}}});
    pressIn("fExport", "cmdSel");
    if (update) {
        keys("{CTRL+ENTER}", "cmdTr");
        pressIn("fExport", "cmdCancel");
        return;
    }
    if (auto* box = frame->findChild<QCheckBox*>("chkFRL"); !box->isChecked()) pressIn("fExport", "chkFRL");
    pressIn("fExport", "cmdTr");
}

void Player::import(const QJsonValue& rows) {
    m_sheet->rows = rows;
    chooseMenu("mnuImport");
}

void Player::chooseFolder(const QJsonValue& folder) {
    if (folder.isString()) QDir().mkpath(m_world.path(folder.toString())); // only what is there can be chosen
    m_watcher.handle("frmDorvan", [this, folder](QWidget& dialog) {
        auto* path = dialog.findChild<QLineEdit*>("txtPath");
        if (folder.isNull() || path == nullptr)
            return QTest::mouseClick(dialog.findChild<QWidget*>("cmdCancel"), Qt::LeftButton);
        path->setFocus();
        path->selectAll();
        for (const Stroke& stroke : typed(m_world.path(folder.toString())))
            send(*path, stroke);
        QTest::mouseClick(dialog.findChild<QWidget*>("cmdOK"), Qt::LeftButton);
    });
    chooseMenu("mnuSetPath");
}

void Player::step(const QJsonObject& step) {
    const QString action = actionOf(step);
    const QJsonValue value = step[action];
    m_watcher.expect(step["answers"].toArray());
    if (action == "keys")
        keys(value.toString(), step["to"].toString());
    else if (action == "click" || action == "select")
        click(value.toArray());
    else if (action == "preset")
        preset(value.toArray());
    else if (action == "clipboard")
        QGuiApplication::clipboard()->setText(value.toString());
    else if (action == "button" && value == "cpCsv")
        listChangePoints();
    else if (action == "button")
        press(value.toString());
    else if (action == "menu")
        chooseMenu(value.toString());
    else if (action == "settings")
        setSettings(value.toObject());
    else if (action == "transfer")
        transfer(value.toObject());
    else if (action == "frl" || action == "frl_update")
        sendFormation(value.toString(), action == "frl_update");
    else if (action == "import")
        import(value);
    else if (action == "folder")
        chooseFolder(value);
    else if (action == "program_folder")
        openWindow();
    else if (action == "undo")
        takeHistory("mnuUndo", value);
    else if (action == "redo")
        takeHistory("mnuRedo", value);
    settle();
}

QJsonObject Player::outcome() {
    QJsonObject outcome = stateOf(*m_window, m_world);
    QJsonArray dialogs;
    for (const QJsonValue each : m_watcher.dialogs()) {
        QJsonObject dialog = each.toObject();
        for (QJsonValueRef member : dialog)
            member = m_world.shortened(member.toString());
        dialogs.append(dialog);
    }
    outcome["dialogs"] = dialogs;
    outcome["beeps"] = m_beeps;
    outcome["files"] = m_world.files();
    return outcome;
}

QPixmap Player::picture() {
    constexpr int untilPanesFollow = 400; // milliseconds; a section 20 after a change, the levels after 300
    QTest::qWait(untilPanesFollow);
    return m_window->grab();
}

} // namespace replay
