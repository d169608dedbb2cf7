// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Set-of (data type 52) and sequence-of (53) values: elements of one type in
// order. They differ in data type code only: a set may say it is a sequence,
// and a sequence is such a set. Present from construction: an empty set is a
// value.

#include "zed/dict/TDictType.h"
#include "zed/value/TValueHolder.h"

#include <vector>

/// What sets and sequences share: elements of one type, in order, each owned.
class ZED_EXPORT TConstructedOf : public TValue {
public:
    using Definition = std::shared_ptr<const TDictTypeConstructorOf>;

    ~TConstructedOf() override;

    const Definition& GetDefinition() const { return m_definition; }
    const TDictType* GetDictType() const override { return m_definition.get(); }

    /// Adds a copy, or takes the value, at the end.
    void Add(const TValue& element) { m_elements.emplace_back(element.Clone()); }
    void Add(TValuePtr element);
    std::size_t Size() const { return m_elements.size(); }
    const TValue& At(std::size_t index) const { return *m_elements.at(index); }
    void Clear() { m_elements.clear(); }

protected:
    TConstructedOf(Definition definition, unsigned int id);
    /// "{ a, b }"
    std::string ContentText() const override;
    bool SameContent(const TValue& other) const override;

private:
    Definition m_definition;
    std::vector<TValueHolder> m_elements;
};

/// Set-of (data type 52), or sequence-of (53) when it says it is one.
class ZED_EXPORT TSetOf : public TConstructedOf {
public:
    explicit TSetOf(Definition definition = nullptr, unsigned int id = 0, bool sequence = false)
        : TConstructedOf(std::move(definition), id), m_sequence(sequence)
    {
    }
    ~TSetOf() override;
    ZED_T_DATATYPE GetDatatype() const override { return m_sequence ? ZED_DT_SEQUENCEOF : ZED_DT_SETOF; }
    bool IsSequence() const { return m_sequence; }

protected:
    std::unique_ptr<TValue> CloneValue() const override;

private:
    bool m_sequence;
};

/// Sequence-of (data type 53): a set that is a sequence.
class ZED_EXPORT TSequenceOf final : public TSetOf {
public:
    explicit TSequenceOf(Definition definition = nullptr, unsigned int id = 0) : TSetOf(std::move(definition), id, true)
    {
    }
    ~TSequenceOf() override;

protected:
    std::unique_ptr<TValue> CloneValue() const override;
};
