// SPDX-License-Identifier: BSD-3-Clause
#include "kel/console/IConsole.h"
#include "kel/frame/KELString.h"

#include "kel/console/IOutputWnd.h"
#include "kel/frame/KELResources.h"
#include "kel/output/IListViewOutput.h"

#include <QMenu>
#include <QTabWidget>

IConsole::IConsole(QWidget* parent) : QDockWidget(parent)
{
    setObjectName(QStringLiteral("Console"));
    setWindowTitle(QString::fromStdString(KELResources::String(KELString::kConsole)));
}

IConsole::~IConsole() = default;

void IConsole::AddTabWnd(std::string title, int index)
{
    auto* window = new IOutputWnd;
    window->setParent(this);
    window->hide();
    window->SetTitle(std::move(title));
    window->SetIndex(index);
    m_windows.push_back(window);
}

bool IConsole::Create(QWidget* parent)
{
    if (parent)
        setParent(parent);
    if (m_pTabs)
        return true;
    m_pTabs = new QTabWidget(this);
    m_pTabs->setDocumentMode(true);
    m_pTabs->setTabPosition(QTabWidget::South);
    int id = kFirstTabId;
    for (IOutputWnd* window : m_windows) {
        window->setProperty("controlId", id++);
        window->Create(m_pTabs);
        m_pTabs->addTab(window, QString::fromStdString(window->GetTitle()));
        IListViewOutput* list = window->GetListCtrl();
        list->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(list, &QWidget::customContextMenuRequested, this, [this, list](const QPoint& at) {
            QMenu menu;
            OnExtendContextMenu(menu);
            if (const QAction* chosen = menu.exec(list->viewport()->mapToGlobal(at)))
                OnCommand(chosen->data().toInt());
        });
    }
    setWidget(m_pTabs);
    if (m_pTabs->count() > 0)
        m_pTabs->setCurrentIndex(0);
    return true;
}

IOutputWnd* IConsole::GetTabWnd(int index) const
{
    for (IOutputWnd* window : m_windows)
        if (window->GetIndex() == index)
            return window;
    return nullptr;
}

IOutputWnd* IConsole::GetActiveWnd() const
{
    return m_pTabs ? dynamic_cast<IOutputWnd*>(m_pTabs->currentWidget()) : nullptr;
}

void IConsole::OnExtendContextMenu(QMenu& menu)
{
    menu.addSeparator();
    for (int command : {kCopyCommand, kClearCommand})
        menu.addAction(QString::fromStdString(KELResources::String(static_cast<unsigned int>(command))))
            ->setData(command);
}

bool IConsole::OnCommand(int command)
{
    IOutputWnd* active = GetActiveWnd();
    if (!active)
        return false;
    if (command == kClearCommand) {
        if (active->Clear() && active->HasImages())
            active->GetListCtrl()->setColumnWidth(1, IOutputWnd::kMessageWidth);
        return true;
    }
    if (command == kCopyCommand) {
        active->GetListCtrl()->CopyToClipboard();
        return true;
    }
    return false;
}

bool IConsole::HasWindow() const { return m_pTabs != nullptr && !m_windows.empty(); }

void IConsole::SetMessage(KEL_T_Severity severity, const std::string& text)
{
    if (HasWindow())
        m_windows.front()->SetMessage(severity, text.c_str());
}
