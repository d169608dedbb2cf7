// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/output/IOutputBase.h"
#include "kel/output/IPresentation.h"

#include <QPlainTextEdit>

#include <memory>

/// An output as read-only text: a line "Name = value" per element, the value
/// as the access library prints it, rewritten after every reply.
class KEL_EXPORT IOutputText : public QPlainTextEdit, public IPresentation, public IOutputBase {
public:
    explicit IOutputText(KELConfigContext* context = nullptr, QWidget* parent = nullptr);
    ~IOutputText() override;

    IPresentationContainer* CreateContainer() override;
    std::unique_ptr<IPresentationElement> CreateElement(IElementInfo& info) override;
    void PostCreate() override;
    void ProcessReply(const TReply& reply) override;

    /// The text as it stands.
    QString Text() const { return toPlainText(); }

private:
    void Render();

    std::unique_ptr<IPresentationContainer> m_pContainer;
};
