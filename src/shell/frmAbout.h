#pragma once

#include <QDialog>

namespace shell {

/// Title, version and two short notices.
class FrmAbout final : public QDialog {
  public:
    explicit FrmAbout(QWidget* parent = nullptr);
};

} // namespace shell
