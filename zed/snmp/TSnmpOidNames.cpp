// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpOidNames.h"

TSnmpOidNames::TSnmpOidNames(const TDictionary& dictionary)
{
    for (std::size_t i = 0; i < dictionary.GetRootClassCount(); ++i)
        Add(dictionary.GetRootClass(i));
}

void TSnmpOidNames::Add(const TDictClass& cls)
{
    for (const TDictEvent& event : cls.GetEvents())
        if (event.GetSnmpTrap())
            m_names.emplace(*event.GetSnmpTrap(), event.GetName());
    if (cls.GetSnmp() && !cls.GetSnmp()->oid.empty()) {
        m_names.emplace(cls.GetSnmp()->oid, cls.GetName());
        for (const TDictAttribute& attribute : cls.GetAttributes())
            if (const auto& column = attribute.GetSnmp()) {
                ZedOid oid = column->entry.empty() ? cls.GetSnmp()->oid : column->entry;
                oid.push_back(column->column);
                m_names.emplace(std::move(oid), cls.GetName() + " " + attribute.GetName());
            }
    }
    for (std::size_t i = 0; i < cls.GetChildCount(); ++i)
        Add(cls.GetChild(i));
}

std::string TSnmpOidNames::NameOf(const ZedOid& oid) const
{
    for (std::size_t length = oid.size(); length > 0; --length) {
        const auto known = m_names.find(ZedOid(oid.begin(), oid.begin() + static_cast<std::ptrdiff_t>(length)));
        if (known == m_names.end())
            continue;
        std::string name = known->second;
        for (std::size_t at = length; at < oid.size(); ++at)
            name += "." + std::to_string(oid[at]);
        return name;
    }
    return {};
}
