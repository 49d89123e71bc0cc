#include "text.h"

#include <QCoreApplication>

namespace shell {

QString text(const char* english) {
    return QCoreApplication::translate("ZavroGrl", english);
}

QString text(std::string_view english) {
    return text(std::string(english).c_str());
}

QString fromUtf8(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

std::string toUtf8(const QString& text) {
    return text.toStdString();
}

} // namespace shell
