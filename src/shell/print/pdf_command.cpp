#include "pdf_command.h"

#include "print_job.h"

#include "../text.h"

#include "basic/files.h"
#include "basic/numbers.h"
#include "survey/tolerance.h"

#include <QCommandLineParser>

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace shell {
namespace {

enum Status { Written = 0, Failed = 1, WrongUsage = 2 };

int refuse(Status status, const std::string& reason) {
    std::fputs(("zavrogrl: " + reason + '\n').c_str(), stderr);
    return status;
}

void addOptions(QCommandLineParser& parser) {
    parser.addOption(
        {QStringLiteral("pdf"), text("Write the printed book into this file."), QStringLiteral("OUT.pdf")});
    parser.addOption({QStringLiteral("paper"), text("a4 (at first) or letter."), QStringLiteral("paper"),
                      QStringLiteral("a4")});
    parser.addOption({QStringLiteral("across"), text("The paper lies across.")});
    parser.addOption({QStringLiteral("adjusted"), text("A column with the adjusted levels.")});
    parser.addOption({QStringLiteral("rise-and-fall"), text("Columns with rise and fall.")});
    parser.addOption({QStringLiteral("sections"), text("The long section and the cross-sections too.")});
    parser.addOption({QStringLiteral("by"), text("Adjust by setups (at first) or distance."),
                      QStringLiteral("method"), QStringLiteral("setups")});
    parser.addOption({QStringLiteral("allow"), text("What a run may miss: 12rK, 5rN, 2+5rK or none."),
                      QStringLiteral("rule")});
    parser.addOption({QStringLiteral("length"), text("Length of the run, for a book of one section."),
                      QStringLiteral("km")});
    parser.addPositionalArgument(QStringLiteral("BOOK"), text("Project or book in CSV form."));
}

/// The choice that the options name; an empty text, or what is wrong with them.
std::string take(const QCommandLineParser& options, PrintChoice& choice) {
    const QString paper = options.value(QStringLiteral("paper"));
    const QString by = options.value(QStringLiteral("by"));
    if (paper != QStringLiteral("a4") && paper != QStringLiteral("letter")) return "--paper: a4 or letter";
    if (by != QStringLiteral("setups") && by != QStringLiteral("distance")) return "--by: setups or distance";
    choice.letter = paper == QStringLiteral("letter");
    choice.across = options.isSet(QStringLiteral("across"));
    choice.adjusted = options.isSet(QStringLiteral("adjusted"));
    choice.riseAndFall = options.isSet(QStringLiteral("rise-and-fall"));
    choice.longSection = choice.crossSections = options.isSet(QStringLiteral("sections"));
    choice.closing.tolerance = survey::toleranceClasses()[survey::classAtFirst].tolerance;
    if (by == QStringLiteral("distance")) choice.closing.method = survey::Method::Distance;
    if (options.isSet(QStringLiteral("allow"))) {
        const auto rule = survey::toleranceFrom(toUtf8(options.value(QStringLiteral("allow"))));
        if (!rule) return "--allow: a rule such as 12rK, 5rN or none";
        choice.closing.tolerance = *rule;
    }
    if (options.isSet(QStringLiteral("length"))) {
        const std::string length = toUtf8(options.value(QStringLiteral("length")));
        if (!basic::isNumber(length) || !(basic::val(length) > 0)) return "--length: kilometres above 0";
        choice.closing.lengthsKm = {basic::val(length)};
    }
    return {};
}

} // namespace

bool wantsPdf(int argc, char** argv) {
    return std::any_of(argv + 1, argv + argc,
                       [](std::string_view word) { return word == "--pdf" || word.starts_with("--pdf="); });
}

int writePdfOf(const QStringList& arguments, const LoadBook& load) {
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments)) return refuse(WrongUsage, toUtf8(parser.errorText()));
    PrintChoice choice;
    if (const std::string fault = take(parser, choice); !fault.empty()) return refuse(WrongUsage, fault);
    if (parser.positionalArguments().size() != 1) return refuse(WrongUsage, "--pdf wants one book");
    const std::string path = toUtf8(parser.positionalArguments().front());
    const std::string out = toUtf8(parser.value(QStringLiteral("pdf")));

    project::Book book;
    if (!load(book, path)) return Failed;
    if (!choice.closing.lengthsKm.empty() && survey::Runs(book.MSFG, choice.closing).sections().size() > 1)
        return refuse(WrongUsage, "--length is for a book of one section");
    const std::string name = basic::baseName(path);
    const PrintJob job({book.MSFG, name.substr(0, name.find_last_of('.')), book.JobHeading}, choice);
    const PdfWritten written = writePdf(job, out, name, {});
    std::fputs(("zavrogrl: " + describe(written, job, out) + '\n').c_str(), stderr);
    return written.outcome == Printed::Done ? Written : Failed;
}

} // namespace shell
