#pragma once

#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

/// A LibreOffice of the test's own: a private home and profile, no window, gone afterwards with all that it
/// left.
class RunningOffice {
  public:
    static bool isInstalled() { return access("/usr/bin/soffice", X_OK) == 0; }

    RunningOffice() {
        std::string form = (std::filesystem::temp_directory_path() / "zavrogrl-office-XXXXXX").string();
        if (mkdtemp(form.data()) == nullptr) throw std::runtime_error("no temporary folder");
        m_folder = form;
        m_socket = socketOf("file://" + m_folder + "/profile");
    }
    RunningOffice(const RunningOffice&) = delete;
    RunningOffice& operator=(const RunningOffice&) = delete;
    ~RunningOffice() {
        end();
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
        std::filesystem::remove(m_socket, ignored);
    }

    [[nodiscard]] const std::string& socket() const { return m_socket; }
    [[nodiscard]] std::string path(const std::string& name) const { return m_folder + "/" + name; }
    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }

    /// A copy of a document in another format ("xlsx"); before start().
    std::string convert(const std::string& document, const std::string& format) const {
        // Fields separated by commas, quoted by ", UTF-8; texts that look like dates stay texts.
        const pid_t process =
            run({"--infilter=CSV:44,34,76,1", "--convert-to", format, "--outdir", m_folder, document});
        int status = 0;
        waitpid(process, &status, 0);
        return std::filesystem::path(path(std::filesystem::path(document).filename()))
            .replace_extension(format);
    }

    /// Starts it on `documents`, or without any.
    void start(const std::vector<std::string>& documents = {}) { m_process = run(documents); }

    /// Waits until a document is loaded.
    bool waitFor(const std::string& document) const {
        const std::filesystem::path file(document);
        const auto lock = file.parent_path() / (".~lock." + file.filename().string() + "#");
        return waitUntil([&] { return std::filesystem::exists(lock); });
    }
    /// Waits until it has opened the pipe that a client asked for.
    bool waitForPipe(const std::function<void()>& ask) const {
        return waitUntil([&] {
            ask();
            return std::filesystem::exists(pipe());
        });
    }

    void signal(int number) const {
        if (m_process > 0) ::kill(-m_process, number);
    }
    void end() {
        if (m_process <= 0) return;
        const std::string left = pipe();
        signal(SIGKILL);
        int status = 0;
        waitpid(m_process, &status, 0);
        m_process = 0;
        std::error_code ignored;
        std::filesystem::remove(left, ignored);
        for (const auto& entry : std::filesystem::directory_iterator(m_folder))
            if (entry.path().filename().string().starts_with(".~lock"))
                std::filesystem::remove(entry, ignored);
    }

    /// Waits at most 30 s, which only a broken machine needs.
    static bool waitUntil(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!condition()) {
            if (std::chrono::steady_clock::now() >= end) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        return true;
    }

  private:
    [[nodiscard]] pid_t run(const std::vector<std::string>& arguments) const {
        std::vector<std::string> words{
            "/usr/bin/soffice", "-env:UserInstallation=file://" + m_folder + "/profile",
            "--headless",       "--norestore",
            "--nologo",         "--nolockcheck"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<std::string> variables{"HOME=" + m_folder, "PATH=/usr/bin:/bin", "LANG=C.UTF-8"};
        posix_spawn_file_actions_t files{};
        posix_spawn_file_actions_init(&files);
        for (int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            posix_spawn_file_actions_addopen(&files, stream, "/dev/null", O_RDWR, 0);
        posix_spawnattr_t attributes{};
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
        pid_t process = 0;
        const int failed = posix_spawn(&process, words[0].c_str(), &files, &attributes,
                                       pointers(words).data(), pointers(variables).data());
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&files);
        if (failed != 0) throw std::runtime_error("soffice cannot be started");
        return process;
    }

    static std::vector<char*> pointers(std::vector<std::string>& texts) {
        std::vector<char*> result;
        result.reserve(texts.size() + 1);
        for (std::string& text : texts)
            result.push_back(text.data());
        result.push_back(nullptr);
        return result;
    }

    static std::string outputOf(const std::string& command) {
        std::string output;
        FILE* pipe = popen(command.c_str(), "r");
        if (pipe == nullptr) return output;
        for (int c = fgetc(pipe); c != EOF; c = fgetc(pipe))
            output += static_cast<char>(c);
        pclose(pipe);
        return output;
    }

    /// The socket is named after the MD5 sum of the profile's address in UTF-16, each byte without leading
    /// zero.
    static std::string socketOf(const std::string& profile) {
        const std::string sum =
            outputOf("printf '" + profile + "' | iconv -t UTF-16LE | md5sum | cut -c1-32");
        std::string name;
        for (std::size_t i = 0; i + 1 < sum.size() && i < 32; i += 2)
            name += sum[i] == '0' ? sum.substr(i + 1, 1) : sum.substr(i, 2);
        return "/tmp/OSL_PIPE_" + std::to_string(geteuid()) + "_SingleOfficeIPC_" + name;
    }

    /// Named after the process of the group that is LibreOffice proper.
    [[nodiscard]] std::string pipe() const {
        std::string process = outputOf("pgrep -g " + std::to_string(m_process) + " soffice.bin");
        while (!process.empty() && process.back() == '\n')
            process.pop_back();
        return "/tmp/OSL_PIPE_" + std::to_string(geteuid()) + "_zavrogrl_" + process;
    }

    std::string m_folder;
    std::string m_socket;
    pid_t m_process = 0;
};
