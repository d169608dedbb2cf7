// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Reading a JSON document strictly, with the place of every fault: each node
// knows its path ("$.classes[0].attributes[3].type"), a fault throws
// TException "<file>: <path>: <what is wrong>", and objects refuse keys they
// do not know, so a misspelt key is an error rather than a silent default.
// Internal to the access library.

#include "zed/TException.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class ZedJsonNode {
public:
    ZedJsonNode(const nlohmann::json& value, std::string root, const std::string& source)
        : m_value(value), m_link(std::make_shared<const Link>(Link{nullptr, std::move(root), 0, 0})), m_source(source)
    {
    }

    // Parses text, or throws with the position of the syntax error.
    static nlohmann::json ParseText(std::string_view text, const std::string& source)
    {
        try {
            return nlohmann::json::parse(text.begin(), text.end());
        } catch (const nlohmann::json::exception& e) {
            throw TException(source + ": $: not valid JSON: " + e.what());
        }
    }

    [[noreturn]] void Fail(const std::string& what) const { throw TException(m_source + ": " + Path() + ": " + what); }

    const nlohmann::json& Json() const { return m_value; }
    // "$.classes[0].attributes[3].type": made only when asked for, so that a
    // deep walk costs the same at every level.
    std::string Path() const
    {
        std::vector<const Link*> links;
        for (const Link* link = m_link.get(); link; link = link->parent.get())
            links.push_back(link);
        // A path through values nested a hundred deep would bury the fault: its
        // middle is counted rather than spelt out.
        constexpr std::size_t kHead = 12, kTail = 6;
        const std::size_t count = links.size();
        std::string path;
        for (std::size_t i = 0; i < count; ++i) {
            if (count > kHead + kTail + 1 && i == kHead) {
                path += "...(" + std::to_string(count - kHead - kTail) + " levels)...";
                i = count - kTail - 1;
                continue;
            }
            const Link& link = *links[count - 1 - i];
            path +=
                link.key.empty() && i != 0 ? "[" + std::to_string(link.index) + "]" : (i == 0 ? "" : ".") + link.key;
        }
        return path;
    }
    // How many keys and indexes lead here from the root.
    int Depth() const { return m_link->depth; }

    ZedJsonNode ExpectObject(std::initializer_list<std::string_view> allowed) const
    {
        if (!m_value.is_object())
            Fail("expected an object");
        for (const auto& item : m_value.items()) {
            bool known = false;
            for (std::string_view key : allowed)
                known = known || item.key() == key;
            if (!known)
                Key(item.key()).Fail("unknown key");
        }
        return *this;
    }

    bool Has(std::string_view key) const { return m_value.is_object() && m_value.contains(key); }
    // A key that is not there, as opposed to one whose value is null.
    bool Absent() const { return m_absent; }

    ZedJsonNode Key(std::string_view key) const
    {
        static const nlohmann::json null;
        const auto found = m_value.find(key);
        const bool absent = !m_value.is_object() || found == m_value.end();
        return ZedJsonNode(absent ? null : *found, Child(std::string(key), 0), m_source, absent);
    }

    // The members of an array (an absent optional array is empty; a null one
    // is a fault, as a null anywhere else is).
    std::size_t ArraySize(bool required) const
    {
        if (m_absent && !required)
            return 0;
        if (!m_value.is_array())
            Fail("expected an array");
        return m_value.size();
    }
    ZedJsonNode At(std::size_t index) const
    {
        return ZedJsonNode(m_value[index], Child(std::string(), index), m_source);
    }

    std::string String() const
    {
        if (!m_value.is_string())
            Fail("expected a string");
        return m_value.get<std::string>();
    }
    std::string NonEmptyString() const
    {
        std::string text = String();
        if (text.empty())
            Fail("must not be empty");
        return text;
    }
    std::uint32_t Unsigned() const
    {
        // JSON readers give positive whole numbers as unsigned, negative ones as signed.
        if (!m_value.is_number_unsigned() || m_value.get<std::uint64_t>() > 0xFFFFFFFFull)
            Fail("expected a whole number from 0 to 4294967295");
        return static_cast<std::uint32_t>(m_value.get<std::uint64_t>());
    }
    std::int32_t Integer() const
    {
        if (!m_value.is_number_integer())
            Fail("expected a whole number");
        if (m_value.is_number_unsigned()
                ? m_value.get<std::uint64_t>() > 0x7FFFFFFFull
                : (m_value.get<std::int64_t>() < INT32_MIN || m_value.get<std::int64_t>() > INT32_MAX))
            Fail("number out of the 32-bit range");
        return static_cast<std::int32_t>(m_value.get<std::int64_t>());
    }
    std::int64_t Integer64() const
    {
        if (!m_value.is_number_integer()
            || (m_value.is_number_unsigned() && m_value.get<std::uint64_t>() > 0x7FFFFFFFFFFFFFFFull))
            Fail("expected a whole number of 64 bits");
        return m_value.get<std::int64_t>();
    }
    bool Bool() const
    {
        if (!m_value.is_boolean())
            Fail("expected true or false");
        return m_value.get<bool>();
    }

    // Optional members: the default when the key is absent.
    std::string StringOr(std::string_view key, std::string fallback) const
    {
        return Has(key) ? Key(key).String() : std::move(fallback);
    }
    std::uint32_t UnsignedOr(std::string_view key, std::uint32_t fallback) const
    {
        return Has(key) ? Key(key).Unsigned() : fallback;
    }
    bool BoolOr(std::string_view key, bool fallback) const { return Has(key) ? Key(key).Bool() : fallback; }

private:
    // One step of the path: a key, or (with an empty key) an index. Links are
    // shared, so a child node costs one small allocation whatever its depth.
    struct Link {
        std::shared_ptr<const Link> parent;
        std::string key;
        std::size_t index;
        int depth;
    };

    ZedJsonNode(const nlohmann::json& value, std::shared_ptr<const Link> link, const std::string& source,
                bool absent = false)
        : m_value(value), m_link(std::move(link)), m_source(source), m_absent(absent)
    {
    }
    std::shared_ptr<const Link> Child(std::string key, std::size_t index) const
    {
        return std::make_shared<const Link>(Link{m_link, std::move(key), index, m_link->depth + 1});
    }

    const nlohmann::json& m_value;
    std::shared_ptr<const Link> m_link;
    const std::string& m_source;
    bool m_absent = false;
};

// Reading a whole file for its faults rather than stopping at the first: the
// independent parts of a document (each member of a list) are read under
// Guard, and a part that fails is recorded and skipped while the rest is
// read. Without a sink the first fault throws, as loading wants.
class ZedJsonFaults {
public:
    explicit ZedJsonFaults(std::vector<std::string>* sink) : m_sink(sink) {}

    template <class Read>
    void Guard(Read&& read)
    {
        if (!m_sink) {
            read();
            return;
        }
        try {
            read();
        } catch (const TException& fault) {
            Add(fault.what());
        }
    }
    // Reads each member of a list under Guard.
    template <class Read>
    void ForEach(const ZedJsonNode& list, bool required, Read&& read)
    {
        for (std::size_t i = 0, n = list.ArraySize(required); i < n; ++i)
            Guard([&] { read(list.At(i)); });
    }
    void Add(const std::string& fault)
    {
        // A part that others refer to fails again at every reference: said once.
        if (m_sink->size() < kMaxFaults && std::find(m_sink->begin(), m_sink->end(), fault) == m_sink->end())
            m_sink->push_back(fault);
    }
    bool Collecting() const { return m_sink != nullptr; }

private:
    // A file of a million bad lines is not a million lines of report.
    static constexpr std::size_t kMaxFaults = 100;
    std::vector<std::string>* m_sink;
};
