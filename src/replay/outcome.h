#pragma once

#include "shell/frmGrl.h"

#include <QJsonObject>

namespace replay {

class World;

/// The Settings as a session writes them.
[[nodiscard]] QJsonObject settingsOf(const sheet::Settings& settings);

/// The book, the cursor and what the window shows, as they are now.
[[nodiscard]] QJsonObject stateOf(shell::frmGrl& window, const World& world);

} // namespace replay
