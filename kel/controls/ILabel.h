// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QColor>
#include <QLabel>
#include <QPointer>
#include <QPoint>
#include <QSize>

#include <string>

class IElementInfo;
class KELConfigContext;

/// The control of a label: its text in the application's bold font on the
/// window's background, flat, or in a pressed frame with the text 2 pixels in.
class KEL_EXPORT IExtendedStatic : public QLabel {
public:
    explicit IExtendedStatic(QWidget* parent = nullptr);
    ~IExtendedStatic() override;

    void SetColor(const QColor& color) { m_color = color; }
    void SetRaised(bool raised) { m_raised = raised; }
    bool IsRaised() const { return m_raised; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_raised = false;
    QColor m_color;
};

/// The label of a form line: the element's presentation name ("*" in front
/// when required), or the name the user gave it under the key CompleteID +
/// ".PName", followed by string 4018.
class KEL_EXPORT ILabel {
public:
    static constexpr int kTextDepth = 2;  // how far a pressed label's text moves in

    ILabel(KELConfigContext* context, IElementInfo& info, QWidget* parent);
    ILabel(const ILabel&) = delete;
    ILabel& operator=(const ILabel&) = delete;
    ~ILabel();

    /// Makes the control with the counter's id (advanced); throws ICreationFailedException when it cannot.
    void Create(unsigned int& counter);
    QSize GetSize() const { return m_size; }
    QPoint GetCoordinates() const { return m_coordinates; }
    QPoint Move(const QPoint& topLeft);
    void ResetSize(int width);
    const std::string& GetPresentationName() const { return m_presentationName; }
    void SetPresentationName(const std::string& name);
    const std::string& GetCustomizedName() const { return m_customizedName; }
    const std::string& LabelText() const { return m_labelText; }
    bool IsRequired() const { return m_required; }
    void ShowWindow();
    void HideWindow();
    void SetLabelColor(const QColor& color);
    void SetLabelRaised(bool raised);
    IExtendedStatic* GetControl() const { return m_pStatic; }

    bool operator==(const ILabel& other) const { return m_pStatic == other.m_pStatic; }
    bool operator!=(const ILabel& other) const { return !(*this == other); }

private:
    void Measure();

    bool m_required;
    QWidget* m_pParent;
    std::string m_presentationName;
    std::string m_customizedName;
    std::string m_labelText;
    QPointer<IExtendedStatic> m_pStatic;  // a child of the parent; deleted with the label
    QSize m_size{0, 0};
    QPoint m_coordinates;
};
