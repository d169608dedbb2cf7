// SPDX-License-Identifier: BSD-3-Clause
// DISPLAY-HINTs both ways, as RFC 2579 writes them and as a MIB or an agent
// may get them wrong.

#include "zed/value/ZedDisplayHint.h"

#include <gtest/gtest.h>

namespace {

std::string Octets(std::initializer_list<int> bytes)
{
    std::string octets;
    for (int b : bytes)
        octets += static_cast<char>(b);
    return octets;
}

TEST(DisplayHint, OctetsAreWrittenAndReadAsTheHintSays)
{
    const std::string address = Octets({10, 0, 0, 1});
    EXPECT_EQ(ZedHintOctets(address, "1d.1d.1d.1d"), "10.0.0.1");
    EXPECT_EQ(ZedHintText("10.0.0.1", "1d.1d.1d.1d"), address);
    EXPECT_EQ(ZedHintOctets(Octets({0x0a, 0x1b, 0xff}), "1x:"), "0a:1b:ff") << "the last part repeats";
    EXPECT_EQ(ZedHintText("0a:1b:ff", "1x:"), Octets({0x0a, 0x1b, 0xff}));
    EXPECT_EQ(ZedHintOctets("lo", "255a"), "lo");
    EXPECT_EQ(ZedHintOctets(Octets({0x01, 0x02}), "2d"), "258") << "a number of several octets";
    EXPECT_EQ(ZedHintText("258", "2d"), Octets({0x01, 0x02}));
    // DateAndTime's own hint, with its zone.
    const std::string when = Octets({0x07, 0xea, 11, 25, 18, 30, 41, 5, '+', 1, 0});
    EXPECT_EQ(ZedHintOctets(when, "2d-1d-1d,1d:1d:1d.1d,1a1d:1d"), "2026-11-25,18:30:41.5,+1:0");
    // A repeat count from the data, and its terminator.
    EXPECT_EQ(ZedHintOctets(Octets({2, 1, 2, 3}), "*1d./1d"), "1.2/3");

    EXPECT_EQ(ZedHintText("10.0.0.256", "1d.1d.1d.1d"), std::nullopt) << "256 is no octet";
    EXPECT_EQ(ZedHintText("ten", "1d."), std::nullopt);
    std::string why;
    EXPECT_EQ(ZedHintText("1.2", "*1d."), std::nullopt);
    EXPECT_EQ(ZedHintText("1", "1q", &why), std::nullopt);
    EXPECT_EQ(why, "the display hint \"1q\" is not one of octets");
    for (const char* bad : {"", "1q", "0d", "9d", "d", "*", "255", "1d.*"})
        EXPECT_FALSE(ZedIsOctetHint(bad)) << bad;
    EXPECT_EQ(ZedHintOctets(std::string(3, '\xff'), "9x"), std::nullopt);
}

TEST(DisplayHint, IntegersAreWrittenWithTheirPointOrBase)
{
    EXPECT_EQ(ZedHintInteger(1234, "d-2"), "12.34");
    EXPECT_EQ(ZedHintInteger(-5, "d-2"), "-0.05");
    EXPECT_EQ(ZedHintInteger(7, "d"), "7");
    EXPECT_EQ(ZedHintInteger(255, "x"), "ff");
    EXPECT_EQ(ZedHintInteger(5, "b"), "101");
    EXPECT_EQ(ZedHintInteger(INT64_MIN, "d-1"), "-922337203685477580.8");
    EXPECT_EQ(ZedHintNumber("12.34", "d-2"), 1234);
    EXPECT_EQ(ZedHintNumber("12.3", "d-2"), 1230);
    EXPECT_EQ(ZedHintNumber("-0.05", "d-2"), -5);
    EXPECT_EQ(ZedHintNumber("ff", "x"), 255);
    EXPECT_EQ(ZedHintNumber("12.345", "d-2"), std::nullopt) << "more places than the hint has";
    EXPECT_EQ(ZedHintNumber("", "d-2"), std::nullopt);
    EXPECT_EQ(ZedHintNumber("1e3", "d"), std::nullopt);
    for (const char* bad : {"d-", "d-x", "d-99", "y", "1d"})
        EXPECT_FALSE(ZedIsIntegerHint(bad)) << bad;
}

TEST(DisplayHint, DateAndTimeIsAPointInTime)
{
    const std::string utc = Octets({0x07, 0xea, 11, 25, 18, 30, 41, 5});
    const std::optional<std::int64_t> when = ZedDateAndTime(utc);
    ASSERT_TRUE(when.has_value());
    EXPECT_EQ(*when, 1795631441500);
    EXPECT_EQ(ZedDateAndTime(Octets({0x07, 0xea, 11, 25, 20, 30, 41, 5, '+', 2, 0})), when) << "two hours east";
    EXPECT_EQ(ZedDateAndTimeOctets(*when), utc + Octets({'+', 0, 0}));
    EXPECT_EQ(ZedDateAndTime(ZedDateAndTimeOctets(-100)), -100) << "before 1970, to the tenth of a second";
    for (const std::string& bad : {Octets({0x07, 0xea, 13, 1, 0, 0, 0, 0}), Octets({0x07, 0xea, 1, 1, 0, 0, 0}),
                                   Octets({0x07, 0xea, 1, 1, 0, 0, 0, 0, '*', 0, 0}), std::string()})
        EXPECT_EQ(ZedDateAndTime(bad), std::nullopt);
}

}  // namespace
