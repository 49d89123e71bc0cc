// The same book in every form of table, damaged files, and headings: through the reader program as installed.

#include "exchange/column_profiles.h"
#include "exchange/table_import.h"
#include "tables/table_file.h"

#include "field_book.h"
#include "scripted_desktop.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <xlsxwriter.h>
#include <zip.h>

using exchange::ColumnKind;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char* bookName = "tramo1-derived";

tables::Table readTable(const std::string& path, const std::optional<std::string>& sheet = {}) {
    return tables::readTableFile(path, {.sheet = sheet, .readerProgram = TABLE_READER});
}

exchange::TakenTable taken(const tables::Table& table) {
    return exchange::takeTable(table, exchange::guessLayout(table, exchange::guessHeadingRow(table)));
}

std::vector<std::string> texts(const exchange::TakenTable& table) {
    std::vector<std::string> result;
    for (const exchange::ImportNote& note : table.notes)
        result.push_back(note.text);
    return result;
}

std::string lineOf(const exchange::BookRow& row) {
    std::string line;
    for (const std::string& cell : row)
        line += cell + ",";
    line.pop_back();
    return line;
}

std::vector<std::string> lines(const exchange::TakenTable& table) {
    std::vector<std::string> result;
    for (const exchange::BookRow& row : table.rows)
        result.push_back(lineOf(row));
    return result;
}

std::string utf16(const std::string& text, bool bigEndian, bool mark) {
    std::string bytes = mark ? (bigEndian ? "\xFE\xFF" : "\xFF\xFE") : "";
    for (const char c : text)
        bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
}

std::string replaced(std::string text, char from, char to) {
    std::ranges::replace(text, from, to);
    return text;
}

/// The book with numbers as numbers, stored with the noise of binary fractions; strings inline when
/// `constant` memory is asked for, as writers do that stream.
void writeXlsx(const std::string& path, bool constant) {
    lxw_workbook_options options{};
    options.constant_memory = constant ? LXW_TRUE : LXW_FALSE;
    lxw_workbook* book = workbook_new_opt(path.c_str(), &options);
    lxw_worksheet* sheet = workbook_add_worksheet(book, "Levels");
    const auto rows = bookRows(bookName);
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (std::size_t col = 0; col < rows[row].size(); ++col) {
            const std::string& text = rows[row][col];
            const auto r = static_cast<lxw_row_t>(row);
            const auto c = static_cast<lxw_col_t>(col);
            if (text.empty()) continue;
            if (row > 0 && col > 0 && col < 9)
                worksheet_write_number(sheet, r, c, std::stod(text) * (1 + 2e-16), nullptr);
            else
                worksheet_write_string(sheet, r, c, text.c_str(), nullptr);
        }
    ASSERT_EQ(workbook_close(book), LXW_NO_ERROR);
}

TEST(TableFiles, TheSameBookInEveryFormGivesTheSameGrid) {
    const TempFolder folder;
    const std::string csv = TempFolder::readFile(testData("books/tramo1-derived.csv"));
    const auto wanted = lines(taken(readTable(testData("books/tramo1-derived.csv"))));
    ASSERT_EQ(wanted.size(), 33U);
    EXPECT_EQ(wanted[1], "00-000,3.15,,,,1.384,,,11.366,");
    folder.write("semicolon.csv",
                 replaced(replaced(csv, ',', ';'), '.', ',').replace(csv.find("B.S."), 4, "B.S."));
    folder.write("mark.csv", "\xEF\xBB\xBF" + replaced(csv, ',', '\t'));
    folder.write("utf16le.csv", utf16(replaced(csv, ',', '\t'), false, true));
    folder.write("utf16be.txt", utf16(csv, true, false));
    writeXlsx(folder / "shared.xlsx", false);
    writeXlsx(folder / "inline.xlsx", true);
    std::vector<std::string> files{"semicolon.csv", "mark.csv",    "utf16le.csv",
                                   "utf16be.txt",   "shared.xlsx", "inline.xlsx"};
    const std::string office = "soffice -env:UserInstallation=file://" + (folder / "profile") +
                               " --headless --outdir " + folder.path() + " --convert-to ";
    for (const char* kind : {"ods", "xlsx"}) {
        const std::string from = testData("books/tramo1-derived.csv");
        if (std::system((office + kind + " " + from + " >/dev/null 2>&1").c_str()) == 0)
            files.push_back(std::string(bookName) + "." + kind);
    }
    for (const std::string& file : files) {
        const auto table = taken(readTable(folder / file));
        EXPECT_EQ(lines(table), wanted) << file;
        EXPECT_FALSE(table.leavesOut()) << file;
    }
    const std::string latin = "Chainage;Remark\r\n00-010;Stra\xDF"
                              "e, \"Br\xFC"
                              "cke\"\r\n";
    EXPECT_THAT(lines(taken(readTable(folder.write("w1252.csv", latin)))),
                ElementsAre("00-010,,,,,,,,,Straße, \"Brücke\""));
}

TEST(TableFiles, OurOwnCsvKeepsCommasInItsRemarks) {
    const TempFolder folder;
    const std::string head = "Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark,\r\n";
    const auto table = taken(readTable(folder.write("a.csv", head + ",,,,1.5,,,101.500,100.000,a, b,,\r\n")));
    EXPECT_THAT(lines(table), ElementsAre(",,,,1.5,,,,100.000,a, b,"));
}

// A workbook with everything that its cells can be.
TEST(TableFiles, TellsWhatCannotBeTaken) {
    const TempFolder folder;
    const std::string path = folder / "traps.xlsx";
    lxw_workbook* book = workbook_new(path.c_str());
    lxw_worksheet* sheet = workbook_add_worksheet(book, "Traps");
    lxw_format* date = workbook_add_format(book);
    format_set_num_format(date, "d-mmm-yy");
    lxw_format* chainage = workbook_add_format(book);
    format_set_num_format(chainage, "00\"-\"000");
    lxw_format* narrow = workbook_add_format(book);
    format_set_num_format(narrow, "0.00");
    worksheet_merge_range(sheet, 0, 0, 0, 4, "Book of the road", nullptr);
    const char* const heads[] = {"Ch.", "Offset (m)", "I.S.", "F.S.", "Reduced Level", "Note"};
    for (lxw_col_t col = 0; col < 6; ++col)
        worksheet_write_string(sheet, 1, col, heads[col], nullptr);
    worksheet_write_string(sheet, 2, 1, "(m)", nullptr);
    worksheet_write_number(sheet, 3, 0, 1250, chainage);
    worksheet_write_number(sheet, 3, 1, -2.5, nullptr);
    worksheet_write_number(sheet, 3, 2, 1.2345678, narrow);
    worksheet_write_number(sheet, 4, 0, 45413, date);
    worksheet_write_number(sheet, 4, 2, 1, nullptr);
    worksheet_write_number(sheet, 4, 3, 2, nullptr);
    worksheet_write_formula_str(sheet, 6, 2, "=1/0", nullptr, "#DIV/0!");
    worksheet_write_string(sheet, 6, 5, "two\nlines", nullptr);
    worksheet_write_string(sheet, 7, 0, "0+260", nullptr);
    worksheet_write_string(sheet, 7, 4, "1,250.5", nullptr);
    worksheet_write_string(sheet, 8, 4, "n/a", nullptr);
    worksheet_write_number(sheet, 8, 1, 3, nullptr);
    ASSERT_EQ(workbook_close(book), LXW_NO_ERROR);
    const auto table = taken(readTable(path));
    EXPECT_THAT(lines(table), ElementsAre("01-250,2.5,,,,1.234568,,,,", ",,,,,1,2,,,", ",,,,,,,,,two lines",
                                          "00-260,,,,,,,,1250.500,", ",,,3,,,,,,"));
    const std::vector<std::string> notes = texts(table);
    for (const char* wanted :
         {"Column A: 1 cell is a date, not a chainage", "Row 5 has both an I.S. and an F.S.",
          "Column C: 1 cell shows fewer places", "Column E: 1 cell is no level (row 9 \"n/a\")",
          "Column A: 1 chainage has \"+\""})
        EXPECT_THAT(notes, testing::Contains(HasSubstr(wanted)));
    EXPECT_TRUE(table.leavesOut());
}

TEST(TableFiles, BadFilesAreRefusedWithTheirReason) {
    const TempFolder folder;
    writeXlsx(folder / "whole.xlsx", false);
    const std::string whole = TempFolder::readFile(folder / "whole.xlsx");
    std::string encrypted = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
    for (const char c : std::string("EncryptedPackage"))
        encrypted += {c, '\0'};
    const std::pair<std::string, const char*> files[] = {
        {"", "empty"},
        {whole.substr(0, whole.size() / 2), "damaged or cut off"},
        {"PK\x03\x04 and nothing else", "damaged"},
        {encrypted, "encrypted"},
        {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 an old workbook", "old format"},
        {"<html><table>", "XML or HTML"},
        {std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\1\2", 18), "no table"},
    };
    for (const auto& [bytes, reason] : files) {
        const std::string path = folder.write("bad.xlsx", bytes);
        try {
            (void)readTable(path);
            ADD_FAILURE() << reason;
        } catch (const tables::Unreadable& error) {
            EXPECT_THAT(error.what(), HasSubstr(reason));
        }
    }
    EXPECT_THROW((void)readTable(folder / "whole.xlsx", "No such sheet"), tables::Unreadable);
    EXPECT_THROW(
        (void)tables::readTableFile(folder / "whole.xlsx", {.sheet = {}, .readerProgram = "/bin/false"}),
        tables::Unreadable);
    const std::string endless(54, '8');
    EXPECT_THAT(texts(taken(readTable(folder.write("huge.csv", "Ch,IS\n00-010," + endless + "\n")))),
                ElementsAre(HasSubstr("Column B: 1 cell is no reading (row 2 \"888")));
    const auto mixed = readTable(folder.write("mixed.csv", "Ch;IS;FS\n00-010;1,5;\n00-020,1.6,\n"));
    EXPECT_THAT(mixed.notes, ElementsAre(HasSubstr("Line 3 is separated by \",\"")));
}

/// A packed file of `parts`, names before contents.
std::string writeZip(const std::string& path, const std::vector<std::pair<std::string, std::string>>& parts) {
    zip_t* zip = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (const auto& [name, content] : parts) {
        const auto index =
            zip_file_add(zip, name.c_str(), zip_source_buffer(zip, content.data(), content.size(), 0), 0);
        zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), ZIP_CM_DEFLATE, 1);
    }
    EXPECT_EQ(zip_close(zip), 0);
    return path;
}

std::string writeSheet(const std::string& path, const std::string& content) {
    return writeZip(
        path,
        {{"xl/workbook.xml", "<workbook><sheets><sheet name='Km 1' id='r1'/></sheets></workbook>"},
         {"xl/_rels/workbook.xml.rels",
          "<Relationships><Relationship Id='r1' Target='sheet.xml' Type='x/worksheet'/></Relationships>"},
         {"xl/sheet.xml", "<worksheet><sheetData>" + content}});
}

std::string odsContent(const std::string& rows) {
    return "<o:document-content xmlns:o='o' xmlns:table='t' xmlns:office='f' "
           "xmlns:text='x'><o:body><table:table "
           "table:name='Km 1'>" +
           rows + "</table:table></o:body></o:document-content>";
}

std::string failure(const std::string& path, const tables::ReadOptions& options) {
    try {
        (void)tables::readTableFile(path, options);
    } catch (const tables::Unreadable& error) {
        return error.what();
    }
    return "read";
}

// What is small as a file and endless as a table, and what cannot be seen from its ending.
TEST(TableFiles, BombsAndPasswordsAreRefusedInTime) {
    const TempFolder folder;
    const std::string cell =
        "<table:table-cell table:number-columns-repeated='700' office:value-type='string'><text:p>";
    const auto ods = [&](std::vector<std::pair<std::string, std::string>> parts) {
        return writeZip(folder / "a.ods", parts);
    };
    const std::string hangs = folder.write("hangs", "#!/bin/sh\nexec sleep 60\n");
    std::filesystem::permissions(hangs, std::filesystem::perms::owner_all);
    const std::tuple<const char*, std::string, std::string> files[] = {
        {"unpacks to more", writeSheet(folder / "a.xlsx", std::string(std::size_t{513} << 20, ' ')),
         TABLE_READER},
        {"more than 256 MB of text",
         ods({{"content.xml",
               odsContent("<table:table-row table:number-rows-repeated='1000000'>" + cell +
                          std::string(30'000, 'x') + "</text:p></table:table-cell></table:table-row>")}}),
         TABLE_READER},
        {"declares XML entities",
         writeZip(folder / "b.ods", {{"content.xml", "<!DOCTYPE a [<!ENTITY b 'c'>]><a/>"}}), TABLE_READER},
        {"takes too long", folder.write("a.csv", "Ch,IS\n"), hangs},
    };
    for (const auto& [reason, path, reader] : files)
        EXPECT_THAT(failure(path, {.sheet = {},
                                   .readerProgram = reader,
                                   .limit = std::chrono::seconds(reader == hangs ? 1 : 300)}),
                    HasSubstr(reason));
    const char* const manifest =
        "<m:manifest xmlns:m='m'><m:file-entry><m:encryption-data/></m:file-entry></m:manifest>";
    for (const char* part : {"content.xml", "encrypted-package"})
        EXPECT_THAT(failure(ods({{"META-INF/manifest.xml", manifest}, {part, "?"}}),
                            {.sheet = {}, .readerProgram = TABLE_READER}),
                    HasSubstr("encrypted"))
            << part;
    EXPECT_THAT(failure(writeSheet(folder / "c.xlsx", "<row r='4'><c r='A4'><v>1</v></row>"),
                        {.sheet = {}, .readerProgram = TABLE_READER}),
                HasSubstr("Sheet \"Km 1\", at row 4: xl/sheet.xml is damaged in its line 1"));
}

// A million empty cells cost nothing; errors and formulas without a value are told by column and row.
TEST(TableFiles, EmptyCellsErrorsAndFormulasOfBothFormats) {
    const TempFolder folder;
    writeZip(folder / "a.ods",
             {{"content.xml",
               odsContent(
                   "<table:table-row table:number-rows-repeated='1000000'><table:table-cell "
                   "table:number-columns-repeated='1000000'/></table:table-row><table:table-row>"
                   "<table:table-cell office:value-type='string'><text:p>Ch</text:p></table:table-cell>"
                   "<table:table-cell office:value-type='string'><text:p>I.S.</text:p></table:table-cell>"
                   "<table:table-cell table:number-columns-repeated='1000000'/>"
                   "<table:table-cell office:value-type='float' office:value='1'/></table:table-row>"
                   "<table:table-row><table:table-cell table:formula='=A1'/><table:table-cell "
                   "table:formula='=1/0' office:value-type='float' office:value='0'><text:p>#DIV/0!</text:p>"
                   "</table:table-cell></table:table-row>")}});
    std::filesystem::copy(folder / "a.ods", folder / "renamed.xlsx");
    writeSheet(folder / "b.xlsx",
               "<row r='1000001'><c r='A1000001' t='str'><v>Ch</v></c><c r='B1000001' t='str'><v>I.S.</v></c>"
               "<c r='XFD1000001'><v>1</v></c></row><row r='1000002'><c r='A1000002'><f>A1</f></c>"
               "<c r='B1000002' t='e'><f>1/0</f><v>#DIV/0!</v></c></row></sheetData></worksheet>");
    for (const char* file : {"a.ods", "renamed.xlsx", "b.xlsx"})
        EXPECT_THAT(texts(taken(readTable(folder / file))),
                    ElementsAre("Column A: 1 cell is a formula without a value (row 1000002)",
                                "Column B: 1 cell is an error (row 1000002 \"#DIV/0!\")",
                                "1 cell right of column ZZ left out"))
            << file;
}

// Every word that a field book's columns go by, alone and in company.
TEST(ColumnGuess, HeadingWordsTellTheColumn) {
    const std::pair<ColumnKind, std::vector<const char*>> words[] = {
        {ColumnKind::Chainage, {"chainage", "Ch", "Ch.", "km", "Station", "peg", "Peg no", "Chainage (m)"}},
        {ColumnKind::Left, {"left", "L", "Left offset (m)"}},
        {ColumnKind::Center, {"Centre", "C", "C.L."}},
        {ColumnKind::Right, {"right", "R", "R.H.S."}},
        {ColumnKind::SignedOffset, {"offset", "o/s", "dist", "Dist.", "Offset, m"}},
        {ColumnKind::BackSight, {"bs", "b.s.", "back", "Back sight", "BS reading", "B/S"}},
        {ColumnKind::InterSight, {"is", "i.s.", "inter", "Inter. sight"}},
        {ColumnKind::ForeSight, {"fs", "f.s.", "fore", "Foresight (m)"}},
        {ColumnKind::RLevel, {"rl", "r.l.", "level", "elev", "Elev.", "Reduced Level", "R.Level."}},
        {ColumnKind::Remark, {"remark", "Remarks", "note", "Description"}},
        {ColumnKind::Reading, {"Reading", "Staff reading"}},
        {ColumnKind::KindOfReading, {"Kind", "Kind of reading", "Type"}},
        {ColumnKind::Nothing, {"Hgt.Inst", "H.I.", "Height of instrument", "Rise", "Adj. level"}},
    };
    for (const auto& [kind, headings] : words)
        for (const char* heading : headings)
            EXPECT_EQ(exchange::kindOfHeading(heading), kind) << heading;
    EXPECT_FALSE(exchange::kindOfHeading("Weather"));
}

// A heading of two rows, its upper cells merged over or beside the lower ones.
TEST(ColumnGuess, MergedHeadingsAreReadTogether) {
    const TempFolder folder;
    const auto table = taken(readTable(folder.write(
        "merged.csv",
        "Level book,,,,,,,\nChainage,Offset (m),Staff readings,,,H.I.,R.L.,Remarks\n,,B.S.,I.S.,F.S.,,,\n"
        "(m),(m),(m),(m),(m),(m),(m),\n,,1.5,,,101.5,100,BM\n0-010,-3,,1.2,,,100.3,\n")));
    EXPECT_THAT(lines(table), ElementsAre(",,,,1.5,,,,100.000,BM", "0-010,3,,,,1.2,,,100.300,"));
}

TEST(ColumnGuess, ReadingsWithTheirKindMakeChangePoints) {
    const TempFolder folder;
    const auto table = taken(readTable(
        folder.write("kinds.csv", "Point,Kind,Reading,Side,Offset,RL\nBM,BS,1.5,,,100\nA,IS,1.2,L,3,\n"
                                  "A,I.S.,1.1,c,,\nT,FS,1.8,,,\nT,BS,1.4,,,\nU,F,2,,,\nU,X,2,,,\n")));
    EXPECT_THAT(lines(table), ElementsAre(",,,,1.5,,,,100.000,BM", ",3,,,,1.2,,,,A", ",,0,,,1.1,,,,A",
                                          ",,,,1.4,,1.8,,,T", ",,,,,,2,,,U", ",,,,,,,,,U"));
    EXPECT_THAT(texts(table), ElementsAre(HasSubstr("no kind of reading")));
}

TEST(ColumnGuess, AHeadingIsRemembered) {
    const TempFolder folder;
    const std::string file = folder / "columns";
    tables::Table table;
    table.rows.push_back({1, {{tables::CellKind::Text, 0, "km"}, {tables::CellKind::Text, 0, "FS"}}});
    exchange::Layout layout = exchange::guessLayout(table, 1);
    EXPECT_FALSE(exchange::recallColumns(file, layout));
    layout.columns = {ColumnKind::ChainageMetres, ColumnKind::InterSight};
    exchange::rememberColumns(file, layout);
    exchange::Layout again = exchange::guessLayout(table, 1);
    EXPECT_TRUE(exchange::recallColumns(file, again));
    EXPECT_EQ(again.columns, layout.columns);
    table.rows[0].cells[0].shown = "another";
    again = exchange::guessLayout(table, 1);
    EXPECT_FALSE(exchange::recallColumns(file, again));
}

// All levels of a book hang on its row 1: a back sight goes on from the change point that the book ends with.
TEST(TableImport, AnOpeningBackSightGoesOnWhereTheBookEnds) {
    const std::string start = ",,,,1.5,,,,100,A", turn = "CP,,,,,,1.2,,100.300,B = 100.3";
    const std::tuple<std::vector<std::string>, exchange::BookRow, const char*> cases[] = {
        {{}, {"", "", "", "", "1.4"}, "below"},
        {{start, turn}, {"00-010", "", "0", "", "", "1.4"}, "below"},
        {{start, turn}, {"", "", "", "", "1.4", "", "", "", "90.000", "b"}, "joined"},
        {{start, turn}, {"", "", "", "", "1.4", "", "", "", "100.300", ""}, "joined"},
        {{start, turn}, {"", "", "", "", "1.4"}, "joined"},
        {{start, turn}, {"", "", "", "", "1.4", "", "", "", "100.300", "C"}, "refused"},
        {{start, turn}, {"", "", "", "", "1.4", "", "", "", "90.000", ""}, "refused"},
        {{start, "00-010,,0,,,1.1,,,,B"}, {"", "", "", "", "1.4", "", "", "", "", "B"}, "refused"},
        {{start, turn, "CP,,,,1,,1,,,B"}, {"", "", "", "", "1.4", "", "", "", "", "B"}, "refused"},
    };
    for (const auto& [book, row, wanted] : cases) {
        project::Book held;
        if (!book.empty()) keyRows(held.MSFG, book);
        const exchange::Joint joint = exchange::jointBelow(held.MSFG, {row});
        EXPECT_STREQ(joint.note.leavesOut ? "refused"
                     : joint.shares       ? "joined"
                                          : "below",
                     wanted)
            << lineOf(row);
        EXPECT_EQ(joint.above, static_cast<int>(book.size()));
    }
}

TEST(TableImport, ReplacesOrGoesBelowTheLastRow) {
    const TempFolder folder;
    ScriptedDesktop desktop;
    desktop.folder = folder.path();
    project::Book book;
    keyRows(book.MSFG, {",,,,,,,,100", "00-010", ""});
    const std::vector<exchange::BookRow> rows{{"00-020"}, {"00-030"}};
    EXPECT_EQ(exchange::importRows(book, desktop, rows, exchange::ImportPlace::AddBelow),
              project::Outcome::Done);
    EXPECT_EQ(shownRows(book.MSFG), ",,,,,,,,100|00-010|00-020|00-030");
    EXPECT_EQ(desktop.statuses.back(), "2 rows added below; Cal reduces the levels");
    EXPECT_EQ(exchange::importRows(book, desktop, rows, exchange::ImportPlace::Replace),
              project::Outcome::Done);
    EXPECT_EQ(shownRows(book.MSFG), "00-020|00-030");
    EXPECT_EQ(exchange::importRows(book, desktop, {}, exchange::ImportPlace::Replace),
              project::Outcome::Failed);
    EXPECT_EQ(shownRows(book.MSFG), "00-020|00-030");
    EXPECT_FALSE(book.BookChanged);
}

} // namespace
