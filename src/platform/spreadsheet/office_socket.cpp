#include "office_socket.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace spreadsheet {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

namespace {

constexpr std::string_view askForArguments = "InternalIPC::SendArguments";
constexpr std::string_view done = "InternalIPC::ProcessingDone";

bool isOwnSocket(const std::string& path) {
    struct stat info {};
    return lstat(path.c_str(), &info) == 0 && S_ISSOCK(info.st_mode) && info.st_uid == geteuid();
}

Descriptor connectTo(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return {};
    std::ranges::copy(path, std::begin(address.sun_path));
    Descriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!connection) return {};
    // The socket interface takes every kind of address through this one type.
    const auto* generic = static_cast<const sockaddr*>(static_cast<const void*>(&address));
    if (connect(connection.get(), generic, sizeof address) != 0) return {};
    return connection;
}

/// The process that listens on the other side, when it is one of this user's. Anybody may lay a socket into
/// the folder of temporary files, and what is found there decides which libraries are loaded.
pid_t ownListener(const Descriptor& connection) {
    ucred listener{};
    socklen_t size = sizeof listener;
    const bool known = getsockopt(connection.get(), SOL_SOCKET, SO_PEERCRED, &listener, &size) == 0;
    return known && listener.uid == geteuid() ? listener.pid : 0;
}

bool usesStandardProfile(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/cmdline", std::ios::binary);
    const std::string commandLine{std::istreambuf_iterator<char>(file), {}};
    return commandLine.find("-env:UserInstallation") == std::string::npos;
}

std::optional<Office> officeAt(const std::string& path) {
    if (!isOwnSocket(path)) return std::nullopt;
    Office office{path, connectTo(path), 0, {}, false, {}, false};
    if (!office.connection) return std::nullopt;
    office.process = ownListener(office.connection);
    if (office.process == 0) return std::nullopt;
    std::error_code failed;
    const fs::path program = fs::read_symlink("/proc/" + std::to_string(office.process) + "/exe", failed);
    office.programFolder = failed ? std::string() : program.parent_path().string();
    office.ownProfile = usesStandardProfile(office.process);
    return office;
}

/// What the other side says up to its NUL; nothing when it closed or kept silent, told apart by `silent`.
std::optional<std::string> hear(Office& office, milliseconds answerTime, Patience& patience, bool& silent) {
    constexpr std::size_t most = 4096;
    std::array<char, 256> buffer{};
    for (;;) {
        silent = !patience.ready(office.connection.get(), POLLIN, answerTime);
        if (silent) return std::nullopt;
        const auto count = recv(office.connection.get(), buffer.data(), buffer.size(), 0);
        if (count <= 0 || office.heard.size() > most) return std::nullopt;
        office.heard.append(buffer.data(), static_cast<std::size_t>(count));
        if (const auto end = office.heard.find('\0'); end != std::string::npos) {
            std::string said = office.heard.substr(0, end);
            office.heard.clear();
            return said;
        }
    }
}

std::string argumentsMessage(std::string_view argument) {
    std::string message = "InternalIPC::Arguments0,";
    for (char c : argument) {
        if (c == ',' || c == '\\') message += '\\';
        message += c;
    }
    message += '\0';
    return message;
}

} // namespace

std::vector<std::string> officeSockets() {
    const std::string prefix = "OSL_PIPE_" + std::to_string(geteuid()) + "_SingleOfficeIPC_";
    std::vector<std::string> result;
    for (const char* folder : {"/tmp", "/var/tmp"}) {
        std::error_code failed;
        for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end;
             entry.increment(failed))
            if (entry->path().filename().string().starts_with(prefix))
                result.push_back(entry->path().string());
    }
    return result;
}

std::vector<Office> runningOffices(const std::vector<std::string>& sockets) {
    std::vector<Office> result;
    for (const std::string& path : sockets)
        if (auto office = officeAt(path)) result.push_back(std::move(*office));
    std::stable_partition(result.begin(), result.end(),
                          [](const Office& office) { return office.ownProfile; });
    return result;
}

Greeting openPipe(Office& office, const std::string& name, milliseconds answerTime, Patience& patience) {
    bool silent = false;
    const auto notAnswered = [&] { return silent ? Greeting::Silent : Greeting::Closed; };
    if (!office.asked) {
        if (hear(office, answerTime, patience, silent) != askForArguments) return notAnswered();
        const std::string message =
            argumentsMessage("--accept=pipe,name=" + name + ";urp;StarOffice.ComponentContext");
        const auto sent = send(office.connection.get(), message.data(), message.size(), MSG_NOSIGNAL);
        if (sent != static_cast<ssize_t>(message.size())) return Greeting::Closed;
        office.asked = true;
    }
    if (hear(office, answerTime, patience, silent) != done) return notAnswered();
    return Greeting::Accepted;
}

} // namespace spreadsheet
