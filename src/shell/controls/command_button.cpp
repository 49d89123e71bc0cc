#include "command_button.h"

#include "characters.h"

#include <QKeyEvent>
#include <QShortcutEvent>
#include <QStyleOptionButton>
#include <QStylePainter>

#include <algorithm>

namespace shell {
namespace {

constexpr int sidePadding = 5;
constexpr int topPadding = 5;
constexpr int captionFlags = Qt::AlignCenter | Qt::TextWordWrap | Qt::TextShowMnemonic;

} // namespace

CommandButton::CommandButton(const QString& name, const QString& caption, QWidget* parent)
    : QPushButton(caption, parent) {
    setObjectName(name);
    setAccessibleName(plainCaption(caption));
    setAutoDefault(false);
    setMouseTracking(true);
    QSizePolicy policy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void CommandButton::setCaptionBold(bool bold) {
    if (bold == captionBold()) return;
    QFont face = font();
    face.setBold(bold);
    setFont(face);
}

QFont CommandButton::plainFont() const {
    QFont face = font();
    face.setBold(false);
    return face;
}

QFont CommandButton::boldFont() const {
    QFont face = font();
    face.setBold(true);
    return face;
}

QFont CommandButton::fittingFont(int width) const {
    if (!captionBold()) return font();
    QFont face = font();
    const int height = captionBox(plainFont(), width).height();
    for (int spacing = 100; spacing > 84 && captionBox(face, width).height() > height; spacing -= 2)
        face.setLetterSpacing(QFont::PercentageSpacing, spacing);
    return face;
}

QRect CommandButton::captionBox(const QFont& face, int width) const {
    return QFontMetrics(face).boundingRect(QRect(0, 0, width, 10000), captionFlags, text());
}

int CommandButton::widthForLines(int lines) const {
    const QFont face = boldFont();
    const int limit = lines * (QFontMetrics(face).lineSpacing() + 1);
    int low = 1;
    int high = QFontMetrics(face).horizontalAdvance(text()) + 2;
    const auto fits = [&](int width) {
        const QRect box = captionBox(face, width);
        return box.height() <= limit && box.width() <= width;
    };
    while (low < high) {
        const int middle = (low + high) / 2;
        if (fits(middle))
            high = middle;
        else
            low = middle + 1;
    }
    return low + 2 * sidePadding;
}

int CommandButton::heightForWidth(int width) const {
    return captionBox(plainFont(), std::max(1, width - 2 * sidePadding)).height() + 2 * topPadding;
}

QSize CommandButton::sizeHint() const {
    // Bold from the start: the caption turns bold under the pointer, and nothing may move then.
    const int width =
        QFontMetrics(boldFont()).size(Qt::TextShowMnemonic, text()).width() + 2 * sidePadding + 8;
    return {width, heightForWidth(width)};
}

QSize CommandButton::minimumSizeHint() const {
    return {widthForLines(2), heightForWidth(widthForLines(2))};
}

bool CommandButton::event(QEvent* event) {
    // One shared with another control only brings the focus.
    if (event->type() == QEvent::Shortcut)
        m_byAccessKey = !static_cast<const QShortcutEvent&>(*event).isAmbiguous();
    return QPushButton::event(event);
}

void CommandButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    const QString caption = option.text;
    option.text.clear();
    // Return presses the button with the focus, so the focus is always shown.
    if (hasFocus()) option.state |= QStyle::State_KeyboardFocusChange;
    painter.drawControl(QStyle::CE_PushButton, option);
    const QRect box = rect().adjusted(sidePadding - 1, 1, 1 - sidePadding, -1);
    int flags = captionFlags;
    if (!style()->styleHint(QStyle::SH_UnderlineShortcut, &option, this)) flags |= Qt::TextHideMnemonic;
    painter.setFont(fittingFont(width() - 2 * sidePadding));
    style()->drawItemText(&painter, box, flags, palette(), isEnabled(), caption, QPalette::ButtonText);
}

void CommandButton::keyPressEvent(QKeyEvent* event) {
    const char32_t character = characterOf(*event);
    if (character != 0 && keyPress) keyPress(character);
    if (character == 13)
        click();
    else if (character != 10)
        QPushButton::keyPressEvent(event);
    else
        event->accept();
}

void CommandButton::mouseMoveEvent(QMouseEvent* event) {
    if (mouseMove) mouseMove();
    QPushButton::mouseMoveEvent(event);
    event->accept(); // not the background's move as well
}

QString plainCaption(QString caption) {
    caption.replace(QStringLiteral("&&"), QStringLiteral("\x01"));
    caption.remove(u'&');
    return caption.replace(u'\x01', u'&');
}

} // namespace shell
