#pragma once

#include "sheet/heading.h"

#include <QDialog>

#include <array>

class QLineEdit;

namespace shell {

/// The heading of the book, a line a text.
class HeadingDialog final : public QDialog {
  public:
    HeadingDialog(const sheet::Heading& heading, QWidget* parent);

    [[nodiscard]] sheet::Heading heading() const;

  private:
    std::array<QLineEdit*, sheet::Heading::keys.size()> m_texts{};
};

} // namespace shell
