#include "kel/fields/IFieldSetOf.h"

#include "kel/controls/KELControl.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "zed/TException.h"
#include "zed/value/TSetOf.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QStyle>
#include <QStyleOptionButton>
#include <QToolButton>

#include <algorithm>

namespace {

template <class Visit>
void ForEachElement(IFieldContainer* container, Visit visit)
{
    if (!container)
        return;
    for (long at = container->GoFirst(); at >= 0;)
        visit(*container->GetNext(at));
}

} // namespace

// ---- the remove strip -------------------------------------------------------

IFieldSetOfButtonMap::IFieldSetOfButtonMap(IFieldSetOf& set, IFieldContainer& elements, QWidget* parent)
    : QWidget(parent), m_set(set), m_elements(elements)
{
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(QString::fromStdString(KELResources::String(4008)));
    setToolTip(QString::fromStdString(KELResources::String(4008)));
}

IFieldSetOfButtonMap::~IFieldSetOfButtonMap() = default;

QRect IFieldSetOfButtonMap::ButtonOf(IField& element) const
{
    const int y = element.GetCoordinates().y() + m_elements.y() - this->y();
    return QRect(0, y + 1, kButton, kButton);
}

IField* IFieldSetOfButtonMap::ElementAt(const QPoint& point) const
{
    IField* found = nullptr;
    ForEachElement(&m_elements, [&](IField& element) {
        if (!found && ButtonOf(element).contains(point))
            found = &element;
    });
    return found;
}

IField* IFieldSetOfButtonMap::Chosen() const
{
    IField* chosen = nullptr;
    int index = 0;
    ForEachElement(&m_elements, [&](IField& element) {
        if (index++ == m_chosen)
            chosen = &element;
    });
    return chosen;
}

void IFieldSetOfButtonMap::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    int index = 0;
    ForEachElement(&m_elements, [&](IField& element) {
        QStyleOptionButton option;
        option.initFrom(this);
        option.rect = ButtonOf(element);
        const bool pressed = option.rect.contains(m_pressed);
        option.state |= pressed ? QStyle::State_Sunken : QStyle::State_Raised;
        style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, this);
        const QRect sign = option.rect.adjusted(4, 7, -4, -7).translated(pressed ? 1 : 0, pressed ? 1 : 0);
        painter.fillRect(sign, palette().color(QPalette::ButtonText));
        if (hasFocus() && index == m_chosen) {
            QStyleOptionFocusRect focus;
            focus.initFrom(this);
            focus.rect = option.rect.adjusted(-1, -1, 1, 1);
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
        }
        ++index;
    });
}

void IFieldSetOfButtonMap::mousePressEvent(QMouseEvent* event)
{
    m_pressed = event->position().toPoint();  // Qt holds the mouse for us until the release
    update();
}

void IFieldSetOfButtonMap::mouseReleaseEvent(QMouseEvent* event)
{
    const QPoint released = event->position().toPoint();
    update();
    IField* element = nullptr;
    ForEachElement(&m_elements, [&](IField& candidate) {
        const QRect button = ButtonOf(candidate);
        if (!element && button.contains(m_pressed) && button.contains(released))
            element = &candidate;
    });
    m_pressed = QPoint(-1, -1);
    if (element)
        m_set.RemoveField(static_cast<int>(element->GetID()));
}

void IFieldSetOfButtonMap::keyPressEvent(QKeyEvent* event)
{
    const int count = static_cast<int>(m_elements.GetCount());
    switch (event->key()) {
    case Qt::Key_Up: m_chosen = std::max(0, m_chosen - 1); break;
    case Qt::Key_Down: m_chosen = std::min(std::max(count - 1, 0), m_chosen + 1); break;
    case Qt::Key_Delete:
    case Qt::Key_Space:
        if (IField* element = Chosen()) {
            m_set.RemoveField(static_cast<int>(element->GetID()));
            m_chosen = std::min(m_chosen, std::max(0, static_cast<int>(m_elements.GetCount()) - 1));
        }
        break;
    default: QWidget::keyPressEvent(event); return;
    }
    update();
}

// ---- the set ----------------------------------------------------------------

IFieldSetOf::IFieldSetOf(IElementInfo& info, IContainer* container) : KELElementsField(info, container) {}

IFieldSetOf::~IFieldSetOf() = default;

void IFieldSetOf::SetDictType(const TDictType* type)
{
    m_pElementType.reset();
    if (type && type->GetDictObjectType() == ZED_DICT_TYPE_CONSTRUCTOR)
        m_pElementType = type->ShareAs<TDictTypeConstructorOf>();
}

void IFieldSetOf::Create(unsigned int& id, IElementInfo& info)
{
    m_pFrame = new QWidget(GetContainer());
    SetFieldContainer(new IFieldContainer(this, m_pFrame));
    GetFieldContainer()->setObjectName(QStringLiteral("Field Container"));
    auto* add = new KELControl<QToolButton>(this, m_pFrame);
    AdoptControl(add, id, info);
    const QString addText = QString::fromStdString(KELResources::String(4007));
    if (const char* image = KELResources::Image(4007)) {
        QPixmap icon;
        if (icon.loadFromData(QByteArray(image), "XPM"))
            add->setIcon(QIcon(icon));
    }
    if (add->icon().isNull())
        add->setText(QStringLiteral("+"));
    add->setToolTip(addText);
    add->setAccessibleName(addText + QStringLiteral(" (") + add->accessibleName() + QLatin1Char(')'));
    add->setFocusPolicy(Qt::TabFocus);
    QObject::connect(add, &QToolButton::clicked, add, [this] { OnClicked(); });
    m_pAdd = add;
    m_pStrip = new IFieldSetOfButtonMap(*this, *GetFieldContainer(), m_pFrame);
    if (const IApplication* app = GetKELapp())
        m_pStrip->setFont(*app->GetBoldFont());
    m_access = info.GetAccess();
    if (info.HasDictType())
        SetDictType(info.GetDictType());
    SetWindow(m_pFrame);
    Arrange();
}

bool IFieldSetOf::InitElementInfo()
{
    if (m_elementInfoReady)
        return true;
    if (!m_pElementType || !m_pElementType->GetElementType()) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldSetOf", this)
            << "KEL : IFieldSetOf::InitElementInfo, m_pDictType must be valid, unable to create a new field !";
        return false;
    }
    const TDictType& element = *m_pElementType->GetElementType();
    m_elementInfo = IElementInfo();
    m_elementInfo.SetCompleteID("");
    m_elementInfo.SetID(static_cast<int>(element.GetID()));
    m_elementInfo.SetName(element.GetName());
    m_elementInfo.SetPresentationName(element.GetPresentationName());
    m_elementInfo.SetDT(element.GetDatatype());
    m_elementInfo.SetHasDictType(1);
    m_elementInfo.SetDictType(element);
    m_elementInfo.SetIsDisplayed(1);
    m_elementInfo.SetRequired(0);
    m_elementInfo.SetUnits("");
    m_elementInfo.SetAccess(m_access);
    m_elementInfo.SetIsSetOfElement(1);
    m_elementInfoReady = 1;
    return true;
}

void IFieldSetOf::OnClicked()
{
    if (m_access == ZED_ACCESS_READ_ONLY)
        return;
    CreateNewField();
    SizeHasChanged();
}

IField* IFieldSetOf::CreateNewField()
{
    if (!GetFieldContainer()) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldSetOf", this)
            << "KEL : IFieldSetOf::CreateNewField, m_pFieldContainer must be valid !";
        return nullptr;
    }
    if (!InitElementInfo())
        return nullptr;
    m_elementInfo.SetID(static_cast<int>(m_nextElementId++));
    IField* field = GetFieldContainer()->InsertField(m_elementInfo);
    m_pStrip->update();
    return field;
}

bool IFieldSetOf::Placed(const char* operation) const
{
    if (GetFieldContainer() && GetContainer())
        return true;
    KEL_TRACE(KEL_TRACE_PBLM, "KELFieldSetOf", this)
        << "KEL : IFieldSetOf::" << operation << ", m_pFieldContainer or m_pParentWnd must be valid !";
    return false;
}

// Strip on the left, elements right of it, the add button under them.
void IFieldSetOf::Arrange()
{
    GetFieldContainer()->PlaceElements();
    QSize elements;
    GetFieldContainer()->ComputeSize(elements);
    const int left = IFieldSetOfButtonMap::kButton + kStripGap;
    GetFieldContainer()->setGeometry(left, 0, std::max(elements.width(), 1), std::max(elements.height(), 1));
    m_pStrip->setGeometry(0, 0, IFieldSetOfButtonMap::kButton + 2, std::max(elements.height(), 1));
    const QSize button = m_pAdd->sizeHint();
    m_pAdd->setGeometry(left, elements.height() + 2, button.width(), button.height());
    m_pAdd->setEnabled(m_access != ZED_ACCESS_READ_ONLY);
    IField::Resize(QSize(left + std::max(elements.width(), button.width()), elements.height() + 2 + button.height()));
    m_pStrip->update();
}

void IFieldSetOf::SizeHasChanged()
{
    if (!Placed("SizeHasChanged"))
        return;
    Arrange();
    GetContainer()->SizeHasChanged();
}

QSize IFieldSetOf::GetSize() { return IField::GetSize(); }

QPoint IFieldSetOf::Move(const QPoint& position)
{
    if (!Placed("Move"))
        return GetCoordinates();
    IField::MoveAndResize(position, GetSize());
    return position;
}

QSize IFieldSetOf::Resize(const QSize& size)
{
    if (!Placed("Resize"))
        return GetSize();
    Arrange();
    return size.expandedTo(GetSize());
}

void IFieldSetOf::MoveAndResize(const QPoint& position, const QSize& size)
{
    if (!Placed("MoveAndResize"))
        return;
    Arrange();
    IField::MoveAndResize(position, GetSize().expandedTo(QSize(size.width(), GetSize().height())));
}

void IFieldSetOf::SetValue(const TValue& value)
{
    if (!GetFieldContainer()) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldSetOf", this) << "KEL : IFieldSetOf::SetValue, m_pFieldContainer must be valid !";
        return;
    }
    if (value.GetDatatype() != ZED_DT_SETOF && value.GetDatatype() != ZED_DT_SEQUENCEOF) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldSetOf", this) << "KEL IFieldSetOf::SetValue unknown data type: "
                                                         << value.GetDatatype();
        return;
    }
    const auto& set = static_cast<const TConstructedOf&>(value);
    ResizeTo(set.Size());
    std::size_t index = 0;
    ForEachElement([&](IField& element) {
        if (index < set.Size())
            element.SetValue(set.At(index++));
    });
    SetInitialValue(value.Clone());
    if (GetContainer())
        SizeHasChanged();
}

std::unique_ptr<TValue> IFieldSetOf::GetTValue(bool partial)
{
    std::unique_ptr<TConstructedOf> set;
    if (m_pElementType && m_pElementType->IsSequence())
        set = std::make_unique<TSequenceOf>(m_pElementType, GetID());
    else
        set = std::make_unique<TSetOf>(m_pElementType, GetID());
    ForEachElement([&](IField& element) {
        if (std::unique_ptr<TValue> part = element.GetTValue(partial))
            set->Add(std::move(part));
    });
    return set;
}

void IFieldSetOf::SetToNotReturned()
{
    KEL_TRACE(KEL_TRACE_PBLM, "KELFieldSetOf", this) << "KEL : IFieldSetOf::SetToNotReturned, not supported";
}

