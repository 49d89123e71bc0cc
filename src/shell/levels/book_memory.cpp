#include "book_memory.h"

#include "../text.h"

#include "survey/findings.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStringList>

namespace shell {
namespace {

QString stateFolder() {
    QString home = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(home)) home = QDir::homePath() + QStringLiteral("/.local/state");
    return home + QStringLiteral("/zavrogrl");
}

/// The group of a book: a path may hold what an ini file takes for its own.
QString groupOf(const std::string& path) {
    const QByteArray whole = QFileInfo(fromUtf8(path)).absoluteFilePath().toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(whole, QCryptographicHash::Sha1).toHex());
}

const QString rule = QStringLiteral("allow");
const QString method = QStringLiteral("by");
const QString lengths = QStringLiteral("lengths");
const QString asideMarks = QStringLiteral("aside");
const QString staffLength = QStringLiteral("staff");

} // namespace

BookMemory::BookMemory(const std::string& folder)
    : m_file((folder.empty() ? stateFolder() : fromUtf8(folder)) + QStringLiteral("/books.ini")) {}

survey::Closing BookMemory::closing(const std::string& path) const {
    survey::Closing closing;
    if (path.empty()) return closing;
    QSettings kept(m_file, QSettings::IniFormat);
    kept.beginGroup(groupOf(path));
    if (const auto tolerance = survey::toleranceFrom(toUtf8(kept.value(rule).toString())))
        closing.tolerance = *tolerance;
    if (kept.value(method).toString() == QLatin1String("distance")) closing.method = survey::Method::Distance;
    for (const QString& length : kept.value(lengths).toStringList())
        closing.lengthsKm.push_back(length.toDouble());
    return closing;
}

template <typename Change>
void BookMemory::change(const std::string& path, Change&& change) const {
    if (path.empty() || !QDir().mkpath(QFileInfo(m_file).path())) return;
    QSettings kept(m_file, QSettings::IniFormat);
    kept.beginGroup(groupOf(path));
    change(kept);
}

void BookMemory::keep(const std::string& path, const survey::Closing& closing) const {
    change(path, [&](QSettings& kept) {
        kept.setValue(rule, fromUtf8(survey::toleranceText(closing.tolerance)));
        kept.setValue(method, closing.method == survey::Method::Distance ? QStringLiteral("distance")
                                                                         : QStringLiteral("setups"));
        QStringList texts;
        for (const double length : closing.lengthsKm)
            texts << QString::number(length, 'g', 9);
        kept.setValue(lengths, texts);
    });
}

std::set<std::uint64_t> BookMemory::aside(const std::string& path) const {
    std::set<std::uint64_t> marks;
    if (path.empty()) return marks;
    QSettings kept(m_file, QSettings::IniFormat);
    kept.beginGroup(groupOf(path));
    for (const QString& mark : kept.value(asideMarks).toStringList())
        marks.insert(mark.toULongLong(nullptr, 16));
    return marks;
}

void BookMemory::keep(const std::string& path, const std::set<std::uint64_t>& aside) const {
    change(path, [&](QSettings& kept) {
        QStringList texts;
        for (const std::uint64_t mark : aside)
            texts << QString::number(mark, 16);
        kept.setValue(asideMarks, texts);
    });
}

double BookMemory::staff() const {
    const double metres = QSettings(m_file, QSettings::IniFormat).value(staffLength).toDouble();
    return metres > 0 ? metres : survey::Findings::usualStaff;
}

void BookMemory::keepStaff(double metres) const {
    if (!QDir().mkpath(QFileInfo(m_file).path())) return;
    QSettings(m_file, QSettings::IniFormat).setValue(staffLength, metres);
}

} // namespace shell
