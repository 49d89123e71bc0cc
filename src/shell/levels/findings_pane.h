#pragma once

#include "sheet/notices.h"
#include "survey/finding.h"

#include <QWidget>

#include <functional>
#include <vector>

class QCheckBox;
class QDoubleSpinBox;
class QLabel;
class QTreeWidget;

namespace shell {

/// The list of what looks wrong in the book, and below it, under a heading of its own, the notices: what keys
/// and commands did that nobody may have meant.
class FindingsPane final : public QWidget {
  public:
    FindingsPane();

    std::function<void(int row)> chosen;
    std::function<void(std::uint64_t mark)> setAside; ///< or back, when it is set aside
    std::function<void(double metres)> staffChanged;
    std::function<void()> wantsAside; ///< the findings that are set aside are to be shown, or not any more

    [[nodiscard]] bool showsAside() const;
    [[nodiscard]] QSize sizeHint() const override; ///< leaves the grid most of the height
    void setStaff(double metres);
    struct Entry {
        survey::Finding finding;
        bool aside = false;
    };
    /// Fills the list; the entry that was chosen stays so where it is still there.
    void show(const std::vector<Entry>& entries, const std::vector<sheet::Notice>& notices);

  private:
    void goToCurrent();
    void setCurrentAside();

    QTreeWidget* m_list;
    QCheckBox* m_aside;
    QDoubleSpinBox* m_staff;
    QLabel* m_none;
};

} // namespace shell
