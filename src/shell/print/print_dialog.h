#pragma once

#include "print_job.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;

namespace shell {

class PagePreview;

/// The one dialog of print, preview and PDF: what to print, with which scales on which paper, and the page in
/// sight as it will be. Only that page is laid out.
class PrintDialog final : public QDialog {
  public:
    enum class Aim { Preview, Print, Pdf }; ///< which button is the default one

    PrintDialog(PrintedBook book, PrintChoice choice, Aim aim, QWidget* parent);
    ~PrintDialog() override;

    std::function<void(const PrintJob&)> print;   ///< "Print..." was chosen
    std::function<void(const PrintJob&)> savePdf; ///< "Save as PDF..." was chosen
    [[nodiscard]] const PrintChoice& choice() const { return m_choice; }

  private:
    QWidget* buildChoices();
    QWidget* buildPreview();
    void choose(); ///< takes the controls as the choice and shows it

    PrintedBook m_book;
    PrintChoice m_choice;
    std::unique_ptr<PrintJob> m_job;
    QCheckBox* m_boxes[5]{}; // book, long section, cross-sections, adjusted, rise and fall
    QComboBox* m_paper = nullptr;
    QComboBox* m_longScale = nullptr;
    QComboBox* m_crossScale = nullptr;
    PagePreview* m_preview = nullptr;
    QSpinBox* m_page = nullptr;
    QLabel* m_pages = nullptr;
    QLabel* m_note = nullptr;
    QPushButton* m_print = nullptr;
    QPushButton* m_pdf = nullptr;
};

} // namespace shell
