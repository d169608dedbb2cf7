// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QWidget>

class KELCallControl;
class QLabel;
class QProgressBar;
class QPushButton;

/// A status line's part for the document shown: while its call is out, what
/// it waits for, a busy indicator and a way to give up (Cancel; the host
/// binds Escape to it too); empty otherwise.
class KEL_EXPORT KELCallStatus : public QWidget {
    Q_OBJECT
public:
    explicit KELCallStatus(QWidget* parent = nullptr);
    ~KELCallStatus() override;

    /// Shows the control's state; none shows nothing.
    void Show(const KELCallControl* calls);

signals:
    void CancelClicked();

private:
    QLabel* m_waiting;      // a child
    QProgressBar* m_busy;   // a child
    QPushButton* m_cancel;  // a child
};
