// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Entity specifications (data type 55) and entity classes (60).
//
// An entity class is a path of class codes, one per depth: Network, Router,
// Interface. An entity specification adds an instance at each depth: a name,
// the wildcard (every instance), or none (the null instance, which stands for
// the class itself).
//
// Text form (class names from the current dictionary, ignoring case):
//     Network core Router r1 Interface "eth 0"
//     Network core Router *
// An instance name is written bare when it cannot be mistaken for anything
// else, otherwise in double quotes with \" and \\ escaped. A class the
// dictionary does not know is written "#code". The text form parses back to
// the same specification. The synonym form puts instance names in
// backquotes: Network `core` Router `r1`.

#include "zed/dict/TDictionary.h"
#include "zed/value/TValue.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Entity class (data type 60): the class codes from the top of the tree down.
class ZED_EXPORT TEntityClass final : public TValue {
public:
    TEntityClass() = default;  // absent, depth 0
    explicit TEntityClass(std::vector<unsigned int> codes, unsigned int id = 0);
    /// Parses class names; throws TException on a bad text.
    explicit TEntityClass(std::string_view text, unsigned int id = 0);
    ~TEntityClass() override;

    ZED_T_DATATYPE GetDatatype() const override { return ZED_DT_ENTITYCLASS; }

    std::size_t GetDepth() const { return m_codes.size(); }
    unsigned int GetCode(std::size_t depth) const { return m_codes.at(depth); }
    const std::vector<unsigned int>& GetCodes() const { return m_codes; }
    void AddClass(unsigned int code);

    static std::optional<TEntityClass> Parse(std::string_view text, const TDictionary* dictionary,
                                             std::string* error = nullptr);
    std::string ToString(const TDictionary* dictionary) const;
    using TValue::ToString;

protected:
    std::unique_ptr<TValue> CloneValue() const override;
    std::string ContentText() const override;
    bool SameContent(const TValue& other) const override;

private:
    std::vector<unsigned int> m_codes;
};

/// Entity specification (data type 55): a class and an instance at each level,
/// the instance named, left out or a wildcard.
class ZED_EXPORT TEntitySpec final : public TValue {
public:
    enum class Instance { Null, Named, Wildcard };
    /// One level of a specification: a class code and its instance.
    struct Component {
        unsigned int code = 0;
        Instance kind = Instance::Null;
        std::string name;  // for Named
        bool operator==(const Component&) const = default;
    };

    TEntitySpec() = default;  // absent, depth 0
    /// Parses the text form with the current dictionary; the empty text gives
    /// an empty specification. Throws TException on a bad text.
    explicit TEntitySpec(std::string_view text, unsigned int id = 0);
    ~TEntitySpec() override;

    ZED_T_DATATYPE GetDatatype() const override { return ZED_DT_ENTITYSPEC; }

    std::size_t GetDepth() const { return m_components.size(); }
    const Component& GetComponent(std::size_t depth) const { return m_components.at(depth); }
    unsigned int GetCode(std::size_t depth) const { return m_components.at(depth).code; }
    TEntityClass GetEntityClass() const;
    bool HasWildcard() const;

    TEntitySpec& AddClass(unsigned int code, std::string instanceName);
    TEntitySpec& AddClassWildcard(unsigned int code);
    TEntitySpec& AddClassNullInstance(unsigned int code);
    /// The same specification with the instance at one depth replaced.
    TEntitySpec WithInstance(std::size_t depth, std::string instanceName) const;

    static std::optional<TEntitySpec> Parse(std::string_view text, const TDictionary* dictionary,
                                            std::string* error = nullptr);
    std::string ToString(const TDictionary* dictionary) const;
    using TValue::ToString;
    /// Instance names in backquotes; ok is false (and the text best effort)
    /// when a class is not in the current dictionary.
    std::string ToStringSynonym(bool& ok) const;

protected:
    std::unique_ptr<TValue> CloneValue() const override;
    std::string ContentText() const override;
    bool SameContent(const TValue& other) const override;

private:
    std::vector<Component> m_components;
};
