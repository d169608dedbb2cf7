// SPDX-License-Identifier: BSD-3-Clause
#include "zed/dict/TDictObjects.h"

#include "zed/ZedText.h"

#include <algorithm>

TDictValue::~TDictValue() = default;

TDictArgument::~TDictArgument() = default;
std::unique_ptr<TDictValue> TDictArgument::Clone() const { return std::make_unique<TDictArgument>(*this); }

TDictAttribute::~TDictAttribute() = default;
std::unique_ptr<TDictValue> TDictAttribute::Clone() const { return std::make_unique<TDictAttribute>(*this); }

const TDictArgument* TDictReply::FindArgument(unsigned int id) const
{
    return ZedFindIf(m_arguments, [&](const TDictArgument& a) { return a.GetID() == id; });
}

const TDictReply* TDictDirective::FindReply(ZED_T_DICT_OBJECT_TYPE kind, unsigned int code) const
{
    const auto& replies = kind == ZED_DICT_EXCEPTION ? m_exceptions : m_responses;
    if (kind != ZED_DICT_EXCEPTION && kind != ZED_DICT_RESPONSE)
        return nullptr;
    return ZedFindIf(replies, [&](const TDictReply& r) { return r.GetReplyCode() == code; });
}

const TDictArgument* TDictDirective::FindRequestArgument(unsigned int id) const
{
    return ZedFindIf(m_request, [&](const TDictArgument& a) { return a.GetID() == id; });
}

const TDictArgument* TDictDirective::FindRequestArgument(const std::string& name) const
{
    return ZedFindNamed(m_request, name);
}

TDictClass::TDictClass() = default;
TDictClass::~TDictClass() = default;

const TDictClass* TDictClass::FindChild(unsigned int code) const
{
    return ZedFindIf(m_children, [&](const TDictClass& child) { return child.GetCode() == code; });
}

const TDictClass* TDictClass::FindChild(const std::string& name) const { return ZedFindNamed(m_children, name); }

const TDictAttribute* TDictClass::FindAttribute(unsigned int id) const
{
    return ZedFindIf(m_attributes, [&](const TDictAttribute& a) { return a.GetID() == id; });
}

const TDictAttribute* TDictClass::FindAttribute(const std::string& name) const
{
    return ZedFindNamed(m_attributes, name);
}

const TDictDirective* TDictClass::FindDirective(unsigned int id) const
{
    return ZedFindIf(m_directives, [&](const TDictDirective& d) { return d.GetID() == id; });
}

const TDictDirective* TDictClass::FindDirective(const std::string& name) const
{
    return ZedFindNamed(m_directives, name);
}

const TDictEvent* TDictClass::FindEvent(unsigned int id) const
{
    return ZedFindIf(m_events, [&](const TDictEvent& e) { return e.GetID() == id; });
}
