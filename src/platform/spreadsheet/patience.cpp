#include "patience.h"

#include <algorithm>
#include <poll.h>
#include <thread>

namespace spreadsheet {

using std::chrono::milliseconds;

namespace {

constexpr milliseconds slice{20};

milliseconds untilThen(Patience::Clock::time_point end) {
    const auto left = std::chrono::ceil<milliseconds>(end - Patience::Clock::now());
    return std::clamp(left, milliseconds{0}, slice);
}

} // namespace

bool Patience::ready(int fd, short events, milliseconds most) {
    const auto end = Clock::now() + most;
    for (;;) {
        pollfd waited{fd, events, 0};
        const auto left = untilThen(end);
        if (poll(&waited, 1, static_cast<int>(left.count())) > 0) return true;
        ask();
        if (Clock::now() >= end) return false;
    }
}

void Patience::pause(milliseconds time) {
    const auto end = Clock::now() + time;
    while (Clock::now() < end) {
        std::this_thread::sleep_for(untilThen(end));
        ask();
    }
}

void Patience::rowsRead(std::size_t count) {
    m_rows = count;
    m_end = Clock::now() + m_limit;
    ask();
}

void Patience::ask() const {
    if (m_goOn && !m_goOn(m_rows)) throw Error(Failure::Cancelled, "Import cancelled");
    if (Clock::now() >= m_end) throw Error(Failure::NotAnswering, "The spreadsheet program does not answer");
}

} // namespace spreadsheet
