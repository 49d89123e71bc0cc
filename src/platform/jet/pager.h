#pragma once

#include "bytes.h"
#include "data_page.h"
#include "file.h"
#include "free_pages.h"
#include "layout.h"

#include <memory>
#include <optional>
#include <vector>

namespace jet {

/// The pages of a database: read when first wanted, kept in memory, changed there, written as a whole by
/// commit(). Bytes that a View or Edit shows stay in place as long as the pager lives.
class Pager {
  public:
    /// Reads the header. NotADatabase, UnsupportedVersion, Corrupt.
    Pager(std::unique_ptr<File> file, OpenMode mode);
    /// A new file in `format`: page 0, which is zero, and the map of free pages.
    Pager(std::unique_ptr<File> file, Format format);

    [[nodiscard]] const Layout& layout() const { return *m_layout; }
    [[nodiscard]] Format format() const { return m_layout->format; }
    [[nodiscard]] std::uint32_t pageCount() const { return static_cast<std::uint32_t>(m_pages.size()); }
    [[nodiscard]] bool encoded() const { return m_encodingKey != 0; }

    /// Page `number` as it is now; decoded when the file is encoded. Corrupt when it is not in the file.
    [[nodiscard]] View view(std::uint32_t number) {
        if (number < m_pages.size() && m_pages[number].bytes) [[likely]]
            return {number, {m_pages[number].bytes.get(), m_layout->pageSize}};
        return load(number);
    }
    /// The same to be changed. EncodedWrite, ReadOnly.
    [[nodiscard]] Edit edit(std::uint32_t number);
    /// The same of a page with rows. That none of them reaches into another is looked at once, and again
    /// after the page was changed in any other way. Corrupt.
    [[nodiscard]] RowEdit editRows(std::uint32_t number);

    /// A page of zeros that was free: the lowest one that is at least `lowest`. Full.
    [[nodiscard]] std::uint32_t allocate(std::uint32_t lowest = 0);
    /// Gives a page back.
    void release(std::uint32_t number, PageKind mark = PageKind::Released);
    /// The map of free pages, written to its page by flush().
    [[nodiscard]] FreePages& freePages();

    [[nodiscard]] const std::string& password() const { return m_password; }

    /// Throws EncodedWrite or ReadOnly when the database must not be changed.
    void requireWritable() const;
    [[nodiscard]] bool changed() const { return m_changedPages != 0; }
    /// Puts what is kept beside the pages (the map of free pages) into them.
    void flush();
    /// flush() and replace the file.
    void commit();

    /// Throws when a change was broken off half-way since the file was opened.
    void requireSound() const;
    /// Marks the content as unfit for commit: a change was broken off half-way.
    void spoil() { m_spoiled = true; }

  private:
    struct Page {
        std::unique_ptr<std::uint8_t[]> bytes;
        bool changed = false;
        bool rowsInOrder = false; ///< seen by editRows(), and since then changed through it alone
    };

    View load(std::uint32_t number);
    void extend();
    [[nodiscard]] std::uint32_t sizedFreeRow(RowEdit page, std::uint32_t rowBytes);
    void saveFreeInline(std::uint32_t rowBytes);
    void saveFreePages();
    void write(File& file);

    std::unique_ptr<File> m_file;
    OpenMode m_mode;
    const Layout* m_layout = &jet4Layout;
    std::uint32_t m_encodingKey = 0;
    std::string m_password;        ///< of the file, UTF-8
    std::uint32_t m_filePages = 0; ///< pages of the file as it is on disk
    std::size_t m_changedPages = 0;
    bool m_spoiled = false;
    std::vector<Page> m_pages;
    std::optional<FreePages> m_freePages;      ///< once it was asked for
    std::vector<std::uint32_t> m_freeMapPages; ///< of its map, when that is of pointers
};

/// Spoils the pager when the scope is left by an exception after pages were touched, so that a change that
/// was broken off (damage met half-way, no memory) never reaches the file.
class ChangeGuard {
  public:
    explicit ChangeGuard(Pager& pager) : m_pager(pager) {
        pager.requireWritable();
        pager.requireSound();
    }
    ChangeGuard(const ChangeGuard&) = delete;
    ChangeGuard& operator=(const ChangeGuard&) = delete;
    ~ChangeGuard() {
        if (!m_done) m_pager.spoil();
    }
    void done() { m_done = true; }

  private:
    Pager& m_pager;
    bool m_done = false;
};

} // namespace jet
