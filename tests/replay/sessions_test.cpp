// The recorded sessions of examples/ played into the real window: what is keyed there is what the code
// without a window makes of the same book.

#include "exchange/book_csv.h"
#include "project/book.h"
#include "replay/play.h"
#include "replay/session.h"
#include "scripted_desktop.h"
#include "sheet/reduction.h"
#include "temp_folder.h"

#include "basic/files.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QImage>
#include <QJsonArray>

namespace {

QJsonObject play(const std::string& name, const TempFolder& world) {
    const std::string json = basic::readFile(std::string(EXAMPLES) + "/" + name + ".json");
    return replay::play(replay::parseSession(QByteArray::fromStdString(json)),
                        QString::fromStdString(world.path()));
}

std::vector<std::string> textsOf(const QJsonValue& list) {
    std::vector<std::string> texts;
    for (const QJsonValue& text : list.toArray())
        texts.push_back(text.toString().toStdString());
    return texts;
}

TEST(Sessions, KeyedBooksAreTheReducedBooks) {
    for (const char* name : {"gsi-pv16", "tramo1-derived"}) {
        const TempFolder world;
        const QJsonObject outcome = play(name, world);
        project::Book book;
        ScriptedDesktop desktop;
        exchange::readBook(book.MSFG, basic::readFile(std::string(EXAMPLES) + "/" + name + ".csv"));
        sheet::reduceLevels(book, desktop);
        ASSERT_EQ(outcome["rows"].toArray().size(), book.MSFG.Rows() - 1) << name;
        for (int row = 1; row < book.MSFG.Rows(); ++row) {
            std::vector<std::string> expected;
            for (int col = 0; col < book.MSFG.Cols(); ++col)
                expected.push_back(book.MSFG.Text(row, col));
            EXPECT_EQ(textsOf(outcome["rows"].toArray()[row - 1]), expected) << name << " row " << row;
        }
        EXPECT_TRUE(outcome["dialogs"].toArray().isEmpty()) << name;
        EXPECT_TRUE(outcome["status"].toString().startsWith("Sums agree: ")) << name;
    }
}

TEST(Sessions, TheDemoEndsWithARoad) {
    const TempFolder world;
    const QJsonObject outcome = play("demo", world);
    std::vector<std::string> said;
    for (const QJsonValue& dialog : outcome["dialogs"].toArray())
        said.push_back(dialog.toObject()["message"].toString().toStdString());
    EXPECT_THAT(said, testing::ElementsAre("work/bookcp.csv File is Created", "work/book.csv File is Created",
                                           "Road/book Folder is Created"));
    EXPECT_THAT(textsOf(outcome["files"]),
                testing::IsSupersetOf({"Road/book/Road.mdb", "Road/book/Road.dwg", "Road/book/LRod.dwg",
                                       "Road/book/book.grl", "work/book.grl", "work/book.grl.bak"}));
    // A picture after each named step, and of what the step opened and closed.
    for (const char* picture : {"demo-2", "demo-7-list", "demo-7", "demo-10-frame", "demo-10", "demo-14"})
        EXPECT_FALSE(QImage(QString::fromStdString(world / (std::string(picture) + ".png"))).isNull())
            << picture;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
