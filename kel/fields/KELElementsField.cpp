// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/KELElementsField.h"
#include "kel/frame/KELString.h"

#include "kel/controls/KELControl.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTimer>
#include <QToolButton>

#include <algorithm>

namespace {

template <class Visit>
void ForEachIn(const IFieldContainer& container, Visit visit)
{
    for (long at = container.GoFirst(); at >= 0;)
        visit(*container.GetNext(at));
}

}  // namespace

// ---- the remove strip -------------------------------------------------------

IFieldSetOfButtonMap::IFieldSetOfButtonMap(KELElementsField& owner, IFieldContainer& elements, QWidget* parent)
    : QWidget(parent), m_owner(owner), m_elements(elements)
{
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(QString::fromStdString(KELResources::String(KELString::kRemoveEntry)));
    setToolTip(QString::fromStdString(KELResources::String(KELString::kRemoveEntry)));
}

IFieldSetOfButtonMap::~IFieldSetOfButtonMap() = default;

QRect IFieldSetOfButtonMap::ButtonOf(IField& element) const
{
    const int y = element.GetCoordinates().y() + m_elements.y() - this->y();
    return QRect(0, y + 1, kButton, kButton);
}

IField* IFieldSetOfButtonMap::Chosen() const
{
    IField* chosen = nullptr;
    int index = 0;
    ForEachIn(m_elements, [&](IField& element) {
        if (index++ == m_chosen)
            chosen = &element;
    });
    return chosen;
}

void IFieldSetOfButtonMap::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    int index = 0;
    ForEachIn(m_elements, [&](IField& element) {
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
    ForEachIn(m_elements, [&](IField& candidate) {
        const QRect button = ButtonOf(candidate);
        if (!element && button.contains(m_pressed) && button.contains(released))
            element = &candidate;
    });
    m_pressed = QPoint(-1, -1);
    if (element)
        m_owner.RemoveField(static_cast<int>(element->GetID()));
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
            m_owner.RemoveField(static_cast<int>(element->GetID()));
            m_chosen = std::min(m_chosen, std::max(0, static_cast<int>(m_elements.GetCount()) - 1));
        }
        break;
    default: QWidget::keyPressEvent(event); return;
    }
    update();
}

// ---- the elements -------------------------------------------------------------

KELElementsField::KELElementsField(IElementInfo& info, IContainer* container) : KELCompositeField(info, container) {}

KELElementsField::~KELElementsField() = default;

void KELElementsField::CreateFrame(unsigned int& id, IElementInfo& info, bool caption)
{
    m_access = info.GetAccess();
    m_pFrame = new QWidget(GetContainer());
    SetFieldContainer(new IFieldContainer(this, m_pFrame));
    GetFieldContainer()->setObjectName(QStringLiteral("Field Container"));
    auto* add = new KELControl<QToolButton>(this, m_pFrame);
    AdoptControl(add, id, info);
    const QString addText = QString::fromStdString(KELResources::String(KELString::kAddEntry));
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
    if (caption) {
        const std::string& name = info.GetPresentationName().empty() ? info.GetName() : info.GetPresentationName();
        m_pCaption = new QLabel(QString::fromStdString(name + KELResources::String(KELString::kLabelEnd)), m_pFrame);
        if (const IApplication* app = GetKELapp())
            m_pCaption->setFont(*app->GetBoldFont());
        m_pCaption->setBuddy(add);
    }
    SetWindow(m_pFrame);
    Arrange();
    OfferFolding();
}

void KELElementsField::OnClicked()
{
    if (m_access == ZED_ACCESS_READ_ONLY)
        return;
    CreateNewField();
    SizeHasChanged();
}

bool KELElementsField::Placed(const char* operation) const
{
    if (GetFieldContainer() && GetContainer() && m_pFrame)
        return true;
    KEL_TRACE(KEL_TRACE_PBLM, "KELElements", this)
        << "KEL : " << KindName() << "::" << operation << ", m_pFieldContainer or m_pParentWnd must be valid !";
    return false;
}

// The caption on top, the strip on the left, the elements right of it, the add button under them.
void KELElementsField::Arrange()
{
    GetFieldContainer()->PlaceElements();
    QSize elements;
    GetFieldContainer()->ComputeSize(elements);
    const int top = m_pCaption ? m_pCaption->sizeHint().height() + 2 : 0;
    if (m_pCaption)
        m_pCaption->setGeometry(0, 0, m_pCaption->sizeHint().width(), m_pCaption->sizeHint().height());
    const int left = IFieldSetOfButtonMap::kButton + kStripGap;
    GetFieldContainer()->setGeometry(left, top, std::max(elements.width(), 1), std::max(elements.height(), 1));
    m_pStrip->setGeometry(0, top, IFieldSetOfButtonMap::kButton + 2, std::max(elements.height(), 1));
    const QSize button = m_pAdd->sizeHint();
    m_pAdd->setGeometry(left, top + elements.height() + 2, button.width(), button.height());
    m_pAdd->setEnabled(m_access != ZED_ACCESS_READ_ONLY);
    int width = left + std::max(elements.width(), button.width());
    if (m_pCaption)
        width = std::max(width, m_pCaption->sizeHint().width());
    IField::Resize(QSize(width, top + elements.height() + 2 + button.height()));
    m_pStrip->update();
}

void KELElementsField::SizeHasChanged()
{
    if (!Placed("SizeHasChanged"))
        return;
    Arrange();
    GetContainer()->SizeHasChanged();
}

QSize KELElementsField::GetSize() { return KELCompositeField::GetSize(); }

QPoint KELElementsField::Move(const QPoint& position)
{
    if (!Placed("Move"))
        return GetCoordinates();
    if (IsFolded()) {
        KELCompositeField::MoveAndResize(position, GetSize());
        return position;
    }
    IField::MoveAndResize(position, GetSize());
    PlaceFolding();
    return position;
}

QSize KELElementsField::Resize(const QSize& size)
{
    if (!Placed("Resize"))
        return GetSize();
    if (IsFolded())
        return GetSize();
    Arrange();
    return size.expandedTo(GetSize());
}

void KELElementsField::MoveAndResize(const QPoint& position, const QSize& size)
{
    if (!Placed("MoveAndResize"))
        return;
    if (IsFolded()) {
        KELCompositeField::MoveAndResize(position, size);
        return;
    }
    Arrange();
    IField::MoveAndResize(position, GetSize().expandedTo(QSize(size.width(), GetSize().height())));
    PlaceFolding();
}

void KELElementsField::GetValue(std::string& text) const
{
    if (!GetFieldContainer()) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELElements", this)
            << "KEL : " << KindName() << "::GetValue, m_pFieldContainer must be valid !";
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
    if (m_pStrip)
        m_pStrip->update();
}
