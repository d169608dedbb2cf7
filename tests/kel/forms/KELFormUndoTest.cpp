// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/IControlContainer.h"
#include "kel/controls/ILabel.h"
#include "kel/fields/IField.h"
#include "kel/fields/IFieldCombo.h"
#include "kel/forms/IFormLine.h"
#include "kel/forms/IInputForm.h"
#include "kel/forms/KELIdlePass.h"
#include "support/ContextFixture.h"
#include "zed/value/TSetOf.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <QUndoStack>

#include <gtest/gtest.h>

namespace {

constexpr unsigned int kEcho = 11;
constexpr unsigned int kTest = 10;
const char* const kInterface = "Network core Router r1 Interface eth0";

class FormUndoTest : public ContextFixture {
protected:
    void Open(unsigned int directive)
    {
        form = std::make_unique<IInputForm>(context);
        form->resize(700, 500);
        form->CreatePresentation(directive == kEcho ? "Echo" : "Test", TEntitySpec(kInterface), directive);
        form->FillWithDefaults();
        form->show();
        QApplication::setActiveWindow(form.get());
        KELIdlePass::RunNow();  // what the form opened with is where undoing stops
    }
    IField& Field(const char* label)
    {
        IField* found = nullptr;
        form->GetContainer()->ForEachElement([&](IPresentationElement& element) {
            if (auto* line = dynamic_cast<IFormLine*>(&element);
                line && line->GetLabel() && line->GetLabel()->GetPresentationName() == label)
                found = line->GetField();
        });
        EXPECT_NE(found, nullptr) << label;
        return *found;
    }
    std::string Text(const char* label)
    {
        std::string text;
        Field(label).GetValue(text);
        return text;
    }
    // Typing into a line, as an operator does, key by key with the idle pass after each.
    void Type(const char* label, const char* keys)
    {
        QWidget* edit = Field(label).GetWindow();
        edit->setFocus();
        for (const char* key = keys; *key; ++key) {
            QTest::keyClick(edit, *key);
            KELIdlePass::RunNow();
        }
    }
    void Press(QKeySequence::StandardKey key)
    {
        QWidget* focus = QApplication::focusWidget() ? QApplication::focusWidget() : form.get();
        QTest::keySequence(focus, QKeySequence(key));
        KELIdlePass::RunNow();
    }

    std::unique_ptr<IInputForm> form;
};

TEST_F(FormUndoTest, TypingInALineIsOneStepAndCtrlZUndoesItEvenInATextBox)
{
    Open(kTest);
    const std::string count = Text("Count"), size = Text("Size");
    Type("Count", "77");
    Type("Size", "9");
    EXPECT_EQ(form->GetUndoStack()->count(), 2) << "a line's typing is one step";
    Press(QKeySequence::Undo);
    EXPECT_EQ(Text("Size"), size);
    EXPECT_EQ(Text("Count"), count + "77");
    Press(QKeySequence::Undo);
    EXPECT_EQ(Text("Count"), count) << "Ctrl+Z with the focus in a text box is the form's";
    Press(QKeySequence::Redo);
    EXPECT_EQ(Text("Count"), count + "77");
    EXPECT_EQ(form->GetUndoStack()->index(), 1);

    form->UndoBoundary();
    EXPECT_FALSE(form->GetUndoStack()->canRedo()) << "a send or refresh clears what could be redone";
    EXPECT_TRUE(form->GetUndoStack()->canUndo());
}

TEST_F(FormUndoTest, AChoiceADefaultAndASetElementAreStepsOfTheirOwn)
{
    Open(kEcho);
    auto* outcome = static_cast<QComboBox*>(Field("Outcome").GetWindow()->findChild<QComboBox*>()
                                                ? Field("Outcome").GetWindow()->findChild<QComboBox*>()
                                                : qobject_cast<QComboBox*>(Field("Outcome").GetWindow()));
    ASSERT_NE(outcome, nullptr);
    const std::string before = Text("Outcome");
    outcome->setFocus();
    QTest::keyClick(outcome, Qt::Key_Down);
    KELIdlePass::RunNow();
    ASSERT_NE(Text("Outcome"), before);
    const std::string first = Text("Outcome");
    QTest::keyClick(outcome, outcome->currentIndex() + 1 < outcome->count() ? Qt::Key_Down : Qt::Key_Up);
    KELIdlePass::RunNow();
    ASSERT_NE(Text("Outcome"), first);
    EXPECT_EQ(form->GetUndoStack()->count(), 2) << "each choice is a step";

    IField& peers = Field("Peers");
    const std::unique_ptr<TValue> start = peers.GetTValue(true);
    const std::size_t elements = start ? static_cast<const TSetOf&>(*start).Size() : 0;
    peers.AddNewInSet();
    KELIdlePass::RunNow();
    form->GetUndoStack()->undo();
    const std::unique_ptr<TValue> back = peers.GetTValue(true);
    EXPECT_EQ(back ? static_cast<const TSetOf&>(*back).Size() : 0, elements) << "the element added is gone";
    form->GetUndoStack()->undo();
    form->GetUndoStack()->undo();
    EXPECT_EQ(Text("Outcome"), before);
}

}  // namespace
