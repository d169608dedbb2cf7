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
    for (const auto& [word, expected] : std::vector<std::pair<const char*, bool>>{
             {"true", true}, {"1", true}, {"False", false}, {"0", false}}) {
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

TEST(IConfigurationFiles, UnreadableAndUnwritableFilesAnswerZeroAndChangeNothing)
{
    TempDir dir;
    IConfiguration c(dir / "missing.cfg");
    c.SetString("S", "k", "v", kGlobal);
    EXPECT_EQ(c.Load(), 0);
    EXPECT_EQ(c.GetGlobalSections().Size(), 1u);

    // A name so long that no file can be made beside it (even root is refused):
    // the save fails before it touches the old file.
    const std::string kept = dir / (std::string(250, 'k') + ".cfg");
    TempDir::Write(kept, "[ Old ]\n[ End Old ]\n");
    IConfiguration blocked(kept);
    blocked.SetString("New", "k", "v", kGlobal);
    EXPECT_EQ(blocked.Save(), 0);
    EXPECT_EQ(TempDir::Read(kept), "[ Old ]\n[ End Old ]\n");
    EXPECT_EQ(IConfiguration("").Save(), 0);
    EXPECT_EQ(IConfiguration(dir / "no/such/dir.cfg").Save(), 0);
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
    EXPECT_EQ(items, (std::vector<std::string>{"Arg:3", " arg:7", ""})) << "a trailing separator ends with an empty item";
    EXPECT_EQ(list.FindAndGetIndex("ARG:3"), 0);
    EXPECT_EQ(list.FindAndGetIndex("arg:7"), -1) << "items are not trimmed";
    EXPECT_EQ(list.FindAndGetIndex(""), 2);
    EXPECT_EQ(list.GetNext(item, -5), -1);
    EXPECT_EQ(item, "");
    const std::string empty;
    EXPECT_EQ(IConfigList(empty, ',').FindAndGetIndex(""), 0) << "an empty text is one empty item";
}

} // namespace
