#include "watcher.h"

#include "key_text.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVariant>

namespace replay {
namespace {

constexpr int interval = 1;    // milliseconds between two looks
constexpr int patience = 2000; // until a window that was answered and stays is closed by force

// When a window was answered, on the watcher's clock; -1 while it is being answered.
constexpr const char* metAt = "replayMetAt";

// A window is met when it is active, as a person meets it: a name box without the focus completes paths into
// the list and takes what it selects there. Where no window gets active, looking on is in vain after this
// many times.
constexpr int looksForActive = 500;
constexpr const char* looks = "replayLooks";

bool waitsToBeActive(QWidget& window) {
    const int number = window.property(looks).toInt();
    if (window.isActiveWindow() || number >= looksForActive) return false;
    window.setProperty(looks, number + 1);
    window.activateWindow();
    return true;
}

void click(QWidget* button) {
    if (button != nullptr) QTest::mouseClick(button, Qt::LeftButton);
}

void type(QLineEdit& box, const QString& text) {
    box.setFocus();
    box.selectAll();
    if (text.isEmpty()) send(box, {Qt::Key_Delete, {}, "\x7f"});
    for (const Stroke& stroke : typed(text))
        send(box, stroke);
}

QString buttonsOf(const QMessageBox& box) {
    const QMessageBox::StandardButtons buttons = box.standardButtons();
    if (buttons.testFlag(QMessageBox::Cancel)) return "Yes No Cancel";
    return buttons.testFlag(QMessageBox::No) ? "Yes No" : "OK";
}

QPushButton* buttonOf(QDialog& dialog, QDialogButtonBox::StandardButtons wanted) {
    const auto* buttons = dialog.findChild<QDialogButtonBox*>();
    if (buttons == nullptr) return nullptr;
    for (const auto each :
         {QDialogButtonBox::Ok, QDialogButtonBox::Open, QDialogButtonBox::Save, QDialogButtonBox::Cancel}) {
        if (wanted.testFlag(each) && buttons->button(each) != nullptr) return buttons->button(each);
    }
    return nullptr;
}

} // namespace

Watcher::Watcher(std::function<QString(const QString&)> path) : m_path(std::move(path)) {
    m_clock.start();
    look();
}

void Watcher::expect(const QJsonArray& answers) {
    m_answers.clear();
    for (const QJsonValue answer : answers)
        m_answers.push_back(answer.toObject());
}

void Watcher::handle(const QString& name, std::function<void(QWidget&)> handler) {
    m_handlers[name] = std::move(handler);
}

void Watcher::look() {
    // The next look is armed first: an answer may open the next dialog, which is met while this one waits.
    QTimer::singleShot(interval, this, [this] { look(); });
    QWidget* window = QApplication::activeModalWidget();
    if (window == nullptr || !window->isVisible() || qobject_cast<QProgressDialog*>(window) != nullptr)
        return;
    const QVariant since = window->property(metAt);
    if (!since.isValid()) {
        if (waitsToBeActive(*window)) return;
        window->setProperty(metAt, -1);
        const QPointer<QWidget> alive(window);
        meet(*window);
        if (alive) alive->setProperty(metAt, m_clock.elapsed());
    } else if (since.toLongLong() >= 0 && m_clock.elapsed() - since.toLongLong() > patience) {
        window->setProperty(metAt, m_clock.elapsed());
        if (auto* dialog = qobject_cast<QDialog*>(window))
            dialog->reject();
        else
            window->close();
    }
}

void Watcher::meet(QWidget& window) {
    if (auto* box = qobject_cast<QMessageBox*>(&window)) return answer(*box);
    if (auto* input = qobject_cast<QInputDialog*>(&window)) return answer(*input);
    if (auto* files = qobject_cast<QFileDialog*>(&window)) return answer(*files);
    if (auto handler = m_handlers.extract(window.objectName()); !handler.empty())
        return handler.mapped()(window);
    m_dialogs.append(QJsonObject{{"window", window.objectName()}, {"title", window.windowTitle()}});
    window.close();
}

bool Watcher::takeAnswer(const char* kind, QJsonValue& answer) {
    if (m_answers.empty() || !m_answers.front().contains(QLatin1String(kind))) return false;
    answer = m_answers.front()[QLatin1String(kind)];
    m_answers.pop_front();
    return true;
}

void Watcher::answer(QMessageBox& box) {
    m_dialogs.append(
        QJsonObject{{"message", box.text()}, {"buttons", buttonsOf(box)}, {"title", box.windowTitle()}});
    // A box that can only be confirmed takes no answer that is meant for the question behind it.
    const bool asks = box.button(QMessageBox::No) != nullptr;
    const bool meant = asks || (!m_answers.empty() && m_answers.front()["box"].toString() == "OK");
    QJsonValue chosen;
    if (meant && takeAnswer("box", chosen)) {
        for (const auto each : {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel}) {
            QAbstractButton* button = box.button(each);
            if (button != nullptr && button->text().remove(u'&') == chosen.toString()) return click(button);
        }
    }
    for (const auto each : {QMessageBox::Cancel, QMessageBox::No, QMessageBox::Ok}) {
        if (box.button(each) != nullptr) return click(box.button(each));
    }
    box.reject();
}

void Watcher::answer(QInputDialog& box) {
    m_dialogs.append(
        QJsonObject{{"input", box.labelText()}, {"title", box.windowTitle()}, {"default", box.textValue()}});
    QJsonValue text;
    auto* line = box.findChild<QLineEdit*>();
    if (!takeAnswer("input", text) || text.isNull() || line == nullptr)
        return click(buttonOf(box, QDialogButtonBox::Cancel));
    type(*line, text.toString());
    click(buttonOf(box, QDialogButtonBox::Ok));
}

void Watcher::answer(QFileDialog& dialog) {
    const bool open = dialog.acceptMode() == QFileDialog::AcceptOpen;
    m_dialogs.append(QJsonObject{{"file", open ? "open" : "save"}});
    QJsonValue path;
    auto* name = dialog.findChild<QLineEdit*>("fileNameEdit");
    if (!takeAnswer("file", path) || path.isNull() || name == nullptr)
        return click(buttonOf(dialog, QDialogButtonBox::Cancel));
    dialog.setDefaultSuffix({});            // the path comes back as it was given
    name->setText(m_path(path.toString())); // not typed: the list of completions would take the click
    click(buttonOf(dialog, QDialogButtonBox::Open | QDialogButtonBox::Save));
}

} // namespace replay
