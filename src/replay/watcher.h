#pragma once

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>

#include <deque>
#include <functional>
#include <map>

class QDialog;
class QFileDialog;
class QInputDialog;
class QMessageBox;
class QWidget;

namespace replay {

/// Looks for modal windows while events are processed, writes down what they say and answers them with real
/// keys and clicks, so that nothing modal is left hanging. A dialog that the next answer is not for is backed
/// out of: Cancel, else No, else OK.
class Watcher final : public QObject {
  public:
    /// `path` turns a path of the session into one of the system.
    explicit Watcher(std::function<QString(const QString&)> path);

    void expect(const QJsonArray& answers); ///< the answers of the next step
    /// What to do with the modal window of this name, once, instead of closing it.
    void handle(const QString& name, std::function<void(QWidget&)> handler);

    [[nodiscard]] const QJsonArray& dialogs() const { return m_dialogs; }
    void forgetDialogs() { m_dialogs = {}; }

  private:
    void look();
    void meet(QWidget& window);
    void answer(QMessageBox& box);
    void answer(QInputDialog& box);
    void answer(QFileDialog& dialog);
    /// Takes the next answer when it is of this kind.
    bool takeAnswer(const char* kind, QJsonValue& answer);

    std::function<QString(const QString&)> m_path;
    std::deque<QJsonObject> m_answers;
    std::map<QString, std::function<void(QWidget&)>> m_handlers;
    QJsonArray m_dialogs;
    QElapsedTimer m_clock;
};

} // namespace replay
