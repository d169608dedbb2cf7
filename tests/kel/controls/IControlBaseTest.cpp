// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/controls/IControlBase.h"
#include "kel/controls/IControlContainer.h"
#include "kel/controls/KELFormLineLayout.h"
#include "kel/fields/IFieldUnit.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/IHelpDialog.h"
#include "kel/frame/KELLaunch.h"
#include "kel/frame/KELTrace.h"
#include "support/FieldDoubles.h"
#include "support/TempDir.h"
#include "support/TraceCapture.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::ElementsAre;
using ::testing::EndsWith;

namespace {

// The command ids of a menu in order, 0 for a separator, a minus for a greyed entry.
std::vector<int> Entries(const QMenu& menu)
{
    std::vector<int> entries;
    for (const QAction* action : menu.actions()) {
        const int id = action->isSeparator() ? 0 : static_cast<int>(action->data().toUInt());
        entries.push_back(action->isEnabled() ? id : -id);
    }
    return entries;
}

class ControlTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_NE(InitializeKEL("control test"), nullptr);
        context = GetKELapp()->DefineNewContext("TST");
        context->SetUserConfigFile(std::make_unique<IConfiguration>());
        form.context = context;
        form.entity = TEntitySpec("#1 core #2 r1");
        form.directive = 11;
        container = new IContainer(&form);
    }
    void TearDown() override
    {
        DestroyKEL();
        unsetenv("ORVEX_LAUNCH_FILE");
    }
    std::unique_ptr<TextTestField> Field(ZED_T_DICT_DEFAULT policy, ZED_T_DICT_ACCESS access, bool help,
                                         int setElement = 0)
    {
        context->GetUserConfigFile()->SetString("Helped", "Attr:5.Help", "Some help", 1);
        IElementInfo info = Info(5, 3, help ? "Helped" : "Plain");
        info.SetDefaultAllowed(policy);
        info.SetAccess(access);
        info.SetIsSetOfElement(setElement);
        auto field = std::make_unique<TextTestField>(info, container);
        unsigned int id = 1;
        field->Create(id, info);
        return field;
    }
    static IControlBase& Control(IField& field) { return *dynamic_cast<IControlBase*>(field.GetWindow()); }
    std::vector<int> MenuOf(IField& field)
    {
        std::unique_ptr<QMenu> menu = Control(field).BuildFieldPopupMenu(field.GetWindow());
        return menu ? Entries(*menu) : std::vector<int>{-1};
    }

    KELConfigContext* context = nullptr;
    FakeForm form;
    IContainer* container = nullptr;
    TempDir registrations;
};

TEST_F(ControlTest, MenuHoldsCommonDefaultAndSingleFieldEntriesEnabledByState)
{
    EXPECT_THAT(MenuOf(*Field(ZED_DEFAULT_DICTIONARY, ZED_ACCESS_READ_WRITE, true)),
                ElementsAre(33309, 0, 33304, 0, 33303));
    EXPECT_THAT(MenuOf(*Field(ZED_DEFAULT_SERVER, ZED_ACCESS_READ_WRITE, false)),
                ElementsAre(-33309, 0, 33304, 0, 33303))
        << "no help: greyed";
    EXPECT_THAT(MenuOf(*Field(ZED_DEFAULT_NONE, ZED_ACCESS_READ_ONLY, true)), ElementsAre(33309, 0, -33303))
        << "no default entry; revert greyed";
    EXPECT_THAT(MenuOf(*Field(9, ZED_ACCESS_READ_WRITE, true)), ElementsAre(33309, 0, 33303));
}

TEST_F(ControlTest, ASetElementsMenuOffersAddAndRemoveBeforeRevert)
{
    EXPECT_THAT(MenuOf(*Field(ZED_DEFAULT_NONE, ZED_ACCESS_READ_WRITE, true, 1)),
                ElementsAre(33309, 0, 33307, 33308, 0, 33303));
    EXPECT_THAT(MenuOf(*Field(ZED_DEFAULT_NONE, ZED_ACCESS_READ_ONLY, true, 1)),
                ElementsAre(33309, 0, -33307, -33308, 0, -33303));
    auto field = Field(ZED_DEFAULT_NONE, ZED_ACCESS_READ_WRITE, true);
    Control(*field).SetPopupMode(0);
    EXPECT_TRUE(MenuOf(*field).empty()) << "mode 0 leaves the menu empty";
}

TEST_F(ControlTest, LaunchEntriesComeForAFormsEntityAndDirective)
{
    TempDir::Write(
        registrations / "launch.cfg",
        "[ Launch : Ping ]\n    Class = 1.2\n    Command = true\n[ End Launch : Ping ]\n"
        "[ Launch : Trace ]\n    Class = 1.2\n    Directive = 11\n    Command = true\n[ End Launch : Trace ]\n"
        "[ Launch : Other ]\n    Class = 1.2\n    Directive = 12\n    Command = true\n[ End Launch : Other ]\n");
    setenv("ORVEX_LAUNCH_FILE", (registrations / "launch.cfg").c_str(), 1);
    auto field = Field(ZED_DEFAULT_NONE, ZED_ACCESS_READ_WRITE, true);
    std::unique_ptr<QMenu> menu = Control(*field).BuildFieldPopupMenu(nullptr);
    ASSERT_EQ(menu->actions().size(), 5);
    EXPECT_EQ(menu->actions()[1]->text(), "Ping");
    EXPECT_EQ(menu->actions()[1]->data().toUInt(), 33301u);
    EXPECT_EQ(menu->actions()[2]->text(), "Trace");
    EXPECT_EQ(menu->actions()[2]->data().toUInt(), 33302u);

    form.directive = 1;
    EXPECT_THAT(MenuOf(*field), ElementsAre(33309, 0, 33303)) << "no launch for directive 1";
    form.directive = 11;
    EXPECT_THAT(MenuOf(*Field(ZED_DEFAULT_NONE, ZED_ACCESS_READ_ONLY, true)), ElementsAre(33309, 0, -33303));
}

TEST_F(ControlTest, RevertAndDefaultActOnTheWholeFieldOfTheLine)
{
    IElementInfo info = Info(20, 13, "Location");
    info.SetDefaultAllowed(ZED_DEFAULT_SERVER);
    CompositeTestField record(info, container);
    unsigned int id = 1;
    record.Create(id, info);
    TextTestField* member = record.Add(1, false);
    member->SetValue(std::string("typed"));

    Control(*member).OnCommand(KEL_ID_FIELD_REVERT);
    EXPECT_EQ(record.nulls, 1) << "the record, without initial value, goes to null";
    EXPECT_EQ(member->nulls, 0);
    EXPECT_EQ(IControlBase::OutermostField(member), &record);

    // The record's own container menu reaches it too.
    record.Container().OnCommand(KEL_ID_FIELD_REVERT);
    EXPECT_EQ(record.nulls, 2);

    Control(*member).OnCommand(KEL_ID_FIELD_DEFAULT);
    EXPECT_EQ(record.serverDefaults, 1) << "the record's policy, not the member's";
    EXPECT_EQ(member->serverDefaults, 0);
}

TEST_F(ControlTest, HelpAndSetCommandsReachTheField)
{
    auto field = Field(ZED_DEFAULT_NONE, ZED_ACCESS_READ_WRITE, true);
    Control(*field).OnCommand(KEL_ID_FIELD_HELP);
    ASSERT_NE(GetKELapp()->GetHelpDialog(), nullptr);

    IElementInfo info = Info(20, 52, "Peers");
    CompositeTestField set(info, container);
    unsigned int id = 1;
    set.Create(id, info);
    TextTestField* element = set.Add(7, true);
    Control(*element).OnCommand(KEL_ID_FIELD_ADD_SETOF);
    EXPECT_EQ(set.Container().GetCount(), 2u);
    Control(*element).OnCommand(KEL_ID_FIELD_REMOVE_SET);
    EXPECT_EQ(set.Container().GetCount(), 1u);
}

TEST_F(ControlTest, FaultsAreTracedAndNoMenuIsShown)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    IControlBase orphan;
    EXPECT_EQ(orphan.BuildFieldPopupMenu(nullptr), nullptr);
    orphan.OnPreTrackPopupMenu(nullptr);
    orphan.TrackFieldPopupMenu(0, 0, nullptr);
    EXPECT_THAT(capture.Lines(),
                ElementsAre(EndsWith("KEL : IControlBase::TrackFieldPopupMenu, pField is NULL"),
                            EndsWith("KEL : IControlBase::OnPreTrackPopupMenu, pField or pMenu is NULL"),
                            EndsWith("KEL : IControlBase::TrackFieldPopupMenu, pField is NULL")));
}

// Drives the open popup with keys only, as a keyboard user would.
void PressInPopup(std::vector<int> keys)
{
    QTimer::singleShot(50, [keys] {
        QWidget* popup = QApplication::activePopupWidget();
        if (!popup)
            return;
        for (int key : keys) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
            QApplication::sendEvent(popup, &press);
        }
    });
}

TEST_F(ControlTest, TheMenuOpensAndWorksFromTheKeyboard)
{
    auto field = Field(ZED_DEFAULT_DICTIONARY, ZED_ACCESS_READ_WRITE, true);
    field->SetInitialValue(std::make_unique<TLatin1String>("initial"));
    field->SetValue(std::string("typed"));
    QWidget* control = field->GetWindow();
    form.show();
    control->setFocus();

    // Help, Set to default, Revert: three steps down, over the separators, reach Revert.
    PressInPopup({Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Return});
    QKeyEvent shiftF10(QEvent::KeyPress, Qt::Key_F10, Qt::ShiftModifier);
    QApplication::sendEvent(control, &shiftF10);
    EXPECT_EQ(field->Text(), "initial") << "Shift+F10, arrows and Return reverted the field";

    field->SetValue(std::string("typed"));
    PressInPopup({Qt::Key_Escape});
    QKeyEvent menuKey(QEvent::KeyPress, Qt::Key_Menu, Qt::NoModifier);
    QApplication::sendEvent(control, &menuKey);
    EXPECT_EQ(field->Text(), "typed") << "Escape closes the menu with nothing done";
    form.hide();
}

// ---- the control container ---------------------------------------------

class TestLine : public IPresentationElement, public KELFormLineLayout {
public:
    TestLine(unsigned int key, QWidget* parent, int labelWidth, std::unique_ptr<IField> field, unsigned int indent,
             std::unique_ptr<IField> units = nullptr)
        : IPresentationElement(key), m_label(new QLabel(parent)), m_field(std::move(field)), m_units(std::move(units)),
          m_indent(indent)
    {
        m_label->resize(labelWidth, 16);
    }
    QWidget* GetLabelWindow() const override { return m_label; }
    IField* GetLineField() const override { return m_field.get(); }
    IField* GetUnitField() const override { return m_units.get(); }
    unsigned int GetIndentLevel() const override { return m_indent; }

private:
    QLabel* m_label;
    std::unique_ptr<IField> m_field;
    std::unique_ptr<IField> m_units;
    unsigned int m_indent;
};

TEST_F(ControlTest, FormLinesStandInALabelColumnFieldColumnAndUnits)
{
    auto* lines = new IControlContainer(nullptr, &form);
    unsigned int id = 1;
    const auto field = [&](int width, int height) {
        IElementInfo info = Info(1, 3);
        auto made = std::make_unique<TextTestField>(info, lines);
        made->Create(id, info);
        made->Resize(QSize(width, height));
        return made;
    };
    IElementInfo unitInfo = Info(2, 35);
    unitInfo.SetUnits("ms");
    auto units = std::make_unique<IFieldUnit>(unitInfo, lines);
    units->Create(id, unitInfo);
    IField* unitField = units.get();
    const int unitWidth = unitField->GetSize().width();

    EXPECT_TRUE(lines->InsertElement(std::make_unique<TestLine>(1, lines, 60, field(100, 20), 0)));
    EXPECT_TRUE(lines->InsertElement(std::make_unique<TestLine>(2, lines, 90, field(200, 30), 1, std::move(units))));
    EXPECT_TRUE(lines->InsertElement(std::make_unique<TestLine>(3, lines, 40, field(300, 20), 0)));
    lines->PlaceElements();
    EXPECT_EQ(lines->GetLabelMaxWidth(), 90u);

    const auto* first = dynamic_cast<TestLine*>(lines->FindElement(1));
    const auto* second = dynamic_cast<TestLine*>(lines->FindElement(2));
    const auto* third = dynamic_cast<TestLine*>(lines->FindElement(3));
    EXPECT_EQ(first->GetLabelWindow()->pos(), QPoint(10, 5)) << "a label never stands left of 10";
    EXPECT_EQ(first->GetLineField()->GetCoordinates(), QPoint(0 + 90 + 25, 5));
    EXPECT_EQ(first->GetLineField()->GetSize(), QSize(150, 20)) << "at least 150 wide";
    EXPECT_EQ(second->GetLabelWindow()->pos(), QPoint(20, 27));
    EXPECT_EQ(second->GetLineField()->GetCoordinates(), QPoint(20 + 90 + 25, 27));
    EXPECT_EQ(unitField->GetCoordinates(), QPoint(20 + 90 + 25 + 200, 27)) << "units right after the field";
    EXPECT_EQ(third->GetLineField()->GetCoordinates(), QPoint(115, 27 + 30 + 2 + 10));

    QSize size;
    lines->ComputeSize(size);
    EXPECT_EQ(size, QSize(115 + 300 + unitWidth, 69 + 20 + 2));
}

}  // namespace
