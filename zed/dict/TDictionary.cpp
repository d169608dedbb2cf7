// SPDX-License-Identifier: BSD-3-Clause
#include "zed/dict/TDictionary.h"

#include "zed/TException.h"
#include "zed/ZedFile.h"
#include "zed/ZedText.h"

#include <algorithm>
#include "zed/dict/TDictionaryLoader.h"
#include "zed/value/TEntitySpec.h"

TDictionary::TDictionary() = default;
TDictionary::~TDictionary() = default;

std::shared_ptr<const TDictionary> TDictionary::Load(const std::string& path)
{
    return Parse(ZedReadFile(path, "dictionary file"), path);
}

std::shared_ptr<const TDictionary> TDictionary::Parse(std::string_view json, const std::string& sourceName)
{
    return TDictionaryLoader::Load(json, sourceName);
}

std::shared_ptr<const TDictionary> TDictionary::Check(std::string_view json, const std::string& sourceName,
                                                      std::vector<std::string>& faults)
{
    return TDictionaryLoader::Load(json, sourceName, &faults);
}

const TDictClass* TDictionary::FindRootClass(unsigned int code) const
{
    return ZedFindIf(m_roots, [&](const TDictClass& root) { return root.GetCode() == code; });
}

const TDictClass* TDictionary::FindRootClass(const std::string& name) const { return ZedFindNamed(m_roots, name); }

const TDictClass* TDictionary::FindClass(const TEntityClass& entityClass) const
{
    return FindClass(entityClass.GetCodes());
}

const TDictClass* TDictionary::FindClass(const std::vector<unsigned int>& path) const
{
    if (path.empty())
        return nullptr;
    const TDictClass* cls = FindRootClass(path[0]);
    for (std::size_t depth = 1; cls && depth < path.size(); ++depth)
        cls = cls->FindChild(path[depth]);
    return cls;
}

TDictTypePtr TDictionary::FindType(const std::string& name) const
{
    if (TDictTypePtr builtin = TDictionaryLoader::BuiltinType(name))
        return builtin;
    const auto found = std::find_if(m_types.begin(), m_types.end(), [&](const TDictTypePtr& type) {
        return ZedSameIgnoringCase(type->GetName(), name);
    });
    return found == m_types.end() ? nullptr : *found;
}

const std::string* TDictionary::FindPartitionName(unsigned int code) const
{
    const Partition* partition = ZedFindIf(m_partitions, [&](const Partition& p) { return p.code == code; });
    return partition ? &partition->name : nullptr;
}
