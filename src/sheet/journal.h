#pragma once

#include "book.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sheet {

/// Where the user stood: what a step takes back beside the changes of the grid.
struct Standing {
    int row = 1, col = 0, rowSel = 1, colSel = 0;
    float height = 0, lastReading = 0; ///< CurrentHI and LastReading
    char side = 'C';                   ///< CurrentSide

    [[nodiscard]] static Standing of(const Book& book);
    void restore(Book& book) const; ///< what lies outside the grid is brought to its nearest place inside
    friend bool operator==(const Standing&, const Standing&) = default;
};

/// The history of a book: what each action of the user changed in the grid and in the heading, to be taken
/// back and done again.
///
/// An action that changed a text, a colour, the number of rows or the heading is a step; another one leaves
/// the history as it is. Characters typed one after the other into one cell are one step. A change outside an
/// action is a step of its own. A new book (Grid::beginBook) empties the history, and the rest of that action
/// is not recorded.
///
/// A change costs its old text; the oldest steps go when all steps together exceed the limit, and a step that
/// exceeds it alone empties the history.
class Journal final : public GridListener {
  public:
    static constexpr std::size_t usualLimit = std::size_t{64} << 20;

    explicit Journal(Book& book, std::size_t limit = usualLimit);
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;
    ~Journal() override;

    enum class Action {
        Command,
        Typing ///< may go on the typing before it when the cursor has not moved since
    };
    /// An action of the user begins, until `end`. Actions within it are part of it. `name` is what menus call
    /// the step ("Del Row").
    void begin(std::string_view name, Action action = Action::Command);
    /// False when the action was too large for the history, which is empty then.
    bool end();
    /// Takes back what the open action has changed so far, and leaves it open with nothing changed. False
    /// when that cannot be done: for a new book, and for an action that was too large.
    bool takeBack();
    [[nodiscard]] bool isOpen() const { return m_depth > 0; }

    /// Takes the last step back, or does it again; the grid is shown and BookChanged becomes True. False when
    /// there is none, or an action is open.
    bool undo();
    bool redo();
    void clear();

    [[nodiscard]] int undoSteps() const { return static_cast<int>(m_done.size()); }
    [[nodiscard]] int redoSteps() const { return static_cast<int>(m_undone.size()); }
    /// The name of the step that undo or redo is about; empty when there is none.
    [[nodiscard]] std::string undoName() const { return m_done.empty() ? std::string() : m_done.back().name; }
    [[nodiscard]] std::string redoName() const {
        return m_undone.empty() ? std::string() : m_undone.back().name;
    }
    /// Grows with each step that is made, taken back or done again.
    [[nodiscard]] std::uint64_t version() const { return m_version; }
    [[nodiscard]] std::uint64_t stepsMade() const { return m_made; } ///< grows with each new step alone
    [[nodiscard]] std::size_t bytes() const { return m_bytes; }      ///< that the steps hold, nearly

    void textChanged(int row, int col, const std::string& before) override;
    void colourChanged(int row, int col, Colour before) override;
    void rowsInserted(int row, int count, Marks marks) override;
    void rowsRemoved(int row, const RemovedRows& before, Marks marks) override;
    void cursorMoved() override;
    void bookBegins() override;

  private:
    /// Changes in their order, packed: a long reduction is hundreds of thousands of them.
    struct Log {
        std::string packed;
        std::vector<RemovedRows> removed;
        std::size_t rowBytes = 0;

        [[nodiscard]] bool empty() const { return packed.empty(); }
        [[nodiscard]] std::size_t bytes() const;
    };
    struct Step {
        std::string name;
        Log log;
        Standing before;
        Standing after;
        std::unique_ptr<std::pair<Heading, Heading>> heading = {}; ///< before and after, where it changed

        [[nodiscard]] std::size_t bytes() const { return sizeof(Step) + log.bytes(); }
    };

    template <typename Write>
    void record(std::string_view name, Write&& write);
    [[nodiscard]] bool changesNothing(const Log& log) const;
    void revert(Log& log);
    bool move(std::deque<Step>& from, std::deque<Step>& to, bool back);
    void push(std::deque<Step>& steps, Step step);
    void fitLimit();

    Book& m_book;
    std::size_t m_limit;
    std::deque<Step> m_done;
    std::deque<Step> m_undone;
    Step m_open;
    Heading m_heading; ///< as the open action found it
    Action m_action = Action::Command;
    int m_depth = 0;
    bool m_typingGoesOn = false; ///< the last step is typing, and the cursor stands where it was typed
    bool m_newBook = false;      ///< what the open action changes is no part of the history
    bool m_reverting = false;
    bool m_tooLarge = false;
    int m_row = 1, m_col = 0; ///< the cursor as it was heard of last
    std::size_t m_bytes = 0;
    std::uint64_t m_version = 0;
    std::uint64_t m_made = 0;
};

} // namespace sheet
