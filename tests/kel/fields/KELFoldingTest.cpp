// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/controls/ILabel.h"
#include "kel/fields/IFieldRecord.h"
#include "kel/fields/IFieldSetOf.h"
#include "kel/fields/KELCompositeField.h"
#include "kel/forms/IFormLine.h"
#include "kel/forms/IInputForm.h"
#include "kel/model/IPresentationContainer.h"
#include "support/ContextFixture.h"
#include "zed/value/TValue.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

namespace {

constexpr unsigned int kEcho = 11;
const char* const kInterface = "Network core Router r1 Interface eth0";

class FoldingTest : public ContextFixture {
protected:
    std::unique_ptr<IInputForm> Open()
    {
        auto form = std::make_unique<IInputForm>(context);
        form->resize(700, 500);
        form->CreatePresentation("Echo", TEntitySpec(kInterface), kEcho);
        form->show();
        return form;
    }
    static KELCompositeField* Composite(IInputForm& form, const char* label)
    {
        KELCompositeField* found = nullptr;
        form.GetContainer()->ForEachElement([&](IPresentationElement& element) {
            if (auto* line = dynamic_cast<IFormLine*>(&element);
                line && line->GetLabel() && line->GetLabel()->GetPresentationName() == label)
                found = dynamic_cast<KELCompositeField*>(line->GetField());
        });
        return found;
    }
};

TEST_F(FoldingTest, ARecordFoldsToItsOneLineTextByKeyboardAndOpensFoldedAgain)
{
    auto form = Open();
    KELCompositeField* place = Composite(*form, "Place");
    ASSERT_NE(place, nullptr);
    ASSERT_NE(place->GetFoldToggle(), nullptr);
    const int unfolded = place->GetSize().height();

    QApplication::setActiveWindow(form.get());
    place->GetFoldToggle()->setFocus();
    QTest::keyClick(place->GetFoldToggle(), Qt::Key_Space);
    ASSERT_TRUE(place->IsFolded()) << "Space on the toggle folds";
    EXPECT_FALSE(place->GetWindow()->isVisible());
    EXPECT_LT(place->GetSize().height(), unfolded) << "one line";
    const std::unique_ptr<TValue> value = place->GetTValue(false);
    const std::string text = value ? value->ToString() : std::string();
    bool shown = false;
    for (const QLineEdit* edit :
         place->GetWindow()->parentWidget()->findChildren<QLineEdit*>(Qt::FindDirectChildrenOnly))
        shown = shown || (edit->isVisible() && edit->isReadOnly() && edit->text().toStdString() == text);
    EXPECT_TRUE(shown) << "its value's text stands in its place: " << text;

    std::string kept;
    context->GetUserConfigFile()->GetString(form->GetSettingSection(), place->GetCompleteID() + ".Folded", kept, 1);
    EXPECT_EQ(kept, "TRUE") << "a new key of the form's section";

    auto again = Open();
    KELCompositeField* reopened = Composite(*again, "Place");
    ASSERT_NE(reopened, nullptr);
    EXPECT_TRUE(reopened->IsFolded()) << "the form opens as it was left";
    reopened->GetFoldToggle()->click();
    EXPECT_FALSE(reopened->IsFolded());
    EXPECT_TRUE(reopened->GetWindow()->isVisible());
    EXPECT_EQ(reopened->GetSize().height(), unfolded);
}

TEST_F(FoldingTest, AFoldedSetHidesWithItsLineAndInnerFieldsHaveNoToggle)
{
    auto form = Open();
    KELCompositeField* peers = Composite(*form, "Peers");
    ASSERT_NE(peers, nullptr);
    peers->SetFolded(true);
    peers->HideWindow();
    EXPECT_FALSE(peers->GetFoldToggle()->isVisible());
    peers->ShowWindow();
    EXPECT_TRUE(peers->GetFoldToggle()->isVisible());
    EXPECT_FALSE(peers->GetWindow()->isVisible()) << "shown again, still folded";

    KELCompositeField* place = Composite(*form, "Place");
    int inner = 0;
    for (QToolButton* toggle : place->GetWindow()->findChildren<QToolButton*>())
        inner += toggle->accessibleName() == "Fold" ? 1 : 0;
    EXPECT_EQ(inner, 0) << "Position, a record inside Place, folds with it";
}

}  // namespace
