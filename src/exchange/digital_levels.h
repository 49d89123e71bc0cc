#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Files of digital levels: GSI-8 and GSI-16 ("GSI Online for TPS and DNA", May 2008, section on the DNA) and
// the M5 lines of DiNi instruments. Lengths are metres, or the file's feet where `feet` says so.

namespace exchange {

/// A point of a levelled line, in the order of a field book.
struct LevelPoint {
    enum class Kind { Start, Intermediate, Turning };
    Kind kind = Kind::Start;
    std::string name;
    std::optional<double> backSight; ///< from the set-up that follows a Start or Turning point
    std::optional<double> sight;     ///< the fore sight of a Turning point, the sight of an Intermediate one
    std::optional<double> level;     ///< as the instrument wrote it
    int line = 0;                    ///< of the file, where the sight or the level stands
};

struct LevelLine {
    int firstLine = 0, lastLine = 0; ///< of the file, from 1
    std::string name;                ///< of the line, where the file has one
    std::string method;              ///< "BF", "BFFB", "aBF", "aBFFB"
    std::vector<LevelPoint> points;  ///< the first is the Start
    int setUps = 0;
    bool feet = false;
    std::optional<double> known;                ///< level of the closing point that was typed in
    std::string knownPoint;                     ///< and its name
    std::optional<double> byReadings, byLevels; ///< end less start
    /// What keeps the line from being taken without a word: set-ups that differ by more than 0.1 mm from the
    /// levels in the file, sights that are missing or repeated. Each names a line of the file.
    std::vector<std::string> troubles;
    std::vector<std::string> hints; ///< intermediate levels that differ; the line is taken all the same

    [[nodiscard]] std::string from() const { return points.empty() ? "" : points.front().name; }
    [[nodiscard]] std::string to() const;
};

struct LevelFile {
    std::string format; ///< "GSI-8", "GSI-16", "M5"
    std::vector<LevelLine> lines;
    std::vector<std::string> notes;  ///< what concerns the whole file
    std::vector<std::string> strays; ///< what belongs to no line of levels, with its line of the file
};

/// True for bytes that begin as a file of a digital level does.
[[nodiscard]] bool isLevelFile(std::string_view bytes);

/// Reads such a file (UTF-8 or Windows-1252). Raises RuntimeError InvalidProcedureCall (5) with a description
/// when it is none or holds no line of levels.
[[nodiscard]] LevelFile readLevelFile(std::string_view bytes);

/// How point names tell chainage and offset: K kilometres, M metres, o offset in metres, "+" or "±" its sign
/// (minus: left), any other character as it stands: `KKMMM`, `KKMMM+oo`, `KKMMM±oo`.
class PointForm {
  public:
    PointForm() = default;
    /// Nothing for a text that is no such form.
    [[nodiscard]] static std::optional<PointForm> parse(std::string_view form);

    struct Place {
        std::string chainage;
        std::optional<double> offset; ///< negative: left
    };
    /// Where the point is; nothing when its name is not of the form. Zeros that the instrument dropped in
    /// front are put back.
    [[nodiscard]] std::optional<Place> place(std::string_view name) const;

  private:
    std::string m_form; // '±' stands here as '+'
};

/// The rows of a book, in its ten columns: the start with its level, a row for each point, change points as
/// "CP", names and a known closing level ("name = level") as remarks.
[[nodiscard]] std::vector<std::array<std::string, 10>> levelRows(const LevelLine& line,
                                                                 const PointForm& form);

/// "G to U, 22 set-ups: 0.33825 by the readings, 0.33824 by the levels in the file (0.01 mm)".
[[nodiscard]] std::string describe(const LevelLine& line);

} // namespace exchange
