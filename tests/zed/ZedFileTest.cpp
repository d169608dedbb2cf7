// SPDX-License-Identifier: BSD-3-Clause
// Files people give the libraries are read whole, and only regular files of a
// bounded size: nothing blocks on a FIFO or reads a device until memory runs out.

#include "support/TempDir.h"
#include "zed/TException.h"
#include "zed/ZedFile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <sys/stat.h>

namespace {

TEST(ZedFile, ARegularFileIsReadWholeAndAnythingElseIsRefusedAtOnce)
{
    TempDir dir;
    TempDir::Write(dir / "small.json", "{\"format\": 1}\n");
    std::string content, error;
    ASSERT_TRUE(ZedReadRegularFile(dir / "small.json", 64, content, error)) << error;
    EXPECT_EQ(content, "{\"format\": 1}\n");

    EXPECT_FALSE(ZedReadRegularFile(dir / "small.json", 8, content, error));
    EXPECT_EQ(error, "larger than 8 bytes") << "refused by its size";

    const std::string fifo = dir / "fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(ZedReadRegularFile(fifo, 64, content, error)) << "no writer: opening it would wait for ever";
    EXPECT_EQ(error, "a FIFO, not a regular file");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));

    EXPECT_FALSE(ZedReadRegularFile("/dev/zero", ZED_MAX_FILE_SIZE, content, error));
    EXPECT_EQ(error, "a device, not a regular file");
    EXPECT_FALSE(ZedReadRegularFile(dir.Path(), 64, content, error));
    EXPECT_FALSE(ZedReadRegularFile(dir / "missing", 64, content, error));
    EXPECT_EQ(error, "No such file or directory");

    EXPECT_THROW(ZedReadFile(fifo, "dictionary"), TException);
}

}  // namespace
