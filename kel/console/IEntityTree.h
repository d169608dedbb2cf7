// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "zed/value/TEntitySpec.h"

#include <QTreeWidget>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

class QMenu;
class TAsyncCall;
class TCall;
class TDictClass;
class TDictionary;

/// The network as a tree: classes and their instances, filled as the operator
/// opens nodes (the instances of a class are asked for with a wildcard Show
/// when its node opens, never before). An instance's menu (right click, the
/// Menu key or Shift+F10) offers its attributes and each directive of its
/// class, by the directive's name; Enter or a double click on an instance
/// opens its attributes.
class KEL_EXPORT IEntityTree : public QTreeWidget {
public:
    /// What an item stands for.
    enum ItemKind { ClassItem = QTreeWidgetItem::UserType + 1, InstanceItem, PendingItem };
    static constexpr int kEntityRole = Qt::UserRole;     // an instance's entity text
    static constexpr int kClassRole = Qt::UserRole + 1;  // a class's code

    explicit IEntityTree(const TDictionary& dictionary, QWidget* parent = nullptr);
    ~IEntityTree() override;

    /// The host's answers to the operator's choices.
    void OnDirective(std::function<void(const TEntitySpec&, const std::string&)> handler)
    {
        m_onDirective = std::move(handler);
    }
    void OnAttributes(std::function<void(const TEntitySpec&)> handler) { m_onAttributes = std::move(handler); }

    /// Asks for the instances under a class node now (what opening it does),
    /// without waiting: the node says "asking..." until they come.
    void Fill(QTreeWidgetItem* classItem);
    /// Whether a node is still asking.
    bool IsAsking() const;
    /// The entity of the selected instance, if one is selected.
    bool GetSelectedEntity(TEntitySpec& entity) const;
    /// The item of an entity already in the tree, or null.
    QTreeWidgetItem* FindEntity(const std::string& entity) const;
    /// How many Show calls the tree has made: none until a node opens.
    int GetShowCount() const { return m_shows; }
    /// The instances of the entity's class under its parent are asked for
    /// again, if that node was opened: what a Create or a Delete changed shows.
    void EntityChanged(const TEntitySpec& entity);
    /// The menu of the selected instance; null when no instance is selected.
    std::unique_ptr<QMenu> BuildMenu();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QTreeWidgetItem* AddClass(QTreeWidgetItem* parent, const TEntitySpec& above, unsigned int code,
                              const std::string& name);
    void OpenAttributes(QTreeWidgetItem* item);
    void Filled(QTreeWidgetItem* classItem, const TDictClass& cls, TAsyncCall& call);
    // What a call that listed no instance said: the exception's text and its Reason.
    static std::string FaultText(const TDictClass& cls, const TCall& call);
    // Gives up what the nodes under the item (and it) were asking.
    void CancelUnder(QTreeWidgetItem* item);

    const TDictionary& m_dictionary;
    std::function<void(const TEntitySpec&, const std::string&)> m_onDirective;
    std::function<void(const TEntitySpec&)> m_onAttributes;
    int m_shows = 0;
    std::map<QTreeWidgetItem*, std::unique_ptr<TAsyncCall>> m_asking;  // by the class node asking
    std::vector<std::unique_ptr<TAsyncCall>> m_finished;
};
