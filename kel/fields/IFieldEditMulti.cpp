// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldEditMulti.h"
#include "kel/frame/KELString.h"

#include "kel/controls/KELControl.h"
#include "kel/fields/IContainer.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "zed/value/TScalarValues.h"

#include <QFontMetrics>
#include <QPlainTextEdit>
#include <QTextLayout>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace {

// A configuration value holds one line: line ends and the escape itself are escaped.
std::string Escaped(const std::string& text)
{
    std::string out;
    for (char c : text) {
        if (c == '\\')
            out += "\\\\";
        else if (c == '\n')
            out += "\\n";
        else if (c == '\r')
            out += "\\r";
        else
            out += c;
    }
    return out;
}

std::string Unescaped(const std::string& text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char next = text[++i];
        out += next == 'n' ? '\n' : next == 'r' ? '\r' : next;
    }
    return out;
}

}  // namespace

IFieldEditMulti::IFieldEditMulti(IElementInfo& info, IContainer* container) : KELTextField(info, container) {}

IFieldEditMulti::~IFieldEditMulti() = default;

void IFieldEditMulti::Create(unsigned int& id, IElementInfo& info)
{
    if (KELConfigContext* context = ConfigurationContext(); context && GetKELapp()) {
        GetKELapp()->GetConfigInt(context, "Presentation Form", "MultiEdit MaxLine", m_maxLines, kDefaultMaxLines, 1);
        GetKELapp()->GetConfigInt(context, "Presentation Form", "MultiEdit IncLine", m_lineStep, kDefaultLineStep, 1);
    }
    m_maxLines = std::max(1, m_maxLines);
    m_lineStep = std::max(1, m_lineStep);
    auto* edit = new KELControl<QPlainTextEdit>(this, GetContainer());
    AdoptControl(edit, id, info);
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit->setTabChangesFocus(true);  // Tab leaves the field, as in every other field
    edit->document()->setDocumentMargin(1);
    if (IsReadOnly()) {
        // A value to read shows whole: long lines wrap and the field grows,
        // never a scroll bar drawn over the text.
        edit->setLineWrapMode(QPlainTextEdit::WidgetWidth);
        edit->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        edit->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        m_maxLines = std::max(m_maxLines, kMostReadOnlyLines);
        edit->setReadOnly(true);
        edit->setFrameShape(QFrame::NoFrame);
        IControlBase::ShowAsReadOnly(edit);
        edit->SetFlag(1);
    }
    QObject::connect(edit, &QPlainTextEdit::textChanged, edit, [this] { FitToText(); });
    m_pEdit = edit;
    SetWindow(edit);
    m_visibleLines = 0;
    FitToText();
}

void IFieldEditMulti::FitToText()
{
    if (!m_pEdit)
        return;
    const int lines = ShownLines();
    // Whole steps of lines, never more than the largest number.
    const int wanted = std::min(m_maxLines, 1 + (lines - 1 + m_lineStep - 1) / m_lineStep * m_lineStep);
    if (wanted == m_visibleLines)
        return;
    m_visibleLines = wanted;
    // A scroll bar only once the largest number of lines is reached: below it the control grows instead.
    m_pEdit->setVerticalScrollBarPolicy(wanted < m_maxLines ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    const QFontMetrics metrics(m_pEdit->font());
    const int frame = 2 * m_pEdit->frameWidth() + 2 * static_cast<int>(m_pEdit->document()->documentMargin()) + 4;
    const QSize before = GetSize();
    Resize(QSize(kWidth, metrics.lineSpacing() * wanted + frame + 3));
    if (before.isValid() && before != GetSize() && GetContainer())
        GetContainer()->SizeHasChanged();
}

int IFieldEditMulti::ShownLines() const
{
    if (m_pEdit->lineWrapMode() == QPlainTextEdit::NoWrap)
        return std::max(1, m_pEdit->document()->blockCount());
    // Wrapped as the control will wrap it at the field's width, with the same
    // text engine: a control not yet shown has no width of its own to ask.
    const qreal width =
        kWidth - 2 * m_pEdit->frameWidth() - 2 * m_pEdit->document()->documentMargin() - m_pEdit->cursorWidth();
    QTextOption option = m_pEdit->document()->defaultTextOption();
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    int lines = 0;
    for (QTextBlock block = m_pEdit->document()->begin(); block.isValid(); block = block.next()) {
        QTextLayout layout(block.text(), m_pEdit->font());
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
            line.setLineWidth(width);
        layout.endLayout();
        lines += std::max(1, layout.lineCount());
    }
    return std::max(1, lines);
}

void IFieldEditMulti::GetValue(std::string& text) const
{
    text = m_pEdit ? m_pEdit->toPlainText().toStdString() : std::string();
}

void IFieldEditMulti::SetToNotReturned() { SetValue(KELResources::String(KELString::kNotReturned)); }

void IFieldEditMulti::SetValue(const std::string& text)
{
    RememberPutIn(text);
    if (m_pEdit)
        m_pEdit->setPlainText(QString::fromStdString(text));
}

void IFieldEditMulti::SetValue(const TValue& value) { SetValue(value.ToString()); }

void IFieldEditMulti::GetPartialRequest(std::string& request) { GetValue(request); }

std::string IFieldEditMulti::ToSetting(const std::string& text) const { return Escaped(text); }

std::string IFieldEditMulti::FromSetting(const std::string& text) const { return Unescaped(text); }

bool IFieldEditMulti::ValueChanged() const { return TextChangedSincePutIn(); }

std::unique_ptr<TValue> IFieldEditMulti::GetTValue(bool always)
{
    return ScalarTValue(
        always, [] { return std::make_unique<TLatin1String>(); },
        [](const std::string& text) { return std::make_unique<TLatin1String>(text); });
}
