// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/IHelpDialog.h"
#include "kel/frame/KELString.h"

#include "kel/frame/KELResources.h"

#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QVBoxLayout>

IHelpDialog::IHelpDialog(QWidget* parent) : QDialog(parent), m_pText(new QPlainTextEdit(this))
{
    setWindowTitle(QString::fromStdString(KELResources::String(KELString::kHelp)));
    setModal(false);
    m_pText->setReadOnly(true);
    m_pText->setProperty("controlId", kTextControlId);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::hide);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pText);
    layout->addWidget(buttons);
    resize(420, 300);
}

IHelpDialog::~IHelpDialog() = default;

void IHelpDialog::SetText(const QString& text) { m_pText->setPlainText(text); }

QString IHelpDialog::GetText() const { return m_pText->toPlainText(); }
