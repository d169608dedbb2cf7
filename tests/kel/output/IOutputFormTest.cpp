// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IField.h"
#include "kel/forms/IFormLine.h"
#include "kel/controls/ILabel.h"
#include "kel/frame/IApplication.h"
#include "kel/model/IPresentationContainer.h"
#include "kel/output/ICommentLine.h"
#include "kel/output/IOutputForm.h"
#include "kel/output/KELCallReply.h"
#include "kel/fields/KELEnumerationCodes.h"
#include "kel/output/IOutputList.h"
#include "kel/output/KELListModel.h"
#include "support/ShippedNetwork.h"
#include "zed/call/TCall.h"
#include "zed/dict/ZedDictCodes.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TEnumeration.h"
#include "zed/value/TScalarValues.h"
#include "zed/value/TValueParser.h"

#include <QFont>
#include <QLineEdit>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;

constexpr unsigned int kShow = 1;
constexpr unsigned int kTest = 10;
const char* const kInterface = "Network core Router r1 Interface eth0";

class OutputFormTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        network = InstallShippedNetwork();
        ASSERT_NE(InitializeKEL("output test"), nullptr);
        form = std::make_unique<IOutputForm>();
        form->resize(700, 500);
    }
    void TearDown() override
    {
        form.reset();
        DestroyKEL();
    }
    // Carries the call out and shows its (first) reply on the form.
    void Show(TSyncCall& call)
    {
        call.Execute();
        form->CreatePresentation("Output", KELCallReply(call), call.GetDirective());
    }
    IFormLine* Line(long id)
    {
        return dynamic_cast<IFormLine*>(form->GetContainer()->FindElement(static_cast<int>(id)));
    }
    std::string Text(long id)
    {
        std::string text;
        Line(id)->GetField()->GetValue(text);
        return text;
    }
    std::string Label(long id) { return Line(id)->GetLabel()->GetPresentationName(); }
    std::vector<int> Keys()
    {
        std::vector<int> keys;
        form->GetContainer()->ForEachElement([&](IPresentationElement& element) { keys.push_back(element.GetKey()); });
        return keys;
    }

    std::shared_ptr<TSimulatedNetwork> network;
    std::unique_ptr<IOutputForm> form;
};

TEST_F(OutputFormTest, AResponseHasItsHeaderLinesInBoldAndALinePerValueFromZero)
{
    TSyncCall call(TEntitySpec(kInterface), kTest);
    call.GetRequest().Add(TUnsigned16(2, 1));
    Show(call);
    EXPECT_THAT(Keys(), ElementsAre(-5, -4, -3, 0, 1, 2));
    EXPECT_EQ(Text(IOutputForm::kEntityLine), kInterface);
    EXPECT_EQ(Label(IOutputForm::kEntityLine), "Entity");
    EXPECT_EQ(Label(IOutputForm::kTimeLine), "Time");
    EXPECT_FALSE(Text(IOutputForm::kTimeLine).empty());
    EXPECT_EQ(Text(IOutputForm::kReplyTextLine), "Test completed");
    EXPECT_EQ(Label(IOutputForm::kReplyTextLine), "Reply");
    for (long header : {IOutputForm::kEntityLine, IOutputForm::kTimeLine, IOutputForm::kReplyTextLine}) {
        ASSERT_NE(dynamic_cast<ICommentLine*>(Line(header)), nullptr);
        EXPECT_TRUE(Line(header)->GetField()->GetWindow()->font().bold()) << header;
        EXPECT_TRUE(Line(header)->GetField()->IsReadOnly()) << header;
    }
    EXPECT_EQ(Label(0), "Sent");
    EXPECT_EQ(Text(0), "2");
    EXPECT_EQ(Label(1), "Received");
    EXPECT_EQ(Label(2), "Round Trip");
    EXPECT_TRUE(Line(0)->GetField()->IsReadOnly());
    EXPECT_EQ(form->GetPresentationKind(), IOutputBase::EventReport) << "as designed, so that replies walk as events";
    EXPECT_EQ(form->GetReplyType(), ZED_DICT_RESPONSE);
}

TEST_F(OutputFormTest, ExceptionsTakeTheirTextFromTheDictionary)
{
    TSyncCall tooMany(TEntitySpec(kInterface), kTest);
    tooMany.GetRequest().Add(TUnsigned16(2000, 1));
    Show(tooMany);
    EXPECT_EQ(form->GetReplyType(), ZED_DICT_EXCEPTION);
    EXPECT_EQ(Text(IOutputForm::kReplyTextLine), "The packet count is too large");
    EXPECT_EQ(Label(0), "Maximum Count");
    EXPECT_EQ(Text(0), "1000");

    form->CleanPresentation();
    EXPECT_EQ(form->GetContainer(), nullptr);
    TSyncCall missing(TEntitySpec("Network core Router r1 Interface eth9"), kTest);
    missing.GetRequest().Add(TUnsigned16(2, 1));
    Show(missing);
    ASSERT_EQ(missing.GetStatus(), ZED_STATUS_COMMON_EXCEPTION);
    EXPECT_EQ(Text(IOutputForm::kReplyTextLine), "The entity does not exist");
    EXPECT_EQ(form->GetDirOrEventID(), ZED_COMMON_EXCEPTION_DIRECTIVE) << "a common exception stands under 55";
}

TEST_F(OutputFormTest, AnAttributeListOpensIntoALinePerAttributeAndUnknownValuesGetADefaultName)
{
    TSyncCall call(TEntitySpec("Network core Router r1"), kShow);
    call.GetRequest().Add(TEnumeration(
        std::static_pointer_cast<const TDictTypeEnumeration>(Dictionary().FindType("PartitionChoice")), 2, 1));
    Show(call);
    const std::vector<int> keys = Keys();
    ASSERT_GT(keys.size(), 4u) << "one line per attribute of the Status partition";
    EXPECT_EQ(Label(0), "State");

    form->CleanPresentation();
    long line = static_cast<long>(keys.size()) - 3;
    form->CreatePresentation("Output", KELCallReply(call), kShow);
    form->AddValueField(TEntitySpec("Network core Router r1"), TUnsigned16(7, 77), line, true);
    EXPECT_EQ(line, static_cast<long>(keys.size()) - 2) << "the next line's number";
    EXPECT_EQ(Label(line - 1), "Value 77");
}

// Where the operator asks for it, an enumeration shows its number beside its
// name in outputs; its value stays the name.
TEST_F(OutputFormTest, EnumerationsShowTheirNumberWhereTheOperatorAsks)
{
    TSyncCall call(TEntitySpec("Network core Router r1"), kShow);
    call.GetRequest().Add(TEnumeration(
        std::static_pointer_cast<const TDictTypeEnumeration>(Dictionary().FindType("PartitionChoice")), 2, 1));
    call.Execute();
    form->CreatePresentation("Output", KELCallReply(call), kShow);
    ASSERT_EQ(Label(0), "State");
    const QString plain = static_cast<QLineEdit*>(Line(0)->GetField()->GetWindow())->text();
    EXPECT_EQ(plain, "Up");

    KELEnumerationCodes::Show(true);
    IOutputForm numbered;
    numbered.CreatePresentation("Output", KELCallReply(call), kShow);
    auto* line = dynamic_cast<IFormLine*>(numbered.GetContainer()->FindElement(0));
    EXPECT_EQ(static_cast<QLineEdit*>(line->GetField()->GetWindow())->text(), "Up (1)");
    std::string text;
    line->GetField()->GetValue(text);
    EXPECT_EQ(text, "Up") << "the value is still the name";

    IOutputList list;
    list.CreatePresentationAttr("Show", TEntitySpec("Network core Router r1"), 2);
    list.ProcessReply(KELCallReply(call));
    bool numberedCell = false;
    for (int c = 0; c < list.GetModel()->columnCount(); ++c)
        numberedCell = numberedCell || list.GetModel()->index(0, c).data().toString() == "Up (1)";
    EXPECT_TRUE(numberedCell) << "and in a list's cells";
    KELEnumerationCodes::Show(false);
}

// A call whose answer the test writes.
class AnsweredCall : public TCall {
public:
    AnsweredCall(const TEntitySpec& entity, unsigned int directive, TReply reply) : TCall(entity, directive)
    {
        SetResults({TCallResult{entity, TAbsTime(0), std::move(reply), ZED_STATUS_RESPONSE}});
    }
};

TEST_F(OutputFormTest, EveryAttributeOfAListHasALineInListOrderOneWithoutAValueToo)
{
    const TEntitySpec router("Network core Router r1");
    const TDictClass& cls = *Dictionary().FindClass(router.GetEntityClass());
    const TDictAttribute& state = *cls.FindAttribute(std::string("State"));
    const TDictAttribute& priority = *cls.FindAttribute(std::string("Priority"));
    TAttributeList list(1);
    list.Add(TAttribute(TAttributeID(priority.GetID())));  // no value came
    list.Add(TAttribute(TAttributeID(state.GetID()), ZEDMakeValue(state.GetType(), 0)));
    list.Add(TAttribute(TAttributeID(4242)));  // neither a value nor known
    TReply reply(0, 1);
    reply.Add(list);
    AnsweredCall call(router, kShow, std::move(reply));
    form->CreatePresentation("Output", KELCallReply(call), kShow);
    EXPECT_EQ(Keys(), (std::vector<int>{-5, -4, -3, 0, 1, 2}));
    EXPECT_EQ(Label(0), priority.GetPresentationName());
    EXPECT_EQ(Text(0), "") << "a number not returned is deliberately empty";
    EXPECT_EQ(Label(1), state.GetPresentationName());
    EXPECT_EQ(Label(2), "Value 4242");
    EXPECT_EQ(Text(2), "<not returned>");
}

TEST(CallReplyList, CleanDeletesFromHeadToTailAndDropsNullEntries)
{
    auto network = InstallShippedNetwork();
    TSyncCall call(TEntitySpec("Network core Router *"), kShow);
    call.Execute();
    KELCallReplyList list;
    list.AddTail(nullptr);
    list.AddAll(call);
    list.AddTail(nullptr);
    ASSERT_EQ(list.GetCount(), call.GetReplyCount() + 2);
    EXPECT_EQ(list.Replies().back(), nullptr);
    const KELCallReply& second = **std::next(list.Replies().begin(), 2);
    EXPECT_EQ(second.Entity().ToString(), "Network core Router r2");
    EXPECT_EQ(second.CallStatus(), ZED_STATUS_RESPONSE);
    list.Clean();
    EXPECT_TRUE(list.IsEmpty());
    list.Clean();
    EXPECT_TRUE(list.IsEmpty());
}

}  // namespace
