// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/IControlBase.h"
#include "kel/fields/IFieldBuilder.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/fields/IFieldSetOf.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELTrace.h"
#include "support/FieldDoubles.h"
#include "support/ShippedNetwork.h"
#include "support/TraceCapture.h"
#include "zed/value/TSetOf.h"
#include "zed/value/TValueParser.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolButton>

#include <gmock/gmock.h>
#include <typeinfo>
#include <gtest/gtest.h>

using ::testing::ElementsAre;
using ::testing::EndsWith;

namespace {

class SetOfFieldTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        network = InstallShippedNetwork();
        ASSERT_NE(InitializeKEL("set test"), nullptr);
        container = new IContainer(&form);
    }
    void TearDown() override { DestroyKEL(); }

    std::unique_ptr<IFieldSetOf> States(ZED_T_DICT_ACCESS access = ZED_ACCESS_READ_WRITE)
    {
        IElementInfo info = Info(9, ZED_DT_SEQUENCEOF, "States");
        info.SetAccess(access);
        info.SetDictType(*Dictionary().FindType("AdminSequence"));
        info.SetHasDictType(1);
        unsigned int id = 1;
        std::unique_ptr<IField> field = IFieldBuilder::CreateField(container, id, info);
        auto* set = dynamic_cast<IFieldSetOf*>(field.get());
        EXPECT_NE(set, nullptr);
        field.release();
        return std::unique_ptr<IFieldSetOf>(set);
    }
    static std::vector<unsigned int> Ids(IFieldSetOf& set)
    {
        std::vector<unsigned int> ids;
        for (long at = set.GetFieldContainer()->GoFirst(); at >= 0;)
            ids.push_back(set.GetFieldContainer()->GetNext(at)->GetID());
        return ids;
    }
    static IField* Element(IFieldSetOf& set, std::size_t index)
    {
        long at = set.GetFieldContainer()->GoFirst();
        IField* field = nullptr;
        for (std::size_t i = 0; i <= index && at >= 0; ++i)
            field = set.GetFieldContainer()->GetNext(at);
        return field;
    }
    static void Click(QWidget* strip, QPoint press, QPoint release)
    {
        QMouseEvent down(QEvent::MouseButtonPress, press, strip->mapToGlobal(press), Qt::LeftButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(strip, &down);
        QMouseEvent up(QEvent::MouseButtonRelease, release, strip->mapToGlobal(release), Qt::LeftButton, Qt::NoButton,
                       Qt::NoModifier);
        QApplication::sendEvent(strip, &up);
    }

    std::shared_ptr<TSimulatedNetwork> network;
    FakeForm form;
    IContainer* container = nullptr;
};

TEST_F(SetOfFieldTest, TheAddButtonGrowsTheSetWithIdsNeverReused)
{
    auto set = States();
    set->GetAddButton()->click();
    set->GetAddButton()->click();
    EXPECT_THAT(Ids(*set), ElementsAre(1, 2));
    set->RemoveField(1);
    set->GetAddButton()->click();
    EXPECT_THAT(Ids(*set), ElementsAre(2, 3)) << "a removed id is not given again";
    EXPECT_TRUE(Element(*set, 0)->IsSetOfElement());
    EXPECT_FALSE(set->GetAddButton()->accessibleName().isEmpty());

    auto fixed = States(ZED_ACCESS_READ_ONLY);
    fixed->OnClicked();
    EXPECT_EQ(fixed->GetFieldContainer()->GetCount(), 0u) << "a read-only set is not grown by the operator";
    EXPECT_FALSE(fixed->GetAddButton()->isEnabled());
}

TEST_F(SetOfFieldTest, ARemoveButtonRemovesOnlyWhenPressedAndReleasedOnIt)
{
    auto set = States();
    for (int i = 0; i < 3; ++i)
        set->CreateNewField();
    set->SizeHasChanged();
    IFieldSetOfButtonMap* strip = set->GetButtonMap();
    const QRect first = strip->ButtonOf(*Element(*set, 0));
    const QRect second = strip->ButtonOf(*Element(*set, 1));
    EXPECT_EQ(first.size(), QSize(15, 15));
    Click(strip, first.center(), second.center());
    EXPECT_EQ(set->GetFieldContainer()->GetCount(), 3u) << "released over another button: nothing";
    Click(strip, second.center(), second.center());
    EXPECT_THAT(Ids(*set), ElementsAre(1, 3));

    // From the keyboard: Down to the second element, Delete.
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QApplication::sendEvent(strip, &down);
    QKeyEvent remove(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
    QApplication::sendEvent(strip, &remove);
    EXPECT_THAT(Ids(*set), ElementsAre(1));
    EXPECT_EQ(strip->focusPolicy(), Qt::TabFocus);
}

TEST_F(SetOfFieldTest, AValueGrowsOrShrinksTheSetAndComesBack)
{
    auto set = States();
    std::string error;
    TValuePtr two = ZEDParseValue(*Dictionary().FindType("AdminSequence"), R"(["Locked", "Unlocked"])", 9, {}, &error);
    ASSERT_NE(two, nullptr) << error;
    set->SetValue(*two);
    EXPECT_EQ(set->GetFieldContainer()->GetCount(), 2u);
    std::string text;
    set->GetValue(text);
    EXPECT_EQ(text, "{Locked,Unlocked}");
    std::unique_ptr<TValue> back = set->GetTValue(false);
    ASSERT_EQ(back->GetDatatype(), ZED_DT_SEQUENCEOF) << "a sequence stays a sequence";
    const auto* asSet = dynamic_cast<const TSetOf*>(back.get());
    ASSERT_NE(asSet, nullptr) << "a set-of field gives a TSetOf, for a sequence type too";
    EXPECT_TRUE(typeid(*asSet) == typeid(TSetOf)) << typeid(*asSet).name();
    EXPECT_TRUE(asSet->IsSequence());
    EXPECT_EQ(back->ToString(), two->ToString());
    EXPECT_EQ(back->GetID(), 9u);

    TValuePtr none = ZEDParseValue(*Dictionary().FindType("AdminSequence"), "[]", 9, {}, &error);
    set->SetValue(*none);
    EXPECT_EQ(set->GetFieldContainer()->GetCount(), 0u);
    set->GetValue(text);
    EXPECT_EQ(text, "{}");
    std::string request = "untouched";
    set->GetPartialRequest(request);
    EXPECT_EQ(request, "untouched");
}

TEST_F(SetOfFieldTest, ElementsReachTheirSetThroughTheFieldAndItsMenu)
{
    auto set = States();
    set->CreateNewField();
    IField* element = Element(*set, 0);
    auto* control = dynamic_cast<IControlBase*>(element->GetWindow());
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->GetPopupMode(), 3u) << "set-of entries in an element's menu";
    control->OnCommand(KEL_ID_FIELD_ADD_SETOF);
    EXPECT_EQ(set->GetFieldContainer()->GetCount(), 2u);
    control->OnCommand(KEL_ID_FIELD_REMOVE_SET);
    EXPECT_THAT(Ids(*set), ElementsAre(2));
}

TEST_F(SetOfFieldTest, WhatASetCannotDoIsTraced)
{
    auto set = States();
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    set->SetValue(std::string("x"));
    set->SetValue(TUnsigned16(3));
    set->RemoveField(42);
    set->SetToNotReturned();
    set->FillWithConfig("Form");
    EXPECT_THAT(capture.Lines(), ElementsAre(EndsWith("KEL : IFieldSetOf::SetValue string not supported"),
                                             EndsWith("KEL IFieldSetOf::SetValue unknown data type: 34"),
                                             EndsWith("KEL : IFieldContainer::RemoveField 42 not found in container. "),
                                             EndsWith("KEL : IFieldSetOf::RemoveField, id not found"),
                                             EndsWith("KEL : IFieldSetOf::SetToNotReturned, not supported"),
                                             EndsWith("KEL : IFieldSetOf::FillWithConfig not supported")));
}

}  // namespace
