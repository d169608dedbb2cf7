// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/KELTextReader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sys/stat.h>
#include <vector>

namespace {

std::vector<std::string> AllLines(KELTextReader& reader)
{
    std::vector<std::string> lines;
    std::string_view line;
    while (reader.ReadLine(line))
        lines.emplace_back(line);
    return lines;
}

TEST(KELTextReader, CarriageReturnLineFeedReadsLikeLineFeed)
{
    KELTextReader unix("a\n\nb = 1\n[ c ]");
    KELTextReader dos("a\r\n\r\nb = 1\r\n[ c ]");
    const std::vector<std::string> expected{"a", "", "b = 1", "[ c ]"};
    EXPECT_EQ(AllLines(unix), expected);
    EXPECT_EQ(AllLines(dos), expected);
}

TEST(KELTextReader, KeepsCarriageReturnsThatEndNoLine)
{
    KELTextReader reader("a\rb\r\r\nlast\r");
    EXPECT_EQ(AllLines(reader), (std::vector<std::string>{"a\rb\r", "last\r"}));
}

TEST(KELTextReader, EmptyTextAndFinalLineFeedGiveNoExtraLine)
{
    KELTextReader empty{std::string()};
    EXPECT_TRUE(AllLines(empty).empty());
    KELTextReader one("only\n");
    EXPECT_EQ(AllLines(one), std::vector<std::string>{"only"});
}

TEST(KELTextReader, SeekingBackReadsTheSameLineAgain)
{
    KELTextReader reader("first\nsecond\n");
    std::string_view line;
    reader.ReadLine(line);
    const auto mark = reader.GetPosition();
    reader.ReadLine(line);
    EXPECT_TRUE(reader.AtEnd());
    reader.Seek(mark);
    ASSERT_TRUE(reader.ReadLine(line));
    EXPECT_EQ(line, "second");
    reader.Seek(1000);
    EXPECT_FALSE(reader.ReadLine(line));
}

TEST(KELTextReader, MovingAnOwningReaderKeepsItsText)
{
    // A short text lives inside the string object itself, so a move that kept
    // the old view would read freed or foreign bytes.
    KELTextReader source("x\ny");
    std::string_view line;
    source.ReadLine(line);
    KELTextReader moved(std::move(source));
    ASSERT_TRUE(moved.ReadLine(line));
    EXPECT_EQ(line, "y");
    KELTextReader assigned;
    assigned = KELTextReader::OverView("view");
    ASSERT_TRUE(assigned.ReadLine(line));
    EXPECT_EQ(line, "view");
}

TEST(KELTextReader, OpenReadsAFileAndExplainsAFailure)
{
    const std::string path = ::testing::TempDir() + "kel_reader.conf";
    std::ofstream(path, std::ios::binary) << "one\r\ntwo\n";
    KELTextReader reader;
    ASSERT_TRUE(reader.Open(path));
    EXPECT_EQ(AllLines(reader), (std::vector<std::string>{"one", "two"}));

    std::string error;
    EXPECT_FALSE(reader.Open(path + ".missing", &error));
    EXPECT_EQ(error, "No such file or directory");
    EXPECT_TRUE(reader.AtEnd());
    std::remove(path.c_str());

    // A settings file that is a FIFO or a device is refused before it is read.
    const std::string fifo = ::testing::TempDir() + "kel_reader.fifo";
    std::remove(fifo.c_str());
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_FALSE(reader.Open(fifo, &error));
    EXPECT_EQ(error, "a FIFO, not a regular file");
    std::remove(fifo.c_str());
    EXPECT_FALSE(reader.Open("/dev/zero", &error));
    EXPECT_EQ(error, "a device, not a regular file");
}

}  // namespace
