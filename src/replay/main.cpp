#include "play.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QJsonDocument>

#include <cstdio>

namespace {

// A session ends whatever happens in it; this is far beyond what any of them takes.
constexpr unsigned secondsToEnd = 600;

enum ExitStatus { Played = 0, NotPlayed = 1, NotRead = 2 };

int fail(int status, const QString& what) {
    std::fprintf(stderr, "zavrogrl-replay: %s\n", qPrintable(what));
    return status;
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        bool shown = false;
        for (int i = 1; i < argc; ++i)
            shown = shown || qstrcmp(argv[i], "--display") == 0;
        if (!shown) qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    alarm(secondsToEnd);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Plays a recorded session into the main window and prints how it ended.");
    parser.addHelpOption();
    parser.addPositionalArgument("SESSION.json", "The recorded session.");
    parser.addOption({"dir", "The folder that the session plays in.", "DIR"});
    parser.addOption({"pictures", "Where screenshots go.", "DIR2"});
    parser.addOption({"display", "Show the window instead of playing offscreen."});
    parser.process(application);
    if (parser.positionalArguments().size() != 1 || !parser.isSet("dir"))
        return fail(NotRead, "a session and --dir are needed");

    QFile file(parser.positionalArguments().first());
    if (!file.open(QIODevice::ReadOnly)) return fail(NotRead, file.fileName() + ": " + file.errorString());
    try {
        const replay::Session session = replay::parseSession(file.readAll());
        try {
            const QJsonObject outcome = replay::play(session, parser.value("dir"), parser.value("pictures"));
            std::fputs(QJsonDocument(outcome).toJson(QJsonDocument::Indented).constData(), stdout);
            return std::fflush(stdout) == 0 ? Played : NotPlayed;
        } catch (const replay::SessionError& error) {
            return fail(NotPlayed, QString::fromUtf8(error.what()));
        }
    } catch (const replay::SessionError& error) {
        return fail(NotRead, file.fileName() + ": " + QString::fromUtf8(error.what()));
    }
}
