#pragma once

#include "check.h"
#include "layout.h"
#include "pager.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace jet {

/// What a check has found so far.
class Faults {
  public:
    explicit Faults(CheckLevel level) : m_level(level) {}

    void add(const std::string& what);
    void add(std::uint32_t page, const std::string& what) {
        add("page " + std::to_string(page) + ": " + what);
    }
    void add(RowPointer row, const std::string& what) {
        add(row.page, "row " + std::to_string(row.row) + ": " + what);
    }
    [[nodiscard]] bool strict() const { return m_level == CheckLevel::Strict; }
    [[nodiscard]] std::vector<std::string> take() { return std::move(m_lines); }
    [[nodiscard]] std::vector<std::string> takeNotes() { return std::move(m_notes); }
    /// What is a fault at the strict level alone, and worth a word at the other.
    void addOrNote(std::uint32_t page, const std::string& what) {
        if (strict())
            add(page, what);
        else if (m_notes.size() < mostNotes)
            m_notes.push_back("page " + std::to_string(page) + ": " + what);
    }

    /// Runs a step; damage that it meets is a fault and ends the step.
    template <typename Step>
    bool guarded(const std::string& where, Step step) {
        try {
            step();
            return true;
        } catch (const Error& error) {
            add(where + ": " + error.text());
            return false;
        }
    }

  private:
    static constexpr std::size_t mostNotes = 1000;
    CheckLevel m_level;
    std::vector<std::string> m_lines;
    std::vector<std::string> m_notes;
};

/// Who uses which page. Every page has one user at most, and none that is marked as free.
class PageLedger {
  public:
    PageLedger(Pager& pager, Faults& faults);

    /// False (and a fault) when the page is not in the file or has a user already.
    bool claim(std::uint32_t page, const std::string& user);
    /// The pages of a usage map: the row that holds it must be referred to once, its map pages are claimed.
    [[nodiscard]] std::vector<std::uint32_t> readMap(RowPointer where, const std::string& user);
    /// What is left over: pages without a user, map rows that nothing refers to.
    void finish();

  private:
    void readGlobalMaps();
    void readFreePages(const View& row);

    Pager& m_pager;
    Faults& m_faults;
    std::vector<bool> m_free;
    std::vector<std::string> m_users;    ///< names, each once
    std::vector<std::uint32_t> m_userOf; ///< per page, one more than the place in m_users; 0 = none
    std::set<std::uint32_t> m_mapRows;   ///< packed row pointers
    std::set<std::uint32_t> m_mapRowPages;
};

/// The slots of a page with rows: offsets descending, free space exact. False when rows cannot be told apart.
bool checkSlots(const View& page, const Layout& layout, std::uint32_t owner, Faults& faults);

} // namespace jet
