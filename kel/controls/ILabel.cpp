// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/ILabel.h"
#include "kel/frame/KELString.h"

#include "kel/config/KELConfigContext.h"
#include "kel/fields/IField.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/ICreationFailedException.h"
#include "kel/frame/KELResources.h"
#include "kel/model/IElementInfo.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

namespace {

QFont BoldFont()
{
    const IApplication* app = GetKELapp();
    return app ? *app->GetBoldFont() : QFont();
}

}  // namespace

IExtendedStatic::IExtendedStatic(QWidget* parent) : QLabel(parent), m_color(palette().color(QPalette::WindowText)) {}

IExtendedStatic::~IExtendedStatic() = default;

void IExtendedStatic::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Button));
    QRect textRect = rect();
    if (m_raised) {
        QStyleOptionButton option;
        option.initFrom(this);
        option.rect = rect();
        option.state |= QStyle::State_Sunken;
        style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, this);
        textRect.translate(ILabel::kTextDepth, ILabel::kTextDepth);
    }
    painter.setFont(BoldFont());
    painter.setPen(m_color);
    painter.drawText(textRect, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, text());
}

ILabel::ILabel(KELConfigContext* context, IElementInfo& info, QWidget* parent)
    : m_required(info.GetRequired() != 0), m_pParent(parent), m_presentationName(info.GetPresentationName())
{
    m_labelText = (m_required ? "*" : "") + info.GetPresentationName();
    m_customizedName = m_labelText;
    if (context)
        context->GetConfigString(info.GetName(), info.GetCompleteID() + ".PName", m_customizedName, m_labelText, 1);
}

ILabel::~ILabel() { delete m_pStatic.data(); }

void ILabel::Create(unsigned int& counter)
{
    auto* control = new IExtendedStatic(m_pParent);
    ZEDAssertCreationFailed(control != nullptr, KELResources::String(KELString::kFormWindowFailed));
    control->setProperty(KEL_CONTROL_ID_PROPERTY, counter++);
    control->setFont(BoldFont());
    control->setText(QString::fromStdString(m_customizedName + KELResources::String(KELString::kLabelEnd)));
    m_pStatic = control;
    Measure();
    control->resize(m_size);
    control->show();
}

void ILabel::Measure()
{
    const QFontMetrics metrics(BoldFont());
    const QString text = m_pStatic ? m_pStatic->text() : QString();
    m_size = QSize(metrics.horizontalAdvance(text), metrics.height() + 5);
}

QPoint ILabel::Move(const QPoint& topLeft)
{
    m_coordinates = topLeft;
    if (m_pStatic) {
        m_pStatic->move(topLeft);
        m_pStatic->update();
    }
    return m_coordinates;
}

void ILabel::ResetSize(int width)
{
    m_size.setWidth(width);
    if (m_pStatic) {
        m_pStatic->resize(m_size);
        m_pStatic->update();
    }
}

void ILabel::SetPresentationName(const std::string& name)
{
    m_customizedName = name;
    if (!m_pStatic)
        return;
    m_pStatic->setText(QString::fromStdString(name + KELResources::String(KELString::kLabelEnd)));
    Measure();
    m_pStatic->resize(m_size);
}

void ILabel::ShowWindow()
{
    if (m_pStatic)
        m_pStatic->show();
}

void ILabel::HideWindow()
{
    if (m_pStatic)
        m_pStatic->hide();
}

void ILabel::SetLabelColor(const QColor& color)
{
    if (m_pStatic) {
        m_pStatic->SetColor(color);
        m_pStatic->update();
    }
}

void ILabel::SetLabelRaised(bool raised)
{
    if (m_pStatic) {
        m_pStatic->SetRaised(raised);
        m_pStatic->update();
    }
}
