// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/IControlDateTime.h"
#include "kel/fields/IFieldAttribute.h"
#include "kel/fields/IFieldBuilder.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/fields/IFieldEdit.h"
#include "kel/fields/IFieldRecord.h"
#include "kel/fields/IFieldDateTime.h"
#include "kel/fields/IFieldLaunch.h"
#include "kel/fields/IFieldNotSupported.h"
#include "kel/fields/IFieldUnit.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELLaunch.h"
#include "support/FieldDoubles.h"
#include "support/TempDir.h"
#include "support/WaitFor.h"
#include "support/TraceCapture.h"
#include "kel/frame/KELTrace.h"
#include "zed/dict/TDictType.h"

#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

namespace {

class FieldBuilderTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_NE(InitializeKEL("builder test"), nullptr);
        container = new IContainer(&form);
        form.entity = TEntitySpec("#1 core #2 r1 #3 eth0");
        form.directive = 11;
    }
    void TearDown() override
    {
        DestroyKEL();
        unsetenv("ORVEX_LAUNCH_FILE");
        KELLaunch::Unload();
    }
    std::unique_ptr<IField> Build(IContainer* where, IElementInfo info, unsigned int& id)
    {
        return IFieldBuilder::CreateField(where, id, info);
    }
    // One application registered for the form's entity class, directive 11, element 3.
    void Register(const std::string& command)
    {
        TempDir::Write(registrations / "OrvexLaunch.cfg",
                       "[ Launch : Trace route ]\n    Class = 1.2.3\n    Directive = 11\n    Element = 3\n"
                       "    Command = "
                           + command + "\n[ End Launch : Trace route ]\n");
        setenv("ORVEX_LAUNCH_FILE", (registrations / "OrvexLaunch.cfg").c_str(), 1);
    }

    FakeForm form;
    IContainer* container = nullptr;
    TempDir registrations;
};

TEST_F(FieldBuilderTest, ChoosesTheKindByDataTypeAndAdvancesTheCounter)
{
    unsigned int id = 1;
    IElementInfo time = Info(1, 47);
    time.SetAccess(ZED_ACCESS_READ_WRITE);
    auto editable = Build(container, time, id);
    EXPECT_NE(dynamic_cast<IFieldDateTime*>(editable.get()), nullptr);
    time.SetAccess(ZED_ACCESS_READ_ONLY);
    auto shown = Build(container, time, id);
    EXPECT_EQ(dynamic_cast<IFieldDateTime*>(shown.get()), nullptr) << "a read-only time is shown as text";
    EXPECT_EQ(id, 3u);
    for (unsigned int dt : {0u, 14u, 84u, 999u, 4294967295u}) {
        auto field = Build(container, Info(1, dt), id);
        auto* placeholder = dynamic_cast<IFieldNotSupported*>(field.get());
        ASSERT_NE(placeholder, nullptr) << dt;
        EXPECT_TRUE(static_cast<QLineEdit*>(field->GetWindow())->isReadOnly());
        EXPECT_EQ(field->GetTValue(true), nullptr) << "a placeholder has no value of its own";
        field->SetValue(TUnsigned32(7));
        std::string text;
        field->GetValue(text);
        EXPECT_EQ(text, "7");
        std::unique_ptr<TValue> back = field->GetTValue(false);
        ASSERT_NE(back, nullptr) << "what it was given goes back unchanged";
        EXPECT_EQ(back->ToString(), "7");
        EXPECT_EQ(back->GetID(), 1u);
        field->SetToNullValue();
        EXPECT_EQ(field->GetTValue(true), nullptr);
    }
}

TEST_F(FieldBuilderTest, DateTimeShowsTheGivenFormatAndGivesTimesBack)
{
    unsigned int id = 1;
    IElementInfo info = Info(4, 47);
    info.SetDefaultAllowed(ZED_DEFAULT_SERVER);
    info.SetDefault("(no default)");
    auto field = Build(container, info, id);
    auto* edit = static_cast<IControlDateTime*>(field->GetWindow());
    EXPECT_STREQ(IFieldDateTime::kDisplayFormat, "MM/dd/yyy HH:mm:ss");
    EXPECT_EQ(edit->GetFormat(), "MM/dd/yyyy HH:mm:ss") << "three y: the full year";
    EXPECT_EQ(IFieldDateTime::QtDisplayFormat("yy.yyy.yyyy"), "yy.yyyy.yyyy");
    EXPECT_EQ(field->GetTValue(false), nullptr) << "a new field has no value";

    field->SetValue(std::string("2026-03-01 12:30:05"));
    std::unique_ptr<TValue> value = field->GetTValue(false);
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->GetDatatype(), ZED_DT_ABSTIME);
    EXPECT_EQ(value->GetID(), 4u);
    EXPECT_EQ(value->ToString(), "2026-03-01 12:30:05");
    EXPECT_EQ(edit->text(), "03/01/2026 12:30:05");

    field->SetValue(std::string("not a time"));
    EXPECT_EQ(field->GetTValue(false)->ToString(), "2026-03-01 12:30:05") << "a bad text leaves the field as it was";
    EXPECT_TRUE(field->SetToServerDefault());
    EXPECT_TRUE(field->GetTValue(false)->IsDefault());
    field->SetToNotReturned();
    EXPECT_EQ(edit->ShownText(), "<not returned>");
    EXPECT_EQ(field->GetTValue(false), nullptr);
}

TEST_F(FieldBuilderTest, UnitsStandAsALabelOfTheirWidth)
{
    IElementInfo info = Info(2, 35);
    info.SetUnits("kbit/s");
    IFieldUnit units(info, container);
    unsigned int id = 1;
    units.Create(id, info);
    EXPECT_EQ(static_cast<QLabel*>(units.GetWindow())->text(), "kbit/s");
    EXPECT_GT(units.GetSize().width(), 20);
    EXPECT_EQ(units.GetTValue(true), nullptr);
}

TEST_F(FieldBuilderTest, ARegisteredApplicationTakesAFormsOwnLineFirst)
{
    unsigned int id = 1;
    const auto isLaunch = [](const std::unique_ptr<IField>& field) {
        return dynamic_cast<IFieldLaunch*>(field.get()) != nullptr;
    };
    EXPECT_FALSE(isLaunch(Build(container, Info(3, 35), id))) << "nothing registered yet";

    const std::string started = registrations / "started.txt";
    Register("echo \"$ORVEX_LAUNCH_ENTITY|$ORVEX_LAUNCH_CLASS|$ORVEX_LAUNCH_DIRECTIVE|$ORVEX_LAUNCH_ELEMENT\" > '"
             + started + "'");
    auto launch = Build(container, Info(3, 35), id);
    ASSERT_TRUE(isLaunch(launch));
    EXPECT_EQ(static_cast<QPushButton*>(launch->GetWindow())->text(), "Trace route");
    EXPECT_FALSE(isLaunch(Build(container, Info(4, 35), id))) << "another element";
    IElementInfo readOnly = Info(3, 35);
    readOnly.SetAccess(ZED_ACCESS_READ_ONLY);
    EXPECT_FALSE(isLaunch(Build(container, readOnly, id)));
    IElementInfo composite = Info(9, 13);
    CompositeTestField owner(composite, container);
    owner.Create(id, composite);
    EXPECT_FALSE(isLaunch(Build(&owner.Container(), Info(3, 35), id))) << "only a form's own line";
    IContainer formless;
    EXPECT_FALSE(isLaunch(Build(&formless, Info(3, 35), id)));

    static_cast<QPushButton*>(launch->GetWindow())->click();
    std::string text;
    WaitFor([&] { return !(text = TempDir::Read(started)).empty(); });
    EXPECT_EQ(text, form.entity.ToString() + "|1.2.3|11|3\n");
}

TEST_F(FieldBuilderTest, AnAttributeListIsEditedOnlyWhereAnOperatorFillsItIn)
{
    unsigned int id = 1;
    const auto isList = [](const std::unique_ptr<IField>& field) {
        return dynamic_cast<IFieldAttrList*>(field.get()) != nullptr;
    };
    EXPECT_TRUE(isList(Build(container, Info(3, ZED_DT_ATTRIBUTELIST), id))) << "a form's own writable line";
    IElementInfo readOnly = Info(3, ZED_DT_ATTRIBUTELIST);
    readOnly.SetAccess(ZED_ACCESS_READ_ONLY);
    IElementInfo composite = Info(9, ZED_DT_RECORD);
    CompositeTestField owner(composite, container);
    owner.Create(id, composite);
    IContainer formless;
    for (IContainer* where : {container, static_cast<IContainer*>(&owner.Container()), &formless}) {
        auto shown = Build(where, where == container ? readOnly : Info(3, ZED_DT_ATTRIBUTELIST), id);
        EXPECT_NE(dynamic_cast<IFieldEdit*>(shown.get()), nullptr) << "elsewhere it is the table's text field";
    }
}

TEST_F(FieldBuilderTest, ATypeNestedBeyondAnyDictionaryEndsInPlaceholders)
{
    TDictTypePtr type = std::make_shared<const TDictType>(ZED_DT_INTEGER32, "Integer32", "Integer32", ZED_DT_INTEGER32);
    for (unsigned int level = 0; level < 300; ++level)
        type = std::make_shared<const TDictTypeRecord>(
            1000 + level, "Level", "Level", std::vector<TDictTypeRecord::Member>{{1, "Inner", "Inner", type}});
    IElementInfo info = Info(1, ZED_DT_RECORD);
    info.SetHasDictType(1);
    info.SetDictType(*type);
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    unsigned int id = 1;
    auto field = Build(container, info, id);
    ASSERT_NE(dynamic_cast<IFieldRecord*>(field.get()), nullptr);
    EXPECT_NE(capture.Text().find("KEL : IFieldBuilder::CreateField, fields nest deeper than 128 levels"),
              std::string::npos);
    // Counted by dynamic type: the containers carry no meta-object of their own.
    const QList<QWidget*> windows = field->GetWindow()->findChildren<QWidget*>();
    const auto records = 1 + std::count_if(windows.begin(), windows.end(), [](QWidget* window) {
                             return dynamic_cast<IFieldContainer*>(window) != nullptr;
                         });
    EXPECT_EQ(records, 128) << "building stops at the limit";
}

TEST_F(FieldBuilderTest, WithoutThePluginThereIsNothingToLaunch)
{
    setenv("KEL_LAUNCH", "/nonexistent/libOrvexLaunch.so", 1);
    KELLaunch::Unload();
    Register("true");
    unsigned int id = 1;
    auto field = Build(container, Info(3, 35), id);
    EXPECT_EQ(dynamic_cast<IFieldLaunch*>(field.get()), nullptr);
    EXPECT_FALSE(KELLaunch::IsAvailable());
    std::string error;
    EXPECT_FALSE(KELLaunch::Start(form.entity, 11, 3, 0, &error));
    EXPECT_EQ(error, "no launch plugin");
    unsetenv("KEL_LAUNCH");
}

}  // namespace
