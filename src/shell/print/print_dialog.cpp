#include "print_dialog.h"

#include "../controls/graphic.h"
#include "../controls/makers.h"
#include "../controls/metrics.h"
#include "../text.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <array>

namespace shell {

/// Shows one page of a job, as large as it fits.
class PagePreview final : public QWidget {
  public:
    using QWidget::QWidget;

    void show(const PrintJob* job, int page) {
        m_job = job;
        m_page = page;
        update();
    }
    [[nodiscard]] QSize sizeHint() const override { return {420, 480}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {220, 240}; }

  protected:
    void paintEvent(QPaintEvent*) override {
        if (m_job == nullptr || m_job->count() == 0) return;
        const drawing::Paper paper = m_job->choice().paper();
        const double scale =
            std::min((width() - 2 * margin) / paper.width, (height() - 2 * margin) / paper.height);
        const QSizeF size(paper.width * scale, paper.height * scale);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate((width() - size.width()) / 2, (height() - size.height()) / 2);
        painter.fillRect(QRectF({}, size), Qt::white); // paper is white in a dark palette too
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRect(QRectF({}, size));
        painter.setClipRect(QRectF({}, size));
        m_job->paint(painter, m_page, scale);
    }

  private:
    const PrintJob* m_job = nullptr;
    int m_page = 0;
};

namespace {

constexpr std::array<drawing::Scale, 6> longScales{
    {{500, 50}, {500, 100}, {1000, 100}, {1000, 200}, {2500, 250}, {5000, 500}}};
constexpr std::array crossScales{50.0, 100.0, 200.0, 250.0, 500.0};

struct PaperChoice {
    const char* name;
    bool letter, across;
};
constexpr std::array<PaperChoice, 4> papers{{{"A4 upright", false, false},
                                             {"A4 across", false, true},
                                             {"Letter upright", true, false},
                                             {"Letter across", true, true}}};

struct BoxRow {
    const char* name;
    const char* caption;
    bool PrintChoice::*choice;
};
constexpr std::array<BoxRow, 5> boxes{{{"chkBook", "&Field book", &PrintChoice::book},
                                       {"chkLong", "&Long section", &PrintChoice::longSection},
                                       {"chkCross", "&Cross-sections", &PrintChoice::crossSections},
                                       {"chkAdjusted", "&Adjusted levels", &PrintChoice::adjusted},
                                       {"chkRise", "&Rise and fall", &PrintChoice::riseAndFall}}};

} // namespace

PrintDialog::PrintDialog(PrintedBook book, PrintChoice choice, Aim aim, QWidget* parent)
    : QDialog(parent), m_book(std::move(book)), m_choice(std::move(choice)) {
    setObjectName(QStringLiteral("printDialog"));
    setWindowTitle(text(aim == Aim::Pdf ? "Save as PDF" : aim == Aim::Print ? "Print" : "Print preview"));
    auto* whole = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    row->addWidget(buildChoices());
    row->addWidget(buildPreview(), 1);
    whole->addLayout(row, 1);

    m_note = new QLabel;
    m_note->setObjectName(QStringLiteral("lblNote"));
    m_note->setWordWrap(true);
    whole->addWidget(m_note);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    const auto button = [&](const char* name, const char* caption) {
        QPushButton* made = makeButton(name, caption);
        made->setAutoDefault(false);
        buttons->addWidget(made);
        return made;
    };
    m_print = button("cmdPrint", "&Print...");
    m_pdf = button("cmdPdf", "Save as P&DF...");
    QPushButton* close = button("cmdClose", "Close");
    whole->addLayout(buttons);
    (aim == Aim::Print ? m_print : aim == Aim::Pdf ? m_pdf : close)->setDefault(true);
    connect(m_print, &QPushButton::clicked, this, [this] { print(*m_job); });
    connect(m_pdf, &QPushButton::clicked, this, [this] { savePdf(*m_job); });
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    choose();
}

PrintDialog::~PrintDialog() = default;

QWidget* PrintDialog::buildChoices() {
    auto* panel = new QWidget;
    auto* form = new QFormLayout(panel);
    for (std::size_t k = 0; k < boxes.size(); ++k) {
        m_boxes[k] = makeCheckBox(boxes[k].name, boxes[k].caption);
        m_boxes[k]->setChecked(m_choice.*boxes[k].choice);
        connect(m_boxes[k], &QCheckBox::toggled, this, [this] { choose(); });
        form->addRow(m_boxes[k]);
    }
    const auto combo = [&](const char* name, const char* label) {
        QComboBox* made = makeCombo(name);
        form->addRow(text(label), made);
        return made;
    };
    m_paper = combo("cboPaper", "P&aper");
    for (const PaperChoice& paper : papers) {
        m_paper->addItem(text(paper.name));
        if (paper.letter == m_choice.letter && paper.across == m_choice.across)
            m_paper->setCurrentIndex(m_paper->count() - 1);
    }
    m_longScale = combo("cboLongScale", "L&ong section");
    for (const drawing::Scale scale : longScales) {
        m_longScale->addItem(fromUtf8(drawing::scaleText(scale)));
        if (scale == m_choice.longScale) m_longScale->setCurrentIndex(m_longScale->count() - 1);
    }
    m_crossScale = combo("cboCrossScale", "Cross-&sections");
    for (const double scale : crossScales) {
        m_crossScale->addItem(fromUtf8(drawing::scaleText({scale, scale})));
        if (scale == m_choice.crossScale) m_crossScale->setCurrentIndex(m_crossScale->count() - 1);
    }
    for (QComboBox* each : {m_paper, m_longScale, m_crossScale})
        connect(each, &QComboBox::currentIndexChanged, this, [this] { choose(); });
    return panel;
}

QWidget* PrintDialog::buildPreview() {
    auto* panel = new QWidget;
    auto* column = new QVBoxLayout(panel);
    m_preview = new PagePreview;
    tellAsGraphic(*m_preview);
    m_preview->setAccessibleName(text("Page as it is printed"));
    column->addWidget(m_preview, 1);
    auto* turning = new QHBoxLayout;
    turning->addStretch(1);
    m_page = new QSpinBox;
    m_page->setObjectName(QStringLiteral("spnPage"));
    m_pages = new QLabel;
    m_pages->setObjectName(QStringLiteral("lblPages"));
    m_pages->setMinimumWidth(m_pages->fontMetrics().horizontalAdvance(text("of %1").arg(10000)));
    turning->addWidget(makeLabel("Pa&ge", *m_page));
    turning->addWidget(m_page);
    turning->addWidget(m_pages);
    turning->addStretch(1);
    column->addLayout(turning);
    connect(m_page, &QSpinBox::valueChanged, this,
            [this](int page) { m_preview->show(m_job.get(), page - 1); });
    return panel;
}

void PrintDialog::choose() {
    for (std::size_t k = 0; k < boxes.size(); ++k)
        m_choice.*boxes[k].choice = m_boxes[k]->isChecked();
    const PaperChoice& paper = papers.at(static_cast<std::size_t>(m_paper->currentIndex()));
    m_choice.letter = paper.letter;
    m_choice.across = paper.across;
    m_choice.longScale = longScales.at(static_cast<std::size_t>(m_longScale->currentIndex()));
    m_choice.crossScale = crossScales.at(static_cast<std::size_t>(m_crossScale->currentIndex()));
    m_longScale->setEnabled(m_choice.longSection);
    m_crossScale->setEnabled(m_choice.crossSections);
    for (const std::size_t k : {3U, 4U})
        m_boxes[k]->setEnabled(m_choice.book);

    auto job = std::make_unique<PrintJob>(m_book, m_choice);
    const int pages = job->count();
    m_preview->show(job.get(), 0);
    m_job = std::move(job);
    m_page->setRange(std::min(1, pages), pages);
    m_page->setValue(1);
    m_pages->setText(text("of %1").arg(pages));
    m_note->setText(fromUtf8(m_job->note()));
    m_note->setVisible(!m_job->note().empty());
    m_print->setEnabled(pages > 0);
    m_pdf->setEnabled(pages > 0);
}

} // namespace shell
