// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/controls/IFieldPopupMenu.h"

#include <memory>

class IField;
class QEvent;
class QLineEdit;

/// What a control tells its field through IField::ControlCallback.
inline constexpr int KEL_CONTROL_KILLFOCUS = 1;
inline constexpr int KEL_CONTROL_CHANGED = 2;
inline constexpr int KEL_CONTROL_CLICKED = 3;
class QMenu;
class QWidget;

/// What every control that edits a field, and every field container, mixes
/// in: the tie to its field and the field's popup menu, whose commands revert
/// the field, set its default, add or remove set-of entries, show its help or
/// launch an application for the form's entity. Revert and default act on the
/// outermost field of the form line, even from a nested member's menu.
class KEL_EXPORT IControlBase {
public:
    explicit IControlBase(IField* field = nullptr);
    virtual ~IControlBase();
    /// Enables or greys the entries for the field's state.
    virtual void OnPreTrackPopupMenu(QMenu* menu);

    /// Builds the menu, shows it at the screen point and carries out the chosen command.
    void TrackFieldPopupMenu(int x, int y, QWidget* owner);
    /// The menu TrackFieldPopupMenu shows, built and enabled; null (traced) when it cannot be made.
    std::unique_ptr<QMenu> BuildFieldPopupMenu(QWidget* owner);
    /// Carries out a command of the menu; a launch entry is told by its action.
    void OnCommand(unsigned int id);
    void OnLaunch(unsigned int index);

    void OnFieldHelp();
    void OnFieldAddSetOf();
    void OnFieldRemoveSet();
    void OnFieldRevertToInit();
    void OnSetDefault();

    IField* GetField() const { return m_pField; }
    void SetField(IField* field) { m_pField = field; }
    unsigned int GetPopupMode() const { return m_popupMenu.GetMode(); }
    void SetPopupMode(unsigned int mode) { m_popupMenu.SetMode(mode); }
    int GetFlag() const { return m_flag; }
    void SetFlag(int flag) { m_flag = flag; }

    /// Gives a control that cannot be edited the window's background, so that an
    /// operator sees at a glance what is only shown.
    static void ShowAsReadOnly(QWidget* control);
    /// A line edit that only shows: read-only, without a frame, with that background.
    static void ShowAsReadOnly(QLineEdit* edit);

    /// Climbs from the field through every field container to the field that
    /// owns it, up to the field that stands on the form itself.
    static IField* OutermostField(IField* field);

protected:
    /// For a control's event(): opens the menu for a right click, the Menu key
    /// or Shift+F10. True when the event was the menu's.
    bool HandlePopupEvent(QWidget* control, QEvent* event);

private:
    int m_flag = 0;
    IField* m_pField;  // not owned
    IFieldPopupMenu m_popupMenu;
};
