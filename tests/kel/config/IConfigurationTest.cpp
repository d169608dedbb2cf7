// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/IConfigList.h"
#include "kel/config/IConfiguration.h"
#include "kel/config/ISection.h"
#include "kel/frame/KELTrace.h"
#include "support/TempDir.h"
#include "support/TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <map>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

namespace {

constexpr int kWorkspace = 0;
constexpr int kGlobal = 1;

TEST(IConfigurationValues, TypedValuesAreStoredInTheirTextForms)
{
    IConfiguration c;
    c.SetInt("S", "int", -1, kGlobal);
    c.SetShort("S", "short", -2, kGlobal);
    c.SetDouble("S", "double", 3.14159265, kGlobal);
    c.SetBool("S", "yes", true, kGlobal);
    c.SetBool("S", "no", false, kGlobal);
    const auto text = [&](const char* key) { return *c.FindValue("S", key, kGlobal); };
    EXPECT_EQ(text("int"), "4294967295") << "an int is written as its unsigned 32-bit form";
    EXPECT_EQ(text("short"), "-2");
    EXPECT_EQ(text("double"), "3.14159") << "%G keeps six digits";
    EXPECT_EQ(text("yes"), "TRUE");
    EXPECT_EQ(text("no"), "FALSE");

    int i = 7;
    EXPECT_EQ(c.GetInt("S", "int", i, kGlobal, 42), 1);
    EXPECT_EQ(i, 42) << "4294967295 does not fit an int: the stream extraction fails, the default comes back";
    short s = 0;
    EXPECT_EQ(c.GetShort("S", "short", s, kGlobal, 5), 1);
    EXPECT_EQ(s, -2);
    double d = 0;
    EXPECT_EQ(c.GetDouble("S", "double", d, kGlobal, 0), 1);
    EXPECT_DOUBLE_EQ(d, 3.14159);
    bool b = false;
    EXPECT_EQ(c.GetBool("S", "yes", b, kGlobal, false), 1);
    EXPECT_TRUE(b);
    EXPECT_EQ(c.GetInt("S", "missing", i, kGlobal, 11), 9);
    EXPECT_EQ(i, 11);
}

TEST(IConfigurationValues, BoolsReadFourWordsInAnyCaseAndOtherwiseTheDefault)
{
    IConfiguration c;
    for (const auto& [word, expected] :
         std::vector<std::pair<const char*, bool>>{{"true", true}, {"1", true}, {"False", false}, {"0", false}}) {
        c.SetString("B", "k", word, kGlobal);
        bool value = !expected;
        EXPECT_EQ(c.GetBool("B", "k", value, kGlobal, !expected), 1);
        EXPECT_EQ(value, expected) << word;
    }
    c.SetString("B", "k", "yes", kGlobal);
    bool value = false;
    EXPECT_EQ(c.GetBool("B", "k", value, kGlobal, true), 1) << "an unknown word is still found";
    EXPECT_TRUE(value);
}

TEST(IConfigurationValues, TheFlagChoosesWhichCollectionIsAskedFirstAndWrittenTo)
{
    IConfiguration c;
    c.SetString("S", "k", "global", kGlobal);
    c.SetString("S", "k", "workspace", kWorkspace);
    c.SetString("S", "only", "ws", kWorkspace);
    std::string value;
    c.GetString("S", "k", value, kWorkspace);
    EXPECT_EQ(value, "workspace");
    c.GetString("S", "k", value, kGlobal);
    EXPECT_EQ(value, "global");
    EXPECT_EQ(c.GetString("S", "only", value, kGlobal), 1) << "then the other collection";
    EXPECT_EQ(c.GetString("T", "k", value, kGlobal, "fallback"), 9);
    EXPECT_EQ(value, "fallback");
    EXPECT_EQ(c.GetGlobalSections().Size(), 1u);
    EXPECT_EQ(c.GetWorkspaceSections().Size(), 1u);
    EXPECT_EQ(c.IsEmpty(), 0);
}

TEST(IConfigurationFiles, SaveWritesTheHeaderAndLoadRestoresTheGlobalSectionsOnly)
{
    TempDir dir;
    IConfiguration c(dir / "a.cfg");
    c.SetString("Display", "Width", "640", kGlobal);
    c.SetString("Display", "Title", "Main = view", kGlobal);
    c.SetString("Other", "k", "v", kGlobal);
    c.SetString("Ws", "k", "v", kWorkspace);
    ASSERT_EQ(c.Save(), 1);

    std::istringstream text(TempDir::Read(dir / "a.cfg"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    ASSERT_GE(lines.size(), 9u);
    const std::string rule = " " + std::string(67, '#') + " ";
    EXPECT_EQ(lines[0], rule);
    EXPECT_EQ(lines[1], " ## ");
    EXPECT_EQ(lines[2], " ## Configuration filename : " + (dir / "a.cfg"));
    EXPECT_THAT(lines[3], MatchesRegex(" ## Date and time          : .+"));
    EXPECT_THAT(lines[4], MatchesRegex(" ## User                   : .*"));
    EXPECT_EQ(lines[5], " ## ");
    EXPECT_EQ(lines[6], rule);
    EXPECT_EQ(lines[7], "");
    EXPECT_EQ(lines[8], "[ Display ]") << "sections keep the order they were added in";

    ASSERT_EQ(c.Load(), 1);
    EXPECT_EQ(c.GetGlobalSections().Size(), 2u);
    EXPECT_EQ(c.GetWorkspaceSections().Size(), 0u) << "loading drops the workspace sections";
    EXPECT_EQ(*c.FindValue("Display", "Title", kGlobal), "Main = view");
}

TEST(IConfigurationFiles, UnreadableAndUncreatableFilesAnswerZeroAndChangeNothing)
{
    TempDir dir;
    IConfiguration c(dir / "missing.cfg");
    c.SetString("S", "k", "v", kGlobal);
    EXPECT_EQ(c.Load(), 0);
    EXPECT_EQ(c.GetGlobalSections().Size(), 1u);
    EXPECT_EQ(IConfiguration("").Save(), 0);
    EXPECT_EQ(IConfiguration(dir / "no/such/dir.cfg").Save(), 0);
}

// Runs a check in a child process without root's power over permission bits
// (as "nobody" when the test runs as root); true when the check held.
bool HoldsWithoutRoot(const std::string& directory, const std::function<bool()>& check)
{
    const pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0) {
            ::chmod(directory.c_str(), 0777);
            if (::setgid(65534) != 0 || ::setuid(65534) != 0)
                ::_exit(3);
        }
        ::_exit(check() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(IConfigurationFiles, AFileWithoutWritePermissionIsNotReplaced)
{
    TempDir dir;
    const std::string path = dir / "locked.cfg";
    TempDir::Write(path, "[ Old ]\n[ End Old ]\n");
    ::chmod(path.c_str(), 0444);
    EXPECT_TRUE(HoldsWithoutRoot(dir.Path(), [&] {
        IConfiguration c(path);
        c.SetString("New", "k", "v", kGlobal);
        return c.Save() == 0 && TempDir::Read(path) == "[ Old ]\n[ End Old ]\n";
    }));
}

TEST(IConfigurationFiles, AWritableFileIsSavedInPlaceWhereNoTemporaryCanBeMade)
{
    TempDir dir;
    // A name so long that no temporary name fits beside it (even root is refused).
    const std::string longName = dir / (std::string(250, 'k') + ".cfg");
    TempDir::Write(longName, "[ Old ]\n[ End Old ]\n");
    IConfiguration blocked(longName);
    blocked.SetString("New", "k", "v", kGlobal);
    ASSERT_EQ(blocked.Save(), 1);
    EXPECT_THAT(TempDir::Read(longName), HasSubstr("[ New ]\n    k = v\n[ End New ]\n"));

    // A directory that refuses new files.
    const std::string sub = dir / "readonly";
    ::mkdir(sub.c_str(), 0777);
    const std::string path = sub + "/user.cfg";
    TempDir::Write(path, "[ Old ]\n[ End Old ]\n");
    ::chmod(path.c_str(), 0666);
    EXPECT_TRUE(HoldsWithoutRoot(dir.Path(), [&] {
        ::chmod(sub.c_str(), 0555);
        IConfiguration c(path);
        c.SetString("New", "k", "v", kGlobal);
        return c.Save() == 1 && TempDir::Read(path).find("[ New ]") != std::string::npos
               && TempDir::Read(path).find("[ Old ]") == std::string::npos;
    }));
}

TEST(IConfigurationFiles, ALinkedFileStaysALinkAndItsTargetIsReplaced)
{
    TempDir dir;
    ::mkdir((dir / "real").c_str(), 0700);
    TempDir::Write(dir / "real/user.cfg", "[ Old ]\n[ End Old ]\n");
    ASSERT_EQ(::symlink("real/user.cfg", (dir / "user.cfg").c_str()), 0);
    IConfiguration c(dir / "user.cfg");
    c.SetString("New", "k", "v", kGlobal);
    ASSERT_EQ(c.Save(), 1);
    struct stat info {};
    ASSERT_EQ(::lstat((dir / "user.cfg").c_str(), &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
    EXPECT_THAT(TempDir::Read(dir / "real/user.cfg"), HasSubstr("[ New ]"));
}

TEST(IConfigurationFiles, StaleTemporariesOfDeadWritersAreRemovedByTheNextSave)
{
    TempDir dir;
    const pid_t dead = ::fork();
    if (dead == 0)
        ::_exit(0);
    ::waitpid(dead, nullptr, 0);
    const std::string deadWriter = dir / ("user.cfg." + std::to_string(dead) + ".7.tmp");
    const std::string liveWriter = dir / ("user.cfg." + std::to_string(::getppid()) + ".7.tmp");
    const std::string otherFile = dir / ("other.cfg." + std::to_string(dead) + ".7.tmp");
    const std::string notOurs = dir / "user.cfg.notes.tmp";
    for (const std::string& path : {deadWriter, liveWriter, otherFile, notOurs})
        TempDir::Write(path, "partial");
    IConfiguration c(dir / "user.cfg");
    c.SetString("S", "k", "v", kGlobal);
    ASSERT_EQ(c.Save(), 1);
    EXPECT_FALSE(std::filesystem::exists(deadWriter));
    EXPECT_TRUE(std::filesystem::exists(liveWriter)) << "its writer may still be at work";
    EXPECT_TRUE(std::filesystem::exists(otherFile)) << "another file's temporaries are not ours";
    EXPECT_TRUE(std::filesystem::exists(notOurs));
}

TEST(IConfigurationValues, LineEndsInNamesOrValuesAreRefused)
{
    TempDir dir;
    IConfiguration c(dir / "inject.cfg");
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    c.SetString("S", "k", "before", kGlobal);
    c.SetString("S", "k", "x\n[ End S ]\n[ Evil ]", kGlobal);
    c.SetString("S", "bad\rkey", "v", kGlobal);
    c.SetString("New\nSection", "k", "v", kGlobal);
    c.SetString("S", "after", "kept", kGlobal);
    EXPECT_EQ(*c.FindValue("S", "k", kGlobal), "before");
    EXPECT_THAT(capture.Text(),
                HasSubstr("IConfiguration::SetStringValue k in S refused : a line end cannot be stored"));
    ASSERT_EQ(c.Save(), 1);
    IConfiguration read(dir / "inject.cfg");
    ASSERT_EQ(read.Load(), 1);
    EXPECT_FALSE(read.DroppedSectionsOnLoad());
    EXPECT_EQ(read.GetGlobalSections().Size(), 1u);
    EXPECT_EQ(*read.FindValue("S", "after", kGlobal), "kept");
}

TEST(IConfigurationFiles, LastSectionOfANameWinsAndWorkspacesLoadApart)
{
    TempDir dir;
    TempDir::Write(dir / "dup.cfg", "[ S ]\nk = first\n[ End S ]\n[ S ]\nk = second\n[ End S ]\n");
    IConfiguration c(dir / "dup.cfg");
    ASSERT_EQ(c.Load(), 1);
    EXPECT_EQ(c.GetGlobalSections().Size(), 1u);
    EXPECT_EQ(*c.FindValue("S", "k", kGlobal), "second");

    ASSERT_EQ(c.LoadWorkspace(dir / "dup.cfg"), 1);
    EXPECT_EQ(*c.FindValue("S", "k", kWorkspace), "second");
    EXPECT_EQ(c.GetGlobalSections().Size(), 1u) << "a workspace load leaves the global sections";
    ASSERT_EQ(c.SaveWorkspace(dir / "ws.ucfg"), 1);
    IConfiguration other;
    ASSERT_EQ(other.LoadWorkspace(dir / "ws.ucfg"), 1);
    EXPECT_EQ(*other.FindValue("S", "k", kWorkspace), "second");
    c.ResetWorkspace();
    EXPECT_EQ(c.FindValue("S", "k", kWorkspace), c.FindValue("S", "k", kGlobal));
}

TEST(IConfigurationFiles, ASaveAfterALossyLoadKeepsTheOldFileAsBak)
{
    TempDir dir;
    const std::string original = "[ Good ]\nk = v\n[ End Good ]\n[ Typo ]\nk = v\n[ End Tpyo ]\n";
    TempDir::Write(dir / "user.cfg", original);
    ::chmod((dir / "user.cfg").c_str(), 0640);
    IConfiguration c(dir / "user.cfg");
    ASSERT_EQ(c.Load(), 1);
    EXPECT_TRUE(c.DroppedSectionsOnLoad());
    c.SetString("Good", "k", "changed", kGlobal);
    ASSERT_EQ(c.Save(), 1);
    EXPECT_EQ(TempDir::Read(dir / "user.cfg.bak"), original) << "the hand-edited text survives";
    struct stat info {};
    ::stat((dir / "user.cfg").c_str(), &info);
    EXPECT_EQ(info.st_mode & 0777, 0640u) << "the file keeps its permissions";

    TempDir::Write(dir / "user.cfg.bak", "older");
    ASSERT_EQ(c.Save(), 1);
    EXPECT_EQ(TempDir::Read(dir / "user.cfg.bak"), "older") << "only the first save after a lossy load keeps one";
    for (const auto& entry : std::filesystem::directory_iterator(dir.Path()))
        EXPECT_EQ(entry.path().string().find(".tmp"), std::string::npos) << "no temporary file is left behind";
}

// A process killed at any moment of a save leaves the old or the new file.
TEST(IConfigurationFiles, AKillDuringSavesLeavesOneWholeVersion)
{
    TempDir dir;
    const std::string path = dir / "busy.cfg";
    const auto version = [](char tag) {
        IConfiguration c;
        for (int s = 0; s < 400; ++s)
            for (int f = 0; f < 20; ++f)
                c.SetString("Section" + std::to_string(s), "Field" + std::to_string(f), std::string(40, tag), kGlobal);
        return c;
    };
    IConfiguration a = version('a'), b = version('b');
    a.SetFilename(path);
    b.SetFilename(path);
    ASSERT_EQ(a.Save(), 1);
    for (int round = 0; round < 12; ++round) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (;;) {
                a.Save();
                b.Save();
            }
        }
        ::usleep(static_cast<useconds_t>(2000 + round * 1700));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        IConfiguration read(path);
        ASSERT_EQ(read.Load(), 1);
        ASSERT_FALSE(read.DroppedSectionsOnLoad()) << "round " << round;
        ASSERT_EQ(read.GetGlobalSections().Size(), 400u) << "round " << round;
        const std::string first = *read.FindValue("Section0", "Field0", kGlobal);
        ASSERT_TRUE(first == std::string(40, 'a') || first == std::string(40, 'b'));
        EXPECT_EQ(*read.FindValue("Section399", "Field19", kGlobal), first) << "never a mix of two saves";
    }
    // The killed writers' temporaries go with the next ordinary save.
    ASSERT_EQ(a.Save(), 1);
    for (const auto& entry : std::filesystem::directory_iterator(dir.Path()))
        EXPECT_THAT(entry.path().filename().string(), ::testing::AnyOf("busy.cfg", "busy.cfg.lock"));
}

// Two applications with the same user file open: each save keeps what the
// other saved meanwhile and writes over it only what this one changed.
TEST(IConfigurationFiles, ASaveKeepsWhatAnotherProcessSavedSinceTheLoad)
{
    TempDir dir;
    const std::string path = dir / "user.cfg";
    {
        IConfiguration first(path);
        first.SetString("Shared", "Width", "100", kGlobal);
        first.SetString("Shared", "Height", "50", kGlobal);
        first.SetString("Old", "Key", "x", kGlobal);
        ASSERT_EQ(first.Save(), 1);
    }
    IConfiguration a(path), b(path);
    ASSERT_EQ(a.Load(), 1);
    ASSERT_EQ(b.Load(), 1);
    a.SetString("Shared", "Width", "120", kGlobal);
    a.SetString("FromA", "Key", "a", kGlobal);
    ASSERT_EQ(a.Save(), 1);
    b.SetString("FromB", "Key", "b", kGlobal);
    b.RemoveSection("Old", "");
    b.GetGlobalSections().Find("Shared")->RemoveField("Height");
    ASSERT_EQ(b.Save(), 1);
    EXPECT_EQ(*b.FindValue("Shared", "Width", kGlobal), "120") << "b holds the merge it wrote";

    IConfiguration read(path);
    ASSERT_EQ(read.Load(), 1);
    EXPECT_EQ(*read.FindValue("Shared", "Width", kGlobal), "120") << "a's change, which b did not touch";
    EXPECT_EQ(read.FindValue("Shared", "Height", kGlobal), nullptr) << "b's removal";
    EXPECT_EQ(read.GetGlobalSections().Find("Old"), nullptr);
    EXPECT_EQ(*read.FindValue("FromA", "Key", kGlobal), "a");
    EXPECT_EQ(*read.FindValue("FromB", "Key", kGlobal), "b");

    a.SetString("Shared", "Width", "130", kGlobal);
    ASSERT_EQ(a.Save(), 1);
    ASSERT_EQ(read.Load(), 1);
    EXPECT_EQ(*read.FindValue("FromB", "Key", kGlobal), "b") << "a's next save keeps b's entries";
    EXPECT_EQ(read.FindValue("Shared", "Height", kGlobal), nullptr) << "and b's removal";

    IConfiguration other(dir / "other.cfg");
    other.SetString("Only", "Key", "o", kGlobal);
    ASSERT_EQ(other.Save(), 1);
    a.SetFilename(dir / "other.cfg");
    ASSERT_EQ(a.Save(), 1);
    IConfiguration copy(dir / "other.cfg");
    ASSERT_EQ(copy.Load(), 1);
    EXPECT_EQ(copy.GetGlobalSections().Find("Only"), nullptr) << "saved under another name: this one's sections only";
}

// Two processes saving one file 500 times each, one entry of their own a
// round: no entry is lost and the file always reads whole.
TEST(IConfigurationFiles, TwoProcessesSavingOneFileLoseNoUpdate)
{
    TempDir dir;
    const std::string path = dir / "shared.cfg";
    constexpr int kRounds = 500;
    const auto writer = [&](const std::string& name) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (int round = 0; round < kRounds; ++round) {
                IConfiguration c(path);
                c.Load();
                c.SetString(name, "Round" + std::to_string(round), std::to_string(round), kGlobal);
                if (c.Save() != 1)
                    ::_exit(1);
            }
            ::_exit(0);
        }
        return child;
    };
    const pid_t first = writer("First"), second = writer("Second");
    int reads = 0, torn = 0;
    std::map<pid_t, int> ended;
    while (ended.size() < 2) {
        for (const pid_t child : {first, second})
            if (int status = 0; !ended.count(child) && ::waitpid(child, &status, WNOHANG) == child)
                ended[child] = status;
        IConfiguration read(path);
        if (read.Load() == 1) {
            ++reads;
            torn += read.DroppedSectionsOnLoad() ? 1 : 0;
        }
    }
    for (const auto& [child, status] : ended)
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "a writer's save failed";
    IConfiguration read(path);
    ASSERT_EQ(read.Load(), 1);
    EXPECT_EQ(torn, 0) << "of " << reads << " reads meanwhile";
    int lost = 0;
    for (const char* name : {"First", "Second"})
        for (int round = 0; round < kRounds; ++round)
            lost += read.FindValue(name, "Round" + std::to_string(round), kGlobal) ? 0 : 1;
    EXPECT_EQ(lost, 0);
}

// Two writers at once, one after a lossy load: the live file is never emptied
// or touched by the backup, and the backup holds what that load read.
TEST(IConfigurationFiles, TheBackupNeverTouchesTheLiveFile)
{
    TempDir dir;
    const std::string path = dir / "shared.cfg";
    const std::string lossy = "[ Good ]\nk = v\n[ End Good ]\n[ Typo ]\n[ End Tpyo ]\n";
    for (int round = 0; round < 40; ++round) {
        TempDir::Write(path, lossy);
        ::unlink((path + ".bak").c_str());
        IConfiguration first(path), second(path);
        ASSERT_EQ(first.Load(), 1);
        ASSERT_EQ(second.Load(), 1);
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(second.Save() == 1 ? 0 : 1);
        ASSERT_EQ(first.Save(), 1);
        ASSERT_FALSE(IConfiguration(path).IsEmpty() && TempDir::Read(path).empty()) << "round " << round;
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_EQ(WEXITSTATUS(status), 0);
        EXPECT_EQ(TempDir::Read(path + ".bak"), lossy) << "round " << round;
        EXPECT_THAT(TempDir::Read(path), HasSubstr("[ Good ]")) << "round " << round;
    }
}

class ExposedConfiguration : public IConfiguration {
public:
    using IConfiguration::AddInSection;
    using IConfiguration::RemoveFromSection;
};

TEST(IConfigurationSections, AddAndRemoveWriteTheirTraceLines)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    ExposedConfiguration c;
    EXPECT_EQ(c.AddSection("S", "ignored"), 1);
    EXPECT_EQ(c.AddSection("S", "ignored"), 0);
    EXPECT_EQ(c.AddInSection(c.GetGlobalSections(), "S", "k"), 1);
    EXPECT_EQ(c.AddInSection(c.GetGlobalSections(), "S", "k"), 0);
    EXPECT_EQ(c.AddInSection(c.GetGlobalSections(), "T", "k"), 0);
    EXPECT_EQ(c.RemoveFromSection(c.GetGlobalSections(), "S", "k"), 1);
    EXPECT_EQ(c.RemoveSection("S", ""), 1);
    EXPECT_EQ(c.RemoveSection(c.GetWorkspaceSections(), "S"), 0);
    std::vector<std::string> messages;
    for (const std::string& line : capture.Lines())
        messages.push_back(line.substr(line.find(' ', line.find("this=")) + 1));
    EXPECT_THAT(messages, ElementsAre("IConfiguration::AddInSection k in S successful",
                                      "IConfiguration::AddInSection k in S Field Already exists",
                                      "IConfiguration::AddInSection k in T Section not found",
                                      "IConfiguration::RemoveFromSection k in S successful",
                                      "IConfiguration::RemoveSection : S section not found"));
}

TEST(IConfigurationSections, CopiesAreDeepAndDumpListsEverySection)
{
    IConfiguration c("f.cfg");
    c.SetString("S", "k", "v", kGlobal);
    c.SetString("W", "k", "w", kWorkspace);
    IConfiguration copy(c);
    copy.SetString("S", "k", "changed", kGlobal);
    EXPECT_EQ(*c.FindValue("S", "k", kGlobal), "v");
    auto clone = c.Clone();
    EXPECT_EQ(*clone->FindValue("W", "k", kWorkspace), "w");
    std::ostringstream dump;
    c.DumpDebug(dump);
    EXPECT_EQ(dump.str(), " ------- Configuration ------------ \n Filename : f.cfg\n[ S ]\n        k = v\n[ End S ]\n"
                          "[ W ]\n        k = w\n[ End W ]\n ------- End Configuration -------- \n");
    EXPECT_STREQ(IConfiguration::WS_SEPARATOR, ".");
}

TEST(IConfigList, WalksItemsWithoutTrimmingAndFindsThemIgnoringCase)
{
    const std::string text = "Arg:3, arg:7,";
    IConfigList list(text, ',');
    std::vector<std::string> items;
    std::string item;
    for (long position = list.GetHeadPosition(); position >= 0;) {
        position = list.GetNext(item, position);
        items.push_back(item);
    }
    EXPECT_EQ(items, (std::vector<std::string>{"Arg:3", " arg:7", ""}))
        << "a trailing separator ends with an empty item";
    EXPECT_EQ(list.FindAndGetIndex("ARG:3"), 0);
    EXPECT_EQ(list.FindAndGetIndex("arg:7"), -1) << "items are not trimmed";
    EXPECT_EQ(list.FindAndGetIndex(""), 2);
    EXPECT_EQ(list.GetNext(item, -5), -1);
    EXPECT_EQ(item, "");
    const std::string empty;
    EXPECT_EQ(IConfigList(empty, ',').FindAndGetIndex(""), 0) << "an empty text is one empty item";
}

}  // namespace
