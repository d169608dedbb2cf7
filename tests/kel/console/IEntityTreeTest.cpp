#include "kel/console/IEntityTree.h"
#include "kel/frame/IApplication.h"
#include "support/ShippedNetwork.h"

#include <QApplication>
#include <QKeyEvent>

#include <gtest/gtest.h>

namespace {

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
    EXPECT_EQ(tree.GetShowCount(), 1);
    ASSERT_GE(networks->childCount(), 1);
    QTreeWidgetItem* core = networks->child(0);
    EXPECT_EQ(core->text(0), "core");
    EXPECT_EQ(core->data(0, IEntityTree::kEntityRole).toString(), "Network core");
    QTreeWidgetItem* routers = core->child(0);
    EXPECT_EQ(routers->text(0), "Router");
    routers->setExpanded(true);
    routers->setExpanded(false);
    routers->setExpanded(true);
    EXPECT_EQ(tree.GetShowCount(), 2) << "a class is asked once";
    ASSERT_NE(tree.FindEntity("Network core Router r2"), nullptr);
}

TEST_F(EntityTreeTest, AnInstanceOpensItsAttributesFromTheKeyboard)
{
    IEntityTree tree(Dictionary());
    std::string opened;
    tree.OnAttributes([&](const TEntitySpec& entity) { opened = entity.ToString(&Dictionary()); });
    tree.topLevelItem(0)->setExpanded(true);
    tree.topLevelItem(0)->child(0)->child(0)->setExpanded(true);
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

} // namespace
