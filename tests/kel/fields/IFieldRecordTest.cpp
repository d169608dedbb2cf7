// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/ILabel.h"
#include "kel/fields/IFieldBuilder.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/fields/IFieldEditMulti.h"
#include "kel/fields/IFieldNumeric.h"
#include "kel/fields/IFieldRecord.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELTrace.h"
#include "support/FieldDoubles.h"
#include "support/ShippedNetwork.h"
#include "support/TraceCapture.h"
#include "zed/value/TRecord.h"
#include "zed/value/TValueParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::ElementsAre;
using ::testing::EndsWith;

namespace {

class RecordFieldTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        network = InstallShippedNetwork();
        ASSERT_NE(InitializeKEL("record test"), nullptr);
        container = new IContainer(&form);
    }
    void TearDown() override { DestroyKEL(); }

    std::unique_ptr<IFieldRecord> Location(ZED_T_DICT_ACCESS access = ZED_ACCESS_READ_WRITE)
    {
        IElementInfo info = Info(7, ZED_DT_RECORD, "Location");
        info.SetAccess(access);
        info.SetDictType(*Dictionary().FindType("Location"));
        info.SetHasDictType(1);
        unsigned int id = 1;
        std::unique_ptr<IField> field = IFieldBuilder::CreateField(container, id, info);
        auto* record = dynamic_cast<IFieldRecord*>(field.get());
        EXPECT_NE(record, nullptr);
        field.release();
        return std::unique_ptr<IFieldRecord>(record);
    }
    static std::vector<IFieldRecordMember*> Members(IFieldRecord& record)
    {
        std::vector<IFieldRecordMember*> members;
        IFieldContainer* fields = record.GetFieldContainer();
        for (long at = fields->GoFirst(); at >= 0;)
            members.push_back(dynamic_cast<IFieldRecordMember*>(fields->GetNext(at)));
        return members;
    }

    std::shared_ptr<TSimulatedNetwork> network;
    FakeForm form;
    IContainer* container = nullptr;
};

TEST_F(RecordFieldTest, HasAMemberPerMemberOfTheTypeAndNestsRecords)
{
    auto record = Location();
    const auto members = Members(*record);
    ASSERT_EQ(members.size(), 3u);
    EXPECT_EQ(members[0]->GetLabel()->GetPresentationName(), "Site");
    EXPECT_NE(dynamic_cast<IFieldEditMulti*>(members[0]->GetField()), nullptr);
    EXPECT_NE(dynamic_cast<IFieldUnsigned16*>(members[1]->GetField()), nullptr);
    auto* position = dynamic_cast<IFieldRecord*>(members[2]->GetField());
    ASSERT_NE(position, nullptr) << "a member of record type is a record again";
    EXPECT_EQ(Members(*position).size(), 2u);

    // The members' fields stand in one column, 18 pixels right of the widest label.
    EXPECT_EQ(members[0]->GetField()->GetCoordinates().x(), members[1]->GetField()->GetCoordinates().x());
    EXPECT_EQ(members[0]->GetLabel()->GetSize().width(), record->GetLabelSize());
    const QPoint label = members[1]->GetLabel()->GetCoordinates();
    EXPECT_EQ(members[1]->GetField()->GetCoordinates().x(),
              label.x() + members[1]->GetLabel()->GetSize().width() + IFieldRecordMember::kLabelGap);
    QSize size;
    record->GetFieldContainer()->ComputeSize(size);
    EXPECT_EQ(record->GetSize(), size);
}

TEST_F(RecordFieldTest, ValuesGoToMembersAndComeBackAsARecord)
{
    auto record = Location();
    std::string error;
    TValuePtr value =
        ZEDParseValue(*Dictionary().FindType("Location"), R"({"Site": "Hall C", "Position": {"Latitude": 1.5}})", 7,
                      {&Dictionary(), nullptr}, &error);
    ASSERT_NE(value, nullptr) << error;
    record->SetValue(*value);
    const auto members = Members(*record);
    std::string text;
    members[0]->GetValue(text);
    EXPECT_EQ(text, "Hall C");
    members[1]->GetValue(text);
    EXPECT_EQ(text, "") << "an absent member is not returned (a number shows nothing)";
    EXPECT_NE(record->InitialValue(), nullptr);

    std::unique_ptr<TValue> back = record->GetTValue(false);
    ASSERT_NE(back, nullptr);
    ASSERT_EQ(back->GetDatatype(), ZED_DT_RECORD);
    EXPECT_EQ(back->GetID(), 7u);
    const auto& got = static_cast<const TRecord&>(*back);
    EXPECT_EQ(got[1].ToString(), "Hall C");
    EXPECT_FALSE(got[2].IsPresent());
    EXPECT_EQ(static_cast<const TRecord&>(got[3])[1].ToString(), "1.5");

    record->GetValue(text);
    EXPECT_EQ(text, ")") << "a record's text is \")\", as designed";
    std::string request = "untouched";
    record->GetPartialRequest(request);
    EXPECT_EQ(request, ")");
}

TEST_F(RecordFieldTest, WithoutATypeThereAreNoMembersAndAnEmptyRecordOnlyWhenAskedFor)
{
    IElementInfo info = Info(7, ZED_DT_RECORD);
    unsigned int id = 1;
    std::unique_ptr<IField> record = IFieldBuilder::CreateField(container, id, info);
    EXPECT_EQ(record->GetTValue(false), nullptr);
    std::unique_ptr<TValue> empty = record->GetTValue(true);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(static_cast<const TRecord&>(*empty).Size(), 0u);
}

TEST_F(RecordFieldTest, AccessReachesTheMembersAndWhatARecordCannotDoIsTraced)
{
    auto shown = Location(ZED_ACCESS_READ_ONLY);
    for (IFieldRecordMember* member : Members(*shown))
        EXPECT_TRUE(member->GetField()->IsReadOnly());

    TraceCapture capture(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    shown->SetValue(std::string("text"));
    shown->FillWithConfig("Form");
    shown->SaveContents("Form");
    IElementInfo info = Info(3, 4);
    IFieldRecordMember empty(info, container);
    empty.SetValue(std::string("x"));
    empty.SetToNullValue();
    EXPECT_THAT(capture.Lines(),
                ElementsAre(EndsWith("KEL : IFieldRecord::SetValue string not supported"),
                            EndsWith("KEL : IFieldRecord::FillWithConfig not supported"),
                            EndsWith("KEL : IFieldRecord::SaveContents not supported"),
                            EndsWith("KEL : IFieldRecordMember::SetValue, m_pField or m_pLabel is NULL"),
                            EndsWith("KEL : IFieldRecordMember::SetToNullValue, m_pField is NULL")));
}

TEST_F(RecordFieldTest, ANestedRecordThatGrowsGrowsEveryContainerAboveIt)
{
    auto record = Location();
    const QSize before = record->GetSize();
    auto* position = dynamic_cast<IFieldRecord*>(Members(*record)[2]->GetField());
    ASSERT_NE(position, nullptr);
    IField* latitude = Members(*position)[0]->GetField();
    latitude->Resize(QSize(latitude->GetSize().width(), latitude->GetSize().height() + 40));
    position->SizeHasChanged();
    EXPECT_EQ(record->GetSize().height(), before.height() + 40);
}

}  // namespace
