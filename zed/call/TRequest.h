// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/value/TValueList.h"

#include <string>

/// The arguments of one directive, found by argument identifier.
class ZED_EXPORT TRequest {
public:
    TRequest();
    ~TRequest();
    TRequest(const TRequest&);
    TRequest& operator=(const TRequest&);

    /// Adds a copy of the value; an argument given twice keeps the last.
    void Add(const TValue& argument) { m_arguments.Put(argument); }
    /// Takes the value over.
    void Add(TValuePtr argument) { m_arguments.Put(std::move(argument)); }

    const TValue& operator[](unsigned int argumentId) const { return m_arguments[argumentId]; }
    const TValue* Find(unsigned int argumentId) const { return m_arguments.Find(argumentId); }
    std::size_t Size() const { return m_arguments.Size(); }
    const TValue& At(std::size_t index) const { return m_arguments.At(index); }
    void Clear() { m_arguments.Clear(); }

private:
    TValueList m_arguments;
};
