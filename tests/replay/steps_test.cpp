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

    QJsonObject play(const QByteArray& session) {
        return replay::play(replay::parseSession(session), QString::fromStdString(world.path()));
    }
    /// An object or a list as one line.
    static std::string line(const QJsonValue& value) {
        const QJsonDocument text =
            value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
        return text.toJson(QJsonDocument::Compact).toStdString();
    }
    /// The dialogs of a session: the message of a box, else what kind it was.
    static std::string dialogs(const QJsonObject& outcome) {
        std::string all;
        for (const QJsonValue& dialog : outcome["dialogs"].toArray()) {
            const QJsonObject each = dialog.toObject();
            for (const char* kind : {"message", "input", "file", "window"})
                if (each.contains(kind)) all += each[kind].toString().toStdString() + "|";
        }
        return all;
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
    EXPECT_EQ(line(outcome["rows"]), R"([["","","","","1.5","","","","100","BM7.5"],)"
                                     R"(["0-120","","0","","","1.1","","","","{x"],)"
                                     R"(["00-000","2","","","","1.3","","","",""],)"
                                     R"(["00-000","4","","","","1.4","","","",""]])");
    EXPECT_EQ(line(outcome["cursor"]), "[1,9]");
    EXPECT_EQ(outcome["font"].toDouble(), 9.75);
    EXPECT_TRUE(outcome["changed"].toBool());
    EXPECT_EQ(outcome["caption"].toString(), "ZavroGrl-work/book.grl");
    const QJsonArray boxes = outcome["dialogs"].toArray();
    ASSERT_EQ(boxes.size(), 5);
    EXPECT_EQ(line(boxes[0]), R"({"default":"","input":"Enter Value to Add...","title":"Addition"})");
    EXPECT_EQ(boxes[1].toObject()["message"].toString(),
              "Chainage must be 0-120 format i.e. '-' is used between Km and Meter");
    EXPECT_EQ(boxes[4].toObject()["buttons"].toString(), "Yes No Cancel");
    EXPECT_EQ(boxes[4].toObject()["title"].toString(), "Conferm!!!");
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
    const QJsonObject settings = outcome["settings"].toObject();
    EXPECT_EQ(settings["incr"].toString() + settings["side"].toString(), "25Right");
    EXPECT_EQ(line(settings["list"]), R"(["L02.50","L05.00","R04.00","R05.00"])");
    EXPECT_EQ(settings["auto"].toInt(), 1);
    EXPECT_EQ(outcome["default_folder"].toString(), "work");
    EXPECT_EQ(outcome["hi"].toString(), "99.5");
    const std::string said = dialogs(outcome);
    EXPECT_EQ(said.substr(0, 15), "open|open|3024 ");
    EXPECT_EQ(said.substr(said.find("|frmAbout")),
              "|frmAbout|save|1st Start Excel and Open Your Existing Field book Sheet|");
    const std::string files = line(outcome["files"]);
    for (const char* file : {"\"work/a.grl\"", "\"APP/set.ini\""})
        EXPECT_NE(files.find(file), std::string::npos) << files;
}

TEST_F(Steps, ImportAndAnotherStart) {
    const QByteArray session = R"json({"steps": [
        {"import": [["Chainage", "Left"], ["01-000", 2.5, null, null, null, "1.1"]]},
        {"button": "cmdSave"}, {"program_folder": true}, {"menu": "mnuX1"}]})json";
    const QJsonObject outcome = play(session);
    EXPECT_EQ(line(outcome["rows"].toArray()[0]), R"(["01-000","2.5","","","","1.1","","","",""])");
    EXPECT_EQ(outcome["menu"].toArray()[0].toString(), "work/book.grl");
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
    EXPECT_EQ(line(outcome["settings"].toObject()["list"]), R"(["L02.50"])");
    EXPECT_EQ(dialogs(outcome), "open|Gutter Top Width is invalid or Zero|Enter Left Roadwidth 1st ...|"
                                "road/book Folder is Created|");
    dao::Database road =
        dao::OpenDatabase(world.path() + "/road/book/Road.mdb", std::string(exchange::roadConnect));
    dao::Recordset lSect = road.OpenRecordset("LSect");
    EXPECT_EQ(dao::toText(lSect.Fields("RGIS").value()) + " " + dao::toText(lSect.Fields("LRW").value()),
              "0.7 3");
}

TEST_F(Steps, ShortcutsAreTheWindowsOwn) {
    const QJsonObject outcome = play(R"json({"steps": [
        {"preset": [["00-000", "", "0", "", "", "1.5"], ["00-010", "", "0", "", "", "2.5"]]},
        {"keys": "{CTRL+F}"}, {"keys": "2.5{ENTER}", "to": "txtFind"}, {"keys": "{CTRL+X}"},
        {"keys": "{CTRL+G}"}, {"keys": "0{ENTER}", "to": "txtGoto"}, {"keys": "{RIGHT}{F4}"}
    ]})json");
    EXPECT_EQ(line(outcome["rows"]),
              R"([["00-000","","0","","","1.5","","","",""],["00-010","","0","","","","","","",""]])");
    EXPECT_EQ(line(outcome["cursor"]), "[1,1]");
    EXPECT_EQ(outcome["status"].toString(), R"("2.5" is not in the book.)");
}

TEST_F(Steps, AfterExitKeysGoNowhere) {
    const QJsonObject outcome =
        play(R"json({"steps": [{"keys": "1"}, {"button": "cmdExit", "answers": [{"box": "No"}]},
                                                       {"keys": "2{ENTER}"}]})json");
    EXPECT_TRUE(outcome["ended"].toBool());
    EXPECT_EQ(line(outcome["rows"]), R"([["","","","","","","","","1",""]])");
}

TEST(Session, RefusesWhatCannotBePlayed) {
    for (const char* json : {"", "[]", "{", R"({"start": "old"})", R"({"steps": [1]})", R"({"steps": [{}]})",
                             R"({"steps": [{"dance": 1}]})", R"({"steps": [{"keys": "{NOPE}"}]})",
                             R"({"steps": [{"keys": "{ENTER"}]})", R"({"steps": [{"click": [1]}]})",
                             R"({"steps": [{"keys": "1", "button": "cmdCal"}]})",
                             R"({"disk": {"/etc/x": ""}})", R"({"disk": {"work/../../x": ""}})"})
        EXPECT_THROW((void)replay::parseSession(json), replay::SessionError) << json;
}

} // namespace
