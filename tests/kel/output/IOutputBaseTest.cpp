// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/IApplication.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "kel/model/IPresentationContainer.h"
#include "kel/model/KELValueElement.h"
#include "kel/output/IOutputBase.h"
#include "support/ShippedNetwork.h"
#include "support/TraceCapture.h"
#include "zed/call/TReply.h"
#include "zed/value/TEventReport.h"
#include "zed/value/TScalarValues.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

// An element that remembers what it was last shown.
class Shown : public IPresentationElement, public KELValueElement {
public:
    Shown(unsigned int id, std::string completeId) : IPresentationElement(id), completeId(std::move(completeId)) {}
    void SetValue(const TValue& value) override { text = value.ToString(); }
    void SetToNotReturned() override { text = "<not returned>"; }

    std::string completeId;
    std::string text = "-";
};

// The smallest output: a container of its own and a Shown per element.
class RecordingOutput : public IOutputBase {
public:
    IPresentationContainer* CreateContainer() override
    {
        auto container = std::make_unique<IPresentationContainer>();
        IPresentationContainer* made = container.get();
        TakeContainer(std::move(container));
        return made;
    }
    std::unique_ptr<IPresentationElement> CreateElement(IElementInfo& info) override
    {
        return std::make_unique<Shown>(duplicate ? 1u : static_cast<unsigned int>(info.GetID()), info.GetCompleteID());
    }
    Shown& At(int key) { return dynamic_cast<Shown&>(*GetContainer()->FindElement(key)); }
    std::vector<std::string> CompleteIds()
    {
        std::vector<std::string> ids;
        GetContainer()->ForEachElement(
            [&](IPresentationElement& element) { ids.push_back(dynamic_cast<Shown&>(element).completeId); });
        return ids;
    }

    bool duplicate = false;
};

constexpr unsigned int kTest = 10;
const char* const kInterface = "Network core Router r1 Interface eth0";

class OutputBaseTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        network = InstallShippedNetwork();
        ASSERT_NE(InitializeKEL("output base test"), nullptr);
    }
    void TearDown() override { DestroyKEL(); }

    std::shared_ptr<TSimulatedNetwork> network;
    RecordingOutput output;
};

TEST_F(OutputBaseTest, ElementsAreNamedAfterTheReplyOrEventTheyShow)
{
    output.CreatePresentation("Out", TEntitySpec(kInterface), kTest, ZED_DICT_RESPONSE, 1);
    EXPECT_THAT(output.CompleteIds(), ElementsAre("Dir:10.Resp:1.Arg:1", "Dir:10.Resp:1.Arg:2", "Dir:10.Resp:1.Arg:3"));
    EXPECT_EQ(output.GetPresentationKind(), IOutputBase::DirectiveReply);

    RecordingOutput exception;
    exception.CreatePresentation("Out", TEntitySpec(kInterface), kTest, ZED_DICT_EXCEPTION, 2);
    EXPECT_THAT(exception.CompleteIds(), ElementsAre("Dir:10.Exc:2.Arg:1"));
    RecordingOutput neither;
    neither.CreatePresentation("Out", TEntitySpec(kInterface), kTest, ZED_DICT_REQUEST, 1);
    EXPECT_EQ(neither.CompleteIds().front(), "Dir:101.Arg:1") << "no reply marker: the code follows the directive";

    RecordingOutput event;
    event.CreatePresentation("Out", TEntitySpec(kInterface), 2u);
    EXPECT_THAT(event.CompleteIds(), ElementsAre("Event:2.Arg:1", "Event:2.Arg:2"));
    EXPECT_EQ(event.GetPresentationKind(), IOutputBase::EventReport);

    RecordingOutput all, status;
    all.CreatePresentationAttr("Out", TEntitySpec(kInterface), 0);
    status.CreatePresentationAttr("Out", TEntitySpec(kInterface), 2);
    EXPECT_GT(all.CompleteIds().size(), status.CompleteIds().size());
    EXPECT_EQ(status.GetPresentationKind(), IOutputBase::Attributes);
    EXPECT_EQ(status.CompleteIds().front().rfind("Attr:", 0), 0u);
}

TEST_F(OutputBaseTest, ASecondElementOfTheSameKeyRaisesTheAssertion)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM | KEL_TRACE_EXCP);
    output.duplicate = true;
    output.CreatePresentation("Out", TEntitySpec(kInterface), kTest, ZED_DICT_RESPONSE, 1);
    EXPECT_EQ(output.GetContainer()->GetElementCount(), 1u);
    EXPECT_THAT(capture.Text(), HasSubstr("an element with this identifier is already in the presentation"));
}

TEST_F(OutputBaseTest, RepliesLeaveAbsentArgumentsAndMismatchesAreTracedButApplied)
{
    output.CreatePresentation("Out", TEntitySpec(kInterface), kTest, ZED_DICT_RESPONSE, 1);
    TReply first(ZED_REPLY_RESPONSE, 1);
    first.Add(TUnsigned16(3, 1));
    first.Add(TUnsigned16(2, 2));
    output.ProcessReply(first);
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM | KEL_TRACE_INFO);
    TReply odd(ZED_REPLY_EXCEPTION, 2);
    odd.Add(TUnsigned16(9, 1));
    output.ProcessReply(odd);
    EXPECT_EQ(output.At(1).text, "9") << "applied although it is another reply";
    EXPECT_EQ(output.At(2).text, "2") << "an absent argument leaves the element as it was";
    EXPECT_EQ(output.At(3).text, "-");
    EXPECT_THAT(capture.Text(), HasSubstr("KEL :ProcessReply  replyType problem  "));
    EXPECT_THAT(capture.Text(), HasSubstr("KEL :ProcessReply  Reply Code != reply and != event "));
    EXPECT_THAT(capture.Text(), HasSubstr("KEL : ProcessReply : "));
    EXPECT_THAT(capture.Text(), HasSubstr("KEL :ProcessReply  reply "));

    capture.Clear();
    output.ProcessReply(first);
    EXPECT_THAT(capture.Text(), Not(HasSubstr("problem")));
}

TEST_F(OutputBaseTest, EventsTurnAbsentArgumentsToNotReturnedAndNeedAReport)
{
    output.CreatePresentation("Out", TEntitySpec(kInterface), 2u);
    TEventReport report(2, 0);
    report.Add(TLatin1String("cable pulled", 2));
    TReply carrying(ZED_REPLY_RESPONSE, 2);
    carrying.Add(report);
    output.ProcessReply(carrying);
    EXPECT_EQ(output.At(1).text, "<not returned>");
    EXPECT_EQ(output.At(2).text, "cable pulled");

    TReply empty(ZED_REPLY_RESPONSE, 2);
    empty.Add(TLatin1String("not a report", 2));
    output.ProcessReply(empty);
    EXPECT_EQ(output.At(2).text, "cable pulled") << "without an event report nothing changes";
}

TEST_F(OutputBaseTest, WithoutACreationAReplyIsOnlyTraced)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_INFO);
    output.ProcessReply(TReply(ZED_REPLY_RESPONSE, 1));
    EXPECT_EQ(output.GetContainer(), nullptr);
    EXPECT_THAT(capture.Text(), HasSubstr("ProcessReply"));
}

}  // namespace
