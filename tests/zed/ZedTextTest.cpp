// SPDX-License-Identifier: BSD-3-Clause
#include "zed/ZedText.h"
#include "zed/value/TScalarValues.h"

#include <gtest/gtest.h>

TEST(ZedText, ControlCharactersFromOutsideCannotForgeALineOrMoveTheCursor)
{
    EXPECT_EQ(ZedEscapeControls("up\r\nDown: fake line\x1b[2J\x07"), "up\\r\\nDown: fake line\\e[2J\\x07");
    EXPECT_EQ(ZedEscapeControls(std::string("a\0b\x7f\tc", 6)), "a\\x00b\\x7f\\tc");
    EXPECT_EQ(ZedEscapeControls("Grüße, C:\\path"), "Grüße, C:\\path") << "UTF-8 and backslashes stay";
}

TEST(ZedText, AReasonSaysWhatWasSeenWhenItWasGiven)
{
    TInteger32 value(0, 3);
    value.SetReason(ZED_REASON_INVALID_VALUE, "OCTET STRING abc does not fit Integer32");
    EXPECT_EQ(value.ToString(), "(invalid value: OCTET STRING abc does not fit Integer32)");
    const auto copy = value.Clone();
    EXPECT_EQ(copy->ToString(), value.ToString());
    value.SetReason(ZED_REASON_NOT_AVAILABLE);
    EXPECT_EQ(value.ToString(), "(not available)") << "a new reason forgets the old one's detail";
}
