#include "support/ShippedNetwork.h"
#include "zed/TException.h"
#include "zed/call/TCall.h"
#include "zed/sim/TSimInstanceStore.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TEventReport.h"
#include "zed/value/TScalarValues.h"
#include "zed/value/TValueParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::HasSubstr;

namespace {

class SimulatedNetworkTest : public ::testing::Test {
protected:
    void SetUp() override { network = InstallShippedNetwork(); }

    // Calls a directive by name with ARG=VALUE texts.
    TSyncCall Call(const std::string& entity, const std::string& directiveName,
                   std::vector<std::pair<std::string, std::string>> arguments = {})
    {
        TEntitySpec spec(entity);
        const TDictClass* cls = Dictionary().FindClass(spec.GetEntityClass());
        const TDictDirective* directive = cls ? cls->FindDirective(directiveName) : nullptr;
        TSyncCall call(spec, directive ? directive->GetID() : 77);
        for (const auto& [name, text] : arguments) {
            const TDictArgument* argument = directive->FindRequestArgument(name);
            std::string error;
            TValuePtr value = ZEDParseValue(argument->GetType(), text, argument->GetID(), {&Dictionary(), cls}, &error);
            EXPECT_NE(value, nullptr) << name << ": " << error;
            call.GetRequest().Add(std::move(value));
        }
        call.Execute();
        return call;
    }

    // The current reply's value of a reply argument, by name.
    static std::string ReplyValue(const TCall& call, const std::string& directive, const std::string& argument)
    {
        const TDictClass* cls = Dictionary().FindClass(call.GetOutEntity().GetEntityClass());
        const TDictDirective* d = cls->FindDirective(directive);
        const bool exception = call.GetReply().GetReplyType() != ZED_REPLY_RESPONSE;
        const TDictReply* reply = d->FindReply(exception ? ZED_DICT_EXCEPTION : ZED_DICT_RESPONSE,
                                               call.GetReply().GetReplyCode());
        for (const TDictArgument& a : reply->GetArguments())
            if (a.GetName() == argument)
                return call.GetReply()[a.GetID()].ToString();
        return "(no such argument)";
    }

    std::shared_ptr<TSimulatedNetwork> network;
};

TEST_F(SimulatedNetworkTest, ShowAnswersThePartitionAskedFor)
{
    TSyncCall call = Call("Network core Router r1", "Show", {{"Partition", "Status"}});
    EXPECT_EQ(call.GetStatus(), ZED_STATUS_RESPONSE);
    EXPECT_EQ(call.GetReply().GetReplyType(), ZED_REPLY_RESPONSE);
    EXPECT_EQ(call.GetOutEntity().ToString(), "Network core Router r1");
    EXPECT_GT(call.GetTimeStamp().GetMilliseconds(), 0);
    ASSERT_EQ(call.GetReply().Size(), 1u);
    const TValue& value = call.GetReply().At(0);
    ASSERT_EQ(value.GetDatatype(), ZED_DT_ATTRIBUTELIST);
    const auto& list = static_cast<const TAttributeList&>(value);
    EXPECT_EQ(list.Size(), 6u);
    EXPECT_EQ(list[3].ToString(), "Up");
    EXPECT_FALSE(list[12].IsPresent()) << "Priority is a characteristic";

    TSyncCall all = Call("Network core", "Show");
    const auto& everything = static_cast<const TAttributeList&>(all.GetReply().At(0));
    EXPECT_EQ(everything[17].ToString(), "(access denied)") << "write-only attributes come with a reason";
    EXPECT_EQ(everything[8].GetDatatype(), ZED_DT_MARKER) << "no event has been kept yet";
}

TEST_F(SimulatedNetworkTest, AWildcardAnswersOncePerInstance)
{
    TSyncCall call = Call("Network core Router * Interface *", "Show", {{"Partition", "Identifiers"}});
    ASSERT_EQ(call.GetReplyCount(), 3u);
    std::vector<std::string> answered;
    for (std::size_t i = 0; call.SelectReply(i); ++i)
        answered.push_back(call.GetOutEntity().ToString());
    EXPECT_EQ(answered, (std::vector<std::string>{"Network core Router r1 Interface eth0",
                                                  "Network core Router r1 Interface eth1",
                                                  "Network core Router r2 Interface eth0"}));
    EXPECT_FALSE(call.SelectReply(3));
    EXPECT_EQ(call.GetSelectedReply(), 2u);
}

TEST_F(SimulatedNetworkTest, UnknownEntitiesAndDirectivesAnswerCommonExceptions)
{
    TSyncCall missing = Call("Network core Router r9", "Show");
    EXPECT_EQ(missing.GetStatus(), ZED_STATUS_COMMON_EXCEPTION);
    EXPECT_NE(missing.GetReply().GetReplyType(), ZED_REPLY_RESPONSE);
    // Its text stands on the entity's class with a null instance under directive 55.
    TEntitySpec classOnly;
    classOnly.AddClass(1, "core").AddClassNullInstance(2);
    const TDictClass* cls = Dictionary().FindClass(classOnly.GetEntityClass());
    EXPECT_EQ(cls->FindDirective(ZED_COMMON_EXCEPTION_DIRECTIVE)
                  ->FindReply(ZED_DICT_EXCEPTION, missing.GetReply().GetReplyCode())
                  ->GetReplyText(),
              "The entity does not exist");

    TSyncCall unsupported = Call("Network core Router r1", "NoSuchDirective");
    EXPECT_EQ(unsupported.GetStatus(), ZED_STATUS_COMMON_EXCEPTION);
    EXPECT_EQ(unsupported.GetReply().GetReplyCode(), TSimulatedNetwork::kDirectiveNotSupported);
}

TEST_F(SimulatedNetworkTest, TheActionUsesDefaultsAndAnswersItsExceptions)
{
    TSyncCall ok = Call("Network core Router r1 Interface eth0", "Test", {{"Count", "3"}});
    EXPECT_EQ(ok.GetStatus(), ZED_STATUS_RESPONSE);
    EXPECT_EQ(ReplyValue(ok, "Test", "Sent"), "3");
    EXPECT_EQ(ReplyValue(ok, "Test", "RoundTrip"), "0.5") << "the server's default size is 64";

    TSyncCall big = Call("Network core Router r1 Interface eth0", "Test", {{"Count", "2"}, {"Size", "2000"}});
    EXPECT_EQ(ReplyValue(big, "Test", "Received"), "1");

    TSyncCall tooMany = Call("Network core Router r1 Interface eth0", "Test", {{"Count", "5000"}});
    EXPECT_EQ(tooMany.GetStatus(), ZED_STATUS_SPECIALISED_EXCEPTION);
    EXPECT_EQ(ReplyValue(tooMany, "Test", "MaximumCount"), "1000");

    TSyncCall down = Call("Network core Router r1 Interface eth1", "Test", {{"Count", "1"}});
    EXPECT_EQ(ReplyValue(down, "Test", "Reason"), "the interface is down");
}

TEST_F(SimulatedNetworkTest, WrongArgumentsGiveTheInvalidArgumentException)
{
    // A required argument missing, then one of the wrong type, then one the directive lacks.
    TSyncCall missing = Call("Network core Router r1 Interface eth0", "Test");
    EXPECT_EQ(missing.GetStatus(), ZED_STATUS_SPECIALISED_EXCEPTION);
    EXPECT_EQ(ReplyValue(missing, "Test", "Argument"), "Count");
    EXPECT_EQ(ReplyValue(missing, "Test", "Reason"), "required");

    TSyncCall wrongType(TEntitySpec("Network core Router r1 Interface eth0"), 10);
    wrongType.GetRequest().Add(TLatin1String("three", 1));
    wrongType.Execute();
    EXPECT_EQ(wrongType.GetStatus(), ZED_STATUS_SPECIALISED_EXCEPTION);
    EXPECT_THAT(ReplyValue(wrongType, "Test", "Reason"), HasSubstr("Unsigned16"));

    TSyncCall stranger(TEntitySpec("Network core Router r1 Interface eth0"), 10);
    stranger.GetRequest().Add(TUnsigned16(1, 1));
    stranger.GetRequest().Add(TUnsigned16(1, 42));
    stranger.Execute();
    EXPECT_EQ(ReplyValue(stranger, "Test", "Argument"), "42");

    // A required argument marked "use the default" counts as given.
    TSyncCall marked(TEntitySpec("Network core Router r1 Interface eth0"), 10);
    TUnsigned16 count;
    count.SetID(1);
    count.SetDefault();
    marked.GetRequest().Add(count);
    marked.Execute();
    EXPECT_EQ(marked.GetStatus(), ZED_STATUS_RESPONSE);
    EXPECT_EQ(ReplyValue(marked, "Test", "Sent"), "4") << "the dictionary's local default";
}

TEST_F(SimulatedNetworkTest, SetChecksAccessAndTypesAndReportsAnEvent)
{
    TSyncCall set = Call("Network core Router r1", "Set", {{"Attributes", R"({"Priority": 9})"}});
    EXPECT_EQ(set.GetStatus(), ZED_STATUS_RESPONSE);
    TSyncCall show = Call("Network core Router r1", "Show", {{"Partition", "Characteristics"}});
    EXPECT_EQ(static_cast<const TAttributeList&>(show.GetReply().At(0))[12].ToString(), "9");

    TSyncCall readOnly = Call("Network core Router r1", "Set", {{"Attributes", R"({"State": "Down"})"}});
    EXPECT_EQ(readOnly.GetStatus(), ZED_STATUS_SPECIALISED_EXCEPTION);
    EXPECT_EQ(ReplyValue(readOnly, "Set", "Attribute"), "State");

    const auto events = network->TakeEvents();
    ASSERT_EQ(events.size(), 1u) << "only the successful Set reports";
    const TValue& value = events[0].reply.At(0);
    ASSERT_EQ(value.GetDatatype(), ZED_DT_EVENTREPORT);
    const auto& report = static_cast<const TEventReport&>(value);
    EXPECT_EQ(report.GetEventID(), 1u);
    EXPECT_EQ(report.GetEntity().ToString(), "Network core Router r1");
    EXPECT_EQ(report[1].ToString(), "Set");
    EXPECT_EQ(report[2].ToString(), "{ Priority = 9 }");
    EXPECT_TRUE(network->TakeEvents().empty());

    Call("Network core", "Set", {{"Attributes", R"({"Description": "changed"})"}});
    TSyncCall shown = Call("Network core", "Show", {{"Partition", "Status"}});
    EXPECT_EQ(static_cast<const TAttributeList&>(shown.GetReply().At(0))[8].GetDatatype(), ZED_DT_EVENTREPORT)
        << "the network keeps its last event";
}

TEST_F(SimulatedNetworkTest, CreateAndDeleteChangeTheInstances)
{
    const std::size_t before = network->GetStore().Count();
    TSyncCall create = Call("Network core Router r1 Interface eth7", "Create", {{"Attributes", R"({"Speed": 100})"}});
    EXPECT_EQ(create.GetStatus(), ZED_STATUS_RESPONSE);
    EXPECT_EQ(network->GetStore().Count(), before + 1);
    TSyncCall show = Call("Network core Router r1 Interface eth7", "Show");
    const auto& list = static_cast<const TAttributeList&>(show.GetReply().At(0));
    EXPECT_EQ(list[1].ToString(), "eth7");
    EXPECT_EQ(list[4].ToString(), "100");
    EXPECT_EQ(list[5].ToString(), "1500") << "dictionary defaults fill what was not given";

    EXPECT_EQ(Call("Network core Router r1 Interface eth7", "Create").GetStatus(), ZED_STATUS_SPECIALISED_EXCEPTION);
    EXPECT_EQ(Call("Network core Router r8 Interface eth0", "Create").GetStatus(), ZED_STATUS_COMMON_EXCEPTION);

    EXPECT_EQ(Call("Network core Router r1", "Delete").GetStatus(), ZED_STATUS_RESPONSE);
    EXPECT_EQ(network->GetStore().Count(), before - 3) << "an instance goes with everything below it";
    EXPECT_EQ(Call("Network core Router r1 Interface eth0", "Show").GetStatus(), ZED_STATUS_COMMON_EXCEPTION);
}

TEST_F(SimulatedNetworkTest, CallsWithoutAModuleAndBadInstanceFilesThrow)
{
    TSyncCall call(TEntitySpec("Network core"), 1);
    EXPECT_EQ(call.GetReplyCount(), 0u);
    EXPECT_EQ(call.GetStatus(), ZED_STATUS_RESPONSE) << "before execution the accessors are neutral";
    EXPECT_EQ(call.GetOutEntity().ToString(), "Network core");

    ZEDGetApplication()->SetDefaultModule(nullptr);
    EXPECT_THROW(call.Execute(), TException);
    ZEDGetApplication()->RegisterModule(1, network);
    EXPECT_NO_THROW(call.Execute());
    ZEDGetApplication()->RegisterModule(1, nullptr);

    const auto fault = [&](const std::string& json) {
        try {
            network->ParseInstances(json, "i.json");
        } catch (const TException& e) {
            return std::string(e.what());
        }
        return std::string();
    };
    const std::size_t before = network->GetStore().Count();
    EXPECT_THAT(fault(R"({"format": "zed-instances 1", "instances": [{"entity": "Network core Router r1"}]})"),
                HasSubstr("i.json: $.instances[0].entity: the instance \"core\" above it is not declared"));
    EXPECT_THAT(fault(R"({"format": "zed-instances 1", "instances": [{"entity": "Network n", "attributes": {"Uptime": "5 days"}}]})"),
                HasSubstr("$.instances[0].attributes.Uptime: expected a duration"));
    EXPECT_THAT(fault(R"({"format": "zed-instances 1", "instances": [{"entity": "Network n"}, {"entity": "Network n"}]})"),
                HasSubstr("declared twice"));
    EXPECT_EQ(network->GetStore().Count(), before) << "a bad file keeps the old instances";
}

} // namespace
