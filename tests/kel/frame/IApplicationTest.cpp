// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/frame/ICreationFailedException.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/IHelpDialog.h"
#include "kel/frame/KELFileTools.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "kel/frame/KELWorkspaceQuery.h"
#include "support/PromptRecorder.h"
#include "support/ShippedNetwork.h"
#include "support/TempDir.h"
#include "support/TraceCapture.h"
#include "zed/TException.h"
#include "zed/ZedAssert.h"

#include <QFontDatabase>
#include <QFontInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

using ::testing::MatchesRegex;

namespace {

// Each test gets its own application object and paths.
class ApplicationTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        setenv("ORVEX_SYSTEM_PATH", (system.Path()).c_str(), 1);
        setenv("ORVEX_USER_PATH", (user.Path()).c_str(), 1);
        app = InitializeKEL("test host");
        ASSERT_NE(app, nullptr);
    }
    void TearDown() override
    {
        DestroyKEL();
        unsetenv("ORVEX_SYSTEM_PATH");
        unsetenv("ORVEX_USER_PATH");
    }
    static std::string Login()
    {
        const passwd* entry = ::getpwuid(::geteuid());
        return entry ? entry->pw_name : "";
    }

    TempDir system, user;
    IApplication* app = nullptr;
};

class RecordingConsole : public IMessageConsole {
public:
    bool HasWindow() const override { return window; }
    void SetMessage(KEL_T_Severity severity, const std::string& text) override
    {
        messages.emplace_back(severity, text);
    }
    bool window = true;
    std::vector<std::pair<KEL_T_Severity, std::string>> messages;
};

TEST(ApplicationLifecycle, GetKELappFollowsInitializeAndDestroy)
{
    EXPECT_EQ(GetKELapp(), nullptr);
    IApplication* first = InitializeKEL("one");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(GetKELapp(), first);
    EXPECT_EQ(first->GetAppName(), "one");
    IApplication* second = InitializeKEL("two");
    EXPECT_EQ(GetKELapp(), second) << "a second call replaces the global and leaves the first alive";
    delete first;  // the library leaves it to its host
    DestroyKEL();
    EXPECT_EQ(GetKELapp(), nullptr);
    DestroyKEL();
    EXPECT_EQ(GetKELapp(), nullptr);
}

TEST(ApplicationLifecycle, AMissingResourceModuleStopsInitialisationWithTheMessage)
{
    auto shown = std::make_shared<PromptRecorder::Log>();
    std::unique_ptr<KELPrompt> previous = KELPrompt::Install(std::make_unique<PromptRecorder>(shown));
    KELResources::Unload();
    setenv("KEL_RESOURCES", "/nonexistent/libKELRes-xx.so", 1);
    EXPECT_EQ(InitializeKEL("host"), nullptr);
    EXPECT_EQ(GetKELapp(), nullptr);
    ASSERT_EQ(shown->size(), 1u);
    EXPECT_EQ(shown->at(0).icon, KELPrompt::Icon::Stop);
    EXPECT_EQ(shown->at(0).text, "Resource DLL (/nonexistent/libKELRes-xx.so) not found...Exit application\n");
    unsetenv("KEL_RESOURCES");
    KELPrompt::Install(std::move(previous));
    EXPECT_TRUE(KELResources::Load());
}

// Without a display nobody could answer a message box: the default service
// writes the message on standard error and InitializeKEL fails at once.
TEST(ApplicationLifecycle, HeadlessAMissingResourceModuleIsReportedOnStandardError)
{
    ASSERT_FALSE(KELPrompt::Interactive()) << "the tests run offscreen";
    std::unique_ptr<KELPrompt> previous = KELPrompt::Install(nullptr);
    KELResources::Unload();
    setenv("KEL_RESOURCES", "/nonexistent/libKELRes-xx.so", 1);
    TempDir folder;
    const std::string errors = folder.Path() + "stderr";
    std::fflush(stderr);
    const int saved = ::dup(2);
    const int file = ::open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(file, 2);
    IApplication* app = InitializeKEL("host");
    std::fflush(stderr);
    ::dup2(saved, 2);
    ::close(saved);
    ::close(file);
    EXPECT_EQ(app, nullptr);
    EXPECT_EQ(TempDir::Read(errors), "Resource DLL (/nonexistent/libKELRes-xx.so) not found...Exit application\n");
    unsetenv("KEL_RESOURCES");
    KELPrompt::Install(std::move(previous));
    EXPECT_TRUE(KELResources::Load());
}

TEST_F(ApplicationTest, PathsComeFromTheEnvironmentAndEndWithOneSlash)
{
    EXPECT_EQ(app->GetSystemPath(), system.Path());
    EXPECT_EQ(app->GetUserPath(), user.Path());
    EXPECT_EQ(app->GetApplicationPath().back(), '/');

    DestroyKEL();
    setenv("ORVEX_SYSTEM_PATH", "/opt/orvex", 1);
    setenv("ORVEX_USER_PATH", "", 1);
    TempDir data;
    setenv("XDG_DATA_HOME", data.Path().c_str(), 1);
    app = InitializeKEL("again");
    EXPECT_EQ(app->GetSystemPath(), "/opt/orvex/");
    EXPECT_EQ(app->GetUserAppDataPath(), data.Path() + "orvex/kel/");
    EXPECT_EQ(app->GetUserPath(), app->GetUserAppDataPath()) << "an empty variable counts as unset";
    EXPECT_TRUE(KELFileTools::IsDirectory(data.Path() + "orvex/kel")) << "the data directory is made";
    unsetenv("XDG_DATA_HOME");
}

TEST_F(ApplicationTest, ContextsOfTheSameCodeHideBehindTheFirst)
{
    KELConfigContext* first = app->DefineNewContext("console");
    KELConfigContext* second = app->DefineNewContext("console");
    app->DefineNewContext("admin");
    EXPECT_EQ(app->GetConfigContext("console"), first);
    EXPECT_EQ(app->GetConfigContext("Console"), nullptr) << "codes compare case-sensitively";
    EXPECT_FALSE(app->RemoveContext("console")) << "the answer is always false";
    EXPECT_EQ(app->GetConfigContext("console"), second);
    EXPECT_FALSE(app->RemoveContext("nothing"));

    std::vector<std::string> codes;
    for (long position = app->GetFirstConfigContextPosition(); position >= 0;)
        codes.push_back(app->GetNextConfigContext(position)->ContextCode());
    EXPECT_EQ(codes, (std::vector<std::string>{"console", "admin"}));
    EXPECT_EQ(app->GetSystemConfigFile("admin"), app->GetConfigContext("admin")->GetSystemConfigFile());
    EXPECT_EQ(app->GetUserConfigFile("none"), nullptr);
}

TEST_F(ApplicationTest, TheLayeredLookupAsksTheUserFileThenTheSystemFileGlobalFirst)
{
    KELConfigContext* context = app->DefineNewContext("console");
    IConfiguration& systemFile = *context->GetSystemConfigFile();
    IConfiguration& userFile = *context->GetUserConfigFile();
    systemFile.SetString("S", "both", "system", 1);
    systemFile.SetString("S", "system only", "system", 1);
    systemFile.SetString("S", "system ws", "ws", 0);
    systemFile.SetString("S", "system ws", "global", 1);
    userFile.SetString("S", "both", "user", 1);
    userFile.SetString("S", "user ws", "user ws", 0);

    std::string value = "untouched";
    EXPECT_EQ(app->GetConfigString("console", "S", "both", value, "d", 1), 1);
    EXPECT_EQ(value, "user");
    EXPECT_EQ(app->GetConfigString(context, "S", "system only", value, "d", 1), 1);
    EXPECT_EQ(value, "system");
    EXPECT_EQ(app->GetConfigString(context, "S", "system ws", value, "d", 0), 1);
    EXPECT_EQ(value, "global") << "the system file is searched global-first whatever the flag";
    EXPECT_EQ(app->GetConfigString(context, "S", "user ws", value, "d", 0), 1);
    EXPECT_EQ(value, "user ws");
    EXPECT_EQ(app->GetConfigString(context, "S", "nowhere", value, "d", 1), 9);
    EXPECT_EQ(value, "d");
    value = "untouched";
    EXPECT_EQ(app->GetConfigString("no such", "S", "both", value, "d", 1), 2);
    EXPECT_EQ(value, "untouched");
    EXPECT_EQ(app->GetConfigString(static_cast<KELConfigContext*>(nullptr), "S", "both", value, "d", 1), 2);

    userFile.SetInt("N", "int", 12, 1);
    systemFile.SetDouble("N", "real", 2.5, 1);
    systemFile.SetBool("N", "bool", true, 1);
    systemFile.SetShort("N", "short", 7, 1);
    int i = 0;
    double d = 0;
    bool b = false;
    short s = 0;
    EXPECT_EQ(context->GetConfigInt("N", "int", i, 0, 1), 1);
    EXPECT_EQ(context->GetConfigDouble("N", "real", d, 0, 1), 1);
    EXPECT_EQ(context->GetConfigBool("N", "bool", b, false, 1), 1);
    EXPECT_EQ(context->GetConfigShort("N", "short", s, 0, 1), 1);
    EXPECT_EQ(i, 12);
    EXPECT_EQ(d, 2.5);
    EXPECT_TRUE(b);
    EXPECT_EQ(s, 7);

    app->SetUserConfigFile("console", nullptr);
    EXPECT_EQ(context->GetUserConfigFile(), nullptr);
    value = "kept";
    EXPECT_EQ(app->GetConfigString(context, "S", "nowhere", value, "d", 1), 9);
    EXPECT_EQ(value, "d") << "the system file's own getter answers the default";
}

TEST_F(ApplicationTest, MessagesReachTheConsoleOnlyWhenItHasAWindow)
{
    app->InsertMessageConsole(KEL_SEVERITY_INFORMATION, "dropped: no console");
    RecordingConsole console;
    app->SetConsole(&console);
    app->InsertMessageConsole(KEL_SEVERITY_PROBLEM, "shown");
    console.window = false;
    app->InsertMessageConsole(KEL_SEVERITY_PROBLEM, "dropped: no window");
    ASSERT_EQ(console.messages.size(), 1u);
    EXPECT_EQ(console.messages[0].second, "shown");

    // Loading and saving a file tell the console.
    console.window = true;
    IConfiguration file(user / "x.cfg");
    file.SetString("S", "k", "v", 1);
    file.Save();
    file.Load();
    ASSERT_EQ(console.messages.size(), 4u);
    EXPECT_EQ(console.messages[1],
              std::make_pair(KEL_SEVERITY_INFORMATION, "Configuration saved: " + (user / "x.cfg")));
    EXPECT_EQ(console.messages[2].first, KEL_SEVERITY_DONE);
    EXPECT_EQ(console.messages[3],
              std::make_pair(KEL_SEVERITY_INFORMATION, "Configuration loaded: " + (user / "x.cfg")));
    app->SetConsole(nullptr);
}

// The first message comes before the file is written, the second after it is closed.
TEST_F(ApplicationTest, SaveTellsTheConsoleBeforeWritingAndAfterClosing)
{
    class FileWatcher : public IMessageConsole {
    public:
        explicit FileWatcher(std::string path) : m_path(std::move(path)) {}
        bool HasWindow() const override { return true; }
        void SetMessage(KEL_T_Severity severity, const std::string&) override
        {
            seen.emplace_back(severity, TempDir::Read(m_path));
        }
        std::vector<std::pair<KEL_T_Severity, std::string>> seen;

    private:
        std::string m_path;
    };
    const std::string path = user / "watched.cfg";
    TempDir::Write(path, "old");
    FileWatcher console(path);
    app->SetConsole(&console);
    IConfiguration file(path);
    file.SetString("S", "k", "v", 1);
    ASSERT_EQ(file.Save(), 1);
    app->SetConsole(nullptr);
    ASSERT_EQ(console.seen.size(), 2u);
    EXPECT_EQ(console.seen[0], std::make_pair(KEL_SEVERITY_INFORMATION, std::string("old")));
    EXPECT_EQ(console.seen[1].first, KEL_SEVERITY_DONE);
    EXPECT_NE(console.seen[1].second.find("[ S ]\n    k = v\n"), std::string::npos);
}

TEST_F(ApplicationTest, HelpTooltipsCounterAndFonts)
{
    app->DisplayHelp("How to fill in this form");
    ASSERT_NE(app->GetHelpDialog(), nullptr);
    EXPECT_TRUE(app->GetHelpDialog()->isVisible());
    EXPECT_EQ(app->GetHelpDialog()->GetText(), "How to fill in this form");
    EXPECT_FALSE(app->GetHelpDialog()->isModal());
    const auto controls = app->GetHelpDialog()->findChildren<QWidget*>();
    EXPECT_TRUE(std::any_of(controls.begin(), controls.end(), [](QWidget* w) {
        return w->property("controlId").toInt() == IHelpDialog::kTextControlId;
    }));

    EXPECT_EQ(app->IsTooltipEnabled(), 1);
    app->EnableTootip(0);
    EXPECT_EQ(app->IsTooltipEnabled(), 0);
    app->SetCallCounter(41);
    EXPECT_EQ(app->GetCallCounter(), 41);

    EXPECT_EQ(app->GetRegularFont()->weight(), QFont::Light);
    const QFontInfo regular(*app->GetRegularFont());
    EXPECT_GE(QFontDatabase::weight(regular.family(), regular.styleName()), QFont::Light)
        << "values are never drawn in a face thinner than asked, which reads as greyed out";
    EXPECT_EQ(app->GetItalicFont()->weight(), QFont::Medium);
    EXPECT_EQ(app->GetBoldFont()->weight(), QFont::Bold);
    EXPECT_FALSE(app->GetBoldFont()->italic());
}

TEST_F(ApplicationTest, SynonymWithoutClassIsTheFirstBackquotedInstance)
{
    auto network = InstallShippedNetwork();
    unsigned char ok = 0;
    EXPECT_EQ(IApplication::GetSynonymWithoutClass(TEntitySpec("Network core Router r1"), ok), "`core`");
    EXPECT_EQ(ok, 1);
    TEntitySpec classOnly;
    classOnly.AddClassNullInstance(1);
    EXPECT_EQ(IApplication::GetSynonymWithoutClass(classOnly, ok), "");
    EXPECT_EQ(ok, 0) << "no backquote at all";
    TEntitySpec unknown;
    unknown.AddClass(9, "x");
    EXPECT_EQ(IApplication::GetSynonymWithoutClass(unknown, ok), "");
    EXPECT_EQ(ok, 0) << "a class the dictionary does not know";
}

TEST(CreationFailure, TracesAndThrowsWithTheResourceText)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_EXCP);
    EXPECT_NO_THROW(ZEDAssertCreationFailed(1, "Field Container"));
    try {
        ZEDAssertCreationFailed(0, "Field Container");
        FAIL() << "no exception";
    } catch (const ICreationFailedException& e) {
        EXPECT_EQ(e.ToString(), "Window creation failed: Field Container");
    }
    ASSERT_EQ(capture.Lines().size(), 1u);
    EXPECT_THAT(capture.Lines()[0],
                MatchesRegex("KEL EXCP: KELException:143 this=0x0 KEL: Field Container window creation failed"));
}

TEST(ApplicationLifecycle, FailedAssertionsInsideTheLibraryAreTracedForTheLifeOfTheApplication)
{
    ASSERT_EQ(ZEDGetAssertHandler(), nullptr);
    EXPECT_THROW(ZEDAssertM(false, "before"), TException);
    ASSERT_NE(InitializeKEL("host"), nullptr);
    {
        TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
        bool ranOn = false;
        ZEDAssertM(false, "a duplicate form line");
        ranOn = true;
        EXPECT_TRUE(ranOn);
        ASSERT_EQ(capture.Lines().size(), 1u);
        EXPECT_THAT(capture.Lines()[0], MatchesRegex("KEL PBLM: KELAssert:[0-9]+ this=0x0 KEL : assertion failed : "
                                                     "a duplicate form line \\(.*IApplicationTest.cpp:[0-9]+\\)"));
    }
    DestroyKEL();
    EXPECT_EQ(ZEDGetAssertHandler(), nullptr) << "the host's handler comes back";
    EXPECT_THROW(ZEDAssertM(false, "after"), TException);
}

class OpenWorkspace : public KELWorkspaceQuery {
public:
    bool GetOpenWorkspaceName(std::string& name) const override
    {
        name = path;
        return !path.empty();
    }
    std::string path;
};

TEST_F(ApplicationTest, ContextFileNamesFollowPathsLoginCodeAndEndings)
{
    KELConfigContext* console = app->DefineNewContext("console");
    KELConfigContext* admin = app->DefineNewContext("admin");
    const std::string login = Login();
    EXPECT_EQ(console->GetSystemConfigFile()->GetFilename(), system / "console.cfg");
    EXPECT_EQ(console->GetUserConfigFile()->GetFilename(), user / (login + "console.ucfg"));
    EXPECT_EQ(admin->GetUserConfigFile()->GetFilename(), user / (login + "admin.ucfg"));
    EXPECT_STREQ(static_cast<const char*>(*console), "console");
    std::string workspaceFile;
    console->GetWorkspaceConfFile("/home/op/spaces/network.kws", workspaceFile);
    EXPECT_EQ(workspaceFile, "/home/op/spaces/consolenetwork.ucfg");
}

TEST_F(ApplicationTest, LoadingAContextJoinsItsErrorsAndReadsTheOpenWorkspace)
{
    KELConfigContext* context = app->DefineNewContext("console");
    std::string errors;
    EXPECT_FALSE(context->LoadSystemAndUserConfig(errors));
    EXPECT_EQ(errors,
              "The system configuration file could not be read: " + (system / "console.cfg")
                  + "The user configuration file could not be read: " + context->GetUserConfigFile()->GetFilename())
        << "two failures are joined without a separator";

    TempDir::Write(system / "console.cfg", "[ S ]\nk = system\n[ End S ]\n");
    errors.clear();
    EXPECT_FALSE(context->LoadSystemAndUserConfig(errors));
    EXPECT_EQ(errors.substr(0, 1), "\n") << "only the user file failed: the message follows a line feed";

    TempDir::Write(context->GetUserConfigFile()->GetFilename(), "[ S ]\nk = user\n[ End S ]\n");
    TempDir::Write(user / "consolespace.ucfg", "[ S ]\nk = workspace\n[ End S ]\n");
    OpenWorkspace workspace;
    workspace.path = user / "space.kws";
    app->SetWorkspaceManager(&workspace);
    errors.clear();
    EXPECT_TRUE(context->LoadSystemAndUserConfig(errors));
    EXPECT_EQ(errors, "");
    std::string value;
    EXPECT_EQ(context->GetConfigString("S", "k", value, "", 0), 1);
    EXPECT_EQ(value, "workspace");
    EXPECT_EQ(context->GetConfigString("S", "k", value, "", 1), 1);
    EXPECT_EQ(value, "user");

    context->GetUserConfigFile()->SetString("S", "saved", "yes", 0);
    EXPECT_EQ(context->SaveWorkspace((user / "other.kws").c_str()), 1);
    EXPECT_NE(TempDir::Read(user / "consoleother.ucfg").find("saved = yes"), std::string::npos);
    app->SetWorkspaceManager(nullptr);
}

}  // namespace
