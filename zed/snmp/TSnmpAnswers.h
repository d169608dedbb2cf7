// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// What the SNMP module asks an agent for, and what the answers become: an
// attribute's object, the values found in an answer by their objects, a
// row's index columns, and the exceptions of requests not answered as asked.

#include "zed/call/TCall.h"
#include "zed/dict/TDictionary.h"
#include "zed/snmp/TSnmpSession.h"
#include "zed/value/TAttribute.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class TSnmpOidNames;

// What one agent is asked about, and how its answer is named.
struct TSnmpTarget {
    TSnmpSession* session = nullptr;
    TEntitySpec entity;  // the agent's, its scalars' or a row's
    const TDictClass* cls = nullptr;
    const TDictDirective* directive = nullptr;
    std::string instance;            // a row's name
    ZedOid index;                    // a row's index as its objects end
    std::vector<std::string> parts;  // a row's index, a value per index column
    std::size_t depth = 0;           // where a row's name stands in the entity

    // "agent core-r1 (udp:...)", as traces and exceptions name it.
    std::string Who() const;
};

class TSnmpAnswers {
public:
    TSnmpAnswers(const TDictionary& dictionary, const TSnmpOidNames& names) : m_dictionary(dictionary), m_names(names)
    {
    }

    // The OID of an attribute's object in an instance (".0" for scalars).
    static ZedOid ObjectOf(const TDictClass& cls, const TDictAttribute& attribute, const ZedOid& index);
    static bool IsIndex(const TDictClass& cls, const TDictAttribute& attribute);
    // The attributes a Show asks for: bound ones of the partition asked
    // ("Partition"; 0 or none: all), index columns apart (a row's name holds them).
    static std::vector<const TDictAttribute*> Asked(const TDictClass& cls, const TDictDirective& directive,
                                                    const TRequest& request);

    // An object's value as the attribute's type, or the attribute with the reason it has none.
    TValuePtr ValueOf(const TDictAttribute& attribute, const TSnmpDatum& datum, const std::string& where) const;
    // The value of each attribute asked for, found in the answer by its
    // object's OID: an agent may answer in another order or leave an object
    // out, and a value is never put under another attribute's name.
    void AddAnswered(TAttributeList& list, const std::vector<const TDictAttribute*>& asked,
                     const std::vector<TSnmpVarbind>& sent, const TSnmpAnswer& answer, const std::string& who) const;
    // The index columns' values out of a row's name.
    void AddIndex(TAttributeList& list, const TDictClass& cls, const std::vector<std::string>& parts) const;

    static TCallResult Attributes(const TSnmpTarget& target, std::unique_ptr<TAttributeList> list);
    // How a request that was not answered as asked ends: none when it was.
    static std::optional<TCallResult> Refusal(const TSnmpTarget& target, const TSnmpAnswer& answer,
                                              const char* operation, const std::vector<const TDictAttribute*>& named,
                                              const std::vector<TSnmpVarbind>& sent);
    // A list's last word when it is not the whole table: why, and how many rows it holds.
    static TCallResult Incomplete(const TSnmpTarget& target, std::size_t rows, const std::string& bound,
                                  std::size_t unreadable);

private:
    const TDictionary& m_dictionary;
    const TSnmpOidNames& m_names;
};
