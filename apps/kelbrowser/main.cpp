// kelbrowser: a management console on KEL and the simulated network. Pick an
// entity and a directive, fill in the generated form, send it, read the reply.
//
//   kelbrowser                 interactive, on a display
//   kelbrowser --tour DIR      without one: opens, fills and sends several
//                              forms and leaves a PNG of each step and a
//                              transcript in DIR (default: kelbrowser-tour)
//
// Options: --dictionary FILE, --instances FILE (default: $ZED_DICTIONARY,
// $ZED_INSTANCES, else the network shipped in data/network). Without a
// display (no DISPLAY or WAYLAND_DISPLAY, or the offscreen platform) the tour
// runs. Exit status: 0 done, 1 a step of the tour went wrong, 2 a bad
// command line, 3 the network or KEL could not be loaded.

#include "KelBrowserWindow.h"
#include "ShippedNetwork.h"
#include "kel/console/IConsole.h"
#include "Tour.h"
#include "kel/config/KELConfigContext.h"
#include "kel/frame/IApplication.h"
#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/sim/TSimulatedNetwork.h"

#include <QApplication>

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

namespace {

std::string Option(const std::string& given, const char* variable, const char* file)
{
    if (!given.empty())
        return given;
    if (const char* value = std::getenv(variable); value && *value)
        return value;
    return ShippedNetworkFile(file);
}

bool HasDisplay()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (platform == "offscreen" || platform == "minimal")
        return false;
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> words(argv + 1, argv + argc);
    std::string dictionary, instances, tour;
    bool wantTour = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool hasValue = i + 1 < words.size();
        if (words[i] == "--dictionary" && hasValue)
            dictionary = words[++i];
        else if (words[i] == "--instances" && hasValue)
            instances = words[++i];
        else if (words[i] == "--tour") {
            wantTour = true;
            if (hasValue && words[i + 1].rfind("--", 0) != 0)
                tour = words[++i];
        } else {
            std::cerr << "usage: kelbrowser [--tour [DIR]] [--dictionary FILE] [--instances FILE]\n";
            return 2;
        }
    }
    if (!HasDisplay()) {
        wantTour = true;
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    if (tour.empty())
        tour = "kelbrowser-tour";

    QApplication application(argc, argv);
    std::shared_ptr<TSimulatedNetwork> network;
    try {
        network = TSimulatedNetwork::Install(Option(dictionary, "ZED_DICTIONARY", "dictionary.json"),
                                             Option(instances, "ZED_INSTANCES", "instances.json"));
    } catch (const TException& e) {
        std::cerr << "kelbrowser: " << e.what() << "\n";
        return 3;
    }
    IApplication* kel = InitializeKEL("kelbrowser");
    if (!kel)
        return 3;
    KELConfigContext* context = kel->DefineNewContext("kelbrowser");
    // What was sent last time from each form; a first run has no files yet.
    std::string missing;
    context->LoadSystemAndUserConfig(missing);
    int status = 0;
    {
        KelBrowserWindow window(*ZEDGetApplication()->GetDictionary(), context);
        kel->SetConsole(window.GetConsole());
        if (wantTour) {
            status = RunTour(window, tour);
        } else {
            window.resize(1000, 760);
            window.show();
            status = QApplication::exec();
        }
        kel->SetConsole(nullptr);
    }
    DestroyKEL();
    return status;
}
