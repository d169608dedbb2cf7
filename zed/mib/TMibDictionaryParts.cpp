// SPDX-License-Identifier: BSD-3-Clause
#include "zed/mib/TMibDictionaryParts.h"

#include "zed/dict/ZedDirectiveNames.h"

namespace {

using json = nlohmann::ordered_json;

constexpr const char* kIdentifiers = "Identifiers";
constexpr const char* kStatus = "Status";
constexpr const char* kCounters = "Counters";
constexpr const char* kCharacteristics = "Characteristics";
constexpr const char* kPartitionType = "PartitionChoice";
constexpr const char* kAllPartitions = "All";

struct Common {
    unsigned int code;
    const char* name;
    const char* text;
};
constexpr Common kCommonExceptions[] = {
    {1, "NoSuchEntity", "The entity does not exist"},
    {2, "DirectiveNotSupported", "The entity does not support this directive"},
    {3, "InvalidRequest", "The request is not valid for this directive"},
    {4, "NoAnswer", "No answer came in time"},
    {5, "NotAuthorized", "The agent refused who was asking"},
    {6, "AgentError", "The agent refused the request"},
    {7, "ListIncomplete", "The list is incomplete"},
};

json Argument(unsigned int id, const char* name, const char* type)
{
    return {{"id", id}, {"name", name}, {"type", type}};
}

// Lists are made with json::array: a braced list of one object is the object
// itself to one compiler and a list of it to another.
json Reply(unsigned int code, const char* name, const char* text, json arguments = nullptr)
{
    json reply = {{"code", code}, {"name", name}, {"text", text}};
    if (!arguments.is_null())
        reply["arguments"] = std::move(arguments);
    return reply;
}

json InvalidArgument()
{
    return Reply(90, "InvalidArgument", "An argument of the request is not valid",
                 json::array({Argument(1, "Argument", "SimpleName"), Argument(2, "Reason", "Latin1String")}));
}

json Attributes() { return json::array({Argument(1, "Attributes", "AttributeList")}); }

}  // namespace

json ZedMibAgentDictionary()
{
    json dictionary = {{"format", "zed-dictionary 1"}, {"partitions", json::array()}, {"types", json::array()}};
    json& exceptions = dictionary["commonExceptions"] = json::array();
    for (const Common& common : kCommonExceptions)
        exceptions.push_back(
            Reply(common.code, common.name, common.text, json::array({Argument(1, "Reason", "Latin1String")})));
    json unbound = {{"id", 1}, {"name", "Notification"}, {"snmp", {{"unbound", true}}}};
    unbound["arguments"] =
        json::array({Argument(1, "Notification", "Latin1String"), Argument(2, "Variables", "Latin1String")});
    json agent = {{"code", 1}, {"name", "Agent"}, {"presentation", "SNMP Agent"}, {"snmp", {{"agent", true}}}};
    agent["events"] = json::array({std::move(unbound)});
    dictionary["classes"] = json::array({std::move(agent)});
    return dictionary;
}

std::string ZedMibEnsurePartitions(json& dictionary, unsigned int& nextTypeId)
{
    json& partitions = dictionary["partitions"];
    json* choice = nullptr;
    for (json& type : dictionary["types"])
        if (type["name"] == kPartitionType && type["kind"] == "enumeration")
            choice = &type;
    if (!choice) {
        dictionary["types"].push_back({{"id", nextTypeId++},
                                       {"name", kPartitionType},
                                       {"presentation", "Partition"},
                                       {"kind", "enumeration"},
                                       {"items", json::array({{{"code", 0}, {"text", kAllPartitions}}})}});
        choice = &dictionary["types"].back();
    }
    unsigned int code = 1;
    for (const json& partition : partitions)
        code = std::max(code, partition["code"].get<unsigned int>() + 1);
    for (const char* name : {kIdentifiers, kStatus, kCounters, kCharacteristics}) {
        bool known = false;
        for (const json& partition : partitions)
            known = known || partition["name"] == name;
        if (known)
            continue;
        partitions.push_back({{"code", code}, {"name", name}});
        (*choice)["items"].push_back({{"code", code++}, {"text", name}});
    }
    return kPartitionType;
}

const char* ZedMibPartitionOf(bool index, const std::string& syntax, bool writable)
{
    if (index)
        return kIdentifiers;
    if (syntax == "Counter32" || syntax == "Counter64")
        return kCounters;
    return writable ? kCharacteristics : kStatus;
}

json ZedMibDirectives(const std::string& partitionType, bool writable, bool rowStatus)
{
    json partition = {{"id", 1}, {"name", ZedDirective::kPartition}, {"type", partitionType}, {"serverDefault", true}};
    json directives = json::array();
    directives.push_back({{"id", 1},
                          {"name", ZedDirective::kShow},
                          {"request", json::array({std::move(partition)})},
                          {"responses", json::array({Reply(1, "Success", "Attributes shown", Attributes())})},
                          {"exceptions", json::array({InvalidArgument()})}});
    if (writable) {
        const json notWritable = Reply(91, "NotWritable", "The attribute cannot be changed",
                                       json::array({Argument(1, "Attribute", "AttributeID")}));
        directives.push_back({{"id", 2},
                              {"name", ZedDirective::kSet},
                              {"takesAttributes", true},
                              {"responses", json::array({Reply(1, "Success", "Attributes changed", Attributes())})},
                              {"exceptions", json::array({InvalidArgument(), notWritable})}});
    }
    if (rowStatus) {
        directives.push_back({{"id", 3},
                              {"name", ZedDirective::kCreate},
                              {"takesAttributes", true},
                              {"responses", json::array({Reply(1, "Success", "Row created")})}});
        directives.push_back({{"id", 4},
                              {"name", ZedDirective::kDelete},
                              {"responses", json::array({Reply(1, "Success", "Row deleted")})}});
    }
    return directives;
}
