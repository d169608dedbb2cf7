// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/KELCompositeField.h"

#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/controls/IControlBase.h"
#include "kel/fields/IContainer.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/fields/KELFormContext.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELTrace.h"
#include "zed/value/TValue.h"

#include <QLineEdit>
#include <QToolButton>

#include <algorithm>

namespace {

// The toggle stands in the gap between a line's label and its field.
constexpr int kToggleSize = 16;
constexpr int kToggleGap = 2;
// A folded field is at least as wide as a text field.
constexpr int kFoldedWidth = 350;

}  // namespace

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
    PlaceFolding();
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
    if (m_folded) {
        IField::Move(position);  // the window keeps its unfolded size for later
        PlaceFolding();
        return;
    }
    IField::MoveAndResize(position, size);
    m_pFieldContainer->PlaceElements();
    PlaceFolding();
}

QSize KELCompositeField::GetSize()
{
    if (!m_folded || !m_pSummary)
        return IField::GetSize();
    return QSize(std::max(kFoldedWidth, m_pSummary->sizeHint().width()), TextLineHeight(m_pSummary->font()));
}

void KELCompositeField::HideWindow()
{
    IField::HideWindow();
    for (QWidget* part : {static_cast<QWidget*>(m_pToggle), static_cast<QWidget*>(m_pSummary)})
        if (part)
            part->hide();
}

void KELCompositeField::ShowWindow()
{
    if (m_folded && m_pSummary)
        m_pSummary->show();
    else
        IField::ShowWindow();
    if (m_pToggle)
        m_pToggle->show();
}

void KELCompositeField::OfferFolding()
{
    QWidget* window = GetWindow();
    KELFormContext* form = GetContainer() ? GetContainer()->GetFormContext() : nullptr;
    if (!window || !window->parentWidget() || !form || dynamic_cast<IFieldContainer*>(GetContainer()))
        return;
    m_pToggle = new QToolButton(window->parentWidget());
    m_pToggle->setAutoRaise(true);
    m_pToggle->setArrowType(Qt::DownArrow);
    m_pToggle->setFocusPolicy(Qt::StrongFocus);
    m_pToggle->setAccessibleName(QStringLiteral("Fold"));
    m_pToggle->setToolTip(QStringLiteral("Fold to one line, or unfold"));
    m_pToggle->resize(kToggleSize, kToggleSize);
    QObject::connect(m_pToggle, &QToolButton::clicked, m_pToggle, [this] { SetFolded(!m_folded); });
    m_pSummary = new QLineEdit(window->parentWidget());
    m_pSummary->setAccessibleName(window->accessibleName());
    IControlBase::ShowAsReadOnly(m_pSummary);
    m_pSummary->hide();
    m_pToggle->show();
    std::string kept;
    if (KELConfigContext* context = form->GetFormConfigContext(); context && GetKELapp() && !FoldedKey().empty())
        GetKELapp()->GetConfigString(context, form->GetSettingSection(), FoldedKey(), kept, "", 1);
    m_folded = kept == "TRUE";
    if (m_folded) {
        m_folded = false;
        SetFolded(true);
    }
    PlaceFolding();
}

// The value as the access library writes it: a composite's own text is not one.
std::string KELCompositeField::FoldedText()
{
    const std::unique_ptr<TValue> value = GetTValue(false);
    return value ? value->ToString() : std::string();
}

std::string KELCompositeField::FoldedKey() const
{
    return GetCompleteID().empty() ? std::string() : GetCompleteID() + ".Folded";
}

void KELCompositeField::SetFolded(bool folded)
{
    if (!m_pToggle || folded == m_folded)
        return;
    m_folded = folded;
    m_pToggle->setArrowType(folded ? Qt::RightArrow : Qt::DownArrow);
    if (folded) {
        m_pSummary->setText(QString::fromStdString(FoldedText()));
        m_pSummary->setCursorPosition(0);
        GetWindow()->hide();
        m_pSummary->show();
    } else {
        m_pSummary->hide();
        GetWindow()->show();
    }
    PlaceFolding();
    // The form keeps the line's state for the next time it opens.
    KELFormContext* form = GetContainer() ? GetContainer()->GetFormContext() : nullptr;
    KELConfigContext* context = form ? form->GetFormConfigContext() : nullptr;
    if (IConfiguration* user = context ? context->GetUserConfigFile() : nullptr; user && !FoldedKey().empty())
        user->SetString(form->GetSettingSection(), FoldedKey(), folded ? "TRUE" : "FALSE", 1);
    if (GetContainer())
        GetContainer()->SizeHasChanged();
}

void KELCompositeField::PlaceFolding()
{
    if (!m_pToggle)
        return;
    const QPoint at = GetCoordinates();
    m_pToggle->move(std::max(0, at.x() - kToggleSize - kToggleGap), at.y());
    if (!m_folded)
        return;
    // The value may have changed since it was folded: a layout shows it as it is.
    const QString text = QString::fromStdString(FoldedText());
    if (m_pSummary->text() != text) {
        m_pSummary->setText(text);
        m_pSummary->setCursorPosition(0);
    }
    m_pSummary->setGeometry(QRect(at, GetSize()));
}
