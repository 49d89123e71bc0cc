#include "export_panel.h"

#include "controls/command_button.h"
#include "controls/elided_label.h"
#include "controls/makers.h"
#include "controls/metrics.h"
#include "text.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace shell {
namespace {

/// Tab goes to the chosen one of two options, the arrow keys to the other.
void choose(QRadioButton* chosen, QRadioButton* other) {
    chosen->setChecked(true);
    chosen->setFocusPolicy(Qt::StrongFocus);
    other->setFocusPolicy(Qt::ClickFocus);
}

/// The layout of a framed group; the group is its parent widget.
QGridLayout& makeGroup(const char* name, const char* title) {
    auto* group = new QGroupBox(text(title));
    group->setObjectName(QLatin1String(name));
    auto* grid = new QGridLayout(group);
    grid->setHorizontalSpacing(inFrameField);
    grid->setVerticalSpacing(inFrameLine);
    return *grid;
}

void addLabel(QGridLayout& grid, int row, int col, const char* caption, QWidget& field) {
    grid.addWidget(makeLabel(caption, field), row, col);
}

void addField(QGridLayout& grid, int row, QWidget* field, const char* unit) {
    grid.addWidget(field, row, 1);
    grid.addWidget(new QLabel(text(unit)), row, 2);
}

QLabel* addField(QGridLayout& grid, int row, const char* caption, QWidget* field, const char* unit) {
    addField(grid, row, field, unit);
    QLabel* label = makeLabel(caption, *field);
    grid.addWidget(label, row, 0);
    return label;
}

constexpr const char* widestLeft = "Carriage Way Width:";

/// The boxes of all frames of a column stand below each other, as wide as the widest label and unit leave
/// them.
void alignBoxes(QGridLayout& grid, const char* widestLabel) {
    const QFontMetrics face = QFontMetrics(QApplication::font());
    grid.setColumnMinimumWidth(0, face.horizontalAdvance(text(widestLabel)));
    grid.setColumnStretch(1, 1);
    grid.setColumnMinimumWidth(2, face.horizontalAdvance(text(": 1")));
}

} // namespace

ExportPanel::ExportPanel(exchange::ExportFrame& frame, desktop::Desktop& desktop, QWidget* parent)
    : Panel(QStringLiteral("fExport"), text("Exporting Data"), parent), m_frame(frame), m_desktop(desktop) {
    addWide(buildTitles());
    auto* left = new QVBoxLayout;
    left->addWidget(buildWidths());
    left->addWidget(buildCarriageWay());
    left->addWidget(buildSlopes());
    left->addStretch(1);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(frameGap);
    columns->addLayout(left, 1);
    columns->addWidget(buildGutter(), 1);
    body().addLayout(columns, body().rowCount(), 0, 1, 3);
    addWide(buildFormation());
    buildButtons();
    for (std::size_t i = 1; i < m_tabOrder.size(); ++i)
        setTabOrder(m_tabOrder[i - 1], m_tabOrder[i]);
    showFrame();
}

void ExportPanel::showFrame() {
    m_showing = true;
    for (const auto& mirrorOne : m_mirrors)
        mirrorOne();
    m_showing = false;
    const bool opening = m_frame.visible && isHidden();
    setVisible(m_frame.visible);
    if (opening) {
        raise();
        // The style marks an option with the focus only once Tab has been pressed in the window.
        window()->setAttribute(Qt::WA_KeyboardFocusChange);
        m_tabOrder.front()->setFocus();
    }
    if (m_frame.focus.empty()) return;
    const QString name = fromUtf8(std::exchange(m_frame.focus, {}));
    if (auto* control = findChild<QWidget*>(name)) control->setFocus();
}

void ExportPanel::mirror(QWidget* control, Value value, std::function<void(const QString&)> setText) {
    m_tabOrder.push_back(control);
    m_mirrors.emplace_back([this, control, value, setText = std::move(setText)] {
        control->setEnabled((m_frame.*value).enabled);
        setText(fromUtf8((m_frame.*value).text));
    });
}

QLineEdit* ExportPanel::makeText(const char* name, Value value, const char* spoken, int characters) {
    QLineEdit* box = makeLine(name, spoken);
    if (characters > 0) {
        box->setAlignment(Qt::AlignRight);
        box->setMinimumWidth(box->fontMetrics().horizontalAdvance(u'0') * characters + 16);
    }
    mirror(box, value, [box](const QString& shown) {
        if (box->text() != shown) box->setText(shown);
    });
    QObject::connect(box, &QLineEdit::textChanged, this, [this, value](const QString& typed) {
        if (!m_showing) (m_frame.*value).text = toUtf8(typed);
    });
    return box;
}

QComboBox* ExportPanel::makeCombo(const char* name, Value value, const char* spoken,
                                  std::span<const char* const> items) {
    QComboBox* box = makeEditableCombo(name, spoken, items);
    box->lineEdit()->setAlignment(Qt::AlignRight);
    mirror(box, value, [box](const QString& shown) {
        if (box->currentText() != shown) box->setEditText(shown);
    });
    QObject::connect(box, &QComboBox::editTextChanged, this, [this, value](const QString& typed) {
        if (!m_showing) (m_frame.*value).text = toUtf8(typed);
    });
    return box;
}

QRadioButton* ExportPanel::makeOption(const QString& name, const char* caption, const char* spoken,
                                      std::function<void()> click) {
    auto* option = new QRadioButton(text(caption));
    option->setObjectName(name);
    option->setAccessibleName(text(spoken));
    m_tabOrder.push_back(option);
    QObject::connect(option, &QRadioButton::clicked, this, [this, click = std::move(click)] {
        click();
        showFrame();
    });
    return option;
}

QWidget* ExportPanel::makeCheck(const char* name, const char* caption, bool Frame::*value) {
    QCheckBox* box = makeCheckBox(name, caption);
    m_tabOrder.push_back(box);
    m_mirrors.emplace_back([this, box, value] { box->setChecked(m_frame.*value); });
    QObject::connect(box, &QCheckBox::toggled, this, [this, value](bool on) { m_frame.*value = on; });
    return box;
}

QWidget* ExportPanel::buildTitles() {
    QGridLayout& grid = makeGroup("Frame2", "Name of Work :");
    auto* options = new QHBoxLayout;
    options->setSpacing(choiceGap);
    std::vector<QRadioButton*> names;
    for (int index = 0; index < int(Frame::nameOptions.size()); ++index) {
        const char* caption = Frame::nameOptions[std::size_t(index)];
        auto* option = makeOption(QStringLiteral("optName%1").arg(index), caption, caption,
                                  [this, index] { m_frame.optName_Click(index); });
        options->addWidget(option);
        names.push_back(option);
    }
    options->addStretch(1);
    m_mirrors.emplace_back([this, names] {
        if (m_frame.optName >= 0) names[std::size_t(m_frame.optName)]->setChecked(true);
    });
    grid.addLayout(options, 0, 0, 1, 4);
    grid.addWidget(makeText("txtName", &Frame::txtName, "Name of Work"), 1, 0, 1, 4);
    auto* subDivision = makeText("txtSubDiv", &Frame::txtSubDiv, "Sub-Division");
    auto* division = makeText("txtDiv", &Frame::txtDiv, "Division");
    addLabel(grid, 2, 0, "Sub-Division:", *subDivision);
    grid.addWidget(subDivision, 2, 1);
    addLabel(grid, 2, 2, "Division:", *division);
    grid.addWidget(division, 2, 3);
    auto* surveyor = makeText("txtSurvey", &Frame::txtSurvey, "Survey done By: Shri.");
    addLabel(grid, 3, 0, "Survey done By: Shri.", *surveyor);
    grid.addWidget(surveyor, 3, 1, 1, 3);
    grid.setColumnStretch(1, 1);
    grid.setColumnStretch(3, 1);
    return grid.parentWidget();
}

QWidget* ExportPanel::buildWidths() {
    QGridLayout& grid = makeGroup("fraWidth", "Formation Width");
    auto* sides = makeOption(QStringLiteral("optWLR"), "Left", "Left and right formation width",
                             [this] { m_frame.optWLR_Click(); });
    grid.addWidget(sides, 0, 0);
    addField(grid, 0, makeText("txtLW", &Frame::txtLW, "Left formation width, m", 6), "m");
    QLabel* right =
        addField(grid, 1, "Right", makeText("txtRW", &Frame::txtRW, "Right formation width, m", 6), "m");
    right->setIndent(style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) +
                     style()->pixelMetric(QStyle::PM_RadioButtonLabelSpacing)); // under the caption of optWLR
    auto* total = makeOption(QStringLiteral("optWTot"), "Total", "Total formation width",
                             [this] { m_frame.optWTot_Click(); });
    grid.addWidget(total, 2, 0);
    addField(grid, 2, makeText("txtTW", &Frame::txtTW, "Total formation width, m", 6), "m");
    m_mirrors.emplace_back([this, sides, total] {
        const bool isTotal = m_frame.width == Frame::Total;
        choose(isTotal ? total : sides, isTotal ? sides : total);
    });
    alignBoxes(grid, widestLeft);
    return grid.parentWidget();
}

QWidget* ExportPanel::buildCarriageWay() {
    auto* line = new QWidget;
    auto* grid = new QGridLayout(line);
    grid->setHorizontalSpacing(inFrameField);
    grid->setContentsMargins(grid->contentsMargins() - QMargins(0, lineGap, 0, lineGap));
    addField(*grid, 0,
             "Carriage Way Width:", makeText("txtCrgWid", &Frame::txtCrgWid, "Carriage Way Width, m", 6),
             "m");
    alignBoxes(*grid, widestLeft);
    return line;
}

QWidget* ExportPanel::buildSlopes() {
    QGridLayout& grid = makeGroup("fraSlopes", "Slopes ( X : 1 )");
    addField(grid, 0, "In Filling:",
             makeCombo("cboFill", &Frame::cboFill, "Slope in filling, X of X : 1", Frame::fillSlopes), ": 1");
    addField(grid, 1, "In Cutting:",
             makeCombo("cboCut", &Frame::cboCut, "Slope in cutting, X of X : 1", Frame::cutSlopes), ": 1");
    alignBoxes(grid, widestLeft);
    return grid.parentWidget();
}

QWidget* ExportPanel::buildGutter() {
    QGridLayout& grid = makeGroup("fraGutter", "Gutter");
    auto* slope = makeOption(QStringLiteral("optGut0"), "Slope (X:1)", "Gutter by its slopes",
                             [this] { m_frame.optGut_Click(Frame::Slope); });
    auto* top = makeOption(QStringLiteral("optGut1"), "Top Width", "Gutter by its top width",
                           [this] { m_frame.optGut_Click(Frame::TopWidth); });
    grid.addWidget(slope, 0, 0, 1, 3);
    grid.addWidget(top, 1, 0);
    auto* topWidth = makeText("txtTopW", &Frame::txtTopW, "Gutter top width, m", 6);
    addField(grid, 1, topWidth, "m");
    m_mirrors.emplace_back([this, slope, top] {
        const bool isSlope = m_frame.optGut == Frame::Slope;
        choose(isSlope ? slope : top, isSlope ? top : slope);
    });

    auto* inner = makeCombo("cboGIS", &Frame::cboGIS, "Gutter inner side, X of X : 1", Frame::gutterSlopes);
    auto* outer = makeCombo("cboGOS", &Frame::cboGOS, "Gutter outer side, X of X : 1", Frame::gutterSlopes);
    addField(grid, 2, "Inner Side:", inner, ": 1");
    addField(grid, 3, "Outter Side:", outer, ": 1");
    addField(grid, 4, "Depth:", makeText("txtDDrn", &Frame::txtDDrn, "Gutter depth, m", 6), "m");
    addField(grid, 5, "B.Width:", makeText("txtWDrn", &Frame::txtWDrn, "Gutter bottom width, m", 6), "m");
    auto* gutters = new QHBoxLayout;
    gutters->setSpacing(choiceGap);
    gutters->addWidget(makeCheck("chkLG", "Left Gutter", &Frame::chkLG));
    gutters->addWidget(makeCheck("chkRg", "Right Gutter", &Frame::chkRg));
    gutters->addStretch(1);
    grid.addLayout(gutters, 6, 0, 1, 3);
    grid.setRowStretch(7, 1);
    alignBoxes(grid, "Outter Side:");
    for (QWidget* box : std::initializer_list<QWidget*>{topWidth, inner, outer}) {
        box->installEventFilter(this);
        m_gutterBoxes.push_back(box);
    }
    return grid.parentWidget();
}

QWidget* ExportPanel::buildFormation() {
    auto* line = new QWidget;
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(frameGap);
    row->addWidget(makeCheck("chkFRL", "Send as a FRL", &Frame::chkFRL));
    auto* select = new CommandButton(QStringLiteral("cmdSel"), text("Select Project"), nullptr);
    QObject::connect(select, &QPushButton::clicked, this, [this] {
        m_frame.cmdSel_Click(m_desktop);
        showFrame();
    });
    select->setMinimumSize(select->sizeHint()); // one line
    m_tabOrder.push_back(select);
    row->addWidget(select);
    auto* path = new ElidedLabel(Qt::ElideMiddle);
    path->setObjectName(QStringLiteral("lblProj"));
    m_mirrors.emplace_back([this, path] {
        path->setText(fromUtf8(m_frame.lblProj));
        path->setToolTip(path->text());
        path->setAccessibleName(m_frame.lblProj.empty() ? text("No road database selected") : path->text());
    });
    row->addWidget(path, 1);
    return line;
}

void ExportPanel::buildButtons() {
    auto* cancel = new CommandButton(QStringLiteral("cmdCancel"), text("&Cancel"), nullptr);
    auto* transfer = new CommandButton(QStringLiteral("cmdTr"), text("&Transfer"), nullptr);
    transfer->setDefault(true);
    auto* adjusted = new QLabel(text("Sends adjusted levels"));
    adjusted->setObjectName(QStringLiteral("lblAdjusted"));
    m_mirrors.emplace_back([this, adjusted] { adjusted->setVisible(m_frame.sendsAdjusted); });
    buttons().addWidget(adjusted);
    for (CommandButton* button : {cancel, transfer}) {
        button->setMinimumWidth(buttonWidth);
        buttons().addWidget(button);
    }
    m_tabOrder.push_back(transfer);
    m_tabOrder.push_back(cancel);
    transfer->keyPress = [this](char32_t character) {
        if (cmdTr_KeyPress) cmdTr_KeyPress(character);
    };
    QObject::connect(transfer, &QPushButton::clicked, this, [this, transfer] {
        transfer->setFocus(); // an access key does not bring the focus, and a box that was edited is left now
        runCal();
        if (cmdTr_Click) cmdTr_Click();
    });
    QObject::connect(cancel, &QPushButton::clicked, this, [this] {
        m_calDue = false;
        if (cmdCancel_Click) cmdCancel_Click();
    });
}

void ExportPanel::runCal() {
    if (!std::exchange(m_calDue, false) || !isVisible()) return;
    m_frame.Cal(m_desktop);
    showFrame();
}

bool ExportPanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut &&
        std::ranges::find(m_gutterBoxes, watched) != m_gutterBoxes.end()) {
        const Qt::FocusReason reason = static_cast<const QFocusEvent&>(*event).reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) {
            m_calDue = true;
            // Not from within the change of focus: a message box would change it again.
            QMetaObject::invokeMethod(
                this, [this] { runCal(); }, Qt::QueuedConnection);
        }
    }
    return Panel::eventFilter(watched, event);
}

} // namespace shell
