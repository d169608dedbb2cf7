// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/ICustomField.h"
#include "kel/config/KELConfigStatus.h"
#include "kel/config/KELTextReader.h"
#include "kel/frame/KELTrace.h"
#include "support/TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace {

TEST(ICustomFieldLine, NameAndValueSplitAtTheFirstEqualsSignAndAreTrimmed)
{
    std::string name = "old", value = "old";
    EXPECT_EQ(ICustomField::GetFieldName("  \t Key  =  a = b \t", name), KEL_CFG_SUCCESS);
    ICustomField::GetFieldValue("  \t Key  =  a = b \t", value);
    EXPECT_EQ(name, "Key");
    EXPECT_EQ(value, "a = b");

    EXPECT_EQ(ICustomField::GetFieldName("= leading", name), KEL_CFG_SUCCESS);
    EXPECT_EQ(name, "");
    EXPECT_EQ(ICustomField::GetFieldName("no equals sign", name), KEL_CFG_NO_EQUALS);
    EXPECT_EQ(name, "");
    ICustomField::GetFieldValue("no equals sign", value);
    EXPECT_EQ(value, "");
}

TEST(ICustomFieldLoad, ReportsEveryStatusAndSkipsBlankAndCommentLines)
{
    KELTextReader file("\n   # comment\n  Width = 640 \nno equals\n\t[ End X ]\n");
    ICustomField field;
    EXPECT_EQ(field.Load(file), KEL_CFG_SUCCESS);
    EXPECT_EQ(field.GetFieldName(), "Width");
    EXPECT_EQ(field.GetValue(), "640");
    EXPECT_EQ(field.Load(file), KEL_CFG_NO_EQUALS);
    EXPECT_EQ(field.GetFieldName(), "Width") << "a dropped line leaves the field as it was";

    const auto before = file.GetPosition();
    EXPECT_EQ(field.Load(file), KEL_CFG_END_OF_FIELDS);
    EXPECT_EQ(file.GetPosition(), before) << "the end line is given back to the section reader";
    std::string_view line;
    ASSERT_TRUE(file.ReadLine(line));
    EXPECT_EQ(line, "\t[ End X ]");
    EXPECT_EQ(field.Load(file), KEL_CFG_EOF);
}

TEST(ICustomFieldLoad, SetsBackOverSkippedLinesBeforeTheBracket)
{
    KELTextReader file("# c\n\n[ next ]\n");
    ICustomField field;
    EXPECT_EQ(field.Load(file), KEL_CFG_END_OF_FIELDS);
    std::string_view line;
    ASSERT_TRUE(file.ReadLine(line));
    EXPECT_EQ(line, "[ next ]");
}

TEST(ICustomFieldSave, WritesTheLineFormatAndRoundTripsWhatTheFormatCanHold)
{
    std::string out;
    ICustomField("Title", "a = b").Save(out);
    ICustomField("", "empty name").Save(out);
    ICustomField("Pad", "  blanks lost  ").Save(out);
    ICustomField("x=y", "z").Save(out);
    EXPECT_EQ(out, "    Title = a = b\n     = empty name\n    Pad =   blanks lost  \n    x=y = z\n");

    KELTextReader file(out);
    ICustomField field;
    ASSERT_EQ(field.Load(file), KEL_CFG_SUCCESS);
    EXPECT_EQ(field, ICustomField("Title", "a = b"));
    ASSERT_EQ(field.Load(file), KEL_CFG_SUCCESS);
    EXPECT_EQ(field, ICustomField("", "empty name"));
    ASSERT_EQ(field.Load(file), KEL_CFG_SUCCESS);
    EXPECT_EQ(field, ICustomField("Pad", "blanks lost"));
    ASSERT_EQ(field.Load(file), KEL_CFG_SUCCESS);
    EXPECT_EQ(field, ICustomField("x", "y = z")) << "a name with = is split at its first =";
}

TEST(ICustomFieldSave, TracesEachFieldAsAProblemLine)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    std::string out;
    ICustomField("Width", "640").Save(out);
    const auto lines = capture.Lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_THAT(lines[0], ::testing::MatchesRegex("KEL PBLM: KELCustomField:[0-9]+ this=0x[0-9a-f]+ "
                                                  "ICustomField::Save Width = 640"));
}

TEST(ICustomField, CloneCopyAndDump)
{
    ICustomField original("Key", "Value");
    auto clone = original.Clone();
    ASSERT_NE(clone, nullptr);
    EXPECT_EQ(*clone, original);
    ICustomField assigned;
    assigned = original;
    assigned.SetValue("Other");
    EXPECT_EQ(original.GetValue(), "Value");

    std::ostringstream dump;
    original.DumpDebug(dump);
    EXPECT_EQ(dump.str(), "        Key = Value\n");
}

}  // namespace
