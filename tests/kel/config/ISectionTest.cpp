// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/ICustomField.h"
#include "kel/config/ISection.h"
#include "kel/config/KELConfigStatus.h"
#include "kel/config/KELTextReader.h"
#include "kel/frame/KELTrace.h"
#include "support/TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <memory>
#include <sstream>
#include <thread>
#include <vector>

using ::testing::ElementsAre;
using ::testing::MatchesRegex;

namespace {

// A section's fields as a map, so that checks do not depend on field order.
std::map<std::string, std::string> Fields(const ISection& section)
{
    std::map<std::string, std::string> fields;
    for (std::size_t i = 0; i < section.GetFieldCount(); ++i)
        fields[section.GetField(i).GetFieldName()] = section.GetField(i).GetValue();
    return fields;
}

struct Loaded {
    int status;
    std::string name;
    std::map<std::string, std::string> fields;
};

Loaded LoadOne(const std::string& text)
{
    KELTextReader file(text);
    ISection section;
    const int status = section.Load(file);
    return {status, section.GetSectionName(), Fields(section)};
}

// Trace lines without their variable "KEL PBLM: KELSection:<line> this=<object> " head.
std::vector<std::string> Messages(const TraceCapture& capture)
{
    std::vector<std::string> messages;
    for (const std::string& line : capture.Lines()) {
        const auto at = line.find(' ', line.find("this="));
        messages.push_back(line.substr(at + 1));
    }
    return messages;
}

TEST(ISectionLoad, ReadsASectionWithCommentsBlanksAndDuplicates)
{
    const Loaded s = LoadOne("# header\n\n[ Display ]\n    Width = 640\n  # note\n\n"
                             "    Title = Main = view \n    Width = 800\n  no equals here\n[ End Display ]\n\n");
    EXPECT_EQ(s.status, KEL_CFG_SUCCESS);
    EXPECT_EQ(s.name, "Display");
    EXPECT_EQ(s.fields, (std::map<std::string, std::string>{{"Title", "Main = view"}, {"Width", "800"}}));
}

TEST(ISectionLoad, EndLineKeywordInAnyCaseButNameExactly)
{
    for (const char* end : {"[ End Display ]", "[END Display]", "[end    Display]", "  [ eNd\tDisplay ]  "})
        EXPECT_EQ(LoadOne(std::string("[Display]\nA = 1\n") + end + "\n").status, KEL_CFG_SUCCESS) << end;
    for (const char* end : {"[ End display ]", "[ End Displays ]", "[ Ed Display ]", "[ End ]", "[En]"})
        EXPECT_EQ(LoadOne(std::string("[Display]\nA = 1\n") + end + "\n").status, KEL_CFG_INVALID_END) << end;
    // Without brackets it is a field line without "=": dropped, and the file ends inside the section.
    EXPECT_EQ(LoadOne("[Display]\nA = 1\nEnd Display\n").status, KEL_CFG_EOF);
}

TEST(ISectionLoad, BeginLineNeedsBracketsAndTakesTheTrimmedInnerText)
{
    EXPECT_EQ(LoadOne("[Tight]\n[End Tight]\n").name, "Tight");
    EXPECT_EQ(LoadOne("  [   a [b] c   ]  \n[ End a [b] c ]\n").name, "a [b] c");
    const Loaded empty = LoadOne("[]\n[End]\n");
    EXPECT_EQ(empty.status, KEL_CFG_SUCCESS);
    EXPECT_EQ(empty.name, "");
    for (const char* begin : {"Display", "[Display", "Display]", "[", "]", "x [Display]"})
        EXPECT_EQ(LoadOne(std::string(begin) + "\n[ End Display ]\n").status, KEL_CFG_INVALID_BEGIN) << begin;
}

TEST(ISectionLoad, EndOfFileBeforeOrInsideASection)
{
    EXPECT_EQ(LoadOne("").status, KEL_CFG_EOF);
    EXPECT_EQ(LoadOne("# only a comment\n\n").status, KEL_CFG_EOF);
    const Loaded cut = LoadOne("[ Cut ]\n    A = 1\n    B = 2\n");
    EXPECT_EQ(cut.status, KEL_CFG_EOF);
    EXPECT_EQ(cut.fields.size(), 2u) << "fields read before the end of the file stay";
}

TEST(ISectionLoad, ABeginLineWhereTheEndShouldBeFailsAndIsConsumed)
{
    KELTextReader file("[ One ]\nA = 1\n[ Two ]\nB = 2\n[ End Two ]\n");
    ISection first;
    EXPECT_EQ(first.Load(file), KEL_CFG_INVALID_END);
    ISection next;
    EXPECT_EQ(next.Load(file), KEL_CFG_INVALID_BEGIN) << "the reader goes on after the consumed begin line";
}

TEST(ISectionLoad, CarriageReturnLineFeedFileReadsTheSame)
{
    const std::string unix = "[ S ]\n    A = 1\n    B = x = y\n[ End S ]\n\n";
    std::string dos;
    for (char c : unix)
        dos += c == '\n' ? std::string("\r\n") : std::string(1, c);
    const Loaded a = LoadOne(unix), b = LoadOne(dos);
    EXPECT_EQ(b.status, KEL_CFG_SUCCESS);
    EXPECT_EQ(a.name, b.name);
    EXPECT_EQ(a.fields, b.fields);
}

TEST(ISectionSave, WritesTheFileFormatAndReadsBackTheSame)
{
    ISection section("Display");
    section.AddField("Width", "640");
    section.AddField("Title", "Main = view");
    section.AddField("", "nameless");
    std::string out;
    section.Save(out);
    EXPECT_EQ(out, "[ Display ]\n    Width = 640\n    Title = Main = view\n     = nameless\n[ End Display ]\n\n");

    KELTextReader file(out + out);
    for (int i = 0; i < 2; ++i) {
        ISection again;
        ASSERT_EQ(again.Load(file), KEL_CFG_SUCCESS);
        EXPECT_EQ(again.GetSectionName(), "Display");
        EXPECT_EQ(Fields(again), Fields(section));
    }
    ISection none;
    EXPECT_EQ(none.Load(file), KEL_CFG_EOF);
}

TEST(ISectionFields, GetSetAddRemove)
{
    ISection section("S");
    std::string value = "untouched";
    EXPECT_EQ(section.GetString("A", value), 0);
    EXPECT_EQ(value, "untouched");
    EXPECT_EQ(section.AddField("A", "1"), 1);
    EXPECT_EQ(section.AddField("A", "2"), 0);
    EXPECT_EQ(section.GetString("A", value), 1);
    EXPECT_EQ(value, "1");
    EXPECT_EQ(section.GetString("a", value), 0) << "names are case-sensitive";

    section.SetString("A", "3");
    section.SetString("B", "new");
    EXPECT_EQ(*section.FindValue("A"), "3");
    EXPECT_EQ(*section.FindValue("B"), "new");
    EXPECT_EQ(section.RemoveField("A"), 1);
    EXPECT_EQ(section.RemoveField("A"), 0);
    EXPECT_EQ(section.FindValue("A"), nullptr);
    EXPECT_EQ(section.GetFieldCount(), 1u);
}

TEST(ISectionFields, LargeSectionsKeepEveryFieldFindableThroughRemovals)
{
    // Past a handful of fields the section indexes its fields; this walks the
    // index through growth, replacement and removal.
    ISection section("Big");
    for (int i = 0; i < 500; ++i)
        section.AddField("key" + std::to_string(i), std::to_string(i));
    for (int i = 0; i < 500; i += 3)
        section.SetString("key" + std::to_string(i), "changed");
    for (int i = 0; i < 500; i += 2)
        EXPECT_EQ(section.RemoveField("key" + std::to_string(i)), 1);
    EXPECT_EQ(section.GetFieldCount(), 250u);
    for (int i = 0; i < 500; ++i) {
        const std::string* value = section.FindValue("key" + std::to_string(i));
        if (i % 2 == 0) {
            EXPECT_EQ(value, nullptr) << i;
            continue;
        }
        ASSERT_NE(value, nullptr) << i;
        EXPECT_EQ(*value, i % 3 == 0 ? "changed" : std::to_string(i));
    }
    std::string text = "[ Dup ]\n";
    for (int round = 0; round < 2; ++round)
        for (int i = 0; i < 100; ++i)
            text += "k" + std::to_string(i) + " = " + std::to_string(round) + "\n";
    const Loaded dup = LoadOne(text + "[ End Dup ]\n");
    EXPECT_EQ(dup.fields.size(), 100u);
    EXPECT_EQ(dup.fields.at("k42"), "1") << "the last occurrence wins";
}

TEST(ISectionLoad, EverySizeAroundTheIndexThresholdStaysFindableAcrossConsecutiveLoads)
{
    // One reader fills sections of every size in turn, each with a repeated name.
    std::string text;
    const int sizes[] = {1, 31, 32, 33, 34, 100, 3000, 5, 64};
    for (int n : sizes) {
        text += "[ S" + std::to_string(n) + " ]\n";
        for (int i = 0; i < n; ++i)
            text += "k" + std::to_string(i) + " = " + std::to_string(i) + std::string(i % 40, 'v') + "\n";
        text += "k0 = again\n[ End S" + std::to_string(n) + " ]\n";
    }
    KELTextReader file = KELTextReader::OverView(text);
    for (int n : sizes) {
        ISection section;
        ASSERT_EQ(section.Load(file), KEL_CFG_SUCCESS) << n;
        ASSERT_EQ(section.GetFieldCount(), static_cast<std::size_t>(n)) << n;
        EXPECT_EQ(section.GetField(0).GetValue(), "again") << "replaced in its place";
        for (int i = 1; i < n; ++i) {
            const std::string* value = section.FindValue("k" + std::to_string(i));
            ASSERT_NE(value, nullptr) << n << " " << i;
            EXPECT_EQ(*value, std::to_string(i) + std::string(i % 40, 'v'));
        }
        section.AddField("added", "x");
        EXPECT_NE(section.FindValue("added"), nullptr);
    }
}

TEST(ISection, CloneCloneWithNameAndDump)
{
    ISection section("Orig");
    for (int i = 0; i < 12; ++i)
        section.AddField("f" + std::to_string(i), "v");
    auto clone = section.Clone();
    EXPECT_EQ(clone->GetSectionName(), "Orig");
    EXPECT_EQ(Fields(*clone), Fields(section));
    clone->SetString("f3", "changed");
    EXPECT_EQ(*section.FindValue("f3"), "v") << "a clone is a deep copy";
    EXPECT_EQ(*clone->FindValue("f11"), "v");

    EXPECT_EQ(section.CloneWithName(""), nullptr);
    auto renamed = section.CloneWithName("Copy");
    ASSERT_NE(renamed, nullptr);
    EXPECT_EQ(renamed->GetSectionName(), "Copy");
    std::string name;
    renamed->GetSectionName(name);
    EXPECT_EQ(name, "Copy");

    ISection small("D");
    small.AddField("K", "V");
    std::ostringstream dump;
    small.DumpDebug(dump);
    EXPECT_EQ(dump.str(), "[ D ]\n        K = V\n[ End D ]\n");
}

TEST(ISectionTrace, LoadingWritesItsLinesWithTheirExactTexts)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    LoadOne("[ S ]\nA = 1\n[ End S ]\n");
    LoadOne("bad\n");
    LoadOne("[ S ]\n[ End s ]\n");
    LoadOne("[ S ]\n");
    LoadOne("");
    EXPECT_THAT(Messages(capture),
                ElementsAre("ISection::ValidBeginSection S", "KEL End section reached", "ISection::ValidEndSection  S",
                            "ISection::ValidBeginSection , invalid section bad", "ISection::ValidBeginSection S",
                            "KEL End section reached", "ISection::ValidEndSection , INVALID End [ End s ]",
                            "ISection::ValidBeginSection S", "ISection::ValidEndSection ,  EOF reached ",
                            "ISection::ValidBeginSection , EOF reached "));
    const auto lines = capture.Lines();
    EXPECT_THAT(lines[0], MatchesRegex("KEL PBLM: KELSection:[0-9]+ this=0x[0-9a-f]+ ISection::ValidBeginSection S"));
    EXPECT_THAT(lines[1], MatchesRegex("KEL PBLM: KELCustomField:[0-9]+ this=0x[0-9a-f]+ KEL End section reached"));
}

TEST(ISectionTrace, FieldAccessWritesProblemAndInformationLines)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM | KEL_TRACE_INFO);
    ISection section("S");
    std::string value;
    section.GetString("Missing", value);
    section.SetString("Key", "Val");
    std::string out;
    section.Save(out);
    EXPECT_THAT(Messages(capture), ElementsAre("KEL : GetMissing not found ", "KEL : SetKey with value : Val",
                                               "ISection::Save S", "ICustomField::Save Key = Val"));
    EXPECT_EQ(capture.Lines()[1].substr(0, 9), "KEL INFO:");
}

}  // namespace

// Values read from a file stay views of its text until asked for: the text
// must live as long as any section or clone that views it, text a caller
// keeps is copied at once, and a field copied out owns its value.
TEST(ISectionLoad, ValuesOutliveTheReaderAndTheTextTheCallerKeeps)
{
    auto section = std::make_unique<ISection>();
    std::unique_ptr<ISection> clone;
    {
        KELTextReader file(std::string("[ S ]\n  Path = /usr/share/kel/network/routers.json\n[ End S ]\n"));
        ASSERT_EQ(section->Load(file), KEL_CFG_SUCCESS);
        clone = section->Clone();
    }
    const ICustomField copied = section->GetField(0);
    section.reset();
    EXPECT_EQ(copied.GetValue(), "/usr/share/kel/network/routers.json");
    ASSERT_NE(clone->FindValue("Path"), nullptr);
    EXPECT_EQ(*clone->FindValue("Path"), "/usr/share/kel/network/routers.json");

    std::string kept = "[ T ]\n  Key = a value longer than small strings hold\n[ End T ]\n";
    KELTextReader view = KELTextReader::OverView(kept);
    ISection viewed;
    ASSERT_EQ(viewed.Load(view), KEL_CFG_SUCCESS);
    kept.assign(kept.size(), '#');
    EXPECT_EQ(*viewed.FindValue("Key"), "a value longer than small strings hold");
}

TEST(ISectionLoad, ManyThreadsAskingForTheSameUnreadValuesSeeThemWhole)
{
    std::string text = "[ S ]\n";
    for (int i = 0; i < 200; ++i)
        text += "  Key" + std::to_string(i) + " = value number " + std::to_string(i) + " of the section\n";
    text += "[ End S ]\n";
    KELTextReader file(text);
    ISection section;
    ASSERT_EQ(section.Load(file), KEL_CFG_SUCCESS);
    std::atomic<int> wrong{0};
    std::vector<std::thread> readers;
    for (int t = 0; t < 4; ++t)
        readers.emplace_back([&] {
            for (int i = 0; i < 200; ++i)
                if (section.GetField(static_cast<std::size_t>(i)).GetValue()
                    != "value number " + std::to_string(i) + " of the section")
                    ++wrong;
        });
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_EQ(wrong, 0);
}
