#include "password_store.h"

#include "basic/files.h"
#include "basic/strings.h"
#include "dao/dao.h"
#include "dao/error_numbers.h"

#include "files/folder.h"
#include "files/status.h"

#include <chrono>
#include <optional>
#include <thread>

namespace project {

namespace {

constexpr const char* databaseName = "suprt.dll";
constexpr const char* textName = "lgn.lgn";
constexpr const char* connect = ";pwd=pelqor";

/// The path of a store whatever the case of its name; nothing when there is none. What cannot be found out is
/// no missing store.
std::optional<std::string> storeOf(desktop::Desktop& desktop, std::string_view name) {
    const std::string folder = desktop.programFolder();
    return basic::during(basic::FileAction::OpenForInput, [&]() -> std::optional<std::string> {
        if (!files::statusOf(basic::nativePath(folder))) return std::nullopt;
        std::optional<std::string> path;
        for (const std::string& there : files::namesIn(basic::nativePath(folder)))
            if (there == name || (!path && basic::sameText(there, name))) path = folder + '/' + there;
        return path;
    });
}

/// Another program that holds the store for a moment is waited for.
dao::Database openStore(const std::string& path) {
    constexpr std::chrono::milliseconds pause{50};
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    for (;;) {
        try {
            return dao::OpenDatabase(path, connect);
        } catch (const basic::RuntimeError& error) {
            if (!dao::is(error.number(), dao::EngineError::FileInUse) ||
                std::chrono::steady_clock::now() >= end)
                throw;
        }
        std::this_thread::sleep_for(pause);
    }
}

std::string readDatabase(const std::string& path) {
    dao::Database database = openStore(path);
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

void writeDatabase(const std::string& path, std::string_view password) {
    dao::Database database = openStore(path);
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
    if (const auto database = storeOf(desktop, databaseName)) return readDatabase(*database);
    const auto text = storeOf(desktop, textName);
    if (!text) return {};
    const std::vector<std::string> lines = basic::readLines(*text);
    return lines.empty() ? std::string() : std::string(basic::trim(lines.front()));
}

std::string passwordForLogin(desktop::Desktop& desktop) {
    if (!storeOf(desktop, databaseName) && !storeOf(desktop, textName)) writeText(desktop, {});
    return storedPassword(desktop);
}

std::string unreadableStore(desktop::Desktop& desktop, const basic::RuntimeError& error) {
    std::string path = desktop::programFile(desktop, databaseName);
    if (!basic::fileExists(path)) path = desktop::programFile(desktop, textName);
    return "The stored password cannot be read: " + error.description() + " (" + path +
           "). Put a readable copy of the file back, or move it away to begin without a password.";
}

void storePassword(desktop::Desktop& desktop, std::string_view password) {
    if (const auto database = storeOf(desktop, databaseName))
        writeDatabase(*database, password);
    else
        writeText(desktop, password);
}

} // namespace project
