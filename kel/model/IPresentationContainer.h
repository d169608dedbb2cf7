// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/model/IPresentationElement.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>

/// The elements a presentation owns, one per key, walked in key order.
class KEL_EXPORT IPresentationContainer {
public:
    IPresentationContainer();
    IPresentationContainer(const IPresentationContainer&) = delete;
    IPresentationContainer& operator=(const IPresentationContainer&) = delete;
    virtual ~IPresentationContainer();

    /// Takes the element unless one of the same key is held: then it is
    /// refused, false is answered and the element stays with the caller.
    bool InsertElement(std::unique_ptr<IPresentationElement>&& element);
    IPresentationElement* FindElement(int key) const;
    /// Hands the element back to the caller; null when none has the key.
    std::unique_ptr<IPresentationElement> RemoveElement(int key);
    void ClearElements() { m_elements.clear(); }
    std::size_t GetElementCount() const { return m_elements.size(); }
    void ForEachElement(const std::function<void(IPresentationElement&)>& visit) const;

private:
    std::map<int, std::unique_ptr<IPresentationElement>> m_elements;
};
