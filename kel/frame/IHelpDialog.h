// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QDialog>

class QPlainTextEdit;

/// The modeless window in which the application object shows help texts. Its
/// text control carries the control identifier 4101.
class KEL_EXPORT IHelpDialog : public QDialog {
    Q_OBJECT
public:
    static constexpr int kTextControlId = 4101;

    explicit IHelpDialog(QWidget* parent = nullptr);
    ~IHelpDialog() override;

    void SetText(const QString& text);
    QString GetText() const;

private:
    QPlainTextEdit* m_pText;  // a child: the dialog owns it
};
