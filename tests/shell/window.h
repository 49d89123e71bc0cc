#pragma once

#include "temp_folder.h"

#include "shell/controls/command_button.h"
#include "shell/controls/flex_grid.h"
#include "shell/frmGrl.h"
#include "shell/text.h"

#include <gmock/gmock.h>

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

using testing::ElementsAre;

/// Answers every modal window that comes while it lives, and counts them.
class Answers {
  public:
    explicit Answers(std::function<void(QWidget&)> answer) : m_answer(std::move(answer)) {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            QWidget* modal = QApplication::activeModalWidget();
            if (modal == nullptr || !modal->isActiveWindow()) return;
            ++count;
            m_answer(*modal);
        });
        m_timer.start(1);
    }
    int count = 0;

  private:
    std::function<void(QWidget&)> m_answer;
    QTimer m_timer;
};

/// The real main window on a program folder of its own, driven by keys and clicks.
class MainWindow : public testing::Test {
  protected:
    TempFolder folder;
    std::unique_ptr<shell::frmGrl> window;
    std::shared_ptr<spreadsheet::RunningSpreadsheet> spreadsheet; ///< what Import finds; empty: the real one
    bool offersRecovery = false;
    int ends = 0;

    MainWindow() { folder.write("Rod.dwg", ""); }

    void copyTemplates() {
        for (const char* name : {"grl.mdb", "Rod.mdb", "Rod.dwg", "Rod1.dwg"})
            std::filesystem::copy_file(std::string(ZAVRO_TEMPLATES) + "/" + name, folder / name,
                                       std::filesystem::copy_options::overwrite_existing);
    }
    void open() {
        shell::Surroundings surroundings;
        surroundings.programFolder = folder.path();
        surroundings.templateFolder = folder.path();
        surroundings.stateFolder = folder / "state";
        surroundings.tableReader = TABLE_READER;
        surroundings.hasTrash = false;
        surroundings.offersRecovery = offersRecovery;
        surroundings.spreadsheet = spreadsheet;
        surroundings.endProgram = [this] { ++ends; };
        window = std::make_unique<shell::frmGrl>(surroundings);
        window->Form_Load();
        if (offersRecovery) return; // in a box before it
        if (!QTest::qWaitForWindowActive(window.get())) ADD_FAILURE() << "the window does not open";
    }

    template <typename Control = shell::CommandButton>
    Control& control(const char* name) {
        auto* found = dynamic_cast<Control*>(window->findChild<QObject*>(QLatin1String(name)));
        if (found == nullptr) throw std::runtime_error(std::string("no control ") + name);
        return *found;
    }
    void click(const char* name) { QTest::mouseClick(&control<QWidget>(name), Qt::LeftButton); }
    void choose(const char* item) { control<QAction>(item).trigger(); }
    bool shown(const char* name) { return control<QWidget>(name).isVisible(); }
    bool live(const char* name) { return control<QWidget>(name).isEnabled(); }

    /// Runs `action` and answers the dialogs that it brings, all of them: a path for a file dialog (empty:
    /// Cancel), the text of a button for a message box. Returns the texts of the boxes.
    std::vector<std::string> answering(std::deque<std::string> answers, const std::function<void()>& action) {
        std::vector<std::string> boxes;
        const Answers watcher([&](QWidget& modal) {
            auto* files = dynamic_cast<QFileDialog*>(&modal);
            auto* box = dynamic_cast<QMessageBox*>(&modal);
            if (files == nullptr && box == nullptr) return;
            const std::string answer = answers.empty() ? std::string() : answers.front();
            if (!answers.empty()) answers.pop_front();
            if (files != nullptr) {
                if (answer.empty()) return files->reject();
                auto* name = files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
                name->setText(shell::fromUtf8(answer));
                return QTest::keyClick(name, Qt::Key_Return);
            }
            boxes.push_back(shell::toUtf8(box->text()));
            for (QAbstractButton* button : box->buttons())
                if (shell::toUtf8(button->text().remove(u'&')) == answer) return button->click();
            ADD_FAILURE() << "no button " << answer << " in: " << boxes.back();
            box->reject();
        });
        action();
        EXPECT_THAT(answers, testing::IsEmpty());
        return boxes;
    }

    sheet::Grid& book() { return window->book().MSFG; }
    std::string cell(int row, int col) { return book().Text(row, col); }

    /// Types into the grid: characters, '\r' for Enter.
    void type(const std::string& keys) {
        for (const char key : keys) {
            if (key == '\r')
                QTest::keyClick(&window->grid(), Qt::Key_Return);
            else
                QTest::keyClick(&window->grid(), key);
        }
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&window->grid(), key, modifiers);
    }
    void moveTo(int row, int col) {
        book().moveTo(row, col);
        window->grid().flush();
    }
    QPoint pointIn(int row, int col) {
        return window->grid().visualRect(window->grid().model()->index(row - 1, col)).center();
    }
    std::pair<int, int> cursor() { return {book().Row(), book().Col()}; }
    std::string status() { return shell::toUtf8(control<QLabel>("lblStatus").text()); }
};
