// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELTrace.h"
#include "kel/frame/KELTraceProvider.h"
#include "support/TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

using ::testing::ElementsAre;
using ::testing::MatchesRegex;

namespace {

constexpr unsigned int kAll = KEL_TRACE_MODULE | KEL_TRACE_PBLM | KEL_TRACE_EXCP | KEL_TRACE_INFO | KEL_TRACE_FUNC;

int g_evaluations = 0;
int Counted() { return ++g_evaluations; }

struct Traced {
    void Site(unsigned int kind) { KEL_TRACE(kind, "KELTest", this) << "message " << 42; }
};

TEST(KELTraceSite, WritesModuleKindSourceLineObjectAndMessage)
{
    TraceCapture capture(kAll);
    Traced object;
    object.Site(KEL_TRACE_PBLM);
    object.Site(KEL_TRACE_EXCP);
    object.Site(KEL_TRACE_INFO);
    object.Site(KEL_TRACE_FUNC);
    const auto lines = capture.Lines();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_THAT(lines[0], MatchesRegex("KEL PBLM: KELTest:[0-9]+ this=0x[0-9a-f]+ message 42"));
    EXPECT_THAT(lines[1], MatchesRegex("KEL EXCP: KELTest:[0-9]+ this=0x[0-9a-f]+ message 42"));
    EXPECT_THAT(lines[2], MatchesRegex("KEL INFO: KELTest:[0-9]+ this=0x[0-9a-f]+ message 42"));
    EXPECT_THAT(lines[3], MatchesRegex("KEL FUNC: KELTest:[0-9]+ this=0x[0-9a-f]+ message 42"));
}

TEST(KELTraceSite, NeedsBothTheModuleBitAndTheKindBit)
{
    Traced object;
    {
        TraceCapture capture(KEL_TRACE_PBLM | KEL_TRACE_INFO);  // no module bit
        object.Site(KEL_TRACE_PBLM);
        EXPECT_EQ(capture.Text(), "");
    }
    {
        TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_INFO);  // no problem bit
        object.Site(KEL_TRACE_PBLM);
        object.Site(KEL_TRACE_INFO);
        EXPECT_EQ(capture.Lines().size(), 1u);
    }
}

TEST(KELTraceSite, ADisabledSiteEvaluatesNothing)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_INFO);
    g_evaluations = 0;
    KEL_TRACE(KEL_TRACE_PBLM, "KELTest", nullptr) << Counted();
    EXPECT_EQ(g_evaluations, 0);
    KEL_TRACE(KEL_TRACE_INFO, "KELTest", nullptr) << Counted();
    EXPECT_EQ(g_evaluations, 1);
    EXPECT_THAT(capture.Lines(), ElementsAre("KEL INFO: KELTest:" + std::to_string(__LINE__ - 2) + " this=0x0 1"));
}

TEST(KELTraceSite, IsOneStatementInsideIfElse)
{
    TraceCapture capture(kAll);
    bool other = false;
    if (capture.Text().empty())
        KEL_TRACE(KEL_TRACE_INFO, "KELTest", nullptr) << "then";
    else
        other = true;
    EXPECT_FALSE(other);
    EXPECT_EQ(capture.Lines().size(), 1u);
}

TEST(KELTraceMask, IsReadOnceAndLaterChangesAreNotSeen)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_INFO);
    Traced object;
    object.Site(KEL_TRACE_INFO);
    // The provider would now take problem lines, but the library keeps the mask it read.
    TraceCapture::Provider()->SetMask(kAll);
    object.Site(KEL_TRACE_PBLM);
    EXPECT_FALSE(KELTraceMethEntrance::Tracing(KEL_TRACE_PBLM));
    TTraceStream(KEL_TRACE_MODULE | KEL_TRACE_PBLM) << "a plain stream sees the new mask" << endl;
    const auto lines = capture.Lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].substr(0, 9), "KEL INFO:");
    EXPECT_EQ(lines[1], "a plain stream sees the new mask");
}

TEST(KELTraceMask, ALaterDisablingDoesNotSilenceTheLibrary)
{
    TraceCapture capture(kAll);
    Traced object;
    object.Site(KEL_TRACE_INFO);
    TraceCapture::Provider()->SetMask(0);
    // What Tracing answers and what is written agree: both follow the mask read first.
    EXPECT_TRUE(KELTraceMethEntrance::Tracing(KEL_TRACE_PBLM));
    object.Site(KEL_TRACE_PBLM);
    {
        KELTraceMethEntrance scope("IForm", KEL_TRACE_MODULE, &object, "Create");
        scope.Leave();
    }
    TTraceStream(KEL_TRACE_MODULE | KEL_TRACE_PBLM) << "a plain stream follows the provider" << endl;
    const auto lines = capture.Lines();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[1].substr(0, 9), "KEL PBLM:");
    EXPECT_EQ(lines[2].substr(0, 21), "IForm FUNC: Entering ");
    EXPECT_EQ(lines[3].substr(0, 21), "IForm FUNC: Leaving  ");
}

TEST(KELTraceMask, TracingAsksForAnyOfTheBits)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_INFO);
    EXPECT_TRUE(KELTraceMethEntrance::Tracing(KEL_TRACE_INFO | KEL_TRACE_PBLM));
    EXPECT_TRUE(KELTraceMethEntrance::Tracing(KEL_TRACE_MODULE));
    EXPECT_FALSE(KELTraceMethEntrance::Tracing(KEL_TRACE_PBLM | KEL_TRACE_FUNC));
    EXPECT_TRUE(KELTraceMethEntrance::IsOn(KEL_TRACE_MODULE | KEL_TRACE_INFO));
    EXPECT_FALSE(KELTraceMethEntrance::IsOn(KEL_TRACE_MODULE | KEL_TRACE_PBLM));
}

TEST(KELTraceMethEntrance, EnteringAndLeavingWithAndWithoutObject)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_FUNC);
    int object = 0;
    {
        KELTraceMethEntrance trace("IForm", KEL_TRACE_MODULE, &object, "Create");
        trace.Leave();
    }
    {
        KELTraceMethEntrance trace("KELModule", KEL_TRACE_MODULE, "Start");
        trace.Leave();
    }
    const std::string at = [&] {
        std::ostringstream o;
        o << "0x" << std::hex << reinterpret_cast<std::uintptr_t>(&object);
        return o.str();
    }();
    EXPECT_THAT(capture.Lines(),
                ElementsAre("IForm FUNC: Entering " + at + "->Create", "IForm FUNC: Leaving  " + at + "->Create",
                            "KELModule FUNC: Entering Start", "KELModule FUNC: Leaving  Start"));
}

TEST(KELTraceMethEntrance, AnExceptionPassingThroughGivesOneAbnormalLine)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_FUNC);
    auto thrower = [] {
        KELTraceMethEntrance trace("KELModule", KEL_TRACE_MODULE, "Fail");
        throw std::runtime_error("boom");
        trace.Leave();
    };
    EXPECT_THROW(thrower(), std::runtime_error);
    EXPECT_THAT(capture.Lines(),
                ElementsAre("KELModule FUNC: Entering Fail", "KELModule FUNC: LEAVING ABNORMALLY Fail"));
}

TEST(KELTraceMethEntrance, WritesNothingWithoutBothModuleAndFunctionBits)
{
    for (unsigned int mask : {KEL_TRACE_FUNC, KEL_TRACE_MODULE | KEL_TRACE_PBLM, 0x800u | KEL_TRACE_FUNC}) {
        TraceCapture capture(mask);
        {
            KELTraceMethEntrance left("KELModule", KEL_TRACE_MODULE, "Left");
            left.Leave();
            KELTraceMethEntrance abandoned("KELModule", KEL_TRACE_MODULE, "Abandoned");
        }
        EXPECT_EQ(capture.Text(), "") << mask;
    }
}

TEST(KELTraceMethEntrance, EnterIntoAGivenStreamWithTheModuleOnlyConstructor)
{
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_FUNC);
    {
        KELTraceMethEntrance trace(KEL_TRACE_MODULE);
        EXPECT_EQ(capture.Text(), "");
        KELTraceStream stream(KEL_TRACE_MODULE, KEL_TRACE_FUNC);
        trace.Enter(stream, "ICustom", "Run");
        stream << " (by hand)" << endl;
        trace.Leave();
    }
    EXPECT_THAT(capture.Lines(), ElementsAre("ICustom FUNC: Entering Run (by hand)", "ICustom FUNC: Leaving  Run"));
}

TEST(KELTraceProvider, SendToDevEnvAccumulatesModulesAndHandsThemOn)
{
    KELTraceProvider::SendToDevEnvTraceOfModule(KEL_TRACE_MODULE);
    KELTraceProvider::SendToDevEnvTraceOfModule(0x800);
    EXPECT_EQ(KELTraceProvider::GetSendToDevEnvMask(), KEL_TRACE_MODULE | 0x800u);
    EXPECT_EQ(TraceCapture::Provider()->GetDevEnvMask(), KEL_TRACE_MODULE | 0x800u);
    TraceCapture::Provider()->SetDevEnvMask(0);
}

TEST(KELTraceProvider, CanBeInstalledAsTheApplicationsProvider)
{
    auto provider = std::make_unique<KELTraceProvider>();
    provider->SetMask(KEL_TRACE_MODULE | KEL_TRACE_INFO);
    provider->StartCapture();
    TTraceProvider* installed = provider.get();
    ZEDGetApplication()->SetTraceProvider(std::move(provider));
    KELTraceMethEntrance::ForgetMaskForTesting();
    KEL_TRACE(KEL_TRACE_INFO, "KELTest", nullptr) << "through the host's provider";
    EXPECT_NE(installed->GetCapture().find("through the host's provider"), std::string::npos);
    ZEDGetApplication()->SetTraceProvider(std::make_unique<TTraceProvider>());
    KELTraceMethEntrance::ForgetMaskForTesting();
}

}  // namespace
