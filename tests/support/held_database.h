#pragma once

#include "dao/dao.h"

#include <gtest/gtest.h>

#include <string>
#include <sys/wait.h>
#include <unistd.h>

/// Another instance of the program that has a database open while this object lives.
class HeldDatabase {
  public:
    HeldDatabase(const std::string& path, std::string_view connect) {
        int ready[2];
        if (pipe(ready) != 0 || pipe(m_done) != 0) ADD_FAILURE() << "no pipe";
        m_child = fork();
        if (m_child == 0) {
            const dao::Database held = dao::OpenDatabase(path, connect);
            char byte = 0;
            const bool told = write(ready[1], &byte, 1) == 1;
            close(m_done[1]);
            _exit(told && read(m_done[0], &byte, 1) == 0 ? 0 : 1); // the end of the pipe is the sign to leave
        }
        close(ready[1]);
        close(m_done[0]);
        char byte = 0;
        EXPECT_EQ(read(ready[0], &byte, 1), 1) << path << " was not opened";
        close(ready[0]);
    }
    HeldDatabase(const HeldDatabase&) = delete;
    HeldDatabase& operator=(const HeldDatabase&) = delete;
    ~HeldDatabase() {
        close(m_done[1]);
        waitpid(m_child, nullptr, 0);
    }

  private:
    int m_done[2];
    pid_t m_child;
};
