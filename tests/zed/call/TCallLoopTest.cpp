// SPDX-License-Identifier: BSD-3-Clause
// Calls handed to their modules without waiting: completions only from the
// loop's turn, cancelling, timeouts, the wait set, and the request checks the
// call layer makes for every module.

#include "support/HeldModule.h"
#include "support/ShippedNetwork.h"
#include "zed/call/TCallAnswers.h"
#include "zed/call/TCallLoop.h"
#include "zed/call/TManagementModule.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TScalarValues.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

class CallLoopTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        network = InstallShippedNetwork();
        module = std::make_shared<HeldModule>();
        ZEDGetApplication()->RegisterModule(kNetwork, module);
    }
    void TearDown() override { ZEDGetApplication()->RegisterModule(kNetwork, nullptr); }

    static constexpr unsigned int kNetwork = 1;
    std::shared_ptr<TSimulatedNetwork> network;
    std::shared_ptr<HeldModule> module;
    TCallLoop& loop = ZEDGetCallLoop();
};

TEST_F(CallLoopTest, ACompletionRunsOnlyOnTheLoopsTurnAndACancelledOneNever)
{
    const TEntitySpec core("Network core");
    int done = 0;
    const TCallTicket ticket = loop.Submit(core, 1, {}, [&](std::vector<TCallResult>) { ++done; });
    ASSERT_NE(ticket, 0u);
    EXPECT_EQ(module->started, std::vector<TCallTicket>{ticket});
    EXPECT_TRUE(loop.IsPending(ticket));
    const ZedWaitSet set = loop.GetWaitSet();
    EXPECT_NE(std::find(set.descriptors.begin(), set.descriptors.end(), module->descriptor), set.descriptors.end())
        << "the module's descriptor is waited on";
    EXPECT_NE(std::find(set.descriptors.begin(), set.descriptors.end(), loop.GetWakeDescriptor()),
              set.descriptors.end());
    ASSERT_TRUE(set.deadline.has_value()) << "the call's timeout";

    loop.ProcessReady();
    EXPECT_EQ(done, 0) << "nothing came back yet";
    module->release = true;
    module->ProcessReady();  // the answer arrives, the completion still waits for the loop
    EXPECT_EQ(done, 0);
    loop.ProcessReady();
    EXPECT_EQ(done, 1);
    EXPECT_FALSE(loop.IsPending(ticket));

    module->release = false;
    const TCallTicket dropped = loop.Submit(core, 1, {}, [&](std::vector<TCallResult>) { ++done; });
    loop.Cancel(dropped);
    EXPECT_EQ(module->cancelled, std::vector<TCallTicket>{dropped});
    module->release = true;
    loop.ProcessReady();
    EXPECT_EQ(done, 1) << "a cancelled call's completion never runs";
    EXPECT_EQ(loop.GetPendingCount(), 0u);
}

TEST_F(CallLoopTest, ACallWithoutAnAnswerEndsInNoAnswerWhenItsTimeIsUp)
{
    const TEntitySpec core("Network core");
    std::vector<TCallResult> answer;
    const TCallTicket ticket = loop.Submit(
        core, 1, {}, [&](std::vector<TCallResult> r) { answer = std::move(r); }, 50ms);
    const auto start = ZedWaitSet::Clock::now();
    loop.RunUntilDone(ticket);
    EXPECT_GE(ZedWaitSet::Clock::now() - start, 50ms);
    ASSERT_EQ(answer.size(), 1u);
    EXPECT_EQ(answer[0].status, ZED_STATUS_COMMON_EXCEPTION);
    EXPECT_EQ(answer[0].reply.GetReplyCode(), ZED_COMMON_NO_ANSWER);
    EXPECT_EQ(answer[0].reply[1].ToString(), "no answer from " + core.ToString() + " within 50 ms");
    EXPECT_EQ(module->cancelled, std::vector<TCallTicket>{ticket}) << "the module gives the call up";
}

// The checks every module gets: the request never reaches one it does not fit.
TEST_F(CallLoopTest, ARequestThatDoesNotFitIsAnsweredByTheCallLayer)
{
    const TEntitySpec router("Network core Router r1");
    const TDictClass& cls = *Dictionary().FindClass(router.GetEntityClass());
    const TDictDirective& set = *cls.FindDirective(std::string("Set"));
    TRequest readOnly;
    readOnly.Add(std::make_unique<TSimpleName>("x", cls.FindAttribute(std::string("Name"))->GetID()));
    TSyncCall refused(router, set.GetID(), readOnly);
    refused.Execute();
    EXPECT_EQ(refused.GetStatus(), ZED_STATUS_SPECIALISED_EXCEPTION);
    EXPECT_EQ(refused.GetReply().GetReplyCode(), 91u) << "NotWritable: " << refused.GetReply().ToString();
    TRequest stranger;
    stranger.Add(std::make_unique<TSimpleName>("x", 999));
    TSyncCall unknown(router, set.GetID(), stranger);
    unknown.Execute();
    EXPECT_EQ(unknown.GetReply().GetReplyCode(), 90u) << "InvalidArgument";
    EXPECT_NE(unknown.GetReply().ToString().find("not an attribute of Router"), std::string::npos);
    EXPECT_TRUE(module->started.empty()) << "neither reached the module";

    // A value nested past the limit is refused too.
    const TDictDirective& echo = *Dictionary()
                                      .FindClass(TEntitySpec("Network core Router r1 Interface eth0").GetEntityClass())
                                      ->FindDirective(std::string("Echo"));
    const TDictArgument& setting = *echo.FindRequestArgument(std::string("Setting"));
    auto deep = std::make_unique<TAttribute>(TAttributeID(5u), setting.GetID());
    for (int i = 0; i < ZED_MAX_VALUE_DEPTH + 2; ++i) {
        auto outer = std::make_unique<TAttribute>(TAttributeID(5u), setting.GetID());
        outer->SetValue(std::move(deep));
        deep = std::move(outer);
    }
    TRequest nested;
    nested.Add(std::move(deep));
    TSyncCall tooDeep(TEntitySpec("Network core Router r1 Interface eth0"), echo.GetID(), nested);
    tooDeep.Execute();
    EXPECT_NE(tooDeep.GetReply().ToString().find("nested deeper than 96 levels"), std::string::npos)
        << tooDeep.GetReply().ToString();
}

TEST_F(CallLoopTest, AnAsyncCallTakesItsResultsAndCancelsWhenItGoes)
{
    ZEDGetApplication()->RegisterModule(kNetwork, nullptr);  // the simulated network answers
    TAsyncCall call(
        TEntitySpec("Network core Router *"),
        Dictionary().FindClass(std::vector<unsigned int>{1, 2})->FindDirective(std::string("Show"))->GetID());
    int done = 0;
    ASSERT_TRUE(call.Start([&](TAsyncCall& answered) {
        ++done;
        EXPECT_EQ(&answered, &call);
    }));
    EXPECT_TRUE(call.IsPending());
    EXPECT_EQ(call.GetReplyCount(), 0u);
    EXPECT_TRUE(loop.RunUntilIdle(1s));
    EXPECT_EQ(done, 1);
    EXPECT_EQ(call.GetReplyCount(), 2u) << "a reply per router";

    ZEDGetApplication()->RegisterModule(kNetwork, module);
    {
        TAsyncCall gone(TEntitySpec("Network core"), 1);
        ASSERT_TRUE(gone.Start([&](TAsyncCall&) { ++done; }));
    }
    module->release = true;
    loop.ProcessReady();
    EXPECT_EQ(done, 1) << "a call destroyed while pending is cancelled";
    EXPECT_EQ(module->cancelled.size(), 1u);
}

}  // namespace
