// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/IApplication.h"
#include "kel/frame/KELString.h"

#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/frame/IHelpDialog.h"
#include "kel/frame/KELCallPump.h"
#include "kel/frame/KELAssert.h"
#include "kel/frame/KELFileTools.h"
#include "kel/frame/KELPrompt.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELWorkspaceQuery.h"
#include "zed/ZedAssert.h"
#include "zed/value/TEntitySpec.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QStandardPaths>
#include <QWidget>

#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <cstring>
#include <unistd.h>

namespace {

// The library's one global: null before InitializeKEL and after DestroyKEL.
IApplication* g_pApplication = nullptr;

constexpr int kNoContext = 2;
constexpr int kFound = 1;

const std::string& EndingWithSlash(std::string& path)
{
    if (path.empty() || path.back() != '/')
        path.push_back('/');
    return path;
}

bool HaveGui() { return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr; }

// The configuration folder of the layout this library is installed in (for
// /usr, /etc/kel); empty when it runs from a build tree, where the system
// files stand beside the program as on the platform the design knew.
std::string InstalledConfigurationPath()
{
    Dl_info self{};
    if (::dladdr(reinterpret_cast<void*>(&InitializeKEL), &self) == 0 || !self.dli_fname)
        return {};
    std::error_code error;
    const std::filesystem::path library = std::filesystem::canonical(self.dli_fname, error);
    if (error || !std::filesystem::is_directory(library.parent_path() / KEL_LIB_TO_DATA, error))
        return {};
    // An absolute folder stands as it is; a relative one is the library's.
    return (library.parent_path() / KEL_LIB_TO_SYSCONF).lexically_normal().string();
}

}  // namespace

IMessageConsole::~IMessageConsole() = default;
KELWorkspaceQuery::~KELWorkspaceQuery() = default;

IApplication::IApplication(std::string applicationName) : m_appName(std::move(applicationName))
{
    InitFonts();
    // Qt has no window classes to register; the name is kept for hosts that show it.
    m_className = "KELWindow:" + m_appName;
    if (HaveGui())
        m_pHelpDialog = std::make_unique<IHelpDialog>();
    // Calls that do not wait are carried by Qt's event loop from here on.
    if (QCoreApplication::instance())
        m_pCallPump = std::make_unique<KELCallPump>();
    KeepAssertHandler(true);
}

IApplication::~IApplication()
{
    // Contexts go from the head; the console and the workspace manager are the host's.
    while (!m_contexts.empty())
        m_contexts.erase(m_contexts.begin());
    KeepAssertHandler(false);
}

// The library's assertions are traced while any application lives (a host
// may make a second before it deletes the first): the handler before the
// first comes back when the last goes.
void IApplication::KeepAssertHandler(bool alive)
{
    static int living = 0;
    static ZEDAssertHandler before = nullptr;
    if (alive) {
        if (living++ == 0)
            before = ZEDSetAssertHandler(&KELAssertHandler);
    } else if (--living == 0) {
        ZEDSetAssertHandler(before);
    }
}

namespace {

// The regular font asks for weight 300. A family without a face of that weight
// would match a thinner one (DejaVu's ExtraLight), and every value an operator
// types would look faint, like text that cannot be changed; such a family draws
// it in its normal face, as the fonts the weights were chosen for did.
void DrawInAFaceNoThinner(QFont& font, const QFont& normal)
{
    if (!HaveGui())
        return;
    // The face's own weight: QFontInfo answers the weight asked for.
    const QFontInfo matched(font);
    if (QFontDatabase::weight(matched.family(), matched.styleName()) < font.weight())
        font.setStyleName(QFontInfo(normal).styleName());
}

}  // namespace

void IApplication::InitFonts()
{
    const QFont base = HaveGui() ? QApplication::font() : QFont();
    m_regularFont = base;
    m_regularFont.setWeight(QFont::Light);
    DrawInAFaceNoThinner(m_regularFont, base);
    // The "italic" font is a medium-weight upright font, as it always was.
    m_italicFont = base;
    m_italicFont.setWeight(QFont::Medium);
    m_boldFont = base;
    m_boldFont.setItalic(false);
    m_boldFont.setWeight(QFont::Bold);
}

const std::string& IApplication::GetApplicationPath()
{
    if (m_applicationPath.empty()) {
        char buffer[4096];
        const ssize_t n = ::readlink("/proc/self/exe", buffer, sizeof buffer - 1);
        std::string exe = n > 0 ? std::string(buffer, static_cast<std::size_t>(n)) : std::string("./");
        m_applicationPath = exe.substr(0, exe.rfind('/') + 1);
    }
    return EndingWithSlash(m_applicationPath);
}

const std::string& IApplication::GetSystemPath()
{
    if (m_systemPath.empty()) {
        std::string variable = "ORVEX_SYSTEM_PATH";
        if (std::string named = KELResources::String(KELString::kSystemPathVariable); !named.empty())
            variable = named;
        const char* value = std::getenv(variable.c_str());
        m_systemPath = value && *value ? value : InstalledConfigurationPath();
        if (m_systemPath.empty())
            m_systemPath = GetApplicationPath();
    }
    return EndingWithSlash(m_systemPath);
}

const std::string& IApplication::GetUserAppDataPath()
{
    if (m_userAppDataPath.empty()) {
        std::string path = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation).toStdString();
        EndingWithSlash(path);
        path += KELResources::String(KELString::kUserDataFolder);
        EndingWithSlash(path);
        try {
            if (!KELFileTools::IsDirectory(path))
                KELFileTools::CreateDirectory(path);
        } catch (const CFileToolException&) {
            // The path is still the place; saving there will report the fault.
        }
        m_userAppDataPath = path;
    }
    return EndingWithSlash(m_userAppDataPath);
}

const std::string& IApplication::GetUserPath()
{
    if (m_userPath.empty()) {
        const std::string variable = KELResources::String(KELString::kUserPathVariable);
        const char* value = variable.empty() ? nullptr : std::getenv(variable.c_str());
        m_userPath = value && *value ? value : GetUserAppDataPath();
    }
    return EndingWithSlash(m_userPath);
}

KELConfigContext* IApplication::DefineNewContext(const char* code)
{
    m_contexts.push_back(std::make_unique<KELConfigContext>(code));
    return m_contexts.back().get();
}

KELConfigContext* IApplication::GetConfigContext(const char* code) const
{
    for (const auto& context : m_contexts)
        if (std::strcmp(context->ContextCode().c_str(), code) == 0)
            return context.get();
    return nullptr;
}

bool IApplication::RemoveContext(const char* code)
{
    for (auto it = m_contexts.begin(); it != m_contexts.end(); ++it)
        if (std::strcmp((*it)->ContextCode().c_str(), code) == 0) {
            m_contexts.erase(it);
            break;
        }
    return false;  // as it always was: callers must not rely on it
}

KELConfigContext* IApplication::GetNextConfigContext(long& position) const
{
    if (position < 0 || static_cast<std::size_t>(position) >= m_contexts.size()) {
        position = -1;
        return nullptr;
    }
    KELConfigContext* context = m_contexts[static_cast<std::size_t>(position)].get();
    position = static_cast<std::size_t>(position) + 1 < m_contexts.size() ? position + 1 : -1;
    return context;
}

IConfiguration* IApplication::GetSystemConfigFile(const char* code) const
{
    KELConfigContext* context = GetConfigContext(code);
    return context ? context->GetSystemConfigFile() : nullptr;
}

IConfiguration* IApplication::GetUserConfigFile(const char* code) const
{
    KELConfigContext* context = GetConfigContext(code);
    return context ? context->GetUserConfigFile() : nullptr;
}

void IApplication::SetUserConfigFile(const char* code, std::unique_ptr<IConfiguration> file)
{
    if (KELConfigContext* context = GetConfigContext(code))
        context->SetUserConfigFile(std::move(file));
}

template <typename T, typename Getter>
int IApplication::LayeredLookup(KELConfigContext* context, T& value, const T& fallback, int flag, Getter get)
{
    if (!context)
        return kNoContext;
    IConfiguration* system = context->GetSystemConfigFile();
    IConfiguration* user = context->GetUserConfigFile();
    int status = kNoContext;
    if (user && (status = get(*user, value, flag)) == kFound)
        return kFound;
    // The system file is searched global-first whatever the caller's flag.
    if (system && (status = get(*system, value, 1)) == kFound)
        return kFound;
    if (user)
        value = fallback;
    return status;
}

#define KEL_LAYERED_GETTER(Name, Type, FallbackType)                                                                   \
    int IApplication::GetConfig##Name(KELConfigContext* context, std::string_view section, std::string_view key,       \
                                      Type& value, FallbackType fallback, int flag)                                    \
    {                                                                                                                  \
        return LayeredLookup(context, value, Type(fallback), flag, [&](const IConfiguration& file, Type& out, int f) { \
            return file.Get##Name(section, key, out, f, Type(fallback));                                               \
        });                                                                                                            \
    }                                                                                                                  \
    int IApplication::GetConfig##Name(const char* code, std::string_view section, std::string_view key, Type& value,   \
                                      FallbackType fallback, int flag)                                                 \
    {                                                                                                                  \
        KELConfigContext* context = GetConfigContext(code);                                                            \
        return context ? GetConfig##Name(context, section, key, value, fallback, flag) : kNoContext;                   \
    }
KEL_LAYERED_GETTER(Bool, bool, bool)
KEL_LAYERED_GETTER(Int, int, int)
KEL_LAYERED_GETTER(Short, short, short)
KEL_LAYERED_GETTER(Double, double, double)
KEL_LAYERED_GETTER(String, std::string, std::string_view)
#undef KEL_LAYERED_GETTER

void IApplication::DisplayHelp(const std::string& text)
{
    if (!m_pHelpDialog && HaveGui())
        m_pHelpDialog = std::make_unique<IHelpDialog>();
    if (!m_pHelpDialog)
        return;
    m_pHelpDialog->SetText(QString::fromStdString(text));
    m_pHelpDialog->show();
}

void IApplication::DisplayHelpFor(const QWidget* focused)
{
    if (!focused)
        return;
    // Focus may rest on a part of a field (a text box's viewport, a combo's
    // line): the field that holds it is the one to explain.
    while (focused->accessibleName().isEmpty() && focused->accessibleDescription().isEmpty() && focused->parentWidget())
        focused = focused->parentWidget();
    const QString name = focused->accessibleName();
    const QString help = focused->accessibleDescription();
    const QString type = focused->toolTip();
    QString text = name.isEmpty() ? QStringLiteral("No help for this element.") : name;
    if (!type.isEmpty())
        text += QStringLiteral(" (") + type + QLatin1Char(')');
    // The configured help, then what the dictionary says the element takes.
    text += QStringLiteral("\n\n") + (help.isEmpty() ? QStringLiteral("No help text is configured for it.") : help);
    DisplayHelp(text.toStdString());
}

void IApplication::InsertMessageConsole(KEL_T_Severity severity, const std::string& text)
{
    if (m_pConsole && m_pConsole->HasWindow())
        m_pConsole->SetMessage(severity, text);
}

std::string IApplication::GetSynonymWithoutClass(const TEntitySpec& entity, unsigned char& ok)
{
    bool converted = false;
    const std::string synonym = entity.ToStringSynonym(converted);
    ok = converted ? 1 : 0;
    if (ok != 1)
        return {};
    const auto first = synonym.find('`');
    if (first == std::string::npos) {
        ok = 0;
        return {};
    }
    const auto second = synonym.find('`', first + 1);
    if (second == std::string::npos) {
        ok = 0;
        return {};
    }
    return synonym.substr(first, second - first + 1);
}

IApplication* InitializeKEL(const char* applicationName)
{
    std::string error, file;
    if (!KELResources::Load(&error, &file)) {
        g_pApplication = nullptr;
        KELPrompt::Message(KELPrompt::Icon::Stop, "KEL", "Resource DLL (" + file + ") not found...Exit application\n");
        return nullptr;
    }
    // A second call leaves the first object alive: the host's to answer for.
    g_pApplication = new IApplication(applicationName ? applicationName : "");
    return g_pApplication;
}

IApplication* GetKELapp() { return g_pApplication; }

void DestroyKEL()
{
    delete g_pApplication;
    g_pApplication = nullptr;
}
