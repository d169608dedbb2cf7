// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpIndex.h"
#include "zed/snmp/TSnmpValue.h"
#include "zed/dict/TDictionary.h"
#include "zed/value/TEnumeration.h"
#include "zed/value/TScalarValues.h"
#include "zed/value/TTimeValues.h"

#include <gtest/gtest.h>

namespace {

using Syntax = ZedSnmpSyntax;

TSnmpIndex Index(std::vector<TSnmpIndex::Part> parts) { return TSnmpIndex(std::move(parts)); }

// Name -> index -> name: both ways agree, and the index is the one expected.
void RoundTrip(const TSnmpIndex& index, const std::string& name, const ZedOid& expected)
{
    std::string why;
    const auto oid = index.Encode(name, &why);
    ASSERT_TRUE(oid) << name << ": " << why;
    EXPECT_EQ(*oid, expected) << name;
    const auto parts = index.Decode(*oid);
    ASSERT_TRUE(parts) << name;
    EXPECT_EQ(TSnmpIndex::Join(*parts), name);
}

}  // namespace

TEST(SnmpIndex, NamesAndIndexesOfEveryKindOfPartGoBothWays)
{
    RoundTrip(Index({{Syntax::Integer, false}}), "7", {7});
    RoundTrip(Index({{Syntax::Integer, false}}), "4294967295", {4294967295u});
    RoundTrip(Index({{Syntax::DisplayString, false}}), "eth0", {4, 'e', 't', 'h', '0'});
    RoundTrip(Index({{Syntax::DisplayString, true}}), "kel", {'k', 'e', 'l'});  // IMPLIED: no length
    RoundTrip(Index({{Syntax::IpAddress, false}}), "10.0.0.1", {10, 0, 0, 1});
    RoundTrip(Index({{Syntax::ObjectId, false}}), "1.3.6", {3, 1, 3, 6});
    // Several parts, a "/" inside a string kept apart from the separator.
    RoundTrip(Index({{Syntax::IpAddress, false}, {Syntax::IpAddress, false}, {Syntax::Integer, false}}),
              "10.0.0.0/255.0.0.0/3", {10, 0, 0, 0, 255, 0, 0, 0, 3});
    RoundTrip(Index({{Syntax::DisplayString, false}, {Syntax::Integer, false}}), "a\\/b/2", {3, 'a', '/', 'b', 2});
    RoundTrip(Index({{Syntax::DisplayString, false}}), "", {0});
}

TEST(SnmpIndex, WhatIsNotAnIndexIsRefusedWithItsReason)
{
    std::string why;
    EXPECT_FALSE(Index({{Syntax::Integer, false}}).Encode("eth0", &why));
    EXPECT_EQ(why, "\"eth0\" is not a whole number from 0 to 4294967295");
    EXPECT_FALSE(Index({{Syntax::Integer, false}}).Encode("1/2", &why));
    EXPECT_EQ(why, "\"1/2\" has 2 index parts, the table 1");
    EXPECT_FALSE(Index({{Syntax::IpAddress, false}}).Encode("10.0.0.256", &why));
    EXPECT_FALSE(Index({{Syntax::IpAddress, false}}).Encode("10.0.0", &why));
    EXPECT_FALSE(Index({{Syntax::DisplayString, false}}).Encode("x\\", &why));
    EXPECT_FALSE(Index({{Syntax::DisplayString, false}}).Encode(std::string(200, 'x'), &why));
    EXPECT_EQ(why, "the index of \"" + std::string(200, 'x') + "\" is longer than an OID may be");

    // Suffixes that hold more, less or other than one index.
    const TSnmpIndex text = Index({{Syntax::DisplayString, false}});
    EXPECT_FALSE(text.Decode(ZedOid{3, 'a', 'b'}));
    EXPECT_FALSE(text.Decode(ZedOid{1, 'a', 'b'}));
    EXPECT_FALSE(text.Decode(ZedOid{1, 300}));
    EXPECT_FALSE(Index({{Syntax::IpAddress, false}}).Decode(ZedOid{10, 0, 0, 999}));
    EXPECT_FALSE(Index({{Syntax::Integer, false}}).Decode(ZedOid{}));
}

TEST(SnmpValue, DataBecomeValuesOfTheAttributesTypesAndBack)
{
    const TDictionaryPtr dictionary = TDictionary::Load(std::string(KEL_SOURCE_DIR) + "/data/snmp/dictionary.json");
    const TDictClass& interface = *dictionary->GetRootClass(0).FindChild("Interface");
    const auto& admin = *interface.FindAttribute(std::string("AdminStatus"));
    const auto& lastChange = *interface.FindAttribute(std::string("LastChange"));
    const auto& address = *interface.FindAttribute(std::string("PhysAddress"));

    TSnmpDatum datum;
    datum.kind = TSnmpDatum::Kind::Integer;
    datum.integer = 2;
    TValuePtr value = ZedSnmpToValue(datum, admin.GetType(), Syntax::Integer, admin.GetID());
    ASSERT_TRUE(value);
    EXPECT_EQ(value->ToString(), "down");
    datum.integer = 42;  // not an item: shown by its number, still sent back as such
    value = ZedSnmpToValue(datum, admin.GetType(), Syntax::Integer, admin.GetID());
    EXPECT_EQ(static_cast<const TEnumeration&>(*value).GetCode(), 42);
    EXPECT_EQ(ZedSnmpFromValue(*value, Syntax::Integer)->integer, 42);

    datum = TSnmpDatum{};
    datum.kind = TSnmpDatum::Kind::TimeTicks;
    datum.number = 12345;  // hundredths
    value = ZedSnmpToValue(datum, lastChange.GetType(), Syntax::TimeTicks, lastChange.GetID());
    EXPECT_EQ(static_cast<const TRelTime&>(*value).GetMilliseconds(), 123450);
    EXPECT_EQ(ZedSnmpFromValue(*value, Syntax::TimeTicks)->number, 12345u);

    datum = TSnmpDatum{};
    datum.kind = TSnmpDatum::Kind::Octets;
    datum.octets = std::string("\x00\x1a\x2b", 3);
    value = ZedSnmpToValue(datum, address.GetType(), Syntax::OctetString, address.GetID());
    EXPECT_EQ(value->ToString(), "00:1a:2b");
    EXPECT_EQ(ZedSnmpFromValue(*value, Syntax::OctetString)->octets, datum.octets);
    EXPECT_EQ(ZedSnmpOctetsText("Hall C", Syntax::OctetString), "Hall C");
    // Octets past ASCII are no text one could read; an address is never text.
    EXPECT_EQ(ZedSnmpOctetsText("\xe9t\xe9", Syntax::OctetString), "e9:74:e9");
    EXPECT_EQ(address.GetSnmp()->syntax, Syntax::HexOctets);
    EXPECT_EQ(ZedSnmpOctetsText("abcdef", Syntax::HexOctets), "61:62:63:64:65:66");
    EXPECT_EQ(*ZedSnmpTextOctets("0a", Syntax::HexOctets), "\n");
    EXPECT_FALSE(ZedSnmpTextOctets("Hall C", Syntax::HexOctets));

    // The kinds that travel as text in the model.
    EXPECT_EQ(ZedSnmpOctetsText(std::string("\x90", 1), Syntax::Bits), "0 3");
    EXPECT_EQ(*ZedSnmpTextOctets("0 3", Syntax::Bits), std::string("\x90", 1));
    EXPECT_EQ(ZedSnmpFromValue(TLatin1String("1.3.6.1"), Syntax::ObjectId)->oid, (ZedOid{1, 3, 6, 1}));
    // An OID the dictionary knows shows its name after its numbers, and goes back as the numbers.
    datum = TSnmpDatum{};
    datum.kind = TSnmpDatum::Kind::ObjectId;
    datum.oid = {1, 3, 6, 1, 6, 3, 1, 1, 5, 3};
    const auto names = [](const ZedOid& oid) { return oid.size() == 10 ? std::string("linkDown") : std::string(); };
    const TDictAttribute& description = *dictionary->GetRootClass(0).FindAttribute(std::string("Description"));
    value = ZedSnmpToValue(datum, description.GetType(), Syntax::ObjectId, 1, nullptr, names);
    EXPECT_EQ(value->ToString(), "1.3.6.1.6.3.1.1.5.3 (linkDown)");
    EXPECT_EQ(ZedSnmpFromValue(*value, Syntax::ObjectId)->oid, datum.oid);
    datum.oid = {1, 3, 6, 1, 4, 1, 8072};
    EXPECT_EQ(ZedSnmpToValue(datum, description.GetType(), Syntax::ObjectId, 1, nullptr, names)->ToString(),
              "1.3.6.1.4.1.8072")
        << "unknown: numbers only";
    EXPECT_EQ(ZedSnmpFromValue(TLatin1String("10.1.2.3"), Syntax::IpAddress)->octets,
              std::string("\x0a\x01\x02\x03", 4));
    EXPECT_EQ(ZedSnmpFromValue(TOctetString("18446744073709551615"), Syntax::Counter64)->number, UINT64_MAX);

    std::string why;
    EXPECT_FALSE(ZedSnmpFromValue(TInteger32(-1), Syntax::Unsigned, &why));
    EXPECT_EQ(why, "\"-1\" is not a 32-bit unsigned number");
    EXPECT_FALSE(ZedSnmpFromValue(TLatin1String("10.1.2"), Syntax::IpAddress, &why));
    EXPECT_FALSE(ZedSnmpFromValue(TLatin1String(), Syntax::DisplayString, &why));
    EXPECT_EQ(why, "no value to send");
    datum = TSnmpDatum{};
    datum.kind = TSnmpDatum::Kind::Counter64;
    datum.number = 1u << 20;
    EXPECT_FALSE(ZedSnmpToValue(datum, admin.GetType(), Syntax::Integer, admin.GetID(), &why));
}

namespace {

TSnmpDatum Integer(std::int64_t value)
{
    TSnmpDatum datum;
    datum.kind = TSnmpDatum::Kind::Integer;
    datum.integer = value;
    return datum;
}

TSnmpDatum Octets(std::string octets)
{
    TSnmpDatum datum;
    datum.kind = TSnmpDatum::Kind::Octets;
    datum.octets = std::move(octets);
    return datum;
}

// The conventions a compiled MIB binds: TruthValue a boolean, DateAndTime a
// time, and what a DISPLAY-HINT writes.
TEST(SnmpValue, ConventionsAndDisplayHintsGoBothWays)
{
    const TDictionaryPtr types = TDictionary::Parse(
        R"({"format": "zed-dictionary 1", "partitions": [{"code": 1, "name": "P"}], "classes": [{"code": 1,
            "name": "C", "attributes": [{"id": 1, "name": "B", "type": "Boolean", "partition": "P"},
            {"id": 2, "name": "T", "type": "AbsTime", "partition": "P"},
            {"id": 3, "name": "S", "type": "Latin1String", "partition": "P"}]}]})",
        "types");
    const TDictClass& cls = types->GetRootClass(0);
    const TDictType& boolean = cls.FindAttribute(1u)->GetType();
    const TDictType& time = cls.FindAttribute(2u)->GetType();
    const TDictType& text = cls.FindAttribute(3u)->GetType();
    std::string why;

    TValuePtr value = ZedSnmpToValue(Integer(2), boolean, Syntax::TruthValue, 1);
    ASSERT_TRUE(value);
    EXPECT_EQ(value->ToString(), "FALSE");
    EXPECT_EQ(ZedSnmpFromValue(TBoolean(true), Syntax::TruthValue)->integer, 1);
    EXPECT_FALSE(ZedSnmpToValue(Integer(3), boolean, Syntax::TruthValue, 1, &why));
    EXPECT_EQ(why, "TruthValue 3 is neither true(1) nor false(2)");

    const std::string when{"\x07\xea\x0b\x19\x12\x1e\x29\x05", 8};
    value = ZedSnmpToValue(Octets(when), time, Syntax::DateAndTime, 2);
    ASSERT_TRUE(value);
    EXPECT_EQ(static_cast<const TAbsTime&>(*value).GetMilliseconds(), 1795631441500);
    EXPECT_EQ(ZedSnmpFromValue(*value, Syntax::DateAndTime)->octets, when + std::string("+\0\0", 3));
    EXPECT_FALSE(ZedSnmpToValue(Octets("abc"), time, Syntax::DateAndTime, 2, &why));
    EXPECT_EQ(why, "the 3 octets 61:62:63 are no DateAndTime");

    value = ZedSnmpToValue(Octets({"\x0a\x00\x00\x01", 4}), text, Syntax::OctetString, 3, nullptr, {}, "1d.1d.1d.1d");
    EXPECT_EQ(value->ToString(), "10.0.0.1");
    EXPECT_EQ(ZedSnmpFromValue(*value, Syntax::OctetString, nullptr, "1d.1d.1d.1d")->octets,
              std::string("\x0a\x00\x00\x01", 4));
    EXPECT_EQ(ZedSnmpToValue(Integer(-1234), text, Syntax::Integer, 3, nullptr, {}, "d-2")->ToString(), "-12.34");
    EXPECT_EQ(ZedSnmpFromValue(TLatin1String("21.5"), Syntax::Integer, nullptr, "d-2")->integer, 2150);
    EXPECT_FALSE(ZedSnmpFromValue(TLatin1String("21.555"), Syntax::Integer, &why, "d-2"));
    EXPECT_EQ(why, "\"21.555\" is not an Integer32 written as its display hint says");
    EXPECT_EQ(ZedSnmpToValue(Octets("\xff"), text, Syntax::OctetString, 3, nullptr, {}, "9q")->ToString(), "ff")
        << "a hint that is none: the syntax's own way";
}

}  // namespace
