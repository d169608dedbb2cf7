// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/console/IWorkspaceManager.h"
#include "kel/console/KELWorkspaceDocument.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELConsoleSink.h"
#include "support/PromptRecorder.h"
#include "support/TempDir.h"

#include <QDockWidget>
#include <QMainWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <map>
#include <memory>

namespace {

using ::testing::ElementsAre;

std::vector<std::string> g_calls;
void First() { g_calls.push_back("first"); }
void Second() { g_calls.push_back("second"); }
void Opening(std::string name) { g_calls.push_back("opening " + name); }

// A document of the host: a title and a text saved to its file.
class Note : public KELWorkspaceDocument {
public:
    explicit Note(std::string title) : m_title(std::move(title)) {}
    std::string GetKind() const override { return "note"; }
    std::string GetTitle() const override { return m_title; }
    void SetTitle(const std::string& title) override { m_title = title; }
    std::string GetPathName() const override { return m_path; }
    void SetPathName(const std::string& path) override { m_path = path; }
    bool SaveTo(const std::string& path) override
    {
        std::ofstream(path) << "note " << m_title;
        return true;
    }

private:
    std::string m_title;
    std::string m_path;
};

// A manager whose file prompt answers what the test says, without a dialog.
class ScriptedManager : public IWorkspaceManager {
public:
    using IWorkspaceManager::IWorkspaceManager;
    int PromptWorkspaceNameFile(std::string& name, bool) override
    {
        if (answer.empty())
            return 0;
        name = answer;
        return 1;
    }
    std::string answer;
};

class WorkspaceManagerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        setenv("ORVEX_SYSTEM_PATH", dir.Path().c_str(), 1);
        setenv("ORVEX_USER_PATH", dir.Path().c_str(), 1);
        ASSERT_NE(InitializeKEL("workspace test"), nullptr);
        prompts = PromptRecorder::Install();
        g_calls.clear();
        frame.resize(640, 480);
        auto* dock = new QDockWidget(QStringLiteral("Dock"), &frame);
        dock->setObjectName(QStringLiteral("Dock"));
        frame.addDockWidget(Qt::BottomDockWidgetArea, dock);
        manager = std::make_unique<ScriptedManager>(&frame);
        GetKELapp()->SetWorkspaceManager(manager.get());
        manager->SetDocumentHandler({[this] {
                                         std::vector<KELWorkspaceDocument*> open;
                                         for (auto& note : notes)
                                             open.push_back(note.get());
                                         return open;
                                     },
                                     [this](const KELWorkspaceStore::DocumentEntry& entry) {
                                         notes.push_back(std::make_unique<Note>(entry.title));
                                         notes.back()->SetPathName(entry.path);
                                         return true;
                                     },
                                     [this] { notes.clear(); }});
    }
    void TearDown() override
    {
        manager.reset();
        KELPrompt::Install(nullptr);
        DestroyKEL();
        unsetenv("ORVEX_SYSTEM_PATH");
        unsetenv("ORVEX_USER_PATH");
    }

    TempDir dir;
    QMainWindow frame;
    std::unique_ptr<ScriptedManager> manager;
    std::vector<std::unique_ptr<Note>> notes;
    std::shared_ptr<PromptRecorder::Log> prompts;
};

TEST(WorkspaceCallbacks, RunInOrderTwiceWhenAddedTwiceAndRemoveTakesTheFirst)
{
    g_calls.clear();
    IWorkspaceCallbackList list;
    list.AddTail(&First);
    list.AddTail(&Second);
    list.AddTail(&First);
    list.Execute();
    EXPECT_THAT(g_calls, ElementsAre("first", "second", "first"));
    EXPECT_TRUE(list.Remove(&First));
    g_calls.clear();
    list.Execute();
    EXPECT_THAT(g_calls, ElementsAre("second", "first"));
    EXPECT_TRUE(list.Remove(&First));
    EXPECT_FALSE(list.Remove(&First));
}

TEST(WorkspaceDocPaths, EveryTokenGoesAndComesBack)
{
    const std::string title = R"(a/b*c?d"e<f>g|h\i:j)";
    std::string path = title;
    IWorkspaceManager::EncodeDocPath(path);
    EXPECT_EQ(path, R"(a#@2#b#@3#c#@4#d#@6#e#@7#f#@8#g#@9#h\i:j)") << "backslash and colon stay";
    IWorkspaceManager::DecodeDocPath(path);
    EXPECT_EQ(path, title);
    std::string odd = "#@1##@5##@2";
    IWorkspaceManager::DecodeDocPath(odd);
    EXPECT_EQ(odd, "#@1##@5##@2") << "no token 1 or 5, and a cut token is text";
}

TEST_F(WorkspaceManagerTest, SavingWritesTheFileEveryContextsSettingsAndADocumentFileEach)
{
    KELConfigContext* a = GetKELapp()->DefineNewContext("A");
    KELConfigContext* b = GetKELapp()->DefineNewContext("B");
    a->GetUserConfigFile()->SetString("S", "k", "a", 0);
    b->GetUserConfigFile()->SetString("S", "k", "b", 0);
    manager->SetSaveCallback(&First);
    notes.push_back(std::make_unique<Note>("Echo?"));
    notes.push_back(std::make_unique<Note>("../../escape\n"));
    TempDir::Write(dir / "Echo#@4#.kdoc", "taken");

    manager->answer = dir / "space.kws";
    ASSERT_TRUE(manager->OnWorkspaceSave()) << "no workspace open: save as";
    EXPECT_THAT(g_calls, ElementsAre("first"));
    EXPECT_FALSE(TempDir::Read(dir / "Aspace.ucfg").empty());
    EXPECT_FALSE(TempDir::Read(dir / "Bspace.ucfg").empty());
    EXPECT_EQ(notes[0]->GetPathName(), dir / "Echo#@4#.kdoc.1") << "the first free name";
    EXPECT_EQ(notes[0]->GetTitle(), "Echo?");
    EXPECT_EQ(notes[1]->GetPathName(), dir / "..#@2#..#@2#escape_.kdoc") << "never outside the folder";
    std::string name;
    EXPECT_TRUE(manager->GetOpenWorkspaceName(name));
    EXPECT_EQ(name, dir / "space.kws");
}

TEST_F(WorkspaceManagerTest, ReopeningRestoresTheFrameAndTheDocumentsAroundTheCallbacks)
{
    notes.push_back(std::make_unique<Note>("Report"));
    frame.resize(700, 420);
    manager->answer = dir / "space.kws";
    ASSERT_TRUE(manager->OnWorkspaceSaveAs());
    manager->SetCloseCallback(&Second);
    manager->OnWorkspaceClose();
    EXPECT_TRUE(notes.empty());
    frame.resize(300, 200);

    manager->SetPreOpenCallback(&Opening);
    manager->SetPostOpenCallback(&First);
    g_calls.clear();
    ASSERT_TRUE(manager->OpenWorkspace(dir / "space.kws"));
    EXPECT_THAT(g_calls, ElementsAre("opening " + (dir / "space.kws"), "first"));
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_EQ(notes[0]->GetTitle(), "Report");
    EXPECT_EQ(TempDir::Read(notes[0]->GetPathName()), "note Report");
    EXPECT_EQ(frame.size(), QSize(700, 420));
    EXPECT_EQ(manager->GetRecent().front(), dir / "space.kws");
}

TEST_F(WorkspaceManagerTest, AFileThatCannotBeUsedIsRefusedAndNothingChanges)
{
    notes.push_back(std::make_unique<Note>("Kept"));
    TempDir::Write(dir / "cut.kws", R"({"format": "kel-workspace 1", "documents": [)");
    TempDir::Write(dir / "newer.kws", R"({"format": "kel-workspace 2", "documents": []})");
    ASSERT_EQ(::mkfifo((dir / "fifo.kws").c_str(), 0600), 0);
    manager->SetPreOpenCallback(&Opening);
    // A FIFO nobody writes and a device that never ends are refused at once.
    for (const std::string& file :
         {dir / "missing.kws", dir / "cut.kws", dir / "newer.kws", dir / "fifo.kws", std::string("/dev/zero")}) {
        EXPECT_FALSE(manager->OpenWorkspace(file)) << file;
        ASSERT_EQ(notes.size(), 1u) << "nothing half-opened";
    }
    EXPECT_TRUE(g_calls.empty());
    ASSERT_EQ(prompts->size(), 5u);
    EXPECT_EQ(prompts->front().caption, "Workspace");
    EXPECT_EQ(prompts->front().text, "The workspace could not be opened.");
    EXPECT_EQ(prompts->front().icon, KELPrompt::Icon::Warning);
}

TEST(WorkspaceFileNames, ANameToSaveUnderEndsWithTheWorkspaceSuffix)
{
    EXPECT_EQ(IWorkspaceManager::WithWorkspaceSuffix("/ws/site"), "/ws/site.kws");
    EXPECT_EQ(IWorkspaceManager::WithWorkspaceSuffix("/ws/site.v2"), "/ws/site.v2.kws") << "else Open hides it";
    EXPECT_EQ(IWorkspaceManager::WithWorkspaceSuffix("/ws/site.kws"), "/ws/site.kws");
}

// The console's messages, as the application object sends them.
class RecordedConsole : public IMessageConsole {
public:
    bool HasWindow() const override { return true; }
    void SetMessage(KEL_T_Severity severity, const std::string& text) override { lines.push_back({severity, text}); }
    std::vector<std::pair<KEL_T_Severity, std::string>> lines;
};

TEST_F(WorkspaceManagerTest, ASaveThatFailsSaysSoAndWhy)
{
    RecordedConsole console;
    GetKELapp()->SetConsole(&console);
    TempDir::Write(dir / "plain", "a file, no folder");
    EXPECT_FALSE(manager->SaveWorkspace(dir / "plain/space.kws"));
    ASSERT_EQ(console.lines.size(), 2u);
    EXPECT_EQ(console.lines[1].first, KEL_SEVERITY_PROBLEM);
    EXPECT_EQ(console.lines[1].second.rfind("The workspace " + (dir / "plain/space.kws") + " could not be saved: ", 0),
              0u)
        << console.lines[1].second;
    EXPECT_NE(console.lines[1].second.find("Not a directory"), std::string::npos) << "and why";

    console.lines.clear();
    EXPECT_TRUE(manager->SaveWorkspace(dir / "space.kws"));
    ASSERT_FALSE(console.lines.empty());
    EXPECT_EQ(console.lines.back(), std::make_pair(KEL_SEVERITY_DONE, "Workspace " + (dir / "space.kws") + " saved"));
    GetKELapp()->SetConsole(nullptr);
}

// A document's file is made in the workspace's folder only, never through a
// link, and kept across saves; any title gives a file that opens again.
TEST_F(WorkspaceManagerTest, DocumentFilesStayInTheFolderNeverFollowALinkAndAreKept)
{
    TempDir outside;
    ASSERT_EQ(::symlink((outside / "planted").c_str(), (dir / "Report.kdoc").c_str()), 0);
    notes.push_back(std::make_unique<Note>("Report"));
    notes.push_back(std::make_unique<Note>(std::string(400, 'x')));
    notes.push_back(std::make_unique<Note>("caf\xe9 \xff\xfe menu"));
    ASSERT_TRUE(manager->SaveWorkspace(dir / "space.kws"));
    struct stat info {};
    EXPECT_NE(::lstat((outside / "planted").c_str(), &info), 0) << "nothing made where the link leads";
    EXPECT_EQ(notes[0]->GetPathName(), dir / "Report.kdoc.1") << "the link's name is taken";
    for (const auto& note : notes)
        EXPECT_EQ(TempDir::Read(note->GetPathName()), "note " + note->GetTitle()) << note->GetPathName();
    EXPECT_LT(notes[1]->GetPathName().size(), dir.Path().size() + 200) << "cut to fit a file name";
    EXPECT_NE(notes[2]->GetPathName().find("caf_ __ menu.kdoc"), std::string::npos) << notes[2]->GetPathName();

    // The file swapped for a link between saves: the link is replaced, its target untouched.
    TempDir::Write(outside / "victim", "keep");
    const std::string kept = notes[0]->GetPathName();
    ASSERT_EQ(::unlink(kept.c_str()), 0);
    ASSERT_EQ(::symlink((outside / "victim").c_str(), kept.c_str()), 0);
    ASSERT_TRUE(manager->SaveWorkspace(dir / "space.kws"));
    EXPECT_EQ(TempDir::Read(outside / "victim"), "keep");
    EXPECT_EQ(notes[0]->GetPathName(), kept) << "the same file, save after save";
    ASSERT_EQ(::lstat(kept.c_str(), &info), 0);
    EXPECT_TRUE(S_ISREG(info.st_mode));

    // Reopened and saved again: still one file per document.
    manager->OnWorkspaceClose();
    ASSERT_TRUE(manager->OpenWorkspace(dir / "space.kws"));
    ASSERT_EQ(notes.size(), 3u);
    ASSERT_TRUE(manager->SaveWorkspace(dir / "space.kws"));
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir.Path()))
        files += entry.path().string().find(".kdoc") != std::string::npos ? 1 : 0;
    EXPECT_EQ(files, 4) << "three documents and the planted link";
}

// What a save killed part-way left is gone after the next save.
TEST_F(WorkspaceManagerTest, ATemporaryOfAKilledSaveIsRemovedByTheNextSave)
{
    const pid_t gone = ::fork();
    if (gone == 0)
        ::_exit(0);
    ::waitpid(gone, nullptr, 0);
    const std::string left = dir / ("space.kws." + std::to_string(gone) + ".0.tmp");
    TempDir::Write(left, "{\"format\": \"kel-wor");
    ASSERT_TRUE(manager->SaveWorkspace(dir / "space.kws"));
    struct stat info {};
    EXPECT_NE(::stat(left.c_str(), &info), 0);
}

}  // namespace
