// SPDX-License-Identifier: BSD-3-Clause
#include "kel/console/KELToolbarDialogBase.h"
#include "kel/forms/KELIdlePass.h"
#include "kel/frame/IApplication.h"

#include <QAction>

#include <gtest/gtest.h>

namespace {

constexpr unsigned int kButtons[] = {4072, 0, 4073, 4019};

// Handles the update of Refresh only, and says Apply is off.
class Dialog : public KELToolbarDialogBase {
public:
    Dialog() : KELToolbarDialogBase(5000, kButtons, 4, 0, 0) {}
    bool OnUpdateCommand(unsigned int command, bool& enabled) override
    {
        if (command == 4072)
            enabled = true;
        else if (command == 4073)
            enabled = false;
        else
            return false;
        return true;
    }
    void OnCommand(unsigned int command) override { pressed = command; }
    unsigned int pressed = 0;
};

class ToolbarDialogTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_NE(InitializeKEL("toolbar test"), nullptr); }
    void TearDown() override { DestroyKEL(); }
};

TEST_F(ToolbarDialogTest, TooltipsAreTheSecondLineOfTheCommandsStringCutTo80)
{
    EXPECT_EQ(KELToolbarDialogBase::OnToolTipText(4072), "Read the attributes of the entity again");
    EXPECT_EQ(KELToolbarDialogBase::OnToolTipText(4019), "") << "no line feed, no tip";
    const std::string cut = KELToolbarDialogBase::OnToolTipText(4074);
    EXPECT_EQ(cut.size(), 80u);
    EXPECT_EQ(cut.rfind("Show every event report", 0), 0u);
    EXPECT_EQ(KELToolbarDialogBase::OnToolTipText(0), "");
}

TEST_F(ToolbarDialogTest, ButtonsWithoutAnUpdateHandlerAreDisabledAtIdleTime)
{
    Dialog dialog;
    EXPECT_EQ(dialog.OnInitDialog(), 1);
    dialog.show();
    CDlgToolBar* bar = dialog.GetToolBar();
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->property("controlId").toInt(), 59392);
    EXPECT_EQ(bar->actions().size(), 4) << "three buttons and a separator";
    EXPECT_TRUE(bar->actions()[1]->isSeparator());
    EXPECT_EQ(bar->GetButton(4072)->text(), "&Refresh");
    EXPECT_EQ(bar->GetButton(4072)->toolTip(), "Read the attributes of the entity again");
    KELIdlePass::RunNow();
    EXPECT_TRUE(bar->GetButton(4072)->isEnabled());
    EXPECT_FALSE(bar->GetButton(4073)->isEnabled());
    EXPECT_FALSE(bar->GetButton(4019)->isEnabled()) << "no handler";
    bar->GetButton(4072)->trigger();
    EXPECT_EQ(dialog.pressed, 4072u);
}

}  // namespace
