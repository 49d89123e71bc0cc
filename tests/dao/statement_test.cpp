#include "statement.h"

#include "error_number.h"

#include <gtest/gtest.h>

namespace {

TEST(Statement, WhatIsUnderstood) {
    struct Case {
        std::string text;
        dao::Statement::Kind kind;
        std::string table, column, type;
    };
    using enum dao::Statement::Kind;
    const std::vector<Case> cases = {
        {"Delete * From Lsect", DeleteAll, "Lsect", "", ""},
        {"  DELETE\t*\r\nfrom [Road data] ; ", DeleteAll, "Road data", "", ""},
        {"delete*from dddd", DeleteAll, "dddd", "", ""},
        {"alter table LSect add LExCrW Single", AddColumn, "LSect", "LExCrW", "Single"},
        {"Alter Table LSect Add Column RFA Text(50)", AddColumn, "LSect", "RFA", "Text(50)"},
        {"ALTER TABLE [a b] ADD [c d] text ( 25 );", AddColumn, "a b", "c d", "text ( 25 )"},
        {"Create Table [a b](K Text(50) Primary Key, [c, d] Numeric(18,4));", CreateTable, "a b", "K*c, d",
         "Text(50)Numeric(18,4)"},
        {"alter table T add column Single", AddColumn, "T", "column", "Single"},
    };
    for (const Case& c : cases) {
        const dao::Statement statement = dao::parseStatement(c.text);
        EXPECT_EQ(statement.kind, c.kind) << c.text;
        EXPECT_EQ(statement.table, c.table) << c.text;
        std::string columns, types;
        for (const auto& [name, type, primaryKey] : statement.columns) {
            columns += name + (primaryKey ? "*" : "");
            types += type;
        }
        EXPECT_EQ(columns, c.column) << c.text;
        EXPECT_EQ(types, c.type) << c.text;
    }
}

TEST(Statement, SyntaxErrors) {
    const std::vector<std::pair<std::string, int>> cases = {
        {"alter table LSect add LG", 3292}, // a field without a type
        {"alter table LSect add", 3292},
        {"alter table add F Single", 3292},
        {"alter LSect add F Single", 3292},
        {"create table T (F)", 3292},
        {"create table T", 3292},
        {"create T (F Long)", 3292},
        {"alter table LSect drop F", 3292},
        {"", 3129},
        {"Delete From T", 3129},
        {"Delete * T", 3129},
        {"Delete * From", 3129},
        {"Delete * From T where x", 3129},
        {"Delete * From [T", 3129},
        {"drop table T", 3129},
        {"deleted * from T", 3129},
    };
    for (const auto& [text, number] : cases)
        EXPECT_EQ(errorOf([&] { static_cast<void>(dao::parseStatement(text)); }), number) << text;
}

} // namespace
