// SPDX-License-Identifier: BSD-3-Clause
#include "kel/console/IEntityTree.h"
#include "zed/dict/ZedDirectiveNames.h"
#include "kel/frame/KELString.h"

#include "kel/frame/IApplication.h"
#include "kel/frame/KELResources.h"
#include "zed/TException.h"
#include "zed/call/TCallAnswers.h"
#include "zed/call/TCall.h"
#include "zed/call/TCallLoop.h"
#include "zed/dict/TDictionary.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>

namespace {

constexpr int kAboveRole = Qt::UserRole + 2;  // a class item's parent entity text

const TDictClass* ClassOf(const TDictionary& dictionary, const TEntitySpec& entity)
{
    return dictionary.FindClass(entity.GetEntityClass());
}

}  // namespace

IEntityTree::IEntityTree(const TDictionary& dictionary, QWidget* parent) : QTreeWidget(parent), m_dictionary(dictionary)
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setAccessibleName(QStringLiteral("Network"));
    for (std::size_t i = 0; i < dictionary.GetRootClassCount(); ++i) {
        const TDictClass& root = dictionary.GetRootClass(i);
        addTopLevelItem(AddClass(nullptr, TEntitySpec(), root.GetCode(), root.GetName()));
    }
    connect(this, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* item) {
        if (item->type() == ClassItem)
            Fill(item);
    });
    connect(this, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item, int) { OpenAttributes(item); });
}

IEntityTree::~IEntityTree() = default;

QTreeWidgetItem* IEntityTree::AddClass(QTreeWidgetItem* parent, const TEntitySpec& above, unsigned int code,
                                       const std::string& name)
{
    auto* item = new QTreeWidgetItem(ClassItem);
    item->setText(0, QString::fromStdString(name));
    item->setData(0, kClassRole, code);
    item->setData(0, kAboveRole, QString::fromStdString(above.ToString(&m_dictionary)));
    // A placeholder child, so that the node can be opened before it is filled.
    item->addChild(new QTreeWidgetItem(PendingItem));
    if (parent)
        parent->addChild(item);
    return item;
}

void IEntityTree::Fill(QTreeWidgetItem* classItem)
{
    if (!classItem || classItem->type() != ClassItem || m_asking.count(classItem))
        return;
    if (classItem->childCount() != 1 || classItem->child(0)->type() != PendingItem)
        return;  // filled already
    const std::string aboveText = classItem->data(0, kAboveRole).toString().toStdString();
    TEntitySpec wildcard;
    if (!aboveText.empty()) {
        const std::optional<TEntitySpec> above = TEntitySpec::Parse(aboveText, &m_dictionary);
        if (!above)
            return;
        wildcard = *above;
    }
    wildcard.AddClassWildcard(classItem->data(0, kClassRole).toUInt());
    const TDictClass* cls = ClassOf(m_dictionary, wildcard);
    const TDictDirective* show = cls ? cls->FindDirective(std::string(ZedDirective::kShow)) : nullptr;
    if (!show)
        return;
    // The node says it is asking; the window goes on meanwhile.
    classItem->child(0)->setText(0, QStringLiteral("asking..."));
    m_finished.clear();
    auto call = std::make_unique<TAsyncCall>(wildcard, show->GetID());
    TAsyncCall& asking = *call;
    m_asking.emplace(classItem, std::move(call));
    ++m_shows;
    if (!asking.Start([this, classItem, cls](TAsyncCall& answered) { Filled(classItem, *cls, answered); }))
        m_asking.erase(classItem);
}

void IEntityTree::Filled(QTreeWidgetItem* classItem, const TDictClass& cls, TAsyncCall& call)
{
    // Kept until the next fill: its completion is still running.
    if (const auto asked = m_asking.find(classItem); asked != m_asking.end()) {
        m_finished.push_back(std::move(asked->second));
        m_asking.erase(asked);
    }
    qDeleteAll(classItem->takeChildren());
    bool listed = false;
    std::string fault;
    for (std::size_t i = 0; call.SelectReply(i); ++i) {
        if (call.GetStatus() != ZED_STATUS_RESPONSE) {
            // No instance at all is an empty class, not a fault.
            const bool none = call.GetStatus() == ZED_STATUS_COMMON_EXCEPTION
                              && call.GetReply().GetReplyCode() == ZED_COMMON_NO_SUCH_ENTITY;
            if (!none && fault.empty())
                fault = FaultText(cls, call);
            continue;
        }
        listed = true;
        const TEntitySpec entity = call.GetOutEntity();
        auto* instance = new QTreeWidgetItem(InstanceItem);
        const std::size_t depth = entity.GetDepth();
        instance->setText(0, QString::fromStdString(depth ? entity.GetComponent(depth - 1).name : std::string()));
        instance->setData(0, kEntityRole, QString::fromStdString(entity.ToString(&m_dictionary)));
        instance->setToolTip(0, instance->data(0, kEntityRole).toString());
        classItem->addChild(instance);
        for (std::size_t c = 0; c < cls.GetChildCount(); ++c)
            AddClass(instance, entity, cls.GetChild(c).GetCode(), cls.GetChild(c).GetName());
    }
    if (fault.empty())
        return;
    // The operator hears why, and opening the class again asks again.
    if (GetKELapp())
        GetKELapp()->InsertMessageConsole(
            KEL_SEVERITY_PROBLEM,
            KELResources::Format(KELString::kNotListed, {call.GetEntity().ToString(&m_dictionary), fault}));
    if (!listed) {
        classItem->addChild(new QTreeWidgetItem(PendingItem));
        classItem->setExpanded(false);
    }
}

std::string IEntityTree::FaultText(const TDictClass& cls, const TCall& call)
{
    const unsigned int code = call.GetReply().GetReplyCode();
    const TDictDirective* common = cls.FindDirective(ZED_COMMON_EXCEPTION_DIRECTIVE);
    const TDictReply* reply = common && call.GetStatus() == ZED_STATUS_COMMON_EXCEPTION
                                  ? common->FindReply(ZED_DICT_EXCEPTION, code)
                                  : nullptr;
    std::string text = reply ? reply->GetReplyText() : "exception " + std::to_string(code);
    if (const TValue& reason = call.GetReply()[1]; reason.IsPresent() && reason.GetDatatype() == ZED_DT_LATIN1STRING)
        text += " (" + reason.ToString() + ")";
    return text;
}

void IEntityTree::CancelUnder(QTreeWidgetItem* item)
{
    for (auto it = m_asking.begin(); it != m_asking.end();) {
        bool under = false;
        for (const QTreeWidgetItem* up = it->first; up && !under; up = up->parent())
            under = up == item;
        it = under ? m_asking.erase(it) : std::next(it);
    }
}

bool IEntityTree::IsAsking() const { return !m_asking.empty(); }

bool IEntityTree::GetSelectedEntity(TEntitySpec& entity) const
{
    const QTreeWidgetItem* item = currentItem();
    if (!item || item->type() != InstanceItem)
        return false;
    const std::optional<TEntitySpec> parsed =
        TEntitySpec::Parse(item->data(0, kEntityRole).toString().toStdString(), &m_dictionary);
    if (!parsed)
        return false;
    entity = *parsed;
    return true;
}

QTreeWidgetItem* IEntityTree::FindEntity(const std::string& entity) const
{
    for (QTreeWidgetItemIterator it(const_cast<IEntityTree*>(this)); *it; ++it)
        if ((*it)->type() == InstanceItem && (*it)->data(0, kEntityRole).toString().toStdString() == entity)
            return *it;
    return nullptr;
}

void IEntityTree::OpenAttributes(QTreeWidgetItem* item)
{
    TEntitySpec entity;
    if (item && item == currentItem() && GetSelectedEntity(entity) && m_onAttributes)
        m_onAttributes(entity);
}

std::unique_ptr<QMenu> IEntityTree::BuildMenu()
{
    TEntitySpec entity;
    if (!GetSelectedEntity(entity))
        return nullptr;
    const TDictClass* cls = ClassOf(m_dictionary, entity);
    auto menu = std::make_unique<QMenu>(this);
    menu->addAction(QStringLiteral("&Attributes"), this, [this, entity] {
        if (m_onAttributes)
            m_onAttributes(entity);
    });
    menu->addSeparator();
    // By the name the host's directive pick shows too: one name everywhere.
    if (cls)
        for (const TDictDirective& directive : cls->GetDirectives()) {
            if (directive.GetID() == ZED_COMMON_EXCEPTION_DIRECTIVE)
                continue;
            const std::string name = directive.GetName();
            menu->addAction(QString::fromStdString(name), this, [this, entity, name] {
                if (m_onDirective)
                    m_onDirective(entity, name);
            });
        }
    return menu;
}

void IEntityTree::contextMenuEvent(QContextMenuEvent* event)
{
    std::unique_ptr<QMenu> menu = BuildMenu();
    if (!menu)
        return;
    const QPoint at = event->reason() == QContextMenuEvent::Mouse
                          ? event->globalPos()
                          : viewport()->mapToGlobal(visualItemRect(currentItem()).center());
    menu->exec(at);
}

void IEntityTree::EntityChanged(const TEntitySpec& entity)
{
    const std::size_t depth = entity.GetDepth();
    if (depth == 0)
        return;
    TEntitySpec above;
    for (std::size_t i = 0; i + 1 < depth; ++i) {
        const TEntitySpec::Component& level = entity.GetComponent(i);
        if (level.kind == TEntitySpec::Instance::Named)
            above.AddClass(level.code, level.name);
        else if (level.kind == TEntitySpec::Instance::Wildcard)
            above.AddClassWildcard(level.code);
        else
            above.AddClassNullInstance(level.code);
    }
    const QString aboveText = depth > 1 ? QString::fromStdString(above.ToString(&m_dictionary)) : QString();
    const unsigned int code = entity.GetComponent(depth - 1).code;
    for (QTreeWidgetItemIterator it(this); *it; ++it) {
        QTreeWidgetItem* item = *it;
        if (item->type() != ClassItem || item->data(0, kClassRole).toUInt() != code
            || item->data(0, kAboveRole).toString() != aboveText)
            continue;
        if (item->childCount() == 1 && item->child(0)->type() == PendingItem && !m_asking.count(item))
            return;  // never opened: it asks when it opens
        const bool open = item->isExpanded();
        CancelUnder(item);
        qDeleteAll(item->takeChildren());
        item->addChild(new QTreeWidgetItem(PendingItem));
        Fill(item);
        item->setExpanded(open);
        return;
    }
}

void IEntityTree::keyPressEvent(QKeyEvent* event)
{
    // Shift+F10 opens the menu, as the Menu key does.
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier && currentItem()) {
        const QPoint at = visualItemRect(currentItem()).center();
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, at, viewport()->mapToGlobal(at), event->modifiers());
        contextMenuEvent(&menu);
        return;
    }
    // Enter opens the attributes, as a double click does.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && currentItem()) {
        OpenAttributes(currentItem());
        return;
    }
    QTreeWidget::keyPressEvent(event);
}
