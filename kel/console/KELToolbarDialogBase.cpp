// SPDX-License-Identifier: BSD-3-Clause
#include "kel/console/KELToolbarDialogBase.h"

#include "kel/forms/KELIdlePass.h"
#include "kel/frame/KELResources.h"

#include <QAction>
#include <QPixmap>
#include <QVBoxLayout>

namespace {

// The part of a command string before its first line feed (the button's
// text), or after it (the tip).
std::string Part(const std::string& text, bool tip)
{
    const std::size_t feed = text.find('\n');
    if (feed == std::string::npos)
        return tip ? std::string() : text;
    return tip ? text.substr(feed + 1) : text.substr(0, feed);
}

}  // namespace

CDlgToolBar::CDlgToolBar(QWidget* parent) : QToolBar(parent)
{
    setProperty("controlId", kToolbarId);
    setMovable(false);
    setFloatable(false);
}

CDlgToolBar::~CDlgToolBar() = default;

QAction* CDlgToolBar::GetButton(unsigned int command) const
{
    for (QAction* action : actions())
        if (!action->isSeparator() && action->data().toUInt() == command)
            return action;
    return nullptr;
}

int CDlgToolBar::OnIdleUpdateCmdUI(bool disableIfNoHandler)
{
    auto* dialog = dynamic_cast<KELToolbarDialogBase*>(parentWidget());
    if (!dialog || !isVisibleTo(dialog))
        return 0;
    for (QAction* action : actions()) {
        if (action->isSeparator())
            continue;
        bool enabled = true;
        if (dialog->OnUpdateCommand(action->data().toUInt(), enabled))
            action->setEnabled(enabled);
        else if (disableIfNoHandler)
            action->setEnabled(false);
    }
    return 0;
}

KELToolbarDialogBase::KELToolbarDialogBase(unsigned int dialogId, const unsigned int* buttons, int buttonCount,
                                           unsigned int bitmapId, unsigned int toolbarStyle, QWidget* parent)
    : QDialog(parent), m_dialogId(dialogId), m_pButtons(buttons), m_buttonCount(buttons ? buttonCount : 0),
      m_bitmapId(bitmapId), m_toolbarStyle(toolbarStyle)
{
    setProperty("controlId", dialogId);
    KELIdlePass::Register(this, [this] { OnKickIdle(); });
}

KELToolbarDialogBase::~KELToolbarDialogBase() { KELIdlePass::Unregister(this); }

int KELToolbarDialogBase::OnInitDialog()
{
    if (m_pToolBar)
        return 1;
    m_pToolBar = new CDlgToolBar(this);
    m_pToolBar->setProperty("toolbarStyle", m_toolbarStyle);
    m_pToolBar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    if (const char* bitmap = KELResources::Image(m_bitmapId)) {
        QPixmap strip;
        if (strip.loadFromData(QByteArray(bitmap), "XPM"))
            m_pToolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    }
    for (int i = 0; i < m_buttonCount; ++i) {
        const unsigned int command = m_pButtons[i];
        if (command == 0) {
            m_pToolBar->addSeparator();
            continue;
        }
        const std::string text = KELResources::String(command);
        QAction* action = m_pToolBar->addAction(QString::fromStdString(Part(text, false)));
        action->setData(command);
        action->setToolTip(QString::fromStdString(OnToolTipText(command)));
        connect(action, &QAction::triggered, this, [this, command] { OnCommand(command); });
    }
    // Along the top of the client area, above whatever the dialog lays out.
    if (!layout())
        new QVBoxLayout(this);
    layout()->setMenuBar(m_pToolBar);
    return 1;
}

int KELToolbarDialogBase::OnKickIdle()
{
    if (m_pToolBar)
        m_pToolBar->OnIdleUpdateCmdUI(true);
    return 0;
}

std::string KELToolbarDialogBase::OnToolTipText(unsigned int command)
{
    if (command == 0)
        return {};
    std::string tip = Part(KELResources::String(command).substr(0, 255), true);
    if (tip.size() > static_cast<std::size_t>(kMaxTipLength))
        tip.resize(kMaxTipLength);
    return tip;
}

bool KELToolbarDialogBase::OnUpdateCommand(unsigned int, bool&) { return false; }

void KELToolbarDialogBase::OnCommand(unsigned int) {}
