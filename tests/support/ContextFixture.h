// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// A test with KEL running over the shipped network, configuration paths in
// fresh temporary folders, a context "TST" and message boxes recorded.

#include "kel/frame/IApplication.h"
#include "support/PromptRecorder.h"
#include "support/ShippedNetwork.h"
#include "support/TempDir.h"
#include "zed/TApplication.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

class ContextFixture : public ::testing::Test {
protected:
    void SetUp() override
    {
        setenv("ORVEX_SYSTEM_PATH", system.Path().c_str(), 1);
        setenv("ORVEX_USER_PATH", user.Path().c_str(), 1);
        network = InstallShippedNetwork();
        ASSERT_NE(InitializeKEL("context test"), nullptr);
        context = GetKELapp()->DefineNewContext("TST");
        prompts = PromptRecorder::Install();
    }
    void TearDown() override
    {
        DestroyKEL();
        // The shipped network goes too: a test after this one starts without it.
        ZEDGetApplication()->SetDefaultModule(nullptr);
        ZEDGetApplication()->SetDictionary(nullptr);
        KELPrompt::Install(nullptr);
        unsetenv("ORVEX_SYSTEM_PATH");
        unsetenv("ORVEX_USER_PATH");
    }

    TempDir system, user;
    std::shared_ptr<TSimulatedNetwork> network;
    KELConfigContext* context = nullptr;
    std::shared_ptr<PromptRecorder::Log> prompts;
};
