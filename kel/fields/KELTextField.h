// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/IField.h"

class KELTypingLimit;
class QLineEdit;

/// What the kinds whose value is one text share: their saved contents are that
/// text (under the form's key and the field's complete id), their trace line
/// is "KEL : <kind> Value : <text>", and a change is a text other than the one
/// last put in.
class KEL_EXPORT KELTextField : public IField {
public:
    KELTextField(IElementInfo& info, IContainer* container);
    ~KELTextField() override;

    void FillWithConfig(const std::string& key) override;
    void SaveContents(const std::string& key) const override;
    void Dump() override;
    /// An empty text.
    bool SetToNullValue() override;
    /// The default's text, which GetTValue then reads back marked default.
    bool SetToServerDefault() override;
    /// The text shown is also what a change is measured against.
    void SetInitialValue(std::unique_ptr<TValue> value) override;

    /// The width of a one-line editor (IFieldEdit's, and the kinds made as it is).
    static constexpr int kLineWidth = 350;

protected:
    /// A one-line editor of the field's value: adopted (read-only when the
    /// field is), typed up to the element's most characters, the field's
    /// window, of a line's size. Its typing limit is the editor's child.
    template <class Editor>
    KELTypingLimit* SetUpLine(Editor* editor, unsigned int& id, IElementInfo& info)
    {
        AdoptControl(editor, *editor, id, info);
        return SetUpLineWindow(editor, info);
    }
    std::string CurrentText() const;
    /// The text a value put in showed: what a change is measured against.
    void RememberPutIn(const std::string& text) { m_putIn = text; }
    bool TextChangedSincePutIn() const;

    /// "IFieldEdit": names the kind in the message of a missing user file.
    virtual const char* KindName() const = 0;
    /// "Edit": names the kind in its trace line.
    virtual const char* DumpName() const = 0;
    /// How the text is kept in a setting, which holds one line.
    virtual std::string ToSetting(const std::string& text) const { return text; }
    virtual std::string FromSetting(const std::string& text) const { return text; }

private:
    KELTypingLimit* SetUpLineWindow(QLineEdit* editor, const IElementInfo& info);

    std::string m_putIn;
};
