// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <memory>
#include "kel/fields/KELFormContext.h"
#include "kel/output/IPresentation.h"
#include "zed/value/TEntitySpec.h"

#include <QScrollArea>

#include <string>

class IControlContainer;
class KELFilterBox;
class KELUndoRecorder;
class QUndoStack;
class IFormLine;
class TEntityClass;

/// The scrolling view of a form: it scrolls one child, the control container,
/// which holds the controls of every line. As a presentation it makes that
/// container and one form line per element; it also names the configuration
/// section of the form's settings, "<entity id> - <directive> - <n>".
///
/// The container is as large as its lines need and never shrinks with the
/// view, which shows scroll bars when it is larger than the view.
class KEL_EXPORT IPresentationForm : public QScrollArea, public IPresentation, public KELFormContext {
public:
    explicit IPresentationForm(KELConfigContext* context, QWidget* parent = nullptr);
    ~IPresentationForm() override;

    std::unique_ptr<IPresentationElement> CreateElement(IElementInfo& info) override;
    IPresentationContainer* CreateContainer() override;

    /// A control container, child of parent (the form when null); the first one becomes the form's.
    IControlContainer* CreateControlContainer(QWidget* parent = nullptr);
    /// A line on the form's control container, its controls numbered by the form's counter.
    std::unique_ptr<IFormLine> CreateFormLine(IElementInfo& info);

    virtual void PreCreate();
    virtual void PostCreate();
    void OnNewSize() override;
    virtual void PostProcessReply();
    /// The idle pass: every line that is not hidden updates its label's look.
    virtual int OnIdleUpdateCmdUI(unsigned long wParam, long lParam);

    IControlContainer* GetControlContainer() const { return m_pControlContainer; }
    /// The filter line above the lines.
    KELFilterBox* GetFilterBox() const { return m_pFilter; }
    /// Shows only the lines whose label, help or value holds the text (all
    /// when empty), as typing into the filter line does.
    void ApplyFilter(const QString& text);
    /// The undo and redo of the operator's edits of the form's values (Ctrl+Z,
    /// Ctrl+Shift+Z): a line's typing, a choice, a set element added or
    /// removed, a revert or a default is each one step.
    QUndoStack* GetUndoStack() const;
    /// Whether a step can be undone or redone now, what was just typed
    /// counting as one (a menu asks before it shows).
    bool CanUndo() const;
    bool CanRedo() const;
    /// A refresh or a send: nothing undone before it can be redone, and what
    /// the form shows now is what the next step starts from. A reply that
    /// refreshes the form is one already.
    void UndoBoundary();
    std::string GetCurrentEntityText() const { return m_currentEntity; }
    void SetCurrentState(const char* entity, unsigned int directive);
    unsigned int& ControlIdCounter() { return m_controlId; }

    void GetSettingSectionName(std::string& out, long n) const;
    static void GetSettingSectionName(std::string& out, const char* entityId, long directive, long n);
    /// "(12,3,5)": the class codes down to the first 0.
    static void GetEntityID(std::string& out, const char* entitySpec);
    static void GetEntityID(std::string& out, const TEntityClass& entityClass);

    /// What the form's fields learn of it.
    IPresentationForm* GetPresentationForm() override { return this; }
    KELConfigContext* GetFormConfigContext() const override { return ConfigurationContext(); }
    const TEntitySpec& GetCurrentEntity() const override { return m_entity; }
    unsigned int GetCurrentDirective() const override { return m_currentDirective; }
    std::string GetSettingSection() const override;

protected:
    /// Forgets the control container (a form that deletes it calls this first).
    void ForgetControlContainer() { m_pControlContainer = nullptr; }
    void resizeEvent(QResizeEvent* event) override;

private:
    IControlContainer* m_pControlContainer = nullptr;  // the scrolled widget; Qt owns it
    KELFilterBox* m_pFilter = nullptr;                 // a child
    KELUndoRecorder* m_pUndo = nullptr;                // a child
    QString m_filter;
    unsigned int m_controlId = 1;
    std::string m_currentEntity;
    TEntitySpec m_entity;  // the same, parsed, for the fields
    unsigned int m_currentDirective = 0;
};
