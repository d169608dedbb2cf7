// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/KELTextField.h"

class QPlainTextEdit;

/// The field of a text (data type 3): several lines, growing with its text by
/// a step of lines up to a largest number (settings "MultiEdit IncLine" and
/// "MultiEdit MaxLine" of "Presentation Form"), then scrolling. Its saved
/// contents keep line ends as "\n" (and a backslash as "\\"): a setting
/// holds one line.
class KEL_EXPORT IFieldEditMulti : public KELTextField {
public:
    static constexpr int kWidth = 350;
    static constexpr int kDefaultMaxLines = 15;
    /// A read-only text shows whole, wrapped, up to this many lines.
    static constexpr int kMostReadOnlyLines = 200;
    static constexpr int kDefaultLineStep = 1;

    IFieldEditMulti(IElementInfo& info, IContainer* container);
    ~IFieldEditMulti() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    void GetValue(std::string& text) const override;
    void SetToNotReturned() override;
    void SetValue(const std::string& text) override;
    void SetValue(const TValue& value) override;
    void GetPartialRequest(std::string& request) override;
    /// True when the text differs from the one last put in by a value or a setting.
    bool ValueChanged() const override;
    std::unique_ptr<TValue> GetTValue(bool always) override;

    int GetMaxLines() const { return m_maxLines; }
    int GetLineStep() const { return m_lineStep; }
    /// How many lines the control shows now.
    int GetVisibleLines() const { return m_visibleLines; }

protected:
    const char* KindName() const override { return "IFieldEditMulti"; }
    const char* DumpName() const override { return "EditMulti"; }
    std::string ToSetting(const std::string& text) const override;
    std::string FromSetting(const std::string& text) const override;

private:
    /// Grows or shrinks the control to its text, by steps, within the largest
    /// number of lines; a change of size is passed up to the container.
    void FitToText();
    /// The lines the text takes as shown: its paragraphs, or, read-only and
    /// wrapped at the field's width, the lines they wrap to.
    int ShownLines() const;

    QPlainTextEdit* m_pEdit = nullptr;  // the window; a child of the container
    int m_maxLines = kDefaultMaxLines;
    int m_lineStep = kDefaultLineStep;
    int m_visibleLines = 1;
};
