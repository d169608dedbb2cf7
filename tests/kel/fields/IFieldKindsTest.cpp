// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/controls/IControlDateTime.h"
#include "kel/controls/IControlEditNum.h"
#include "kel/fields/IFieldBuilder.h"
#include "kel/fields/IFieldCombo.h"
#include "kel/fields/IFieldDateTime.h"
#include "kel/fields/IFieldEdit.h"
#include "kel/fields/IFieldEditMulti.h"
#include "kel/fields/IFieldNumeric.h"
#include "kel/fields/IFieldToggle.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELTrace.h"
#include "support/FieldDoubles.h"
#include "support/ShippedNetwork.h"
#include "support/TraceCapture.h"
#include "zed/value/TEnumeration.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QRadioButton>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::ElementsAre;
using ::testing::EndsWith;

namespace {

class FieldKindsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        network = InstallShippedNetwork();
        ASSERT_NE(InitializeKEL("kinds test"), nullptr);
        context = GetKELapp()->DefineNewContext("TST");
        context->SetUserConfigFile(std::make_unique<IConfiguration>());
        form.context = context;
        container = new IContainer(&form);
    }
    void TearDown() override { DestroyKEL(); }

    template <class Kind = IField>
    std::unique_ptr<Kind> Make(IElementInfo info)
    {
        unsigned int id = 1;
        std::unique_ptr<IField> field = IFieldBuilder::CreateField(container, id, info);
        auto* kind = dynamic_cast<Kind*>(field.get());
        EXPECT_NE(kind, nullptr) << "DT " << info.GetDT();
        if (!kind)
            return nullptr;
        field.release();
        return std::unique_ptr<Kind>(kind);
    }
    static std::string Text(IField& field)
    {
        std::string text;
        field.GetValue(text);
        return text;
    }
    static std::string Request(IField& field)
    {
        std::string text;
        field.GetPartialRequest(text);
        return text;
    }
    std::string Saved(const std::string& key)
    {
        std::string value;
        context->GetUserConfigFile()->GetString(key, "Attr:1", value, 1);
        return value;
    }

    std::shared_ptr<TSimulatedNetwork> network;
    KELConfigContext* context = nullptr;
    FakeForm form;
    IContainer* container = nullptr;
};

IElementInfo Element(unsigned int dt, ZED_T_DICT_ACCESS access = ZED_ACCESS_READ_WRITE)
{
    IElementInfo info = Info(1, dt, "Element");
    info.SetAccess(access);
    return info;
}

bool LooksReadOnly(QWidget* control)
{
    return control->palette().color(QPalette::Base) == control->palette().color(QPalette::Window);
}

TEST_F(FieldKindsTest, TextFieldsConvertByDataTypeAndKeepTheirContents)
{
    auto name = Make<IFieldEdit>(Element(ZED_DT_SIMPLENAME));
    auto* edit = static_cast<QLineEdit*>(name->GetWindow());
    EXPECT_EQ(edit->maxLength(), 32767) << "no limit of its own for a MaxSize of 0";
    EXPECT_EQ(name->GetSize().width(), 350);
    EXPECT_EQ(name->GetTValue(false), nullptr);
    std::unique_ptr<TValue> empty = name->GetTValue(true);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->GetDatatype(), ZED_DT_SIMPLENAME);
    EXPECT_EQ(empty->GetID(), 1u);
    name->SetValue(std::string("core"));
    EXPECT_EQ(name->GetTValue(false)->ToString(), "core");
    name->SetValue(TSimpleName("eth0\r\nforged: line\x1b[2J"));
    EXPECT_EQ(edit->text(), "eth0\\r\\nforged: line\\e[2J") << "one line shows a device's control characters escaped";

    auto entity = Make<IFieldEdit>(Element(ZED_DT_ENTITYSPEC));
    entity->SetValue(std::string("Network core Router r1"));
    std::unique_ptr<TValue> spec = entity->GetTValue(false);
    ASSERT_NE(spec, nullptr);
    EXPECT_EQ(static_cast<TEntitySpec&>(*spec).GetDepth(), 2u);
    entity->SetValue(std::string("Planet x"));
    EXPECT_EQ(entity->GetTValue(false), nullptr) << "a text that is no entity gives no value";

    auto time = Make<IFieldEdit>(Element(ZED_DT_ABSTIME, ZED_ACCESS_READ_ONLY));
    time->SetValue(TAbsTime(0));
    EXPECT_EQ(Text(*time), "1970-01-01 00:00:00");
    EXPECT_EQ(time->GetTValue(true), nullptr) << "a read-only time is shown, not returned";
    EXPECT_TRUE(static_cast<QLineEdit*>(time->GetWindow())->isReadOnly());
    EXPECT_TRUE(LooksReadOnly(time->GetWindow()));

    TUnsigned32 denied(5);
    denied.SetReason(ZED_REASON_ACCESS_DENIED);
    name->SetValue(denied);
    EXPECT_EQ(Text(*name), "(access denied)");
    name->SetToNotReturned();
    EXPECT_EQ(Text(*name), "<not returned>");

    name->SetValue(std::string("kept"));
    name->FillWithConfig("Form");
    EXPECT_EQ(Text(*name), "kept") << "nothing saved: unchanged";
    name->SaveContents("Form");
    EXPECT_EQ(Saved("Form"), "kept");
    name->SetValue(std::string("other"));
    name->FillWithConfig("Form");
    EXPECT_EQ(Text(*name), "kept");

    context->SetUserConfigFile(nullptr);
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    name->SaveContents("Form");
    EXPECT_THAT(capture.Lines(),
                ElementsAre(EndsWith("KEL : IFieldEdit::SaveContents : user config file pointer is NULL  ")));
}

TEST_F(FieldKindsTest, MultiLineTextGrowsByStepsUpToItsLargestAndKeepsLineEnds)
{
    auto text = Make<IFieldEditMulti>(Element(ZED_DT_LATIN1STRING));
    EXPECT_EQ(text->GetMaxLines(), 15);
    EXPECT_EQ(text->GetLineStep(), 1);
    EXPECT_EQ(text->GetVisibleLines(), 1);
    const int oneLine = text->GetSize().height();
    text->SetValue(std::string("a\nb\nc"));
    EXPECT_EQ(text->GetVisibleLines(), 3);
    EXPECT_GT(text->GetSize().height(), oneLine);
    text->SetValue(std::string(40, '\n'));
    EXPECT_EQ(text->GetVisibleLines(), 15);
    EXPECT_FALSE(text->ValueChanged());
    static_cast<QPlainTextEdit*>(text->GetWindow())->setPlainText("typed\\with\nlines");
    EXPECT_TRUE(text->ValueChanged());
    text->SaveContents("Form");
    EXPECT_EQ(Saved("Form"), "typed\\\\with\\nlines") << "one line in the file";
    text->SetValue(std::string());
    text->FillWithConfig("Form");
    EXPECT_EQ(Text(*text), "typed\\with\nlines");
    EXPECT_EQ(text->GetTValue(false)->GetDatatype(), ZED_DT_LATIN1STRING);

    context->GetUserConfigFile()->SetInt("Presentation Form", "MultiEdit MaxLine", 4, 1);
    context->GetUserConfigFile()->SetInt("Presentation Form", "MultiEdit IncLine", 3, 1);
    auto stepped = Make<IFieldEditMulti>(Element(ZED_DT_LATIN1STRING));
    stepped->SetValue(std::string("a\nb"));
    EXPECT_EQ(stepped->GetVisibleLines(), 4) << "one line, then a step of three";
}

TEST_F(FieldKindsTest, ALongReadOnlyTextShowsWholeWrappedWithoutAScrollBarOverIt)
{
    auto shown = Make<IFieldEditMulti>(Element(ZED_DT_LATIN1STRING, ZED_ACCESS_READ_ONLY));
    const int oneLine = shown->GetSize().height();
    // A sysDescr as agents give it: one line of 230 characters.
    std::string description =
        "Linux core-r1 6.1.0-28-amd64 #1 SMP PREEMPT_DYNAMIC Debian 6.1.119-1 (2024-11-22) x86_64";
    while (description.size() < 230)
        description += " and more words";
    shown->SetValue(description);
    auto* edit = static_cast<QPlainTextEdit*>(shown->GetWindow());
    EXPECT_EQ(edit->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_GT(shown->GetVisibleLines(), 2) << "the line wraps and the field grows";
    EXPECT_GT(shown->GetSize().height(), 2 * oneLine);
    form.show();
    QApplication::processEvents();
    EXPECT_FALSE(edit->verticalScrollBar()->isVisible()) << "every line in view";
    EXPECT_FALSE(edit->horizontalScrollBar()->isVisible());
    EXPECT_LE(edit->document()->size().height(), shown->GetVisibleLines()) << "the wrapped lines all fit";
}

TEST_F(FieldKindsTest, NumbersAreCheckedAndRewrittenInTheirKindsFormat)
{
    auto u32 = Make<IFieldUnsigned32>(Element(ZED_DT_UNSIGNED32));
    std::string text = "4000000000";
    EXPECT_TRUE(u32->Valid(text));
    EXPECT_EQ(text, "-294967296");
    u32->SetValue(text);
    std::unique_ptr<TValue> value = u32->GetTValue(false);
    EXPECT_EQ(value->ToString(), "4000000000") << "the signed text converts back";

    auto f = Make<IFieldFloat>(Element(ZED_DT_FLOAT));
    text = "1.5";
    EXPECT_TRUE(f->Valid(text));
    EXPECT_EQ(text, "1.500000");

    auto i16 = Make<IFieldInteger16>(Element(ZED_DT_INTEGER16));
    text = "  12abc";
    EXPECT_TRUE(i16->Valid(text));
    EXPECT_EQ(text, "12");
    text = "70000";
    EXPECT_FALSE(i16->Valid(text));
    text = "abc";
    EXPECT_FALSE(i16->Valid(text));

    EXPECT_EQ(Request(*i16), "<not returned>") << "an empty number sends string 4025";
    i16->SetValue(TInteger16(-7));
    EXPECT_EQ(Text(*i16), "-7");
    EXPECT_FALSE(i16->ValueChanged());
    EXPECT_NE(i16->InitialValue(), nullptr) << "a value put in is the initial value";
    i16->SetValue(std::string("8"));
    EXPECT_TRUE(i16->ValueChanged());
    i16->SetToNotReturned();
    EXPECT_EQ(Text(*i16), "") << "deliberately empty";

    for (unsigned int dt : {30u, 31u, 34u, 35u, 37u, 38u, 63u, 72u}) {
        IElementInfo info = Element(dt);
        info.SetDictType(TDictType(900, "Pct", "Percent of the whole", dt));
        info.SetHasDictType(1);
        auto field = Make<IFieldEditNum>(info);
        field->SetValue(std::string("3"));
        EXPECT_EQ(field->GetTValue(false)->GetDatatype(), dt);
        EXPECT_EQ(field->GetSize().width(), IFieldEdit::kWidth) << "made as the text field is";
        EXPECT_EQ(field->GetWindow()->toolTip(), "Percent of the whole") << "the type's presentation name";
    }
}

// A MIB's range narrows a number's kind: outside it, the text is refused as
// one of another kind is, and the help says the range.
TEST_F(FieldKindsTest, ANumberOutsideItsDictionaryRangeIsRefused)
{
    IElementInfo info = Element(ZED_DT_INTEGER32);
    info.SetRange(TDictRange{0, 100});
    auto level = Make<IFieldInteger32>(info);
    std::string reason;
    level->SetValue(std::string("100"));
    EXPECT_TRUE(level->CheckText(&reason));
    level->SetValue(std::string("101"));
    EXPECT_FALSE(level->CheckText(&reason));
    EXPECT_EQ(reason, "\"101\" is not a whole number from 0 to 100");
    level->SetValue(std::string("lots"));
    EXPECT_FALSE(level->CheckText(&reason));
    EXPECT_EQ(reason, "\"lots\" is not a whole number from -2147483648 to 2147483647") << "not a number at all";
    EXPECT_THAT(level->GetWindow()->accessibleDescription().toStdString(), ::testing::HasSubstr("Range: 0 to 100"));
}

TEST_F(FieldKindsTest, AnInvalidNumberIsMarkedWhereItStandsAndTheFocusMovesOn)
{
    auto count = Make<IFieldInteger16>(Element(ZED_DT_INTEGER16));
    auto other = Make<IFieldEdit>(Element(ZED_DT_SIMPLENAME));
    auto* edit = static_cast<IControlEditNum*>(count->GetWindow());
    const QString help = edit->accessibleDescription();
    form.show();
    form.activateWindow();
    QApplication::processEvents();
    edit->setFocus();
    edit->setText("lots");
    other->GetWindow()->setFocus();
    QApplication::processEvents();
    EXPECT_TRUE(other->GetWindow()->hasFocus()) << "the focus is never trapped";
    EXPECT_TRUE(edit->IsMarkedInvalid());
    EXPECT_EQ(edit->toolTip(), "\"lots\" is not a whole number from -32768 to 32767");
    EXPECT_EQ(edit->accessibleDescription(), edit->toolTip());

    edit->setFocus();
    edit->selectAll();
    QKeyEvent seven(QEvent::KeyPress, Qt::Key_7, Qt::NoModifier, "7");
    QApplication::sendEvent(edit, &seven);
    EXPECT_FALSE(edit->IsMarkedInvalid()) << "the mark goes as soon as the text is valid";
    EXPECT_EQ(edit->accessibleDescription(), help);
    other->GetWindow()->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(edit->text(), "7");
    form.hide();
}

TEST_F(FieldKindsTest, ToggleReadsTextsShowsReadOnlyValuesAndSendsWords)
{
    auto toggle = Make<IFieldToggle>(Element(ZED_DT_BOOLEAN));
    EXPECT_EQ(toggle->GetTValue(false), nullptr);
    EXPECT_EQ(Request(*toggle), "");
    EXPECT_EQ(Text(*toggle), "<not returned>");
    for (const char* on : {"1", "true", "TRUE", "10"}) {
        toggle->SetValue(std::string("0"));
        toggle->SetValue(std::string(on));
        EXPECT_TRUE(toggle->GetTrueButton()->isChecked()) << on;
    }
    toggle->SetValue(std::string("0"));
    EXPECT_TRUE(toggle->GetFalseButton()->isChecked());
    EXPECT_EQ(Request(*toggle), "False");
    EXPECT_EQ(toggle->GetTValue(false)->ToString(), "FALSE");
    toggle->SetValue(TBoolean(true));
    EXPECT_EQ(Request(*toggle), "True");
    EXPECT_FALSE(toggle->ValueChanged());

    IElementInfo byServer = Element(ZED_DT_BOOLEAN);
    byServer.SetDefaultAllowed(ZED_DEFAULT_SERVER);
    byServer.SetDefault("<server default>");
    auto defaulted = Make<IFieldToggle>(byServer);
    defaulted->SetToServerDefault();
    EXPECT_TRUE(defaulted->GetTextEdit()->isVisibleTo(defaulted->GetWindow()));
    EXPECT_TRUE(defaulted->GetTValue(false)->IsDefault());
    defaulted->GetTrueButton()->click();
    EXPECT_FALSE(defaulted->GetTextEdit()->isVisibleTo(defaulted->GetWindow())) << "a click hides the text";
    EXPECT_TRUE(defaulted->GetTValue(false)->IsPresent());

    auto shown = Make<IFieldToggle>(Element(ZED_DT_BOOLEAN, ZED_ACCESS_READ_ONLY));
    EXPECT_EQ(shown->GetTrueButton(), nullptr);
    shown->SetValue(TBoolean(true));
    EXPECT_EQ(shown->GetTextEdit()->text(), "TRUE");
    EXPECT_EQ(Request(*shown), "") << "read-only: nothing to send";
    EXPECT_TRUE(LooksReadOnly(shown->GetTextEdit()));
}

TEST_F(FieldKindsTest, ComboListsTheItemsAndChoosesByTextCodeOrValue)
{
    IElementInfo info = Element(ZED_DT_ENUMERATION);
    info.SetDictType(*Dictionary().FindType("OperState"));
    info.SetHasDictType(1);
    auto combo = Make<IFieldCombo>(info);
    auto* list = static_cast<QComboBox*>(combo->GetWindow());
    ASSERT_GE(list->count(), 2);
    const auto& items = Dictionary().FindType("OperState")->ShareAs<TDictTypeEnumeration>()->GetItems();
    EXPECT_EQ(list->itemText(0).toStdString(), items[0].text) << "in the dictionary's order";
    EXPECT_EQ(list->itemData(0).toInt(), items[0].code);
    EXPECT_EQ(Text(*combo), "");
    EXPECT_EQ(combo->GetTValue(false), nullptr);
    combo->SetValue(std::string("down"));
    EXPECT_EQ(Text(*combo), "Down");
    std::unique_ptr<TValue> value = combo->GetTValue(false);
    ASSERT_EQ(value->GetDatatype(), ZED_DT_ENUMERATION);
    EXPECT_EQ(value->ToString(), "Down");
    EXPECT_EQ(value->GetID(), 1u);
    combo->SetValue(TEnumeration(Dictionary().FindType("OperState")->ShareAs<TDictTypeEnumeration>(), 1));
    EXPECT_EQ(Text(*combo), "Up");
    EXPECT_FALSE(combo->ValueChanged());

    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    combo->SetValue(std::string("Sideways"));
    EXPECT_EQ(Text(*combo), "Up") << "an unknown item leaves the choice";
    IFieldCombo untyped(info = Element(ZED_DT_ENUMERATION), container);
    unsigned int id = 1;
    untyped.Create(id, info);
    EXPECT_THAT(capture.Lines(),
                ElementsAre(EndsWith("KEL : IFieldCombo::SetValue : Enable to find  "),
                            EndsWith("KEL : IFieldCombo::Create, the Enumeration has no dict type !")));

    combo->SetToNotReturned();
    EXPECT_EQ(list->placeholderText(), "<not returned>");
    EXPECT_EQ(combo->GetTValue(false), nullptr);
}

}  // namespace

namespace {

TEST_F(FieldKindsTest, AComboLeftToTheServerSendsWhatTheOperatorPicks)
{
    IElementInfo info = Element(ZED_DT_ENUMERATION);
    info.SetDictType(*Dictionary().FindType("OperState"));
    info.SetHasDictType(1);
    info.SetDefaultAllowed(ZED_DEFAULT_SERVER);
    info.SetDefault("<server default>");
    auto combo = Make<IFieldCombo>(info);
    auto* list = static_cast<QComboBox*>(combo->GetWindow());
    combo->SetToServerDefault();
    EXPECT_EQ(Request(*combo), "<server default>");
    EXPECT_TRUE(combo->GetTValue(false)->IsDefault());

    // From the keyboard: the arrow moves to the first item.
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QApplication::sendEvent(list, &down);
    ASSERT_GE(list->currentIndex(), 0);
    EXPECT_EQ(Request(*combo), list->currentText().toStdString());
    std::unique_ptr<TValue> picked = combo->GetTValue(false);
    EXPECT_FALSE(picked->IsDefault());
    EXPECT_EQ(picked->ToString(), list->currentText().toStdString());

    // With the mouse: the list's own choice of another row.
    combo->SetToServerDefault();
    list->setCurrentIndex(1);
    emit list->activated(1);
    EXPECT_EQ(Request(*combo), list->itemText(1).toStdString());
    EXPECT_TRUE(combo->ValueChanged());
}

}  // namespace

namespace {

TEST_F(FieldKindsTest, ATimeIsTypedPickedAndLeftFromTheKeyboard)
{
    auto at = Make<IFieldDateTime>(Element(ZED_DT_ABSTIME));
    auto after = Make<IFieldEdit>(Element(ZED_DT_SIMPLENAME));
    auto* edit = at->GetControl();
    form.show();
    form.activateWindow();
    QApplication::processEvents();
    EXPECT_EQ(edit->ShownText(), "MM/DD/YYYY HH:MM:SS") << "an empty field says what it takes";

    // Typed with its separators, into the empty field; Tab then leaves it.
    edit->setFocus();
    QTest::keyClicks(edit, "03/01/2026 12:30:05");
    EXPECT_EQ(edit->displayText(), "03/01/2026 12:30:05");
    QTest::keyClick(edit, Qt::Key_Tab);
    EXPECT_TRUE(after->GetWindow()->hasFocus()) << "Tab leaves the field";
    QTest::keyClicks(after->GetWindow(), "r2");
    EXPECT_EQ(Text(*after), "r2") << "what is typed next lands in the next field";
    EXPECT_EQ(Text(*at), "2026-03-01 12:30:05");
    EXPECT_EQ(at->GetTValue(false)->ToString(), "2026-03-01 12:30:05");

    // Clicked into anywhere, an empty field takes the typing from its first place.
    at->SetToNullValue();
    after->GetWindow()->setFocus();
    QTest::mouseClick(edit, Qt::LeftButton, Qt::NoModifier, QPoint(edit->width() - 40, edit->height() / 2));
    QTest::keyClicks(edit, "03/01/2026 12:30:05");
    EXPECT_EQ(edit->displayText(), "03/01/2026 12:30:05");

    // Digits alone fill the same places; a date alone gets midnight, shown as sent.
    at->SetToNullValue();
    edit->setFocus();
    QTest::keyClicks(edit, "04022025");
    QTest::keyClick(edit, Qt::Key_Tab);
    EXPECT_EQ(edit->displayText(), "04/02/2025 00:00:00");
    EXPECT_EQ(at->GetTValue(false)->ToString(), "2025-04-02 00:00:00");

    // The calendar opens at the date typed and keeps the time typed.
    at->SetValue(std::string("2026-03-01 12:30:05"));
    edit->setFocus();
    QTest::keyClick(edit, Qt::Key_Down, Qt::AltModifier);
    ASSERT_NE(edit->GetCalendar(), nullptr);
    EXPECT_EQ(edit->GetCalendar()->selectedDate(), QDate(2026, 3, 1));
    emit edit->GetCalendar()->activated(QDate(2026, 3, 9));
    EXPECT_EQ(Text(*at), "2026-03-09 12:30:05");
    EXPECT_TRUE(at->ValueChanged());
    at->SetToNullValue();
    edit->OpenCalendar();
    EXPECT_EQ(edit->GetCalendar()->selectedDate(), QDateTime::currentDateTimeUtc().date()) << "empty: today";
    edit->GetCalendar()->close();

    // Half a time is no time: marked where it stands, and not sent.
    at->SetToNullValue();
    edit->setFocus();
    QTest::keyClicks(edit, "0301");
    after->GetWindow()->setFocus();
    QApplication::processEvents();
    EXPECT_TRUE(edit->IsMarkedInvalid());
    std::string reason;
    EXPECT_FALSE(at->CheckText(&reason));
    EXPECT_EQ(reason, "\"03/01/____ __:__:__\" is not a date and time of the form MM/dd/yyyy HH:mm:ss");
    form.hide();
}

}  // namespace

namespace {

TEST_F(FieldKindsTest, ATextLimitBindsTypingOnly)
{
    IElementInfo info = Element(ZED_DT_SIMPLENAME);
    info.SetMaxSize(8);
    auto name = Make<IFieldEdit>(info);
    auto* edit = static_cast<QLineEdit*>(name->GetWindow());
    QTest::keyClicks(edit, "abcdefghijk");
    EXPECT_EQ(Text(*name), "abcdefgh") << "typing stops at the limit";

    // A reply's longer value is shown and given back whole.
    name->SetValue(TSimpleName("a-name-of-twenty-one"));
    EXPECT_EQ(Text(*name), "a-name-of-twenty-one");
    EXPECT_EQ(name->GetTValue(false)->ToString(), "a-name-of-twenty-one");
    edit->end(false);
    QTest::keyClicks(edit, "x");
    EXPECT_EQ(Text(*name), "a-name-of-twenty-one") << "nor can typing make it longer";
    QTest::keyClick(edit, Qt::Key_Backspace);
    QTest::keyClicks(edit, "yz");
    EXPECT_EQ(Text(*name), "a-name-of-twenty-ony");
    edit->selectAll();
    QTest::keyClicks(edit, "0123456789");
    EXPECT_EQ(Text(*name), "01234567") << "once shortened, the limit holds again";

    IElementInfo number = Element(ZED_DT_UNSIGNED32);
    number.SetMaxSize(3);
    auto count = Make<IFieldEditNum>(number);
    count->SetValue(TUnsigned32(123456));
    EXPECT_EQ(Text(*count), "123456");
}

}  // namespace

namespace {

// Octets that are not text arrive as hexadecimal; shown read-only they get
// their ASCII column, while the value stays the octets as they came.
TEST_F(FieldKindsTest, HexadecimalOctetsShowTheirAsciiWhenReadOnly)
{
    auto shown = Make<IFieldEdit>(Element(ZED_DT_OCTETSTRING, ZED_ACCESS_READ_ONLY));
    shown->SetValue(std::string("00:1a:2b:41:7e"));
    EXPECT_EQ(static_cast<QLineEdit*>(shown->GetWindow())->text().toStdString(), "00:1a:2b:41:7e  |..+A~|");
    std::string text;
    shown->GetValue(text);
    EXPECT_EQ(text, "00:1a:2b:41:7e");
    for (const char* plain : {"eth0", "00:1", "0g:11", "00-11-22"}) {
        shown->SetValue(std::string(plain));
        EXPECT_EQ(static_cast<QLineEdit*>(shown->GetWindow())->text(), plain) << "text stays text";
    }
    auto typed = Make<IFieldEdit>(Element(ZED_DT_OCTETSTRING));
    typed->SetValue(std::string("00:1a:2b"));
    EXPECT_EQ(static_cast<QLineEdit*>(typed->GetWindow())->text(), "00:1a:2b") << "what can be typed shows as typed";
}

}  // namespace
