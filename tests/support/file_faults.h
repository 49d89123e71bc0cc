#pragma once

#include "files/watch.h"

#include <cerrno>
#include <functional>
#include <utility>
#include <vector>

/// Writes down the calls about files as long as it lives, and lets those fail that it is told to.
class FileFaults final : public files::Watch {
  public:
    /// The error number for a call, 0 to let it pass.
    using Rule = std::function<int(files::Call, const std::string& path)>;

    explicit FileFaults(Rule rule = nullptr) : m_rule(std::move(rule)), m_before(files::setWatch(this)) {}
    /// The call of that number fails, counted from 0.
    explicit FileFaults(std::size_t number, int code = EIO)
        : FileFaults([this, number, code](files::Call, const std::string&) {
              return calls.size() == number + 1 ? code : 0;
          }) {}
    FileFaults(const FileFaults&) = delete;
    FileFaults& operator=(const FileFaults&) = delete;
    ~FileFaults() override { files::setWatch(m_before); }

    int before(files::Call call, const std::string& path) override {
        calls.push_back(call);
        return m_rule ? m_rule(call, path) : 0;
    }

    std::vector<files::Call> calls;

  private:
    Rule m_rule;
    files::Watch* m_before;
};
