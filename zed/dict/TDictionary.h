// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/ZedExport.h"
#include "zed/dict/TDictObjects.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class TEntityClass;

/// A loaded management dictionary: entity classes in a tree, named types and
/// attribute partitions. Loading checks the whole file first and makes the
/// dictionary only when every check passed: a bad file raises TException
/// naming the file, the JSON path of the fault and the fault, and nothing is
/// half-loaded. The file format is described in docs/dictionary-format.md.
class ZED_EXPORT TDictionary {
public:
    /// An attribute partition: its code (1 or more) and its name.
    struct Partition {
        unsigned int code;
        std::string name;
    };

    static std::shared_ptr<const TDictionary> Load(const std::string& path);
    /// sourceName names the text in error messages, as the file name does.
    static std::shared_ptr<const TDictionary> Parse(std::string_view json, const std::string& sourceName);
    /// Reads the text for every fault rather than stopping at the first: each
    /// goes to faults as "<source>: <JSON path>: <what is wrong>" (a hundred at
    /// most, each once). The dictionary when there are none, else null.
    static std::shared_ptr<const TDictionary> Check(std::string_view json, const std::string& sourceName,
                                                    std::vector<std::string>& faults);

    TDictionary();
    TDictionary(const TDictionary&) = delete;
    TDictionary& operator=(const TDictionary&) = delete;
    ~TDictionary();

    const std::string& GetSourceName() const { return m_sourceName; }

    std::size_t GetRootClassCount() const { return m_roots.size(); }
    const TDictClass& GetRootClass(std::size_t index) const { return *m_roots.at(index); }
    const TDictClass* FindRootClass(unsigned int code) const;
    /// By name, ignoring case.
    const TDictClass* FindRootClass(const std::string& name) const;
    /// The class at the end of an entity class's path, or null.
    const TDictClass* FindClass(const TEntityClass& entityClass) const;
    const TDictClass* FindClass(const std::vector<unsigned int>& path) const;

    /// Declared types in file order, after the built-in ones.
    const std::vector<TDictTypePtr>& GetTypes() const { return m_types; }
    /// By name, built-in or declared; null when unknown.
    TDictTypePtr FindType(const std::string& name) const;

    const std::vector<Partition>& GetPartitions() const { return m_partitions; }
    /// The partition's name, or null.
    const std::string* FindPartitionName(unsigned int code) const;

private:
    friend class TDictionaryLoader;
    std::string m_sourceName;
    std::vector<std::unique_ptr<TDictClass>> m_roots;
    std::vector<TDictTypePtr> m_types;
    std::vector<Partition> m_partitions;
};

using TDictionaryPtr = std::shared_ptr<const TDictionary>;
