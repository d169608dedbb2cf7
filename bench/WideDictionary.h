// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The dictionary of the form benchmarks: one class, "Box", whose directive 1,
// "Wide", takes `count` Unsigned32 arguments A1, A2, ..., each with a default.

#include "zed/TApplication.h"
#include "zed/dict/TDictionary.h"

#include <string>

inline void InstallWideDictionary(int count)
{
    std::string arguments;
    for (int i = 1; i <= count; ++i)
        arguments += (i > 1 ? "," : "") + std::string(R"({"id": )") + std::to_string(i) + R"(, "name": "A)"
                     + std::to_string(i) + R"(", "type": "Unsigned32", "default": ")" + std::to_string(i) + "\"}";
    const std::string json = R"({"format": "zed-dictionary 1", "partitions": [{"code": 1, "name": "Status"}],
        "classes": [{"code": 1, "name": "Box", "directives": [{"id": 1, "name": "Wide", "request": [)"
                             + arguments + "]}]}]}";
    ZEDGetApplication()->SetDictionary(TDictionary::Parse(json, "wide.json"));
}
