// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QPoint>
#include <QSize>
#include <QWidget>

class IPresentationForm;
class KELConfigContext;
class KELFormContext;

/// The window base of every container of fields.
class KEL_EXPORT IContainerWnd : public QWidget {
public:
    explicit IContainerWnd(QWidget* parent = nullptr);
    ~IContainerWnd() override;
};

/// A window that holds fields: it finds the form, and through it the
/// configuration context, that the fields inside it use, and gives its
/// controls their tooltips.
class KEL_EXPORT IContainer : public IContainerWnd {
public:
    explicit IContainer(QWidget* parent = nullptr);
    ~IContainer() override;

    /// The nearest ancestor window that is a form; null when there is none.
    IPresentationForm* GetParentForm() const;
    KELFormContext* GetFormContext() const;
    /// The configuration context of that form, or null.
    KELConfigContext* GetConfigContext() const;

    /// Gives a control its tooltip, unless the application has tooltips off.
    void AddToolTip(QWidget* control, const QString& text) const;

    virtual void PlaceElements();
    virtual void SizeHasChanged();
    virtual void MoveAndResize(const QPoint& position, const QSize& size);
};
