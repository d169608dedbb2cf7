// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/frame/KELConsoleSink.h"

#include <QDockWidget>

#include <memory>
#include <string>
#include <vector>

class IOutputWnd;
class QMenu;
class QTabWidget;

/// The console: a dockable bar of tabs, each an output window of messages.
/// Tabs are added before the bar is created; once it is and the host has
/// handed it to the application object (SetConsole), every library message
/// goes to the first tab. Its menu copies the selected messages or clears the
/// active tab.
class KEL_EXPORT IConsole : public QDockWidget, public IMessageConsole {
public:
    static constexpr int kFirstTabId = 33300;
    static constexpr int kCopyCommand = 4019;
    static constexpr int kClearCommand = 4014;

    explicit IConsole(QWidget* parent = nullptr);
    ~IConsole() override;

    /// Before Create: a tab of that title, found again by its index.
    void AddTabWnd(std::string title, int index);
    /// Makes the tab window and every output window (ids 33300, 33301...), then shows the first tab.
    bool Create(QWidget* parent);
    /// The first output window of that index, or null.
    IOutputWnd* GetTabWnd(int index) const;
    IOutputWnd* GetActiveWnd() const;
    QTabWidget* GetTabWindow() const { return m_pTabs; }

    /// A separator, then Copy (4019) and Clear (4014).
    void OnExtendContextMenu(QMenu& menu);
    /// Copy or clear the active tab; false for any other command.
    bool OnCommand(int command);

    bool HasWindow() const override;
    void SetMessage(KEL_T_Severity severity, const std::string& text) override;

private:
    std::vector<IOutputWnd*> m_windows;  // Qt owns them: the tab window once created, the console before
    QTabWidget* m_pTabs = nullptr;
};
