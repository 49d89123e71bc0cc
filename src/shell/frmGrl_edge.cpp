#include "frmGrl.h"

#include "controls/flex_grid.h"
#include "export_panel.h"
#include "settings_frame.h"
#include "text.h"
#include "window_part.h"

#include "basic/runtime_error.h"
#include "entry/chainage.h"
#include "entry/key_entry.h"
#include "files/folder.h"
#include "project/report.h"

#include <algorithm>
#include <new>
#include <string_view>

// The one edge: whatever the user does comes into the program here.

namespace shell {
namespace {

constexpr std::size_t reserveSize = std::size_t{256} * 1024;

/// The words of what is being handled.
std::string reason() {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return basic::descriptionOf(basic::OutOfMemory);
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "an unknown error";
    }
}

/// Ctrl and a letter that is a command's and not the grid's own; Ctrl+V is both.
bool isOfACommand(char32_t character) {
    constexpr std::u32string_view others = U"\x01\x03\b\n\r";
    return character < U' ' && others.find(character) == std::u32string_view::npos;
}

} // namespace

bool frmGrl::frameIsOpen() const {
    return !m_ff->isHidden() || !m_fExport->isHidden() || m_laid != nullptr;
}

void frmGrl::act(const Action& action, const std::function<void()>& what) {
    if (m_ended || (action.heldByFrames && frameIsOpen())) return;
    if (m_reserve.empty()) m_reserve.resize(reserveSize);
    if (action.kind == Action::Command) m_desktop.status({});
    const bool isStep = !action.isNoStep && action.kind != Action::Timer;
    if (isStep) beginStep(action);
    try {
        if (action.walksGrid) MSFG_LeaveCell();
        what();
    } catch (...) {
        if (isStep) takeStepBack();
        rescue(action.name);
    }
    if (isStep) endStep(action);
    tellWarnings();
    if (action.kind == Action::Timer || m_ended) return;
    if (action.kind == Action::Command) showBook();
    for (const auto& part : m_parts)
        part->bookShown();
}

// Beside what the action itself told: it went well all the same.
void frmGrl::tellWarnings() {
    std::string told = toUtf8(m_desktop.statusText());
    const std::vector<std::string> warnings = files::takeWarnings();
    for (const std::string& warning : warnings)
        told += (told.empty() ? "" : " ") + warning;
    if (!warnings.empty()) m_desktop.status(told);
}

void frmGrl::beginStep(const Action& action) {
    using sheet::Journal;
    m_journal.begin(action.name, action.typesText ? Journal::Action::Typing : Journal::Action::Command);
}

void frmGrl::endStep(const Action& action) {
    if (!m_journal.end())
        m_desktop.status(std::string(action.name) + " is too large and cannot be taken back.");
}

void frmGrl::takeStepBack() noexcept {
    m_book.notices.dropUntold();
    try {
        m_journal.takeBack();
    } catch (...) { // NOLINT(bugprone-empty-catch): the book stays as far as it came
    }
}

// Memory may be what is missing, so what was laid by for this moment is given back first.
void frmGrl::rescue(const char* what) noexcept {
    std::vector<char>().swap(m_reserve);
    try {
        std::string told = project::asSentence(std::string(what) + " stopped: " + reason());
        m_desktop.hideProgress();
        m_book.MSFG.setVisible(true);
        const std::string kept = project::rescueBook(m_book, m_desktop);
        if (!kept.empty()) told += ' ' + kept;
        m_desktop.status(told);
    } catch (...) { // NOLINT(bugprone-empty-catch): nothing is left to tell it with
    }
}

void frmGrl::MSFG_KeyPress(char32_t character) {
    entry::keyPress(m_book, m_desktop, character);
}

void frmGrl::MSFG_KeyDown(entry::EditKey key) {
    entry::keyDown(m_book, m_desktop, key);
}

void frmGrl::MSFG_LeaveCell() {
    entry::leaveCell(m_book, m_desktop);
}

// The user moves the cursor, or the far end of the selection.
void frmGrl::MSFG_Move(int row, int col, bool extend) {
    sheet::Grid& grid = m_book.MSFG;
    if (extend) return grid.setSelection(row, col);
    if (row != grid.Row() || col != grid.Col()) MSFG_LeaveCell();
    grid.moveTo(std::min(row, grid.Rows() - 1), col);
}

void frmGrl::listenToGrid() {
    const auto key = [this](const entry::KeyStep& step, const std::function<void()>& what) {
        act({.name = step.name, .kind = Action::Key, .typesText = step.typesText}, what);
    };
    m_grid->keyPress = [this, key](char32_t character) {
        constexpr char32_t escape = 27;
        if (character == escape && !m_fExport->isHidden()) // the grid lies behind the panel
            run({.name = "Cancel"}, &frmGrl::cmdCancel_Click);
        else if (!frameIsOpen() || !isOfACommand(character))
            key(entry::stepOf(m_book, character), [&] { MSFG_KeyPress(character); });
    };
    m_grid->keyDown = [this, key](entry::EditKey edit) {
        key(entry::stepOf(edit), [&] { MSFG_KeyDown(edit); });
    };
    m_grid->move = [this, key](int row, int col, bool extend) {
        key({"Move"}, [&] { MSFG_Move(row, col, extend); });
    };
}

} // namespace shell
