// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <memory>

class IElementInfo;
class IPresentationContainer;
class IPresentationElement;
class KELConfigContext;

/// What a view that presents one entity (a form, a list, a text) offers the
/// generic creation code: the configuration context its display settings come
/// from, and the factories of its container and its elements.
class KEL_EXPORT IPresentation {
public:
    explicit IPresentation(KELConfigContext* context) : m_pContext(context) {}
    IPresentation(const IPresentation&) = default;
    IPresentation& operator=(const IPresentation&) = default;
    virtual ~IPresentation();
    virtual std::unique_ptr<IPresentationElement> CreateElement(IElementInfo& info) = 0;
    virtual IPresentationContainer* CreateContainer() = 0;

    KELConfigContext* ConfigurationContext() const { return m_pContext; }
    void SetConfigurationContext(KELConfigContext* context) { m_pContext = context; }

private:
    KELConfigContext* m_pContext;  // not owned
};
