// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Walks over the dictionary's arguments and attributes of an entity class,
// in dictionary order, through the application's current dictionary:
//
//     for (TDictArgumentIterator it(cls, directive, ZED_DICT_REQUEST); it.IsValid(); it.Next())
//         use(it.Get());
//
// An iterator keeps the dictionary alive while it walks. A class that the
// dictionary does not have throws TException; a directive, reply or event it
// does not have gives an empty walk.

#include "zed/dict/TDictionary.h"
#include "zed/value/TEntitySpec.h"

#include <vector>

/// Walks the arguments of a directive's request, of one of its replies, or of an event.
class ZED_EXPORT TDictArgumentIterator {
public:
    /// selector: ZED_DICT_REQUEST (7) the directive's request arguments;
    /// ZED_DICT_RESPONSE (8) or ZED_DICT_EXCEPTION (9) the arguments of the
    /// directive's reply of that code; ZED_DICT_EVENT (10) the arguments of the
    /// event whose identifier is given as directiveOrEvent.
    TDictArgumentIterator(const TEntityClass& entityClass, unsigned int directiveOrEvent,
                          ZED_T_DICT_OBJECT_TYPE selector, unsigned int replyCode = 0);

    void First() { m_index = 0; }
    bool IsValid() const { return m_arguments && m_index < m_arguments->size(); }
    void Next() { ++m_index; }
    const TDictArgument& Get() const { return m_arguments->at(m_index); }

private:
    TDictionaryPtr m_dictionary;
    const std::vector<TDictArgument>* m_arguments = nullptr;
    std::size_t m_index = 0;
};

/// Walks a class's attributes, all of them or one partition's.
class ZED_EXPORT TDictAttributeIterator {
public:
    /// partition 0 walks every attribute, any other only that partition's.
    explicit TDictAttributeIterator(const TEntityClass& entityClass, unsigned int partition = 0);

    void First();
    bool IsValid() const { return m_index < m_attributes->size(); }
    void Next();
    const TDictAttribute& Get() const { return m_attributes->at(m_index); }

private:
    void Skip();

    TDictionaryPtr m_dictionary;
    const std::vector<TDictAttribute>* m_attributes = nullptr;
    unsigned int m_partition;
    std::size_t m_index = 0;
};
