// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/forms/IInputForm.h"
#include "kel/forms/IInputOutputForm.h"
#include "kel/output/IOutputForm.h"
#include "kel/output/IOutputList.h"
#include "kel/output/KELEventLists.h"
#include "kel/frame/KELConsoleSink.h"

#include <QMainWindow>
#include <QPointer>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

class IConsole;
class IEntityTree;
class IWorkspaceManager;
class KELConfigContext;
class MiddleDocument;
class QComboBox;
class QLabel;
class QProgressBar;
class QPlainTextEdit;
class QPushButton;
class QSplitter;
class QTabWidget;
class TAsyncCall;
class TCall;
class TDictionary;
class TEntitySpec;

// The browser's main window: the network's tree on the left; an entity and a
// directive picked above or in the tree; the generated input forms and the
// entities' attributes (to refresh and apply) as tabbed documents in the
// centre, and below them the outputs of the document shown: its last reply as
// a form, the replies of a wildcard call as a list, the reply as text, and the
// event reports the network raised. The library's messages go to the console
// docked at the bottom.
class KelBrowserWindow : public QMainWindow {
public:
    // What the entity box offers; by default every instance (ListEntities).
    using EntityLister = std::function<std::vector<std::string>()>;

    KelBrowserWindow(const TDictionary& dictionary, KELConfigContext* context, EntityLister lister = {});
    ~KelBrowserWindow() override;

    // Every instance of the network, found by asking each class's instances with a wildcard Show.
    static std::vector<std::string> ListEntities(const TDictionary& dictionary);
    // Without asking anything: each named instance of the top class, and the
    // wildcard of each class below it ("Agent core-r1 Interface *"), for a
    // network whose instances are many or slow to ask for (the tree finds them).
    static std::vector<std::string> ListByClass(const TDictionary& dictionary, const std::vector<std::string>& tops);

    // The input form of the directive on the entity, in a tab of its own, with
    // its defaults and then what was last sent from such a form; a form of the
    // same entity and directive already open is brought forward instead, its
    // edits kept.
    bool OpenForm(const std::string& entity, const std::string& directive);
    IInputForm* GetForm() const { return m_form; }
    // Fills the request from the form and hands the call to its module without
    // waiting: the outputs and the console follow when the answer comes. False
    // when the form refused (the console says which line and why), the
    // operator did not confirm a Delete, the form already waits for an
    // answer, or the call could not be made.
    bool Send();
    // Gives up the call the document shown waits for (Cancel, Escape).
    void CancelCall();
    // Whether any call waits for its answer.
    bool IsBusy() const;
    // For a caller with nothing else to do (the tour, tests): the answers
    // come in; false when some are still out after most.
    bool WaitForCalls(std::chrono::milliseconds most = std::chrono::seconds(30));
    // How long a call may wait for its answer before it ends as "no answer"
    // (setting "Timeout" of section "Calls", in seconds; 30 by default).
    void SetCallTimeout(std::chrono::milliseconds timeout) { m_timeout = timeout; }
    std::string GetReplyText() const;
    std::string GetRequestText() const { return m_requestText; }

    // The entity's attributes (every partition) as an input-output form in a
    // tab of their own (the entity's earlier one brought forward), read at once.
    bool OpenAttributes(const std::string& entity);
    IInputOutputForm* GetAttributes() const { return m_attributes; }
    // Reads the attributes again (Show); sets the changed ones (Set), then
    // reads again. Without waiting, as Send; false when nothing was started.
    bool Refresh();
    bool Apply();

    IOutputForm* GetOutputForm() const { return m_outputForm; }
    IOutputList* GetOutputList() const { return m_outputList; }
    QTabWidget* GetOutputs() const { return m_outputs; }
    // One list per kind of event report that arrived, "Class : Event".
    QTabWidget* GetEventLists() const { return m_events->GetTabs(); }
    KELEventLists* GetEvents() const { return m_events; }
    /// Shows above the event lists what summary says (notifications refused
    /// or lost), asked again every second.
    void WatchNotifications(std::function<std::string()> summary);
    // Shows the output tab of that title.
    void ShowOutput(const QString& title);

    QTabWidget* GetDocuments() const { return m_documents; }
    QComboBox* GetEntityPick() const { return m_entities; }
    QComboBox* GetDirectivePick() const { return m_directives; }
    IEntityTree* GetTree() const { return m_tree; }
    IWorkspaceManager* GetWorkspaceManager() const { return m_workspace.get(); }
    // F1: the help of the element that has the focus, in the help dialog.
    void ShowHelp();
    // The console docked at the bottom; the host hands it to the application object.
    IConsole* GetConsole() const { return m_console; }
    void SetMessage(KEL_T_Severity severity, const std::string& text);
    // The console's first tab, a line per message: "[severity] text".
    std::string GetMessages() const;
    // Keeps what was sent from each form, and the recent workspaces, in the user file.
    void SaveSettings();
    // Whether the open workspace changed since it was opened or saved.
    bool IsWorkspaceChanged() const { return isWindowModified(); }

protected:
    // Asks before unsaved changes of an open workspace are lost; keeps the settings.
    void closeEvent(QCloseEvent* event) override;
    // Enter on an input form sends it.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void EntityChosen();
    void EntityTyped();
    void ShowEntity(const QString& entity);
    void FillEntities();
    void FillDirectives();
    void DirectiveChosen();
    void TreeSelectionChanged();
    void ShowReply(const std::string& text);
    void ShowOutputs(const TCall& call, unsigned int directive, const std::string& name);
    void ClearOutputs();
    void TakeEvents();
    /// The Text tab's title: with how many of its oldest lines went, if any.
    void TitleText();
    // Puts a document's page in the centre: in place of the page at index, or in a new tab.
    void PlaceDocument(QWidget* page, std::unique_ptr<MiddleDocument> document, int index);
    void CloseDocument(int index);
    void CloseAllDocuments();
    void DocumentChosen();
    int FindDocument(const std::string& kind, const std::string& title) const;
    MiddleDocument* ShownDocument() const;
    // The input or input-output form shown, if one is.
    IPresentationForm* ShownForm() const;
    void BuildMenus();
    bool OpenDocument(const std::string& kind, const std::string& path);
    bool ReadAttributes(bool showOutputs);
    bool StartCall(MiddleDocument& document, std::unique_ptr<TAsyncCall> call, const std::string& name,
                   std::function<void(TAsyncCall&)> answered);
    std::string FirstException(TCall& call) const;
    void ShowBusy();
    void WorkspaceChanged(bool changed);
    void ReadRecentWorkspaces();
    static void WorkspaceOpening(std::string name);
    static void WorkspaceOpened();
    static void WorkspaceClosing();

    static KelBrowserWindow* s_workspaceWindow;

    const TDictionary& m_dictionary;
    KELConfigContext* m_context;  // the application object's
    EntityLister m_lister;
    QComboBox* m_entities;
    QComboBox* m_directives;
    QSplitter* m_split;
    QTabWidget* m_documents;  // the forms, one tab each
    QPointer<IInputForm> m_form;
    QPointer<IInputOutputForm> m_attributes;
    QTabWidget* m_outputs;
    QPointer<IOutputForm> m_outputForm;
    QPointer<IOutputList> m_outputList;
    KELEventLists* m_events;
    QPushButton* m_send;
    QPushButton* m_refresh;
    QPushButton* m_apply;
    QLabel* m_waiting;
    QProgressBar* m_busy;
    QPushButton* m_cancel;
    QPlainTextEdit* m_reply;
    IConsole* m_console;
    IEntityTree* m_tree;
    std::unique_ptr<IWorkspaceManager> m_workspace;
    // The centre's documents by their page, as the workspace keeps them.
    std::map<QWidget*, std::unique_ptr<MiddleDocument>> m_pages;
    std::string m_requestText;
    int m_textDropped = 0;  // lines the Text output's bound has dropped
    bool m_opening = false;
    std::chrono::milliseconds m_timeout{30000};  // a workspace is being opened: its documents change nothing
};
