// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/fields/IContainer.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELTrace.h"
#include "support/FieldDoubles.h"
#include "support/TempDir.h"
#include "support/TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

namespace {

constexpr unsigned int kProblems = KEL_TRACE_MODULE | KEL_TRACE_PBLM;

// A form with a configuration context whose user file the test fills, and
// a plain container standing on it, as a form's own lines do.
class FieldTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        setenv("ORVEX_SYSTEM_PATH", system.Path().c_str(), 1);
        setenv("ORVEX_USER_PATH", user.Path().c_str(), 1);
        ASSERT_NE(InitializeKEL("field test"), nullptr);
        context = GetKELapp()->DefineNewContext("TST");
        context->SetUserConfigFile(std::make_unique<IConfiguration>());
        form.context = context;
        container = new IContainer(&form);
    }
    void TearDown() override
    {
        DestroyKEL();
        unsetenv("ORVEX_SYSTEM_PATH");
        unsetenv("ORVEX_USER_PATH");
    }
    std::unique_ptr<CompositeTestField> MakeComposite(IElementInfo info)
    {
        auto composite = std::make_unique<CompositeTestField>(info, container);
        unsigned int id = 1;
        composite->Create(id, info);
        return composite;
    }
    void Set(const std::string& section, const std::string& key, const std::string& value)
    {
        context->GetUserConfigFile()->SetString(section, key, value, 1);
    }

    TempDir system, user;
    KELConfigContext* context = nullptr;
    FakeForm form;
    IContainer* container = nullptr;  // a child of the form
};

TEST_F(FieldTest, TakesIdentityDefaultsAndHelpFromItsElement)
{
    Set("Speed", "Attr:5.Help", "How fast the link runs");
    IElementInfo info = Info(5, 35, "Speed");
    info.SetDefaultAllowed(ZED_DEFAULT_DICTIONARY);
    info.SetDefault("100");
    info.SetAccess(ZED_ACCESS_READ_ONLY);
    TextTestField field(info, container);
    EXPECT_EQ(field.GetID(), 5u);
    EXPECT_EQ(field.GetDT(), 35u);
    EXPECT_EQ(field.DefaultAllowed(), ZED_DEFAULT_DICTIONARY);
    EXPECT_EQ(field.GetDefault(), "100");
    EXPECT_EQ(field.GetHelp(), "How fast the link runs");
    EXPECT_EQ(field.HasHelp(), 1);
    EXPECT_EQ(field.IsReadOnly(), 1);
    EXPECT_EQ(field.ConfigurationContext(), context);

    unsigned int id = 7;
    field.Create(id, info);
    EXPECT_EQ(id, 8u);
    EXPECT_EQ(field.GetWindow()->property(KEL_CONTROL_ID_PROPERTY).toUInt(), 7u);
    EXPECT_EQ(field.GetWindow()->accessibleName(), "Speed");
    const QString described = field.GetWindow()->accessibleDescription();
    EXPECT_TRUE(described.startsWith("How fast the link runs\n\nType: ")) << described.toStdString();
    EXPECT_TRUE(described.contains("Default: 100")) << described.toStdString();
    EXPECT_TRUE(described.endsWith("Access: read-only")) << described.toStdString();

    IElementInfo other = Info(6, 35, "Other");
    other.SetAccess(ZED_ACCESS_READ_WRITE);
    TextTestField plain(other, container);
    EXPECT_EQ(plain.HasHelp(), 0);
    EXPECT_EQ(plain.IsReadOnly(), 0);
}

TEST_F(FieldTest, WithoutAContainerItIsStillBuiltAndSaysSo)
{
    TraceCapture capture(kProblems);
    IElementInfo info = Info(3, 4);
    info.SetDefaultAllowed(ZED_DEFAULT_SERVER);
    TextTestField field(info, nullptr);
    EXPECT_EQ(field.GetID(), 3u);
    EXPECT_EQ(field.GetDT(), 4u);
    EXPECT_EQ(field.DefaultAllowed(), ZED_DEFAULT_SERVER);
    EXPECT_EQ(field.HasHelp(), 0);
    EXPECT_EQ(field.ConfigurationContext(), nullptr);
    EXPECT_EQ(field.GetParentForm(), nullptr);
    ASSERT_EQ(capture.Lines().size(), 1u);
    EXPECT_THAT(capture.Lines()[0], EndsWith("KEL : IField::IField, pParentWnd must be valid !"));
}

TEST_F(FieldTest, MovesOnlyWhenThePlaceChangesAndSaysSoWithoutAWindow)
{
    IElementInfo info = Info(1, 3);
    TextTestField field(info, container);
    TraceCapture capture(kProblems);
    EXPECT_EQ(field.Move(QPoint(0, 0)), QPoint(0, 0));
    EXPECT_EQ(field.Resize(QSize(0, 0)), QSize(0, 0));
    field.MoveAndResize(QPoint(0, 0), QSize(0, 0));
    EXPECT_EQ(capture.Text(), "") << "nothing changed, nothing touched";

    EXPECT_EQ(field.Move(QPoint(4, 5)), QPoint(4, 5));
    EXPECT_EQ(field.Resize(QSize(40, 10)), QSize(40, 10));
    field.MoveAndResize(QPoint(6, 7), QSize(50, 12));
    EXPECT_EQ(field.GetCoordinates(), QPoint(6, 7));
    EXPECT_EQ(field.GetSize(), QSize(50, 12));
    const auto lines = capture.Lines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_THAT(lines[0], EndsWith(" IField::Move, m_pWnd must be valid !"));
    EXPECT_THAT(lines[1], EndsWith(" IField::Resize, m_pWnd must be valid !"));
    EXPECT_THAT(lines[2], EndsWith(" IField::MoveAndResize, m_pWnd must be valid !"));

    unsigned int id = 1;
    field.Create(id, info);
    field.MoveAndResize(QPoint(10, 11), QSize(60, 14));
    EXPECT_EQ(field.GetWindow()->geometry(), QRect(10, 11, 60, 14));
    EXPECT_EQ(capture.Lines().size(), 3u);
}

TEST_F(FieldTest, RevertsToItsInitialValueOrToNullWithoutRecordingIt)
{
    IElementInfo info = Info(1, 3);
    TextTestField field(info, container);
    unsigned int id = 1;
    field.Create(id, info);
    field.SetValue(std::string("typed"));
    EXPECT_FALSE(field.RevertToInitial());
    EXPECT_EQ(field.nulls, 1);
    EXPECT_EQ(field.Text(), "");
    EXPECT_FALSE(field.IsInitialValueSet());

    field.SetInitialValue(std::make_unique<TLatin1String>("first"));
    field.SetInitialValue(std::make_unique<TLatin1String>("second"));
    EXPECT_TRUE(field.IsInitialValueSet());
    EXPECT_EQ(field.InitialValue()->ToString(), "second");
    field.SetValue(std::string("typed"));
    EXPECT_TRUE(field.RevertToInitial());
    EXPECT_EQ(field.Text(), "second");

    EXPECT_TRUE(field.LockInitialValueSet(false));
    EXPECT_FALSE(field.LockInitialValueSet(true));
}

TEST_F(FieldTest, SetToDefaultFollowsThePolicyAndSparesReadOnlyFields)
{
    const auto make = [&](ZED_T_DICT_DEFAULT policy, ZED_T_DICT_ACCESS access) {
        IElementInfo info = Info(1, 3);
        info.SetDefaultAllowed(policy);
        info.SetDefault("42");
        info.SetAccess(access);
        auto field = std::make_unique<TextTestField>(info, container);
        unsigned int id = 1;
        field->Create(id, info);
        field->SetValue(std::string("typed"));
        field->SetToDefault();
        return field;
    };
    EXPECT_EQ(make(ZED_DEFAULT_DICTIONARY, ZED_ACCESS_READ_WRITE)->Text(), "42");
    EXPECT_EQ(make(ZED_DEFAULT_SERVER, ZED_ACCESS_READ_WRITE)->serverDefaults, 1);
    EXPECT_EQ(make(ZED_DEFAULT_NONE, ZED_ACCESS_READ_WRITE)->Text(), "typed");
    EXPECT_EQ(make(7, ZED_ACCESS_READ_WRITE)->Text(), "typed");
    EXPECT_EQ(make(ZED_DEFAULT_DICTIONARY, ZED_ACCESS_READ_ONLY)->Text(), "typed");
    EXPECT_EQ(make(ZED_DEFAULT_SERVER, ZED_ACCESS_READ_ONLY)->serverDefaults, 0);
}

TEST_F(FieldTest, OneTextValuesFollowTheEmptyDefaultAndIdentifierRules)
{
    IElementInfo info = Info(9, 3);
    info.SetDefaultAllowed(ZED_DEFAULT_SERVER);
    info.SetDefault("auto");
    TextTestField field(info, container);
    EXPECT_EQ(field.GetTValue(false), nullptr);
    std::unique_ptr<TValue> empty = field.GetTValue(true);
    ASSERT_NE(empty, nullptr);
    EXPECT_FALSE(empty->IsPresent());
    EXPECT_EQ(empty->GetID(), 9u);
    field.SetValue(std::string("auto"));
    std::unique_ptr<TValue> byServer = field.GetTValue(false);
    EXPECT_TRUE(byServer->IsDefault());
    EXPECT_FALSE(byServer->IsPresent());
    field.SetValue(std::string("fast"));
    std::unique_ptr<TValue> given = field.GetTValue(false);
    EXPECT_EQ(given->ToString(), "fast");
    EXPECT_EQ(given->GetID(), 9u);
    EXPECT_FALSE(given->IsDefault());
}

TEST_F(FieldTest, SetOfEntriesAreAddedAndRemovedThroughTheSetThatHoldsThem)
{
    IElementInfo info = Info(20, 52, "Peers");
    auto composite = std::make_unique<CompositeTestField>(info, container);
    unsigned int id = 1;
    composite->Create(id, info);
    TextTestField* plainMember = composite->Add(1, false);
    TextTestField* element = composite->Add(2, true);

    TraceCapture capture(kProblems);
    plainMember->AddNewInSet();
    plainMember->RemoveFromSet();
    EXPECT_EQ(composite->Container().GetCount(), 2u) << "a field that is no element does nothing";
    EXPECT_EQ(capture.Text(), "");

    element->AddNewInSet();
    EXPECT_EQ(composite->Container().GetCount(), 3u);
    EXPECT_EQ(composite->sizeChanges, 1) << "the set lays itself out again";
    element->RemoveFromSet();
    EXPECT_EQ(composite->Container().GetCount(), 2u);
    EXPECT_EQ(capture.Text(), "");

    IElementInfo loose = Info(4, 3);
    loose.SetIsSetOfElement(1);
    TextTestField orphan(loose, nullptr);
    TextTestField onForm(loose, container);
    IFieldContainer parentless(nullptr, container);
    TextTestField inParentless(loose, &parentless);
    capture.Clear();
    orphan.AddNewInSet();
    onForm.RemoveFromSet();
    inParentless.AddNewInSet();
    inParentless.RemoveFromSet();
    EXPECT_THAT(capture.Lines(), ElementsAre(EndsWith("KEL : IField::AddNewInSet, container field parent is NULL"),
                                             EndsWith("KEL : IField::RemoveFromSet, container field parent is NULL"),
                                             EndsWith("KEL : IField::AddNewInSet, SetOf field parent is NULL"),
                                             EndsWith("KEL : IField::RemoveFromSet, SetOf field parent is NULL")));
}

TEST_F(FieldTest, ContainerFindsTheFormAndItsContextThroughItsParents)
{
    EXPECT_EQ(container->GetFormContext(), &form);
    EXPECT_EQ(container->GetConfigContext(), context);
    IContainer loose;
    EXPECT_EQ(loose.GetFormContext(), nullptr);
    EXPECT_EQ(loose.GetConfigContext(), nullptr);

    QLineEdit control;
    container->AddToolTip(&control, "Unsigned32");
    EXPECT_EQ(control.toolTip(), "Unsigned32");
    GetKELapp()->EnableTootip(0);
    container->AddToolTip(&control, "Unsigned32");
    EXPECT_EQ(control.toolTip(), "");
}

// ---- the field container ------------------------------------------------

TEST_F(FieldTest, ContainerStacksFieldsWithIndentationAndAGapWhereItDecreases)
{
    auto owner = MakeComposite(Info(1, 13));
    CompositeTestField& composite = *owner;
    IFieldContainer& fields = composite.Container();
    fields.SetIndentStep(30);
    TextTestField* a = composite.Add(1, false);
    TextTestField* b = composite.Add(2, false);
    TextTestField* c = composite.Add(3, false);
    b->SetIndent(1);
    b->Resize(QSize(200, 30));
    fields.PlaceElements();
    EXPECT_EQ(a->GetCoordinates(), QPoint(0, 1));
    EXPECT_EQ(b->GetCoordinates(), QPoint(30, 1 + 20 + 2));
    EXPECT_EQ(c->GetCoordinates(), QPoint(0, 1 + 20 + 2 + 30 + 2 + 10));
    EXPECT_EQ(c->GetWindow()->geometry(), QRect(0, 65, 120, 20));
    QSize size;
    fields.ComputeSize(size);
    EXPECT_EQ(size, QSize(230, 65 + 20 + 2));

    fields.SetIndentStep(-5);
    fields.PlaceElements();
    EXPECT_EQ(b->GetCoordinates().x(), 1) << "a negative place becomes 1";

    IFieldContainer empty(&composite, container);
    empty.ComputeSize(size);
    EXPECT_EQ(size, QSize(0, 0));
}

TEST_F(FieldTest, ContainerKeepsItsPlaceForItsOwnerAndTellsItOfSizeChanges)
{
    auto owner = MakeComposite(Info(1, 13));
    CompositeTestField& composite = *owner;
    IFieldContainer& fields = composite.Container();
    const QRect before = fields.geometry();
    fields.MoveAndResize(QPoint(40, 50), QSize(300, 200));
    EXPECT_EQ(fields.GetPosition(), QPoint(40, 50));
    EXPECT_EQ(fields.GetContainerSize(), QSize(300, 200));
    EXPECT_EQ(fields.geometry(), before) << "the owning field places the window itself";

    composite.Add(1, false);
    fields.SizeHasChanged();
    EXPECT_EQ(fields.GetContainerSize().height(), 1 + 20 + 2);
    EXPECT_EQ(composite.sizeChanges, 1);
}

TEST_F(FieldTest, ContainerRemovesTheFirstMatchAndTracesWhatItCannotDo)
{
    auto owner = MakeComposite(Info(1, 13));
    CompositeTestField& composite = *owner;
    IFieldContainer& fields = composite.Container();
    TextTestField* first = composite.Add(5, false);
    TextTestField* second = composite.Add(5, false);
    std::unique_ptr<IField> removed = fields.RemoveField(5);
    EXPECT_EQ(removed.get(), first) << "handed back, not destroyed";
    long position = fields.GoFirst();
    EXPECT_EQ(fields.GetNext(position), second);
    EXPECT_EQ(position, -1);

    TraceCapture capture(kProblems);
    EXPECT_EQ(fields.RemoveField(9), nullptr);
    fields.InsertField(std::unique_ptr<IField>());
    EXPECT_EQ(fields.GetCount(), 1u);
    IFieldContainer orphan(nullptr);
    EXPECT_THAT(capture.Lines(),
                ElementsAre(EndsWith("KEL : IFieldContainer::RemoveField 9 not found in container. "),
                            EndsWith("KEL : IFieldContainer::InsertField pField must be valid !"),
                            EndsWith("KEL : IFieldContainer::IFieldContainer : pParent must be valid")));
    fields.ClearAndDestroy();
    EXPECT_EQ(fields.GetCount(), 0u);
}

TEST_F(FieldTest, ContainerReadsItsMinimumWidthAndMenuModeFromItsOwner)
{
    IElementInfo info = Info(1, 13);
    CompositeTestField plain(info, container);
    unsigned int id = 1;
    plain.Create(id, info);
    EXPECT_EQ(plain.Container().GetMinWidth(), 600);
    EXPECT_EQ(plain.Container().GetPopupMode(), 1u);

    Set("Presentation Form", "MinWidth", "720");
    IElementInfo element = Info(2, 13);
    element.SetIsSetOfElement(1);
    CompositeTestField inSet(element, container);
    inSet.Create(id, element);
    EXPECT_EQ(inSet.Container().GetMinWidth(), 720);
    EXPECT_EQ(inSet.Container().GetPopupMode(), 3u);
}

TEST_F(FieldTest, ControlIdsCountPerContainerAcrossNestedFields)
{
    IElementInfo info = Info(1, 13);
    unsigned int formCounter = 1;
    TextTestField before(info, container, 2);
    before.Create(formCounter, info);
    CompositeTestField composite(info, container);
    composite.Create(formCounter, info);
    TextTestField after(info, container);
    after.Create(formCounter, info);
    EXPECT_EQ(before.GetWindow()->property(KEL_CONTROL_ID_PROPERTY).toUInt(), 1u);
    EXPECT_EQ(composite.GetWindow()->property(KEL_CONTROL_ID_PROPERTY).toUInt(), 3u);
    EXPECT_EQ(after.GetWindow()->property(KEL_CONTROL_ID_PROPERTY).toUInt(), 4u);
    EXPECT_EQ(formCounter, 5u);

    // The composite's members count in their own container, from 1.
    TextTestField* one = composite.Add(1, false);
    TextTestField* two = composite.Add(2, false);
    EXPECT_EQ(one->GetWindow()->property(KEL_CONTROL_ID_PROPERTY).toUInt(), 1u);
    EXPECT_EQ(two->GetWindow()->property(KEL_CONTROL_ID_PROPERTY).toUInt(), 2u);
    EXPECT_EQ(composite.Container().NextControlId(), 3u);
}

}  // namespace
