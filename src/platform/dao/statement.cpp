#include "statement.h"

#include "errors.h"

#include "basic/strings.h"

#include <optional>

namespace dao {

namespace {

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Cuts a statement into words; a name in brackets is one word whatever it holds.
class Words {
  public:
    explicit Words(std::string_view text) : m_rest(text) {
        while (!m_rest.empty() && (isBlank(m_rest.back()) || m_rest.back() == ';'))
            m_rest.remove_suffix(1);
    }

    bool take(std::string_view keyword) {
        const Words before = *this;
        if (const auto word = next(); word && basic::sameText(*word, keyword)) return true;
        *this = before;
        return false;
    }

    std::optional<std::string> name() {
        skipBlanks();
        const bool bracketed = !m_rest.empty() && m_rest.front() == '[';
        const auto word = next();
        if (!word || word->empty() || (!bracketed && *word == "*")) return std::nullopt;
        return std::string(*word);
    }

    std::string_view rest() {
        skipBlanks();
        return m_rest;
    }

  private:
    void skipBlanks() {
        while (!m_rest.empty() && isBlank(m_rest.front()))
            m_rest.remove_prefix(1);
    }

    std::optional<std::string_view> next() {
        skipBlanks();
        if (m_rest.empty()) return std::nullopt;
        if (m_rest.front() == '[') {
            const std::size_t end = m_rest.find(']');
            if (end == std::string_view::npos) return std::nullopt;
            const std::string_view word = m_rest.substr(1, end - 1);
            m_rest.remove_prefix(end + 1);
            return word;
        }
        std::size_t length = m_rest.front() == '*' ? 1 : 0;
        while (length < m_rest.size() && m_rest.front() != '*' && !isBlank(m_rest[length]) &&
               m_rest[length] != '*' && m_rest[length] != '[' && m_rest[length] != '(')
            ++length;
        const std::string_view word = m_rest.substr(0, length);
        m_rest.remove_prefix(length);
        return word;
    }

    std::string_view m_rest;
};

/// Cuts at the commas that stand in no brackets.
std::vector<std::string_view> splitAtCommas(std::string_view text) {
    std::vector<std::string_view> parts;
    int depth = 0;
    std::size_t begin = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '(' || text[at] == '[') ++depth;
        if (text[at] == ')' || text[at] == ']') --depth;
        if (text[at] != ',' || depth > 0) continue;
        parts.push_back(text.substr(begin, at - begin));
        begin = at + 1;
    }
    parts.push_back(text.substr(begin));
    return parts;
}

Statement::Column parseColumn(std::string_view text) {
    constexpr std::string_view key = " primary key";
    Words words(text);
    const auto name = words.name();
    std::string_view type = words.rest();
    if (!name || type.empty()) raise(EngineError::FieldDefinition);
    const bool primary =
        type.size() > key.size() && basic::sameText(type.substr(type.size() - key.size()), key);
    if (primary) type.remove_suffix(key.size());
    return {*name, std::string(type), primary};
}

Statement parseCreate(Words words) {
    if (!words.take("table")) raise(EngineError::FieldDefinition);
    const auto table = words.name();
    const std::string_view rest = words.rest();
    if (!table || rest.size() < 2 || rest.front() != '(' || rest.back() != ')')
        raise(EngineError::FieldDefinition);
    Statement statement{Statement::Kind::CreateTable, *table};
    for (const std::string_view column : splitAtCommas(rest.substr(1, rest.size() - 2)))
        statement.columns.push_back(parseColumn(column));
    return statement;
}

} // namespace

Statement parseStatement(std::string_view text) {
    Words words(text);
    if (words.take("delete")) {
        if (!words.take("*") || !words.take("from")) raise(EngineError::StatementExpected);
        const auto table = words.name();
        if (!table || !words.rest().empty()) raise(EngineError::StatementExpected);
        return {Statement::Kind::DeleteAll, *table};
    }
    if (words.take("create")) return parseCreate(words);
    if (!words.take("alter")) raise(EngineError::StatementExpected);
    if (!words.take("table")) raise(EngineError::FieldDefinition);
    const auto table = words.name();
    if (!table || !words.take("add")) raise(EngineError::FieldDefinition);
    const Words behindAdd = words;
    auto column = words.take("column") ? words.name() : std::optional<std::string>{};
    if (!column || words.rest().empty()) {
        words = behindAdd; // a field that is itself called "column"
        column = words.name();
    }
    if (!column || words.rest().empty()) raise(EngineError::FieldDefinition);
    return {Statement::Kind::AddColumn, *table, {{*column, std::string(words.rest())}}};
}

} // namespace dao
