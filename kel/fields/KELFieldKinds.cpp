// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/KELFieldKinds.h"

#include "kel/fields/IFieldAttribute.h"
#include "kel/fields/IFieldCombo.h"
#include "kel/fields/IFieldDateTime.h"
#include "kel/fields/IFieldEdit.h"
#include "kel/fields/IFieldEditMulti.h"
#include "kel/fields/IFieldNumeric.h"
#include "kel/fields/IFieldRecord.h"
#include "kel/fields/IFieldSetOf.h"
#include "kel/fields/IFieldToggle.h"
#include "kel/frame/KELRankedTable.h"
#include "kel/model/IElementInfo.h"
#include "zed/dict/TDictType.h"
#include "zed/value/ZedDatatypes.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace {

// What a kind is for: a data-type code, or a dictionary type by its name.
struct Key {
    unsigned int dt;       // when typeName is empty
    std::string typeName;  // a dictionary type's name, or empty
};

template <class Kind>
std::unique_ptr<IField> Make(IElementInfo& info, IContainer* container)
{
    return std::make_unique<Kind>(info, container);
}

// A time that cannot be changed is shown as text.
std::unique_ptr<IField> MakeTime(IElementInfo& info, IContainer* container)
{
    if (info.GetAccess() == ZED_ACCESS_READ_ONLY)
        return Make<IFieldEdit>(info, container);
    return Make<IFieldDateTime>(info, container);
}

using Table = KELRankedTable<Key, KELFieldKinds::Factory>;

// KEL's own kinds, data-type code to kind; codes not listed get the placeholder.
Table& Kinds()
{
    static Table table = [] {
        const std::pair<unsigned int, KELFieldKinds::Factory> builtIn[] = {
            {ZED_DT_BOOLEAN, &Make<IFieldToggle>},
            {ZED_DT_LATIN1STRING, &Make<IFieldEditMulti>},
            {ZED_DT_SIMPLENAME, &Make<IFieldEdit>},
            {ZED_DT_FULLNAME, &Make<IFieldEdit>},
            {ZED_DT_OCTETSTRING, &Make<IFieldEdit>},
            {ZED_DT_ENTITYSPEC, &Make<IFieldEdit>},
            {ZED_DT_ENTITYCLASS, &Make<IFieldEdit>},
            {ZED_DT_ATTRIBUTELIST, &Make<IFieldEdit>},
            {ZED_DT_EVENTREPORT, &Make<IFieldEdit>},
            {ZED_DT_ENUMERATION, &Make<IFieldCombo>},
            {ZED_DT_RECORD, &Make<IFieldRecord>},
            {ZED_DT_SETOF, &Make<IFieldSetOf>},
            {ZED_DT_SEQUENCEOF, &Make<IFieldSetOf>},
            {ZED_DT_ATTRIBUTE, &Make<IFieldAttribute>},
            {ZED_DT_ATTRIBUTEID, &Make<IFieldAttributeID>},
            {ZED_DT_INTEGER16, &Make<IFieldInteger16>},
            {ZED_DT_INTEGER32, &Make<IFieldInteger32>},
            {ZED_DT_UNSIGNED16, &Make<IFieldUnsigned16>},
            {ZED_DT_UNSIGNED32, &Make<IFieldUnsigned32>},
            {ZED_DT_COUNTER16, &Make<IFieldCounter16>},
            {ZED_DT_COUNTER32, &Make<IFieldCounter32>},
            {ZED_DT_ABSTIME, &MakeTime},
            {ZED_DT_FLOAT, &Make<IFieldFloat>},
            {ZED_DT_REAL, &Make<IFieldReal>},
        };
        Table made;
        for (const auto& [dt, make] : builtIn)
            made.Add(Key{dt, ""}, KELFieldKinds::kBuiltIn, make);
        return made;
    }();
    return table;
}

}  // namespace

KELFieldKinds::Registration KELFieldKinds::ForDatatype(unsigned int dt, int rank, Factory make)
{
    return Kinds().Register(Key{dt, ""}, rank, std::move(make));
}

KELFieldKinds::Registration KELFieldKinds::ForTypeName(std::string typeName, int rank, Factory make)
{
    if (typeName.empty())
        return Registration();  // no type is nameless
    return Kinds().Register(Key{0, std::move(typeName)}, rank, std::move(make));
}

// Of the kinds that apply the highest rank wins; of equal rank one for the
// element's dictionary type beats one for its data type, and the later the earlier.
const KELFieldKinds::Factory* KELFieldKinds::Find(const IElementInfo& info)
{
    const std::string* typeName = info.HasDictType() && info.GetDictType() ? &info.GetDictType()->GetName() : nullptr;
    const Table::Entry* best = nullptr;
    for (const Table::Entry& entry : Kinds().Entries()) {
        const bool byName = !entry.key.typeName.empty();
        if (byName ? !typeName || entry.key.typeName != *typeName : entry.key.dt != info.GetDT())
            continue;
        if (!best || entry.rank > best->rank || (entry.rank == best->rank && (byName || best->key.typeName.empty())))
            best = &entry;
    }
    return best ? &best->make : nullptr;
}
