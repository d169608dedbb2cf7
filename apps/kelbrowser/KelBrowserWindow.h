// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/console/KELDocumentArea.h"
#include "kel/console/KELEntityPicks.h"
#include "kel/forms/IInputForm.h"
#include "kel/forms/IInputOutputForm.h"
#include "kel/frame/KELConsoleSink.h"
#include "kel/output/IOutputForm.h"
#include "kel/output/IOutputList.h"
#include "kel/output/KELEventLists.h"
#include "kel/output/KELOutputPanel.h"

#include <QMainWindow>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class IConsole;
class IEntityTree;
class IWorkspaceManager;
class KELCallStatus;
class KELConfigContext;
class QComboBox;
class QPushButton;
class TDictionary;

// The browser's main window, an assembly of KEL's host kit: the network's
// tree (IEntityTree) on the left; the entity and directive picks
// (KELEntityPicks) above; the documents (KELDocumentArea: input forms and
// attributes, each with its calls) in the centre and below them the outputs
// of the document shown (KELOutputPanel); the console (IConsole) at the
// bottom, the call's status (KELCallStatus) in the status line, and the
// workspace (IWorkspaceManager) in the menu.
class KelBrowserWindow : public QMainWindow {
public:
    using EntityLister = KELEntityPicks::Lister;

    // The entity pick offers what the lister gives; by default every instance (ListEntities).
    KelBrowserWindow(const TDictionary& dictionary, KELConfigContext* context, EntityLister lister = {});
    ~KelBrowserWindow() override;

    static std::vector<std::string> ListEntities(const TDictionary& dictionary);
    static std::vector<std::string> ListByClass(const TDictionary& dictionary, const std::vector<std::string>& tops);

    // The documents' forms and their calls (KELDocumentArea).
    bool OpenForm(const std::string& entity, const std::string& directive);
    bool OpenAttributes(const std::string& entity);
    bool Send() { return m_documents->Send(); }
    bool Refresh() { return m_documents->Refresh(); }
    bool Apply() { return m_documents->Apply(); }
    void CancelCall() { m_documents->Cancel(); }
    IInputForm* GetForm() const { return m_documents->ShownInputForm(); }
    IInputOutputForm* GetAttributes() const { return m_documents->ShownAttributes(); }
    // Whether any call waits for its answer.
    bool IsBusy() const;
    // For a caller with nothing else to do (the tour, tests): the answers
    // come in; false when some are still out after most.
    bool WaitForCalls(std::chrono::milliseconds most = std::chrono::seconds(30));
    void SetCallTimeout(std::chrono::milliseconds timeout) { m_documents->SetCallTimeout(timeout); }
    std::string GetRequestText() const;

    // The outputs of the document shown (KELOutputPanel).
    std::string GetReplyText() const { return m_outputs->GetText(); }
    IOutputForm* GetOutputForm() const { return m_outputs->GetOutputForm(); }
    IOutputList* GetOutputList() const { return m_outputs->GetOutputList(); }
    QTabWidget* GetOutputs() const { return m_outputs; }
    QTabWidget* GetEventLists() const;
    KELEventLists* GetEvents() const { return m_outputs->GetEvents(); }
    void WatchNotifications(std::function<std::string()> summary) { m_outputs->WatchSummary(std::move(summary)); }

    // Loads a MIB module (a name, or a file by its path) into the network's
    // dictionary; false, said in the console, when it cannot be compiled.
    using MibLoader = std::function<bool(const std::string& module)>;
    // Offers Load MIB Module in the Workspace menu from now on.
    void SetMibLoader(MibLoader loader);
    bool LoadMibModule(const std::string& module) { return m_mibLoader && m_mibLoader(module); }
    void ShowOutput(const QString& title) { m_outputs->ShowTab(title); }

    KELDocumentArea* GetDocuments() const { return m_documents; }
    QComboBox* GetEntityPick() const { return m_picks->GetEntityPick(); }
    QComboBox* GetDirectivePick() const { return m_picks->GetDirectivePick(); }
    IEntityTree* GetTree() const { return m_tree; }
    IWorkspaceManager* GetWorkspaceManager() const { return m_workspace.get(); }
    // F1: the help of the element that has the focus, in the help dialog.
    void ShowHelp();
    // The console docked at the bottom; the host hands it to the application object.
    IConsole* GetConsole() const { return m_console; }
    void SetMessage(KEL_T_Severity severity, const std::string& text);
    // The console's first tab, a line per message: "[severity] text".
    std::string GetMessages() const;
    // Keeps the recent workspaces in the user file.
    void SaveSettings();
    // Whether the open workspace changed since it was opened or saved.
    bool IsWorkspaceChanged() const { return isWindowModified(); }

protected:
    // Asks before unsaved changes of an open workspace are lost; keeps the settings.
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildToolBar();
    void BuildCentre();
    void BuildDocks();
    void BuildWorkspace();
    void BuildMenus();
    void BuildWorkspaceMenu();
    void BuildViewMenu();
    void BuildEditMenu();
    void Connect();
    void DocumentShown();
    void Answered(const KELCallControl::Answer& answer);
    void TreeSelectionChanged();
    void ShowBusy();
    void WorkspaceChanged(bool changed);

    const TDictionary& m_dictionary;
    MibLoader m_mibLoader;
    KELConfigContext* m_context;  // the application object's
    EntityLister m_lister;
    IConsole* m_console = nullptr;
    KELEntityPicks* m_picks = nullptr;
    KELDocumentArea* m_documents = nullptr;
    KELOutputPanel* m_outputs = nullptr;
    KELCallStatus* m_status = nullptr;
    IEntityTree* m_tree = nullptr;
    QPushButton* m_defaults = nullptr;
    QPushButton* m_send = nullptr;
    QPushButton* m_attributes = nullptr;
    QPushButton* m_refresh = nullptr;
    QPushButton* m_apply = nullptr;
    std::unique_ptr<IWorkspaceManager> m_workspace;
};
