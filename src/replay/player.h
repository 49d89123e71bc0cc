#pragma once

#include "session.h"
#include "watcher.h"
#include "world.h"

#include "shell/frmGrl.h"

#include <functional>
#include <memory>

namespace replay {

/// The stand-in for the running spreadsheet.
class SheetStandIn;

/// Plays the steps of a session: every one through the window's own controls, with real key and mouse events.
class Player {
  public:
    explicit Player(World& world);
    ~Player();

    void start(const Session& session); ///< opens the window, and runs New unless the session starts fresh
    void step(const QJsonObject& step);
    [[nodiscard]] QJsonObject outcome();
    [[nodiscard]] QPixmap picture();
    /// Called by a step that opens and closes something, with a name and a picture of it while it is open.
    std::function<void(const QString& name, const QPixmap& picture)> onScene;

  private:
    void openWindow();
    void settle();
    void bringToFront();
    [[nodiscard]] QWidget* control(const QString& name) const;
    void press(const QString& button);
    void pressIn(const QString& frame, const QString& button);
    void chooseMenu(const QString& item);
    void keys(const QString& keys, const QString& to);
    void click(const QJsonArray& cells); ///< one cell, or two that are dragged between
    [[nodiscard]] QPoint showCell(int row, int col);
    void takeHistory(const char* item, const QJsonValue& steps);
    void preset(const QJsonArray& rows);
    void listChangePoints();
    void setSettings(const QJsonObject& values);
    void setOffsets(const QStringList& offsets);
    void transfer(const QJsonObject& values);
    void sendFormation(const QString& database, bool update);
    void import(const QJsonValue& rows);
    void chooseFolder(const QJsonValue& folder);

    World& m_world;
    Watcher m_watcher;
    std::shared_ptr<SheetStandIn> m_sheet;
    int m_beeps = 0;
    std::unique_ptr<shell::frmGrl> m_window;
};

} // namespace replay
