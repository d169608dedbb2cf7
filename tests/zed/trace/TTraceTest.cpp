// SPDX-License-Identifier: BSD-3-Clause
#include "zed/TApplication.h"
#include "zed/trace/TTraceProvider.h"
#include "zed/trace/TTraceRate.h"
#include "zed/trace/TTraceStream.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

TTraceProvider& Provider() { return *ZEDGetApplication()->GetTraceProvider(); }

// Captures under a mask for one test and restores the provider afterwards.
class TraceStreamTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        Provider().SetMask(0x405);
        Provider().StartCapture();
    }
    void TearDown() override
    {
        Provider().StopCapture();
        Provider().SetMask(0);
        Provider().SetDevEnvMask(0);
        Provider().SetTraceFile("");
    }
};

TEST(TraceMask, ParsesDecimalAndHexadecimal)
{
    unsigned int mask = 7;
    EXPECT_TRUE(TTraceProvider::ParseMask("1033", mask));
    EXPECT_EQ(mask, 1033u);
    EXPECT_TRUE(TTraceProvider::ParseMask("0x40F", mask));
    EXPECT_EQ(mask, 0x40Fu);
    EXPECT_TRUE(TTraceProvider::ParseMask("0XffffFFFF", mask));
    EXPECT_EQ(mask, 0xFFFFFFFFu);
    EXPECT_TRUE(TTraceProvider::ParseMask("0", mask));
    EXPECT_EQ(mask, 0u);
}

TEST(TraceMask, RefusesAnythingElseAndKeepsTheOldValue)
{
    for (const char* bad : {"", "0x", "12a", "-1", " 1", "1 ", "4294967296", "0x100000000", "x10", "0b11"}) {
        unsigned int mask = 99;
        EXPECT_FALSE(TTraceProvider::ParseMask(bad, mask)) << '"' << bad << '"';
        EXPECT_EQ(mask, 99u) << bad;
    }
}

TEST(TraceMask, InitialMaskAndFileComeFromTheEnvironment)
{
    const std::string file = ::testing::TempDir() + "zed_env_trace.txt";
    std::remove(file.c_str());
    setenv("ZED_TRACE_MASK", "0x404", 1);
    setenv("ZED_TRACE_FILE", file.c_str(), 1);
    {
        TTraceProvider provider;
        EXPECT_EQ(provider.GetMask(), 0x404u);
        provider.Write(0x404, "from the environment");
    }
    setenv("ZED_TRACE_MASK", "lots", 1);
    unsetenv("ZED_TRACE_FILE");
    ::testing::internal::CaptureStderr();
    {
        TTraceProvider provider;
        EXPECT_EQ(provider.GetMask(), 0u);
    }
    EXPECT_NE(::testing::internal::GetCapturedStderr().find("ZED_TRACE_MASK=\"lots\""), std::string::npos);
    setenv("ZED_TRACE_MASK", "0", 1);

    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    EXPECT_EQ(text.str(), "from the environment\n");
}

TEST_F(TraceStreamTest, WritesALineOnlyWhenTheMaskHoldsEveryBitOfTheStream)
{
    TTraceStream enabled(0x401);
    enabled << "kept" << endl;
    TTraceStream partly(0x402);  // 2 is not in the mask
    partly << "dropped" << endl;
    TTraceStream none(0);
    none << "dropped" << endl;
    EXPECT_EQ(Provider().GetCapture(), "kept\n");
}

TEST_F(TraceStreamTest, FormatsTextsNumbersAndObjects)
{
    TTraceStream s(0x404);
    const std::string text = "str";
    int object = 0;
    s << "a" << ' ' << text << std::string_view("|") << -12 << 34u << -5L << 6UL << 7LL << 8ULL << ' ' << 2.5 << endl;
    s << &object << ' ' << static_cast<const void*>(nullptr) << ' ' << static_cast<const char*>(nullptr) << endl;

    std::ostringstream address;
    address << std::hex << reinterpret_cast<std::uintptr_t>(&object);
    EXPECT_EQ(Provider().GetCapture(), "a str|-1234-5678 2.5\n0x" + address.str() + " 0x0 (null)\n");
}

TEST_F(TraceStreamTest, MaskChangesDecideAtOpenAndAtEndOfLine)
{
    TTraceStream s(0x404);
    s << "first";
    Provider().SetMask(0);
    s << endl;  // mask no longer allows it
    EXPECT_EQ(Provider().GetCapture(), "");

    TTraceStream closed(0x404);  // opened while off: formats nothing
    Provider().SetMask(0x404);
    closed << "late" << endl;
    EXPECT_EQ(Provider().GetCapture(), "");
}

TEST_F(TraceStreamTest, CopiesAreIndependentStreamsOfTheSameMask)
{
    TTraceStream a(0x401);
    a << "x";
    TTraceStream b(a);
    b << "y" << endl;
    a << endl;
    EXPECT_EQ(b.GetMask(), 0x401u);
    EXPECT_EQ(Provider().GetCapture(), "xy\nx\n");
}

TEST_F(TraceStreamTest, FileSinkAndDevEnvCopy)
{
    const std::string file = ::testing::TempDir() + "zed_trace_file.txt";
    std::remove(file.c_str());
    Provider().StopCapture();
    ASSERT_TRUE(Provider().SetTraceFile(file));
    EXPECT_FALSE(Provider().SetTraceFile("/nonexistent-dir/trace.txt"));

    Provider().SetDevEnvMask(0x400);
    ::testing::internal::CaptureStderr();
    TTraceStream(0x401) << "to both" << endl;
    TTraceStream(0x004) << "to the file only" << endl;
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "to both\n");

    Provider().SetTraceFile("");
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    EXPECT_EQ(text.str(), "to both\nto the file only\n");
}

TEST(TraceApplication, IsOneObjectAndTakesAHostProvider)
{
    TApplication* app = ZEDGetApplication();
    ASSERT_NE(app, nullptr);
    EXPECT_EQ(app, ZEDGetApplication());
    TTraceProvider* before = app->GetTraceProvider();
    ASSERT_NE(before, nullptr);

    auto replacement = std::make_unique<TTraceProvider>();
    TTraceProvider* raw = replacement.get();
    app->SetTraceProvider(std::move(replacement));
    EXPECT_EQ(app->GetTraceProvider(), raw);
    app->SetTraceProvider(nullptr);  // refused: there is always a provider
    EXPECT_EQ(app->GetTraceProvider(), raw);
}

}  // namespace

#include "zed/TException.h"
#include "zed/ZedAssert.h"

namespace {

TEST_F(TraceStreamTest, AFailedAssertionTracesAndThrowsItsMessage)
{
    Provider().SetMask(ZED_TRACE_MODULE | 1);
    ZEDAssertM(1 + 1 == 2, "never");
    try {
        ZEDAssertM(false, "the element is there already");
        FAIL() << "no exception";
    } catch (const TException& e) {
        EXPECT_EQ(e.GetText(), "the element is there already");
    }
    EXPECT_NE(Provider().GetCapture().find("assertion failed: the element is there already"), std::string::npos);
    int value = 0;
    EXPECT_EQ(ZEDAssertAllocation(&value), &value);
    EXPECT_THROW(ZEDAssertAllocation(static_cast<int*>(nullptr)), TException);
}

}  // namespace

TEST(TraceRate, AFloodOfOneKindIsTracedInPartAndWhatWasHeldBackIsSaid)
{
    TTraceRate rate(3);
    const auto start = TTraceRate::Clock::now();
    int written = 0;
    std::uint64_t held = 0;
    for (int i = 0; i < 100; ++i)
        written += rate.Allow("forged", &held, start + std::chrono::milliseconds(i)) ? 1 : 0;
    EXPECT_EQ(written, 3);
    EXPECT_TRUE(rate.Allow("another kind", &held, start)) << "each kind has its own share";
    EXPECT_TRUE(rate.Allow("forged", &held, start + std::chrono::seconds(1)));
    EXPECT_EQ(held, 97u) << "the next second says how many were held back, once";
    rate.Allow("forged", &held, start + std::chrono::milliseconds(1001));
    EXPECT_EQ(held, 0u);
}
