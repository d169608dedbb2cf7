// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldAttribute.h"
#include "kel/fields/IFieldBuilder.h"
#include "kel/fields/IFieldCombo.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/fields/IFieldNumeric.h"
#include "kel/fields/IFieldRecord.h"
#include "kel/fields/IFieldSetOf.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELTrace.h"
#include "support/TraceCapture.h"
#include "support/FieldDoubles.h"
#include "support/ShippedNetwork.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TValueParser.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

namespace {

class AttributeFieldTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        network = InstallShippedNetwork();
        ASSERT_NE(InitializeKEL("attribute test"), nullptr);
        container = new IContainer(&form);
    }
    void TearDown() override { DestroyKEL(); }

    template <class Kind>
    std::unique_ptr<Kind> Make(unsigned int dt, const char* entity = "Network core Router r1")
    {
        IElementInfo info(TEntitySpec(entity), "Watched", "");
        info.SetID(5);
        info.SetDT(dt);
        unsigned int id = 1;
        std::unique_ptr<IField> field = IFieldBuilder::CreateField(container, id, info);
        auto* kind = dynamic_cast<Kind*>(field.get());
        EXPECT_NE(kind, nullptr) << dt;
        field.release();
        return std::unique_ptr<Kind>(kind);
    }
    TValuePtr Parse(const char* type, const char* json)
    {
        std::string error;
        TValuePtr value =
            ZEDParseValue(*Dictionary().FindType(type), json, 5,
                          {&Dictionary(), Dictionary().FindClass(std::vector<unsigned int>{1, 2})}, &error);
        EXPECT_NE(value, nullptr) << error;
        return value;
    }

    std::shared_ptr<TSimulatedNetwork> network;
    FakeForm form;
    IContainer* container = nullptr;
};

TEST_F(AttributeFieldTest, TheValueFieldFollowsTheTypeOfEachValue)
{
    auto attribute = Make<IFieldAttribute>(ZED_DT_ATTRIBUTE);
    EXPECT_EQ(attribute->GetValueField(), nullptr);
    std::unique_ptr<TValue> bare = attribute->GetTValue(false);
    ASSERT_EQ(bare->GetDatatype(), ZED_DT_ATTRIBUTE);
    EXPECT_FALSE(static_cast<TAttribute&>(*bare).HasValue()) << "an identifier and no value";

    attribute->SetValue(*Parse("Attribute", R"({"attribute": "Priority", "value": 3})"));
    EXPECT_NE(dynamic_cast<IFieldInteger16*>(attribute->GetValueField()), nullptr);
    const int small = attribute->GetSize().height();
    std::string text;
    attribute->GetValue(text);
    EXPECT_EQ(text, "Priority = 3");

    attribute->SetValue(*Parse("Attribute", R"({"attribute": "Location", "value": {"Site": "Hall C"}})"));
    EXPECT_NE(dynamic_cast<IFieldRecord*>(attribute->GetValueField()), nullptr) << "replaced by the new type's field";
    EXPECT_GT(attribute->GetSize().height(), small) << "the field grows around it";
    std::unique_ptr<TValue> back = attribute->GetTValue(false);
    const auto& got = static_cast<TAttribute&>(*back);
    EXPECT_EQ(got.GetAttributeID().GetValue(), 8u) << "the identifier is read by name within the entity's class";
    EXPECT_EQ(got.GetID(), 5u);

    EXPECT_FALSE(attribute->SetToServerDefault()) << "no server default of its own";
    EXPECT_EQ(attribute->GetValueField(), nullptr) << "only the identifier is left";
    EXPECT_EQ(attribute->GetSize().height(), attribute->GetIDField()->GetSize().height() + 3);
}

TEST_F(AttributeFieldTest, AListGrowsAndShrinksToItsValue)
{
    auto list = Make<IFieldAttrList>(ZED_DT_ATTRIBUTELIST);
    list->SetValue(*Parse("AttributeList", R"({"Priority": 3, "AdminState": "Locked"})"));
    EXPECT_EQ(list->GetFieldContainer()->GetCount(), 2u);
    std::string text;
    list->GetValue(text);
    EXPECT_EQ(text, "{AdminState = Locked,Priority = 3}");
    std::unique_ptr<TValue> back = list->GetTValue(false);
    ASSERT_EQ(back->GetDatatype(), ZED_DT_ATTRIBUTELIST);
    EXPECT_EQ(back->ToString(), "{ AdminState = Locked, Priority = 3 }");

    list->SetValue(*Parse("AttributeList", R"({"Priority": 4})"));
    EXPECT_EQ(list->GetFieldContainer()->GetCount(), 1u);
    list->CreateNewField();
    EXPECT_EQ(list->GetFieldContainer()->GetCount(), 2u);
}

// A record, set, attribute and attribute list each keep what they hold when a
// value of another kind arrives, and say why in the trace.
TEST_F(AttributeFieldTest, AValueOfTheWrongTypeLeavesEachCompositeAsItWas)
{
    struct Case {
        std::unique_ptr<IField> field;
        const char* type;
        const char* json;
        const char* trace;
    };
    const auto field = [&](unsigned int dt, const char* type) {
        IElementInfo info(TEntitySpec("Network core Router r1"), "Watched", "");
        info.SetID(5);
        info.SetDT(dt);
        info.SetHasDictType(1);
        info.SetDictType(*Dictionary().FindType(type));
        unsigned int id = 1;
        return IFieldBuilder::CreateField(container, id, info);
    };
    Case cases[] = {
        {field(ZED_DT_RECORD, "PeerAddress"), "PeerAddress", R"({"Host": "a", "Port": 7, "Transport": "Udp"})",
         "KEL Exception catched : IFieldRecord::SetValue failed : "},
        {field(ZED_DT_SETOF, "VlanList"), "VlanList", "[1, 2, 3]", "KEL IFieldSetOf::SetValue unknown data type: 34"},
        {field(ZED_DT_ATTRIBUTE, "Attribute"), "Attribute", R"({"attribute": "Priority", "value": 3})",
         "KEL Exception catched : IFieldAttribute::SetValue failed : "},
        {field(ZED_DT_ATTRIBUTELIST, "AttributeList"), "AttributeList", R"({"Priority": 3})",
         "KEL Exception catched : IFieldAttrList::SetValue failed : "},
    };
    for (Case& c : cases) {
        ASSERT_NE(c.field, nullptr) << c.type;
        c.field->SetValue(*Parse(c.type, c.json));
        std::string before;
        c.field->GetValue(before);
        const int height = c.field->GetSize().height();
        TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM | KEL_TRACE_EXCP);
        c.field->SetValue(TUnsigned16(9));
        EXPECT_NE(capture.Text().find(c.trace), std::string::npos) << c.type << ": " << capture.Text();
        std::string after;
        c.field->GetValue(after);
        EXPECT_EQ(after, before) << c.type;
        EXPECT_EQ(c.field->GetSize().height(), height) << c.type;
    }
}

TEST_F(AttributeFieldTest, AnIdentifierIsEnteredAsText)
{
    auto id = Make<IFieldAttributeID>(ZED_DT_ATTRIBUTEID);
    id->SetValue(TAttributeID(12, "Priority"));
    std::string text;
    id->GetValue(text);
    EXPECT_EQ(text, "Priority");
}

}  // namespace

namespace {

// An operator adds an attribute, names it and types its value; the list shows
// its own name, as its line has no label.
TEST_F(AttributeFieldTest, AnAttributeListIsFilledAttributeByAttributeFromTheKeyboard)
{
    auto list = Make<IFieldAttrList>(ZED_DT_ATTRIBUTELIST);
    ASSERT_NE(list->GetCaption(), nullptr);
    EXPECT_EQ(list->GetCaption()->text(), "Watched :");
    ASSERT_NE(list->GetAddButton(), nullptr);
    list->GetAddButton()->click();
    ASSERT_EQ(list->GetFieldContainer()->GetCount(), 1u);
    long at = list->GetFieldContainer()->GoFirst();
    auto* attribute = dynamic_cast<IFieldAttribute*>(list->GetFieldContainer()->GetNext(at));
    ASSERT_NE(attribute, nullptr);
    auto* name = static_cast<QLineEdit*>(attribute->GetIDField()->GetWindow());
    QTest::keyClicks(name, "Priority");
    QTest::keyClick(name, Qt::Key_Return);
    IField* value = attribute->GetValueField();
    ASSERT_NE(dynamic_cast<IFieldInteger16*>(value), nullptr) << "a field of the attribute's type";
    EXPECT_FALSE(value->IsReadOnly()) << "to be typed into";
    QTest::keyClicks(value->GetWindow(), "7");
    std::string text;
    list->GetValue(text);
    EXPECT_EQ(text, "{Priority = 7}");
    EXPECT_EQ(list->GetTValue(false)->ToString(), "{ Priority = 7 }");

    // Entered again, the same name keeps what was typed; an unknown one keeps the field.
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(attribute->GetValueField(), value);
    name->setText("Nonsense");
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(attribute->GetValueField(), value);
    // A value that arrived is shown as designed, read-only; naming it again makes it editable.
    attribute->SetValue(*Parse("Attribute", R"({"attribute": "Priority", "value": 3})"));
    EXPECT_TRUE(attribute->GetValueField()->IsReadOnly());
    QTest::keyClick(name, Qt::Key_Return);
    ASSERT_NE(attribute->GetValueField(), nullptr);
    EXPECT_FALSE(attribute->GetValueField()->IsReadOnly());
    attribute->GetValueField()->GetValue(text);
    EXPECT_EQ(text, "3") << "the value it had goes into the field to edit";

    // An attribute of a user type is edited as its base and goes as the user type.
    auto onInterface = Make<IFieldAttribute>(ZED_DT_ATTRIBUTE, "Network core Router r1 Interface eth0");
    auto* duplex = static_cast<QLineEdit*>(onInterface->GetIDField()->GetWindow());
    QTest::keyClicks(duplex, "Duplex");
    QTest::keyClick(duplex, Qt::Key_Return);
    ASSERT_NE(dynamic_cast<IFieldCombo*>(onInterface->GetValueField()), nullptr);
    onInterface->GetValueField()->SetValue(std::string("Full"));
    std::unique_ptr<TValue> sent = onInterface->GetTValue(false);
    const TValue& inner = static_cast<const TAttribute&>(*sent).GetValue();
    EXPECT_EQ(inner.GetDatatype(), ZED_DT_USERDEFINED);
    EXPECT_EQ(inner.ToString(), "Full");
}

// Without their container or parent window, the layout operations of a set
// and an attribute list each say so with their own names.
TEST_F(AttributeFieldTest, LayoutWithoutItsPartsIsTracedWithEachOperationsName)
{
    for (unsigned int dt : {ZED_DT_ATTRIBUTELIST, ZED_DT_SETOF}) {
        IElementInfo info(TEntitySpec("Network core Router r1"), "Watched", "");
        info.SetDT(dt);
        std::unique_ptr<IField> orphan = dt == ZED_DT_SETOF
                                             ? std::unique_ptr<IField>(std::make_unique<IFieldSetOf>(info, nullptr))
                                             : std::make_unique<IFieldAttrList>(info, nullptr);
        const std::string kind = dt == ZED_DT_SETOF ? "IFieldSetOf" : "IFieldAttrList";
        TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
        orphan->SizeHasChanged();
        orphan->Move(QPoint(3, 4));
        orphan->Resize(QSize(5, 6));
        orphan->MoveAndResize(QPoint(1, 1), QSize(2, 2));
        std::vector<std::string> said;
        for (const std::string& line : capture.Lines())
            said.push_back(line.substr(line.find("KEL : ")));
        const std::string tail = ", m_pFieldContainer or m_pParentWnd must be valid !";
        EXPECT_EQ(said, (std::vector<std::string>{
                            "KEL : " + kind + "::SizeHasChanged" + tail, "KEL : " + kind + "::Move" + tail,
                            "KEL : " + kind + "::Resize" + tail, "KEL : " + kind + "::MoveAndResize" + tail}));
    }
}

}  // namespace
