#include "world.h"

#include "session.h"

#include "basic/files.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "dao/dao.h"
#include "exchange/road_schema.h"
#include "project/program_folder.h"
#include "project/project_file.h"
#include "project/recovery.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <algorithm>

namespace replay {
namespace {

constexpr const char* programFolderName = "APP";

// The databases that a session may begin with are copies of these.
struct Template {
    const char* name;
    std::string connect;
};

const std::array<Template, 2>& templates() {
    static const std::array<Template, 2> all{
        {{project::templateName, project::connect}, {"Rod.mdb", std::string(exchange::roadConnect)}}};
    return all;
}

dao::Value valueOf(const QJsonValue& value) {
    if (value.isBool()) return value.toBool();
    if (value.isDouble()) return value.toDouble();
    return value.toString().toStdString();
}

void fillTable(dao::Database& database, const QString& name, const QJsonArray& records) {
    database.Execute("Delete * From " + name.toStdString());
    dao::Recordset table = database.OpenRecordset(name.toStdString());
    for (const QJsonValue each : records) {
        const QJsonObject record = each.toObject();
        table.AddNew();
        for (auto field = record.begin(); field != record.end(); ++field) {
            if (!field->isNull()) table.Fields(field.key().toStdString()).setValue(valueOf(*field));
        }
        table.Update();
    }
    table.Close();
}

bool holds(const dao::Database& database, const QStringList& tables) {
    const auto names = database.TableNames();
    return std::all_of(tables.begin(), tables.end(), [&names](const QString& table) {
        return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
            return basic::sameText(name, table.toStdString());
        });
    });
}

} // namespace

World::World(const QString& folder) {
    if (!QDir().mkpath(folder)) throw SessionError("cannot make the folder " + folder);
    m_folder = QFileInfo(folder).canonicalFilePath();
    QDir::setCurrent(m_folder);
    qputenv("HOME", m_folder.toUtf8());
    for (const char* kept : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
        qputenv(kept, m_besides.path().toUtf8());
    QDir().mkpath(path("work"));
    const std::string failed = project::prepareProgramFolder(programFolder(), project::shippedFolder());
    if (!failed.empty()) throw SessionError("the program folder: " + QString::fromStdString(failed));
}

QString World::path(const QString& shortPath) const {
    return QDir::isAbsolutePath(shortPath) ? shortPath : m_folder + "/" + shortPath;
}

QString World::shortened(QString text) const {
    return text.replace(m_folder + "/", QString()).replace(m_folder, ".");
}

std::string World::programFolder() const {
    return path(programFolderName).toStdString();
}

void World::lay(const QJsonObject& disk) {
    for (auto file = disk.begin(); file != disk.end(); ++file) {
        const QString at = path(file.key());
        QDir().mkpath(QFileInfo(at).path());
        try {
            if (file->isObject())
                layDatabase(at, file->toObject());
            else
                basic::writeFile(at.toStdString(), contentOf(file.key(), file->toString()).toStdString());
        } catch (const basic::RuntimeError& error) {
            throw SessionError(file.key() + ": " + QString::fromStdString(error.description()));
        }
    }
}

// The recent list holds paths as the file dialog gives them: whole ones.
QString World::contentOf(const QString& name, const QString& content) const {
    if (name.compare(QLatin1String("APP/GRL.LVX"), Qt::CaseInsensitive) != 0) return content;
    QStringList lines = content.split(u'\n');
    for (QString& line : lines)
        if (line.startsWith(QLatin1String("work/"))) line = path(line);
    return lines.join(u'\n');
}

void World::layDatabase(const QString& path, const QJsonObject& tables) {
    for (const Template& from : templates()) {
        const std::string original = programFolder() + "/" + from.name;
        if (!basic::fileExists(original) || !holds(dao::OpenDatabase(original, from.connect), tables.keys()))
            continue;
        basic::fileCopy(original, path.toStdString());
        dao::Database database = dao::OpenDatabase(path.toStdString(), from.connect);
        for (auto table = tables.begin(); table != tables.end(); ++table)
            fillTable(database, table.key(), table->toArray());
        database.Close();
        return;
    }
    throw SessionError(path + ": no template has these tables");
}

void World::setDefaultFolder(const QString& folder) {
    basic::writeLines(programFolder() + "/set.ini", {"002 " + folder.toStdString()});
}

QJsonArray World::files() const {
    QStringList paths;
    const QString copies = QStringLiteral("%1/%2").arg(programFolderName, project::copyPrefix);
    for (QDirIterator all(m_folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
         all.hasNext();) {
        const QString path = shortened(all.next());
        if (!path.startsWith(copies)) paths += path;
    }
    paths.sort();
    return QJsonArray::fromStringList(paths);
}

} // namespace replay
