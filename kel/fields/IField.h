// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "zed/dict/ZedDictCodes.h"
#include "zed/value/TValue.h"

#include <QPoint>
#include <QPointer>
#include <QSize>
#include <QWidget>

#include <functional>
#include <memory>
#include <string>

class IContainer;
class IControlBase;
class IElementInfo;
class IPresentationForm;
class KELConfigContext;

/// The dynamic property under which every control keeps its control id.
inline constexpr const char* KEL_CONTROL_ID_PROPERTY = "controlId";

/// The editor of one dictionary element inside a generated form: the base of
/// every field kind. It keeps the element's identity, its place and size in
/// the container window, its help, its read-only state, its default policy and
/// an optional initial value, and declares the operations through which forms,
/// containers, composite fields and configuration code drive any field.
///
/// Faults are trace lines (source "KELField"); nothing is thrown but a
/// creation failure from Create.
///
/// The field's main control is a child window of its container; the field
/// deletes it when it goes (a control whose container went first is already
/// gone, which the guarded pointer notices).
class KEL_EXPORT IField {
public:
    IField();
    IField(IElementInfo& info, IContainer* container);
    virtual void HideWindow();
    virtual void ShowWindow();
    virtual ~IField();

    /// Makes the controls; id is the next free control id, advanced by the number used.
    virtual void Create(unsigned int& id, IElementInfo& info) = 0;
    virtual void GetValue(std::string& text) const = 0;
    virtual void SetToNotReturned() = 0;
    virtual void SetValue(const std::string& text) = 0;
    virtual void SetValue(const TValue& value) = 0;
    /// Appends this field's part of a request text.
    virtual void GetPartialRequest(std::string& request) = 0;
    virtual void FillWithConfig(const std::string& key) = 0;
    virtual void SaveContents(const std::string& key) const = 0;
    virtual bool ValueChanged() const;
    /// Writes the value to the trace.
    virtual void Dump() = 0;
    virtual void AddNewInSet();
    virtual void RemoveFromSet();
    virtual std::string GetHelp() const;
    virtual int IsSetOfElement();
    virtual int HasHelp();
    virtual void SizeHasChanged();
    virtual void MoveAndResize(const QPoint& position, const QSize& size);
    virtual QSize GetSize();
    virtual QPoint GetCoordinates();
    virtual QPoint Move(const QPoint& position);
    virtual QSize Resize(const QSize& size);
    /// Called back by the field's controls.
    virtual void ControlCallback(int code, void* data);
    virtual void SetInitialValue(std::unique_ptr<TValue> value);
    virtual bool RevertToInitial();
    virtual bool SetToNullValue() = 0;
    virtual bool SetToServerDefault() = 0;
    /// The value as a new TValue; null when there is none and always is false.
    virtual std::unique_ptr<TValue> GetTValue(bool always) = 0;

    QWidget* GetWindow() const { return m_pWnd; }
    IContainer* GetContainer() const { return m_pContainer; }
    void SetIndent(unsigned int indent) { m_indent = indent; }
    unsigned int GetIndent() const { return m_indent; }
    unsigned int GetDT() const { return m_dt; }
    unsigned int GetID() const { return m_id; }
    const std::string& GetCompleteID() const { return m_completeId; }
    ZED_T_DICT_DEFAULT DefaultAllowed() const { return m_defaultAllowed; }
    const std::string& GetDefault() const { return m_default; }
    int IsReadOnly() const { return m_readOnly; }
    IPresentationForm* GetParentForm() const;
    bool IsInitialValueSet() const { return m_initialValueSet; }
    const TValue* InitialValue() const { return m_pInitialValue.get(); }
    /// Stores the flag and answers the previous one: a caller that changes the
    /// value itself keeps the change from being recorded as the initial value.
    bool LockInitialValueSet(bool lock);
    /// By the default policy: the dictionary's text (1), the server's (2), else nothing.
    void SetToDefault();
    /// What the field shows now becomes its initial value, so that a form
    /// filled from defaults or saved contents reverts to them; nothing when it
    /// shows no value.
    void KeepValueAsInitial();
    /// The configuration context of the parent form; null without a form.
    KELConfigContext* ConfigurationContext() const;

protected:
    /// Copies place, container, window, indent, flags, help and default, not
    /// the identity or the initial value; for kinds that copy themselves.
    IField(const IField& other);
    IField& operator=(const IField& other);
    /// The kind's main control, made in Create; shown, as a control made after
    /// its container is shown would not be.
    void SetWindow(QWidget* window);
    /// Takes a control just made in Create into the form: a missing one is a
    /// creation failure (thrown); otherwise it gets the running control id
    /// (advanced by one), the application's regular font, the element's name
    /// and its help (the configured text, then what the dictionary says it
    /// takes: KELElementHelp) for assistive technology and F1, and the type's
    /// name as tooltip.
    void AdoptControl(QWidget* control, unsigned int& id, const IElementInfo& info);
    /// The same for a control of the field's value, which a read-only field
    /// shows as read-only and marks so.
    void AdoptControl(QWidget* window, IControlBase& control, unsigned int& id, const IElementInfo& info);
    /// The height of a one-line control in the font: the bounding box of
    /// "Text" plus 3 pixels. Measured once per font, not once per field.
    static int TextLineHeight(const QFont& font);
    /// The value of a kind edited as one text: null for an empty text unless
    /// always (then an empty value); an empty value marked default when the
    /// server gives the default and the text is that default's; else the
    /// converted text (null when it does not convert). Each with the field's id.
    std::unique_ptr<TValue> ScalarTValue(bool always, const std::function<std::unique_ptr<TValue>()>& makeEmpty,
                                         const std::function<std::unique_ptr<TValue>(const std::string&)>& convert);

    /// The text kept for this field under the form's key; false when there is none.
    bool ReadConfigText(const std::string& key, std::string& text) const;
    /// Keeps the text in the user file of the configuration context; without
    /// one traces "KEL : <kind>::SaveContents : user config file pointer is NULL  ".
    void SaveConfigText(const std::string& key, const std::string& text, const char* kind) const;

private:
    // Puts the window at the stored place and size; without one the problem is traced.
    void PlaceWindow(const char* problem);
    bool m_initialValueSet = false;
    std::unique_ptr<TValue> m_pInitialValue;
    int m_readOnly = 0;
    std::string m_help;
    int m_hasHelp = 0;
    int m_isSetOfElement = 0;
    unsigned int m_id = 0;
    std::string m_completeId;
    QPoint m_coordinates;
    QSize m_size{0, 0};
    IContainer* m_pContainer = nullptr;
    QPointer<QWidget> m_pWnd;
    unsigned int m_indent = 0;
    unsigned int m_dt = 0;
    ZED_T_DICT_DEFAULT m_defaultAllowed = 0;
    std::string m_default;
};
