// SPDX-License-Identifier: BSD-3-Clause
// The host kit's parts on their own, as a host other than kelbrowser
// assembles them: documents with calls of their own, the picks, the outputs.

#include "kel/console/KELDocumentArea.h"
#include "kel/console/KELEntityPicks.h"
#include "kel/forms/IInputForm.h"
#include "kel/output/IOutputList.h"
#include "kel/output/KELOutputPanel.h"
#include "support/ContextFixture.h"
#include "support/HeldModule.h"
#include "zed/call/TCallLoop.h"
#include "zed/call/ZedInstances.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

const char* const kInterface = "Network core Router r1 Interface eth0";

class MessageLog : public IMessageConsole {
public:
    bool HasWindow() const override { return true; }
    void SetMessage(KEL_T_Severity severity, const std::string& text) override
    {
        lines.push_back((severity == KEL_SEVERITY_PROBLEM ? "problem: " : "") + text);
    }
    std::vector<std::string> lines;
};

class HostKitTest : public ContextFixture {
protected:
    bool Answered() { return ZEDGetCallLoop().RunUntilIdle(std::chrono::seconds(5)); }
    MessageLog console;
};

// Two documents wait for their answers side by side; each answer is kept by
// its own document, and only the document shown tells the outputs.
TEST_F(HostKitTest, EachDocumentHasItsOwnCallsAndOnlyTheShownOneReachesTheOutputs)
{
    auto module = std::make_shared<HeldModule>();
    ZEDGetApplication()->RegisterModule(1, module);
    KELDocumentArea area(Dictionary(), context, &console);
    QSignalSpy answered(&area, &KELDocumentArea::Answered);
    ASSERT_TRUE(area.OpenInputForm(kInterface, "Test"));
    KELHostDocument* test = area.Shown();
    ASSERT_TRUE(area.Send());
    EXPECT_FALSE(area.Send()) << "one call at a time per document";
    EXPECT_EQ(test->Calls().GetWaitingFor(), std::string("Test to ") + kInterface);

    ASSERT_TRUE(area.OpenInputForm("Network core Router r1 Interface eth1", "Test"));
    EXPECT_FALSE(area.Shown()->Calls().IsBusy());
    EXPECT_TRUE(area.Send()) << "another document is not held up by the first";

    module->Release();
    ASSERT_TRUE(Answered());
    EXPECT_EQ(answered.count(), 1) << "eth1's shown; eth0's answer waits in its document";
    ASSERT_NE(test->Calls().GetLastAnswer().call, nullptr);
    EXPECT_EQ(test->Calls().GetLastAnswer().name, "Test");
    EXPECT_EQ(area.count(), 2);
    ASSERT_TRUE(area.OpenInputForm(kInterface, "Test"));
    EXPECT_EQ(area.Shown(), test) << "the same document comes forward";
    EXPECT_EQ(area.count(), 2);
    ZEDGetApplication()->RegisterModule(1, nullptr);
}

TEST_F(HostKitTest, ACallThatCannotBeMadeOrIsGivenUpIsSaid)
{
    KELDocumentArea area(Dictionary(), context, &console);
    EXPECT_FALSE(area.OpenInputForm(kInterface, "NoSuchDirective"));
    EXPECT_FALSE(area.OpenInputForm("Network nowhere Toaster 1", "Show"));
    EXPECT_EQ(area.count(), 0);

    auto module = std::make_shared<HeldModule>();
    ZEDGetApplication()->RegisterModule(1, module);
    ASSERT_TRUE(area.OpenInputForm(kInterface, "Test"));
    ASSERT_TRUE(area.Send());
    area.Cancel();
    EXPECT_FALSE(area.Shown()->Calls().IsBusy());
    EXPECT_EQ(module->cancelled.size(), 1u);
    EXPECT_THAT(console.lines.back(), HasSubstr("Cancelled: Test to"));
    ZEDGetApplication()->RegisterModule(1, nullptr);

    ZEDGetApplication()->SetDefaultModule(nullptr);
    EXPECT_FALSE(area.Send());
    EXPECT_FALSE(area.Shown()->Calls().IsBusy());
    EXPECT_THAT(
        console.lines.back(),
        HasSubstr(std::string("problem: The call could not be made: no management module answers for ") + kInterface));
}

TEST_F(HostKitTest, TheOutputPanelShowsAWildcardsRepliesAsAListAndTheTextOfAll)
{
    KELOutputPanel panel(Dictionary(), context);
    const TEntitySpec routers = *TEntitySpec::Parse("Network core Router *", &Dictionary());
    TSyncCall call(routers, Dictionary().FindClass(routers.GetEntityClass())->FindDirective("Show")->GetID());
    call.Execute();
    ASSERT_GT(call.GetReplyCount(), 1u);
    panel.Show(call, call.GetDirective(), "Show");
    ASSERT_NE(panel.GetOutputList(), nullptr);
    EXPECT_EQ(panel.tabText(panel.currentIndex()), "List");
    EXPECT_THAT(panel.GetText(), HasSubstr("Network core Router r2"));
    panel.Clear();
    EXPECT_EQ(panel.GetOutputList(), nullptr);
    EXPECT_EQ(panel.GetText(), "");
    EXPECT_EQ(panel.tabText(panel.currentIndex()), "Reply");
}

TEST_F(HostKitTest, PicksOfferTheListersEntitiesAndAskForTheFormOfADirective)
{
    KELEntityPicks picks(
        Dictionary(), [] { return std::vector<std::string>{kInterface}; }, &console);
    QSignalSpy picked(&picks, &KELEntityPicks::Picked);
    picks.ChooseEntity();
    ASSERT_EQ(picked.count(), 1);
    EXPECT_EQ(picked.at(0).at(0).value<std::string>(), kInterface);
    EXPECT_GT(picks.GetDirectivePick()->count(), 1);

    picks.GetEntityPick()->lineEdit()->setText(QStringLiteral("Network core Toaster 7"));
    emit picks.GetEntityPick()->lineEdit()->returnPressed();
    EXPECT_THAT(console.lines.back(), HasSubstr("problem: No such entity: Network core Toaster 7"));
    EXPECT_EQ(picked.count(), 1) << "nothing is asked for an entity that is none";
}

TEST_F(HostKitTest, InstancesAreListedByAskingOrByClass)
{
    EXPECT_THAT(ZedListByClass(Dictionary(), {"core"}), ElementsAre("Network core", "Network core Router *"));
    EXPECT_THAT(ZedListInstances(Dictionary()), Contains("Network core Router r1 Interface eth0"));
}

}  // namespace
