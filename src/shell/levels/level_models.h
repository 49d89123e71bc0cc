#pragma once

#include "survey/runs.h"

#include <QAbstractTableModel>

#include <functional>

namespace shell {

/// The sections of the runs as a table; the length can be typed.
class SectionModel final : public QAbstractTableModel {
  public:
    enum Column { From, To, Setups, Length, Found, Known, Misclosure, PerSetup, Allowed, Verdict, columns };

    explicit SectionModel(survey::Runs& runs);
    std::function<void(std::size_t section, double km)> lengthTyped; ///< 0: taken back

    void refresh(); ///< the sections may be others
    [[nodiscard]] const survey::RunSection* at(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  private:
    [[nodiscard]] QString cell(const survey::RunSection& section, int column) const;
    [[nodiscard]] static bool takesLength(const survey::RunSection& section);

    survey::Runs& m_runs;
    int m_rows = 0;
};

/// The levels of the rows that the grid shows.
class RowLevelModel final : public QAbstractTableModel {
  public:
    explicit RowLevelModel(survey::Runs& runs) : m_runs(runs) {}

    void setRows(int first, int last); ///< what they say may be new
    void setRiseAndFall(bool shown);
    [[nodiscard]] int firstRow() const { return m_first; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    survey::Runs& m_runs;
    int m_first = 1;
    int m_last = 0;
    bool m_riseAndFall = false;
};

} // namespace shell
