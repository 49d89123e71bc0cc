#include "print_job.h"

#include "../text.h"

#include "basic/files.h"
#include "basic/runtime_error.h"
#include "drawing/figures.h"
#include "sheet/book.h"
#include "survey/sections.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QRawFont>
#include <QTextLayout>

#include <algorithm>
#include <optional>

namespace shell {
namespace {

using drawing::Layer;

constexpr int resolution = 1200; // dots an inch of a PDF page, so that a line is true to 0.02 mm

QFont paperFont() {
    return QFont(QStringLiteral("DejaVu Sans"));
}

ListLook paperLook() {
    ListLook look{{}, {}, paperFont()};
    const auto set = [&look](Layer layer, int grey, qreal width) {
        look.ink[static_cast<std::size_t>(layer)] = QColor(grey, grey, grey);
        look.width[static_cast<std::size_t>(layer)] = width;
    };
    set(Layer::Ground, 0, 0.35);
    set(Layer::Grid, 120, 0.1);
    set(Layer::Text, 0, 0.1);
    set(Layer::Frame, 0, 0.2);
    set(Layer::Centre, 60, 0.15);
    set(Layer::Neighbour, 150, 0.1);
    return look;
}

/// Measures texts in letters of a height of 1.
std::function<double(const std::string&)> measure() {
    QFont font = paperFont();
    font.setPixelSize(1000);
    const QFontMetricsF metrics(font);
    return [metrics](const std::string& words) {
        return metrics.horizontalAdvance(fromUtf8(words)) / metrics.capHeight();
    };
}

bool isPlain(const std::string& words) {
    return std::ranges::all_of(words, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

int signsMissing(const QString& words) {
    QTextLayout layout(words, paperFont());
    layout.beginLayout();
    layout.createLine().setLineWidth(1e6);
    layout.endLayout();
    int missing = 0;
    for (const QGlyphRun& run : layout.glyphRuns())
        missing += int(run.glyphIndexes().count(0));
    return missing;
}

std::string startMark(const sheet::Grid& grid) {
    const std::string& level = grid.Text(1, sheet::RLevel);
    const std::string& remark = grid.Text(1, sheet::Remark);
    return remark + (remark.empty() || level.empty() ? "" : ", ") + level;
}

struct FieldRow {
    const char* label;
    const char* key;
};

/// The fields of the heading in the order of the form, two a line.
constexpr FieldRow fields[] = {{"Work", "work"},
                               {"Road", "road"},
                               {"From", "from"},
                               {"To", "to"},
                               {"Date", "date"},
                               {"Surveyor", "surveyor"},
                               {"Instrument", "instrument"},
                               {"Booker", "booker"},
                               {"Instrument no.", "number"},
                               {"Staff", "staff"},
                               {"Weather", "weather"},
                               {"Start mark", "mark"}};

/// What Qt's PDF writer writes goes to a file in the making. The writer passes over errors of its device, so
/// that the first one is kept here.
class ReplacementDevice final : public QIODevice {
  public:
    explicit ReplacementDevice(files::Replacement& file) : m_file(file) {}

    [[nodiscard]] bool isSequential() const override { return true; }
    void raiseFailure() const {
        if (m_failure) throw files::Error(*m_failure);
    }

  protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* bytes, qint64 count) override {
        if (m_failure) return -1;
        try {
            m_file.write({bytes, static_cast<std::size_t>(count)});
            return count;
        } catch (const files::Error& error) {
            m_failure = error;
            return -1;
        }
    }

  private:
    files::Replacement& m_file;
    std::optional<files::Error> m_failure;
};

} // namespace

drawing::Paper PrintChoice::paper() const {
    const drawing::Paper upright = letter ? drawing::letter : drawing::a4;
    return across ? upright.across() : upright;
}

QPageLayout PrintChoice::layout() const {
    return {QPageSize(letter ? QPageSize::Letter : QPageSize::A4),
            across ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF()};
}

PrintJob::PrintJob(const PrintedBook& book, const PrintChoice& choice)
    : m_choice(choice), m_look(paperLook()) {
    std::vector<HeadingField> heading;
    for (const FieldRow& field : fields)
        heading.push_back({field.label, book.heading.text(field.key)});
    const auto value = [&heading](const char* label) -> std::string& {
        return std::ranges::find(heading, label, &HeadingField::label)->value;
    };
    survey::Sections sections(book.grid);
    const auto points = sections.points();
    if (!points.empty() && value("From").empty() && value("To").empty()) {
        value("From") = drawing::chainageText(points.front().chainage);
        value("To") = drawing::chainageText(points.back().chainage);
    }
    if (value("Start mark").empty()) value("Start mark") = startMark(book.grid);
    const drawing::StripTexts strip{value("Work"), value("Road").empty() ? book.name : value("Road")};
    if (value("Road").empty()) value("Road") = book.name;
    if (choice.book)
        m_parts.push_back(
            std::make_unique<BookSheets>(book.grid,
                                         BookPrint{choice.paper(), choice.adjusted, choice.riseAndFall,
                                                   choice.closing, std::move(heading)},
                                         measure()));
    addSections(book, strip);
}

void PrintJob::addSections(const PrintedBook& book, const drawing::StripTexts& strip) {
    if (!m_choice.longSection && !m_choice.crossSections) return;
    survey::Sections sections(book.grid);
    if (sections.points().empty()) {
        m_note = sections.rowsWithoutLevel() > 0
                     ? "Cal first: the readings have no levels"
                     : "No sections: no row has a chainage, an offset and a level";
        return;
    }
    if (m_choice.longSection) {
        std::vector<drawing::GroundPlace> ground;
        for (const survey::GroundPoint& point : sections.longSection())
            ground.push_back({point.chainage, point.level});
        auto sheets = std::make_unique<drawing::LongSheets>(std::move(ground), m_choice.longScale,
                                                            m_choice.paper(), strip);
        if (sheets->scale() != m_choice.longScale)
            m_note = "The ground rises by more than a sheet: the long section is drawn at " +
                     drawing::scaleText(sheets->scale());
        m_parts.push_back(std::move(sheets));
    }
    if (!m_choice.crossSections) return;
    std::vector<drawing::CrossSection> cross;
    for (const survey::GroundPoint& point : sections.points()) {
        if (cross.empty() || cross.back().chainage != point.chainage) cross.push_back({point.chainage, {}});
        cross.back().ground.push_back({point.offset, point.level});
    }
    auto sheets = std::make_unique<drawing::CrossSheets>(
        std::move(cross), drawing::Scale{m_choice.crossScale, m_choice.crossScale}, m_choice.paper(), strip);
    if (sheets->shrunk() > 0)
        m_note += (m_note.empty() ? "" : "; ") + std::to_string(sheets->shrunk()) +
                  " cross-sections are larger than the paper and drawn at the smaller scale in their titles";
    m_parts.push_back(std::move(sheets));
}

int PrintJob::count() const {
    int pages = 0;
    for (const auto& part : m_parts)
        pages += part->count();
    return pages;
}

void PrintJob::countSigns(const drawing::DisplayList& list) const {
    for (const drawing::Text& each : list.texts)
        if (!isPlain(each.text)) m_withoutSign += signsMissing(fromUtf8(each.text));
}

void PrintJob::paint(QPainter& painter, int page, double perMillimetre) const {
    for (const auto& part : m_parts) {
        if (page >= part->count()) {
            page -= part->count();
            continue;
        }
        const drawing::DisplayList list = part->sheet(page);
        countSigns(list);
        ListLook look = m_look;
        for (qreal& width : look.width)
            width *= perMillimetre;
        ListPainter paint(painter, look, {0, m_choice.paper().height * perMillimetre}, perMillimetre);
        paint.lines(list);
        paint.texts(list);
        return;
    }
}

Printed PrintJob::paintAll(QPagedPaintDevice& device, int first, int last,
                           const std::function<bool(int done)>& goOn) const {
    QPainter painter;
    if (!painter.begin(&device)) return Printed::Failed;
    const double perMillimetre = device.logicalDpiX() / 25.4;
    for (int page = first; page <= last; ++page) {
        if (page > first && !device.newPage()) return Printed::Failed;
        paint(painter, page, perMillimetre);
        if (goOn && !goOn(page - first + 1)) return Printed::Cancelled;
    }
    return painter.end() ? Printed::Done : Printed::Failed;
}

Printed printOn(QPrinter& printer, const PrintJob& job, int first, int last,
                const std::function<bool(int done)>& goOn) {
    bool cancelled = false;
    const Printed printed = job.paintAll(printer, first, last, [&](int done) {
        cancelled = goOn && !goOn(done);
        if (cancelled) printer.abort();
        // A printer that has given up takes pages on and prints none.
        return !cancelled && printer.printerState() != QPrinter::Aborted;
    });
    if (cancelled) return Printed::Cancelled;
    const QPrinter::PrinterState state = printer.printerState();
    const bool gaveUp = state == QPrinter::Error || state == QPrinter::Aborted;
    return gaveUp || printed != Printed::Done ? Printed::Failed : Printed::Done;
}

std::string describePrint(Printed printed, int pages) {
    if (printed == Printed::Cancelled) return "Printing cancelled";
    if (printed == Printed::Failed) return "The printer refused the pages";
    return std::to_string(pages) + (pages == 1 ? " page" : " pages") + " sent to the printer";
}

PdfWritten writePdf(const PrintJob& job, const std::string& path, const std::string& title,
                    const std::function<bool(int done)>& goOn) {
    if (job.count() == 0) return {Printed::Failed, job.note().empty() ? "nothing to print" : job.note()};
    const std::string place = basic::nativePath(path);
    const auto write = [&]() -> PdfWritten {
        files::Replacement file(place);
        ReplacementDevice device(file);
        device.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        Printed outcome;
        {
            QPdfWriter writer(&device);
            writer.setResolution(resolution);
            writer.setPageLayout(job.choice().layout());
            writer.setTitle(fromUtf8(title));
            writer.setCreator(QStringLiteral("ZavroGrl"));
            outcome = job.paintAll(writer, 0, job.count() - 1, goOn);
        }
        if (outcome == Printed::Cancelled) return {outcome, {}};
        device.raiseFailure();
        if (outcome == Printed::Done) file.commit();
        return {outcome, outcome == Printed::Done ? "" : "a page could not be drawn"};
    };
    try {
        return basic::during(basic::FileAction::OpenForOutput, write, place);
    } catch (const basic::RuntimeError& error) {
        return {Printed::Failed, error.told(place)};
    }
}

std::string describe(const PdfWritten& written, const PrintJob& job, const std::string& path) {
    if (written.outcome == Printed::Cancelled) return "Cancelled; " + path + " is as it was";
    if (written.outcome == Printed::Failed) return path + " is not written: " + written.reason;
    std::string words =
        std::to_string(job.count()) + (job.count() == 1 ? " page" : " pages") + " written to " + path;
    if (!job.note().empty()) words += "; " + job.note();
    if (job.withoutSign() > 0)
        words += "; " + std::to_string(job.withoutSign()) +
                 " characters have no sign in any font that is installed";
    return words;
}

} // namespace shell
