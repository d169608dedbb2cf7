// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/IOutputText.h"

#include "kel/model/IElementInfo.h"
#include "kel/model/IPresentationContainer.h"
#include "kel/output/ITextElement.h"

IOutputText::IOutputText(KELConfigContext* context, QWidget* parent) : QPlainTextEdit(parent), IPresentation(context)
{
    setReadOnly(true);
    setLineWrapMode(QPlainTextEdit::NoWrap);
}

IOutputText::~IOutputText() { SetContainer(nullptr); }

IPresentationContainer* IOutputText::CreateContainer()
{
    m_pContainer = std::make_unique<IPresentationContainer>();
    return m_pContainer.get();
}

std::unique_ptr<IPresentationElement> IOutputText::CreateElement(IElementInfo& info)
{
    const std::string& name = info.GetPresentationName().empty() ? info.GetName() : info.GetPresentationName();
    return std::make_unique<ITextElement>(static_cast<unsigned int>(info.GetID()), name);
}

void IOutputText::PostCreate() { Render(); }

void IOutputText::ProcessReply(const TReply& reply)
{
    IOutputBase::ProcessReply(reply);
    Render();
}

void IOutputText::Render()
{
    QString text;
    if (m_pContainer)
        m_pContainer->ForEachElement([&](IPresentationElement& element) {
            if (const auto* shown = dynamic_cast<const ITextElement*>(&element))
                text += QString::fromStdString(shown->GetName() + " = " + shown->GetText()) + QLatin1Char('\n');
        });
    setPlainText(text);
}
