#pragma once

#include "design.h"
#include "file.h"
#include "table.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

struct Inside;

struct CreateOptions {
    std::string password; ///< up to 20 characters; empty = none
};

/// An open database. Changes stay in memory, visible through all its tables, and reach the file as a whole on
/// commit(). A Database that is destroyed without commit() writes nothing.
class Database {
  public:
    /// FileNotFound, FolderNotFound, PermissionDenied, InUse, NotADatabase, UnsupportedVersion,
    /// WrongPassword, Corrupt. A file without a password opens with any.
    [[nodiscard]] static Database open(const std::string& path, std::string_view password = {},
                                       OpenMode mode = OpenMode::ReadWrite);
    [[nodiscard]] static Database open(std::unique_ptr<File> file, std::string_view password = {},
                                       OpenMode mode = OpenMode::ReadWrite);
    /// A new, empty Jet 4 database; on disk with the first commit(). AlreadyExists when the path is taken.
    [[nodiscard]] static Database create(const std::string& path, const CreateOptions& options = {});
    [[nodiscard]] static Database create(std::unique_ptr<File> file, const CreateOptions& options = {});

    ~Database();
    Database(Database&&) noexcept;
    Database& operator=(Database&&) noexcept;

    [[nodiscard]] Format format() const;
    [[nodiscard]] bool encoded() const; ///< can be read, not changed
    /// Names of the user tables, in the order of the catalog.
    [[nodiscard]] std::vector<std::string> tableNames() const;
    /// Names of all local tables, those of the system included.
    [[nodiscard]] std::vector<std::string> allTableNames() const;
    [[nodiscard]] bool hasTable(std::string_view name) const;
    /// Any letter case, system tables too. NotFound.
    [[nodiscard]] Table table(std::string_view name) const;

    /// AlreadyExists, InvalidDesign.
    Table createTable(const TableDesign& design);
    /// Adds a column behind the others; it is Null (Boolean: false) in the rows that are there. Handles of
    /// the table show it at once.
    void addColumn(std::string_view table, const ColumnDesign& column);

    /// What the catalog's dates are taken from; the system's local time unless it is set.
    void setClock(std::function<DateTime()> clock);

    [[nodiscard]] bool changed() const; ///< since it was opened or last committed
    /// Replaces the file by the changed content, at once and durably. On an error the file is as it was and
    /// the changes are still in memory. ChangedUnderneath, ReadOnly, PermissionDenied, Full, Io,
    /// EncodedWrite; Corrupt when a change was broken off, or an index does not hold where it was changed.
    void commit();

  private:
    friend Inside;
    struct State;
    explicit Database(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

} // namespace jet
