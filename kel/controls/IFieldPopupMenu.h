// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

class IField;
class QMenu;

/// Command ids of a field's popup menu, kept as its actions' data.
inline constexpr unsigned int KEL_ID_FIELD_LAUNCH = 33301;  // + n: the n-th registered application
inline constexpr unsigned int KEL_ID_FIELD_REVERT = 33303;
inline constexpr unsigned int KEL_ID_FIELD_DEFAULT = 33304;
inline constexpr unsigned int KEL_ID_FIELD_ADD_SETOF = 33307;
inline constexpr unsigned int KEL_ID_FIELD_REMOVE_SET = 33308;
inline constexpr unsigned int KEL_ID_FIELD_HELP = 33309;
/// The menu of the resource module it is built from.
inline constexpr unsigned int KEL_MENU_FIELD = 4004;
/// Launch entries also carry their index under this action property: from the
/// third application on, 33301 + n meets the ids of other commands.
inline constexpr const char* KEL_LAUNCH_INDEX_PROPERTY = "kelLaunchIndex";

/// Assembles a field's popup menu from the resource module's menu 4004, whose
/// sub-menus are used by position: 0 single-field commands, 1 set-of commands,
/// 2 a third group, 3 the entries of every field, 4 the local default, 5 the
/// server default. The mode says which of 0, 1 and 2 are offered (bits 1, 2, 4).
class KEL_EXPORT IFieldPopupMenu {
public:
    static constexpr unsigned int kSingleField = 1;
    static constexpr unsigned int kSetOf = 2;
    static constexpr unsigned int kThird = 4;

    explicit IFieldPopupMenu(unsigned int mode = kSingleField);
    virtual ~IFieldPopupMenu();

    unsigned int GetMode() const { return m_mode; }
    void SetMode(unsigned int mode) { m_mode = mode; }
    /// The mode of a field's controls: set-of commands too for an element of a set.
    static unsigned int ModeFor(IField* field);

    /// Fills an empty popup for the field; false when the resource module has
    /// no usable menu 4004 (the popup then stays empty).
    bool Build(QMenu& popup, IField& field) const;

private:
    unsigned int m_mode;
};
