#include "entry_settings.h"

#include "basic/files.h"
#include "basic/numbers.h"

#include <algorithm>
#include <array>
#include <string>

namespace entry {
namespace {

// The two-digit tags that begin the lines of the settings file.
enum Tag {
    Increment = 1,
    StartingSide = 2,
    Dumpy = 3,
    FinalList = 4,
    AddReading = 5,
    FixedOffsets = 6,
    AddText = 51,
    Offset = 61
};

constexpr std::array<const char*, 2> sideItems{"Left", "Right"};

char sideOf(const std::string& offset) {
    return offset.empty() ? '\0' : offset.front();
}

float distanceOf(const std::string& offset) {
    return basic::cSng(basic::val(std::string_view(offset).substr(1)));
}

bool comesBefore(const std::string& a, const std::string& b) {
    if (sideOf(a) != sideOf(b)) return sideOf(a) < sideOf(b);
    return sideOf(a) != '\0' && distanceOf(a) < distanceOf(b);
}

float& element(sheet::OffsetArray& offsets, std::size_t index) {
    if (index >= offsets.size()) throw basic::RuntimeError(basic::SubscriptOutOfRange);
    return offsets[index];
}

// The entries before the first R entry are the left side, the rest the right one. An entry of another letter
// is passed over and its element keeps what it held.
void fillOffsets(const std::vector<std::string>& list, sheet::OffsetArray& left, sheet::OffsetArray& right) {
    std::size_t at = 0;
    for (; at < list.size() && sideOf(list[at]) != 'R'; ++at) {
        if (sideOf(list[at]) == 'L') element(left, at + 1) = distanceOf(list[at]);
    }
    const std::size_t stop = at;
    for (; at < list.size(); ++at) {
        if (sideOf(list[at]) == 'R') element(right, at - stop + 1) = distanceOf(list[at]);
    }
    left[0] = static_cast<float>(stop);
    right[0] = static_cast<float>(list.size() - stop);
}

std::vector<std::string> settingsLines(const sheet::Settings& settings) {
    const auto ticked = [](bool value) { return value ? "1" : "0"; };
    std::vector<std::string> lines{
        "01" + settings.cboIncr,
        "02" + std::to_string(settings.cboSideIndex),
        std::string("03") + ticked(settings.chk005),
        std::string("04") + ticked(settings.chkFinal),
        std::string("05") + ticked(settings.chkAdd),
        "51" + settings.txtAdd,
        std::string("06") + ticked(settings.chkOft),
    };
    for (const std::string& offset : settings.lstOft)
        lines.push_back("61" + offset);
    return lines;
}

// A check box takes 0, 1 and 2 (neither); only 1 counts as ticked.
bool tick(std::string_view value) {
    const int state = basic::cInt(basic::cDbl(value));
    if (state < 0 || state > 2) throw basic::RuntimeError(basic::InvalidProcedureCall);
    return state == 1;
}

void chooseSide(sheet::Settings& settings, std::string_view value) {
    const int index = basic::cInt(basic::cDbl(value));
    if (index < -1 || index >= static_cast<int>(sideItems.size()))
        throw basic::RuntimeError(basic::InvalidProcedureCall);
    settings.cboSideIndex = index;
    settings.cboSide = index < 0 ? "" : sideItems[static_cast<std::size_t>(index)];
}

void readLine(sheet::Settings& settings, std::string_view line) {
    const std::string_view value = line.substr(std::min<std::size_t>(line.size(), 2));
    switch (static_cast<int>(basic::val(line.substr(0, 2)))) {
    case Increment:
        settings.cboIncr = value;
        break;
    case StartingSide:
        chooseSide(settings, value);
        break;
    case Dumpy:
        settings.chk005 = tick(value);
        break;
    case FinalList:
        settings.chkFinal = tick(value);
        break;
    case AddReading:
        settings.chkAdd = tick(value);
        break;
    case FixedOffsets:
        settings.chkOft = tick(value);
        break;
    case AddText:
        settings.txtAdd = value;
        break;
    case Offset:
        settings.lstOft.emplace_back(value);
        break;
    default:
        break;
    }
}

} // namespace

bool addOffset(sheet::Settings& settings, desktop::Desktop& desktop, std::string_view distance,
               OffsetSide side) {
    try {
        const double metres = basic::val(distance);
        if (metres == 0) {
            desktop.messageBox("Enter Offset Distance 1st...");
            return false;
        }
        const std::string shown = basic::format(metres, basic::pattern("#00.00"));
        if (side != OffsetSide::Right) settings.lstOft.push_back("L" + shown);
        if (side != OffsetSide::Left) settings.lstOft.push_back("R" + shown);
        std::stable_sort(settings.lstOft.begin(), settings.lstOft.end(), comesBefore);
        return true;
    } catch (const basic::RuntimeError& error) {
        desktop.messageBox(error.description());
        return false;
    }
}

void removeOffset(sheet::Settings& settings, desktop::Desktop& desktop, int selected) {
    if (selected < 0 || selected >= static_cast<int>(settings.lstOft.size())) {
        desktop.messageBox("Select Reading from list 1st...");
        return;
    }
    settings.lstOft.erase(settings.lstOft.begin() + selected);
}

void acceptSettings(sheet::Book& book, desktop::Desktop& desktop) {
    sheet::OffsetArray left = book.LeftOffsets;
    sheet::OffsetArray right = book.RightOffsets;
    fillOffsets(book.settings.lstOft, left, right);
    book.LeftOffsets = left;
    book.RightOffsets = right;
    basic::writeLines(desktop::programFile(desktop, settingsFileName), settingsLines(book.settings));
}

void readSettings(sheet::Settings& settings, desktop::Desktop& desktop) {
    const std::string path = desktop::programFile(desktop, settingsFileName);
    if (!basic::fileExists(path)) return;
    std::size_t number = 0;
    try {
        for (const std::string& line : basic::readLines(path)) {
            ++number;
            readLine(settings, line);
        }
    } catch (const basic::RuntimeError& error) {
        desktop.status(number == 0 ? std::string(settingsFileName) + ": " + error.told()
                                   : std::string(settingsFileName) + ": line " + std::to_string(number) +
                                         " does not fit; the settings from there on were not read");
    }
}

} // namespace entry
