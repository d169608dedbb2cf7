#pragma once

#include "kel/forms/IInputForm.h"
#include "kel/frame/KELConsoleSink.h"

#include <QMainWindow>
#include <QPointer>

#include <memory>
#include <string>
#include <vector>

class KELConfigContext;
class QComboBox;
class QPlainTextEdit;
class QSplitter;
class TDictionary;
class TEntitySpec;

// The browser's main window: an entity and a directive of the network are
// picked above, the directive's generated input form fills the middle, the
// reply shows below it, and the library's messages go to a dock at the
// bottom (the console until the real one exists).
class KelBrowserWindow : public QMainWindow, public IMessageConsole {
public:
    KelBrowserWindow(const TDictionary& dictionary, KELConfigContext* context);
    ~KelBrowserWindow() override;

    // Every instance of the network, found by asking each class's instances with a wildcard Show.
    static std::vector<std::string> ListEntities(const TDictionary& dictionary);

    // Opens the input form of the directive on the entity, with its defaults
    // and then what was last sent from such a form.
    bool OpenForm(const std::string& entity, const std::string& directive);
    IInputForm* GetForm() const { return m_form; }
    // Fills the request from the form and carries the call out; false when the
    // form refused (a required argument missing) or the call could not be made.
    bool Send();
    std::string GetReplyText() const;
    std::string GetRequestText() const { return m_requestText; }

    bool HasWindow() const override { return true; }
    void SetMessage(KEL_T_Severity severity, const std::string& text) override;
    std::string GetMessages() const;

private:
    void EntityChosen();
    void DirectiveChosen();
    void ShowReply(const std::string& text);

    const TDictionary& m_dictionary;
    KELConfigContext* m_context;  // the application object's
    QComboBox* m_entities;
    QComboBox* m_directives;
    QSplitter* m_split;
    QPointer<IInputForm> m_form;
    QPlainTextEdit* m_reply;
    QPlainTextEdit* m_messages;
    std::string m_requestText;
};
