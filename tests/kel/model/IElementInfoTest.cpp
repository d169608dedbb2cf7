// SPDX-License-Identifier: BSD-3-Clause
#include "kel/model/IDropEntity.h"
#include "kel/model/IElementInfo.h"
#include "kel/model/IPresentationContainer.h"
#include "kel/model/KELElementHelp.h"
#include "support/ShippedNetwork.h"
#include "zed/call/TRequest.h"

#include <QBuffer>
#include <QDataStream>

#include <gtest/gtest.h>

namespace {

// A dictionary object that is neither an argument nor an attribute.
class EventLike : public TDictValue {
public:
    ZED_T_DICT_OBJECT_TYPE GetDictObjectType() const override { return ZED_DICT_EVENT; }
    std::unique_ptr<TDictValue> Clone() const override { return std::make_unique<EventLike>(*this); }
};

TEST(ElementInfo, StartsDisplayedReadWriteWithoutDefaultOrDictionaryObjects)
{
    const IElementInfo info(TEntitySpec("#1 core"), "Speed", "Form");
    EXPECT_TRUE(info.IsDisplayed());
    EXPECT_EQ(const_cast<IElementInfo&>(info).GetAccess(), 3u);
    EXPECT_EQ(const_cast<IElementInfo&>(info).DefaultAllowed(), 0u);
    EXPECT_FALSE(info.HasDictType());
    EXPECT_EQ(info.GetDictType(), nullptr);
    EXPECT_EQ(info.GetDictValue(), nullptr);
    EXPECT_EQ(info.GetName(), "Speed");
    EXPECT_EQ(info.GetPrefix(), "Form");
    EXPECT_EQ(info.GetEntity().ToString(nullptr), "#1 core") << "the entity as given";
    EXPECT_EQ(info.GetPresentationName(), "");
    EXPECT_EQ(info.GetCompleteID(), "");
    EXPECT_EQ(info.GetID(), 0);
    EXPECT_EQ(info.GetDT(), 0u);
}

TEST(ElementInfo, KeepsItsOwnCopiesOfTheMostDerivedTypeAndOfArgumentsAndAttributesOnly)
{
    auto network = InstallShippedNetwork();
    const TDictClass& interface = *Dictionary().FindClass(std::vector<unsigned int>{1, 2, 3});
    IElementInfo info;
    info.SetDictType(*Dictionary().FindType("OperState"));
    EXPECT_FALSE(info.HasDictType()) << "the flag is the caller's to set";
    const auto* items = dynamic_cast<const TDictTypeEnumeration*>(info.GetDictType());
    ASSERT_NE(items, nullptr) << "a consumer may downcast the copy";
    EXPECT_NE(info.GetDictType(), Dictionary().FindType("OperState").get());
    info.SetDictType(*Dictionary().FindType("Location"));
    EXPECT_NE(dynamic_cast<const TDictTypeRecord*>(info.GetDictType()), nullptr);
    EXPECT_NE(info.GetDictType()->Share(), nullptr) << "the copy can be shared with a consumer";
    info.SetDictType(*Dictionary().FindType("PeerSet"));
    EXPECT_NE(dynamic_cast<const TDictTypeConstructorOf*>(info.GetDictType()), nullptr);

    info.SetDictValue(interface.FindAttribute(std::string("Threshold")));
    ASSERT_NE(info.GetDictValue(), nullptr);
    EXPECT_EQ(info.GetDictValue()->GetDictObjectType(), ZED_DICT_ATTRIBUTE);
    const EventLike other;
    info.SetDictValue(&other);
    EXPECT_EQ(info.GetDictValue(), nullptr) << "other kinds are not kept, and the old one is gone";
    info.SetDictValue(interface.FindDirective(10)->FindRequestArgument(1));
    EXPECT_EQ(info.GetDictValue()->GetDictObjectType(), ZED_DICT_ARGUMENT);

    // Copies clone: each info frees only its own (ASan would see a double free).
    IElementInfo copy(info);
    EXPECT_NE(copy.GetDictValue(), info.GetDictValue());
    EXPECT_NE(copy.GetDictType(), info.GetDictType());
    EXPECT_EQ(copy.GetDictType()->GetName(), "PeerSet");
    IElementInfo assigned;
    assigned = copy;
    IElementInfo& self = assigned;
    assigned = self;  // assignment to itself keeps what it holds
    EXPECT_EQ(assigned.GetDictValue()->GetName(), "Count");
    info.SetDictValue(nullptr);
    EXPECT_EQ(info.GetDictValue(), nullptr);
    EXPECT_NE(copy.GetDictValue(), nullptr);
}

TEST(PresentationElement, KeyStaysWhenTheIdChangesAndTheContainerRefusesASecondKey)
{
    IPresentationElement element(7);
    element.SetID(9);
    EXPECT_EQ(element.GetID(), 9u);
    EXPECT_EQ(element.GetKey(), 7);
    TRequest request;
    EXPECT_FALSE(element.FillRequest(request)) << "the base adds nothing";
    EXPECT_EQ(request.Size(), 0u);

    IPresentationContainer container;
    EXPECT_TRUE(container.InsertElement(std::make_unique<IPresentationElement>(3)));
    EXPECT_TRUE(container.InsertElement(std::make_unique<IPresentationElement>(1)));
    auto duplicate = std::make_unique<IPresentationElement>(3);
    EXPECT_FALSE(container.InsertElement(std::move(duplicate)));
    EXPECT_NE(duplicate, nullptr) << "a refused element stays with the caller";
    std::vector<int> keys;
    container.ForEachElement([&](IPresentationElement& e) { keys.push_back(e.GetKey()); });
    EXPECT_EQ(keys, (std::vector<int>{1, 3}));
    EXPECT_NE(container.RemoveElement(1), nullptr);
    EXPECT_EQ(container.RemoveElement(1), nullptr);
    EXPECT_EQ(container.GetElementCount(), 1u);
}

TEST(DropEntity, RoundTripsThroughAStreamAndIgnoresAShortOne)
{
    IDropEntity entity;
    const unsigned int id = 42;
    entity.SetId(id);
    entity.SetValue(QStringLiteral("Network core Router `r1`"));
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        entity.Serialize(out, true);
    }
    IDropEntity loaded;
    {
        QDataStream in(bytes);
        loaded.Serialize(in, false);
    }
    EXPECT_EQ(loaded.GetId(), 42u);
    EXPECT_EQ(loaded.GetValue(), entity.GetValue());

    QDataStream shortStream(bytes.left(6));
    loaded.Serialize(shortStream, false);
    EXPECT_EQ(loaded.GetId(), 42u) << "a damaged stream leaves the entity as it was";
}

// F1 says what an element takes, from the dictionary, leaving out what it has nothing for.
TEST(ElementHelp, SaysTypeRangeOrSizeUnitsDefaultAndAccess)
{
    IElementInfo timeout(TEntitySpec(), "Timeout", "");
    timeout.SetDT(ZED_DT_UNSIGNED16);
    timeout.SetUnits("ms");
    timeout.SetDefault("5");
    timeout.SetAccess(ZED_ACCESS_READ_WRITE);
    EXPECT_EQ(KELElementHelp::Describe(timeout),
              "Type: Unsigned16 (a whole number)\nRange: 0 to 65535\nUnits: ms\nDefault: 5\nAccess: read-write");

    IElementInfo name(TEntitySpec(), "Name", "");
    name.SetDT(ZED_DT_SIMPLENAME);
    name.SetMaxSize(32);
    name.SetAccess(ZED_ACCESS_READ_ONLY);
    EXPECT_EQ(KELElementHelp::Describe(name),
              "Type: SimpleName (a name)\nSize: at most 32 characters\nAccess: read-only");

    InstallShippedNetwork();
    IElementInfo state(TEntitySpec(), "State", "");
    state.SetDT(ZED_DT_ENUMERATION);
    state.SetHasDictType(1);
    state.SetDictType(*Dictionary().FindType("OperState"));
    EXPECT_EQ(KELElementHelp::Describe(state), "Type: Operational State (one of a list)\nAccess: read-write")
        << "the type's presentation name";
}

}  // namespace
