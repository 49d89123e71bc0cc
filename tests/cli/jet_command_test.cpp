#include "cli/jet_command.h"

#include "temp_folder.h"

#include "jet/database.h"
#include "jet/schema_text.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

constexpr const char* schema = R"(password secret
table [A b]
    Id Counter
    Name Text(20) required zero-length
    [index] Numeric(9,2)
    Day DateTime
    Yes YesNo
    primary key PK (Id)
    unique index N (Name, Id desc) required
    index D (Day) ignore-nulls
)";

class JetCommand : public testing::Test {
  protected:
    TempFolder folder;
    std::ostringstream out, err;
    cli::JetOptions options;

    cli::ExitStatus create(const std::string& name, const std::string& text) {
        options.file = folder / name;
        options.schema = "-";
        std::istringstream in(text);
        return cli::jetCreate(options, in, err);
    }
};

TEST_F(JetCommand, WhatIsCreatedHasTheSchemaAndAlwaysTheSameBytes) {
    ASSERT_EQ(create("one.mdb", schema), cli::Done) << err.str();
    ASSERT_EQ(create("two.mdb", schema), cli::Done) << err.str();
    EXPECT_EQ(folder.read("one.mdb"), folder.read("two.mdb"));
    EXPECT_EQ(cli::jetCheck(options, out, err), cli::Failed);
    EXPECT_NE(err.str().find("--password is missing"), std::string::npos) << err.str();
    options.password = "secret";
    options.strict = true;
    EXPECT_EQ(cli::jetCheck(options, out, err), cli::Done);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(cli::jetSchema(options, out, err), cli::Done);
    EXPECT_EQ("password secret\n" + out.str(), schema);
    EXPECT_EQ(create("two.mdb", schema), cli::Failed) << "a file that is there is not replaced";
}

TEST_F(JetCommand, DumpsRowsAsCsvAndJson) {
    ASSERT_EQ(create("one.mdb", schema), cli::Done);
    {
        jet::Database database = jet::Database::open(options.file, "secret");
        jet::Table table = database.table("A b");
        jet::Numeric number;
        number.magnitude[15] = 250;
        number.negative = true;
        table.insert({jet::Null{}, std::string("a,\"b\""), number, jet::DateTime{42329.5}, true});
        table.insert({jet::Null{}, std::string(), jet::Null{}, jet::DateTime{-1.25}, false});
        database.commit();
    }
    options.password = "secret";
    options.table = "a B";
    ASSERT_EQ(cli::jetDump(options, out, err), cli::Done) << err.str();
    EXPECT_EQ(out.str(), "Id,Name,index,Day,Yes\n"
                         "1,\"a,\"\"b\"\"\",-2.50,2015-11-21 12:00:00,1\n"
                         "2,\"\",,1899-12-29 06:00:00,0\n");
    out.str("");
    options.form = cli::DumpForm::Json;
    ASSERT_EQ(cli::jetDump(options, out, err), cli::Done);
    EXPECT_EQ(
        out.str(),
        "{\"Id\":1,\"Name\":\"a,\\\"b\\\"\",\"index\":-2.50,\"Day\":\"2015-11-21 12:00:00\",\"Yes\":true}\n"
        "{\"Id\":2,\"Name\":\"\",\"index\":null,\"Day\":\"1899-12-29 06:00:00\",\"Yes\":false}\n");
}

TEST_F(JetCommand, SaysWhichLineOfASchemaIsWrong) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"table T\n  A Txt(5)\n", "line 2: \"Txt(5)\" is no column type"},
        {"A Long\n", "line 1: a table is wanted first"},
        {"table T\n  A Long\n  index I A\n", "line 3: the columns of an index stand in brackets"},
        {"table T\n  A Long always\n", "line 2: \"always\" is not understood"},
        {"table [T\n", "line 1: a bracket is not closed"},
    };
    for (const auto& [text, message] : cases) {
        err.str("");
        EXPECT_EQ(create("bad.mdb", text), cli::Failed) << text;
        EXPECT_NE(err.str().find(message), std::string::npos) << err.str();
    }
}

} // namespace
