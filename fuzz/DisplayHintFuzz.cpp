// SPDX-License-Identifier: BSD-3-Clause
// A DISPLAY-HINT from a MIB (the first line) and octets or text from an
// agent or an operator (the rest): written and read back without a fault,
// and what a hint writes, it reads back to the same octets when it can.

#include "zed/value/ZedDisplayHint.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t newline = input.find('\n');
    const std::string hint = input.substr(0, newline);
    const std::string rest = newline == std::string::npos ? std::string() : input.substr(newline + 1);
    if (const auto text = ZedHintOctets(rest, hint)) {
        const auto back = ZedHintText(*text, hint);
        // Separators may be octets of the data too; only numbers round-trip for sure.
        if (back && hint == "1d." && *back != rest && text->find('.') == std::string::npos)
            std::abort();
    }
    (void)ZedHintText(rest, hint);
    if (const auto number = ZedHintNumber(rest, hint)) {
        if (ZedHintNumber(ZedHintInteger(*number, hint), hint) != number)
            std::abort();
    }
    (void)ZedDateAndTime(rest);
    return 0;
}
