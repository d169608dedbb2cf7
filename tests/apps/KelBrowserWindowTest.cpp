// SPDX-License-Identifier: BSD-3-Clause
// The browser's window driven in the test's process, as an operator drives it:
// the picks above, the tabs, the keyboard, the console's messages.

#include "KelBrowserWindow.h"
#include "MibSettings.h"
#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/console/IConsole.h"
#include "kel/console/IEntityTree.h"
#include "kel/console/IWorkspaceManager.h"
#include "kel/controls/ILabel.h"
#include "kel/fields/IField.h"
#include "kel/fields/IFieldUnit.h"
#include "kel/forms/IFormLine.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/IHelpDialog.h"
#include "kel/model/IPresentationContainer.h"
#include "support/ContextFixture.h"
#include "support/HeldModule.h"
#include "kel/frame/KELCallPump.h"
#include "zed/snmp/TSnmpLocalAgent.h"
#include "zed/snmp/TSnmpModule.h"
#include "zed/value/TRecord.h"
#include "zed/value/TScalarValues.h"

#include <QAction>
#include <QLabel>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProcess>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QTabWidget>
#include <QTest>

#include <filesystem>

#include <gmock/gmock.h>
#include "kel/output/KELOutputKinds.h"
#include "kel/forms/IPresentationForm.h"
#include "kel/controls/KELFilterBox.h"
#include <QMenu>
#include <QMenuBar>
#include "kel/forms/KELIdlePass.h"

#include <QLabel>

#include <gtest/gtest.h>

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

const char* const kInterface = "Network core Router r1 Interface eth0";

class BrowserWindowTest : public ContextFixture {
protected:
    void SetUp() override
    {
        ContextFixture::SetUp();
        std::string missing;
        context->LoadSystemAndUserConfig(missing);
        window = std::make_unique<KelBrowserWindow>(Dictionary(), context);
        GetKELapp()->SetConsole(window->GetConsole());
        window->resize(1000, 760);
        window->show();
        QApplication::processEvents();
    }
    void TearDown() override
    {
        window.reset();
        QApplication::processEvents();
        ContextFixture::TearDown();
    }

    // The field of the line of that label on the form shown.
    IFormLine* Line(const std::string& label) const
    {
        IFormLine* found = nullptr;
        IPresentationForm* form = window->GetForm() ? static_cast<IPresentationForm*>(window->GetForm())
                                                    : static_cast<IPresentationForm*>(window->GetAttributes());
        dynamic_cast<IPresentationBase*>(form)->GetContainer()->ForEachElement([&](IPresentationElement& element) {
            auto* line = dynamic_cast<IFormLine*>(&element);
            if (line && line->GetLabel() && line->GetLabel()->GetPresentationName() == label)
                found = line;
        });
        return found;
    }
    std::string Text(const std::string& label) const
    {
        std::string text;
        Line(label)->GetField()->GetValue(text);
        return text;
    }
    std::string LastMessage() const
    {
        const std::string all = window->GetMessages();
        const std::size_t end = all.size() > 1 ? all.rfind('\n', all.size() - 2) : std::string::npos;
        return end == std::string::npos ? all : all.substr(end + 1);
    }
    // As the operator sees it: sent, and the answer in.
    bool SendAndWait() { return window->Send() && window->WaitForCalls(std::chrono::seconds(5)); }
    void PickDirective(const char* name)
    {
        QComboBox* pick = window->GetDirectivePick();
        const int at = pick->findText(QString::fromLatin1(name));
        ASSERT_GE(at, 0) << name;
        pick->setCurrentIndex(at);
        emit pick->activated(at);
    }

    std::unique_ptr<KelBrowserWindow> window;
};

TEST_F(BrowserWindowTest, AnotherDirectiveOpensInItsOwnTabAndTheSameOneComesForward)
{
    ASSERT_TRUE(window->OpenForm(kInterface, "Test"));
    const int before = window->GetDocuments()->count();
    Line("Count")->GetField()->SetValue(std::string("9"));
    PickDirective("Echo");
    EXPECT_EQ(window->GetDocuments()->count(), before + 1) << "the Test form with its edit stays";
    EXPECT_EQ(window->GetForm()->GetName(), "Echo");
    ASSERT_TRUE(window->OpenForm(kInterface, "Test"));
    EXPECT_EQ(window->GetDocuments()->count(), before + 1) << "no second Test form";
    EXPECT_EQ(window->GetForm()->GetName(), "Test");
    EXPECT_EQ(Text("Count"), "9") << "what was typed is still there";
    EXPECT_EQ(window->GetDirectivePick()->currentText(), "Test") << "the picks follow the form shown";
    EXPECT_EQ(window->GetEntityPick()->currentText(), kInterface);
}

TEST_F(BrowserWindowTest, AnExceptionLooksLikeOneInTheReplyAndTheConsole)
{
    ASSERT_TRUE(window->OpenForm(kInterface, "Test"));
    Line("Count")->GetField()->SetValue(std::string("3"));
    ASSERT_TRUE(SendAndWait());
    EXPECT_FALSE(window->GetOutputForm()->ShowsException());
    EXPECT_TRUE(window->GetOutputs()->tabIcon(0).isNull());
    EXPECT_THAT(LastMessage(), HasSubstr("[done] Test sent to"));
    // The reply's values carry their units, as the text does.
    IFieldUnit* units = nullptr;
    window->GetOutputForm()->GetContainer()->ForEachElement([&](IPresentationElement& element) {
        if (auto* line = dynamic_cast<IFormLine*>(&element); line && line->GetUnit() && !units)
            units = line->GetUnit();
    });
    ASSERT_NE(units, nullptr) << "a value with units shows them";

    Line("Count")->GetField()->SetValue(std::string("2000"));
    ASSERT_TRUE(SendAndWait());
    EXPECT_TRUE(window->GetOutputForm()->ShowsException());
    EXPECT_FALSE(window->GetOutputs()->tabIcon(0).isNull()) << "the Reply tab warns";
    EXPECT_THAT(LastMessage(), HasSubstr("[problem] Test sent to"));
    EXPECT_THAT(LastMessage(), HasSubstr("exception CountTooLarge (2): The packet count is too large; "
                                         "Maximum Count = 1000"))
        << "the console line alone says why";
}

TEST_F(BrowserWindowTest, TheConsoleWritesARequestsCompositeValuesAsTheReplyDoes)
{
    ASSERT_TRUE(window->OpenForm(kInterface, "Echo"));
    TRecord place(std::static_pointer_cast<const TDictTypeRecord>(Dictionary().FindType("Location")), 0);
    place.Add(TLatin1String("Hall C", 1));
    place.Add(TUnsigned16(12, 2));
    Line("Place")->GetField()->SetValue(place);
    Line("Confirm")->GetField()->SetValue(std::string("True"));
    ASSERT_TRUE(SendAndWait());
    EXPECT_THAT(LastMessage(), HasSubstr("Place = { Site = Hall C"));
    EXPECT_THAT(LastMessage(), ::testing::Not(HasSubstr("= )")));
}

TEST_F(BrowserWindowTest, ARefusedRequestSaysWhichLineAndWhy)
{
    ASSERT_TRUE(window->OpenForm(kInterface, "Test"));
    Line("Size")->GetField()->SetValue(std::string("lots"));
    EXPECT_FALSE(window->Send());
    EXPECT_EQ(LastMessage(), "[problem] Not sent: The field Size does not hold a valid value: \"lots\" is not a "
                             "whole number from 0 to 65535\n");
}

TEST_F(BrowserWindowTest, TheOutputsAreThoseOfTheDocumentShown)
{
    ASSERT_TRUE(window->OpenForm(kInterface, "Test"));
    ASSERT_TRUE(SendAndWait());
    ASSERT_NE(window->GetOutputForm(), nullptr);
    ASSERT_TRUE(window->OpenForm(kInterface, "Echo"));
    EXPECT_EQ(window->GetOutputForm(), nullptr) << "no reply of the Test form under the Echo form";
    EXPECT_EQ(window->GetReplyText(), "");
    ASSERT_TRUE(window->OpenForm(kInterface, "Test"));
    ASSERT_NE(window->GetOutputForm(), nullptr);
    EXPECT_EQ(window->GetOutputForm()->GetName(), "Test");
    EXPECT_THAT(window->GetReplyText(), HasSubstr("Test completed"));
}

// The browser takes its outputs from the output-kind table: a host's kind of
// a higher rank shows the reply; one that declines leaves KEL's own.
TEST_F(BrowserWindowTest, OutputsComeFromTheKindsRegisteredForThem)
{
    std::vector<std::string> asked;
    const KELRegistration reply = KELOutputKinds::Register(
        KELOutputRequest::Reply, 1, [&](const KELOutputRequest& request) -> std::unique_ptr<QWidget> {
            asked.push_back(request.name);
            if (request.name != "Test")
                return nullptr;
            auto label = std::make_unique<QLabel>(QStringLiteral("host reply"));
            label->setObjectName(QStringLiteral("host reply"));
            return label;
        });
    ASSERT_TRUE(window->OpenForm(kInterface, "Test"));
    ASSERT_TRUE(SendAndWait());
    EXPECT_EQ(window->GetOutputs()->widget(0)->objectName(), "host reply");
    EXPECT_EQ(window->GetOutputForm(), nullptr);
    ASSERT_TRUE(window->OpenForm("Network core Router r1", "Show"));
    ASSERT_TRUE(SendAndWait());
    EXPECT_NE(window->GetOutputForm(), nullptr) << "declined: KEL's own form";
    EXPECT_EQ(asked, (std::vector<std::string>{"Test", "Show"}));
}

TEST_F(BrowserWindowTest, ADeleteAsksFirstAndTheTreeAndPicksForgetTheEntity)
{
    const char* const r2 = "Network core Router r2";
    IEntityTree& tree = *window->GetTree();
    tree.topLevelItem(0)->setExpanded(true);
    window->WaitForCalls(std::chrono::seconds(5));
    tree.topLevelItem(0)->child(0)->child(0)->setExpanded(true);
    window->WaitForCalls(std::chrono::seconds(5));
    ASSERT_NE(tree.FindEntity(r2), nullptr);
    tree.setCurrentItem(tree.FindEntity(r2));
    EXPECT_EQ(window->GetEntityPick()->currentText(), r2) << "the entity pick follows the tree";

    ASSERT_TRUE(window->OpenForm(r2, "Delete"));
    prompts->answer = KELPrompt::Answer::No;
    EXPECT_FALSE(window->Send());
    ASSERT_EQ(prompts->questions.size(), 1u);
    EXPECT_EQ(prompts->questions[0], "Delete Network core Router r2?");
    EXPECT_NE(tree.FindEntity(r2), nullptr) << "not confirmed, not sent";

    prompts->answer = KELPrompt::Answer::Yes;
    ASSERT_TRUE(SendAndWait());
    EXPECT_THAT(LastMessage(), HasSubstr("[done] Delete sent to Network core Router r2"));
    EXPECT_EQ(tree.FindEntity(r2), nullptr);
    EXPECT_EQ(window->GetEntityPick()->findText(r2), -1);
}

TEST_F(BrowserWindowTest, SendingKeepsTheSettingsInMemoryAndClosingSavesThemOnce)
{
    ASSERT_TRUE(window->OpenForm(kInterface, "Test"));
    ASSERT_TRUE(SendAndWait());
    EXPECT_THAT(window->GetMessages(), Not(HasSubstr("Configuration saved")));
    window->close();
    ASSERT_NE(context->GetUserConfigFile(), nullptr);
    const std::string saved = TempDir::Read(context->GetUserConfigFile()->GetFilename());
    EXPECT_THAT(saved, HasSubstr("Dir:10.Arg:3 = 5")) << "what was sent is kept for the next form";
}

TEST_F(BrowserWindowTest, F1HasOneBindingAndEnterSendsTheForm)
{
    int bindings = 0;
    for (const QAction* action : window->findChildren<QAction*>())
        bindings += action->shortcuts().contains(QKeySequence(Qt::Key_F1)) ? 1 : 0;
    for (const QShortcut* shortcut : window->findChildren<QShortcut*>())
        bindings += shortcut->key() == QKeySequence(Qt::Key_F1) ? 1 : 0;
    EXPECT_EQ(bindings, 1);

    ASSERT_TRUE(window->OpenForm(kInterface, "Test"));
    QWidget* count = Line("Count")->GetField()->GetWindow();
    count->setFocus();
    QTest::keyClick(count, Qt::Key_Return);
    window->WaitForCalls(std::chrono::seconds(5));
    EXPECT_THAT(LastMessage(), HasSubstr("Test sent to"));

    // In a text of several lines Enter is a line end, not a send.
    ASSERT_TRUE(window->OpenForm(kInterface, "Echo"));
    const std::string before = window->GetMessages();
    auto* comment = qobject_cast<QPlainTextEdit*>(Line("Comment")->GetField()->GetWindow());
    ASSERT_NE(comment, nullptr);
    comment->setFocus();
    QTest::keyClicks(comment, "one");
    QTest::keyClick(comment, Qt::Key_Return);
    EXPECT_EQ(window->GetMessages(), before);
    EXPECT_THAT(comment->toPlainText().toStdString(), EndsWith("one\n"));
}

// Ctrl+Z in the browser undoes the shown form's edit, with the focus in the
// text box; the Edit menu shows the keys without owning them a second time.
TEST_F(BrowserWindowTest, CtrlZUndoesAnEditAndTheEditMenuOffersIt)
{
    ASSERT_TRUE(window->OpenForm(kInterface, "Test"));
    window->show();
    QApplication::setActiveWindow(window.get());
    KELIdlePass::RunNow();
    auto* count = qobject_cast<QLineEdit*>(Line("Count")->GetField()->GetWindow());
    ASSERT_NE(count, nullptr);
    const QString before = count->text();
    count->setFocus();
    QTest::keyClicks(count, "9");
    KELIdlePass::RunNow();
    QTest::keySequence(count, QKeySequence::Undo);
    EXPECT_EQ(count->text(), before);
    QTest::keySequence(count, QKeySequence::Redo);
    EXPECT_EQ(count->text(), before + "9");

    QMenu* edit = nullptr;
    for (QAction* menu : window->menuBar()->actions())
        if (menu->text() == "&Edit")
            edit = menu->menu();
    ASSERT_NE(edit, nullptr);
    ASSERT_EQ(edit->actions().size(), 2);
    EXPECT_EQ(edit->actions()[0]->text(), "&Undo");
    EXPECT_EQ(edit->actions()[0]->shortcutContext(), Qt::WidgetShortcut) << "no key with two owners";
    edit->actions()[0]->trigger();
    EXPECT_EQ(count->text(), before);

    // Ctrl+F reaches the filter of the form just opened, and Escape clears it
    // before the window's own Escape (a cancel) can take it.
    ASSERT_TRUE(window->OpenForm(kInterface, "Echo"));
    QTest::keySequence(QApplication::focusWidget(), QKeySequence::Find);
    auto* form = dynamic_cast<IPresentationForm*>(window->GetDocuments()->currentWidget());
    ASSERT_NE(form, nullptr);
    ASSERT_EQ(QApplication::focusWidget(), form->GetFilterBox());
    QTest::keyClicks(form->GetFilterBox(), "ra");
    QTest::keyClick(form->GetFilterBox(), Qt::Key_Escape);
    EXPECT_TRUE(form->GetFilterBox()->text().isEmpty());
}

TEST_F(BrowserWindowTest, ANewEntityIsTypedCreatedAndThenShownInTheTreeAndThePick)
{
    const char* const r9 = "Network core Router r9";
    IEntityTree& tree = *window->GetTree();
    tree.topLevelItem(0)->setExpanded(true);
    window->WaitForCalls(std::chrono::seconds(5));
    tree.topLevelItem(0)->child(0)->child(0)->setExpanded(true);
    window->WaitForCalls(std::chrono::seconds(5));
    QComboBox* entities = window->GetEntityPick();
    entities->lineEdit()->setText(r9);
    QTest::keyClick(entities->lineEdit(), Qt::Key_Return);
    window->GetDirectivePick()->hidePopup();
    EXPECT_EQ(window->GetDirectivePick()->currentIndex(), -1) << "a directive is still to be picked";
    PickDirective("Create");
    ASSERT_EQ(window->GetForm()->GetName(), "Create");
    ASSERT_TRUE(SendAndWait());
    EXPECT_THAT(LastMessage(), HasSubstr("[done] Create sent to Network core Router r9"));
    EXPECT_NE(tree.FindEntity(r9), nullptr);
    EXPECT_GE(entities->findText(r9), 0);
}

// A call on a network that answers when it answers: the window keeps
// turning, says what it waits for, can give up, and ends a call that takes too
// long with "no answer".
TEST_F(BrowserWindowTest, AnOutstandingCallNeverBlocksAndCanBeCancelledOrTimeOut)
{
    auto module = std::make_shared<HeldModule>();
    ZEDGetApplication()->RegisterModule(1, module);
    ASSERT_TRUE(window->OpenForm(kInterface, "Test"));
    ASSERT_TRUE(window->Send());
    EXPECT_TRUE(window->IsBusy());
    EXPECT_FALSE(window->Send()) << "one call at a time per form";
    auto* waiting = window->statusBar()->findChild<QLabel*>();
    ASSERT_NE(waiting, nullptr);
    EXPECT_EQ(waiting->text().toStdString(), std::string("waiting for Test to ") + kInterface);
    int ticks = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, [&] { ++ticks; });
    ticker.start(5);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ticks >= 5; }, 2000)) << "the event loop turns while the call is out";

    // The answer arrives on the module's descriptor: Qt's loop brings it in.
    module->Release();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window->IsBusy(); }, 2000));
    EXPECT_THAT(LastMessage(), HasSubstr("[done] Test sent to"));

    module->release = false;
    ASSERT_TRUE(window->Send());
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_FALSE(window->IsBusy());
    EXPECT_EQ(module->cancelled.size(), 1u);
    EXPECT_THAT(LastMessage(), HasSubstr("[information] Cancelled: Test to"));

    window->SetCallTimeout(std::chrono::milliseconds(100));
    ASSERT_TRUE(window->Send());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window->IsBusy(); }, 2000));
    EXPECT_THAT(LastMessage(), HasSubstr("[problem] Test sent to"));
    EXPECT_THAT(LastMessage(), HasSubstr("exception NoAnswer (4): No answer came in time; Reason = "));
    ZEDGetApplication()->RegisterModule(1, nullptr);
}

// A workspace names the window, keeps each document's file across reopening,
// asks before its changes are lost and is remembered for the next start.
TEST_F(BrowserWindowTest, TheWorkspaceIsNamedKeptAskedForAndRemembered)
{
    ASSERT_TRUE(window->OpenForm(kInterface, "Test"));
    const std::string file = user.Path() + "site.kws";
    IWorkspaceManager& workspace = *window->GetWorkspaceManager();
    ASSERT_TRUE(workspace.SaveWorkspace(file));
    workspace.OnWorkspaceClose();
    ASSERT_TRUE(workspace.OpenWorkspace(file));
    EXPECT_EQ(window->windowTitle(), "site.kws[*] - KEL browser");
    EXPECT_FALSE(window->IsWorkspaceChanged());
    ASSERT_TRUE(workspace.SaveWorkspace(file));
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(user.Path()))
        files += entry.path().string().find(".kdoc") != std::string::npos ? 1 : 0;
    EXPECT_EQ(files, window->GetDocuments()->count()) << "a reopened document saves into its own file";

    ASSERT_TRUE(window->OpenForm(kInterface, "Echo"));
    EXPECT_TRUE(window->IsWorkspaceChanged());
    prompts->answer = KELPrompt::Answer::Cancel;
    EXPECT_FALSE(window->close()) << "cancelled: the window stays";
    ASSERT_EQ(prompts->questions.size(), 1u);
    EXPECT_EQ(prompts->questions[0], "Save the changes to the workspace " + file + " before quitting?");
    prompts->answer = KELPrompt::Answer::No;
    EXPECT_TRUE(window->close());

    // The next start offers it among the recent workspaces.
    window.reset();
    DestroyKEL();
    ASSERT_NE(InitializeKEL("context test"), nullptr);
    context = GetKELapp()->DefineNewContext("TST");
    std::string missing;
    context->LoadSystemAndUserConfig(missing);
    window = std::make_unique<KelBrowserWindow>(Dictionary(), context);
    ASSERT_FALSE(window->GetWorkspaceManager()->GetRecent().empty());
    EXPECT_EQ(window->GetWorkspaceManager()->GetRecent().front(), file);
}

std::string LastLine(const std::string& text)
{
    const std::size_t end = text.size() > 1 ? text.rfind('\n', text.size() - 2) : std::string::npos;
    std::string line = end == std::string::npos ? text : text.substr(end + 1);
    if (!line.empty() && line.back() == '\n')
        line.pop_back();
    return line;
}

// The same window on a real agent: its forms, its tree, and its
// notifications arriving in the Events tab while no call is out.
class SnmpBrowserWindowTest : public ContextFixture {
protected:
    void SetUp() override
    {
        ContextFixture::SetUp();
        if (TSnmpLocalAgent::Program().empty()) {
            if (std::getenv("CI"))
                FAIL() << "snmpd is not installed (scripts/setup.sh installs it)";
            GTEST_SKIP() << "snmpd is not installed";
        }
        agent = std::make_unique<TSnmpLocalAgent>(TSnmpLocalAgent::Options{});
        TSnmpAgents agents = agent->MakeAgents(TSnmpAgent::Version::V2c, "agent", 0.2, 0);
        agents.receiverAddress = "udp:127.0.0.1:0";
        dictionary = TDictionary::Load(std::string(KEL_SOURCE_DIR) + "/data/snmp/dictionary.json");
        module = std::make_shared<TSnmpModule>(dictionary, agents, true);
        simulated = ZEDGetApplication()->GetDictionary();
        ZEDGetApplication()->SetDictionary(dictionary);
        ZEDGetApplication()->SetDefaultModule(module);
        GetKELapp()->GetCallPump()->Refresh();
        window = std::make_unique<KelBrowserWindow>(
            *dictionary, context, [this] { return KelBrowserWindow::ListByClass(*dictionary, {"agent-1"}); });
        GetKELapp()->SetConsole(window->GetConsole());
        window->show();
    }
    void TearDown() override
    {
        window.reset();
        if (simulated) {
            ZEDGetApplication()->SetDictionary(simulated);
            ZEDGetApplication()->SetDefaultModule(network);
        }
        ContextFixture::TearDown();
    }

    std::unique_ptr<TSnmpLocalAgent> agent;
    TDictionaryPtr dictionary, simulated;
    std::shared_ptr<TSnmpModule> module;
    std::unique_ptr<KelBrowserWindow> window;
};

TEST_F(SnmpBrowserWindowTest, TheSameFormsTreeAndEventsWorkOnAnAgent)
{
    const QStringList picks = [&] {
        QStringList texts;
        for (int i = 0; i < window->GetEntityPick()->count(); ++i)
            texts << window->GetEntityPick()->itemText(i);
        return texts;
    }();
    EXPECT_EQ(picks.first().toStdString(), "Agent agent-1");
    EXPECT_TRUE(picks.contains(QStringLiteral("Agent agent-1 Interface *")));

    IEntityTree& tree = *window->GetTree();
    tree.topLevelItem(0)->setExpanded(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return tree.FindEntity("Agent agent-1") != nullptr; }, 5000));

    // An agent that does not answer: the operator is told, and opening the class again asks again.
    QTreeWidgetItem* agentItem = tree.FindEntity("Agent agent-1");
    ASSERT_NE(agentItem, nullptr);
    agentItem->setExpanded(true);
    QTreeWidgetItem* interfaces = agentItem->child(0);
    ASSERT_EQ(interfaces->text(0).toStdString(), "Interface");
    agent->Pause();
    interfaces->setExpanded(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !tree.IsAsking(); }, 5000));
    EXPECT_EQ(LastLine(window->GetMessages()),
              "[problem] Agent agent-1 Interface * could not be listed: No answer came in time (no answer from agent "
              "agent-1 ("
                  + agent->GetAddress()
                  + ") within 0.2 s (1 try); a wrong community looks the same: the agent does not answer one)");
    EXPECT_FALSE(interfaces->isExpanded());
    agent->Resume();
    interfaces->setExpanded(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return tree.FindEntity("Agent agent-1 Interface 1") != nullptr; }, 5000));

    ASSERT_TRUE(window->OpenForm("Agent agent-1 Interface 1", "Show"));
    ASSERT_TRUE(window->Send());
    ASSERT_TRUE(window->WaitForCalls(std::chrono::seconds(5)));
    EXPECT_THAT(window->GetReplyText(), HasSubstr("Description = lo"));

    // Nothing is asked: the trap alone brings its report in.
    QProcess trap;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("MIBS"), QString());
    trap.setProcessEnvironment(environment);
    trap.start(QStringLiteral("/usr/bin/snmptrap"),
               {"--noPersistentLoad=1", "--noPersistentSave=1", "-v", "2c", "-c", "public",
                QString::fromStdString(module->GetReceiverAddress().substr(4)), "", "1.3.6.1.6.3.1.1.5.3",
                "1.3.6.1.2.1.2.2.1.1.1", "i", "1"});
    ASSERT_TRUE(trap.waitForFinished(5000));
    EXPECT_FALSE(window->IsBusy());
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->GetEventLists()->count() == 1; }, 5000));
    EXPECT_EQ(window->GetEventLists()->tabText(0).toStdString(), "Interface : Link Down (1)")
        << "its kind and how many rows it holds";
}

}  // namespace

namespace {

TEST_F(BrowserWindowTest, F1OnAReplysFieldSaysWhatItHoldsAsAnInputFieldDoes)
{
    ASSERT_TRUE(window->OpenForm("Network core Router r1", "Show"));
    ASSERT_TRUE(SendAndWait());
    window->show();
    window->ShowOutput(QStringLiteral("Reply"));
    QApplication::processEvents();
    QWidget* temperature = nullptr;
    for (QWidget* control : window->GetOutputForm()->findChildren<QWidget*>())
        if (control->accessibleName() == "Temperature")
            temperature = control;
    ASSERT_NE(temperature, nullptr);
    // Focus may rest on a part of the field (a text box's viewport): its field's help still shows.
    for (QWidget* focused : {temperature, temperature->focusProxy() ? temperature->focusProxy() : temperature}) {
        focused->setFocus();
        window->ShowHelp();
        const std::string help = GetKELapp()->GetHelpDialog()->GetText().toStdString();
        EXPECT_THAT(help, HasSubstr("Temperature"));
        EXPECT_THAT(help, HasSubstr("Units: ")) << help;
    }
    auto* text = new QPlainTextEdit(temperature->parentWidget());
    text->setAccessibleName(QStringLiteral("Description"));
    text->setAccessibleDescription(QStringLiteral("Type: Latin1String (text)"));
    text->show();
    text->viewport()->setFocus();
    window->ShowHelp();
    EXPECT_THAT(GetKELapp()->GetHelpDialog()->GetText().toStdString(), HasSubstr("Type: Latin1String (text)"))
        << "the viewport's field speaks for it";
}

TEST_F(BrowserWindowTest, WhatTheNetworkHoldsAfterAnApplyIsTheFormsNewStartingPoint)
{
    ASSERT_TRUE(window->OpenAttributes("Network core Router r1"));
    ASSERT_TRUE(window->WaitForCalls(std::chrono::seconds(5)));
    IFormLine* priority = Line("Priority");
    ASSERT_NE(priority, nullptr);
    static_cast<QLineEdit*>(priority->GetField()->GetWindow())->setText(QStringLiteral("8"));
    KELIdlePass::RunNow();
    EXPECT_TRUE(priority->GetLabel()->GetControl()->IsRaised()) << "a changed line shows it";
    ASSERT_TRUE(window->Apply());
    ASSERT_TRUE(window->WaitForCalls(std::chrono::seconds(5)));
    EXPECT_EQ(Text("Priority"), "8");
    EXPECT_FALSE(priority->GetLabel()->GetControl()->IsRaised()) << "applied and read again: changed no more";
}

TEST_F(BrowserWindowTest, TheTextAndTheEventListsKeepTheirNewestAndSayHowManyWent)
{
    GetKELapp()->SetConsole(nullptr);
    window.reset();
    context->GetUserConfigFile()->SetInt("Text", "MostLines", 6, 1);
    context->GetUserConfigFile()->SetInt("Events", "MostRows", 2, 1);
    window = std::make_unique<KelBrowserWindow>(Dictionary(), context);
    GetKELapp()->SetConsole(window->GetConsole());
    ASSERT_TRUE(window->OpenAttributes("Network core Router r1"));
    ASSERT_TRUE(window->WaitForCalls(std::chrono::seconds(5)));
    for (const char* priority : {"3", "4", "5", "6"}) {
        static_cast<QLineEdit*>(Line("Priority")->GetField()->GetWindow())->setText(QString::fromLatin1(priority));
        ASSERT_TRUE(window->Apply());
        ASSERT_TRUE(window->WaitForCalls(std::chrono::seconds(5)));
    }
    const QPlainTextEdit* text = nullptr;
    for (int i = 0; i < window->GetOutputs()->count(); ++i)
        if (window->GetOutputs()->tabText(i).startsWith("Text"))
            text = qobject_cast<const QPlainTextEdit*>(window->GetOutputs()->widget(i));
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->maximumBlockCount(), 6) << "the events the Text gathers are bounded by the setting";
    ASSERT_EQ(window->GetEventLists()->count(), 1);
    EXPECT_THAT(window->GetEventLists()->tabText(0).toStdString(), HasSubstr(" older dropped)"));
}

}  // namespace

namespace {

// The modules Load MIB Module keeps are the settings' from then on, after
// the folders and modules the settings and the command line name.
TEST_F(ContextFixture, MibModulesLoadedAreKeptInTheSettings)
{
    KeepMibModule(context, "KEL-TEST-MIB");
    KeepMibModule(context, "/opt/mibs/VENDOR-MIB.txt");
    const TMibChoice choice = MibChoiceOf(context, "/opt/mibs", "SNMPv2-MIB");
    EXPECT_EQ(choice.path.Folders(), std::vector<std::string>{"/opt/mibs"}) << "the command line's folders";
    EXPECT_EQ(choice.modules, (std::vector<std::string>{"SNMPv2-MIB", "KEL-TEST-MIB", "/opt/mibs/VENDOR-MIB.txt"}));
    EXPECT_TRUE(choice.quiet.empty()) << "modules named are said when they fail";
}

}  // namespace
