// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/ICommentLine.h"

#include "kel/fields/IField.h"
#include "kel/frame/IApplication.h"

#include <QWidget>

ICommentLine::ICommentLine(IElementInfo& info, IContainer* container, unsigned int& counter)
    : IFormLine(info, container, counter)
{
    QWidget* window = GetField() ? GetField()->GetWindow() : nullptr;
    if (!window)
        return;
    if (const IApplication* app = GetKELapp())
        window->setFont(*app->GetBoldFont());
    QPalette palette = window->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    window->setPalette(palette);
    window->setAutoFillBackground(false);
}

ICommentLine::~ICommentLine() = default;
