#include "shell/controls/cell_painter.h"

#include "sheet/book.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

namespace {

double luminance(QRgb colour) {
    const auto linear = [](int channel) {
        const double part = channel / 255.0;
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

/// The greatest contrast of any pixel with the commonest colour.
double contrastIn(const QImage& image) {
    std::map<QRgb, int> count;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ++count[image.pixel(x, y)];
    const auto fewer = [](const auto& a, const auto& b) { return a.second < b.second; };
    const double paper = luminance(std::max_element(count.begin(), count.end(), fewer)->first) + 0.05;
    double most = 1;
    for (const auto& [colour, pixels] : count) {
        const double ink = luminance(colour) + 0.05;
        most = std::max(most, std::max(ink, paper) / std::min(ink, paper));
    }
    return most;
}

/// How many dark pixels each column of the picture has.
std::vector<int> inkOf(const QImage& image) {
    std::vector<int> dark(std::size_t(image.width()));
    for (int x = 0; x < image.width(); ++x)
        for (int y = 0; y < image.height(); ++y)
            dark[std::size_t(x)] += qGray(image.pixel(x, y)) < 160;
    return dark;
}

class CellPainterTest : public testing::Test {
  protected:
    sheet::Book book;
    sheet::Grid& grid = book.MSFG;
    QWidget widget;
    shell::CellPainter cells{grid};

    CellPainterTest() { grid.setRows(6); }

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
                EXPECT_GT(contrastIn(painted(row, sheet::InterSight)), 4.5)
                    << "row " << row << " base " << base.lightness() << " selected " << selected;
            }
        }
    }
}

TEST_F(CellPainterTest, FiguresEndBelowEachOtherAndRemarksBeginThere) {
    int row = 0;
    for (const char* text : {"1.235", "101.235", "-0.5", "7"}) {
        ++row;
        grid.setText(row, sheet::RLevel, text);
        grid.setText(row, sheet::Remark, text);
        const auto isDark = [](int ink) { return ink > 0; };
        const std::vector<int> level = inkOf(painted(row, sheet::RLevel));
        const auto after = std::find_if(level.rbegin(), level.rend(), isDark) - level.rbegin();
        EXPECT_NEAR(int(after), 2, 1) << text;
        const std::vector<int> remark = inkOf(painted(row, sheet::Remark));
        const auto before = std::find_if(remark.begin(), remark.end(), isDark) - remark.begin();
        EXPECT_LE(int(before), 5) << text;
    }
}

TEST_F(CellPainterTest, ALongTextShowsItsEndOnlyWhileItIsTyped) {
    grid.setText(2, sheet::Remark, "iiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiiMMM");
    const auto inkAtTheEnd = [this] {
        const std::vector<int> ink = inkOf(painted(2, sheet::Remark));
        return std::accumulate(ink.begin() + 56, ink.end(), 0);
    };
    grid.moveTo(1, 0);
    const int resting = inkAtTheEnd();
    grid.moveTo(2, sheet::Remark);
    EXPECT_GT(inkAtTheEnd(), resting) << "the wide letters at the end";
}

} // namespace
