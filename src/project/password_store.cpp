#include "password_store.h"

#include "basic/files.h"
#include "basic/strings.h"
#include "dao/dao.h"

#include "files/folder.h"

namespace project {

namespace {

constexpr const char* databaseName = "suprt.dll";
constexpr const char* textName = "lgn.lgn";
constexpr const char* connect = ";pwd=pelqor";

bool hasDatabase(desktop::Desktop& desktop) {
    return basic::fileExists(desktop::programFile(desktop, databaseName));
}

std::string readDatabase(desktop::Desktop& desktop) {
    dao::Database database = dao::OpenDatabase(desktop::programFile(desktop, databaseName), connect);
    dao::Recordset passwords = database.OpenRecordset("Pwd");
    const dao::Recordset general = database.OpenRecordset("Gen"); // a store without it is damaged
    std::string password;
    if (passwords.RecordCount() > 0) {
        passwords.MoveFirst();
        password = dao::toText(passwords.Fields("pwd").value());
    }
    database.Close();
    return password;
}

void writeDatabase(desktop::Desktop& desktop, std::string_view password) {
    const std::string path = desktop::programFile(desktop, databaseName);
    dao::Database database = dao::OpenDatabase(path, connect);
    dao::Recordset passwords = database.OpenRecordset("Pwd");
    if (passwords.RecordCount() == 0) {
        passwords.AddNew();
    } else {
        passwords.MoveFirst();
        passwords.Edit();
    }
    passwords.Fields("pwd").setValue(password);
    passwords.Update();
    database.Close();
    try {
        files::makePrivate(basic::nativePath(path));
    } catch (const files::Error&) {
        return; // not ours: the password is stored all the same
    }
}

void writeText(desktop::Desktop& desktop, std::string_view password) {
    basic::writeLines(desktop::programFile(desktop, textName), {std::string(password)},
                      files::Rights::OwnerOnly);
}

} // namespace

std::string storedPassword(desktop::Desktop& desktop) {
    if (hasDatabase(desktop)) return readDatabase(desktop);
    const std::string path = desktop::programFile(desktop, textName);
    if (!basic::fileExists(path)) return {};
    const std::vector<std::string> lines = basic::readLines(path);
    return lines.empty() ? std::string() : std::string(basic::trim(lines.front()));
}

std::string passwordForLogin(desktop::Desktop& desktop) {
    const bool fresh = !hasDatabase(desktop) && !basic::fileExists(desktop::programFile(desktop, textName));
    if (fresh) writeText(desktop, {});
    return storedPassword(desktop);
}

void storePassword(desktop::Desktop& desktop, std::string_view password) {
    if (hasDatabase(desktop))
        writeDatabase(desktop, password);
    else
        writeText(desktop, password);
}

} // namespace project
