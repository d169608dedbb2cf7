// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/controls/IControlContainer.h"
#include "kel/fields/IField.h"
#include "kel/forms/IFormLine.h"
#include "kel/forms/IInputOutputForm.h"
#include "kel/frame/IApplication.h"
#include "kel/model/IPresentationContainer.h"
#include "support/PromptRecorder.h"
#include "support/ContextFixture.h"
#include "support/ShippedNetwork.h"
#include "support/TempDir.h"
#include "zed/call/TCall.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TEnumeration.h"
#include "zed/value/TScalarValues.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;

constexpr unsigned int kShow = 1;
constexpr unsigned int kSet = 2;
constexpr unsigned int kCharacteristics = 4;
const char* const kRouter = "Network core Router r1";

class InputOutputFormTest : public ContextFixture {
protected:
    std::unique_ptr<IInputOutputForm> Open()
    {
        auto form = std::make_unique<IInputOutputForm>(context);
        form->resize(700, 500);
        form->CreatePresentation("Router", TEntitySpec(kRouter), kCharacteristics);
        return form;
    }
    void Setting(const char* key, const char* value)
    {
        // The section of the router class's form for partition 4.
        context->GetUserConfigFile()->SetString("(1,2) - 4 - 0", key, value, 1);
    }
    // What Show answers for the partition, as the form's refresh would ask it.
    TReply Read(unsigned int partition = kCharacteristics)
    {
        TSyncCall call(TEntitySpec(kRouter), kShow);
        call.GetRequest().Add(
            TEnumeration(std::static_pointer_cast<const TDictTypeEnumeration>(Dictionary().FindType("PartitionChoice")),
                         static_cast<int>(partition), 1));
        call.Execute();
        return call.GetReply();
    }
    static IFormLine* Line(IInputOutputForm& form, unsigned int id)
    {
        IFormLine* found = nullptr;
        form.GetContainer()->ForEachElement([&](IPresentationElement& element) {
            if (element.GetID() == id)
                found = dynamic_cast<IFormLine*>(&element);
        });
        return found;
    }
    static std::string Text(IInputOutputForm& form, unsigned int id)
    {
        std::string text;
        Line(form, id)->GetField()->GetValue(text);
        return text;
    }
    static std::vector<unsigned int> Ids(IInputOutputForm& form)
    {
        std::vector<unsigned int> ids;
        form.GetContainer()->ForEachElement([&](IPresentationElement& element) { ids.push_back(element.GetID()); });
        return ids;
    }
};

TEST_F(InputOutputFormTest, ARefreshFillsTheLinesAndAnApplySendsOnlyWhatChanged)
{
    auto form = Open();
    EXPECT_THAT(Ids(*form), ElementsAre(4, 5, 6, 7, 8, 12, 13, 14)) << "the partition's attributes";
    form->ProcessReply(Read());
    EXPECT_EQ(Text(*form, 4), "Unlocked");
    EXPECT_EQ(Text(*form, 12), "10");

    Line(*form, 12)->GetField()->SetValue(std::string("7"));
    TSyncCall set(TEntitySpec(kRouter), kSet);
    ASSERT_TRUE(form->FillRequest(set.GetRequest()));
    ASSERT_EQ(set.GetRequest().Size(), 1u) << "only the changed line";
    EXPECT_EQ(set.GetRequest()[12].ToString(), "7");
    ASSERT_EQ(set.Execute(), ZED_STATUS_RESPONSE);

    auto fresh = Open();
    fresh->ProcessReply(Read());
    EXPECT_EQ(Text(*fresh, 12), "7") << "the network kept the new value";
}

TEST_F(InputOutputFormTest, LinesAReplyDoesNotCarryAreNotReturnedAndOtherRepliesChangeNothing)
{
    auto form = Open();
    form->ProcessReply(Read());
    TReply partial(ZED_REPLY_RESPONSE, 1);
    TAttributeList list(1);
    list.Add(TAttribute(TAttributeID(12, "Priority"), std::make_unique<TUnsigned16>(9)));
    partial.Add(list);
    form->ProcessReply(partial);
    EXPECT_EQ(Text(*form, 12), "9");
    EXPECT_NE(Text(*form, 4), "Unlocked") << "not returned";

    TReply withoutList(ZED_REPLY_RESPONSE, 1);
    withoutList.Add(TUnsigned16(1, 1));
    form->ProcessReply(withoutList);
    EXPECT_EQ(Text(*form, 12), "9");
}

TEST_F(InputOutputFormTest, HiddenLinesStayAndTakeValuesAndSettingsCanBeReadAgain)
{
    Setting(".Hidden", "12");
    auto form = Open();
    ASSERT_NE(Line(*form, 12), nullptr) << "a hidden attribute keeps its line";
    EXPECT_FALSE(Line(*form, 12)->GetField()->GetWindow()->isVisibleTo(form.get()));
    form->ProcessReply(Read());
    EXPECT_EQ(Text(*form, 12), "10");
    QSize before;
    form->GetControlContainer()->ComputeSize(before);

    Setting(".Hidden", "");
    Setting(".Position", "14,13,12,8,7,6,5,4");
    form->ResetPresentation();
    const std::vector<unsigned int> ids = Ids(*form);
    ASSERT_GE(ids.size(), 2u);
    EXPECT_EQ(ids[0], 14u);
    EXPECT_EQ(ids[1], 13u);
    EXPECT_TRUE(Line(*form, 12)->GetField()->GetWindow()->isVisibleTo(form.get()));
    QSize after;
    form->GetControlContainer()->ComputeSize(after);
    EXPECT_GT(after.height(), before.height()) << "the line shown again takes its room";
}

}  // namespace
