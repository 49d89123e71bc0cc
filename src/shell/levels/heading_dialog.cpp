#include "heading_dialog.h"

#include "../controls/makers.h"
#include "../text.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>

namespace shell {
namespace {

// In the order of the keys.
constexpr std::array<const char*, sheet::Heading::keys.size()> captions{
    "&Work",   "&Road",       "&From",   "&To",    "&Date",    "&Surveyor",
    "&Booker", "&Instrument", "&Number", "St&aff", "W&eather", "Start &mark"};

} // namespace

HeadingDialog::HeadingDialog(const sheet::Heading& heading, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmHeading"));
    setWindowTitle(text("Job heading"));
    auto* form = new QFormLayout(this);
    for (std::size_t key = 0; key < captions.size(); ++key) {
        m_texts[key] = makeLine((std::string("txtHeading_") + sheet::Heading::keys[key]).c_str());
        m_texts[key]->setText(fromUtf8(heading.text(key)));
        m_texts[key]->setAccessibleName(text(captions[key]).remove(u'&'));
        m_texts[key]->setMaxLength(int(sheet::Heading::longest));
        m_texts[key]->setMinimumWidth(40 * fontMetrics().averageCharWidth());
        form->addRow(text(captions[key]), m_texts[key]);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QObject::connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
}

sheet::Heading HeadingDialog::heading() const {
    sheet::Heading heading;
    for (std::size_t key = 0; key < m_texts.size(); ++key)
        heading.setText(key, toUtf8(m_texts[key]->text()));
    return heading;
}

} // namespace shell
