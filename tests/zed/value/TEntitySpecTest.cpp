// SPDX-License-Identifier: BSD-3-Clause
#include "support/ShippedNetwork.h"
#include "zed/TException.h"
#include "zed/value/TEntitySpec.h"

#include <gtest/gtest.h>

namespace {

class EntitySpecTest : public ::testing::Test {
protected:
    void SetUp() override { network = InstallShippedNetwork(); }
    std::shared_ptr<TSimulatedNetwork> network;
};

TEST_F(EntitySpecTest, TextFormRoundTripsAndQuotesOnlyWhenNeeded)
{
    TEntitySpec spec;
    spec.AddClass(1, "core").AddClass(2, "Interface").AddClass(3, "eth 0");
    const std::string text = spec.ToString();
    EXPECT_EQ(text, R"(Network core Router "Interface" Interface "eth 0")")
        << "an instance named like a child class is quoted, so it does not read as the class";
    EXPECT_TRUE(TEntitySpec(text) == spec);

    TEntitySpec odd;
    odd.AddClass(1, "").AddClass(2, "a\"b\\c").AddClassWildcard(3);
    EXPECT_EQ(odd.ToString(), R"(Network "" Router "a\"b\\c" Interface *)");
    EXPECT_TRUE(TEntitySpec(odd.ToString()) == odd);
    EXPECT_TRUE(odd.HasWildcard());

    TEntitySpec star;
    star.AddClass(1, "*").AddClass(2, "#5");
    EXPECT_EQ(star.ToString(), R"(Network "*" Router "#5")");
    EXPECT_FALSE(TEntitySpec(star.ToString()).HasWildcard());
}

TEST_F(EntitySpecTest, ClassNamesIgnoreCaseAndUnknownCodesUseTheHashForm)
{
    TEntitySpec spec("network core ROUTER r1");
    EXPECT_EQ(spec.GetDepth(), 2u);
    EXPECT_EQ(spec.GetCode(1), 2u);
    EXPECT_EQ(spec.ToString(), "Network core Router r1");

    TEntitySpec unknown;
    unknown.AddClass(1, "core").AddClass(9, "x");
    EXPECT_EQ(unknown.ToString(), "Network core #9 x");
    EXPECT_TRUE(TEntitySpec(unknown.ToString()) == unknown);
    bool ok = true;
    unknown.ToStringSynonym(ok);
    EXPECT_FALSE(ok);
}

TEST_F(EntitySpecTest, NullInstancesEmptyTextAndClasses)
{
    TEntitySpec common;
    common.AddClass(1, "core").AddClassNullInstance(2);
    EXPECT_EQ(common.ToString(), "Network core Router");
    EXPECT_TRUE(TEntitySpec("Network core Router") == common);
    EXPECT_TRUE(TEntitySpec("Network Router r1").GetComponent(0).kind == TEntitySpec::Instance::Null);

    TEntitySpec empty("");
    EXPECT_EQ(empty.GetDepth(), 0u);
    EXPECT_EQ(empty.ToString(), "");

    const TEntityClass cls = TEntitySpec("Network core Router r1 Interface eth0").GetEntityClass();
    EXPECT_EQ(cls.GetCodes(), (std::vector<unsigned int>{1, 2, 3}));
    EXPECT_EQ(cls.ToString(), "Network Router Interface");
    EXPECT_TRUE(TEntityClass(cls.ToString()) == cls);
}

TEST_F(EntitySpecTest, SynonymFormPutsInstancesInBackquotes)
{
    bool ok = false;
    TEntitySpec spec("Network core Router r1");
    EXPECT_EQ(spec.ToStringSynonym(ok), "Network `core` Router `r1`");
    EXPECT_TRUE(ok);
    EXPECT_TRUE(TEntitySpec("Network `core` Router `r1`") == spec) << "the synonym form reads back too";
}

TEST_F(EntitySpecTest, BadTextsThrowWithTheReason)
{
    for (const char* bad :
         {"Planet x", "Network core Bridge b", "\"core\"", "Network \"open", "Network \"a\"b", "Network co\"re"}) {
        EXPECT_THROW(TEntitySpec{bad}, TException) << bad;
        std::string error;
        EXPECT_FALSE(TEntitySpec::Parse(bad, &Dictionary(), &error)) << bad;
        EXPECT_FALSE(error.empty());
    }
    EXPECT_FALSE(TEntitySpec::Parse("Network core", nullptr)) << "names need a dictionary";
    EXPECT_TRUE(TEntitySpec::Parse("#1 core #2 r1", nullptr)) << "codes do not";
}

}  // namespace
