// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/console/IWorkspaceCallbackList.h"
#include "kel/console/KELWorkspaceStore.h"
#include "kel/frame/KELWorkspaceQuery.h"

#include <string>

/// The host's workspace manager: opening, saving and closing a workspace also
/// loads or saves the workspace settings of every configuration context, runs
/// the host's callbacks around it, and gives each unsaved document a file
/// beside the workspace. The host makes one and hands it to the application
/// object (SetWorkspaceManager).
class KEL_EXPORT IWorkspaceManager : public KELWorkspaceStore, public KELWorkspaceQuery {
public:
    explicit IWorkspaceManager(QMainWindow* frame);
    ~IWorkspaceManager() override;

    void SetSaveCallback(IWorkspaceCallbackList::Function function) { m_save.AddTail(function); }
    void SetPreOpenCallback(IWorkspaceOpenCallbackList::Function function) { m_preOpen.AddTail(function); }
    void SetPostOpenCallback(IWorkspaceCallbackList::Function function) { m_postOpen.AddTail(function); }
    void SetCloseCallback(IWorkspaceCallbackList::Function function) { m_close.AddTail(function); }
    void RemoveSaveCallback(IWorkspaceCallbackList::Function function) { m_save.Remove(function); }
    void RemovePreOpenCallback(IWorkspaceOpenCallbackList::Function function) { m_preOpen.Remove(function); }
    void RemovePostOpenCallback(IWorkspaceCallbackList::Function function) { m_postOpen.Remove(function); }
    void RemoveCloseCallback(IWorkspaceCallbackList::Function function) { m_close.Remove(function); }
    IWorkspaceCallbackList& GetSaveCallback() { return m_save; }
    IWorkspaceOpenCallbackList& GetPreOpenCallback() { return m_preOpen; }
    IWorkspaceCallbackList& GetPostOpenCallback() { return m_postOpen; }
    IWorkspaceCallbackList& GetCloseCallback() { return m_close; }

    /// False (after prompt 4042) when the file cannot be used; the open
    /// workspace is then left as it was.
    bool OpenWorkspace(const std::string& name, bool flag = true);
    /// Saves under the open workspace's name; asks for one when none is open.
    bool OnWorkspaceSave();
    bool OnWorkspaceSaveAs();
    /// Saves under that name (what Save As does once a name is chosen).
    bool SaveWorkspace(const std::string& name);
    void OnWorkspaceClose();
    void CloseWorkspace() { OnWorkspaceClose(); }
    void OnWorkspaceNew() {}
    void OnWorkspaceDelete() {}

    /// Asks the operator for a workspace file; 1 and the name when one was
    /// chosen. A name to save under gets the suffix ".kws" when it lacks it,
    /// so that opening shows it again.
    virtual int PromptWorkspaceNameFile(std::string& name, bool forSaving);
    static std::string WithWorkspaceSuffix(const std::string& name);

    bool GetOpenWorkspaceName(std::string& name) const override;

    /// The seven characters a file name cannot hold, as tokens "#@2#"...
    /// "#@9#" (1 and 5 are not used), and back.
    static void EncodeDocPath(std::string& path);
    static void DecodeDocPath(std::string& path);

protected:
    void OnWorkspace(const std::string& name) override;
    /// Saves a document beside the workspace: in the file it has there, else
    /// in a new "<title>.kdoc", or "<title>.kdoc.<n>" for the first n free
    /// (a title too long for a file name is cut, bytes that are not UTF-8
    /// become "_"). The file is replaced whole and never written through a
    /// link; 0 when it could not be written.
    int OnSaveDoc(QMainWindow* frame, KELWorkspaceDocument& document) override;

private:
    IWorkspaceCallbackList m_save;
    IWorkspaceOpenCallbackList m_preOpen;
    IWorkspaceCallbackList m_postOpen;
    IWorkspaceCallbackList m_close;
};
