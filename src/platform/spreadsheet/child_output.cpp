#include "child_output.h"

#include "descriptor.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>

namespace spreadsheet {

namespace {

/// A started child process; killed when it is still there at the end, and always waited for.
class Child {
  public:
    explicit Child(pid_t process) : m_process(process) {}
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() {
        if (m_process <= 0) return;
        kill(m_process, SIGKILL);
        int status = 0;
        while (waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
        }
    }
    /// Its exit status; -1 when a signal ended it.
    int exitStatus(Patience& patience) {
        int status = 0;
        for (;;) {
            const pid_t ended = waitpid(m_process, &status, WNOHANG);
            if (ended == m_process) break;
            if (ended < 0 && errno != EINTR) break;
            patience.pause(std::chrono::milliseconds{1});
        }
        m_process = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    pid_t m_process;
};

std::vector<std::string> environmentWith(const std::string& libraries) {
    constexpr std::string_view name = "LD_LIBRARY_PATH=";
    std::vector<std::string> result;
    if (libraries.empty()) {
        for (char** entry = environ; *entry != nullptr; ++entry)
            result.emplace_back(*entry);
        return result;
    }
    std::string path = std::string(name) + libraries;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view variable = *entry;
        if (!variable.starts_with(name))
            result.emplace_back(variable);
        else if (variable.size() > name.size())
            path += ":" + std::string(variable.substr(name.size()));
    }
    result.push_back(path);
    return result;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

pid_t start(const std::string& program, const std::vector<std::string>& arguments,
            const std::string& libraries, const char* missing, int output) {
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = environmentWith(libraries);
    posix_spawn_file_actions_t files{};
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    pid_t process = 0;
    const int failed = posix_spawn(&process, program.c_str(), &files, nullptr, pointers(words).data(),
                                   pointers(variables).data());
    posix_spawn_file_actions_destroy(&files);
    if (failed != 0) throw Error(Failure::NoReader, missing);
    return process;
}

} // namespace

int runProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& libraries, const char* missing, Patience& patience,
               const std::function<std::size_t(std::string_view)>& take) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw Error(Failure::NoReader, missing);
    const Descriptor input(ends[0]);
    Descriptor output(ends[1]);
    Child child(start(program, arguments, libraries, missing, output.get()));
    output = Descriptor(); // closed here, so that the child's end is the only one left
    std::vector<char> buffer(std::size_t{64} << 10);
    for (;;) {
        if (!patience.ready(input.get(), POLLIN, std::chrono::hours(1))) continue;
        const auto count = read(input.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        patience.rowsRead(take({buffer.data(), static_cast<std::size_t>(count)}));
    }
    return child.exitStatus(patience);
}

} // namespace spreadsheet
