#include "outcome.h"

#include "world.h"

#include "basic/numbers.h"

#include <QJsonArray>

namespace replay {
namespace {

QString fromUtf8(const std::string& text) {
    return QString::fromStdString(text);
}

QJsonArray rowsOf(const sheet::Grid& grid) {
    QJsonArray rows;
    for (int row = 1; row < grid.Rows(); ++row) {
        QJsonArray texts;
        for (int col = 0; col < grid.Cols(); ++col)
            texts.append(fromUtf8(grid.Text(row, col)));
        rows.append(texts);
    }
    return rows;
}

QJsonObject coloursOf(const sheet::Grid& grid) {
    QJsonObject colours;
    for (int row = 0; row < grid.Rows(); ++row) {
        for (int col = 0; col < grid.Cols(); ++col) {
            const sheet::Colour colour = grid.CellBackColor(row, col);
            if (colour.isNone()) continue;
            colours[QStringLiteral("%1,%2").arg(row).arg(col)] =
                QStringLiteral("%1").arg(colour.rgb, 6, 16, QLatin1Char('0')).toUpper();
        }
    }
    return colours;
}

} // namespace

QJsonObject settingsOf(const sheet::Settings& settings) {
    QJsonArray list;
    for (const std::string& offset : settings.lstOft)
        list.append(fromUtf8(offset));
    return {{"incr", fromUtf8(settings.cboIncr)},
            {"side", fromUtf8(settings.cboSide)},
            {"auto", int(settings.chkAuto)},
            {"oft", int(settings.chkOft)},
            {"final", int(settings.chkFinal)},
            {"chk005", int(settings.chk005)},
            {"add", int(settings.chkAdd)},
            {"txt_add", fromUtf8(settings.txtAdd)},
            {"list", list}};
}

QJsonObject stateOf(shell::frmGrl& window, const World& world) {
    const project::Book& book = window.book();
    const sheet::Grid& grid = book.MSFG;
    QJsonObject settings = settingsOf(book.settings);
    if (book.Guarded) settings["guarded"] = 1;
    QJsonArray menu;
    for (const std::string& path : book.mnuX)
        menu.append(path.empty() ? QJsonValue() : QJsonValue(world.shortened(fromUtf8(path))));
    return {{"rows", rowsOf(grid)},
            {"cursor", QJsonArray{grid.Row(), grid.Col()}},
            {"selection", QJsonArray{grid.RowSel(), grid.ColSel()}},
            {"side", QString(QLatin1Char(book.CurrentSide))},
            {"hi", fromUtf8(basic::text(book.CurrentHI))},
            {"changed", book.BookChanged},
            {"caption", world.shortened(fromUtf8(book.Caption))},
            {"colours", coloursOf(grid)},
            {"settings", settings},
            {"default_folder", world.shortened(fromUtf8(book.DefaultFolder))},
            {"font", grid.FontSize()},
            {"menu", menu},
            {"history",
             QJsonObject{{"undo", window.journal().undoSteps()}, {"redo", window.journal().redoSteps()}}},
            {"ended", window.ended()},
            {"status", world.shortened(window.desktop().statusText())}};
}

} // namespace replay
