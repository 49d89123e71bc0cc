#pragma once

#include "digital_levels.h"

namespace exchange {

/// Puts lines of levels together from what a file says block by block. It never guesses: what is missing or
/// repeated becomes a trouble with its line number and text.
class LevelLineBuilder {
  public:
    enum class Sight { Back, Fore, Intermediate };

    /// Where the block being read stands in the file.
    void at(int line, std::string_view text) {
        m_at = line;
        m_text = text;
    }
    void startLine(std::string_view method, bool isDouble);
    /// A typed or carried level before the first sight.
    void start(std::string_view point, double level);
    /// `second`: of the two readings that a method takes of one point; nothing: the first one that is free.
    void sight(Sight kind, double reading, std::string_view point, std::optional<bool> second = {});
    /// The level that the instrument worked out of the sights before it; of `point` when a name is given.
    void result(double level, std::string_view point = {});
    void known(std::string_view point, double level);
    void named(std::string_view line) { line_().name = line; }
    void inFeet() { line_().feet = true; }
    void dropLastSight(); ///< "measurement repeated"
    void dropSetUp();     ///< "station repeated"
    void trouble(std::string_view what);
    [[nodiscard]] bool isOpen() const { return m_open; }
    [[nodiscard]] bool hasStart() const { return m_open && !m_line.points.empty(); }
    [[nodiscard]] bool expectsResult() const;
    void endLine();
    void finish(LevelFile& file) &&; ///< puts the lines into it, and what belongs to none

  private:
    struct Readings {
        std::optional<double> value[2];
        std::string point;
        int line = 0;
        [[nodiscard]] std::optional<double> mean() const;
    };

    LevelLine& line_();
    [[nodiscard]] std::string here() const;
    void takeIntermediate(double level);
    void finishSetUp(std::optional<double> level, std::string_view point);
    [[nodiscard]] std::optional<double> height() const;

    std::vector<LevelLine> m_lines;
    std::vector<std::string> m_strays;
    LevelLine m_line;
    bool m_open = false, m_isDouble = false;
    int m_at = 0;
    std::string_view m_text;
    Readings m_back, m_fore;                 // of the set-up being read
    std::vector<LevelPoint> m_intermediates; // sighted from it
    bool m_awaitsLevel = false;              // the last sight was an intermediate one
    Sight m_last = Sight::Back;
    bool m_lastSecond = false;
    double m_startLevel = 0;
    std::size_t m_setUpPoint = 0; // the point before the set-up that was finished last
};

} // namespace exchange
