#include "session.h"

#include "key_text.h"

#include <QDir>
#include <QJsonDocument>
#include <QStringList>

namespace replay {
namespace {

const QStringList& actions() {
    static const QStringList all{"keys",   "click",          "select",   "preset", "clipboard",  "button",
                                 "menu",   "settings",       "transfer", "frl",    "frl_update", "import",
                                 "folder", "program_folder", "undo",     "redo"};
    return all;
}

void require(bool holds, const QString& otherwise) {
    if (!holds) throw SessionError(otherwise);
}

void checkStep(const QJsonValue& value, qsizetype number) {
    const QString where = QStringLiteral("step %1: ").arg(number);
    require(value.isObject(), where + "not an object");
    const QJsonObject step = value.toObject();
    QStringList found;
    for (const QString& action : actions()) {
        if (step.contains(action)) found += action;
    }
    require(found.size() == 1,
            where + (found.isEmpty() ? "no known action" : "more than one action: " + found.join(", ")));
    const QJsonValue what = step[found.first()];
    if (found.first() == "keys") static_cast<void>(parseKeys(what.toString()));
    if (found.first() == "click") require(what.toArray().size() == 2, where + "a click takes [row, column]");
    if (found.first() == "select")
        require(what.toArray().size() == 4, where + "a selection takes [row, column, row, column]");
    if (found.first() == "undo" || found.first() == "redo")
        require(what == "all" || what.toInt() > 0, where + "how many steps, or \"all\"");
    if (found.first() == "preset") require(what.isArray(), where + "a preset is a list of rows");
}

bool staysInside(const QString& path) {
    const QString clean = QDir::cleanPath(path);
    return !QDir::isAbsolutePath(clean) && clean != QLatin1String("..") &&
           !clean.startsWith(QLatin1String("../"));
}

} // namespace

QString actionOf(const QJsonObject& step) {
    for (const QString& action : actions()) {
        if (step.contains(action)) return action;
    }
    return {};
}

Session parseSession(const QByteArray& json) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    require(error.error == QJsonParseError::NoError,
            QStringLiteral("not JSON: %1 at byte %2").arg(error.errorString()).arg(error.offset));
    require(document.isObject(), "not a JSON object");
    const QJsonObject object = document.object();
    Session session;
    session.id = object["id"].toString("session");
    const QString start = object["start"].toString("new");
    require(start == "new" || start == "fresh", "start is neither new nor fresh");
    session.fresh = start == "fresh";
    if (object["settings"].isObject()) session.settings = object["settings"].toObject();
    session.disk = object["disk"].toObject();
    for (const QString& path : session.disk.keys())
        require(staysInside(path), "disk: " + path + " lies outside the session's folder");
    if (object["default_folder"].isString()) session.defaultFolder = object["default_folder"].toString();
    session.steps = object["steps"].toArray();
    session.pictures = object["pictures"].toArray();
    for (qsizetype i = 0; i < session.steps.size(); ++i)
        checkStep(session.steps[i], i + 1);
    return session;
}

} // namespace replay
