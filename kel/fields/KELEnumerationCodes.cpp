// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/KELEnumerationCodes.h"

#include <atomic>

namespace {

std::atomic<bool> g_shown{false};

}  // namespace

void KELEnumerationCodes::Show(bool shown) { g_shown = shown; }

bool KELEnumerationCodes::Shown() { return g_shown; }

std::string KELEnumerationCodes::Text(const std::string& name, long code)
{
    return g_shown ? name + " (" + std::to_string(code) + ")" : name;
}
