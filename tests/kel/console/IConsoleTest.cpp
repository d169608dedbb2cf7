// SPDX-License-Identifier: BSD-3-Clause
#include "kel/console/IConsole.h"
#include "kel/console/IOutputWnd.h"
#include "kel/frame/IApplication.h"
#include "kel/output/IListViewOutput.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QTabWidget>

#include <gtest/gtest.h>

#include <string>

namespace {

class ConsoleTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_NE(InitializeKEL("console test"), nullptr);
        console.AddTabWnd("Output", 0);
        console.AddTabWnd("Events", 1);
        console.AddTabWnd("Twin", 1);
        ASSERT_TRUE(console.Create(nullptr));
        console.resize(800, 300);
    }
    void TearDown() override
    {
        GetKELapp()->SetConsole(nullptr);
        DestroyKEL();
    }
    IListViewOutput& List(int index) { return *console.GetTabWnd(index)->GetListCtrl(); }

    IConsole console;
};

TEST_F(ConsoleTest, TabsAreFoundByTheirIndexAndNumberedFromTheirIds)
{
    ASSERT_EQ(console.GetTabWindow()->count(), 3);
    EXPECT_EQ(console.GetTabWindow()->tabText(1), "Events");
    EXPECT_EQ(console.GetTabWnd(1)->GetTitle(), "Events") << "the first of two tabs of one index";
    EXPECT_EQ(console.GetTabWnd(7), nullptr);
    EXPECT_EQ(console.GetTabWnd(1)->property("controlId").toInt(), 33301);
    EXPECT_EQ(List(1).property("controlId").toInt(), 33311);
    EXPECT_EQ(console.GetTabWindow()->currentIndex(), 0);
    EXPECT_EQ(List(0).headerItem()->text(0), "Time");
    EXPECT_EQ(List(0).headerItem()->text(1), "Message");
    EXPECT_EQ(List(0).columnWidth(0), 125);
    EXPECT_EQ(List(0).columnWidth(1), 500);
}

TEST_F(ConsoleTest, LibraryMessagesReachTheFirstTabWithTheirSeverityIcon)
{
    GetKELapp()->InsertMessageConsole(KEL_SEVERITY_INFORMATION, "dropped: no console yet");
    EXPECT_EQ(List(0).topLevelItemCount(), 0);
    GetKELapp()->SetConsole(&console);
    GetKELapp()->InsertMessageConsole(KEL_SEVERITY_PROBLEM, "Configuration could not be read");
    ASSERT_EQ(List(0).topLevelItemCount(), 1);
    EXPECT_EQ(List(0).topLevelItem(0)->text(1), "Configuration could not be read");
    EXPECT_FALSE(List(0).topLevelItem(0)->icon(0).isNull());
    EXPECT_EQ(List(1).topLevelItemCount(), 0);
}

TEST_F(ConsoleTest, AWideMessageWidensItsColumnUntilTheTabIsCleared)
{
    IOutputWnd& output = *console.GetTabWnd(0);
    EXPECT_EQ(output.SetMessage(KEL_SEVERITY_DONE, std::string(300, 'W').c_str()), 1);
    EXPECT_GT(List(0).columnWidth(1), 500);
    const std::string huge(1 << 20, 'x');
    EXPECT_EQ(output.SetMessage(KEL_SEVERITY_DONE, huge.c_str()), 1) << "a megabyte is shown";
    EXPECT_EQ(List(0).topLevelItem(1)->text(1).size(), 1 << 20) << "kept whole; only what is drawn is cut";
    List(0).setCurrentItem(List(0).topLevelItem(1));
    List(0).CopyToClipboard();
    EXPECT_NE(QApplication::clipboard()->text().indexOf(QString(1 << 20, QLatin1Char('x'))), -1)
        << "Copy gives the whole message";
    console.GetTabWindow()->setCurrentIndex(0);
    EXPECT_TRUE(console.OnCommand(IConsole::kClearCommand));
    EXPECT_EQ(List(0).topLevelItemCount(), 0);
    EXPECT_EQ(List(0).columnWidth(1), 500);
    std::string cyrillic;
    for (int i = 0; i < 120; ++i)
        cyrillic += "\u0416";
    output.SetMessage(KEL_SEVERITY_DONE, cyrillic.c_str());
    EXPECT_EQ(List(0).columnWidth(1), List(0).fontMetrics().horizontalAdvance(QString::fromStdString(cyrillic)))
        << "beyond ASCII the text is measured as drawn";
}

// The time column keeps its designed 125 pixels at least, and is as wide as
// its time and icon need in the display font.
TEST_F(ConsoleTest, TheTimeColumnShowsTheWholeTime)
{
    EXPECT_EQ(List(0).columnWidth(0), IOutputWnd::kTimeWidth);
    console.GetTabWnd(0)->SetMessage(KEL_SEVERITY_DONE, "saved");
    EXPECT_GE(List(0).columnWidth(0), IOutputWnd::kTimeWidth);
    EXPECT_GE(List(0).columnWidth(0), IOutputWnd::NeededWidth(List(0), 0))
        << List(0).topLevelItem(0)->text(0).toStdString();
    const QFontMetrics metrics(List(0).font());
    EXPECT_GT(List(0).columnWidth(0), metrics.horizontalAdvance(List(0).topLevelItem(0)->text(0)) + 16);
}

TEST_F(ConsoleTest, AFullListLosesItsOldestTwoThousandAtOnce)
{
    IOutputWnd& output = *console.GetTabWnd(0);
    for (int i = 0; i < IOutputWnd::kMaxItems; ++i)
        output.SetMessage(KEL_SEVERITY_DONE, ("message " + std::to_string(i)).c_str());
    EXPECT_EQ(List(0).topLevelItemCount(), 10000) << "trimmed only when a message finds the list full";
    List(0).topLevelItem(1500)->setSelected(true);
    List(0).topLevelItem(5000)->setSelected(true);
    List(0).setCurrentItem(List(0).topLevelItem(9000), 0, QItemSelectionModel::NoUpdate);
    output.SetMessage(KEL_SEVERITY_DONE, "one more");
    EXPECT_EQ(List(0).topLevelItemCount(), 8001);
    EXPECT_EQ(List(0).topLevelItem(0)->text(1), "message 2000");
    EXPECT_EQ(List(0).topLevelItem(8000)->text(1), "one more");
    ASSERT_EQ(List(0).selectedItems().size(), 1) << "the operator's selection of what stays, stays";
    EXPECT_EQ(List(0).selectedItems()[0]->text(1), "message 5000");
    ASSERT_NE(List(0).currentItem(), nullptr);
    EXPECT_EQ(List(0).currentItem()->text(1), "message 9000");
    EXPECT_EQ(List(0).topLevelItem(8000)->data(0, IOutputWnd::kSeverityRole).toInt(), KEL_SEVERITY_DONE);
}

TEST_F(ConsoleTest, TheMenuCopiesTheSelectedMessages)
{
    QMenu menu;
    console.OnExtendContextMenu(menu);
    ASSERT_EQ(menu.actions().size(), 3);
    EXPECT_TRUE(menu.actions()[0]->isSeparator());
    EXPECT_EQ(menu.actions()[1]->text(), "Copy");
    EXPECT_EQ(menu.actions()[2]->text(), "Clear");

    IOutputWnd& output = *console.GetTabWnd(0);
    output.SetMessage(KEL_SEVERITY_DONE, "first");
    output.SetMessage(KEL_SEVERITY_PROBLEM, "second");
    List(0).topLevelItem(1)->setSelected(true);
    EXPECT_TRUE(console.OnCommand(IConsole::kCopyCommand));
    const QString copied = QApplication::clipboard()->text();
    EXPECT_TRUE(copied.endsWith("\tsecond\n")) << copied.toStdString();
    EXPECT_FALSE(console.OnCommand(1));
}

}  // namespace
