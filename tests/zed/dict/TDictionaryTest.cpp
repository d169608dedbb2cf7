// SPDX-License-Identifier: BSD-3-Clause
#include "support/ShippedNetwork.h"
#include "zed/TException.h"
#include "zed/dict/TDictionary.h"
#include "zed/dict/TDictIterators.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::HasSubstr;

namespace {

// The smallest valid dictionary, to which each test adds one fault.
std::string Minimal(const std::string& types, const std::string& classBody)
{
    return R"({"format": "zed-dictionary 1", "partitions": [{"code": 1, "name": "Status"}], "types": [)" + types
           + R"(], "classes": [{"code": 1, "name": "Box")" + classBody + "}]}";
}

std::string LoadError(const std::string& json)
{
    try {
        TDictionary::Parse(json, "test.json");
    } catch (const TException& e) {
        return e.what();
    }
    return "";
}

TEST(DictionaryLoad, ShippedDictionaryDescribesTheNetwork)
{
    const TDictionaryPtr dictionary = TDictionary::Load(ShippedFile("dictionary.json"));
    const TDictClass* router = dictionary->FindClass(std::vector<unsigned int>{1, 2});
    ASSERT_NE(router, nullptr);
    EXPECT_EQ(router->GetName(), "Router");
    EXPECT_EQ(router->GetParent()->GetName(), "Network");

    const TDictAttribute* offset = router->FindAttribute(std::string("ClockOffset"));
    ASSERT_NE(offset, nullptr);
    // One rule for names: every lookup ignores letter case.
    EXPECT_EQ(router->FindAttribute(std::string("clockoffset")), offset);
    EXPECT_EQ(ZedFindNamed(router->GetAttributes(), "CLOCKOFFSET"), offset);
    ASSERT_NE(ZedFindNamed(router->GetEvents(), "ConfigurationChanged"), nullptr);
    EXPECT_EQ(ZedFindNamed(router->GetEvents(), "configurationchanged"),
              ZedFindNamed(router->GetEvents(), "ConfigurationChanged"));
    EXPECT_EQ(offset->GetDictObjectType(), ZED_DICT_ATTRIBUTE);
    EXPECT_EQ(offset->GetDatatype(), ZED_DT_INTEGER32);
    EXPECT_EQ(offset->GetAccess(), ZED_ACCESS_READ_WRITE);
    EXPECT_EQ(offset->DefaultAllowed(), ZED_DEFAULT_SERVER);
    EXPECT_EQ(offset->GetDefaultValue(), ZED_NO_DEFAULT_TEXT);
    EXPECT_EQ(offset->GetUnits(), "microseconds");
    EXPECT_EQ(*dictionary->FindPartitionName(offset->GetPartition()), "Characteristics");

    const TDictAttribute* serial = router->FindAttribute(2);
    EXPECT_EQ(serial->GetValueLength(), 16u);
    EXPECT_EQ(serial->GetSQLColumnSize(), 32u);

    // Common exceptions stand on every class under directive 55.
    const TDictDirective* common = router->FindDirective(ZED_COMMON_EXCEPTION_DIRECTIVE);
    ASSERT_NE(common, nullptr);
    EXPECT_EQ(common->FindReply(ZED_DICT_EXCEPTION, 1)->GetReplyText(), "The entity does not exist");

    const TDictDirective* test = dictionary->FindClass(std::vector<unsigned int>{1, 2, 3})->FindDirective(10);
    const TDictArgument* count = test->FindRequestArgument(1);
    EXPECT_TRUE(count->IsRequired());
    EXPECT_EQ(count->DefaultAllowed(), ZED_DEFAULT_DICTIONARY);
    EXPECT_EQ(count->GetDefaultValue(), "4");
    EXPECT_EQ(count->GetDictObjectType(), ZED_DICT_ARGUMENT);
}

TEST(DictionaryLoad, EveryDataTypeOfTheModelIsUsedByTheShippedNetwork)
{
    const TDictionaryPtr dictionary = TDictionary::Load(ShippedFile("dictionary.json"));
    std::set<ZED_T_DATATYPE> used;
    std::function<void(const TDictType&)> walk = [&](const TDictType& type) {
        used.insert(type.GetDatatype());
        if (type.GetDictObjectType() == ZED_DICT_TYPE_RECORD)
            for (const auto& m : static_cast<const TDictTypeRecord&>(type).GetMembers())
                walk(*m.type);
        if (type.GetDictObjectType() == ZED_DICT_TYPE_CONSTRUCTOR)
            walk(*static_cast<const TDictTypeConstructorOf&>(type).GetElementType());
        if (type.GetDictObjectType() == ZED_DICT_TYPE_USERDEFINED)
            walk(*static_cast<const TDictTypeUserDefined&>(type).GetBase());
    };
    std::function<void(const TDictClass&)> visit = [&](const TDictClass& cls) {
        for (const auto& a : cls.GetAttributes())
            walk(a.GetType());
        for (std::size_t i = 0; i < cls.GetChildCount(); ++i)
            visit(cls.GetChild(i));
    };
    visit(dictionary->GetRootClass(0));
    for (ZED_T_DATATYPE dt : {1u,  3u,  4u,  5u,  10u, 13u, 14u, 15u, 16u, 30u, 31u, 34u, 35u, 37u, 38u,
                              44u, 47u, 48u, 52u, 53u, 55u, 60u, 63u, 66u, 72u, 79u, 80u, 82u, 83u})
        EXPECT_TRUE(used.count(dt)) << "no attribute of data type " << dt;
}

TEST(DictionaryLoad, FaultsNameTheFileThePlaceAndTheFault)
{
    EXPECT_THAT(LoadError("{"), HasSubstr("test.json: $: not valid JSON"));
    EXPECT_THAT(LoadError(R"({"format": "other"})"), HasSubstr("test.json: $.format: expected \"zed-dictionary 1\""));
    EXPECT_THAT(LoadError(Minimal("", R"(, "colour": 1)")), HasSubstr("$.classes[0].colour: unknown key"));
    EXPECT_THAT(
        LoadError(Minimal("", R"(, "attributes": [{"id": 1, "name": "a", "type": "Nope", "partition": "Status"}])")),
        HasSubstr("$.classes[0].attributes[0].type: unknown type \"Nope\""));
    EXPECT_THAT(
        LoadError(Minimal("", R"(, "attributes": [{"id": 1, "name": "a", "type": "Boolean", "partition": "Else"}])")),
        HasSubstr("$.classes[0].attributes[0].partition: unknown partition"));
    EXPECT_THAT(
        LoadError(Minimal("", R"(, "attributes": [{"id": 1, "name": "a", "type": "Boolean", "partition": "Status"},
                                                          {"id": 1, "name": "b", "type": "Boolean", "partition": "Status"}])")),
        HasSubstr("$.classes[0].attributes[1].id: a second attribute with code 1"));
    EXPECT_THAT(LoadError(Minimal("", R"(, "directives": [{"id": 55, "name": "X"}])")),
                HasSubstr("$.classes[0].directives[0].id: directive 55 is kept for the common exceptions"));
    EXPECT_THAT(LoadError(Minimal("", R"(, "code": -1)")), HasSubstr("expected a whole number"));
    EXPECT_THAT(LoadError(Minimal(R"({"id": 1, "name": "E", "kind": "enumeration", "items": []})", "")),
                HasSubstr("$.types[0].items: an enumeration needs at least one item"));
    EXPECT_THAT(LoadError(Minimal(R"({"id": 1, "name": "Boolean", "kind": "set", "element": "Real"})", "")),
                HasSubstr("is a built-in type"));
    EXPECT_THAT(
        LoadError(Minimal("", R"(, "directives": [{"id": 1, "name": "Set", "takesAttributes": true,
                                                          "request": [{"id": 1, "name": "a", "type": "Boolean"}]}])")),
        HasSubstr("$.classes[0].directives[0].request: a directive that takes attributes has no request arguments"));
}

TEST(DictionaryCheck, EveryIndependentFaultIsReportedOnceAndNothingIsMade)
{
    // A broken type, two attributes of it, a stranger key in a sibling class and
    // a second fault further on: each reported where it is, the type's once.
    const std::string json = Minimal(R"({"id": 1, "name": "Pair", "kind": "record",
                                        "members": [{"id": 1, "name": "a", "type": "Nope"}]})",
                                     R"(, "attributes": [{"id": 1, "name": "x", "type": "Pair", "partition": "Status"},
                                                         {"id": 2, "name": "y", "type": "Pair", "partition": "Else"},
                                                         {"id": 3, "name": "z", "type": "Pair", "partition": "Status"}]},
                                        {"code": 2, "name": "Other", "colour": 1},
                                        {"code": 3, "name": "Third", "directives": [{"id": 55, "name": "X"}])");
    std::vector<std::string> faults;
    EXPECT_EQ(TDictionary::Check(json, "test.json", faults), nullptr);
    EXPECT_THAT(faults, ::testing::ElementsAre(
                            "test.json: $.types[0].members[0].type: unknown type \"Nope\"",
                            "test.json: $.classes[0].attributes[1].partition: unknown partition \"Else\"",
                            "test.json: $.classes[1].colour: unknown key",
                            "test.json: $.classes[2].directives[0].id: directive 55 is kept for the common exceptions "
                            "(\"commonExceptions\")"));

    // Loading still stops at the first; a good text checks clean and gives the dictionary.
    EXPECT_EQ(LoadError(json), faults.front());
    faults.clear();
    auto good = TDictionary::Check(Minimal("", ""), "test.json", faults);
    EXPECT_TRUE(faults.empty());
    ASSERT_NE(good, nullptr);
    EXPECT_EQ(good->GetRootClassCount(), 1u);

    // A syntax error is one fault; a flood of faults is cut at a hundred.
    faults.clear();
    TDictionary::Check("{", "test.json", faults);
    ASSERT_EQ(faults.size(), 1u);
    EXPECT_THAT(faults[0], HasSubstr("test.json: $: not valid JSON"));
    std::string many;
    for (int i = 0; i < 500; ++i)
        many += (i ? "," : "") + std::string(R"({"code": )") + std::to_string(i + 1) + R"(, "name": ""})";
    faults.clear();
    TDictionary::Check(R"({"format": "zed-dictionary 1", "partitions": [)" + many + R"(], "classes": []})", "t",
                       faults);
    EXPECT_EQ(faults.size(), 100u);
}

TEST(DictionaryLoad, NullIsNotAnAbsentList)
{
    EXPECT_THAT(LoadError(Minimal("", R"(, "attributes": null)")),
                HasSubstr("$.classes[0].attributes: expected an array"));
    EXPECT_THAT(LoadError(R"({"format": "zed-dictionary 1", "partitions": [], "types": null, "classes": []})"),
                HasSubstr("$.types: expected an array"));
}

// Type names follow the one rule of the dictionary's names: letter case aside.
TEST(DictionaryLoad, TypesAreFoundByNameWhateverTheirLetterCase)
{
    const TDictionaryPtr dictionary = TDictionary::Parse(
        Minimal(R"({"id": 1, "name": "Hosts", "kind": "set", "element": "latin1string"})",
                R"(, "attributes": [{"id": 1, "name": "Peers", "type": "HOSTS", "partition": "Status"}])"),
        "test.json");
    ASSERT_NE(dictionary->FindType("hosts"), nullptr);
    EXPECT_EQ(dictionary->FindType("hosts")->GetName(), "Hosts");
    EXPECT_EQ(dictionary->FindType("LATIN1STRING")->GetDatatype(), ZED_DT_LATIN1STRING);
    EXPECT_THAT(LoadError(Minimal(R"({"id": 1, "name": "boolean", "kind": "set", "element": "Real"})", "")),
                HasSubstr("is a built-in type"));
    EXPECT_THAT(LoadError(Minimal(R"({"id": 1, "name": "A", "kind": "set", "element": "Real"},
                                     {"id": 2, "name": "a", "kind": "set", "element": "Real"})",
                                  "")),
                HasSubstr("names ignore case"));
}

TEST(DictionaryLoad, RecursiveAndOverDeepTypesAreRefused)
{
    EXPECT_THAT(
        LoadError(Minimal(R"({"id": 1, "name": "A", "kind": "record", "members": [{"id": 1, "name": "m", "type": "B"}]},
                                     {"id": 2, "name": "B", "kind": "set", "element": "A"})",
                          "")),
        HasSubstr("refers to itself"));
    std::string chain;
    for (int i = 0; i < 40; ++i)
        chain += (i ? "," : "") + std::string(R"({"id": )") + std::to_string(i + 1) + R"(, "name": "T)"
                 + std::to_string(i) + R"(", "kind": "set", "element": ")"
                 + (i == 39 ? "Real" : "T" + std::to_string(i + 1)) + "\"}";
    EXPECT_THAT(LoadError(Minimal(chain, "")), HasSubstr("nest deeper than 32"));
    // The same chain written from the bottom up: each type refers to one already built.
    std::string upward;
    for (int i = 39; i >= 0; --i)
        upward += (i != 39 ? "," : "") + std::string(R"({"id": )") + std::to_string(i + 1) + R"(, "name": "T)"
                  + std::to_string(i) + R"(", "kind": "set", "element": ")"
                  + (i == 39 ? "Real" : "T" + std::to_string(i + 1)) + "\"}";
    EXPECT_THAT(LoadError(Minimal(upward, "")), HasSubstr("nest deeper than 32"));
    std::string deep = "{\"code\": 1, \"name\": \"C\"}";
    for (int i = 0; i < 40; ++i)
        deep = "{\"code\": 1, \"name\": \"C\", \"children\": [" + deep + "]}";
    EXPECT_THAT(LoadError(R"({"format": "zed-dictionary 1", "partitions": [], "classes": [)" + deep + "]}"),
                HasSubstr("classes nest deeper than 32"));
}

TEST(DictionaryLoad, ABadFileLeavesTheApplicationsDictionaryAsItWas)
{
    auto network = InstallShippedNetwork();
    const TDictionary* before = ZEDGetApplication()->GetDictionary().get();
    EXPECT_THROW(TSimulatedNetwork::Install(ShippedFile("instances.json"), ShippedFile("instances.json")), TException);
    EXPECT_EQ(ZEDGetApplication()->GetDictionary().get(), before);
    EXPECT_THROW(TDictionary::Load("/nonexistent/dictionary.json"), TException);
}

TEST(DictionaryIterators, WalkArgumentsAttributesAndTypesInDictionaryOrder)
{
    auto network = InstallShippedNetwork();
    const TEntityClass interface("Network Router Interface");

    std::vector<std::string> names;
    for (TDictArgumentIterator it(interface, 10, ZED_DICT_REQUEST); it.IsValid(); it.Next())
        names.push_back(it.Get().GetName());
    EXPECT_EQ(names, (std::vector<std::string>{"Count", "Size", "Timeout", "Pattern"}));

    names.clear();
    for (TDictArgumentIterator it(interface, 10, ZED_DICT_EXCEPTION, 2); it.IsValid(); it.Next())
        names.push_back(it.Get().GetName());
    EXPECT_EQ(names, std::vector<std::string>{"MaximumCount"});

    names.clear();
    for (TDictArgumentIterator it(interface, 1, ZED_DICT_EVENT); it.IsValid(); it.Next())
        names.push_back(it.Get().GetName());
    EXPECT_EQ(names, (std::vector<std::string>{"Directive", "Attributes"}));

    names.clear();
    for (TDictAttributeIterator it(interface, 3); it.IsValid(); it.Next())
        names.push_back(it.Get().GetName());
    EXPECT_EQ(names, (std::vector<std::string>{"InOctets", "OutOctets", "Errors"}));
    std::size_t all = 0;
    for (TDictAttributeIterator it(interface); it.IsValid(); it.Next())
        ++all;
    EXPECT_EQ(all, 19u);

    EXPECT_FALSE(TDictArgumentIterator(interface, 99, ZED_DICT_REQUEST).IsValid());
    EXPECT_THROW(TDictAttributeIterator(TEntityClass(std::vector<unsigned int>{7})), TException);

    std::vector<std::string> items;
    for (TDictTypeIterator it(*Dictionary().FindType("OperState")); it.IsValid(); it.Next())
        items.push_back(std::to_string(it.GetCode()) + "=" + it.GetText());
    EXPECT_EQ(items, (std::vector<std::string>{"0=Down", "1=Up", "2=Testing"}));
    EXPECT_FALSE(TDictTypeIterator(*Dictionary().FindType("Real")).IsValid());
}

TEST(DictionaryTypes, ClonesKeepTheirMostDerivedClass)
{
    auto network = InstallShippedNetwork();
    for (const char* name : {"OperState", "PeerAddress", "PeerSet", "Percentage", "Real"}) {
        const TDictType& type = *Dictionary().FindType(name);
        std::unique_ptr<TDictType> copy = type.Clone();
        const TDictType& copied = *copy;
        EXPECT_EQ(typeid(copied), typeid(type)) << name;
        EXPECT_EQ(copy->GetDictObjectType(), type.GetDictObjectType());
        EXPECT_EQ(copy->ToString(), type.ToString());
    }
    EXPECT_EQ(Dictionary().FindType("PeerSet")->ToString(), "SET OF PeerAddress");
}

}  // namespace
