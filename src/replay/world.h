#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>

#include <string>

namespace replay {

/// The folder that a session plays in: current folder, home, and with APP/ the program folder. Paths of a
/// session are relative to it, and texts of an outcome are made so.
class World {
  public:
    /// Makes the folder, makes it the current one and the home, and lays in the templates.
    explicit World(const QString& folder);

    [[nodiscard]] QString path(const QString& shortPath) const;
    [[nodiscard]] QString shortened(QString text) const;
    [[nodiscard]] std::string programFolder() const;

    /// Makes the files of a session's "disk". Raises SessionError when one cannot be made.
    void lay(const QJsonObject& disk);
    void setDefaultFolder(const QString& folder);

    /// The paths of all files but the recovery copies, sorted.
    [[nodiscard]] QJsonArray files() const;

  private:
    [[nodiscard]] QString contentOf(const QString& name, const QString& content) const;
    void layDatabase(const QString& path, const QJsonObject& tables);

    QString m_folder;
    QTemporaryDir m_besides; // what Qt and the desktop keep for a user
};

} // namespace replay
