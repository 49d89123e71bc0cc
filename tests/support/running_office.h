#pragma once

#include "command_output.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
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
        int status = 0;
        waitpid(run("--infilter=CSV:44,34,76,1 --convert-to " + format + " --outdir " + m_folder + " " +
                    document),
                &status, 0);
        return std::filesystem::path(document).replace_extension(format);
    }

    /// Starts it on `documents`, or without any.
    void start(const std::vector<std::string>& documents = {}) {
        std::string arguments;
        for (const std::string& document : documents)
            arguments += " " + document;
        m_process = run(arguments);
    }

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
    /// In a process group of its own.
    [[nodiscard]] pid_t run(const std::string& arguments) const {
        const std::string command = "exec env -i PATH=/usr/bin:/bin LANG=C.UTF-8 HOME=" + m_folder +
                                    " soffice -env:UserInstallation=file://" + m_folder +
                                    "/profile --headless --norestore --nologo --nolockcheck " + arguments +
                                    " </dev/null >/dev/null 2>&1";
        const pid_t process = fork();
        if (process == 0) {
            setpgid(0, 0);
            execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
            _exit(127);
        }
        setpgid(process, process);
        return process;
    }

    /// The socket is named after the MD5 sum of the profile's address in UTF-16, each byte without leading
    /// zero.
    static std::string socketOf(const std::string& profile) {
        const std::string sum =
            outputOf("printf '" + profile + "' | iconv -t UTF-16LE | md5sum | cut -c1-32").value_or("");
        std::string name;
        for (std::size_t i = 0; i + 1 < sum.size() && i < 32; i += 2)
            name += sum[i] == '0' ? sum.substr(i + 1, 1) : sum.substr(i, 2);
        return "/tmp/OSL_PIPE_" + std::to_string(geteuid()) + "_SingleOfficeIPC_" + name;
    }

    /// Named after the process of the group that is LibreOffice proper.
    [[nodiscard]] std::string pipe() const {
        std::string process = outputOf("pgrep -g " + std::to_string(m_process) + " soffice.bin").value_or("");
        while (!process.empty() && process.back() == '\n')
            process.pop_back();
        return "/tmp/OSL_PIPE_" + std::to_string(geteuid()) + "_zavrogrl_" + process;
    }

    std::string m_folder;
    std::string m_socket;
    pid_t m_process = 0;
};
