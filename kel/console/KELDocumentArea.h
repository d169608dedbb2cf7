// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/console/IWorkspaceManager.h"
#include "kel/console/KELHostDocument.h"
#include "zed/value/TEntitySpec.h"

#include <QPointer>
#include <QTabWidget>

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

class IInputForm;
class IInputOutputForm;
class IMessageConsole;
class IPresentationForm;
class KELConfigContext;
class TDictionary;

/// A host's documents, a tab each: the input form of an entity's directive,
/// or an entity's attributes to read and apply. A document already open comes
/// forward when it is asked for again, its edits kept. Each has its calls
/// (KELCallControl): the area sends, reads and applies the document shown,
/// and tells of the answers that document gets. Enter on an input form sends
/// it. Attached to a workspace manager, the area's documents are the
/// workspace's: saved with it and opened again in their order.
class KEL_EXPORT KELDocumentArea : public QTabWidget {
    Q_OBJECT
public:
    /// The forms take their settings from the context; the calls speak to the console. Either may be null.
    KELDocumentArea(const TDictionary& dictionary, KELConfigContext* context, IMessageConsole* console,
                    QWidget* parent = nullptr);
    ~KELDocumentArea() override;

    /// The input form of the directive on the entity, with its defaults and
    /// then what was last sent from such a form; false when the entity or
    /// the directive is not the dictionary's.
    bool OpenInputForm(const std::string& entity, const std::string& directive);
    /// The entity's attributes (every partition), read at once.
    bool OpenAttributes(const std::string& entity);
    /// Opens a document's file of the kind; the console says why it could not.
    bool OpenFile(const std::string& kind, const std::string& path);

    /// The calls of the document shown; false when nothing was started.
    bool Send();
    bool Refresh();
    bool Apply();
    void Cancel();
    /// How long the calls of every document may wait for their answers.
    void SetCallTimeout(std::chrono::milliseconds timeout);

    KELHostDocument* Shown() const;
    /// The input or attributes form shown, if one is.
    IPresentationForm* ShownForm() const;
    IInputForm* ShownInputForm() const;
    IInputOutputForm* ShownAttributes() const;

    void Close(int index);
    void CloseAll();

    /// Makes the area's documents the workspace's, until either goes. The
    /// workspace's callbacks are plain functions: one area is attached at a time.
    void Attach(IWorkspaceManager& workspace);
    /// While quiet (a workspace opens or closes), changes are not told.
    void SetQuiet(bool quiet) { m_quiet = quiet; }

signals:
    /// Another document is shown, or none.
    void ShownChanged();
    /// Documents were opened, closed or moved.
    void Changed();
    /// A call of the document shown went out or ended.
    void BusyChanged();
    /// The document shown got an answer.
    void Answered(const KELCallControl::Answer& answer);
    /// A Create or Delete of the entity succeeded.
    void EntityChanged(const TEntitySpec& entity);
    /// A workspace finished opening its documents.
    void WorkspaceOpened();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // The documents open of that kind and title come forward; false when none is.
    bool BringForward(const KELHostDocument& document);
    void Place(QWidget* page, std::unique_ptr<KELHostDocument> document);
    std::unique_ptr<KELHostDocument> MakeDocument(const char* kind, KELHostDocument::Contents contents);
    std::vector<KELWorkspaceDocument*> InOrder() const;
    void MarkChanged();
    static void Opening(std::string);
    static void Opened();
    static void Closing();

    static KELDocumentArea* s_attached;  // the workspace's callbacks are plain functions

    const TDictionary& m_dictionary;
    KELConfigContext* m_context;
    IMessageConsole* m_console;
    QPointer<IWorkspaceManager> m_workspace;  // gone with the host's manager
    std::chrono::milliseconds m_timeout;
    // The documents by their page (a tab's widget, which the tabs own).
    std::map<QWidget*, std::unique_ptr<KELHostDocument>> m_pages;
    bool m_quiet = false;
};
