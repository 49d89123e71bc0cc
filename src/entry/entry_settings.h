#pragma once

#include "desktop/desktop.h"
#include "sheet/book.h"

#include <string_view>

namespace entry {

/// The name of the settings file in the program folder.
inline constexpr const char* settingsFileName = "ZavroGRL.LVX";

/// What optLeft, optRight and optBoth choose between.
enum class OffsetSide { Left, Right, Both };

/// Adds the offset `distance` (a text, metres) to lstOft, L entries before R entries and each side ascending.
/// False, with the message shown, when the text reads as 0.
bool addOffset(sheet::Settings& settings, desktop::Desktop& desktop, std::string_view distance,
               OffsetSide side);

/// Removes the entry `selected` of lstOft; shows a message when it is -1 (none selected).
void removeOffset(sheet::Settings& settings, desktop::Desktop& desktop, int selected);

/// OK in the Settings frame: fills both offset arrays from lstOft and writes the settings file. Raises
/// SubscriptOutOfRange (9) above 200 entries a side and the file's error when it cannot be written.
void acceptSettings(sheet::Book& book, desktop::Desktop& desktop);

/// Reads the settings file, if there is one, over `settings`. A value that does not fit its control ends the
/// reading; what was read before it holds.
void readSettings(sheet::Settings& settings, desktop::Desktop& desktop);

} // namespace entry
