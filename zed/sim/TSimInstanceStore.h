// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/dict/TDictionary.h"
#include "zed/value/TEntitySpec.h"
#include "zed/value/TValueList.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class ZedJsonFaults;
class ZedJsonNode;

/// The instances of the simulated network: a tree that follows the class
/// tree, each instance with its attribute values found by attribute code.
/// Loaded from a JSON instance file (docs/simulated-network.md), checked
/// entirely before anything is kept.
class ZED_EXPORT TSimInstanceStore {
public:
    /// One instance: its class, its name, its attribute values and the instances below it.
    struct Instance {
        const TDictClass* cls = nullptr;
        std::string name;
        Instance* parent = nullptr;  // null at the top
        TValueList attributes;
        // Children by class code, then by instance name.
        std::map<unsigned int, std::map<std::string, std::unique_ptr<Instance>>> children;
    };

    explicit TSimInstanceStore(TDictionaryPtr dictionary);
    TSimInstanceStore(const TSimInstanceStore&) = delete;
    TSimInstanceStore& operator=(const TSimInstanceStore&) = delete;
    ~TSimInstanceStore();

    /// Replaces the store's content with the file's; throws TException naming
    /// the file and the JSON path, and keeps the old content, on a bad file.
    void Load(const std::string& path);
    void Parse(std::string_view json, const std::string& source);
    /// Reads the text as Parse does, for every fault rather than the first
    /// (each once, a hundred at most, "<source>: <JSON path>: <what is
    /// wrong>"), changing nothing. True when there were none.
    bool Check(std::string_view json, const std::string& source, std::vector<std::string>& faults) const;

    const TDictionary& GetDictionary() const { return *m_dictionary; }

    /// The instances a specification names: one, none, or (with wildcards)
    /// every match, in name order.
    std::vector<Instance*> Resolve(const TEntitySpec& entity);
    /// The parent that a new instance of this specification would go under:
    /// null when the parent is missing or the specification is not fully named.
    Instance* ParentFor(const TEntitySpec& entity);
    std::size_t Count() const;
    /// Adds an instance under a parent found by ParentFor; false if the name is taken.
    Instance* Add(Instance* parent, const TDictClass& cls, const std::string& name);
    /// Removes an instance found by Resolve, with everything below it.
    void Remove(Instance* instance);

    /// The full specification of an instance, every level named.
    static TEntitySpec SpecOf(const Instance& instance);

private:
    /// The tree the text describes; without faults, the first fault throws.
    Instance Read(std::string_view json, const std::string& source, std::vector<std::string>* faults) const;
    Instance* ParentOf(const TEntitySpec& spec, Instance& top, const ZedJsonNode& where, const TDictClass*& cls) const;
    void ReadAttributes(const ZedJsonNode& attributes, const TDictClass& cls, ZedJsonFaults& collect,
                        Instance& instance) const;

    TDictionaryPtr m_dictionary;
    Instance m_root;
};
