// SPDX-License-Identifier: BSD-3-Clause
#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/ZedAssert.h"
#include "zed/trace/TTraceProvider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::HasSubstr;

namespace {

std::vector<std::string> g_seen;
void Record(const char*, int line, const std::string& message)
{
    g_seen.push_back(std::to_string(line) + " " + message);
}

TEST(ZedAssert, TheDefaultThrowsAnInstalledHandlerDecidesAndTheOldOneComesBack)
{
    TTraceProvider& provider = *ZEDGetApplication()->GetTraceProvider();
    provider.SetMask(ZED_TRACE_MODULE | 1);
    provider.StartCapture();
    bool ranOn = false;
    const auto check = [&] {
        ZEDAssertM(1 + 1 == 3, "arithmetic");
        ranOn = true;
    };
    try {
        check();
        ADD_FAILURE() << "the default handler throws";
    } catch (const TException& e) {
        EXPECT_EQ(std::string(e.what()), "arithmetic");
    }
    EXPECT_FALSE(ranOn);
    EXPECT_THAT(provider.GetCapture(), HasSubstr("ZED PBLM: "));
    EXPECT_THAT(provider.GetCapture(), HasSubstr(" assertion failed: arithmetic\n"));

    g_seen.clear();
    const ZEDAssertHandler previous = ZEDSetAssertHandler(&Record);
    EXPECT_EQ(previous, nullptr);
    EXPECT_EQ(ZEDGetAssertHandler(), &Record);
    check();
    EXPECT_TRUE(ranOn) << "a handler that returns lets the code go on";
    ASSERT_EQ(g_seen.size(), 1u);
    EXPECT_THAT(g_seen[0], HasSubstr(" arithmetic"));

    // Memory is another matter: whatever the handler, nothing goes on.
    EXPECT_THROW(ZEDAssertAllocation(static_cast<int*>(nullptr)), TException);
    EXPECT_EQ(g_seen.size(), 2u);
    int kept = 0;
    EXPECT_EQ(ZEDAssertAllocation(&kept), &kept);

    EXPECT_EQ(ZEDSetAssertHandler(previous), &Record);
    EXPECT_THROW(check(), TException);
    provider.StopCapture();
    provider.SetMask(0);
}

}  // namespace
