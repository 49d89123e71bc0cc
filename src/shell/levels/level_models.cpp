#include "level_models.h"

#include "../text.h"

#include "basic/numbers.h"
#include "sheet/cells.h"
#include "survey/rise_and_fall.h"

#include <QApplication>
#include <QStyle>

#include <array>

namespace shell {
namespace {

using survey::RunSection;
using survey::Verdict;

constexpr auto oneDecimal = basic::pattern("0.0");

QString figure(double value, basic::Pattern form) {
    return fromUtf8(basic::format(value, form));
}

QString markText(const std::string& name, int row) {
    return name.empty() ? text("row %1").arg(row) : fromUtf8(name);
}

QVariant icon(QStyle::StandardPixmap which) {
    return QApplication::style()->standardIcon(which);
}

} // namespace

SectionModel::SectionModel(survey::Runs& runs) : m_runs(runs) {}

void SectionModel::refresh() {
    const int rows = int(m_runs.sections().size());
    if (rows != m_rows) {
        beginResetModel();
        m_rows = rows;
        endResetModel();
    } else if (rows > 0) {
        emit dataChanged(index(0, 0), index(rows - 1, columns - 1));
    }
}

const RunSection* SectionModel::at(int row) const {
    const auto& sections = m_runs.sections();
    return row >= 0 && std::size_t(row) < sections.size() ? &sections[std::size_t(row)] : nullptr;
}

int SectionModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows;
}

int SectionModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(columns);
}

bool SectionModel::takesLength(const RunSection& section) {
    return section.misclosureMm && section.verdict != Verdict::Check;
}

QString SectionModel::cell(const RunSection& section, int column) const {
    switch (column) {
    case From:
        return markText(section.from, section.fromRow);
    case To:
        return markText(section.to, section.toRow);
    case Setups:
        return QString::number(section.setups);
    case Length:
        return section.lengthKm ? figure(*section.lengthKm, basic::pattern("0.0##")) : QString();
    case Found:
        return fromUtf8(sheet::levelText(section.found));
    case Known:
        return section.known ? fromUtf8(sheet::levelText(*section.known)) : QString();
    case Misclosure:
        return section.misclosureMm ? figure(*section.misclosureMm, oneDecimal) : QString();
    case PerSetup:
        return section.misclosurePerSetup() && takesLength(section)
                   ? figure(*section.misclosurePerSetup(), basic::pattern("0.00"))
                   : QString();
    case Allowed:
        return section.allowed.millimetres ? figure(*section.allowed.millimetres, oneDecimal) : QString();
    default:
        return fromUtf8(describe(section));
    }
}

QVariant SectionModel::data(const QModelIndex& index, int role) const {
    const RunSection* section = at(index.row());
    if (section == nullptr) return {};
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return cell(*section, column);
    case Qt::TextAlignmentRole:
        return int(Qt::AlignVCenter) |
               int(column >= Setups && column <= Allowed ? Qt::AlignRight : Qt::AlignLeft);
    case Qt::DecorationRole:
        if (column != Verdict) return {};
        if (section->verdict == Verdict::Fails) return icon(QStyle::SP_MessageBoxWarning);
        if (section->verdict == Verdict::Closes) return icon(QStyle::SP_DialogApplyButton);
        return {};
    case Qt::ToolTipRole:
        if (column == Length && section->lengthSource == survey::LengthSource::Chainage)
            return text("By the chainages; type another length");
        if (column == Length && takesLength(*section)) return text("Type the length of the section in km");
        return column == Verdict ? QVariant(cell(*section, column)) : QVariant();
    default:
        return {};
    }
}

QVariant SectionModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static constexpr std::array names{"From",  "To",         "Set-ups",    "Length km",  "Found",
                                      "Known", "Misclosure", "Per set-up", "Allowed mm", "Verdict"};
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Vertical) return section + 1;
    return text(names.at(std::size_t(section)));
}

Qt::ItemFlags SectionModel::flags(const QModelIndex& index) const {
    const RunSection* section = at(index.row());
    const bool editable = section != nullptr && index.column() == Length && takesLength(*section);
    return QAbstractTableModel::flags(index) | (editable ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

bool SectionModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || index.column() != Length || !lengthTyped) return false;
    const std::string typed = toUtf8(value.toString().trimmed());
    constexpr std::size_t longest = 12;
    if (typed.size() > longest || (!typed.empty() && !basic::isNumber(typed))) return false;
    const double km = typed.empty() ? 0 : basic::val(typed);
    if (km < 0) return false;
    std::size_t number = 0; // checks and the tail take no length
    for (int row = 0; row < index.row(); ++row)
        if (takesLength(*at(row))) ++number;
    lengthTyped(number, km);
    return true;
}

void RowLevelModel::setRows(int first, int last) {
    const bool others = last - first != m_last - m_first;
    if (others) beginResetModel();
    m_first = first;
    m_last = last;
    if (others) {
        endResetModel();
    } else if (rowCount() > 0) {
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
        emit headerDataChanged(Qt::Vertical, 0, rowCount() - 1);
    }
}

void RowLevelModel::setRiseAndFall(bool shown) {
    if (shown == m_riseAndFall) return;
    beginResetModel();
    m_riseAndFall = shown;
    endResetModel();
}

int RowLevelModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_last - m_first + 1;
}

int RowLevelModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_riseAndFall ? 5 : 3;
}

QVariant RowLevelModel::data(const QModelIndex& index, int role) const {
    if (role == Qt::TextAlignmentRole) return int(Qt::AlignRight) | int(Qt::AlignVCenter);
    if (role != Qt::DisplayRole) return {};
    const int row = m_first + index.row();
    const auto level = m_runs.levelAt(row);
    if (!level) return {};
    switch (index.column()) {
    case 0:
        return fromUtf8(sheet::levelText(level->raw));
    case 1:
        return figure(level->correction * 1000, oneDecimal);
    case 2:
        return fromUtf8(sheet::levelText(level->adjusted()));
    default: {
        const auto rise = survey::riseAt(m_runs, row);
        const bool wanted = rise && (*rise > 0) == (index.column() == 3);
        return wanted ? fromUtf8(sheet::levelText(std::abs(*rise))) : QVariant();
    }
    }
}

QVariant RowLevelModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static constexpr std::array names{"Level", "Corr. mm", "Adjusted", "Rise", "Fall"};
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Vertical) return m_first + section;
    return text(names.at(std::size_t(section)));
}

} // namespace shell
