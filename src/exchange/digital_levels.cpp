#include "digital_levels.h"

#include "level_formats.h"

#include "basic/files.h"
#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "sheet/book.h"

#include <cmath>

namespace exchange {
namespace {

std::string_view firstLine(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    bytes.remove_prefix(std::min(bytes.find_first_not_of("\r\n "), bytes.size()));
    return bytes.substr(0, bytes.find_first_of("\r\n"));
}

[[noreturn]] void refuse(const char* what) {
    throw basic::RuntimeError(basic::InvalidProcedureCall, what);
}

std::string sightText(const std::optional<double>& sight) {
    return sight ? basic::plainText(static_cast<float>(*sight)) : std::string();
}

std::string levelText(double level) {
    return basic::format(level, basic::pattern("#0.000##"));
}

} // namespace

bool isLevelFile(std::string_view bytes) {
    const std::string_view line = firstLine(bytes);
    return isGsi(line) || isM5(line) || line.starts_with("For R");
}

LevelFile readLevelFile(std::string_view bytes) {
    const std::string_view line = firstLine(bytes);
    if (line.starts_with("For R"))
        refuse("The file is of the form REC 500, which tells no units; have the instrument write M5");
    if (!isGsi(line) && !isM5(line)) refuse("This is no file of a digital level");
    std::string text = basic::toUtf8(bytes);
    if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
    LevelFile file = isM5(line) ? readM5(text) : readGsi(text);
    if (file.lines.empty()) refuse("The file holds no line of levels");
    for (const LevelLine& each : file.lines)
        if (each.feet) {
            file.notes.emplace_back("in feet; taken as feet");
            break;
        }
    return file;
}

std::optional<PointForm> PointForm::parse(std::string_view form) {
    PointForm result;
    std::size_t letters[3] = {};
    while (!form.empty()) {
        char c = form.front();
        form.remove_prefix(1);
        if (c == '\xC2' && form.starts_with('\xB1')) { // ± in UTF-8
            c = '+';
            form.remove_prefix(1);
        }
        const std::size_t which = std::string_view("KMo").find(c);
        if (which != std::string_view::npos) {
            // The places of a part stand together, but for a point.
            const bool goesOn =
                letters[which] == 0 || result.m_form.back() == c || result.m_form.back() == '.';
            if (!goesOn) return {};
            ++letters[which];
        }
        result.m_form += c;
    }
    if (letters[0] + letters[1] == 0 || result.m_form.size() > 32) return {};
    return result;
}

std::optional<PointForm::Place> PointForm::place(std::string_view name) const {
    if (m_form.empty() || name.empty() || name.size() > m_form.size()) return {};
    std::string padded(m_form.size() - name.size(), '0');
    padded += name;
    std::string kilometres, metres, offset;
    bool left = false;
    for (std::size_t k = 0; k < m_form.size(); ++k) {
        const char wanted = m_form[k];
        const char c = padded[k];
        const bool inPart = wanted == 'K' || wanted == 'M' || wanted == 'o';
        if (inPart && (c < '0' || c > '9')) return {};
        if (wanted == 'K') kilometres += c;
        if (wanted == 'M') metres += c;
        if (wanted == 'o') offset += c;
        if (wanted == '+' && c != '+' && c != '-') return {};
        if (wanted == '+') left = c == '-';
        if (!inPart && wanted != '+' && c != wanted) return {};
        if (wanted != '.' || k == 0) continue;
        if (m_form[k - 1] == 'M') metres += '.';
        if (m_form[k - 1] == 'o') offset += '.';
    }
    Place place;
    const double km = basic::val(kilometres);
    place.chainage = basic::format(km, basic::pattern("#00")) + "-" +
                     basic::format(basic::val(metres), basic::pattern("#000.###"));
    if (!offset.empty()) place.offset = left ? -basic::val(offset) : basic::val(offset);
    return place;
}

std::vector<std::array<std::string, 10>> levelRows(const LevelLine& line, const PointForm& form) {
    std::vector<std::array<std::string, 10>> rows;
    for (const LevelPoint& point : line.points) {
        auto& row = rows.emplace_back();
        row[sheet::Remark] = point.name;
        row[sheet::BackSight] = sightText(point.backSight);
        switch (point.kind) {
        case LevelPoint::Kind::Start:
            if (point.level) row[sheet::RLevel] = levelText(*point.level);
            continue;
        case LevelPoint::Kind::Turning:
            row[sheet::ForeSight] = sightText(point.sight);
            row[sheet::Chainage] = "CP";
            continue;
        case LevelPoint::Kind::Intermediate:
            row[sheet::InterSight] = sightText(point.sight);
        }
        const auto place = form.place(point.name);
        if (!place) continue;
        row[sheet::Chainage] = place->chainage;
        const double offset = place->offset.value_or(0);
        const int column = offset < 0 ? sheet::Left : offset > 0 ? sheet::Right : sheet::Center;
        row[static_cast<std::size_t>(column)] = basic::plainText(static_cast<float>(std::abs(offset)));
    }
    if (line.known) {
        for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
            if ((*row)[sheet::ForeSight].empty()) continue;
            const std::string& name = line.knownPoint.empty() ? (*row)[sheet::Remark] : line.knownPoint;
            (*row)[sheet::Remark] = name + " = " + levelText(*line.known);
            break;
        }
    }
    return rows;
}

std::string describe(const LevelLine& line) {
    std::string text = line.from() + " to " + line.to() + ", " + std::to_string(line.setUps) +
                       (line.setUps == 1 ? " set-up" : " set-ups");
    const auto value = [](double level) { return basic::format(level, basic::pattern("#0.000###")); };
    if (line.byReadings) text += ": " + value(*line.byReadings) + " by the readings";
    if (line.byLevels) text += ", " + value(*line.byLevels) + " by the levels in the file";
    if (line.byReadings && line.byLevels)
        text += " (" +
                basic::format((*line.byReadings - *line.byLevels) * (line.feet ? 304.8 : 1000),
                              basic::pattern("#0.00")) +
                " mm)";
    return text;
}

} // namespace exchange
