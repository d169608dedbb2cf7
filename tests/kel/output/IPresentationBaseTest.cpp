// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/IApplication.h"
#include "kel/model/IElementInfo.h"
#include "kel/output/IPresentationBase.h"
#include "kel/model/IPresentationContainer.h"
#include "kel/frame/KELTrace.h"
#include "support/ShippedNetwork.h"
#include "support/TraceCapture.h"

#include <gtest/gtest.h>

namespace {

// The smallest presentation: it only fills element infos.
class InfoFiller : public IPresentationBase {
public:
    IPresentationContainer* CreateContainer() override { return nullptr; }
    std::unique_ptr<IPresentationElement> CreateElement(IElementInfo&) override { return nullptr; }
    using IPresentationBase::InitArgElementInfo;
    using IPresentationBase::InitAttrElementInfo;
};

class PresentationBaseTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        network = InstallShippedNetwork();
        ASSERT_NE(InitializeKEL("presentation test"), nullptr);
    }
    void TearDown() override { DestroyKEL(); }
    const TDictClass& Class(std::vector<unsigned int> path) { return *Dictionary().FindClass(path); }

    std::shared_ptr<TSimulatedNetwork> network;
    InfoFiller filler;
};

TEST_F(PresentationBaseTest, AttributesGiveAttrIdentifiersDefaultsAndSizes)
{
    const TDictClass& router = Class({1, 2});
    IElementInfo info;
    filler.InitAttrElementInfo(*router.FindAttribute(2), info);
    EXPECT_EQ(info.GetCompleteID(), "Attr:2");
    EXPECT_EQ(info.GetMaxSize(), 16u) << "value length 16 is below the SQL column size 32";
    EXPECT_TRUE(info.HasDictType());
    EXPECT_EQ(info.GetRequired(), 0);

    IElementInfo offset;
    filler.InitAttrElementInfo(*router.FindAttribute(std::string("ClockOffset")), offset);
    EXPECT_EQ(offset.DefaultAllowed(), ZED_DEFAULT_SERVER);
    EXPECT_EQ(offset.GetDefault(), "<server default>");
    EXPECT_EQ(offset.GetUnits(), "microseconds");
    EXPECT_EQ(offset.GetAccess(), ZED_ACCESS_READ_WRITE);

    // No default in the dictionary: its "(no default)" text turns the policy off.
    IElementInfo none;
    none.SetDefault("kept");
    filler.InitAttrElementInfo(*router.FindAttribute(2), none);
    EXPECT_EQ(none.DefaultAllowed(), ZED_DEFAULT_NONE);
    EXPECT_EQ(none.GetDefault(), "kept");

    const TDictClass& interface = Class({1, 2, 3});
    IElementInfo secret;
    filler.InitAttrElementInfo(*interface.FindAttribute(std::string("SharedSecret")), secret);
    EXPECT_EQ(secret.GetDT(), 999u) << "a name holding SECRET is shown by no field";
    ASSERT_NE(secret.GetDictType(), nullptr);
    EXPECT_EQ(secret.GetDictType()->GetDatatype(), ZED_DT_LATIN1STRING);
}

// "KEL :" and the text right behind it, for the composite kinds only.
TEST_F(PresentationBaseTest, CompositeTypesAreTracedWithTheirTypesOwnText)
{
    const TDictClass& router = Class({1, 2});
    const TDictAttribute* state = router.FindAttribute(std::string("State"));
    const TDictDirective& echo = *Class({1, 2, 3}).FindDirective(11);
    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    IElementInfo info;
    filler.InitAttrElementInfo(*state, info);
    filler.InitArgElementInfo(*echo.FindRequestArgument(5), info);
    filler.InitArgElementInfo(*echo.FindRequestArgument(3), info);
    const std::vector<std::string> lines = capture.Lines();
    ASSERT_EQ(lines.size(), 2u) << "a float is no composite";
    EXPECT_NE(lines[0].find("this="), std::string::npos);
    EXPECT_NE(lines[0].find(" KEL :IPresentationBase::InitAttrElementInfo : DictType for this value is : "
                            + state->GetType().ToString()),
              std::string::npos)
        << lines[0];
    EXPECT_NE(lines[1].find(" KEL :IPresentationBase::InitArgElementInfo : DictType for this value is : "),
              std::string::npos)
        << lines[1];
}

TEST_F(PresentationBaseTest, ArgumentsBuildOnThePrefixAndCarryTheirRequiredFlag)
{
    const TDictDirective& test = *Class({1, 2, 3}).FindDirective(10);
    IElementInfo info;
    info.SetPrefix("Dir:5.Resp:2");
    filler.InitArgElementInfo(*test.FindRequestArgument(1), info);
    EXPECT_EQ(info.GetCompleteID(), "Dir:5.Resp:2.Arg:1");
    EXPECT_EQ(info.GetRequired(), 1);
    EXPECT_EQ(info.GetAccess(), 0u);
    EXPECT_EQ(info.DefaultAllowed(), ZED_DEFAULT_DICTIONARY);
    EXPECT_EQ(info.GetDefault(), "4");
    EXPECT_EQ(info.GetDictValue(), nullptr) << "only the reserved kinds keep their dictionary object";
    filler.Dump();  // no container yet: nothing to do
}

}  // namespace
