// SPDX-License-Identifier: BSD-3-Clause
#include "support/ShippedNetwork.h"
#include "zed/TException.h"
#include "zed/call/TCall.h"
#include "zed/sim/TSimInstanceStore.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TEventReport.h"
#include "zed/value/TScalarValues.h"
#include "zed/value/TSetOf.h"
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
            // As an input-output form fills its request: attribute values under their codes.
            const TDictValue* element = directive->TakesAttributes()
                                            ? static_cast<const TDictValue*>(cls->FindAttribute(name))
                                            : directive->FindRequestArgument(name);
            std::string error;
            TValuePtr value;
            if (text == "@default") {
                value = ZEDMakeValue(element->GetType(), element->GetID());
                value->SetDefault();
            } else {
                value = ZEDParseValue(element->GetType(), text, element->GetID(), {&Dictionary(), cls}, &error);
            }
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
        const TDictReply* reply =
            d->FindReply(exception ? ZED_DICT_EXCEPTION : ZED_DICT_RESPONSE, call.GetReply().GetReplyCode());
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
    EXPECT_EQ(everything[17].GetID(), 17u) << "the placeholder is known by its attribute";
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

TEST_F(SimulatedNetworkTest, SetChangesScalarRecordAndSetAttributesAndReportsThroughTheModule)
{
    TSyncCall set = Call("Network core Router r1", "Set",
                         {{"Priority", "9"},
                          {"ManagementAddress", R"({"Host": "r1-mgmt", "Port": 1161, "Transport": "TCP"})"},
                          {"Peers", R"([{"Host": "r9", "Port": 179, "Transport": "TCP"}])"}});
    ASSERT_EQ(set.GetStatus(), ZED_STATUS_RESPONSE) << ReplyValue(set, "Set", "Reason");
    TSyncCall show = Call("Network core Router r1", "Show");
    const auto& shown = static_cast<const TAttributeList&>(show.GetReply().At(0));
    EXPECT_EQ(shown[12].ToString(), "9");
    EXPECT_EQ(shown[5].ToString(), "{ Host = r1-mgmt, Port = 1161, Transport = TCP }");
    EXPECT_EQ(shown[6].ToString(), "{ { Host = r9, Port = 179, Transport = TCP } }");
    EXPECT_EQ(shown[12].GetID(), 12u) << "a value taken out of an attribute carries its code";

    // Events come through the module interface, gathered by the application object.
    const auto events = ZEDGetApplication()->TakeEvents();
    ASSERT_EQ(events.size(), 1u);
    const auto& report = static_cast<const TEventReport&>(events[0].reply.At(0));
    EXPECT_EQ(report.GetEntity().ToString(), "Network core Router r1");
    EXPECT_EQ(report[1].ToString(), "Set");
    EXPECT_THAT(report[2].ToString(), HasSubstr("Priority = 9"));
    EXPECT_TRUE(network->TakeEvents().empty());

    Call("Network core", "Set", {{"Description", "changed"}});
    TSyncCall status = Call("Network core", "Show", {{"Partition", "Status"}});
    EXPECT_EQ(static_cast<const TAttributeList&>(status.GetReply().At(0))[8].GetDatatype(), ZED_DT_EVENTREPORT)
        << "the network keeps its last event";
}

TEST_F(SimulatedNetworkTest, SetRefusesReadOnlyAttributesWrongTypesAndStrangers)
{
    TSyncCall readOnly = Call("Network core Router r1", "Set", {{"State", "Down"}});
    EXPECT_EQ(readOnly.GetStatus(), ZED_STATUS_SPECIALISED_EXCEPTION);
    EXPECT_EQ(ReplyValue(readOnly, "Set", "Attribute"), "State");

    // BootPath is a sequence: a set of the same elements is another type (52, not 53).
    const TDictClass* router = Dictionary().FindClass(TEntitySpec("Network core Router r1").GetEntityClass());
    const TDictAttribute* bootPath = router->FindAttribute(std::string("BootPath"));
    auto elements = std::make_shared<TDictTypeConstructorOf>(
        0, "Paths", "Paths", false, static_cast<const TDictTypeConstructorOf&>(bootPath->GetType()).GetElementType());
    TSyncCall wrongType(TEntitySpec("Network core Router r1"), router->FindDirective(std::string("Set"))->GetID());
    wrongType.GetRequest().Add(std::make_unique<TSetOf>(elements, bootPath->GetID()));
    wrongType.Execute();
    EXPECT_EQ(wrongType.GetStatus(), ZED_STATUS_SPECIALISED_EXCEPTION);
    EXPECT_EQ(ReplyValue(wrongType, "Set", "Argument"), "BootPath");

    // Attribute 1 is an attribute here, never the first argument of anything.
    TSyncCall name(TEntitySpec("Network core Router r1"), router->FindDirective(std::string("Set"))->GetID());
    name.GetRequest().Add(std::make_unique<TLatin1String>("new text", 99));
    name.Execute();
    EXPECT_EQ(ReplyValue(name, "Set", "Reason"), "not an attribute of Router");
    EXPECT_TRUE(ZEDGetApplication()->TakeEvents().empty()) << "a refused Set changes nothing";
}

TEST_F(SimulatedNetworkTest, AValueMarkedDefaultResetsTheAttribute)
{
    ASSERT_EQ(Call("Network core Router r1 Interface eth0", "Set", {{"Threshold", "42"}}).GetStatus(),
              ZED_STATUS_RESPONSE);
    TSyncCall reset =
        Call("Network core Router r1 Interface eth0", "Set", {{"Threshold", "@default"}, {"Duplex", "@default"}});
    ASSERT_EQ(reset.GetStatus(), ZED_STATUS_RESPONSE);
    TSyncCall show = Call("Network core Router r1 Interface eth0", "Show");
    const auto& shown = static_cast<const TAttributeList&>(show.GetReply().At(0));
    EXPECT_EQ(shown[14].ToString(), "5") << "the dictionary's default";
    EXPECT_FALSE(shown.FindAttribute(19)) << "the server's default: no value of its own";
}

TEST_F(SimulatedNetworkTest, CreateAndDeleteChangeTheInstancesAndReportThroughAListener)
{
    std::vector<std::string> heard;
    ZEDGetApplication()->SetEventListener([&](const TCallResult& event) {
        heard.push_back(static_cast<const TEventReport&>(event.reply.At(0))[1].ToString());
        // The network is free again when the listener runs.
        TSyncCall again(event.outEntity, 1);
        again.Execute();
    });
    const std::size_t before = network->GetStore().Count();
    TSyncCall create = Call("Network core Router r1 Interface eth7", "Create", {{"Speed", "100"}});
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
    ZEDGetApplication()->SetEventListener(nullptr);
    EXPECT_EQ(heard, (std::vector<std::string>{"Create", "Delete"}));
    EXPECT_TRUE(ZEDGetApplication()->TakeEvents().empty()) << "a listener takes the reports as they come";
}

TEST_F(SimulatedNetworkTest, AdministrativeLockReportsALinkStateChangeWithAReasonOnlyWhenDown)
{
    Call("Network core Router r1 Interface eth0", "Set", {{"AdminState", "Locked"}});
    Call("Network core Router r1 Interface eth0", "Set", {{"AdminState", "Unlocked"}});
    std::vector<const TEventReport*> links;
    const auto events = ZEDGetApplication()->TakeEvents();
    for (const TCallResult& event : events)
        if (event.reply.GetReplyCode() == 2)
            links.push_back(&static_cast<const TEventReport&>(event.reply.At(0)));
    ASSERT_EQ(links.size(), 2u);
    EXPECT_EQ((*links[0])[1].ToString(), "Down");
    EXPECT_EQ((*links[0])[2].ToString(), "administratively locked");
    EXPECT_EQ((*links[1])[1].ToString(), "Up");
    EXPECT_FALSE((*links[1])[2].IsPresent()) << "the reason is sometimes absent";
}

TEST_F(SimulatedNetworkTest, EchoGivesEveryKindOfArgumentBackOrCountsThem)
{
    TSyncCall echo = Call("Network core Router r1 Interface eth0", "Echo",
                          {{"Confirm", "TRUE"},
                           {"When", "2026-11-22 09:10:00"},
                           {"Place", R"({"Site": "A", "Position": {"Latitude": 1.5, "Longitude": 2}})"},
                           {"Peers", R"([{"Host": "p", "Port": 1, "Transport": "UDP"}])"},
                           {"States", R"(["Locked", "Unlocked"])"},
                           {"Setting", R"({"attribute": "Mtu", "value": 1500})"},
                           {"Watched", "Speed"},
                           {"Gateway", R"({"Host": "gw", "Port": 2})"},
                           {"Target", "Network core Router r2"},
                           {"Tag", "hidden"}});
    ASSERT_EQ(echo.GetStatus(), ZED_STATUS_RESPONSE);
    EXPECT_EQ(echo.GetReply().GetReplyCode(), 1u);
    EXPECT_EQ(ReplyValue(echo, "Echo", "Place"), "{ Site = A, Position = { Latitude = 1.5, Longitude = 2 } }");
    EXPECT_EQ(ReplyValue(echo, "Echo", "States"), "{ Locked, Unlocked }");
    EXPECT_EQ(ReplyValue(echo, "Echo", "Weight"), "1.5") << "a dictionary default comes back too";
    EXPECT_EQ(echo.GetReply()[7].GetDatatype(), ZED_DT_SEQUENCEOF);
    EXPECT_EQ(echo.GetReply()[10].GetDatatype(), ZED_DT_USERDEFINED);

    TSyncCall summary = Call("Network core Router r1 Interface eth0", "Echo",
                             {{"Confirm", "FALSE"}, {"Outcome", "Summary"}, {"Comment", "x"}});
    EXPECT_EQ(summary.GetReply().GetReplyCode(), 2u);
    EXPECT_EQ(ReplyValue(summary, "Echo", "Received"), "3");
    EXPECT_EQ(Call("Network core Router r1 Interface eth0", "Echo").GetStatus(), ZED_STATUS_SPECIALISED_EXCEPTION)
        << "Confirm is required";
}

TEST_F(SimulatedNetworkTest, CheckingAnInstanceFileReportsEveryFaultAndChangesNothing)
{
    const std::size_t before = network->GetStore().Count();
    std::vector<std::string> faults;
    EXPECT_FALSE(network->GetStore().Check(R"({"format": "zed-instances 1", "instances": [
        {"entity": "Network n", "attributes": {"Uptime": "5 days", "Colour": 1, "Name": "n"}},
        {"entity": "Planet p"},
        {"entity": "Network n", "attributes": null}]})",
                                           "i.json", faults));
    EXPECT_THAT(faults, ::testing::ElementsAre(
                            "i.json: $.instances[0].attributes.Colour: not an attribute of Network",
                            ::testing::StartsWith("i.json: $.instances[0].attributes.Uptime: expected a duration"),
                            ::testing::StartsWith("i.json: $.instances[1].entity: unknown class \"Planet\""),
                            "i.json: $.instances[2].attributes: expected an object of attribute names"));
    EXPECT_EQ(network->GetStore().Count(), before);
    faults.clear();
    EXPECT_TRUE(network->GetStore().Check(R"({"format": "zed-instances 1", "instances": []})", "i.json", faults));
    EXPECT_TRUE(faults.empty());
    EXPECT_EQ(network->GetStore().Count(), before);
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
    EXPECT_THAT(
        fault(
            R"({"format": "zed-instances 1", "instances": [{"entity": "Network n", "attributes": {"Uptime": "5 days"}}]})"),
        HasSubstr("$.instances[0].attributes.Uptime: expected a duration"));
    EXPECT_THAT(
        fault(R"({"format": "zed-instances 1", "instances": [{"entity": "Network n"}, {"entity": "Network n"}]})"),
        HasSubstr("declared twice"));
    std::string deep = "true";
    for (int i = 0; i < 16000; ++i)
        deep = R"({"attribute": "Watch", "value": )" + deep + "}";
    const std::string nested = fault(R"({"format": "zed-instances 1", "instances": [{"entity": "Network n"},
        {"entity": "Network n Router r"}, {"entity": "Network n Router r Interface i", "attributes": {"Watch": )"
                                     + deep + "}}]}");
    EXPECT_THAT(nested, HasSubstr("i.json: $.instances[2].attributes.Watch.value.value."));
    EXPECT_THAT(nested, HasSubstr(".value: values nest deeper than 96 levels"));
    EXPECT_LT(nested.size(), 300u) << "the middle of a deep path is counted, not spelt out";
    EXPECT_EQ(network->GetStore().Count(), before) << "a bad file keeps the old instances";
}

}  // namespace
