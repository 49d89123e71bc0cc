#include "window.h"

#include "desktop/desktop.h"
#include "project/recovery.h"

namespace {

/// A spreadsheet that fails as nobody expects.
class Failing final : public spreadsheet::RunningSpreadsheet {
  public:
    std::function<void()> fail;
    std::vector<spreadsheet::Row> readSheet(const spreadsheet::GoOn&) override {
        fail();
        return {};
    }
};

class Edge : public MainWindow {
  protected:
    int copies() {
        int count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            count += entry.path().filename().string().starts_with(project::copyPrefix) ? 1 : 0;
        return count;
    }
};

TEST_F(Edge, WhatNobodyExpectsIsToldTheBookSetAsideAndTheProgramGoesOn) {
    const auto failing = std::make_shared<Failing>();
    spreadsheet = failing;
    open();
    struct Case {
        std::function<void()> fail;
        const char* told;
    };
    const Case cases[] = {
        {[] { throw std::bad_alloc(); }, "Import stopped: Out of memory. "},
        {[] { throw std::runtime_error("Page 7 is damaged."); }, "Import stopped: Page 7 is damaged. "},
        {[] { throw 7; }, "Import stopped: an unknown error. "},
    };
    moveTo(1, sheet::Remark);
    for (const Case& c : cases) {
        type("x");
        failing->fail = c.fail;
        choose("mnuImport");
        EXPECT_EQ(status(), std::string(c.told) + project::setAsideNote);
    }
    EXPECT_EQ(copies(), 3) << "a new one each time: none takes the place of an older one";
    EXPECT_EQ(cell(1, sheet::Remark), "xxx");
}

TEST_F(Edge, FramesHoldTheRowCommandsAndTheShortcuts) {
    copyTemplates();
    open();
    book().setRows(4);
    for (const auto& [opens, closes] : {std::pair("cmdList", "cmdOK"), {"cmdExport", "cmdCancel"}}) {
        click(opens);
        click("cmdIns");
        click("cmdDels");
        QTest::keyClick(window.get(), Qt::Key_Q, Qt::ControlModifier);
        EXPECT_EQ(book().Rows(), 4) << opens;
        EXPECT_EQ(ends, 0) << opens;
        click(closes);
    }
    QTest::keyClick(&window->grid(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(ends, 1) << "the key of a command is not heard by the grid and marks nothing";
}

} // namespace
