#include "temp_folder.h"

#include "shell/controls/rtf_reader.h"

#include <QApplication>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>

namespace {

class RichText : public testing::Test {
  protected:
    QTextDocument document;
    QPalette light{QColor(Qt::lightGray), QColor(Qt::white)};

    void show(std::string_view body, const QPalette& palette) {
        shell::showRtf(
            rtf::read("{\\rtf1{\\fonttbl{\\f0\\fmodern Nowhere Mono;}}{\\colortbl;\\red0\\green0\\blue0;"
                      "\\red250\\green250\\blue250;\\red200\\green0\\blue0;}" +
                      std::string(body) + "}"),
            document, palette);
    }
    QPalette paper(const QColor& colour) const {
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::Base, colour);
        return palette;
    }
    QTextCharFormat formatAt(int position) {
        QTextCursor cursor(&document);
        cursor.setPosition(position + 1);
        return cursor.charFormat();
    }
};

TEST_F(RichText, ParagraphsKeepTheirShape) {
    show("\\f0\\outlinelevel0\\b\\fs36\\sb240\\sa120 Title\\par\\pard\\plain\\li360\\fi-360\\tx360 1.\\tab "
         "item\\par",
         paper(Qt::white));
    ASSERT_EQ(document.blockCount(), 2);
    const QTextBlock title = document.firstBlock();
    EXPECT_EQ(title.text(), QStringLiteral("Title"));
    EXPECT_EQ(title.blockFormat().headingLevel(), 1);
    EXPECT_EQ(title.blockFormat().topMargin(), 16);
    EXPECT_EQ(title.blockFormat().bottomMargin(), 8);
    EXPECT_EQ(formatAt(0).fontPointSize(), 18);
    EXPECT_EQ(formatAt(0).fontWeight(), int(QFont::Bold));
    EXPECT_EQ(formatAt(0).fontFamilies().toStringList().value(0), QStringLiteral("Nowhere Mono"));
    EXPECT_EQ(formatAt(0).fontStyleHint(), QFont::Monospace) << "for a font that is missing";
    const QTextBlockFormat item = title.next().blockFormat();
    EXPECT_EQ(item.leftMargin(), 24);
    EXPECT_EQ(item.textIndent(), -24);
    ASSERT_FALSE(item.tabPositions().isEmpty());
    EXPECT_EQ(item.tabPositions().constFirst().position, 24); // from where the hanging line starts
}

TEST_F(RichText, ColoursThatCannotBeReadGiveWayToThePalette) {
    for (const bool dark : {false, true}) {
        show("\\cf1 black\\cf2 white\\cf3\\highlight2 red",
             paper(dark ? QColor(30, 30, 30) : QColor(Qt::white)));
        EXPECT_EQ(formatAt(0).hasProperty(QTextFormat::ForegroundBrush), !dark);
        EXPECT_EQ(formatAt(5).hasProperty(QTextFormat::ForegroundBrush), dark);
        EXPECT_EQ(formatAt(10).foreground().color(), QColor(200, 0, 0)); // on its own background
    }
}

TEST_F(RichText, TablesBecomeTables) {
    show("a\\par\\trowd\\cellx1500\\cellx6000\\pard\\intbl k\\cell v\\cell\\row\\pard b\\par",
         paper(Qt::white));
    QTextCursor cursor(&document);
    cursor.setPosition(3);
    const QTextTable* table = cursor.currentTable();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->rows(), 1);
    EXPECT_EQ(table->columns(), 2);
    EXPECT_EQ(table->cellAt(0, 1).firstCursorPosition().block().text(), QStringLiteral("v"));
    EXPECT_EQ(table->format().columnWidthConstraints().at(0).rawValue(), 25);
    EXPECT_EQ(document.lastBlock().text(), QStringLiteral("b"));
}

TEST_F(RichText, FilesAreReadWhatTheyHold) {
    const TempFolder folder;
    const std::string bytes("\x00\xFF{\\rtf1}\x00", 10);
    shell::loadRtf(folder.write("a.rtf", "{\\rtf1 one\\par two}"), document, light);
    EXPECT_EQ(document.toPlainText(), QStringLiteral("one\ntwo"));
    shell::loadRtf(folder / "missing.rtf", document, light);
    EXPECT_EQ(document.toPlainText(), QString());
    shell::loadRtf(folder.write("b.rtf", bytes), document, light);
    EXPECT_EQ(document.blockCount(), 1);
}

} // namespace
