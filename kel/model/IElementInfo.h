// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "zed/dict/TDictObjects.h"
#include "zed/dict/TDictType.h"
#include "zed/value/TEntitySpec.h"

#include <memory>
#include <optional>
#include <string>

class TValue;

/// What the presentation code knows of one element of the dictionary (an
/// attribute, a directive argument, a record member or a set-of entry): whose
/// it is, how it is identified and named, its dictionary type and object, its
/// default, units and access, and where it stands in text and list output.
/// Builders fill one, hand it by reference to the constructors of fields,
/// labels, columns and text elements, which copy what they need.
///
/// The dictionary type and object are the info's own copies; copying an info
/// copies them again, so no two infos ever share one.
class KEL_EXPORT IElementInfo {
public:
    IElementInfo();
    IElementInfo(const TEntitySpec& entity, const std::string& name, const std::string& prefix);
    IElementInfo(const IElementInfo& other);
    IElementInfo& operator=(const IElementInfo& other);
    IElementInfo(IElementInfo&&) = default;
    IElementInfo& operator=(IElementInfo&&) = default;
    virtual ~IElementInfo();

    int GetID() const { return m_id; }
    unsigned int GetDT() const { return m_dt; }
    const TEntitySpec& GetEntity() const { return m_entity; }
    const std::string& GetPresentationName() const { return m_presentationName; }
    const std::string& GetName() const { return m_name; }
    const std::string& GetCompleteID() const { return m_completeId; }
    const std::string& GetPrefix() const { return m_prefix; }
    unsigned char HasDictType() const { return m_hasDictType; }
    /// The info's copy, of the most derived class (a consumer may downcast it); null when unset.
    const TDictType* GetDictType() const { return m_pDictType.get(); }
    /// A TDictArgument or a TDictAttribute; null when unset.
    const TDictValue* GetDictValue() const { return m_pDictValue.get(); }
    ZED_T_DICT_DEFAULT DefaultAllowed() const { return m_defaultAllowed; }
    const std::string& GetDefault() const { return m_default; }
    unsigned char GetRequired() const { return m_required; }
    const std::string& GetUnits() const { return m_units; }
    /// What the element is, in its definer's words (a MIB's DESCRIPTION); may be empty.
    const std::string& GetDescription() const { return m_description; }
    /// The values a number may take when narrower than its kind's (a MIB's range).
    const std::optional<TDictRange>& GetRange() const { return m_range; }
    ZED_T_DICT_ACCESS GetAccess() const { return m_access; }
    unsigned int GetMaxSize() const { return m_maxSize; }
    unsigned char IsDisplayed() const { return m_isDisplayed; }
    int GetIsSetOfElement() const { return m_isSetOfElement; }
    const std::string& GetKeyword() const { return m_keyword; }
    unsigned int GetStartOffset() const { return m_startOffset; }
    unsigned int GetStopOffset() const { return m_stopOffset; }
    unsigned int GetMaxColWidth() const { return m_maxColWidth; }
    const std::string& GetDefaultValue() const { return m_defaultValue; }

    void SetID(int id) { m_id = id; }
    void SetDT(unsigned int dt) { m_dt = dt; }
    void SetEntity(const TEntitySpec& entity) { m_entity = entity; }
    void SetPrefix(const std::string& prefix) { m_prefix = prefix; }
    void SetPresentationName(const std::string& name) { m_presentationName = name; }
    void SetName(const std::string& name) { m_name = name; }
    void SetCompleteID(const std::string& id) { m_completeId = id; }
    /// Does not change HasDictType: callers set both.
    void SetHasDictType(unsigned char has) { m_hasDictType = has; }
    void SetDictType(const TDictType& type);
    /// Sets both from a value: its dictionary type when its data type carries
    /// one and it has it, else none.
    void SetDictTypeOf(const TValue& value);
    /// What every element inside a composite field (a record's member, a
    /// set's element, an attribute's identifier or value) is: of the data type
    /// and, when given, the dictionary type, displayed, optional, without units
    /// or complete identifier, with the access given. Identity and names are
    /// the caller's.
    void SetAsInnerElement(unsigned int dt, const TDictType* type, ZED_T_DICT_ACCESS access);
    /// Keeps a copy of an argument or an attribute; anything else (or null) leaves none.
    void SetDictValue(const TDictValue* value);
    void SetDefaultAllowed(ZED_T_DICT_DEFAULT policy) { m_defaultAllowed = policy; }
    void SetDefault(const std::string& text) { m_default = text; }
    void SetRequired(unsigned char required) { m_required = required; }
    void SetUnits(const std::string& units) { m_units = units; }
    void SetDescription(const std::string& description) { m_description = description; }
    void SetRange(const std::optional<TDictRange>& range) { m_range = range; }
    void SetAccess(ZED_T_DICT_ACCESS access) { m_access = access; }
    void SetMaxSize(unsigned int size) { m_maxSize = size; }
    void SetIsDisplayed(unsigned char displayed) { m_isDisplayed = displayed; }
    void SetIsSetOfElement(int isElement) { m_isSetOfElement = isElement; }
    void SetKeyword(const std::string& keyword) { m_keyword = keyword; }
    void SetStartOffset(unsigned int offset) { m_startOffset = offset; }
    void SetStopOffset(unsigned int offset) { m_stopOffset = offset; }
    void SetMaxColWidth(unsigned int width) { m_maxColWidth = width; }
    void SetDefaultValue(const std::string& text) { m_defaultValue = text; }

private:
    int m_isSetOfElement = 0;
    unsigned char m_isDisplayed = 1;
    int m_id = 0;
    unsigned int m_dt = 0;
    TEntitySpec m_entity;
    std::string m_presentationName;
    std::string m_name;
    std::string m_completeId;
    std::string m_prefix;
    unsigned char m_hasDictType = 0;
    /// Shared only so that consumers may Share() the type; never shared between infos.
    std::shared_ptr<const TDictType> m_pDictType;
    std::unique_ptr<TDictValue> m_pDictValue;
    ZED_T_DICT_DEFAULT m_defaultAllowed = 0;
    std::string m_default;
    unsigned char m_required = 0;
    std::string m_units;
    std::string m_description;
    std::optional<TDictRange> m_range;
    ZED_T_DICT_ACCESS m_access = 3;
    unsigned int m_maxSize = 0;
    std::string m_keyword;
    /// Producers of text and list output set these three; the constructors
    /// leave them for them (zero here rather than indeterminate).
    unsigned int m_startOffset = 0;
    unsigned int m_stopOffset = 0;
    unsigned int m_maxColWidth = 0;
    std::string m_defaultValue;
};
