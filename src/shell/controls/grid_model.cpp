#include "grid_model.h"

#include "../text.h"

#include "sheet/book.h"

#include <QColor>

#include <algorithm>
#include <utility>

namespace shell {

GridModel::GridModel(sheet::Grid& grid, QObject* parent)
    : QAbstractTableModel(parent), m_grid(grid), m_rows(grid.Rows() - 1) {
    m_grid.addListener(*this);
}

GridModel::~GridModel() {
    m_grid.removeListener(*this);
}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows;
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_grid.Cols();
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    const int row = index.row() + 1;
    const int col = index.column();
    // A command may have dropped rows that the view still knows of until the next flush.
    if (!index.isValid() || row >= m_grid.Rows()) return {};
    switch (role) {
    case Qt::DisplayRole:
        return fromUtf8(m_grid.Text(row, col));
    case Qt::TextAlignmentRole:
        return int(columnAlignment(col));
    case Qt::BackgroundRole: {
        const sheet::Colour colour = m_grid.CellBackColor(row, col);
        return colour.isNone() ? QVariant() : QVariant(QColor(QRgb(colour.rgb)));
    }
    case Qt::AccessibleTextRole: {
        const std::string& cell = m_grid.Text(row, col);
        return text("row %1, %2, %3")
            .arg(QString::number(row), spokenColumn(col), cell.empty() ? text("empty") : fromUtf8(cell));
    }
    case Qt::AccessibleDescriptionRole: // what is said by a colour alone to those who see it
        if (m_grid.CellBackColor(row, col) == sheet::suspiciousReading) return text("suspicious reading");
        if (m_grid.CellBackColor(row, col) == sheet::dataError) return text("rejected by the transfer");
        return {};
    default:
        return {};
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical && role == Qt::AccessibleTextRole) return text("row %1").arg(section + 1);
    if (orientation == Qt::Vertical && role == Qt::DisplayRole) {
        const QString number = QString::number(section + 1);
        if (!m_numbersWithChainage || section + 1 >= m_grid.Rows()) return number;
        return number + QStringLiteral("  ") + fromUtf8(m_grid.Text(section + 1, sheet::Chainage));
    }
    if (orientation != Qt::Horizontal || section < 0 || section >= m_grid.Cols()) return {};
    if (role == Qt::AccessibleTextRole) return spokenColumn(section);
    if (role == Qt::DisplayRole) return fromUtf8(m_grid.Text(0, section));
    if (role == Qt::TextAlignmentRole) return int(columnAlignment(section));
    return {};
}

QString GridModel::spokenColumn(int col) const {
    const std::string& header = m_grid.Text(0, col);
    return header.empty() ? text("column %1").arg(col + 1) : fromUtf8(header);
}

void GridModel::cellChanged(int row, int col) {
    if (!m_grid.Visible()) return;
    if (row == 0) {
        m_headerChanged = true;
    } else {
        m_changed = {std::min(m_changed.top, row), std::min(m_changed.left, col),
                     std::max(m_changed.bottom, row), std::max(m_changed.right, col)};
    }
    wake();
}

void GridModel::rowsMoved(int from) {
    if (!m_grid.Visible()) return;
    if (from < m_grid.Rows()) m_allChanged = true;
    wake();
}

void GridModel::visibleChanged() {
    if (m_grid.Visible()) m_allChanged = true;
    wake();
}

void GridModel::lookChanged() {
    m_allChanged = true;
    wake();
}

void GridModel::wake() {
    if (std::exchange(m_awake, true) || !pending) return;
    pending();
}

void GridModel::flush() {
    m_awake = false;
    if (!m_grid.Visible()) return; // showing it again brings everything in one reset
    const int rows = m_grid.Rows() - 1;
    const Box changed = std::exchange(m_changed, nothing);
    if (std::exchange(m_allChanged, false)) {
        beginResetModel();
        m_rows = rows;
        m_headerChanged = false;
        endResetModel();
        return;
    }
    if (rows > m_rows) {
        beginInsertRows({}, m_rows, rows - 1);
        m_rows = rows;
        endInsertRows();
    } else if (rows < m_rows) {
        beginRemoveRows({}, rows, m_rows - 1);
        m_rows = rows;
        endRemoveRows();
    }
    if (std::exchange(m_headerChanged, false)) emit headerDataChanged(Qt::Horizontal, 0, m_grid.Cols() - 1);
    const int bottom = std::min(changed.bottom, rows);
    if (changed.top <= bottom)
        emit dataChanged(index(changed.top - 1, changed.left), index(bottom - 1, changed.right));
}

Qt::Alignment columnAlignment(int col) {
    const bool number = col >= sheet::Left && col <= sheet::RLevel;
    return Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft);
}

} // namespace shell
