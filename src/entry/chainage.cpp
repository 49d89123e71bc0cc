#include "chainage.h"

#include "sheet/cells.h"

#include "basic/numbers.h"
#include "basic/strings.h"

#include <cmath>

namespace entry {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string kilometreText(double kilometres) {
    return basic::format(kilometres, basic::pattern("#00"));
}

// Whole metres have no point; others keep up to three decimals.
std::string metreText(float metres) {
    return std::floor(metres) == metres ? basic::format(metres, basic::pattern("000"))
                                        : basic::format(metres, basic::pattern("000.###"));
}

// A text such as "1.250" with its hyphen put in, and whether it held one already.
struct Hyphenated {
    std::string text;
    bool hadHyphen = false;
};

Hyphenated hyphenate(std::string_view chainage) {
    Hyphenated result;
    for (const char c : chainage) {
        result.text += c == '.' ? '-' : c;
        if (c == '-') {
            result.hadHyphen = true;
            break;
        }
    }
    return result;
}

void checkCell(sheet::Book& book, desktop::Desktop& desktop) {
    sheet::Grid& grid = book.MSFG;
    if (grid.Text().starts_with('.')) grid.setText("0" + grid.Text());
    if (grid.Col() == sheet::InterSight && !grid.CellBackColor(grid.Row(), grid.Col()).isNone() &&
        basic::val(grid.Text()) < 10)
        grid.setCellBackColor(sheet::noColour);
    if (grid.Col() != sheet::Chainage || grid.Text().empty() || basic::sameText(grid.Text(), "CP")) return;
    Hyphenated chainage = hyphenate(grid.Text());
    if (chainage.hadHyphen) return;
    desktop.messageBox("Chainage must be " + chainage.text + " format i.e. '-' is used between Km and Meter");
    grid.setText(std::move(chainage.text));
}

} // namespace

std::string FtoS(float kilometres) {
    const std::int16_t km = basic::cInt(std::floor(kilometres));
    const std::int16_t metres = basic::cInt((kilometres - static_cast<float>(km)) * 1000);
    std::string result = (km < 10 ? "0" : "") + std::to_string(km) + "-";
    if (metres < 100) result += metres < 10 ? "00" : "0";
    return result + std::to_string(metres);
}

std::int32_t StoF(std::string& text) {
    text = basic::left(basic::trim(text), 6);
    const auto hyphen = text.find('-');
    const double kilometres = basic::val(std::string_view(text).substr(0, hyphen));
    std::string metres;
    if (hyphen != std::string::npos) {
        for (const char c : std::string_view(text).substr(hyphen)) {
            if (isDigit(c)) metres += c;
        }
    }
    return basic::cLng(basic::val(metres) + kilometres * 1000);
}

std::string StrToFig(std::string_view chainage, std::string_view increment) {
    const auto hyphen = chainage.find('-');
    const std::string_view kilometres = chainage.substr(0, hyphen);
    std::string metres;
    if (hyphen != std::string_view::npos) {
        for (const char c : chainage.substr(hyphen)) {
            if (isDigit(c) || c == '.') metres += c;
        }
    }
    const float next = basic::cSng(basic::val(metres) + basic::val(increment));
    if (next < 0) return kilometreText(basic::cDbl(kilometres) - 1) + "-" + metreText(next + 1000);
    if (next < 1000) return kilometreText(basic::val(kilometres)) + "-" + metreText(next);
    // The fraction is not carried over the kilometre.
    return kilometreText(basic::val(kilometres) + 1) + "-" +
           basic::format(next - 1000, basic::pattern("000"));
}

void leaveCell(sheet::Book& book, desktop::Desktop& desktop) {
    try {
        checkCell(book, desktop);
    } catch (const basic::RuntimeError& error) {
        desktop.messageBox(error.description());
    }
}

} // namespace entry
