#pragma once

#include "controls/panel.h"

#include "desktop/desktop.h"
#include "exchange/export_frame.h"

#include <functional>
#include <span>
#include <vector>

class QComboBox;
class QLineEdit;
class QRadioButton;

namespace shell {

class CommandButton;

/// The export frame `fExport`. Its controls and the ExportFrame always say the same: what is typed or chosen
/// is in the frame at once, and showFrame() brings what a command changed into the controls.
class ExportPanel final : public Panel {
  public:
    ExportPanel(exchange::ExportFrame& frame, desktop::Desktop& desktop, QWidget* parent);

    std::function<void()> cmdTr_Click;
    std::function<void(char32_t)> cmdTr_KeyPress;
    std::function<void()> cmdCancel_Click;

    /// Shows or hides the panel as the frame says, fills its controls, and gives the focus to the control
    /// that asks for it.
    void showFrame();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    using Frame = exchange::ExportFrame;
    using Value = exchange::TextBox Frame::*;

    QLineEdit* makeText(const char* name, Value value, const char* spoken, int characters = 0);
    QComboBox* makeCombo(const char* name, Value value, const char* spoken,
                         std::span<const char* const> items);
    QRadioButton* makeOption(const QString& name, const char* caption, const char* spoken,
                             std::function<void()> click);
    QWidget* makeCheck(const char* name, const char* caption, bool Frame::*value);
    void mirror(QWidget* control, Value value, std::function<void(const QString&)> setText);
    void runCal(); ///< the check of the gutter that is due since one of its boxes was left

    QWidget* buildTitles();
    QWidget* buildWidths();
    QWidget* buildCarriageWay();
    QWidget* buildSlopes();
    QWidget* buildGutter();
    QWidget* buildFormation();
    void buildButtons();

    Frame& m_frame;
    desktop::Desktop& m_desktop;
    std::vector<std::function<void()>> m_mirrors; ///< each brings one control in step with the frame
    std::vector<QWidget*> m_tabOrder;
    std::vector<QObject*> m_gutterBoxes; ///< whose leaving runs Cal
    bool m_showing = false;
    bool m_calDue = false;
};

} // namespace shell
