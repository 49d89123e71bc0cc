#include "program_folder.h"

#include "basic/files.h"
#include "basic/runtime_error.h"
#include "text.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace shell {

std::string userProgramFolder() {
    return toUtf8(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                  QStringLiteral("/zavrogrl"));
}

std::string installedTemplates() {
    const QString bin = QCoreApplication::applicationDirPath();
    for (const char* place : {"/../share/zavrogrl/templates", "/../templates"}) {
        const QDir folder(bin + QLatin1String(place));
        if (folder.exists(QStringLiteral("grl.mdb"))) return toUtf8(folder.canonicalPath());
    }
    return {};
}

std::string prepareProgramFolder(const std::string& folder, const std::string& templates) {
    const QString path = fromUtf8(folder);
    if (!QDir(path).exists()) {
        const QString parent = QFileInfo(path).absolutePath();
        const auto owner = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
        if (!QDir().mkpath(parent) || !QDir().mkdir(path, owner))
            return toUtf8(text("The program folder %1 cannot be made.").arg(path));
    }
    if (templates.empty()) return {};
    std::string failure;
    const QStringList present = QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
    for (const QString& name : QDir(fromUtf8(templates)).entryList(QDir::Files)) {
        if (present.contains(name, Qt::CaseInsensitive)) continue;
        try {
            basic::fileCopy(templates + "/" + toUtf8(name), folder + "/" + toUtf8(name));
        } catch (const basic::RuntimeError& error) {
            failure = toUtf8(text("%1 cannot be copied into the program folder: %2")
                                 .arg(name, fromUtf8(error.description())));
        }
    }
    return failure;
}

} // namespace shell
