// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/forms/IPresentationForm.h"
#include "kel/output/IOutputBase.h"

class KELCallReply;
class TValue;

/// The outcome of one call as a scrolling form: three header lines (the entity
/// that answered, when, and the dictionary's text of the reply), then a line
/// per returned value, numbered from 0; an attribute list is opened into a
/// line per attribute. CleanPresentation empties it for the next reply.
class KEL_EXPORT IOutputForm : public IPresentationForm, public IOutputBase {
public:
    /// Identifiers of the header lines, below those of the values.
    static constexpr long kEntityLine = -3;
    static constexpr long kTimeLine = -4;
    static constexpr long kReplyTextLine = -5;

    explicit IOutputForm(KELConfigContext* context = nullptr, QWidget* parent = nullptr);
    ~IOutputForm() override;

    using IOutputBase::CreatePresentation;
    void CreatePresentation(const std::string& name, const KELCallReply& reply, unsigned int directiveId);
    /// Adds the line of one value under lineId (then advanced), named after
    /// the class's attribute (isArgument false) or the directive's argument of
    /// the value's identifier, or "Value <identifier>" when the dictionary has none.
    void AddValueField(const TEntitySpec& entity, const TValue& value, long& lineId, bool isArgument);
    void CleanPresentation();

    std::unique_ptr<IPresentationElement> CreateElement(IElementInfo& info) override;
    IPresentationContainer* CreateContainer() override;
    void PreCreate() override;
    void PostCreate() override;
    void Dump() override;

    /// Whether the reply shown is an exception, which the form shows in the warning colour.
    bool ShowsException() const { return GetReplyType() != ZED_DICT_RESPONSE; }

private:
    void AddCommentLine(long id, int label, const std::string& text);
    void ShowAsException();
    /// The dictionary's text of the reply shown; may move the identifier to
    /// the common exceptions' directive.
    std::string ReplyText(const KELCallReply& reply);
};
