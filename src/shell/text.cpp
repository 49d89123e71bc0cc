#include "text.h"

#include <QCoreApplication>

namespace shell {

QString text(const char* english) {
    return QCoreApplication::translate("ZavroGrl", english);
}

QString fromUtf8(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

std::string toUtf8(const QString& text) {
    return text.toStdString();
}

} // namespace shell
