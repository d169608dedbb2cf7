// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/IControlContainer.h"
#include "kel/controls/ILabel.h"
#include "kel/controls/KELFilterBox.h"
#include "kel/fields/IField.h"
#include "kel/forms/IFormLine.h"
#include "kel/forms/IInputForm.h"
#include "kel/model/IPresentationContainer.h"
#include "kel/output/IOutputList.h"
#include "kel/output/KELListModel.h"
#include "support/ContextFixture.h"

#include <QApplication>
#include <QHeaderView>
#include <QTest>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr unsigned int kEcho = 11;
constexpr unsigned int kTest = 10;
const char* const kInterface = "Network core Router r1 Interface eth0";

class FormFilterTest : public ContextFixture {
protected:
    std::unique_ptr<IInputForm> Open(unsigned int directive)
    {
        auto form = std::make_unique<IInputForm>(context);
        form->resize(700, 500);
        form->CreatePresentation(directive == kEcho ? "Echo" : "Test", TEntitySpec(kInterface), directive);
        return form;
    }
    // The labels of the lines the form lays out now.
    static std::vector<std::string> Shown(IInputForm& form)
    {
        std::vector<std::string> shown;
        form.GetContainer()->ForEachElement([&](IPresentationElement& element) {
            if (auto* line = dynamic_cast<IFormLine*>(&element); line && line->IsLineShown())
                shown.push_back(line->GetLabel()->GetPresentationName());
        });
        return shown;
    }
};

TEST_F(FormFilterTest, TypingNarrowsTheLinesByLabelOrValueAndEscapeBringsThemBack)
{
    auto form = Open(kTest);
    form->show();
    const std::vector<std::string> all = Shown(*form);
    ASSERT_EQ(all.size(), 4u);
    dynamic_cast<IFormLine*>(form->GetContainer()->FindElement(0))->GetField()->SetValue(TUnsigned16(4242));

    QApplication::setActiveWindow(form.get());
    QTest::keyClick(static_cast<QWidget*>(form->GetControlContainer()), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), form->GetFilterBox()) << "Ctrl+F focuses the filter";
    QTest::keyClicks(form->GetFilterBox(), "TIME");
    EXPECT_EQ(Shown(*form), std::vector<std::string>{"Timeout"}) << "labels, ignoring case";
    form->GetFilterBox()->clear();
    QTest::keyClicks(form->GetFilterBox(), "424");
    EXPECT_EQ(Shown(*form), std::vector<std::string>{all[0]}) << "values";
    const auto* out = dynamic_cast<IFormLine*>(form->GetContainer()->FindElement(1));
    EXPECT_TRUE(out->IsFilteredOut());
    EXPECT_FALSE(out->GetField()->GetWindow()->isVisible());
    EXPECT_EQ(out->GetVisibility(), 1) << "the designed visibility stays as it was";

    QTest::keyClick(form->GetFilterBox(), Qt::Key_Escape);
    EXPECT_TRUE(form->GetFilterBox()->text().isEmpty());
    EXPECT_EQ(Shown(*form), all);
    EXPECT_TRUE(out->GetField()->GetWindow()->isVisible());
}

TEST_F(FormFilterTest, ALineHiddenBySettingsStaysHiddenWhenTheFilterLetsItThrough)
{
    auto form = Open(kTest);
    auto* line = dynamic_cast<IFormLine*>(form->GetContainer()->FindElement(1));
    line->SetVisibility(0);
    line->HideLine();
    form->ApplyFilter(QStringLiteral("zzz"));
    form->ApplyFilter(QString());
    EXPECT_FALSE(line->IsLineShown());
    EXPECT_FALSE(line->GetField()->GetWindow()->isVisibleTo(form.get()));
}

TEST_F(FormFilterTest, AListFiltersItsRowsAndRowsAddedLaterMeetTheFilter)
{
    IOutputList list(context);
    list.resize(600, 300);
    list.CreatePresentation("Test", TEntitySpec(kInterface), kTest, ZED_DICT_RESPONSE, 1);
    for (const char* entity : {"Network core Router r1 Interface eth0", "Network core Router r2 Interface eth1"}) {
        list.BeginRow(entity);
    }
    QApplication::processEvents();
    EXPECT_EQ(list.GetFilterBox()->GetCount(), "2 rows") << "a list says how many rows it holds";
    list.GetFilterBox()->setText(QStringLiteral("r2"));
    EXPECT_TRUE(list.isRowHidden(0, QModelIndex()));
    EXPECT_FALSE(list.isRowHidden(1, QModelIndex()));
    EXPECT_EQ(list.GetFilterBox()->GetCount(), "1 of 2 rows") << "and how many the filter shows";
    list.BeginRow("Network core Router r1 Interface eth2");
    list.SetCurrentCell(0, QStringLiteral("Network core Router r1 Interface eth2"));
    EXPECT_TRUE(list.isRowHidden(2, QModelIndex()));
    QApplication::processEvents();
    EXPECT_EQ(list.GetFilterBox()->GetCount(), "1 of 3 rows");
    QTest::keyClick(list.GetFilterBox(), Qt::Key_Escape);
    for (int row = 0; row < 3; ++row)
        EXPECT_FALSE(list.isRowHidden(row, QModelIndex())) << row;
    EXPECT_EQ(list.GetFilterBox()->GetCount(), "3 rows");
    list.show();
    QApplication::processEvents();
    EXPECT_GE(list.header()->y(), list.GetFilterBox()->geometry().bottom()) << "the filter stands above the header";
    EXPECT_GE(list.viewport()->y(), list.header()->geometry().bottom()) << "and the rows below it";
}

}  // namespace
