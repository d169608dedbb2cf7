#include "kel/fields/KELElementsField.h"

#include "kel/fields/IFieldContainer.h"
#include "kel/frame/KELTrace.h"

#include <QTimer>


KELElementsField::KELElementsField(IElementInfo& info, IContainer* container) : KELCompositeField(info, container) {}

KELElementsField::~KELElementsField() = default;

void KELElementsField::GetValue(std::string& text) const
{
    if (!GetFieldContainer()) {
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
    if (GetFieldContainer() && GetFieldContainer()->GetCount() > 0)
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
    while (GetFieldContainer()->GetCount() > count)
        GetFieldContainer()->RemoveField().reset();
    while (GetFieldContainer()->GetCount() < count)
        if (!CreateNewField())
            break;
}

void KELElementsField::RemoveField(int id)
{
    std::unique_ptr<IField> removed = GetFieldContainer() ? GetFieldContainer()->RemoveField(id) : nullptr;
    if (!removed) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELElements", this) << "KEL : " << KindName() << "::RemoveField, id not found";
        return;
    }
    removed->HideWindow();
    QTimer::singleShot(0, GetFieldContainer(), [doomed = std::shared_ptr<IField>(std::move(removed))] {});
    SizeHasChanged();
}
