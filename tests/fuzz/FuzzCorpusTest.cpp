// SPDX-License-Identifier: BSD-3-Clause
// Replays every kept fuzz input (seeds and former findings) through the fuzz
// targets' own entry points, so that the ordinary build guards them too.

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

TEST(FuzzCorpus, ReplaysEveryKeptInput)
{
    const std::filesystem::path dir = FUZZ_CORPUS_DIR;
    int replayed = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir)) {
        std::ifstream in(entry.path(), std::ios::binary);
        const std::string data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        SCOPED_TRACE(entry.path().string());
        EXPECT_EQ(LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(data.data()), data.size()), 0);
        ++replayed;
    }
    EXPECT_GT(replayed, 0);
}

}  // namespace
