// SPDX-License-Identifier: BSD-3-Clause
#include "kel/model/IPresentationContainer.h"

IPresentationContainer::IPresentationContainer() = default;

IPresentationContainer::~IPresentationContainer() = default;

bool IPresentationContainer::InsertElement(std::unique_ptr<IPresentationElement>&& element)
{
    if (!element || m_elements.count(element->GetKey()))
        return false;
    const int key = element->GetKey();
    m_elements.emplace(key, std::move(element));
    return true;
}

IPresentationElement* IPresentationContainer::FindElement(int key) const
{
    const auto found = m_elements.find(key);
    return found == m_elements.end() ? nullptr : found->second.get();
}

std::unique_ptr<IPresentationElement> IPresentationContainer::RemoveElement(int key)
{
    const auto found = m_elements.find(key);
    if (found == m_elements.end())
        return nullptr;
    std::unique_ptr<IPresentationElement> element = std::move(found->second);
    m_elements.erase(found);
    return element;
}

void IPresentationContainer::ForEachElement(const std::function<void(IPresentationElement&)>& visit) const
{
    for (const auto& [key, element] : m_elements)
        visit(*element);
}
