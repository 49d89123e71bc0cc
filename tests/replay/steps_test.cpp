// Every kind of step a session may hold, and sessions that cannot be read.

#include "dao/dao.h"
#include "exchange/road_schema.h"
#include "replay/play.h"
#include "replay/session.h"
#include "temp_folder.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>

namespace {

struct Steps : testing::Test {
    TempFolder world;

    QJsonObject play(const char* session) {
        return replay::play(replay::parseSession(session), QString::fromStdString(world.path()));
    }
    static std::string row(const QJsonObject& outcome, int row) {
        std::string line;
        for (const QJsonValue& text : outcome["rows"].toArray()[row - 1].toArray())
            line += text.toString().toStdString() + ",";
        return line;
    }
    static std::string compact(const QJsonValue& value) {
        return QJsonDocument(value.isArray() ? QJsonDocument(value.toArray())
                                             : QJsonDocument(value.toObject()))
            .toJson(QJsonDocument::Compact)
            .toStdString();
    }
};

TEST_F(Steps, KeysMouseClipboardAndRows) {
    const QJsonObject outcome = play(R"json({"steps": [
        {"preset": [["", "", "", "", "1.5", "", "", "", "100", "BM"], ["00-000", "", "0", "", "", "1.1"],
                    ["00-000", "2", "", "", "", "1.2"], ["00-000", "4", "", "", "", "1.3"]]},
        {"select": [4, 5, 3, 5]},
        {"keys": "+", "answers": [{"input": "0.1"}]},
        {"click": [2, 0]},
        {"keys": "{DEL}0.120{RIGHT}{KP/}{F12}{{}"},
        {"click": [2, 9]},
        {"keys": "{{}x}{BS}"},
        {"button": "cmdInss", "answers": [{"input": null}]},
        {"button": "cmdDels", "answers": [{"input": "1"}, {"box": "No"}]},
        {"clipboard": "7.5"},
        {"click": [1, 9]},
        {"keys": "{CTRL+V}"}
    ]})json");
    EXPECT_EQ(row(outcome, 1), ",,,,1.5,,,,100,BM7.5,");
    EXPECT_EQ(row(outcome, 2), "0-120,,0,,,1.1,,,,{x,");
    EXPECT_EQ(row(outcome, 3), "00-000,2,,,,1.3,,,,,");
    EXPECT_EQ(row(outcome, 4), "00-000,4,,,,1.4,,,,,");
    EXPECT_EQ(outcome["rows"].toArray().size(), 4);
    EXPECT_EQ(compact(outcome["cursor"]), "[1,9]");
    EXPECT_EQ(outcome["font"].toDouble(), 9.75);
    EXPECT_TRUE(outcome["changed"].toBool());
    EXPECT_EQ(outcome["caption"].toString(), "ZavroGrl-work/book.grl");
    const QJsonArray dialogs = outcome["dialogs"].toArray();
    ASSERT_EQ(dialogs.size(), 5);
    EXPECT_EQ(compact(dialogs[0]), R"({"default":"","input":"Enter Value to Add...","title":"Addition"})");
    EXPECT_EQ(dialogs[1].toObject()["message"].toString(),
              "Chainage must be 0-120 format i.e. '-' is used between Km and Meter");
    EXPECT_EQ(dialogs[4].toObject()["buttons"].toString(), "Yes No Cancel");
    EXPECT_EQ(dialogs[4].toObject()["title"].toString(), "Conferm!!!");
}

TEST_F(Steps, SettingsFilesAndMenus) {
    const QJsonObject outcome = play(R"json({"start": "fresh",
        "disk": {"APP/ZavroGRL.LVX": "0125\r\n",
                 "work/a.grl": {"Grl": [{"Chn": "01-000", "Oft": -2, "i": "1.5"}, {"Chn": "CP", "F": "2", "HI": "99.5"}]}},
        "default_folder": "road",
        "steps": [
        {"menu": "mnuOpen", "answers": [{"file": "work/a.grl"}]},
        {"button": "cmdOpen", "answers": [{"file": "work/none.grl"}]},
        {"menu": "mnuAbout"},
        {"settings": {"side": "Right", "chk005": 1, "oft": 1, "list": ["R04.00", "L02.50"]}},
        {"folder": "work"},
        {"folder": null},
        {"button": "cmdList"}, {"button": "chkAuto"}, {"button": "optBoth"}, {"keys": "5{ENTER}", "to": "txtOft"}, {"button": "cmdOK"},
        {"button": "cmdNew", "answers": [{"file": null}]},
        {"import": null}
    ]})json");
    EXPECT_EQ(outcome["settings"].toObject()["incr"].toString(), "25");
    EXPECT_EQ(outcome["settings"].toObject()["side"].toString(), "Right");
    EXPECT_EQ(compact(outcome["settings"].toObject()["list"]), R"(["L02.50","L05.00","R04.00","R05.00"])");
    EXPECT_EQ(outcome["settings"].toObject()["auto"].toInt(), 1);
    EXPECT_EQ(outcome["default_folder"].toString(), "work");
    EXPECT_EQ(outcome["hi"].toString(), "99.5");
    std::string kinds;
    for (const QJsonValue& dialog : outcome["dialogs"].toArray()) {
        const QJsonObject each = dialog.toObject();
        kinds += (each.contains("file")     ? "file "
                  : each.contains("window") ? each["window"].toString() + " "
                                            : "box ")
                     .toStdString();
    }
    EXPECT_EQ(kinds, "file file box frmAbout file box ");
    EXPECT_EQ(outcome["dialogs"].toArray().last().toObject()["message"].toString(),
              "1st Start Excel and Open Your Existing Field book Sheet");
    QStringList files;
    for (const QJsonValue& file : outcome["files"].toArray())
        files += file.toString();
    EXPECT_TRUE(files.contains("work/a.grl") && files.contains("APP/set.ini"))
        << files.join(' ').toStdString();
}

TEST_F(Steps, ImportAndAnotherStart) {
    const char* session = R"json({"steps": [
        {"import": [["Chainage", "Left"], ["01-000", 2.5, null, null, null, "1.1"]]},
        {"button": "cmdSave"}%1]})json";
    QJsonObject outcome = play(QString(session).arg(QString()).toUtf8().constData());
    EXPECT_EQ(row(outcome, 1), "01-000,2.5,,,,1.1,,,,,");
    EXPECT_EQ(outcome["menu"].toArray()[0].toString(), "work/book.grl");
    const TempFolder other;
    outcome =
        replay::play(replay::parseSession(
                         QString(session).arg(R"(, {"program_folder": true}, {"menu": "mnuX1"})").toUtf8()),
                     QString::fromStdString(other.path()));
    EXPECT_EQ(row(outcome, 1), "01-000,2.5,,,,1.1,,,,,");
    EXPECT_EQ(outcome["caption"].toString(), "ZavroGrl-work/book.grl");
}

TEST_F(Steps, BoxesThatAreLeftComputeAndFramesKeepNothingUnasked) {
    const QJsonObject outcome = play(R"json({
        "disk": {"work/book.grl": {"Grl": [{"Chn": "09-000"}]}, "work/old.mdb": {"LSect": [], "CSect": []}},
        "settings": {"list": ["L02.50"]},
        "steps": [
        {"preset": [["", "", "", "", "1.5", "", "", "", "100"], ["00-000", "", "0", "", "", "1.1"]]},
        {"frl": "work/old.mdb"},
        {"folder": "road"},
        {"transfer": {"width": "sides", "lw": 0, "gutter": "top", "topw": "0", "wdrn": "0.6", "leave": true}},
        {"transfer": {"lw": 3, "gutter": "top", "topw": "2", "wdrn": "0.6", "ddrn": "1", "leave": true}}
    ]})json");
    EXPECT_EQ(outcome["caption"].toString(), "ZavroGrl-work/book.grl");
    EXPECT_EQ(outcome["settings"].toObject()["oft"].toInt(), 0);
    EXPECT_EQ(compact(outcome["settings"].toObject()["list"]), R"(["L02.50"])");
    std::string messages;
    for (const QJsonValue& dialog : outcome["dialogs"].toArray())
        messages += dialog.toObject()["message"].toString().toStdString() + "|";
    EXPECT_EQ(messages, "|Gutter Top Width is invalid or Zero|Enter Left Roadwidth 1st ...|"
                        "road/book Folder is Created|");
    dao::Database road =
        dao::OpenDatabase(world.path() + "/road/book/Road.mdb", std::string(exchange::roadConnect));
    dao::Recordset lSect = road.OpenRecordset("LSect");
    ASSERT_EQ(lSect.RecordCount(), 1);
    lSect.MoveFirst();
    EXPECT_EQ(dao::toText(lSect.Fields("RGIS").value()), "0.7");
    EXPECT_EQ(dao::toText(lSect.Fields("LRW").value()), "3");
}

TEST_F(Steps, AfterExitKeysGoNowhere) {
    const QJsonObject outcome =
        play(R"json({"steps": [{"keys": "1"}, {"button": "cmdExit", "answers": [{"box": "No"}]},
                                                       {"keys": "2{ENTER}"}]})json");
    EXPECT_TRUE(outcome["ended"].toBool());
    EXPECT_EQ(row(outcome, 1), ",,,,,,,,1,,");
}

TEST(Session, RefusesWhatCannotBePlayed) {
    for (const char* json : {"", "[]", "{", R"({"start": "old"})", R"({"steps": [1]})", R"({"steps": [{}]})",
                             R"({"steps": [{"dance": 1}]})", R"({"steps": [{"keys": "{NOPE}"}]})",
                             R"({"steps": [{"keys": "{ENTER"}]})", R"({"steps": [{"click": [1]}]})",
                             R"({"steps": [{"keys": "1", "button": "cmdCal"}]})"})
        EXPECT_THROW((void)replay::parseSession(json), replay::SessionError) << json;
}

} // namespace
