#pragma once

#include "session.h"

#include <QJsonObject>
#include <QString>

namespace replay {

/// Plays a session into a main window of its own, in the world below `folder`, and tells how it ended.
/// Changes the process's current folder and home. `pictures` is the folder for screenshots, empty for none
/// but those that the session asks for, which then go to `folder`. Raises SessionError when the session's
/// files cannot be made. Needs a QApplication.
[[nodiscard]] QJsonObject play(const Session& session, const QString& folder, const QString& pictures = {});

} // namespace replay
