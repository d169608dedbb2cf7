// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/frame/KELConsoleSink.h"
#include "zed/ZedAssert.h"

#include <QFont>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class IConfiguration;
class IHelpDialog;
class QWidget;
class QWidget;
class KELCallPump;
class KELConfigContext;
class KELWorkspaceQuery;
class TEntitySpec;

/// The library's one application object: the host's name, the standard paths,
/// the fonts, the configuration contexts and the layered lookup of settings
/// over them, the console that receives messages, the workspace manager, the
/// help window, the tooltip switch and a call counter. Made by InitializeKEL,
/// reached by GetKELapp, removed by DestroyKEL.
///
/// Paths each end with "/":
///   system path   $ORVEX_SYSTEM_PATH (the variable named by string 4050),
///                 else the application path;
///   user path     $ORVEX_USER_PATH (string 4051), else the user
///                 application-data path;
///   application   the directory of the running executable;
///   user data     $XDG_DATA_HOME (or ~/.local/share) + string 4065
///                 ("orvex/kel"), created when missing.
///
/// Layered lookup (Get*Config): the user file is asked first with the caller's
/// flag, then the system file, always global sections first. 1 found; 9 not
/// found (the default is returned); 2 no such context, or no file at all.
class KEL_EXPORT IApplication {
public:
    explicit IApplication(std::string applicationName);
    IApplication(const IApplication&) = delete;
    IApplication& operator=(const IApplication&) = delete;
    virtual ~IApplication();

    std::string GetAppName() const { return m_appName; }
    const std::string& GetClassName() const { return m_className; }

    const std::string& GetSystemPath();
    const std::string& GetUserPath();
    const std::string& GetApplicationPath();
    const std::string& GetUserAppDataPath();

    const QFont* GetRegularFont() const { return &m_regularFont; }
    const QFont* GetItalicFont() const { return &m_italicFont; }
    const QFont* GetBoldFont() const { return &m_boldFont; }

    /// Appends a context; a second one of the same code hides behind the first.
    KELConfigContext* DefineNewContext(const char* code);
    KELConfigContext* GetConfigContext(const char* code) const;
    /// Removes and destroys the first context of the code. Always answers false.
    bool RemoveContext(const char* code);
    /// Walks the contexts in order: a position below 0 is the end.
    long GetFirstConfigContextPosition() const { return m_contexts.empty() ? -1 : 0; }
    KELConfigContext* GetNextConfigContext(long& position) const;

    IConfiguration* GetSystemConfigFile(const char* code) const;
    IConfiguration* GetUserConfigFile(const char* code) const;
    void SetUserConfigFile(const char* code, std::unique_ptr<IConfiguration> file);

    int GetConfigBool(const char* code, std::string_view section, std::string_view key, bool& value, bool fallback,
                      int flag);
    int GetConfigInt(const char* code, std::string_view section, std::string_view key, int& value, int fallback,
                     int flag);
    int GetConfigShort(const char* code, std::string_view section, std::string_view key, short& value, short fallback,
                       int flag);
    int GetConfigDouble(const char* code, std::string_view section, std::string_view key, double& value,
                        double fallback, int flag);
    int GetConfigString(const char* code, std::string_view section, std::string_view key, std::string& value,
                        std::string_view fallback, int flag);
    int GetConfigBool(KELConfigContext* context, std::string_view section, std::string_view key, bool& value,
                      bool fallback, int flag);
    int GetConfigInt(KELConfigContext* context, std::string_view section, std::string_view key, int& value,
                     int fallback, int flag);
    int GetConfigShort(KELConfigContext* context, std::string_view section, std::string_view key, short& value,
                       short fallback, int flag);
    int GetConfigDouble(KELConfigContext* context, std::string_view section, std::string_view key, double& value,
                        double fallback, int flag);
    int GetConfigString(KELConfigContext* context, std::string_view section, std::string_view key, std::string& value,
                        std::string_view fallback, int flag);

    KELWorkspaceQuery* GetWorkspaceManager() const { return m_pWorkspaceManager; }
    void SetWorkspaceManager(KELWorkspaceQuery* manager) { m_pWorkspaceManager = manager; }
    void SetConsole(IMessageConsole* console) { m_pConsole = console; }
    IMessageConsole* GetConsole() const { return m_pConsole; }

    int GetCallCounter() const { return m_callCounter; }
    void SetCallCounter(int counter) { m_callCounter = counter; }
    int IsTooltipEnabled() const { return m_tooltipsEnabled; }
    void EnableTootip(int enabled) { m_tooltipsEnabled = enabled; }

    /// Shows the text in the help window (made when first needed if no GUI
    /// application ran when this object was made; dropped without one).
    void DisplayHelp(const std::string& text);
    /// F1's help: of the element that holds the focus (or of the field the
    /// focused part belongs to), its name, what it takes and its help text.
    void DisplayHelpFor(const QWidget* focused);
    IHelpDialog* GetHelpDialog() const { return m_pHelpDialog.get(); }
    /// What carries the access library's calls in Qt's event loop; null when
    /// no Qt application ran when this object was made.
    KELCallPump* GetCallPump() const { return m_pCallPump.get(); }

    /// To tab 0 of the console when one with a window is set; else dropped.
    void InsertMessageConsole(KEL_T_Severity severity, const std::string& text);

    /// The first backquoted instance name of the synonym form, quotes
    /// included; empty, with ok 0, when there is none.
    static std::string GetSynonymWithoutClass(const TEntitySpec& entity, unsigned char& ok);

private:
    void InitFonts();
    static void KeepAssertHandler(bool alive);
    template <typename T, typename Getter>
    int LayeredLookup(KELConfigContext* context, T& value, const T& fallback, int flag, Getter get);

    IMessageConsole* m_pConsole = nullptr;
    std::string m_className;
    QFont m_boldFont;
    QFont m_regularFont;
    QFont m_italicFont;
    int m_callCounter = 0;
    std::string m_systemPath;
    std::string m_userPath;
    std::string m_applicationPath;
    std::string m_userAppDataPath;
    KELWorkspaceQuery* m_pWorkspaceManager = nullptr;
    std::vector<std::unique_ptr<KELConfigContext>> m_contexts;
    std::string m_appName;
    std::unique_ptr<IHelpDialog> m_pHelpDialog;  // top-level, no Qt parent: owned here
    std::unique_ptr<KELCallPump> m_pCallPump;    // no Qt parent: owned here
    int m_tooltipsEnabled = 1;
};

extern "C" {
/// Loads the resource module and makes the application object; null, after
/// telling why, when the resource module is missing. A second call makes a
/// new object and leaves the first one alive (the host's to answer for).
KEL_EXPORT IApplication* InitializeKEL(const char* applicationName);
KEL_EXPORT IApplication* GetKELapp();
/// Destroys the object, if any; harmless to call twice.
KEL_EXPORT void DestroyKEL();
}
