// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldBuilder.h"
#include "kel/fields/IFieldEdit.h"
#include "kel/fields/IFieldNumeric.h"
#include "kel/fields/IFieldRecord.h"
#include "kel/fields/KELFieldKinds.h"
#include "kel/forms/IInputForm.h"
#include "kel/output/IOutputForm.h"
#include "kel/output/KELCallReply.h"
#include "support/ContextFixture.h"
#include "support/FieldDoubles.h"
#include "zed/call/TCall.h"
#include "zed/value/TScalarValues.h"

#include <QLineEdit>

#include <gtest/gtest.h>

namespace {

constexpr unsigned int kTest = 10;
constexpr unsigned int kEcho = 11;
const char* const kInterface = "Network core Router r1 Interface eth0";

// A host's own kind: a text field that says which registration made it.
class MarkedField : public IFieldEdit {
public:
    MarkedField(IElementInfo& info, IContainer* container, QString mark)
        : IFieldEdit(info, container), m_mark(std::move(mark))
    {
    }
    void Create(unsigned int& id, IElementInfo& info) override
    {
        IFieldEdit::Create(id, info);
        GetWindow()->setObjectName(m_mark);
    }

private:
    QString m_mark;
};

KELFieldKinds::Factory Marked(const char* mark)
{
    return [mark](IElementInfo& info, IContainer* container) {
        return std::make_unique<MarkedField>(info, container, QString::fromLatin1(mark));
    };
}

class HostFieldKindsTest : public ContextFixture {
protected:
    std::unique_ptr<IField> Build(IElementInfo info)
    {
        unsigned int id = 1;
        return IFieldBuilder::CreateField(container, id, info);
    }
    static QString MarkOf(const IField& field) { return field.GetWindow()->objectName(); }
    static int Count(const QWidget& form, const char* mark)
    {
        return static_cast<int>(form.findChildren<QLineEdit*>(QString::fromLatin1(mark)).size());
    }

    FakeForm fake;
    IContainer* container = new IContainer(&fake);
};

TEST_F(HostFieldKindsTest, TheHighestRankWinsAndATypeNameBeatsADataTypeOfEqualRank)
{
    const std::shared_ptr<const TDictType> peer = Dictionary().FindType("PeerAddress");
    ASSERT_NE(peer, nullptr);
    IElementInfo record = Info(1, ZED_DT_RECORD);
    record.SetHasDictType(1);
    record.SetDictType(*peer);
    EXPECT_NE(dynamic_cast<IFieldRecord*>(Build(record).get()), nullptr) << "the built-in kind at first";
    {
        const auto byType = KELFieldKinds::ForDatatype(ZED_DT_RECORD, 1, Marked("by data type"));
        EXPECT_EQ(MarkOf(*Build(record)), "by data type");
        const auto byName = KELFieldKinds::ForTypeName("PeerAddress", 1, Marked("by type name"));
        EXPECT_EQ(MarkOf(*Build(record)), "by type name") << "a type name beats a data type of equal rank";
        const auto higher = KELFieldKinds::ForDatatype(ZED_DT_RECORD, 2, Marked("higher rank"));
        EXPECT_EQ(MarkOf(*Build(record)), "higher rank");
        const auto later = KELFieldKinds::ForDatatype(ZED_DT_RECORD, 2, Marked("later"));
        EXPECT_EQ(MarkOf(*Build(record)), "later") << "of equal standing the later registration";
        const std::shared_ptr<const TDictType> other = Dictionary().FindType("Coordinates");
        record.SetDictType(*other);
        EXPECT_EQ(MarkOf(*Build(record)), "later") << "a type name matches that type only";
    }
    EXPECT_NE(dynamic_cast<IFieldRecord*>(Build(record).get()), nullptr) << "gone with the registrations";
}

// The same kind wherever the data type stands: an input form's lines, a
// record's members, an output form's values.
TEST_F(HostFieldKindsTest, AHostKindIsMadeOnFormsInOutputsAndInsideRecords)
{
    const auto unsigned16 = KELFieldKinds::ForDatatype(ZED_DT_UNSIGNED16, 1, Marked("host kind"));

    IInputForm test(context);
    test.resize(700, 500);
    test.CreatePresentation("Test", TEntitySpec(kInterface), kTest);
    EXPECT_EQ(Count(test, "host kind"), 3) << "Count, Size and Timeout";

    IInputForm echo(context);
    echo.resize(700, 500);
    echo.CreatePresentation("Echo", TEntitySpec(kInterface), kEcho);
    EXPECT_GE(Count(echo, "host kind"), 1) << "Place's Rack, inside a record";

    TSyncCall call(TEntitySpec(kInterface), kTest);
    call.GetRequest().Add(TUnsigned16(2, 1));
    call.Execute();
    IOutputForm output;
    output.resize(700, 500);
    output.CreatePresentation("Test", KELCallReply(call), kTest);
    EXPECT_GE(Count(output, "host kind"), 1) << "a reply's values";
}

}  // namespace
