#pragma once

#include <span>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

// Controls as all windows have them: found by their name, and told by what they are when they are read out.
// Without a parent they get theirs when they are laid out; what is to be the default button needs it at once.

namespace shell {

/// The label of `field`: its access key leads there, and it is what the field is called.
[[nodiscard]] QLabel* makeLabel(const char* caption, QWidget& field);

/// A list to choose from. `spoken` null: its label says what it is.
[[nodiscard]] QComboBox* makeCombo(const char* name, const char* spoken = nullptr, QWidget* parent = nullptr);

/// A list that takes typed texts too, as they are typed.
[[nodiscard]] QComboBox* makeEditableCombo(const char* name, const char* spoken,
                                           std::span<const char* const> items = {});

[[nodiscard]] QCheckBox* makeCheckBox(const char* name, const char* caption);

/// A line to type in. `spoken` null: its label says what it is.
[[nodiscard]] QLineEdit* makeLine(const char* name, const char* spoken = nullptr, QWidget* parent = nullptr);

/// A line for a password, which shows nothing of it.
[[nodiscard]] QLineEdit* makePasswordLine(const char* name, const char* spoken, QWidget* parent);

[[nodiscard]] QPushButton* makeButton(const char* name, const char* caption, QWidget* parent = nullptr);

/// Keeps the room of a control that comes and goes, so that nothing jumps.
void keepRoomWhenHidden(QWidget& widget);

} // namespace shell
