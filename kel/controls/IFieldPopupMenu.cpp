// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/IFieldPopupMenu.h"

#include "resources/KELResApi.h"
#include "kel/controls/IControlBase.h"
#include "kel/fields/IContainer.h"
#include "kel/fields/IField.h"
#include "kel/fields/KELFormContext.h"
#include "kel/frame/KELLaunch.h"
#include "kel/frame/KELResources.h"
#include "zed/value/TEntitySpec.h"

#include <QAction>
#include <QMenu>

namespace {

constexpr unsigned int kSubMenuCount = 6;

// A separator first when the popup already holds something; an item of id 0 is a separator.
void AppendSubMenu(QMenu& popup, const KELResSubMenu& sub)
{
    if (!popup.actions().isEmpty())
        popup.addSeparator();
    for (unsigned int i = 0; i < sub.count; ++i) {
        const KELResMenuItem& item = sub.items[i];
        if (item.id == 0) {
            popup.addSeparator();
            continue;
        }
        popup.addAction(QString::fromUtf8(item.text ? item.text : ""))->setData(item.id);
    }
}

void AppendLaunchEntries(QMenu& popup, IField& field)
{
    IField* outermost = IControlBase::OutermostField(&field);
    KELFormContext* form = outermost->GetContainer() ? outermost->GetContainer()->GetFormContext() : nullptr;
    if (!form)
        return;
    const TEntitySpec& entity = form->GetCurrentEntity();
    const unsigned int directive = form->GetCurrentDirective();
    if (entity.ToString().empty() || directive == 0 || directive == 1 || outermost->GetID() == 0)
        return;
    const std::vector<std::string> names = KELLaunch::GetApplications(entity, directive, outermost->GetID());
    for (std::size_t i = 0; i < names.size(); ++i) {
        QAction* entry = popup.addAction(QString::fromStdString(names[i]));
        entry->setData(KEL_ID_FIELD_LAUNCH + static_cast<unsigned int>(i));
        entry->setProperty(KEL_LAUNCH_INDEX_PROPERTY, static_cast<unsigned int>(i));
    }
}

}  // namespace

IFieldPopupMenu::IFieldPopupMenu(unsigned int mode) : m_mode(mode) {}

IFieldPopupMenu::~IFieldPopupMenu() = default;

unsigned int IFieldPopupMenu::ModeFor(IField* field)
{
    return field && field->IsSetOfElement() ? kSingleField | kSetOf : kSingleField;
}

bool IFieldPopupMenu::Build(QMenu& popup, IField& field) const
{
    unsigned int count = 0;
    const KELResSubMenu* menu = KELResources::Menu(KEL_MENU_FIELD, count);
    if (!menu || count < kSubMenuCount)
        return false;
    if (m_mode == 0)
        return true;
    AppendSubMenu(popup, menu[3]);
    if (!field.IsReadOnly())
        AppendLaunchEntries(popup, field);
    if (field.DefaultAllowed() == ZED_DEFAULT_DICTIONARY)
        AppendSubMenu(popup, menu[4]);
    else if (field.DefaultAllowed() == ZED_DEFAULT_SERVER)
        AppendSubMenu(popup, menu[5]);
    // Set-of commands before the single-field ones, as operators know them.
    if (m_mode & kSetOf)
        AppendSubMenu(popup, menu[1]);
    if (m_mode & kThird)
        AppendSubMenu(popup, menu[2]);
    if (m_mode & kSingleField)
        AppendSubMenu(popup, menu[0]);
    return true;
}
