// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QByteArray>
#include <QObject>

#include <functional>
#include <string>
#include <vector>

class KELConfigContext;
class KELWorkspaceDocument;
class QMainWindow;
class QMenu;

/// The store under the workspace manager: a workspace file keeps the main
/// window's geometry, the docks' and toolbars' state and the open documents
/// (kind, title, file), as JSON:
///
///     {"format": "kel-workspace 1", "geometry": "<base64>", "state": "<base64>",
///      "documents": [{"kind": "input-form", "title": "Echo", "path": "/ws/Echo.kdoc"}]}
///
/// A file is read whole and checked before anything changes, so a missing,
/// truncated or newer file leaves the open workspace as it was.
class KEL_EXPORT KELWorkspaceStore : public QObject {
public:
    static constexpr const char* kFormat = "kel-workspace 1";
    static constexpr int kMaxRecent = 4;
    static constexpr const char* kSuffix = ".kws";

    /// A document as a workspace file lists it: its kind, title and file.
    struct DocumentEntry {
        std::string kind;
        std::string title;
        std::string path;
    };
    /// What a workspace file holds: the main window's geometry and state, and its documents.
    struct Snapshot {
        QByteArray geometry;
        QByteArray state;
        std::vector<DocumentEntry> documents;
    };
    /// How the host lists its documents, opens one again and closes them all.
    struct DocumentHandler {
        std::function<std::vector<KELWorkspaceDocument*>()> list;
        std::function<bool(const DocumentEntry&)> open;
        std::function<void()> closeAll;
    };

    explicit KELWorkspaceStore(QMainWindow* frame);
    ~KELWorkspaceStore() override;

    void SetDocumentHandler(DocumentHandler handler) { m_handler = std::move(handler); }

    /// Reads and checks a workspace file; the reason when it cannot be used.
    static bool Read(const std::string& file, Snapshot& snapshot, std::string& error);
    /// The file holds what the frame shows now; written whole or not at all,
    /// and not at all when a document could not be saved. A temporary left by
    /// a save that was killed is removed.
    bool Write(const std::string& file, std::string& error);

    /// The workspace open now; empty when none is.
    const std::string& GetWorkspaceName() const { return m_name; }
    /// Recently opened or saved workspaces, newest first.
    const std::vector<std::string>& GetRecent() const { return m_recent; }
    void SetRecent(std::vector<std::string> recent);
    /// The recent workspaces as the context's files keep them (section 4068,
    /// "Recent 1" to "Recent 4"); Keep writes them to its user file and saves it.
    void ReadRecent(KELConfigContext* context);
    void KeepRecent(KELConfigContext* context) const;
    /// A menu of the recent workspaces, kept up to date; choosing one opens it.
    QMenu* GetRecentMenu();

protected:
    /// The toolkit's part of opening: documents closed, the frame and its
    /// docks restored, the documents opened again. The snapshot was checked.
    void Apply(const std::string& name, const Snapshot& snapshot);
    void Forget();
    void Remember(const std::string& name);
    QMainWindow* GetFrame() const { return m_pFrame; }
    /// While Write runs: the file being written (documents go beside it).
    const std::string& GetFileBeingWritten() const { return m_writing; }
    const DocumentHandler& Handler() const { return m_handler; }
    /// Chosen from the recent menu.
    virtual void OnWorkspace(const std::string& name) = 0;
    /// Saving a document while the workspace is saved; 0, after
    /// DocumentFailed, when it could not be saved.
    virtual int OnSaveDoc(QMainWindow* frame, KELWorkspaceDocument& document) = 0;
    void DocumentFailed(std::string reason) { m_documentError = std::move(reason); }

private:
    void FillRecentMenu();

    QMainWindow* m_pFrame;  // the host's main window; not owned
    DocumentHandler m_handler;
    std::string m_name;
    std::string m_writing;
    std::string m_documentError;
    std::vector<std::string> m_recent;
    QMenu* m_pRecentMenu = nullptr;  // a child of the frame once made
};
