// SPDX-License-Identifier: BSD-3-Clause
#include "support/ShippedNetwork.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TEnumeration.h"
#include "zed/value/TRecord.h"
#include "zed/value/TScalarValues.h"
#include "zed/value/TSetOf.h"
#include "zed/value/TTimeValues.h"
#include "zed/value/TUserDefined.h"
#include "zed/value/TValueParser.h"
#include "zed/trace/TTraceProvider.h"
#include "zed/trace/TTraceStream.h"

#include <gtest/gtest.h>

namespace {

class ValueTest : public ::testing::Test {
protected:
    void SetUp() override { network = InstallShippedNetwork(); }

    const TDictType& Type(const char* name) { return *Dictionary().FindType(name); }
    const TDictClass& Class(std::vector<unsigned int> path) { return *Dictionary().FindClass(path); }

    TValuePtr Parse(const char* type, std::string_view text, std::string* error = nullptr)
    {
        return ZEDParseValue(Type(type), text, 7, {&Dictionary(), &Class({1, 2})}, error);
    }

    std::shared_ptr<TSimulatedNetwork> network;
};

TEST_F(ValueTest, PresenceDefaultMarkAndReason)
{
    TInteger32 absent;
    EXPECT_FALSE(absent.IsPresent());
    EXPECT_EQ(absent.ToString(), "");
    absent.SetValue(-3);
    EXPECT_TRUE(absent.IsPresent());

    TUnsigned16 marked;
    marked.SetDefault();
    EXPECT_TRUE(marked.IsDefault());
    EXPECT_FALSE(marked.IsPresent());

    TLatin1String secret("x", 4);
    secret.SetReason(ZED_REASON_ACCESS_DENIED);
    EXPECT_TRUE(secret.IsPresent());
    EXPECT_EQ(secret.ToString(), "(access denied)") << "a reason shows instead of the content";
    EXPECT_EQ(TValue::ReasonText(77), "(reason 77)");

    EXPECT_FALSE(TValue::Absent().IsPresent());
    EXPECT_EQ(TValue::Absent().GetDatatype(), ZED_DT_MARKER);
}

TEST_F(ValueTest, EveryScalarKindReadsItsOwnTextFormBack)
{
    struct Case {
        const char* type;
        const char* text;
        ZED_T_DATATYPE datatype;
    };
    const Case cases[] = {
        {"Boolean", "TRUE", 1},
        {"Latin1String", "a b = c", 3},
        {"SimpleName", "r1", 4},
        {"FullName", "core.example.net", 5},
        {"Transport", "UDP", 10},
        {"Reserved14", "EX-01", 14},
        {"Reserved15", "x", 15},
        {"Reserved16", "y", 16},
        {"Integer16", "-32768", 30},
        {"Integer32", "2147483647", 31},
        {"Unsigned16", "65535", 34},
        {"Unsigned32", "4294967295", 35},
        {"Counter16", "7", 37},
        {"Counter32", "123456789", 38},
        {"OctetString", "SN-1", 44},
        {"AbsTime", "2026-02-28 23:59:59.5", 47},
        {"RelTime", "-3-04:05:06.789", 48},
        {"EntitySpec", "Network core Router \"r 1\"", 55},
        {"EntityClass", "Network Router", 60},
        {"Float", "12.5", 63},
        {"Real", "0.1", 72},
        {"AttributeID", "Priority", 83},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.type);
        std::string error;
        TValuePtr value = Parse(c.type, c.text, &error);
        ASSERT_NE(value, nullptr) << error;
        EXPECT_EQ(value->GetDatatype(), c.datatype);
        EXPECT_EQ(value->GetID(), 7u);
        EXPECT_TRUE(value->IsPresent());
        TValuePtr again = Parse(c.type, value->ToString(), &error);
        ASSERT_NE(again, nullptr) << value->ToString() << ": " << error;
        EXPECT_TRUE(*again == *value) << value->ToString() << " vs " << again->ToString();
    }
    EXPECT_EQ(Parse("AbsTime", "2026-02-28T23:59:59.5Z")->ToString(), "2026-02-28 23:59:59.500");
    EXPECT_EQ(Parse("Boolean", "no")->ToString(), "FALSE");
    EXPECT_EQ(Parse("Transport", "17")->ToString(), "UDP") << "an enumeration also reads its codes";
}

TEST_F(ValueTest, BadTextsAreRefusedWithAReason)
{
    const std::pair<const char*, const char*> bad[] = {
        {"Integer16", "32768"},
        {"Unsigned16", "-1"},
        {"Integer32", "12a"},
        {"Unsigned32", ""},
        {"Real", "1e999"},
        {"Float", "abc"},
        {"Boolean", "maybe"},
        {"Transport", "SCTP"},
        {"AbsTime", "2026-02-30"},
        {"AbsTime", "2026-1-1"},
        {"RelTime", "25:00:00"},
        {"RelTime", "1-2"},
        {"EntitySpec", "Planet x"},
        {"EntitySpec", "Network \"open"},
        {"EntityClass", "Network Bridge"},
        {"AttributeID", "Colour"},
        {"PeerAddress", "{\"Host\": 1}"},
        {"PeerSet", "[1,"},
    };
    for (const auto& [type, text] : bad) {
        std::string error;
        EXPECT_EQ(Parse(type, text, &error), nullptr) << type << " " << text;
        EXPECT_FALSE(error.empty()) << type << " " << text;
    }
}

TEST_F(ValueTest, CompositesFromJsonKeepDictionaryOrderAndCopyDeeply)
{
    std::string error;
    TValuePtr record =
        Parse("Location", R"({"Position": {"Longitude": 2, "Latitude": 1.5}, "Site": "Hall C"})", &error);
    ASSERT_NE(record, nullptr) << error;
    EXPECT_EQ(record->ToString(), "{ Site = Hall C, Position = { Latitude = 1.5, Longitude = 2 } }");
    const auto& location = static_cast<const TRecord&>(*record);
    EXPECT_FALSE(location[2].IsPresent()) << "a member not given is absent";
    EXPECT_EQ(location[1].ToString(), "Hall C");

    TValuePtr peers = Parse("PeerSet", R"([{"Host": "a", "Port": 1, "Transport": "TCP"}, {"Host": "b"}])", &error);
    ASSERT_NE(peers, nullptr) << error;
    const auto& set = static_cast<const TSetOf&>(*peers);
    ASSERT_EQ(set.Size(), 2u);
    EXPECT_EQ(set.At(1).ToString(), "{ Host = b }");

    TValuePtr copy = peers->Clone();
    EXPECT_TRUE(*copy == *peers);
    static_cast<TSetOf&>(*copy).Add(TUnsigned16(3));
    EXPECT_FALSE(*copy == *peers);
    EXPECT_EQ(set.Size(), 2u);

    TValuePtr list = Parse("AttributeList", R"({"Priority": 3, "AdminState": "Locked"})", &error);
    ASSERT_NE(list, nullptr) << error;
    const auto& attributes = static_cast<const TAttributeList&>(*list);
    EXPECT_EQ(attributes.ToString(), "{ AdminState = Locked, Priority = 3 }");
    EXPECT_EQ(attributes[12].ToString(), "3");
    EXPECT_FALSE(attributes[99].IsPresent());

    TValuePtr percent = Parse("Percentage", "63");
    ASSERT_EQ(percent->GetDatatype(), ZED_DT_USERDEFINED);
    const auto& user = static_cast<const TUserDefined&>(*percent);
    EXPECT_EQ(user.GetDefinition()->GetName(), "Percentage");
    EXPECT_EQ(user.GetDefinition()->GetDatatype(), ZED_DT_UNSIGNED16);
    EXPECT_EQ(user.GetValue().GetDatatype(), ZED_DT_UNSIGNED16);
}

TEST_F(ValueTest, EmptyValuesOfEveryTypeCarryTheirKindAndIdentifier)
{
    for (const TDictTypePtr& type : Dictionary().GetTypes()) {
        TValuePtr value = ZEDMakeValue(*type, 9);
        ASSERT_NE(value, nullptr) << type->GetName();
        EXPECT_EQ(value->GetDatatype(), type->GetDatatype()) << type->GetName();
        EXPECT_EQ(value->GetID(), 9u);
    }
    EXPECT_FALSE(ZEDMakeValue(Type("Unsigned16"), 1)->IsPresent());
    EXPECT_TRUE(ZEDMakeValue(Type("PeerAddress"), 1)->IsPresent()) << "an empty record is a value";
}

TEST(TimeText, EdgesOfTheCalendarAndDurations)
{
    EXPECT_EQ(TAbsTime::Format(0), "1970-01-01 00:00:00");
    EXPECT_EQ(TAbsTime::Format(-1), "1969-12-31 23:59:59.999");
    EXPECT_EQ(TAbsTime::Parse("2024-02-29 12:00:00"), 1709208000000);
    EXPECT_FALSE(TAbsTime::Parse("2023-02-29"));
    EXPECT_EQ(TAbsTime::Parse("0000-01-01").value(), -62167219200000);
    EXPECT_EQ(TAbsTime::Format(INT64_MAX), "(time out of range)");
    EXPECT_EQ(TRelTime::Format(90061001), "1-01:01:01.001");
    EXPECT_EQ(TRelTime::Format(-5000), "-00:00:05");
    EXPECT_EQ(TRelTime::Parse("00:00:05.5"), 5500);
    EXPECT_EQ(TRelTime::Format(INT64_MIN).substr(0, 1), "-");
}

TEST(ValueList, FindsByIdentifierBeforeAndAfterIndexingAndReplacesInPlace)
{
    TValueList list;
    for (unsigned int id = 1; id <= 20; ++id) {
        list.Put(TUnsigned32(id * 10, id));
        ASSERT_NE(list.Find(1), nullptr) << "after " << id;
    }
    list.Put(TUnsigned32(5, 3));
    EXPECT_EQ(list.Size(), 20u);
    EXPECT_EQ(list.At(2).ToString(), "5");
    EXPECT_TRUE(list.Remove(3));
    EXPECT_FALSE(list.Remove(3));
    EXPECT_EQ(list.Find(3), nullptr);
    EXPECT_EQ(list[20].ToString(), "200");
    EXPECT_FALSE(list[3].IsPresent());
    TValueList copy = list;
    EXPECT_TRUE(copy == list);
}

TEST_F(ValueTest, EqualityLooksAtKindIdentifierAndMarks)
{
    EXPECT_TRUE(TUnsigned16(3, 1) == TUnsigned16(3, 1));
    EXPECT_FALSE(TUnsigned16(3, 1) == TCounter16(3, 1)) << "same content, other kind";
    EXPECT_FALSE(TUnsigned16(3, 1) == TUnsigned16(3, 2));
    TUnsigned16 marked(3, 1);
    marked.SetDefault();
    EXPECT_FALSE(marked == TUnsigned16(3, 1));
    TEnumeration up(Type("OperState").ShareAs<TDictTypeEnumeration>(), 1);
    EXPECT_EQ(up.ToString(), "Up");
    EXPECT_EQ(TEnumeration(nullptr, 5).ToString(), "5") << "without a definition the code shows";
}

TEST_F(ValueTest, AnAttributesValueIsKnownByTheAttributesCode)
{
    TAttribute attribute(TAttributeID(12, "Priority"), std::make_unique<TUnsigned16>(3, 99), 4);
    EXPECT_EQ(attribute.GetID(), 4u);
    EXPECT_EQ(attribute.GetValue().GetID(), 12u) << "the wrapped value takes the attribute's code";
    attribute.SetValue(TUnsigned16(5, 77));
    EXPECT_EQ(attribute.GetValue().GetID(), 12u);
    attribute.SetAttributeID(TAttributeID(13, "Other"));
    EXPECT_EQ(attribute.GetValue().GetID(), 13u);
    EXPECT_EQ(attribute.ToString(), "Other = 5");

    TAttributeList list;
    list.Add(attribute);
    EXPECT_TRUE(list.Remove(13));
    EXPECT_FALSE(list.Remove(13));
    EXPECT_EQ(list.Size(), 0u);

    std::string error;
    const TDictClass& interface = Class({1, 2, 3});
    auto byName = ZEDParseAttributeID("watch", interface, &error);
    ASSERT_NE(byName, nullptr) << error;
    EXPECT_EQ(byName->GetValue(), 16u);
    auto byCode = ZEDParseAttributeID("16", interface);
    ASSERT_NE(byCode, nullptr);
    EXPECT_TRUE(*byCode == *byName);
    EXPECT_EQ(ZEDParseAttributeID("Colour", interface, &error), nullptr);
    EXPECT_NE(error.find("Colour"), std::string::npos);
    EXPECT_EQ(ZEDParseAttributeID("999", interface), nullptr);
}

TEST_F(ValueTest, CompositesAndUserDefinedValuesKeepTheirDictionaryType)
{
    EXPECT_EQ(Parse("Location", R"({"Site": "x"})")->GetDictType(), &Type("Location"));
    EXPECT_EQ(Parse("PeerSet", "[]")->GetDictType(), &Type("PeerSet"));
    EXPECT_EQ(Parse("OperState", "Up")->GetDictType(), &Type("OperState"));
    EXPECT_EQ(Parse("Percentage", "5")->GetDictType(),
              static_cast<const TDictTypeUserDefined&>(Type("Percentage")).GetBase().get())
        << "the base under the user type's name";
    EXPECT_EQ(Parse("Unsigned16", "5")->GetDictType(), nullptr) << "a plain value needs none";

    TTraceProvider& provider = *ZEDGetApplication()->GetTraceProvider();
    provider.SetMask(1);
    provider.StartCapture();
    TTraceStream(1) << "value " << *Parse("Location", R"({"Site": "x"})") << endl;
    EXPECT_EQ(provider.GetCapture(), "value { Site = x }\n");
    provider.StopCapture();
    provider.SetMask(0);
}

TEST_F(ValueTest, ValuesNestedWithoutEndAreRefusedWithTheirPlaceNotACrash)
{
    // An attribute may hold an attribute of its own class: nothing in the type stops the nesting.
    std::string deep = "1";
    for (int i = 0; i < 16000; ++i)
        deep = R"({"attribute": "Watch", "value": )" + deep + "}";
    std::string error;
    EXPECT_EQ(ZEDParseValue(Type("Attribute"), deep, 1, {&Dictionary(), &Class({1, 2, 3})}, &error), nullptr);
    EXPECT_NE(error.find("values nest deeper than 96 levels"), std::string::npos) << error;
    EXPECT_NE(error.find("$.value.value.value"), std::string::npos) << error;

    std::string fine = R"({"attribute": "LinkUp", "value": true})";
    for (int i = 0; i < 90; ++i)
        fine = R"({"attribute": "Watch", "value": )" + fine + "}";
    EXPECT_NE(ZEDParseValue(Type("Attribute"), fine, 1, {&Dictionary(), &Class({1, 2, 3})}, &error), nullptr) << error;

    std::string arrays(16000, '[');
    arrays += std::string(16000, ']');
    EXPECT_EQ(Parse("PeerSet", arrays, &error), nullptr);
    EXPECT_FALSE(error.empty());
}

}  // namespace
