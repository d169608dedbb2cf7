// SPDX-License-Identifier: BSD-3-Clause
// The smallest host: it creates KEL's application object, opens the input
// form of the Test directive on an interface of the network shipped with
// KEL, fills it (defaults, and the packet count typed in) and prints the
// request it would send.
//
//   hello-host [NETWORK_DIR]      (QT_QPA_PLATFORM=offscreen without a display)

#include <kel/fields/IField.h>
#include <kel/forms/IFormLine.h>
#include <kel/forms/IInputForm.h>
#include <kel/model/IPresentationContainer.h>
#include <kel/frame/IApplication.h>
#include <zed/TException.h>
#include <zed/call/TRequest.h>
#include <zed/sim/TSimulatedNetwork.h>

#include <QApplication>

#include <iostream>
#include <memory>
#include <string>

#ifndef KEL_NETWORK_DIR
#define KEL_NETWORK_DIR "/usr/share/kel/network"
#endif

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const std::string network = argc > 1 ? argv[1] : KEL_NETWORK_DIR;
    std::shared_ptr<TSimulatedNetwork> simulated;
    try {
        simulated = TSimulatedNetwork::Install(network + "/dictionary.json", network + "/instances.json");
    } catch (const TException& e) {
        std::cerr << "hello-host: " << e.what() << "\n";
        return 1;
    }
    IApplication* kel = InitializeKEL("hello-host");
    if (!kel) {
        std::cerr << "hello-host: KEL could not start\n";
        return 1;
    }
    int status = 0;
    {
        IInputForm form(kel->DefineNewContext("hello"));
        form.CreatePresentation("Test", TEntitySpec("Network core Router r1 Interface eth0"), 10);
        form.FillWithDefaults();
        // The packet count typed in, as an operator would.
        form.GetContainer()->ForEachElement([](IPresentationElement& element) {
            if (auto* line = dynamic_cast<IFormLine*>(&element); line && line->GetID() == 1 && line->GetField())
                line->GetField()->SetValue(std::string("3"));
        });
        TRequest request;
        std::string text;
        if (form.FillRequest(request)) {
            form.GetRequest(text);
            std::cout << "Test on Network core Router r1 Interface eth0: " << text << "\n";
        } else {
            status = 1;
        }
    }
    DestroyKEL();
    return status;
}
