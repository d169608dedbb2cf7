// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/controls/IControlBase.h"
#include "kel/fields/IFieldAttribute.h"
#include "kel/fields/IFieldCombo.h"
#include "kel/fields/KELCompositeField.h"
#include "kel/fields/IFieldSetOf.h"
#include "kel/fields/IFieldRecord.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/fields/IFieldDateTime.h"
#include "kel/fields/IFieldEdit.h"
#include "kel/fields/IFieldEditMulti.h"
#include "kel/fields/IFieldNotSupported.h"
#include "kel/fields/IFieldNumeric.h"
#include "kel/fields/IFieldToggle.h"
#include "kel/fields/IFieldUnit.h"
#include "kel/forms/IFormLine.h"
#include "kel/forms/IInputForm.h"
#include "kel/controls/ILabel.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "kel/model/IPresentationContainer.h"
#include "support/PromptRecorder.h"
#include "support/ContextFixture.h"
#include "support/ShippedNetwork.h"
#include "support/TempDir.h"
#include "support/TraceCapture.h"
#include "zed/call/TCall.h"
#include "zed/value/TUserDefined.h"

#include <gmock/gmock.h>
#include <QRadioButton>
#include <QToolButton>

#include <gtest/gtest.h>

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

constexpr unsigned int kEcho = 11;
constexpr unsigned int kTest = 10;
const char* const kInterface = "Network core Router r1 Interface eth0";

class InputFormTest : public ContextFixture {
protected:
    std::unique_ptr<IInputForm> Open(unsigned int directive, const char* entity = kInterface)
    {
        auto form = std::make_unique<IInputForm>(context);
        form->resize(700, 500);
        form->CreatePresentation(directive == kEcho ? "Echo" : "Test", TEntitySpec(entity), directive);
        return form;
    }
    static std::vector<IFormLine*> Lines(IInputForm& form)
    {
        std::vector<IFormLine*> lines;
        form.GetContainer()->ForEachElement(
            [&](IPresentationElement& e) { lines.push_back(dynamic_cast<IFormLine*>(&e)); });
        return lines;
    }
    static IFormLine* Line(IInputForm& form, unsigned int id)
    {
        for (IFormLine* line : Lines(form))
            if (line->GetID() == id)
                return line;
        return nullptr;
    }
    static std::vector<unsigned int> Ids(IInputForm& form)
    {
        std::vector<unsigned int> ids;
        for (IFormLine* line : Lines(form))
            ids.push_back(line->GetID());
        return ids;
    }
    void Setting(const std::string& key, const std::string& value)
    {
        if (!context->GetUserConfigFile())
            context->SetUserConfigFile(std::make_unique<IConfiguration>());
        context->GetUserConfigFile()->SetString("(1,2,3) - 11 - 0", key, value, 1);
    }
};

TEST_F(InputFormTest, HasALineOfTheRightKindPerDisplayedArgumentInOrder)
{
    auto form = Open(kEcho);
    // Tag (12) is not displayed: no line.
    EXPECT_THAT(Ids(*form), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 14, 15));
    const auto kind = [&](unsigned int id) { return Line(*form, id)->GetField(); };
    EXPECT_NE(dynamic_cast<IFieldToggle*>(kind(1)), nullptr);
    EXPECT_NE(dynamic_cast<IFieldDateTime*>(kind(2)), nullptr);
    EXPECT_NE(dynamic_cast<IFieldFloat*>(kind(3)), nullptr);
    EXPECT_NE(dynamic_cast<IFieldReal*>(kind(4)), nullptr);
    EXPECT_NE(dynamic_cast<IFieldEdit*>(kind(11)), nullptr);
    EXPECT_NE(dynamic_cast<IFieldEditMulti*>(kind(13)), nullptr);
    EXPECT_NE(dynamic_cast<IFieldCombo*>(kind(14)), nullptr);
    EXPECT_NE(dynamic_cast<IFieldAttrList*>(kind(15)), nullptr) << "an operator fills the list in";
    EXPECT_EQ(Line(*form, 15)->GetLabel(), nullptr) << "an attribute list has no label";
    EXPECT_EQ(Line(*form, 1)->GetLabel()->LabelText(), "*Confirm") << "required";
    EXPECT_EQ(Line(*form, 1)->GetLabelWindow()->property("text").toString(), "*Confirm :");
    EXPECT_EQ(Line(*form, 2)->GetLabel()->LabelText(), "At");
    ASSERT_NE(Line(*form, 3)->GetUnit(), nullptr);
    EXPECT_EQ(Line(*form, 3)->GetUnit()->GetUnits(), "%");
    for (IFormLine* line : Lines(*form))
        EXPECT_FALSE(line->GetField()->IsReadOnly()) << "arguments are never read-only";
    EXPECT_EQ(Line(*form, 13)->GetField()->GetID(), 13u);
    EXPECT_EQ(Line(*form, 13)->GetField()->GetCompleteID(), "Dir:11.Arg:13");
}

TEST_F(InputFormTest, HiddenAndPositionSettingsChooseTheLinesAndTheirOrder)
{
    Setting(".Hidden", "3,5");
    Setting(".Position", "7,2,1,4,6,8,9,10,11,13,14");
    auto form = Open(kEcho);
    EXPECT_THAT(Ids(*form), ElementsAre(7, 2, 1, 4, 6, 8, 9, 10, 11, 13, 14, 15)) << "hidden ones have no line";
    EXPECT_EQ(Line(*form, 7)->GetPosition(), 0u);
    EXPECT_EQ(Line(*form, 14)->GetPosition(), 10u);
}

TEST_F(InputFormTest, ALineRefusedForATakenPositionIsTracedAndTheFormGoesOn)
{
    Setting(".Position", "4");  // argument 4 asks for position 0, which argument 1 took first
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    auto form = Open(kEcho);
    EXPECT_THAT(capture.Text(),
                HasSubstr("KEL : assertion failed : an element with this identifier is already in the presentation"));
    ASSERT_NE(Line(*form, 1), nullptr);
    EXPECT_EQ(Line(*form, 1)->GetPosition(), 0u);
    EXPECT_EQ(Line(*form, 4), nullptr) << "the refused line is gone";
    EXPECT_NE(Line(*form, 2), nullptr);
}

TEST_F(InputFormTest, TypedValuesMakeTheRequestAndTheCallSucceeds)
{
    auto form = Open(kTest);
    Line(*form, 1)->GetField()->SetValue(std::string("3"));
    Line(*form, 2)->GetField()->SetValue(std::string("128"));
    TSyncCall call(TEntitySpec(kInterface), kTest);
    ASSERT_TRUE(form->FillRequest(call.GetRequest()));
    EXPECT_EQ(call.GetRequest()[1].ToString(), "3");
    EXPECT_EQ(call.GetRequest()[2].ToString(), "128");
    std::string text;
    form->GetRequest(text);
    EXPECT_EQ(text, "Count = 3,Size = 128");
    EXPECT_EQ(call.Execute(), ZED_STATUS_RESPONSE);
    EXPECT_TRUE(prompts->empty());
}

// What an operator types into members and set elements is the value the call
// carries, and the network mirrors it back unchanged.
TEST_F(InputFormTest, CompositesGiveBackWhatWasTypedAndTheCallCarriesIt)
{
    auto form = Open(kEcho);
    Line(*form, 1)->GetField()->SetValue(std::string("1"));
    const auto members = [](IField* composite) {
        std::vector<IField*> fields;
        IFieldContainer* container = dynamic_cast<KELCompositeField&>(*composite).GetFieldContainer();
        for (long at = container->GoFirst(); at >= 0;)
            fields.push_back(container->GetNext(at));
        return fields;
    };
    const std::vector<IField*> place = members(Line(*form, 5)->GetField());
    place[0]->SetValue(std::string("Hall C"));
    place[1]->SetValue(std::string("12"));
    const std::vector<IField*> position = members(static_cast<IFieldRecordMember*>(place[2])->GetField());
    position[0]->SetValue(std::string("48.5"));
    auto& peers = dynamic_cast<IFieldSetOf&>(*Line(*form, 6)->GetField());
    peers.GetAddButton()->click();
    peers.GetAddButton()->click();
    for (IField* peer : members(&peers)) {
        const std::vector<IField*> address = members(peer);
        address[0]->SetValue(std::string("r9"));
        address[1]->SetValue(std::string("179"));
    }
    auto& states = dynamic_cast<IFieldSetOf&>(*Line(*form, 7)->GetField());
    states.GetAddButton()->click();
    members(&states)[0]->SetValue(std::string("Locked"));

    TSyncCall call(TEntitySpec(kInterface), kEcho);
    ASSERT_TRUE(form->FillRequest(call.GetRequest()));
    ASSERT_EQ(call.Execute(), ZED_STATUS_RESPONSE);
    for (unsigned int id : {5u, 6u, 7u}) {
        const std::unique_ptr<TValue> typed = Line(*form, id)->GetField()->GetTValue(false);
        ASSERT_NE(typed, nullptr) << id;
        EXPECT_EQ(call.GetRequest()[id].ToString(), typed->ToString()) << id;
        EXPECT_EQ(call.GetReply()[id].ToString(), typed->ToString()) << id;
    }
    EXPECT_EQ(call.GetRequest()[5].ToString(), "{ Site = Hall C, Rack = 12, Position = { Latitude = 48.5 } }")
        << "an empty member is left out";
    EXPECT_EQ(call.GetRequest()[6].ToString(), "{ { Host = r9, Port = 179 }, { Host = r9, Port = 179 } }");
    EXPECT_EQ(call.GetRequest()[7].ToString(), "{ Locked }");
}

TEST_F(InputFormTest, DefaultsGoOutAsDefaultsWithoutAPrompt)
{
    auto form = Open(kTest);
    form->FillWithDefaults();
    TSyncCall call(TEntitySpec(kInterface), kTest);
    ASSERT_TRUE(form->FillRequest(call.GetRequest()));
    EXPECT_TRUE(prompts->empty()) << "the server default's text is no invalid number";
    EXPECT_EQ(call.GetRequest()[1].ToString(), "4");
    EXPECT_TRUE(call.GetRequest()[2].IsDefault()) << "Size: the server's default";
    EXPECT_EQ(call.Execute(), ZED_STATUS_RESPONSE);
}

TEST_F(InputFormTest, ARequiredArgumentLeftEmptyStopsTheRequestWithTheMessage)
{
    auto form = Open(kEcho);
    TRequest request;
    EXPECT_FALSE(form->FillRequest(request));
    ASSERT_EQ(prompts->size(), 1u);
    EXPECT_EQ(prompts->at(0).icon, KELPrompt::Icon::Stop);
    EXPECT_EQ(prompts->at(0).text, "The required field *Confirm has no value.");

    // A number that is no number stops the request too, naming its line.
    auto numbers = Open(kTest);
    Line(*numbers, 2)->GetField()->SetValue(std::string("lots"));
    TRequest invalid;
    EXPECT_FALSE(numbers->FillRequest(invalid));
    ASSERT_EQ(prompts->size(), 2u);
    EXPECT_EQ(prompts->at(1).text,
              "The field Size does not hold a valid value: \"lots\" is not a whole number from 0 to 65535");
    prompts->pop_back();

    // A required argument with a default sends the default.
    auto test = Open(kTest);
    TRequest withDefault;
    EXPECT_TRUE(test->FillRequest(withDefault));
    EXPECT_EQ(withDefault[1].ToString(), "4") << "Count's dictionary default";
    EXPECT_EQ(prompts->size(), 1u);
}

TEST_F(InputFormTest, ContentsSavedOnDiskRestoreIntoANewForm)
{
    {
        auto form = Open(kEcho);
        form->SetFillConfigSection("Echo contents");
        Line(*form, 1)->GetField()->SetValue(std::string("1"));
        Line(*form, 13)->GetField()->SetValue(std::string("two\nlines"));
        Line(*form, 3)->GetField()->SetValue(std::string("2.5"));
        form->SaveContents("");
        ASSERT_NE(context->GetUserConfigFile(), nullptr);
        ASSERT_EQ(context->GetUserConfigFile()->Save(), 1);
    }
    // A new application reads the user file from disk.
    DestroyKEL();
    ASSERT_NE(InitializeKEL("form test"), nullptr);
    context = GetKELapp()->DefineNewContext("TST");
    std::string errors;
    context->LoadSystemAndUserConfig(errors);
    auto form = Open(kEcho);
    form->SetFillConfigSection("Echo contents");
    form->FillWithCurrentConfig();
    std::string text;
    form->GetRequest(text);
    // A record line's text is ")" and an empty attribute's " = ", as designed.
    EXPECT_EQ(text, "Confirm = True,Ratio = 2.5,Place = ),Setting =  = ,Comment = two\nlines");
}

TEST_F(InputFormTest, ChangedLinesShowRaisedLabelsAllOfTheWidestWidth)
{
    auto form = Open(kTest);
    form->show();
    form->OnIdleUpdateCmdUI(0, 0);
    IFormLine* count = Line(*form, 1);
    EXPECT_FALSE(count->GetLabel()->GetControl()->IsRaised());
    count->GetField()->SetValue(std::string("9"));
    form->OnIdleUpdateCmdUI(0, 0);
    EXPECT_TRUE(count->GetLabel()->GetControl()->IsRaised());
    unsigned int widest = 0;
    for (IFormLine* line : Lines(*form))
        widest = std::max(widest, static_cast<unsigned int>(line->GetLabel()->GetSize().width()));
    for (IFormLine* line : Lines(*form))
        EXPECT_EQ(line->GetLabelWindow()->width(), static_cast<int>(widest)) << line->GetLabel()->LabelText();
    count->GetField()->SetValue(std::string(""));
    form->OnIdleUpdateCmdUI(0, 0);
    EXPECT_FALSE(count->GetLabel()->GetControl()->IsRaised()) << "back to its first text: flat again";
}

TEST_F(InputFormTest, AUserDefinedValueGetsAFieldOfItsOwnDefinition)
{
    auto form = Open(kTest);
    IElementInfo info(TEntitySpec(kInterface), "Load", "Dir:10");
    info.SetID(40);
    info.SetDT(ZED_DT_USERDEFINED);
    info.SetPresentationName("Load");
    std::unique_ptr<IFormLine> line = form->CreateFormLine(info);
    EXPECT_NE(dynamic_cast<IFieldNotSupported*>(line->GetField()), nullptr);
    const TDictTypePtr percentage =
        static_cast<const TDictTypeUserDefined&>(*Dictionary().FindType("Percentage")).GetBase();
    line->SetValue(TUserDefined(percentage, std::make_unique<TUnsigned16>(63), 40));
    auto* field = dynamic_cast<IFieldUnsigned16*>(line->GetField());
    ASSERT_NE(field, nullptr) << "a field of the definition's own kind";
    EXPECT_TRUE(field->IsReadOnly());
    std::string text;
    field->GetValue(text);
    EXPECT_EQ(text, "63");
}

TEST_F(InputFormTest, CleaningRemovesTheLinesAndANewPresentationFollows)
{
    auto form = Open(kEcho);
    form->CleanPresentation();
    EXPECT_EQ(form->GetContainer(), nullptr);
    EXPECT_EQ(form->GetControlContainer(), nullptr);
    TRequest request;
    EXPECT_TRUE(form->FillRequest(request)) << "no lines: nothing to refuse";
    form->CreatePresentation("Test", TEntitySpec(kInterface), kTest);
    EXPECT_THAT(Ids(*form), ElementsAre(1, 2, 3, 4));
}

TEST_F(InputFormTest, SectionNamesAndEntityIdentifiers)
{
    std::string id;
    IPresentationForm::GetEntityID(id, TEntityClass(std::vector<unsigned int>{12, 3, 5}));
    EXPECT_EQ(id, "(12,3,5)");
    IPresentationForm::GetEntityID(id, TEntityClass(std::vector<unsigned int>{12, 0, 5}));
    EXPECT_EQ(id, "(12)");
    IPresentationForm::GetEntityID(id, kInterface);
    EXPECT_EQ(id, "(1,2,3)");
    std::string section;
    IPresentationForm::GetSettingSectionName(section, "(12,3,5)", 7, 0);
    EXPECT_EQ(section, "(12,3,5) - 7 - 0");
    auto form = Open(kTest);
    form->GetSettingSectionName(section, 2);
    EXPECT_EQ(section, "(1,2,3) - 10 - 2");
    IControlContainer* first = form->GetControlContainer();
    EXPECT_NE(form->CreateControlContainer(), first);
    EXPECT_EQ(form->GetControlContainer(), first) << "the form keeps its first container";
}

}  // namespace

namespace {

std::string TextOf(IField& field)
{
    std::string text;
    field.GetValue(text);
    return text;
}

// As the field's menu does, from the field's own control (a toggle's is a button of its row).
void Revert(IField& field)
{
    auto* control = dynamic_cast<IControlBase*>(field.GetWindow());
    for (QObject* child : field.GetWindow()->children())
        if (!control)
            control = dynamic_cast<IControlBase*>(child);
    ASSERT_NE(control, nullptr);
    control->OnFieldRevertToInit();
}

TEST_F(InputFormTest, ARevertGoesBackToWhatTheFormWasFilledWith)
{
    {
        auto saved = Open(kEcho);
        saved->SetFillConfigSection("Echo contents");
        Line(*saved, 4)->GetField()->SetValue(std::string("2.25"));
        Line(*saved, 1)->GetField()->SetValue(std::string("1"));
        saved->SaveContents("");
    }
    auto form = Open(kEcho);
    form->SetFillConfigSection("Echo contents");
    form->FillWithDefaults();
    form->FillWithCurrentConfig();
    IFormLine& weightLine = *Line(*form, 4);
    IField& weight = *weightLine.GetField();
    EXPECT_FALSE(weightLine.ValueChanged());
    weight.SetValue(std::string("9"));
    EXPECT_TRUE(weightLine.ValueChanged());
    Revert(weight);
    EXPECT_EQ(TextOf(weight), "2.25") << "the saved contents, not a blank";
    EXPECT_FALSE(weightLine.ValueChanged()) << "no longer marked as changed";
    EXPECT_FALSE(weight.ValueChanged());

    auto& confirm = dynamic_cast<IFieldToggle&>(*Line(*form, 1)->GetField());
    confirm.GetFalseButton()->click();
    Revert(confirm);
    EXPECT_TRUE(confirm.GetTrueButton()->isChecked());
    EXPECT_FALSE(confirm.ValueChanged());

    // A form filled with defaults only: the dictionary's, and the server's.
    auto defaults = Open(kEcho);
    defaults->FillWithDefaults();
    IField& fresh = *Line(*defaults, 4)->GetField();
    fresh.SetValue(std::string("3"));
    Revert(fresh);
    EXPECT_EQ(TextOf(fresh), "1.5");
    auto test = Open(kTest);
    test->FillWithDefaults();
    IField& size = *Line(*test, 2)->GetField();
    size.SetValue(std::string("64"));
    Revert(size);
    std::unique_ptr<TValue> reverted = size.GetTValue(false);
    ASSERT_NE(reverted, nullptr);
    EXPECT_TRUE(reverted->IsDefault()) << "left to the server again";
}

TEST_F(InputFormTest, AToggleWithNeitherChoiceGivesNoValueUnlessItShowsOne)
{
    auto form = Open(kEcho);
    auto& confirm = dynamic_cast<IFieldToggle&>(*Line(*form, 1)->GetField());
    EXPECT_EQ(confirm.GetTValue(false), nullptr);
    EXPECT_EQ(confirm.GetTValue(true), nullptr) << "asked always, still none";
    confirm.SetToNotReturned();
    EXPECT_EQ(confirm.GetTValue(true), nullptr);
}

}  // namespace
