#include "kel/fields/KELElementsField.h"

#include "kel/fields/IFieldContainer.h"
#include "kel/frame/KELTrace.h"

#include <QTimer>

long KELElementsField::FirstElement() const { return m_pFieldContainer->GoFirst(); }

IField* KELElementsField::NextElement(long& position) const { return m_pFieldContainer->GetNext(position); }

KELElementsField::KELElementsField(IElementInfo& info, IContainer* container) : IField(info, container) {}

KELElementsField::~KELElementsField()
{
    if (m_pFieldContainer)
        m_pFieldContainer->ClearAndDestroy();
}

void KELElementsField::GetValue(std::string& text) const
{
    if (!m_pFieldContainer) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELElements", this) << "KEL : " << KindName()
                                                        << "::GetValue, m_pFieldContainer must be valid !";
        return;
    }
    std::string joined;
    ForEachElement([&](IField& element) {
        std::string part;
        element.GetValue(part);
        joined += (joined.empty() ? "" : ",") + part;
    });
    text = "{" + joined + "}";
}

void KELElementsField::GetPartialRequest(std::string& request)
{
    if (m_pFieldContainer && m_pFieldContainer->GetCount() > 0)
        GetValue(request);
}

bool KELElementsField::SetToNullValue()
{
    ForEachElement([](IField& element) { element.SetToNullValue(); });
    return true;
}

bool KELElementsField::SetToServerDefault()
{
    ForEachElement([](IField& element) { element.SetToServerDefault(); });
    return true;
}

void KELElementsField::ResizeTo(std::size_t count)
{
    while (m_pFieldContainer->GetCount() > count)
        m_pFieldContainer->RemoveField().reset();
    while (m_pFieldContainer->GetCount() < count)
        if (!CreateNewField())
            break;
}

void KELElementsField::RemoveField(int id)
{
    std::unique_ptr<IField> removed = m_pFieldContainer ? m_pFieldContainer->RemoveField(id) : nullptr;
    if (!removed) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELElements", this) << "KEL : " << KindName() << "::RemoveField, id not found";
        return;
    }
    removed->HideWindow();
    QTimer::singleShot(0, m_pFieldContainer, [doomed = std::shared_ptr<IField>(std::move(removed))] {});
    SizeHasChanged();
}
