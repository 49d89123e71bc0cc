#include "graphic.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace shell {
namespace {

constexpr const char* mark = "isGraphic";

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    if (widget == nullptr || !widget->property(mark).toBool()) return nullptr;
    return new QAccessibleWidget(widget, QAccessible::Graphic); // Qt keeps it
}

} // namespace

void tellAsGraphic(QWidget& widget) {
    static const bool installed = (QAccessible::installFactory(&makeInterface), true);
    widget.setProperty(mark, installed);
}

} // namespace shell
