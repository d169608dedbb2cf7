// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QDialog>
#include <QToolBar>

#include <string>

class KELToolbarDialogBase;

/// The toolbar of a toolbar dialog: its buttons take their enabled state from
/// the dialog at idle time.
class KEL_EXPORT CDlgToolBar : public QToolBar {
public:
    static constexpr int kToolbarId = 59392;

    explicit CDlgToolBar(QWidget* parent = nullptr);
    ~CDlgToolBar() override;

    /// The command-update pass with the parent dialog as target; a command
    /// the dialog does not handle is disabled when disableIfNoHandler.
    int OnIdleUpdateCmdUI(bool disableIfNoHandler);
    /// The button of a command, or null.
    QAction* GetButton(unsigned int command) const;
};

/// A host dialog with its own toolbar along the top. The buttons are command
/// identifiers (0 a separator); each button's text is the first line of the
/// command's string resource and its tooltip the second (at most 80
/// characters, none without a line feed). At idle time a button is enabled by
/// the dialog's update handler for its command, and disabled without one.
class KEL_EXPORT KELToolbarDialogBase : public QDialog {
public:
    static constexpr int kMaxTipLength = 80;

    KELToolbarDialogBase(unsigned int dialogId, const unsigned int* buttons, int buttonCount, unsigned int bitmapId,
                         unsigned int toolbarStyle, QWidget* parent = nullptr);
    ~KELToolbarDialogBase() override;

    /// Makes the toolbar; 1.
    virtual int OnInitDialog();
    /// The idle pass: the dialog's controls and the toolbar update their state; 0.
    int OnKickIdle();
    /// The tooltip of a command: the second line of its string, cut to 80 characters.
    static std::string OnToolTipText(unsigned int command);

    /// Whether the dialog handles the command's update and, if so, whether it
    /// is enabled; the base handles none.
    virtual bool OnUpdateCommand(unsigned int command, bool& enabled);
    /// A button was pressed.
    virtual void OnCommand(unsigned int command);

    CDlgToolBar* GetToolBar() const { return m_pToolBar; }
    unsigned int GetDialogId() const { return m_dialogId; }

private:
    unsigned int m_dialogId;
    const unsigned int* m_pButtons;  // the host's array; not owned
    int m_buttonCount;
    unsigned int m_bitmapId;
    CDlgToolBar* m_pToolBar = nullptr;  // a child window
    unsigned int m_toolbarStyle;
};
