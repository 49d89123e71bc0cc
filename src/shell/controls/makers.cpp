#include "makers.h"

#include "../text.h"
#include "command_button.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace shell {

QLabel* makeLabel(const char* caption, QWidget& field) {
    auto* label = new QLabel(text(caption));
    label->setBuddy(&field);
    return label;
}

QComboBox* makeCombo(const char* name, const char* spoken, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(QLatin1String(name));
    if (spoken != nullptr) box->setAccessibleName(text(spoken));
    return box;
}

QComboBox* makeEditableCombo(const char* name, const char* spoken, std::span<const char* const> items) {
    QComboBox* box = makeCombo(name, spoken);
    box->setEditable(true);
    box->lineEdit()->setAccessibleName(text(spoken)); // it is the one that has the focus
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setCompleter(nullptr);
    for (const char* item : items)
        box->addItem(QLatin1String(item));
    return box;
}

QCheckBox* makeCheckBox(const char* name, const char* caption) {
    auto* box = new QCheckBox(text(caption));
    box->setObjectName(QLatin1String(name));
    box->setAccessibleName(plainCaption(text(caption)));
    return box;
}

QLineEdit* makeLine(const char* name, const char* spoken, QWidget* parent) {
    auto* line = new QLineEdit(parent);
    line->setObjectName(QLatin1String(name));
    if (spoken != nullptr) line->setAccessibleName(text(spoken));
    return line;
}

QLineEdit* makePasswordLine(const char* name, const char* spoken, QWidget* parent) {
    QLineEdit* line = makeLine(name, spoken, parent);
    line->setEchoMode(QLineEdit::Password);
    return line;
}

QPushButton* makeButton(const char* name, const char* caption, QWidget* parent) {
    auto* button = new QPushButton(text(caption), parent);
    button->setObjectName(QLatin1String(name));
    return button;
}

void keepRoomWhenHidden(QWidget& widget) {
    QSizePolicy policy = widget.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget.setSizePolicy(policy);
}

} // namespace shell
