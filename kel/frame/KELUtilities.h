// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <string>

class QMainWindow;
class QObject;
class QRect;
class QWidget;

/// Window and version chores of host applications.
class KEL_EXPORT KELUtilities {
public:
    /// The active view of a main window: the active sub-window's widget in an
    /// MDI area, else the central widget; null when there is none.
    static QWidget* GetValidView(QMainWindow* frame);
    /// The document the active view shows: the object in the view's
    /// "kelDocument" property; null when there is none.
    static QObject* GetFrameDocument(QMainWindow* frame);
    /// Where the style draws a window's caption text.
    static void CalculateCaptionTextRect(QWidget* window, QRect& rectangle);

    /// The login name of the effective user; empty when the system has none.
    static std::string GetLoginName();

    /// Reads the version record of a file of this project (see
    /// KELVersionRecord.h): numbers 0 and false when the file has none.
    /// text1 and text2 are the record's values under the keys named by
    /// strings 4054 and 4055 (FileDescription, ProductName).
    static bool GetFileVersion(const std::string& fileName, unsigned int& major, unsigned int& minor,
                               unsigned int& build, std::string& text1, std::string& text2);
    /// The same for the loaded module that holds the given address.
    static bool GetModuleVersion(const void* addressInModule, unsigned int& major, unsigned int& minor,
                                 unsigned int& build, std::string& text1, std::string& text2);
};
