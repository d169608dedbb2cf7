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
#include "kel/model/IElementInfo.h"
#include "zed/dict/TDictType.h"
#include "zed/value/ZedDatatypes.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace {

struct Entry {
    std::uint64_t id;
    unsigned int dt;       // when typeName is empty
    std::string typeName;  // a dictionary type's name, or empty
    int rank;
    KELFieldKinds::Factory make;
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

class Table {
public:
    static Table& Get()
    {
        static Table table;
        return table;
    }

    std::uint64_t Add(unsigned int dt, std::string typeName, int rank, KELFieldKinds::Factory make)
    {
        m_entries.push_back(Entry{++m_lastId, dt, std::move(typeName), rank, std::move(make)});
        return m_lastId;
    }

    void Remove(std::uint64_t id)
    {
        std::erase_if(m_entries, [id](const Entry& entry) { return entry.id == id; });
    }

    const KELFieldKinds::Factory* Find(const IElementInfo& info) const
    {
        const std::string* typeName =
            info.HasDictType() && info.GetDictType() ? &info.GetDictType()->GetName() : nullptr;
        const Entry* best = nullptr;
        for (const Entry& entry : m_entries) {
            const bool byName = !entry.typeName.empty();
            if (byName ? !typeName || entry.typeName != *typeName : entry.dt != info.GetDT())
                continue;
            // Later entries come after: >= lets the later of equal standing win.
            if (!best || entry.rank > best->rank || (entry.rank == best->rank && (byName || best->typeName.empty())))
                best = &entry;
        }
        return best ? &best->make : nullptr;
    }

private:
    // KEL's own kinds, data-type code to kind; codes not listed get the placeholder.
    Table()
    {
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
        for (const auto& [dt, make] : builtIn)
            Add(dt, "", KELFieldKinds::kBuiltIn, make);
    }

    std::vector<Entry> m_entries;
    std::uint64_t m_lastId = 0;
};

}  // namespace

namespace {

KELRegistration Registered(std::uint64_t id)
{
    return KELRegistration([id] { Table::Get().Remove(id); });
}

}  // namespace

KELFieldKinds::Registration KELFieldKinds::ForDatatype(unsigned int dt, int rank, Factory make)
{
    return Registered(Table::Get().Add(dt, "", rank, std::move(make)));
}

KELFieldKinds::Registration KELFieldKinds::ForTypeName(std::string typeName, int rank, Factory make)
{
    if (typeName.empty())
        return Registration();  // no type is nameless
    return Registered(Table::Get().Add(0, std::move(typeName), rank, std::move(make)));
}

const KELFieldKinds::Factory* KELFieldKinds::Find(const IElementInfo& info) { return Table::Get().Find(info); }
