// SPDX-License-Identifier: BSD-3-Clause
// A management console in one file, assembled from KEL's host kit: the
// entity and directive picks above, the documents (a form a tab, each with
// its calls) in the middle, the outputs of the document shown below them,
// the console at the bottom and the call's status in the status line.
//
//   mini-console [NETWORK_DIR]           a window on the simulated network
//   mini-console --send [NETWORK_DIR]    sends one Test and prints the reply
//                                        (QT_QPA_PLATFORM=offscreen without a display)

#include <kel/console/IConsole.h>
#include <kel/console/KELDocumentArea.h>
#include <kel/console/KELEntityPicks.h>
#include <kel/forms/KELCallStatus.h>
#include <kel/frame/IApplication.h>
#include <kel/output/KELOutputPanel.h>
#include <zed/TApplication.h>
#include <zed/TException.h>
#include <zed/call/TCallLoop.h>
#include <zed/call/ZedInstances.h>
#include <zed/sim/TSimulatedNetwork.h>

#include <QApplication>
#include <QMainWindow>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>

#include <iostream>
#include <memory>
#include <string>

#ifndef KEL_NETWORK_DIR
#define KEL_NETWORK_DIR "/usr/share/kel/network"
#endif

namespace {

class Console : public QMainWindow {
public:
    Console(const TDictionary& dictionary, KELConfigContext* context)
    {
        setWindowTitle(QStringLiteral("Mini console"));
        auto* console = new IConsole(this);
        console->AddTabWnd("Output", 0);
        console->Create(this);
        addDockWidget(Qt::BottomDockWidgetArea, console);
        GetKELapp()->SetConsole(console);

        picks = new KELEntityPicks(
            dictionary, [&dictionary] { return ZedListInstances(dictionary); }, console);
        auto* send = new QPushButton(QStringLiteral("&Send"));
        QToolBar* bar = addToolBar(QStringLiteral("Entity"));
        bar->addWidget(picks);
        bar->addWidget(send);

        documents = new KELDocumentArea(dictionary, context, console);
        outputs = new KELOutputPanel(dictionary, context);
        auto* split = new QSplitter(Qt::Vertical);
        split->addWidget(documents);
        split->addWidget(outputs);
        setCentralWidget(split);
        auto* status = new KELCallStatus;
        statusBar()->addWidget(status, 1);

        // The wiring is the whole of a host's work.
        connect(picks, &KELEntityPicks::Picked, documents, &KELDocumentArea::OpenInputForm);
        connect(send, &QPushButton::clicked, documents, &KELDocumentArea::Send);
        connect(documents, &KELDocumentArea::Answered, outputs, [this](const KELCallControl::Answer& answer) {
            outputs->Show(*answer.call, answer.directive, answer.name);
        });
        connect(documents, &KELDocumentArea::ShownChanged, this, [this, status] {
            const KELHostDocument* shown = documents->Shown();
            status->Show(shown ? &shown->Calls() : nullptr);
            if (shown && shown->Calls().GetLastAnswer().call)
                outputs->Show(*shown->Calls().GetLastAnswer().call, shown->Calls().GetLastAnswer().directive,
                              shown->Calls().GetLastAnswer().name);
            else
                outputs->Clear();
        });
        connect(documents, &KELDocumentArea::BusyChanged, this,
                [this, status] { status->Show(documents->Shown() ? &documents->Shown()->Calls() : nullptr); });
        connect(status, &KELCallStatus::CancelClicked, documents, &KELDocumentArea::Cancel);
        connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, documents, &KELDocumentArea::Cancel);
        picks->ChooseEntity();
    }
    ~Console() override
    {
        GetKELapp()->SetConsole(nullptr);
        delete documents;  // its forms go while KEL is still there
    }

    KELEntityPicks* picks;
    KELDocumentArea* documents;
    KELOutputPanel* outputs;
};

// What the console shows once the Test of an interface has been sent and answered.
int SendOnce(Console& console)
{
    if (!console.documents->OpenInputForm("Network core Router r1 Interface eth0", "Test") || !console.documents->Send()
        || !ZEDGetCallLoop().RunUntilIdle(std::chrono::seconds(10)))
        return 1;
    QApplication::processEvents();
    std::cout << console.outputs->GetText();
    return console.outputs->GetText().empty() ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const bool once = argc > 1 && std::string(argv[1]) == "--send";
    const std::string network = argc > 1 + once ? argv[1 + once] : KEL_NETWORK_DIR;
    std::shared_ptr<TSimulatedNetwork> simulated;
    try {
        simulated = TSimulatedNetwork::Install(network + "/dictionary.json", network + "/instances.json");
    } catch (const TException& e) {
        std::cerr << "mini-console: " << e.what() << "\n";
        return 1;
    }
    IApplication* kel = InitializeKEL("mini-console");
    if (!kel) {
        std::cerr << "mini-console: KEL could not start\n";
        return 1;
    }
    int status = 0;
    {
        Console console(*ZEDGetApplication()->GetDictionary(), kel->DefineNewContext("MINI"));
        console.resize(1000, 700);
        if (once) {
            status = SendOnce(console);
        } else {
            console.show();
            status = application.exec();
        }
    }
    DestroyKEL();
    return status;
}
