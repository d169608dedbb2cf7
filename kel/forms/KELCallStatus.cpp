// SPDX-License-Identifier: BSD-3-Clause
#include "kel/forms/KELCallStatus.h"

#include "kel/forms/KELCallControl.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace {
constexpr int kBusyWidth = 120;
}

KELCallStatus::KELCallStatus(QWidget* parent)
    : QWidget(parent), m_waiting(new QLabel(this)), m_busy(new QProgressBar(this)),
      m_cancel(new QPushButton(QStringLiteral("Cancel"), this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_waiting, 1);
    layout->addWidget(m_busy);
    layout->addWidget(m_cancel);
    m_busy->setRange(0, 0);
    m_busy->setMaximumWidth(kBusyWidth);
    m_busy->setAccessibleName(QStringLiteral("Waiting for an answer"));
    m_cancel->setToolTip(QStringLiteral("Give up waiting for the answer (Escape)"));
    connect(m_cancel, &QPushButton::clicked, this, &KELCallStatus::CancelClicked);
    Show(nullptr);
}

KELCallStatus::~KELCallStatus() = default;

void KELCallStatus::Show(const KELCallControl* calls)
{
    const bool busy = calls && calls->IsBusy();
    m_busy->setVisible(busy);
    m_cancel->setVisible(busy);
    m_waiting->setText(busy ? QString::fromStdString("waiting for " + calls->GetWaitingFor()) : QString());
}
