#include "spreadsheet/libre_office.h"

#include "temp_folder.h"

#include <atomic>
#include <csignal>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

using spreadsheet::Failure;
using spreadsheet::Row;
using Milliseconds = std::chrono::milliseconds;
using namespace std::string_literals;

namespace {

/// Listens where a spreadsheet program would, and speaks a fixed part.
class Listener {
  public:
    enum class Part { SaysNothing, HangsUp, TalksNonsense, Accepts, AcceptsLate };

    Listener(const std::string& path, Part part) : m_part(part), m_socket(socket(AF_UNIX, SOCK_STREAM, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        const auto* generic = static_cast<const sockaddr*>(static_cast<const void*>(&address));
        if (bind(m_socket, generic, sizeof address) != 0 || listen(m_socket, 5) != 0) ADD_FAILURE();
        m_thread = std::thread([this] { serve(); });
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener() {
        shutdown(m_socket, SHUT_RDWR);
        m_thread.join();
        for (int connection : m_open)
            close(connection);
        close(m_socket);
    }

    std::string heard; ///< what the client sent; to be looked at once it is done
    std::atomic<int> connections = 0;

  private:
    void serve() {
        for (int connection = accept(m_socket, nullptr, nullptr); connection >= 0;
             connection = accept(m_socket, nullptr, nullptr)) {
            ++connections;
            m_open.push_back(connection);
            if (m_part == Part::HangsUp) shutdown(connection, SHUT_RDWR);
            if (m_part == Part::TalksNonsense) say(connection, std::string(10000, 'x'));
            if (m_part == Part::AcceptsLate) std::this_thread::sleep_for(Milliseconds(200));
            if (m_part == Part::Accepts || m_part == Part::AcceptsLate) play(connection);
        }
    }
    void play(int connection) {
        say(connection, "InternalIPC::SendArguments\0"s);
        char c = 0;
        while (recv(connection, &c, 1, 0) == 1 && c != '\0')
            heard += c;
        say(connection, "InternalIPC::Proces"s);
        say(connection, "singDone\0"s);
    }
    static void say(int connection, const std::string& text) {
        EXPECT_EQ(send(connection, text.data(), text.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(text.size()));
    }

    Part m_part;
    int m_socket;
    std::vector<int> m_open;
    std::thread m_thread;
};

struct Office {
    TempFolder folder;
    std::string socket = folder / "socket";
    std::string other = folder / "other";
    Milliseconds limit{300};

    /// The program that reads, in the shell's language.
    void reader(const std::string& script) const {
        folder.write("reader", "#!/bin/sh\n" + script);
        chmod((folder / "reader").c_str(), 0755);
    }
    [[nodiscard]] std::vector<Row> read(const spreadsheet::GoOn& goOn = {}) const {
        return spreadsheet::LibreOffice(
                   {folder / "reader", std::vector{folder / "none", socket, other}, limit, Milliseconds(50)})
            .readSheet(goOn);
    }
    [[nodiscard]] std::optional<Failure> failure(const spreadsheet::GoOn& goOn = {}) const {
        try {
            static_cast<void>(read(goOn));
            return std::nullopt;
        } catch (const spreadsheet::Error& error) {
            EXPECT_STRNE(error.what(), "");
            return error.failure();
        }
    }
};

} // namespace

TEST(OfficeSocket, IsRefusedWhereNobodyListens) {
    Office office;
    office.reader("exit 0");
    EXPECT_EQ(office.failure(), Failure::NotRunning);
    { const Listener gone(office.socket, Listener::Part::HangsUp); }
    EXPECT_EQ(office.failure(), Failure::NotRunning) << "a socket that was left behind";
    unlink(office.socket.c_str());
    office.folder.write("socket", "no socket at all");
    EXPECT_EQ(office.failure(), Failure::NotRunning);
}

TEST(OfficeSocket, GivesUpOnAListenerThatDoesNotPlayItsPart) {
    using Part = Listener::Part;
    for (const Part part : {Part::SaysNothing, Part::HangsUp, Part::TalksNonsense}) {
        Office office;
        office.reader("exit 0");
        const Listener listener(office.socket, part);
        EXPECT_EQ(office.failure(), Failure::NotAnswering);
        EXPECT_EQ(office.failure([](std::size_t) { return false; }), Failure::Cancelled);
        if (part == Part::HangsUp) {
            EXPECT_GT(listener.connections, 2) << "one that starts is tried again";
        }
    }
}

TEST(OfficeSocket, AsksForAPipeAndReadsThroughIt) {
    Office office;
    office.reader(R"sh(
        printf '%s\0' "$1" "$2" "${LD_LIBRARY_PATH%%:*}" d e f g h i "$(printf 'one\ntwo')"
        sleep 0.05; printf 'A\0\0\0\0\0\0\0\0\0'; sleep 0.05; printf 'J\0')sh");
    std::size_t most = 0;
    std::string asked;
    std::vector<Row> rows;
    {
        const Listener listener(office.socket, Listener::Part::Accepts);
        rows = office.read([&](std::size_t count) {
            most = count;
            return true;
        });
        asked = listener.heard;
    }
    const std::string pipe = "zavrogrl_" + std::to_string(getpid());
    EXPECT_EQ(asked,
              "InternalIPC::Arguments0,--accept=pipe\\,name=" + pipe + ";urp;StarOffice.ComponentContext");
    ASSERT_EQ(rows.size(), 2U);
    const std::string folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    EXPECT_EQ(rows[0], (Row{pipe, folder, folder, "d", "e", "f", "g", "h", "i", "one\ntwo"}));
    EXPECT_EQ(rows[1], (Row{"A", "", "", "", "", "", "", "", "", "J"}));
    EXPECT_EQ(most, 2U);
}

TEST(OfficeSocket, WaitsForABusyOneUntilTheLimitAndAsksTheOthersMeanwhile) {
    Office office;
    office.reader("printf 'A\\0\\0\\0\\0\\0\\0\\0\\0\\0J\\0'");
    office.limit = std::chrono::minutes(10);
    {
        const Listener busy(office.socket, Listener::Part::AcceptsLate);
        EXPECT_EQ(office.read().size(), 1U);
    }
    unlink(office.socket.c_str());
    const Listener hangs(office.socket, Listener::Part::SaysNothing);
    const Listener other(office.other, Listener::Part::Accepts);
    EXPECT_EQ(office.read().size(), 1U);
}

TEST(OfficeSocket, TellsHowTheReaderFailed) {
    const std::pair<const char*, Failure> cases[] = {{"exit 4", Failure::NotRunning},
                                                     {"exit 6", Failure::Lost},
                                                     {"exit 7", Failure::Lost},
                                                     {"exit 2", Failure::Lost},
                                                     {"exit 127", Failure::NoReader},
                                                     {"kill -SEGV $$", Failure::Lost},
                                                     {"printf 'a\\0b\\0'", Failure::Lost},
                                                     {"printf 'abc'", Failure::Lost},
                                                     {"exec sleep 60", Failure::NotAnswering},
                                                     {"exec >&-; exec sleep 60", Failure::NotAnswering}};
    Office office;
    const Listener listener(office.socket, Listener::Part::Accepts);
    EXPECT_EQ(office.failure(), Failure::NoReader) << "no such program";
    office.folder.write("reader", "#!/bin/sh\n");
    EXPECT_EQ(office.failure(), Failure::NoReader) << "not executable";
    for (const auto& [script, failure] : cases) {
        office.reader(script);
        EXPECT_EQ(office.failure(), failure) << script;
    }
    office.reader("echo $$ >\"${0%/*}/process\"; exec sleep 60"); // Cancel ends one that hangs at once
    const auto isStarted = [&](std::size_t) { return !std::filesystem::exists(office.folder / "process"); };
    office.limit = std::chrono::minutes(10);
    EXPECT_EQ(office.failure(isStarted), Failure::Cancelled);
    office.limit = Office().limit;
    EXPECT_NE(kill(std::stoi(office.folder.read("process")), 0), 0) << "it is not left behind";
    // One that makes progress is waited for.
    office.reader("for i in 1 2 3 4; do printf 'A\\0\\0\\0\\0\\0\\0\\0\\0\\0\\0'; sleep 0.2; done");
    EXPECT_EQ(office.read().size(), 4U);
}
