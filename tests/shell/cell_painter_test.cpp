#include "shell/controls/cell_painter.h"

#include "sheet/book.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <map>

namespace {

double luminance(QRgb colour) {
    const auto linear = [](int channel) {
        const double part = channel / 255.0;
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

class CellPainterTest : public testing::Test {
  protected:
    sheet::Book book;
    sheet::Grid& grid = book.MSFG;
    QWidget widget;
    shell::CellPainter cells{grid};

    /// What the cell looks like inside its frame and lines.
    QImage painted(int row, int col) {
        QImage image(90, 20, QImage::Format_RGB32);
        image.fill(widget.palette().color(QPalette::Base));
        QPainter painter(&image);
        painter.setFont(widget.font());
        cells.begin(widget);
        cells.paint(painter, image.rect(), row, col);
        painter.end();
        return image.copy(3, 3, 84, 14);
    }
};

TEST_F(CellPainterTest, TextIsReadableOnEveryBackgroundInBothPalettes) {
    grid.setRows(6);
    for (int row = 1; row < 6; ++row)
        grid.setText(row, sheet::InterSight, "88.888");
    grid.setCellBackColor(2, sheet::InterSight, sheet::dataError);
    grid.setCellBackColor(3, sheet::InterSight, sheet::suspiciousReading);
    grid.setCellBackColor(4, sheet::InterSight, sheet::rgb(240, 210, 220));
    const std::pair<QColor, QColor> palettes[] = {{Qt::white, Qt::black}, {QColor(35, 35, 35), Qt::white}};
    for (const auto& [base, ink] : palettes) {
        QPalette palette;
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Text, ink);
        palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
        widget.setPalette(palette);
        for (int row = 1; row < 6; ++row) {
            for (const bool selected : {false, true}) {
                grid.moveTo(selected ? 1 : row, sheet::InterSight);
                if (selected) grid.setSelection(5, sheet::RLevel);
                const QImage image = painted(row, sheet::InterSight);
                std::map<QRgb, int> count;
                for (int y = 0; y < image.height(); ++y)
                    for (int x = 0; x < image.width(); ++x)
                        ++count[image.pixel(x, y)];
                const auto paper =
                    std::max_element(count.begin(), count.end(),
                                     [](const auto& a, const auto& b) { return a.second < b.second; });
                double contrast = 1;
                for (const auto& [colour, pixels] : count) {
                    const double a = luminance(colour) + 0.05;
                    const double b = luminance(paper->first) + 0.05;
                    contrast = std::max(contrast, std::max(a, b) / std::min(a, b));
                }
                EXPECT_GT(contrast, 4.5)
                    << "row " << row << " base " << base.lightness() << " selected " << selected;
            }
        }
    }
}

TEST_F(CellPainterTest, FiguresEndBelowEachOtherAndRemarksBeginThere) {
    grid.setRows(5);
    const char* texts[] = {"1.235", "101.235", "-0.5", "7"};
    const auto edge = [&](int col, bool right) {
        std::vector<int> edges;
        for (int row = 1; row < 5; ++row) {
            grid.setText(row, col, texts[row - 1]);
            grid.moveTo(row == 1 ? 2 : 1, 0);
            const QImage image = painted(row, col);
            int found = right ? -1 : 1000;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    if (qGray(image.pixel(x, y)) > 160) continue;
                    found = right ? std::max(found, x) : std::min(found, x);
                }
            }
            edges.push_back(found);
        }
        const auto [least, most] = std::minmax_element(edges.begin(), edges.end());
        return std::pair(*least, *most);
    };
    const auto [numberLeast, numberMost] = edge(sheet::RLevel, true);
    EXPECT_LE(numberMost - numberLeast, 2) << "the last digits stand in one column";
    EXPECT_GT(numberLeast, 70);
    const auto [remarkLeast, remarkMost] = edge(sheet::Remark, false);
    EXPECT_LE(remarkMost - remarkLeast, 2);
    EXPECT_LT(remarkMost, 8);
}

TEST_F(CellPainterTest, ALongTextShowsItsEndOnlyWhileItIsTyped) {
    grid.setRows(3);
    grid.setText(2, sheet::Remark, "iiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiMMM");
    grid.moveTo(1, 0);
    const QImage resting = painted(2, sheet::Remark);
    grid.moveTo(2, sheet::Remark);
    const QImage typed = painted(2, sheet::Remark);
    const auto ink = [](const QImage& image, int from, int to) {
        int dark = 0;
        for (int x = from; x < to; ++x)
            for (int y = 0; y < image.height(); ++y)
                dark += qGray(image.pixel(x, y)) < 110;
        return dark;
    };
    EXPECT_GT(ink(typed, 56, 84), ink(resting, 56, 84)) << "the wide letters at the end";
}

} // namespace
