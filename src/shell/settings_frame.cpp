#include "settings_frame.h"

#include "controls/command_button.h"
#include "controls/makers.h"
#include "controls/metrics.h"
#include "text.h"

#include "entry/entry_settings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>

#include <array>

namespace shell {
namespace {

constexpr std::array increments{"5", "10", "20", "25", "30", "50", "100"};
constexpr std::array sides{"Left", "Right"};

} // namespace

SettingsFrame::SettingsFrame(sheet::Book& book, desktop::Desktop& desktop, QWidget* parent)
    : Panel(QStringLiteral("ff"), text("Settings"), parent), m_settings(book.settings), m_desktop(desktop) {
    m_cboIncr = makeEditableCombo("cboIncr", "Chainage Increment, m", increments);
    addLine(text("Chainage Increment:"), m_cboIncr, text("m"));
    m_cboSide = makeEditableCombo("cboSide", "Starting Side", sides);
    addLine(text("Starting Side :"), m_cboSide);

    m_chkAuto = makeCheck("chkAuto", "Auto Left to Right", &sheet::Settings::chkAuto);
    m_chkFinal = makeCheck("chkFinal", "Final List (No Confirm)", &sheet::Settings::chkFinal);
    m_chk005 = makeCheck("chk005", "Check 3rd digit is 5 or 0 (Dumpy Level)", &sheet::Settings::chk005);
    for (QCheckBox* box : {m_chkAuto, m_chkFinal, m_chk005})
        addWide(box);

    m_chkAdd = makeCheck("chkAdd", "Add Reading", &sheet::Settings::chkAdd);
    m_txtAdd = makeLine("txtAdd", "Reading to add");
    const int addRow = body().rowCount();
    body().addWidget(m_chkAdd, addRow, 0);
    body().addWidget(m_txtAdd, addRow, 1);

    nextColumn();
    m_chkOft = makeCheck("chkOft", "Fixed Offsets", &sheet::Settings::chkOft);
    addWide(m_chkOft);
    m_txtOft = makeLine("txtOft");
    addLine(text("Offset:"), m_txtOft, text("m"))->setObjectName(QStringLiteral("lblOft"));

    m_optLeft = makeOption("optLeft", "Left");
    m_optRight = makeOption("optRight", "Right");
    m_optBoth = makeOption("optBoth", "Both");
    m_optBoth->setChecked(true);
    m_cmdAdd = new CommandButton(QStringLiteral("cmdAdd"), text("Add"), nullptr);
    auto* line = new QHBoxLayout;
    for (QRadioButton* option : {m_optLeft, m_optRight, m_optBoth})
        line->addWidget(option);
    line->addStretch(1);
    line->addWidget(m_cmdAdd);
    body().addLayout(line, body().rowCount(), 0, 1, 3);

    m_lstOft = new QListWidget;
    m_lstOft->setObjectName(QStringLiteral("lstOft"));
    m_lstOft->setAccessibleName(text("Fixed offsets"));
    m_lstOft->setToolTip(text("Press 'DEL' button on Keybord to delete the Offset from List"));
    m_lstOft->setUniformItemSizes(true);
    m_lstOft->setFixedHeight(8 * m_lstOft->fontMetrics().lineSpacing());
    m_lstOft->installEventFilter(this);
    addWide(m_lstOft);
    m_txtOft->installEventFilter(this);

    auto* cmdOK = new CommandButton(QStringLiteral("cmdOK"), text("OK"), nullptr);
    cmdOK->setMinimumWidth(buttonWidth);
    buttons().addWidget(cmdOK);

    for (QWidget* widget :
         std::initializer_list<QWidget*>{m_txtAdd, m_optLeft, m_optRight, m_optBoth, m_cmdAdd, m_lstOft})
        keepRoomWhenHidden(*widget);

    QObject::connect(m_cboIncr, &QComboBox::editTextChanged, this, [this](const QString& typed) {
        if (!m_showing) m_settings.cboIncr = toUtf8(typed);
    });
    QObject::connect(m_cboSide, &QComboBox::editTextChanged, this, [this](const QString& typed) {
        if (m_showing) return;
        m_settings.cboSide = toUtf8(typed);
        m_settings.cboSideIndex = m_cboSide->findText(typed, Qt::MatchExactly | Qt::MatchCaseSensitive);
    });
    QObject::connect(m_txtAdd, &QLineEdit::textChanged, this,
                     [this](const QString& typed) { m_settings.txtAdd = toUtf8(typed); });
    QObject::connect(m_chkOft, &QCheckBox::toggled, this, [this] { chkOft_Click(); });
    QObject::connect(m_chkAdd, &QCheckBox::toggled, this, [this] { chkAdd_Click(); });
    QObject::connect(m_cmdAdd, &QPushButton::clicked, this, [this] { cmdAdd_Click(); });
    QObject::connect(cmdOK, &QPushButton::clicked, this, [this] {
        if (cmdOK_Click) cmdOK_Click();
    });
    showSettings();
    chkAdd_Click();
}

QCheckBox* SettingsFrame::makeCheck(const char* name, const char* caption, bool sheet::Settings::*setting) {
    QCheckBox* box = makeCheckBox(name, caption);
    QObject::connect(box, &QCheckBox::toggled, this, [this, setting](bool on) { m_settings.*setting = on; });
    return box;
}

QRadioButton* SettingsFrame::makeOption(const char* name, const char* caption) {
    auto* option = new QRadioButton(text(caption));
    option->setObjectName(QLatin1String(name));
    option->setAccessibleName(text("Offset on side: %1").arg(text(caption)));
    return option;
}

void SettingsFrame::open() {
    m_before = m_settings;
    show();
    raise();
    m_cboIncr->setFocus();
}

void SettingsFrame::showSettings() {
    m_showing = true;
    m_cboIncr->setEditText(fromUtf8(m_settings.cboIncr));
    m_cboSide->setCurrentIndex(m_settings.cboSideIndex);
    m_cboSide->setEditText(fromUtf8(m_settings.cboSide));
    m_showing = false;
    m_chkAuto->setChecked(m_settings.chkAuto);
    m_chkFinal->setChecked(m_settings.chkFinal);
    m_chk005->setChecked(m_settings.chk005);
    m_chkAdd->setChecked(m_settings.chkAdd);
    m_chkOft->setChecked(m_settings.chkOft);
    m_txtAdd->setText(fromUtf8(m_settings.txtAdd));
    showList();
}

void SettingsFrame::showList() {
    m_lstOft->clear();
    for (const std::string& entry : m_settings.lstOft)
        m_lstOft->addItem(fromUtf8(entry));
}

void SettingsFrame::chkOft_Click() {
    const bool fixed = m_chkOft->isChecked();
    setLineVisible(m_txtOft, fixed);
    for (QWidget* widget :
         std::initializer_list<QWidget*>{m_lstOft, m_cmdAdd, m_optLeft, m_optRight, m_optBoth})
        widget->setVisible(fixed);
}

void SettingsFrame::chkAdd_Click() {
    m_txtAdd->setVisible(m_chkAdd->isChecked());
}

void SettingsFrame::cmdAdd_Click() {
    const entry::OffsetSide side = m_optLeft->isChecked()    ? entry::OffsetSide::Left
                                   : m_optRight->isChecked() ? entry::OffsetSide::Right
                                                             : entry::OffsetSide::Both;
    if (!entry::addOffset(m_settings, m_desktop, toUtf8(m_txtOft->text()), side)) return;
    showList();
    m_txtOft->clear();
    m_txtOft->setFocus();
}

void SettingsFrame::lstOft_KeyDown(int key) {
    if (key != Qt::Key_Delete) return;
    const int selected = m_lstOft->selectedItems().isEmpty() ? -1 : m_lstOft->currentRow();
    entry::removeOffset(m_settings, m_desktop, selected);
    if (selected < 0) return;
    showList();
    m_lstOft->setCurrentRow(std::min(selected, m_lstOft->count() - 1));
}

void SettingsFrame::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) return Panel::keyPressEvent(event);
    m_settings = sheet::Settings(m_before);
    showSettings();
    m_txtOft->clear();
    hide();
    if (givenUp) givenUp();
}

bool SettingsFrame::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (watched == m_lstOft && key.key() == Qt::Key_Delete) {
            lstOft_KeyDown(key.key());
            return true;
        }
        const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
        if (watched == m_txtOft && enter) {
            cmdAdd_Click();
            return true;
        }
    }
    return Panel::eventFilter(watched, event);
}

} // namespace shell
