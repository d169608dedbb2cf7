// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Stand-ins for what a field meets in a form: a form window (what a
// presentation form offers its fields), a text field with a real control,
// and a composite field holding a field container whose children may be
// elements of a set.

#include "kel/controls/KELControl.h"
#include "kel/fields/IField.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/fields/KELFormContext.h"
#include "kel/fields/KELSetOfOwner.h"
#include "kel/model/IElementInfo.h"
#include "zed/value/TEntitySpec.h"
#include "zed/value/TScalarValues.h"

#include <QLineEdit>
#include <QWidget>

#include <string>
#include <vector>

class FakeForm : public QWidget, public KELFormContext {
public:
    IPresentationForm* GetPresentationForm() override { return nullptr; }
    KELConfigContext* GetFormConfigContext() const override { return context; }
    const TEntitySpec& GetCurrentEntity() const override { return entity; }
    unsigned int GetCurrentDirective() const override { return directive; }

    KELConfigContext* context = nullptr;
    TEntitySpec entity;
    unsigned int directive = 0;
};

inline IElementInfo Info(int id, unsigned int dt, const std::string& name = "Element")
{
    IElementInfo info(TEntitySpec(), name, "");
    info.SetID(id);
    info.SetDT(dt);
    info.SetPresentationName(name);
    info.SetCompleteID("Attr:" + std::to_string(id));
    return info;
}

// A field edited as one line of text, counting what is done to it.
class TextTestField : public IField {
public:
    TextTestField(IElementInfo& info, IContainer* container, int controls = 1)
        : IField(info, container), m_controls(controls)
    {
    }

    void Create(unsigned int& id, IElementInfo& info) override
    {
        m_edit = new KELControl<QLineEdit>(this, GetContainer());
        AdoptControl(m_edit, id, info);
        for (int i = 1; i < m_controls; ++i)
            AdoptControl(new QWidget(GetContainer()), id, info);
        SetWindow(m_edit);
        Resize(QSize(120, 20));
    }
    void GetValue(std::string& text) const override { text = m_edit ? m_edit->text().toStdString() : m_text; }
    void SetToNotReturned() override { SetValue(std::string("<not returned>")); }
    void SetValue(const std::string& text) override
    {
        m_text = text;
        if (m_edit)
            m_edit->setText(QString::fromStdString(text));
    }
    void SetValue(const TValue& value) override { SetValue(value.ToString()); }
    void GetPartialRequest(std::string& request) override { GetValue(request); }
    void FillWithConfig(const std::string&) override {}
    void SaveContents(const std::string&) const override {}
    void Dump() override {}
    bool SetToNullValue() override
    {
        ++nulls;
        SetValue(std::string());
        return true;
    }
    bool SetToServerDefault() override
    {
        ++serverDefaults;
        return true;
    }
    std::unique_ptr<TValue> GetTValue(bool always) override
    {
        return ScalarTValue(
            always, [] { return std::make_unique<TLatin1String>(); },
            [](const std::string& text) { return std::make_unique<TLatin1String>(text); });
    }

    std::string Text() const
    {
        std::string text;
        GetValue(text);
        return text;
    }

    int nulls = 0;
    int serverDefaults = 0;

private:
    int m_controls;
    QLineEdit* m_edit = nullptr;
    std::string m_text;
};

// A composite: its window is a field container of text fields. As the owner
// of a set it adds elements (ids from 100) and removes them by id.
class CompositeTestField : public IField, public KELSetOfOwner {
public:
    CompositeTestField(IElementInfo& info, IContainer* container) : IField(info, container) {}

    void Create(unsigned int& id, IElementInfo& info) override
    {
        m_container = new IFieldContainer(this, GetContainer());
        AdoptControl(m_container, id, info);
        SetWindow(m_container);
    }
    IFieldContainer& Container() { return *m_container; }
    TextTestField* Add(int id, bool setElement)
    {
        IElementInfo info = Info(id, 3, "Member " + std::to_string(id));
        info.SetIsSetOfElement(setElement ? 1 : 0);
        auto field = std::make_unique<TextTestField>(info, m_container);
        field->Create(m_container->NextControlId(), info);
        TextTestField* added = field.get();
        m_container->InsertField(std::move(field));
        return added;
    }

    void AddNewElement() override { Add(m_nextElement++, true); }
    void RemoveElement(unsigned int id) override { m_container->RemoveField(static_cast<int>(id)).reset(); }
    void SizeHasChanged() override { ++sizeChanges; }

    void GetValue(std::string& text) const override { text = "composite"; }
    void SetToNotReturned() override {}
    void SetValue(const std::string&) override {}
    void SetValue(const TValue&) override {}
    void GetPartialRequest(std::string&) override {}
    void FillWithConfig(const std::string&) override {}
    void SaveContents(const std::string&) const override {}
    void Dump() override {}
    bool SetToNullValue() override
    {
        ++nulls;
        return true;
    }
    bool SetToServerDefault() override
    {
        ++serverDefaults;
        return true;
    }
    std::unique_ptr<TValue> GetTValue(bool) override { return nullptr; }

    int nulls = 0;
    int serverDefaults = 0;
    int sizeChanges = 0;

private:
    IFieldContainer* m_container = nullptr;
    int m_nextElement = 100;
};
