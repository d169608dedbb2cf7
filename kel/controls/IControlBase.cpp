// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/IControlBase.h"

#include "kel/fields/IField.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/fields/KELFormContext.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELLaunch.h"
#include "kel/frame/KELTrace.h"
#include "zed/value/TEntitySpec.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPalette>
#include <QPointer>
#include <QWidget>

IControlBase::IControlBase(IField* field) : m_pField(field), m_popupMenu(IFieldPopupMenu::ModeFor(field)) {}

IControlBase::~IControlBase() = default;

IField* IControlBase::OutermostField(IField* field)
{
    while (field) {
        auto* container = dynamic_cast<IFieldContainer*>(field->GetContainer());
        if (!container || !container->GetFieldParent())
            break;
        field = container->GetFieldParent();
    }
    return field;
}

void IControlBase::ShowAsReadOnly(QWidget* control)
{
    if (!control)
        return;
    // Already so when a parent showed all it holds as read-only (an output form).
    if (control->palette().color(QPalette::Base) == control->palette().color(QPalette::Window))
        return;
    QPalette palette = control->palette();
    palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    control->setPalette(palette);
}

void IControlBase::ShowAsReadOnly(QLineEdit* edit)
{
    if (!edit)
        return;
    edit->setReadOnly(true);
    edit->setFrame(false);
    ShowAsReadOnly(static_cast<QWidget*>(edit));
}

std::unique_ptr<QMenu> IControlBase::BuildFieldPopupMenu(QWidget* owner)
{
    if (!m_pField) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELControl", this) << "KEL : IControlBase::TrackFieldPopupMenu, pField is NULL";
        return nullptr;
    }
    auto popup = std::make_unique<QMenu>(owner);
    if (!m_popupMenu.Build(*popup, *m_pField)) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELControl", this)
            << "KEL : IControlBase::TrackFieldPopupMenu, GetPopup() has returned NULL";
        return nullptr;
    }
    OnPreTrackPopupMenu(popup.get());
    return popup;
}

void IControlBase::TrackFieldPopupMenu(int x, int y, QWidget* owner)
{
    std::unique_ptr<QMenu> popup = BuildFieldPopupMenu(owner);
    if (!popup || popup->actions().isEmpty())
        return;
    QAction* chosen = popup->exec(QPoint(x, y));
    if (!chosen)
        return;
    const QVariant launch = chosen->property(KEL_LAUNCH_INDEX_PROPERTY);
    const unsigned int id = chosen->data().toUInt();
    // The command may remove this very control (a set-of entry): nothing of it is used after.
    if (launch.isValid())
        OnLaunch(launch.toUInt());
    else
        OnCommand(id);
}

void IControlBase::OnPreTrackPopupMenu(QMenu* menu)
{
    if (!m_pField || !menu) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELControl", this)
            << "KEL : IControlBase::OnPreTrackPopupMenu, pField or pMenu is NULL";
        return;
    }
    const bool readOnly = m_pField->IsReadOnly();
    for (QAction* action : menu->actions()) {
        if (action->isSeparator() || action->property(KEL_LAUNCH_INDEX_PROPERTY).isValid())
            continue;
        switch (action->data().toUInt()) {
        case KEL_ID_FIELD_REVERT: action->setEnabled(!readOnly); break;
        case KEL_ID_FIELD_HELP: action->setEnabled(m_pField->HasHelp() != 0); break;
        case KEL_ID_FIELD_ADD_SETOF:
        case KEL_ID_FIELD_REMOVE_SET:
            if (m_pField->IsSetOfElement())
                action->setEnabled(!readOnly);
            break;
        default: break;
        }
    }
}

void IControlBase::OnCommand(unsigned int id)
{
    switch (id) {
    case KEL_ID_FIELD_REVERT: OnFieldRevertToInit(); break;
    case KEL_ID_FIELD_DEFAULT: OnSetDefault(); break;
    case KEL_ID_FIELD_ADD_SETOF: OnFieldAddSetOf(); break;
    case KEL_ID_FIELD_REMOVE_SET: OnFieldRemoveSet(); break;
    case KEL_ID_FIELD_HELP: OnFieldHelp(); break;
    default:
        if (id >= KEL_ID_FIELD_LAUNCH && id < KEL_ID_FIELD_REVERT)
            OnLaunch(id - KEL_ID_FIELD_LAUNCH);
        break;
    }
}

void IControlBase::OnFieldHelp()
{
    if (m_pField && GetKELapp())
        GetKELapp()->DisplayHelp(m_pField->GetHelp());
}

void IControlBase::OnFieldAddSetOf()
{
    if (m_pField)
        m_pField->AddNewInSet();
}

void IControlBase::OnFieldRemoveSet()
{
    if (m_pField)
        m_pField->RemoveFromSet();
}

void IControlBase::OnFieldRevertToInit()
{
    if (IField* outermost = OutermostField(m_pField))
        outermost->RevertToInitial();
}

void IControlBase::OnSetDefault()
{
    IField* outermost = OutermostField(m_pField);
    // A field still inside a container has no field of its own above it to answer for the line.
    if (!outermost || dynamic_cast<IFieldContainer*>(outermost->GetContainer()))
        return;
    outermost->SetToDefault();
}

void IControlBase::OnLaunch(unsigned int index)
{
    IField* outermost = OutermostField(m_pField);
    KELFormContext* form =
        outermost && outermost->GetContainer() ? outermost->GetContainer()->GetFormContext() : nullptr;
    if (!form)
        return;
    std::string error;
    if (!KELLaunch::Start(form->GetCurrentEntity(), form->GetCurrentDirective(), outermost->GetID(), index, &error)) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELControl", this)
            << "KEL : IControlBase::OnLaunch, application " << index << " not started : " << error;
    }
}

bool IControlBase::HandlePopupEvent(QWidget* control, QEvent* event)
{
    QPoint at;
    if (event->type() == QEvent::ContextMenu) {
        const auto* menu = static_cast<QContextMenuEvent*>(event);
        at = menu->reason() == QContextMenuEvent::Mouse ? menu->globalPos()
                                                        : control->mapToGlobal(QPoint(0, control->height()));
    } else if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool menuKey = key->key() == Qt::Key_Menu;
        const bool shiftF10 = key->key() == Qt::Key_F10 && key->modifiers() == Qt::ShiftModifier;
        if (!menuKey && !shiftF10)
            return false;
        at = control->mapToGlobal(QPoint(0, control->height()));
    } else {
        return false;
    }
    event->accept();
    TrackFieldPopupMenu(at.x(), at.y(), control);
    return true;
}
