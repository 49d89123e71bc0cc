#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// The Data Access Objects that the program calls, on the Jet engine. Members keep their DAO names. Errors are
// basic::RuntimeError with the engine's numbers and English descriptions.

namespace dao {

/// DAO type codes of a field.
enum class DataType : int {
    Boolean = 1,
    Byte = 2,
    Integer = 3,
    Long = 4,
    Currency = 5,
    Single = 6,
    Double = 7,
    Date = 8,
    Binary = 9,
    Text = 10,
    LongBinary = 11,
    Memo = 12,
    GUID = 15,
    Numeric = 16,
};

struct Null {
    friend bool operator==(Null, Null) = default;
};

/// A field's value. Text and memo are UTF-8; dates are days since 1899-12-30; currency is a double here.
using Value = std::variant<Null, bool, std::int32_t, float, double, std::string, std::vector<std::uint8_t>>;

[[nodiscard]] bool isNull(const Value& value);
/// The value as Basic would print it in a text; empty for Null. Numbers in plain decimal form.
[[nodiscard]] std::string toText(const Value& value);

class Recordset;

class Field {
  public:
    [[nodiscard]] const std::string& Name() const;
    [[nodiscard]] DataType Type() const;
    [[nodiscard]] int Size() const; ///< characters of a Text field, bytes of others
    [[nodiscard]] bool Required() const;
    [[nodiscard]] bool AllowZeroLength() const;
    /// Value of the current record, or of the copy buffer after AddNew or Edit. 3021 without a current
    /// record.
    [[nodiscard]] Value value() const;
    [[nodiscard]] bool isNull() const;
    [[nodiscard]] std::string text() const; ///< toText() of the value
    /// Sets the field in the copy buffer, converted to the field's type as Jet does: 3020 without AddNew or
    /// Edit, 3421 for a value that does not convert, 3163 for a text that is too long.
    void setValue(const Value& value);
    void setValue(std::string_view text);
    void setValue(const std::string& text) { setValue(std::string_view(text)); }
    void setValue(const char* text) { setValue(std::string_view(text)); }
    void setValue(double number);

  private:
    friend class Recordset;
    Field(Recordset& owner, int number) : m_owner(&owner), m_number(number) {}
    Recordset* m_owner;
    int m_number;
};

/// A table-type recordset. Without an index its records come in the order of the table's pages. A Recordset
/// must not outlive its Database.
class Recordset {
  public:
    ~Recordset();
    Recordset(Recordset&&) noexcept;
    Recordset& operator=(Recordset&&) noexcept;

    void AddNew();
    void Edit(); ///< 3021 without a current record
    /// 3022 duplicate key, 3058 Null in a key, 3314 Null in a Required field, 3315 an empty text where none
    /// is allowed; the record is then not stored. Of an edited record only changed fields are judged.
    void Update();
    void Delete(); ///< the deleted record stays current until the cursor moves
    void MoveFirst();
    void MoveNext(); ///< 3021 when already at the end
    [[nodiscard]] bool BOF() const;
    [[nodiscard]] bool EOF_() const;
    [[nodiscard]] std::int32_t RecordCount() const;
    /// Counted on the table's pages, as RecordCount is often wrong in files of other programs.
    [[nodiscard]] std::int32_t RecordsThere() const;
    [[nodiscard]] float PercentPosition() const; ///< 0 to 100
    [[nodiscard]] int FieldCount() const;
    [[nodiscard]] Field Fields(int number);            ///< 3265 outside 0 .. FieldCount - 1
    [[nodiscard]] Field Fields(std::string_view name); ///< any letter case; 3265 when there is none
    void setIndex(std::string_view name);              ///< any letter case; 3015 when there is none
    void Seek(std::string_view comparison, const std::vector<Value>& keys); ///< "=" only
    [[nodiscard]] bool NoMatch() const;
    void Close(); ///< 3420 when used afterwards

  private:
    friend class Database;
    friend class Field;
    struct State;
    explicit Recordset(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

/// An open database. Changes are kept in memory, visible to all its recordsets, and reach the file as a whole
/// on Close. A Database that is destroyed without Close writes nothing.
class Database {
  public:
    ~Database();
    Database(Database&&) noexcept;
    Database& operator=(Database&&) noexcept;

    /// Runs "Delete * From T", "alter table T add F TYPE" or "create table T (F TYPE [primary key], ...)" in
    /// any letter case; anything else, and a missing type, is the engine's syntax error (3292 for alter, 3129
    /// for an unknown statement).
    void Execute(std::string_view statement);
    [[nodiscard]] Recordset OpenRecordset(std::string_view table); ///< 3078 when there is no such table
    [[nodiscard]] std::vector<std::string> TableNames() const;     ///< user tables
    /// Writes what was changed, atomically, and closes. 3197 when another program changed the file since it
    /// was opened, 3051 no permission, 3026 disk full; the file on disk is then as it was.
    void Close();

  private:
    friend Database OpenDatabase(std::string_view path, std::string_view connect);
    struct State;
    explicit Database(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

/// Opens a database file; `connect` is ";pwd=" and the password. 3024 no file, 3044 no folder, 3031 wrong
/// password, 3343 not a database, 3051 no permission, 3045 held by another instance of this program.
[[nodiscard]] Database OpenDatabase(std::string_view path, std::string_view connect);

} // namespace dao
