#pragma once

#include "desktop/desktop.h"

#include <deque>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// A desktop that answers from a script and writes down what it was asked. With no answer left it answers
/// Cancel, else No, else OK, as a user who backs out would.
class ScriptedDesktop : public desktop::Desktop {
  public:
    struct Box {
        std::string text;
        desktop::Buttons buttons;
        std::string title;
    };

    std::deque<desktop::Answer> answers;
    std::deque<std::string> inputs;
    std::deque<std::optional<std::string>> files;
    std::optional<std::string> clipboard;
    std::string folder; ///< the program folder
    bool hasTrash = false;
    std::function<void(std::string_view)> onBox; ///< what happens while a message box is shown

    std::vector<Box> boxes;
    std::vector<std::string> prompts; ///< "prompt|title|initial" of each input box
    std::vector<desktop::FileDialog> fileDialogs;
    std::vector<std::string> statuses;
    std::vector<std::string> trashed;
    std::vector<float> progress;
    bool progressShown = false;
    int beeps = 0;
    int gridFocused = 0;

    desktop::Answer messageBox(std::string_view text, desktop::Buttons buttons,
                               std::string_view title) override {
        boxes.push_back({std::string(text), buttons, std::string(title)});
        if (onBox) onBox(text);
        if (!answers.empty() && buttons != desktop::Buttons::Ok) return take(answers);
        switch (buttons) {
        case desktop::Buttons::YesNoCancel:
            return desktop::Answer::Cancel;
        case desktop::Buttons::YesNo:
            return desktop::Answer::No;
        case desktop::Buttons::Ok:
            break;
        }
        return desktop::Answer::Ok;
    }
    std::string inputBox(std::string_view prompt, std::string_view title, std::string_view initial) override {
        prompts.push_back(std::string(prompt) + "|" + std::string(title) + "|" + std::string(initial));
        return inputs.empty() ? std::string() : take(inputs);
    }
    std::optional<std::string> fileDialog(desktop::FileDialog kind, std::string_view) override {
        fileDialogs.push_back(kind);
        return files.empty() ? std::nullopt : take(files);
    }
    std::optional<std::string> clipboardText() override { return clipboard; }
    void setClipboardText(std::string_view text) override { clipboard = std::string(text); }
    void beep() override { ++beeps; }
    void showProgress() override { progressShown = true; }
    void setProgress(float percent) override { progress.push_back(percent); }
    void hideProgress() override { progressShown = false; }
    void status(std::string_view message) override { statuses.emplace_back(message); }
    void focusGrid() override { ++gridFocused; }
    bool moveToTrash(std::string_view path) override {
        if (!hasTrash) return false;
        trashed.emplace_back(path);
        return std::filesystem::remove(std::filesystem::path(path));
    }
    std::chrono::system_clock::time_point now() override { return time; }
    std::string programFolder() override { return folder; }

    std::chrono::system_clock::time_point time{std::chrono::seconds{1'700'000'000}};

  private:
    template <typename T>
    static T take(std::deque<T>& from) {
        T value = std::move(from.front());
        from.pop_front();
        return value;
    }
};
