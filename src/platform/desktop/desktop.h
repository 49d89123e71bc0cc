#pragma once

#include "basic/runtime_error.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

// What a command asks of the desktop that it runs on. The window implements it with Qt, the command-line
// program with standard streams, tests with scripted answers.

namespace desktop {

enum class Buttons { Ok, YesNo, YesNoCancel };
enum class Answer { Ok, Yes, No, Cancel };
enum class FileDialog { Open, Save, Import };

class Desktop {
  public:
    virtual ~Desktop() = default;

    /// A modal message box; an empty title means the application's title. Closing it counts as Cancel, or as
    /// No or OK where there is no Cancel.
    virtual Answer messageBox(std::string_view text, Buttons buttons = Buttons::Ok,
                              std::string_view title = {}) = 0;
    /// A modal box for one text; empty when cancelled.
    virtual std::string inputBox(std::string_view prompt, std::string_view title,
                                 std::string_view initial = {}) = 0;
    /// The common file dialog (filter "*.grl", default extension "grl"); nothing when cancelled. It asks and
    /// refuses nothing itself. Import looks for tables and files of digital levels instead.
    virtual std::optional<std::string> fileDialog(FileDialog kind, std::string_view initialName) = 0;

    virtual std::optional<std::string> clipboardText() = 0; ///< nothing when it holds no text
    virtual void setClipboardText(std::string_view text) = 0;
    virtual void beep() = 0;

    /// The progress bar pbr1, 0 to 100. Painted without taking user input.
    virtual void showProgress() = 0;
    virtual void setProgress(float percent) = 0;
    virtual void hideProgress() = 0;

    /// The message field of the status bar: what would otherwise be silent.
    virtual void status(std::string_view message) = 0;
    virtual void focusGrid() = 0;

    /// Moves a file to the desktop's trash; false when there is no trash, and then the file is untouched.
    virtual bool moveToTrash(std::string_view path) = 0;
    virtual std::chrono::system_clock::time_point now() = 0;
    /// The folder of templates and settings ("App.Path"), without a separator at its end.
    virtual std::string programFolder() = 0;
};

/// `name` within the program folder, found whatever its case; the name as given when there is no such file.
[[nodiscard]] std::string programFile(Desktop& desktop, std::string_view name);

/// Runs one step of a command that goes on whatever fails. A failure is said in the status bar and returned
/// as its error number; 0 when the step went well.
template <typename Step>
int ignoringErrors(Desktop& desktop, Step&& step) {
    try {
        std::forward<Step>(step)();
        return 0;
    } catch (const basic::RuntimeError& error) {
        desktop.status(error.told());
        return error.number();
    }
}

} // namespace desktop
