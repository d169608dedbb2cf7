// SPDX-License-Identifier: BSD-3-Clause
#include "zed/ZedText.h"

std::string ZedEscapeControls(std::string_view text)
{
    constexpr unsigned char kDelete = 0x7f;
    static const char* const kHex = "0123456789abcdef";
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        const auto octet = static_cast<unsigned char>(c);
        if (octet >= 0x20 && octet != kDelete) {
            escaped += c;
            continue;
        }
        switch (c) {
        case '\n': escaped += "\\n"; break;
        case '\r': escaped += "\\r"; break;
        case '\t': escaped += "\\t"; break;
        case '\x1b': escaped += "\\e"; break;
        default:
            escaped += "\\x";
            escaped += kHex[octet >> 4];
            escaped += kHex[octet & 0xf];
        }
    }
    return escaped;
}
