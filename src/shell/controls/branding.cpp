#include "branding.h"

#include "../text.h"
#include "drawing_svg.h"
#include "graphic.h"
#include "metrics.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QSvgRenderer>
#include <QVBoxLayout>

#include <algorithm>

namespace shell::branding {

namespace {

constexpr double titleScale = 1.6; // of the standard font

QByteArray drawingSource() {
    return QByteArray::fromRawData(drawingSvg.data(), qsizetype(drawingSvg.size()));
}

// A window without a frame is told from what lies behind it by a line in the palette's own colour.
class Edge final : public QWidget {
  public:
    explicit Edge(QWidget& window) : QWidget(&window) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        window.installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Resize || event->type() == QEvent::Show) {
            setGeometry(parentWidget()->rect());
            raise();
        }
        return QWidget::eventFilter(watched, event);
    }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
};

} // namespace

Drawing::Drawing(QWidget* parent, int side) : QWidget(parent) {
    setFixedSize(side, side);
    tellAsGraphic(*this);
    setAccessibleName(text("A level on its tripod, sighting a staff"));
}

void Drawing::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QSvgRenderer(drawingSource()).render(&painter, QRectF(rect()));
}

QIcon icon() {
    QSvgRenderer renderer(drawingSource());
    QIcon icon;
    for (const int side : {16, 32, 48, 64}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

QLabel* makeTitle(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * titleScale);
    font.setBold(true);
    label->setFont(font);
    return label;
}

QLabel* makeText(const QString& text, QWidget* parent, const QString& name) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QString versionText() {
    return text("Version ") + QCoreApplication::applicationVersion();
}

QVBoxLayout* layOut(QWidget& window, int side) {
    auto* row = new QHBoxLayout(&window);
    row->setContentsMargins(windowMargin, windowMargin, windowMargin, windowMargin);
    row->setSpacing(windowMargin);
    row->addWidget(new Drawing(&window, side), 0, Qt::AlignTop);
    auto* body = new QVBoxLayout;
    body->setSpacing(windowGap);
    row->addLayout(body, 1);
    return body;
}

QHBoxLayout* makeButtonRow(const QList<QWidget*>& buttons) {
    auto* row = new QHBoxLayout;
    row->setSpacing(windowGap);
    row->setContentsMargins(0, windowGap, 0, 0);
    row->addStretch(1);
    int width = buttonWidth;
    for (const QWidget* button : buttons)
        width = std::max(width, button->sizeHint().width());
    for (QWidget* button : buttons) {
        button->setMinimumWidth(width);
        row->addWidget(button);
    }
    return row;
}

void makeFrameless(QWidget& window) {
    window.setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    new Edge(window);
}

void centre(QWidget& window) {
    window.adjustSize();
    const QRect screen = window.screen()->availableGeometry();
    window.move(screen.center() - window.rect().center());
}

} // namespace shell::branding
