// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/frame/IApplication.h"
#include "kel/output/IListViewOutput.h"
#include "kel/output/IOutputList.h"
#include "kel/output/IOutputText.h"
#include "kel/output/KELCallReply.h"
#include "kel/output/KELEventLists.h"
#include "kel/output/KELListModel.h"
#include "zed/value/TTimeValues.h"
#include "support/ContextFixture.h"
#include "support/ShippedNetwork.h"
#include "support/TempDir.h"
#include "zed/call/TCall.h"
#include "zed/value/TEnumeration.h"
#include "zed/value/TEventReport.h"
#include "zed/value/TScalarValues.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QTabWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;

constexpr unsigned int kShow = 1;
constexpr unsigned int kStatus = 2;
constexpr unsigned int kLinkStateChanged = 2;

class OutputListTest : public ContextFixture {
protected:
    // Every router's Status attributes, one row per router.
    std::unique_ptr<IOutputList> RouterList()
    {
        auto list = std::make_unique<IOutputList>(context);
        list->CreatePresentationAttr("Routers", TEntitySpec("Network core Router *"), kStatus);
        TSyncCall call(TEntitySpec("Network core Router *"), kShow);
        call.GetRequest().Add(
            TEnumeration(std::static_pointer_cast<const TDictTypeEnumeration>(Dictionary().FindType("PartitionChoice")),
                         static_cast<int>(kStatus), 1));
        call.Execute();
        KELCallReplyList replies;
        replies.AddAll(call);
        for (const auto& reply : replies.Replies())
            list->ProcessReply(*reply);
        return list;
    }
    static std::vector<QString> Titles(const KELListModel& model)
    {
        std::vector<QString> titles;
        for (int c = 0; c < model.columnCount(); ++c)
            titles.push_back(model.headerData(c, Qt::Horizontal, Qt::DisplayRole).toString());
        return titles;
    }
};

TEST_F(OutputListTest, AWildcardShowGivesARowPerEntityUnderAColumnPerAttribute)
{
    auto list = RouterList();
    const KELListModel& model = *list->GetModel();
    ASSERT_GE(model.rowCount(), 2);
    const std::vector<QString> titles = Titles(model);
    EXPECT_EQ(titles.front(), "Entity");
    EXPECT_EQ(titles.at(1), "State");
    EXPECT_EQ(model.Cell(0, 0), "Network core Router r1");
    EXPECT_EQ(model.Cell(0, 1), "Up");
    EXPECT_EQ(model.Cell(1, 0), "Network core Router r2");
    EXPECT_EQ(list->GetSettingSection(), "(1,2) - 2 - 3");
}

TEST_F(OutputListTest, EventReportsAddARowEachAndAbsentArgumentsAreNotReturned)
{
    constexpr std::int64_t kReported = 1795615509000;  // 11/25/2026 14:05:09
    IOutputList list(context);
    list.CreatePresentation("Events", TEntitySpec("Network core Router r1 Interface eth0"), kLinkStateChanged);
    for (const char* reason : {static_cast<const char*>("cable\npulled"), static_cast<const char*>(nullptr)}) {
        TEventReport report(kLinkStateChanged, 0);
        report.SetEntity(TEntitySpec("Network core Router r1 Interface eth1"));
        report.SetTime(kReported);
        if (reason)
            report.Add(TLatin1String(reason, 2));
        TReply reply(ZED_REPLY_RESPONSE, kLinkStateChanged);
        reply.Add(report);
        list.ProcessReply(reply);
    }
    const KELListModel& model = *list.GetModel();
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_THAT(Titles(model), ElementsAre("Entity", "State", "Reason", "Time"));
    EXPECT_EQ(list.header()->visualIndex(3), 1) << "when it came, next to whom it came from";
    EXPECT_EQ(model.Cell(1, 3), QString::fromStdString(TAbsTime::Format(kReported)));
    EXPECT_EQ(model.Cell(0, 0), "Network core Router r1 Interface eth1") << "the report's own entity";
    EXPECT_EQ(model.Cell(0, 1), "<not returned>");
    EXPECT_EQ(model.Cell(0, 2), "cable\\npulled") << "a cell is one line: a line end shows escaped";
    EXPECT_EQ(model.Cell(1, 2), "<not returned>");
}

TEST_F(OutputListTest, EventListsTakeABatchIntoOneListPerKindBoundedAndTitledWithTheirCounts)
{
    KELEventLists events(Dictionary(), context);
    events.SetMostRows(20);
    std::vector<TCallResult> batch;
    for (int i = 0; i < 50; ++i) {
        TEventReport report(kLinkStateChanged, 0);
        report.SetEntity(TEntitySpec("Network core Router r1 Interface eth" + std::to_string(i % 3)));
        TReply reply(ZED_REPLY_RESPONSE, kLinkStateChanged);
        reply.Add(report);
        TCallResult result;
        result.reply = std::move(reply);
        batch.push_back(std::move(result));
    }
    events.Add(batch);
    ASSERT_EQ(events.GetTabs()->count(), 1);
    IOutputList* list = events.FindList(events.GetTabs()->widget(0)->accessibleName());
    ASSERT_NE(list, nullptr);
    const int kept = list->GetModel()->rowCount();
    EXPECT_LE(kept, 20);
    EXPECT_EQ(events.GetTabs()->tabText(0), events.GetTabs()->widget(0)->accessibleName() + " (" + QString::number(kept)
                                                + ", " + QString::number(50 - kept) + " older dropped)");

    EXPECT_TRUE(events.findChild<QLabel*>()->isHidden()) << "nothing refused, nothing said";
    events.SetSummary("2 notifications refused (the community is not the agent's: 2)");
    EXPECT_FALSE(events.findChild<QLabel*>()->isHidden());
    events.SetSummary({});
    EXPECT_TRUE(events.findChild<QLabel*>()->isHidden());
}

TEST(ListModel, ABoundedListDropsItsOldestRowsATenthAtATimeAndCountsThem)
{
    KELListModel model;
    model.AddColumn("N");
    model.SetMostRows(100);
    for (int i = 0; i < 250; ++i)
        model.SetCell(model.AddRow(), 0, QString::number(i));
    EXPECT_LE(model.rowCount(), 100);
    EXPECT_GE(model.rowCount(), 90);
    EXPECT_EQ(model.GetDroppedRows() + static_cast<std::size_t>(model.rowCount()), 250u);
    EXPECT_EQ(model.Cell(model.rowCount() - 1, 0), "249") << "the newest stays";
    EXPECT_EQ(model.Cell(0, 0), QString::number(model.GetDroppedRows())) << "the oldest went, in order";
}

TEST_F(OutputListTest, ColumnOrderHiddenColumnsAndWidthsAreKeptInTheListsSection)
{
    {
        auto list = RouterList();
        list->header()->moveSection(3, 1);
        list->setColumnHidden(2, true);
        list->setColumnWidth(1, 140);
        list->SaveColumnSettings();
    }
    std::string positions;
    context->GetConfigString("(1,2) - 2 - 3", ".Position", positions, "", 1);
    ASSERT_FALSE(positions.empty());
    auto again = RouterList();
    EXPECT_EQ(again->header()->logicalIndex(1), 3) << positions;
    EXPECT_TRUE(again->isColumnHidden(2));
    EXPECT_EQ(again->columnWidth(1), 140);
}

TEST_F(OutputListTest, TheModelSortsIgnoringCaseAndKeepsEqualRowsInOrder)
{
    KELListModel model;
    model.AddColumn("A");
    model.AddColumn("B");
    const char* rows[][2] = {{"beta", "1"}, {"Alpha", "2"}, {"alpha", "3"}, {"Gamma", "4"}};
    for (const auto& row : rows) {
        const int r = model.AddRow();
        model.SetCell(r, 0, row[0]);
        model.SetCell(r, 1, row[1]);
    }
    model.sort(0);
    std::vector<QString> order;
    for (int r = 0; r < model.rowCount(); ++r)
        order.push_back(model.Cell(r, 1));
    EXPECT_THAT(order, ElementsAre("2", "3", "1", "4"));
}

TEST_F(OutputListTest, TheTextOutputShowsALinePerValue)
{
    IOutputText text(context);
    text.CreatePresentation("Test", TEntitySpec("Network core Router r1 Interface eth0"), 10, ZED_DICT_RESPONSE, 1);
    EXPECT_EQ(text.Text(), "Sent = <not returned>\nReceived = <not returned>\nRound Trip = <not returned>\n");
    TReply reply(ZED_REPLY_RESPONSE, 1);
    reply.Add(TUnsigned16(3, 1));
    text.ProcessReply(reply);
    EXPECT_EQ(text.Text(), "Sent = 3\nReceived = <not returned>\nRound Trip = <not returned>\n");
}

class ListViewOutputTest : public OutputListTest {
protected:
    void Fill(IListViewOutput& view)
    {
        view.setColumnCount(4);
        const char* rows[][4] = {
            {"b", "2", "x", "y"}, {"C", "3", "x", "y"}, {"a", "1", "x", "y"}, {"B", "4", "x", "y"}};
        for (const auto& row : rows) {
            QTreeWidgetItem* item = view.AddRow(row[0], row[1]);
            item->setText(2, row[2]);
            item->setText(3, row[3]);
        }
    }
};

TEST_F(ListViewOutputTest, CopyTakesTheFirstTwoColumnsOfTheSelectedRowsInDisplayOrder)
{
    IListViewOutput view;
    Fill(view);
    QApplication::clipboard()->setText("untouched");
    EXPECT_EQ(view.CopyToClipboard(), 0);
    EXPECT_EQ(QApplication::clipboard()->text(), "untouched") << "no selection, no copy";
    view.topLevelItem(3)->setSelected(true);
    view.topLevelItem(0)->setSelected(true);
    view.topLevelItem(1)->setSelected(true);
    EXPECT_EQ(view.CopyToClipboard(), 3);
    EXPECT_EQ(QApplication::clipboard()->text(), "b\t2\nC\t3\nB\t4\n");
}

TEST_F(ListViewOutputTest, AColumnClickSortsAscendingEveryTimeAndRenumbersTheItems)
{
    IListViewOutput view;
    Fill(view);
    std::vector<QString> first, second;
    view.OnColumnclick(0);
    for (int i = 0; i < view.topLevelItemCount(); ++i)
        first.push_back(view.topLevelItem(i)->text(1));
    view.OnColumnclick(0);
    for (int i = 0; i < view.topLevelItemCount(); ++i) {
        second.push_back(view.topLevelItem(i)->text(1));
        EXPECT_EQ(view.topLevelItem(i)->data(0, Qt::UserRole).toInt(), i);
    }
    EXPECT_EQ(first, second) << "a second click sorts the same way";
    EXPECT_EQ(first.front(), "1");
    EXPECT_EQ(first.back(), "3");
}

}  // namespace
