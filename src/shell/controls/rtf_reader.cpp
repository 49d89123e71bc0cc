#include "rtf_reader.h"

#include "../text.h"
#include "basic/files.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

#include <algorithm>
#include <cmath>

namespace shell {

namespace {

constexpr qint64 kLongestFile = qint64{32} << 20;
constexpr int kDefaultTab = 720; // twips, the format's own default
constexpr int kCellPadding = 4;
constexpr int kPageMargin = 16;
constexpr double kLeastContrast = 3.0; // WCAG 2.1, 1.4.3, for large text

double luminance(const QColor& colour) {
    const auto part = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
    return (light + 0.05) / (dark + 0.05);
}

qreal length(int twips) {
    return twips / 15.0;
}

QColor toQt(const rtf::Colour& colour) {
    return {colour.red, colour.green, colour.blue};
}

QTextLength percent(int part, int whole) {
    return QTextLength(QTextLength::PercentageLength, 100.0 * part / std::max(1, whole));
}

class Writer {
  public:
    Writer(const rtf::Document& source, QTextDocument& target, const QPalette& palette)
        : m_source(source), m_cursor(&target), m_paper(palette.color(QPalette::Base)) {}

    void write() {
        m_cursor.beginEditBlock();
        bool fresh = true; // the block at the cursor is still unused
        for (const rtf::Block& block : m_source.blocks) {
            if (const auto* paragraph = std::get_if<rtf::Paragraph>(&block)) {
                write(*paragraph, m_cursor, fresh);
                fresh = false;
            } else {
                write(std::get<rtf::Table>(block));
                fresh = true;
            }
        }
        m_cursor.endEditBlock();
    }

  private:
    void write(const rtf::Paragraph& paragraph, QTextCursor& at, bool fresh) const {
        const QTextBlockFormat format = blockFormat(paragraph.format);
        const QTextCharFormat mark = charFormat(paragraph.mark);
        if (fresh) {
            at.setBlockFormat(format);
            at.setBlockCharFormat(mark);
        } else {
            at.insertBlock(format, mark);
        }
        for (const rtf::Run& run : paragraph.runs)
            at.insertText(fromUtf8(run.text), charFormat(run.format));
    }

    void write(const rtf::Table& source) {
        std::size_t columns = 1;
        const std::vector<int>* edges = nullptr;
        for (const rtf::Row& row : source.rows) {
            columns = std::max(columns, row.cells.size());
            if (edges == nullptr && row.edges.size() == columns) edges = &row.edges;
        }
        QTextTableFormat format;
        format.setBorderCollapse(true);
        format.setBorder(1);
        format.setCellPadding(kCellPadding);
        format.setWidth(percent(1, 1));
        format.setTopMargin(length(120));
        format.setBottomMargin(length(180));
        if (edges != nullptr && edges->size() == columns) format.setColumnWidthConstraints(widths(*edges));
        QTextTable* table = m_cursor.insertTable(int(source.rows.size()), int(columns), format);
        for (std::size_t row = 0; row < source.rows.size(); ++row) {
            const auto& cells = source.rows[row].cells;
            for (std::size_t column = 0; column < cells.size(); ++column) {
                QTextCursor cell = table->cellAt(int(row), int(column)).firstCursorPosition();
                for (std::size_t k = 0; k < cells[column].size(); ++k)
                    write(cells[column][k], cell, k == 0);
            }
        }
        m_cursor.movePosition(QTextCursor::End);
    }

    static QList<QTextLength> widths(const std::vector<int>& edges) {
        QList<QTextLength> result;
        int left = 0;
        for (const int edge : edges) {
            result.append(percent(std::max(1, edge - left), edges.back()));
            left = edge;
        }
        return result;
    }

    static QTextBlockFormat blockFormat(const rtf::ParagraphFormat& source) {
        QTextBlockFormat format;
        switch (source.alignment) {
        case rtf::Alignment::Left:
            format.setAlignment(Qt::AlignLeft);
            break;
        case rtf::Alignment::Right:
            format.setAlignment(Qt::AlignRight);
            break;
        case rtf::Alignment::Center:
            format.setAlignment(Qt::AlignHCenter);
            break;
        case rtf::Alignment::Justify:
            format.setAlignment(Qt::AlignJustify);
            break;
        }
        format.setLeftMargin(length(std::max(0, source.left)));
        format.setRightMargin(length(std::max(0, source.right)));
        format.setTextIndent(length(source.first));
        format.setTopMargin(length(std::max(0, source.before)));
        format.setBottomMargin(length(std::max(0, source.after)));
        if (source.outline >= 0) format.setHeadingLevel(source.outline + 1);
        format.setTabPositions(tabs(source));
        return format;
    }

    // Here a tab counts from where the first line starts, there from the page's edge; and a hanging first
    // line has a tab of its own where the other lines start.
    static QList<QTextOption::Tab> tabs(const rtf::ParagraphFormat& source) {
        const int start = source.left + source.first;
        std::vector<int> places = source.tabs;
        if (source.first < 0) places.push_back(source.left);
        std::sort(places.begin(), places.end());
        QList<QTextOption::Tab> result;
        for (const int place : places)
            if (place > start) result.append({length(place - start), QTextOption::LeftTab});
        return result;
    }

    QTextCharFormat charFormat(const rtf::CharacterFormat& source) const {
        QTextCharFormat format;
        if (source.font >= 0) setFont(format, m_source.fonts[std::size_t(source.font)]);
        format.setFontPointSize(source.halfPoints / 2.0);
        if (source.bold) format.setFontWeight(QFont::Bold);
        format.setFontItalic(source.italic);
        format.setFontUnderline(source.underline);
        format.setFontStrikeOut(source.strike);
        if (source.script == rtf::Script::Super)
            format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
        if (source.script == rtf::Script::Sub) format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
        const QColor paper = source.background ? toQt(*source.background) : m_paper;
        if (source.background) format.setBackground(paper);
        if (source.text && contrast(toQt(*source.text), paper) >= kLeastContrast)
            format.setForeground(toQt(*source.text));
        else if (source.background)
            format.setForeground(luminance(paper) > 0.18 ? Qt::black : Qt::white);
        if (!source.link.empty()) {
            format.setAnchor(true);
            format.setAnchorHref(fromUtf8(source.link));
            format.setFontUnderline(true);
        }
        return format;
    }

    // A font that is not installed gives way to the system's own of the same kind.
    static void setFont(QTextCharFormat& format, const rtf::Font& font) {
        const bool mono = font.family == rtf::Family::Mono;
        const QFont own = mono ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : QApplication::font();
        format.setFontFamilies({fromUtf8(font.name).trimmed(), own.family()});
        if (mono)
            format.setFontStyleHint(QFont::Monospace);
        else if (font.family == rtf::Family::Serif)
            format.setFontStyleHint(QFont::Serif);
        else
            format.setFontStyleHint(QFont::SansSerif);
    }

    const rtf::Document& m_source;
    QTextCursor m_cursor;
    QColor m_paper;
};

} // namespace

void showRtf(const rtf::Document& source, QTextDocument& target, const QPalette& palette) {
    target.clear();
    target.setUndoRedoEnabled(false);
    QTextOption option = target.defaultTextOption();
    option.setTabStopDistance(length(kDefaultTab));
    target.setDefaultTextOption(option);
    target.setDocumentMargin(kPageMargin);
    Writer(source, target, palette).write();
}

void loadRtf(std::string_view path, QTextDocument& target, const QPalette& palette) {
    QFile file(fromUtf8(basic::nativePath(path)));
    if (!file.open(QIODevice::ReadOnly)) {
        target.clear();
        return;
    }
    const QByteArray bytes = file.read(kLongestFile);
    showRtf(rtf::read({bytes.constData(), std::size_t(bytes.size())}), target, palette);
}

} // namespace shell
