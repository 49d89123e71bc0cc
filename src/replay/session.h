#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <stdexcept>

namespace replay {

/// A session that cannot be read; what() says why.
class SessionError : public std::runtime_error {
  public:
    explicit SessionError(const QString& what) : std::runtime_error(what.toStdString()) {}
};

/// A recorded session: how the program is found at its start, and the steps that are played into its window.
struct Session {
    QString id;
    bool fresh = false;                  ///< no New before the first step
    std::optional<QJsonObject> settings; ///< set in the Settings frame before New
    QJsonObject disk;                    ///< path -> text, or table -> records
    std::optional<QString> defaultFolder;
    QJsonArray steps;    ///< objects with one action each, "answers" and the action's options
    QJsonArray pictures; ///< step numbers from 1 on, or "end"
};

/// The member of `step` that says what it does.
[[nodiscard]] QString actionOf(const QJsonObject& step);

/// Reads a session in JSON. Raises SessionError when it is no JSON object, or a step has no action that is
/// known or more than one.
[[nodiscard]] Session parseSession(const QByteArray& json);

} // namespace replay
