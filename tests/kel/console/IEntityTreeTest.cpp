// SPDX-License-Identifier: BSD-3-Clause
#include "kel/console/IEntityTree.h"
#include "kel/frame/IApplication.h"
#include "support/ShippedNetwork.h"

#include "zed/call/TCall.h"
#include "zed/call/TCallLoop.h"
#include "zed/dict/TDictionary.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

// A node asks without waiting: its answer comes on the call loop's turn.
void Answered() { ZEDGetCallLoop().RunUntilIdle(std::chrono::seconds(5)); }

class EntityTreeTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        network = InstallShippedNetwork();
        ASSERT_NE(InitializeKEL("tree test"), nullptr);
    }
    void TearDown() override { DestroyKEL(); }

    std::shared_ptr<TSimulatedNetwork> network;
};

TEST_F(EntityTreeTest, InstancesAreAskedForOnlyWhenTheirClassOpens)
{
    IEntityTree tree(Dictionary());
    ASSERT_EQ(tree.topLevelItemCount(), 1);
    QTreeWidgetItem* networks = tree.topLevelItem(0);
    EXPECT_EQ(networks->text(0), "Network");
    EXPECT_EQ(tree.GetShowCount(), 0) << "nothing asked before a node opens";
    networks->setExpanded(true);
    EXPECT_EQ(networks->child(0)->text(0), "asking...") << "the node says it is asking";
    Answered();
    EXPECT_EQ(tree.GetShowCount(), 1);
    ASSERT_GE(networks->childCount(), 1);
    QTreeWidgetItem* core = networks->child(0);
    EXPECT_EQ(core->text(0), "core");
    EXPECT_EQ(core->data(0, IEntityTree::kEntityRole).toString(), "Network core");
    QTreeWidgetItem* routers = core->child(0);
    EXPECT_EQ(routers->text(0), "Router");
    routers->setExpanded(true);
    Answered();
    routers->setExpanded(false);
    routers->setExpanded(true);
    Answered();
    EXPECT_EQ(tree.GetShowCount(), 2) << "a class is asked once";
    ASSERT_NE(tree.FindEntity("Network core Router r2"), nullptr);
}

TEST_F(EntityTreeTest, AnInstanceOpensItsAttributesFromTheKeyboard)
{
    IEntityTree tree(Dictionary());
    std::string opened;
    tree.OnAttributes([&](const TEntitySpec& entity) { opened = entity.ToString(&Dictionary()); });
    tree.topLevelItem(0)->setExpanded(true);
    Answered();
    tree.topLevelItem(0)->child(0)->child(0)->setExpanded(true);
    Answered();
    QTreeWidgetItem* r1 = tree.FindEntity("Network core Router r1");
    ASSERT_NE(r1, nullptr);
    tree.setCurrentItem(r1);
    TEntitySpec selected;
    ASSERT_TRUE(tree.GetSelectedEntity(selected));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(&tree, &enter);
    EXPECT_EQ(opened, "Network core Router r1");
    tree.setCurrentItem(tree.topLevelItem(0));
    EXPECT_FALSE(tree.GetSelectedEntity(selected)) << "a class is no entity";
}

// The menu an operator opens with Shift+F10 names each directive as the
// directive pick does.
TEST_F(EntityTreeTest, ShiftF10OpensTheMenuWhichNamesDirectivesByTheirNames)
{
    IEntityTree tree(Dictionary());
    tree.topLevelItem(0)->setExpanded(true);
    Answered();
    tree.topLevelItem(0)->child(0)->child(0)->setExpanded(true);
    Answered();
    tree.setCurrentItem(tree.FindEntity("Network core Router r1"));
    QStringList shown;
    QTimer::singleShot(0, [&] {
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            for (QAction* action : menu->actions())
                if (!action->isSeparator())
                    shown << action->text();
            menu->close();
        }
    });
    QKeyEvent shiftF10(QEvent::KeyPress, Qt::Key_F10, Qt::ShiftModifier);
    QApplication::sendEvent(&tree, &shiftF10);
    ASSERT_FALSE(shown.isEmpty()) << "the menu opened";
    EXPECT_EQ(shown.first(), "&Attributes");
    EXPECT_TRUE(shown.contains("Show"));
    EXPECT_FALSE(shown.contains("Show Attributes")) << "not a second name for the same directive";
}

// What a Create or a Delete changed shows in a node that was opened.
TEST_F(EntityTreeTest, AnOpenedClassAsksAgainWhenOneOfItsEntitiesChanged)
{
    IEntityTree tree(Dictionary());
    tree.topLevelItem(0)->setExpanded(true);
    Answered();
    tree.EntityChanged(TEntitySpec("Network core Router r1 Interface eth0"));
    EXPECT_EQ(tree.GetShowCount(), 1) << "a class never opened is left to ask when it opens";
    QTreeWidgetItem* routers = tree.topLevelItem(0)->child(0)->child(0);
    routers->setExpanded(true);
    Answered();
    ASSERT_NE(tree.FindEntity("Network core Router r2"), nullptr);
    TSyncCall remove(
        TEntitySpec("Network core Router r2"),
        Dictionary().FindClass(std::vector<unsigned int>{1, 2})->FindDirective(std::string("Delete"))->GetID());
    ASSERT_EQ(remove.Execute(), ZED_STATUS_RESPONSE);
    tree.EntityChanged(TEntitySpec("Network core Router r2"));
    EXPECT_TRUE(tree.IsAsking()) << "it asks again, without waiting";
    Answered();
    EXPECT_EQ(tree.FindEntity("Network core Router r2"), nullptr);
    EXPECT_NE(tree.FindEntity("Network core Router r1"), nullptr);
    EXPECT_TRUE(routers->isExpanded());
}

}  // namespace
