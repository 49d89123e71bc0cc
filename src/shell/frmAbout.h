#pragma once

#include <QDialog>

namespace shell {

/// Title, version and two short notices.
class frmAbout final : public QDialog {
  public:
    explicit frmAbout(QWidget* parent = nullptr);
};

} // namespace shell
