#include "kel/fields/KELCompositeField.h"

#include "kel/fields/IFieldContainer.h"
#include "kel/frame/KELTrace.h"

KELCompositeField::KELCompositeField(IElementInfo& info, IContainer* container) : IField(info, container) {}

KELCompositeField::~KELCompositeField()
{
    // The inner fields go before their container window, which the base deletes.
    if (m_pFieldContainer)
        m_pFieldContainer->ClearAndDestroy();
}

long KELCompositeField::FirstElement() const { return m_pFieldContainer->GoFirst(); }

IField* KELCompositeField::NextElement(long& position) const { return m_pFieldContainer->GetNext(position); }

void KELCompositeField::SetValue(const std::string&)
{
    KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : " << KindName() << "::SetValue string not supported";
}

void KELCompositeField::FillWithConfig(const std::string&)
{
    KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : " << KindName() << "::FillWithConfig not supported";
}

void KELCompositeField::SaveContents(const std::string&) const
{
    KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : " << KindName() << "::SaveContents not supported";
}

void KELCompositeField::Dump()
{
    std::string text;
    GetValue(text);
    KEL_TRACE(KEL_TRACE_INFO, "KELField", this) << "KEL : " << DumpName() << " Value : " << text;
}

bool KELCompositeField::Placed(const char*) const { return m_pFieldContainer && GetContainer(); }

void KELCompositeField::SizeHasChanged()
{
    if (!Placed("SizeHasChanged"))
        return;
    m_pFieldContainer->PlaceElements();
    QSize size;
    m_pFieldContainer->ComputeSize(size);
    IField::Resize(size);
    GetContainer()->SizeHasChanged();
}

QSize KELCompositeField::Resize(const QSize& size)
{
    if (!Placed("Resize"))
        return GetSize();
    IField::MoveAndResize(GetCoordinates(), size);
    m_pFieldContainer->PlaceElements();
    return size;
}

void KELCompositeField::MoveAndResize(const QPoint& position, const QSize& size)
{
    if (!Placed("MoveAndResize"))
        return;
    IField::MoveAndResize(position, size);
    m_pFieldContainer->PlaceElements();
}
