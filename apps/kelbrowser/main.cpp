// kelbrowser: a management console on KEL and the simulated network. Pick an
// entity and a directive, fill in the generated form, send it, read the reply.
//
//   kelbrowser                 on a display (X11 or Wayland)
//   kelbrowser --tour [DIR]    without one: opens, fills and sends several
//                              forms and leaves a PNG of each step and a
//                              transcript in DIR (default: kelbrowser-tour);
//                              its settings are kept in DIR too, never in the
//                              user's own configuration
//   kelbrowser --help | --version
//
// Options: --dictionary FILE, --instances FILE (default: $ZED_DICTIONARY,
// $ZED_INSTANCES, else the network shipped in data/network). Exit status: 0
// done, 1 a step of the tour went wrong, 2 a bad command line or no display
// without --tour, 3 the network or KEL could not be loaded.

#include "KelBrowserWindow.h"
#include "ShippedNetwork.h"
#include "ToolOptions.h"
#include "kel/console/IConsole.h"
#include "Tour.h"
#include "kel/config/KELConfigContext.h"
#include "kel/frame/IApplication.h"
#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/sim/TSimulatedNetwork.h"

#include <QApplication>
#include <QDir>
#include <QSocketNotifier>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>
#include <iostream>
#include <string>
#include <vector>

namespace {

const char* kUsage =
    "usage: kelbrowser [--dictionary FILE] [--instances FILE] [--tour [DIR]]\n"
    "       kelbrowser --help | --version\n";

std::string Option(const std::string& given, const char* variable, const char* file)
{
    if (!given.empty())
        return given;
    if (const char* value = std::getenv(variable); value && *value)
        return value;
    return ShippedNetworkFile(file);
}

// A request to stop (the session ending, kill, Ctrl+C) keeps what closing
// the window keeps; the handler only wakes the event loop.
int g_stopPipe[2] = {-1, -1};

void OnStopSignal(int)
{
    const char stop = 1;
    (void)!::write(g_stopPipe[1], &stop, 1);
}

void StopGracefullyOnSignals(KelBrowserWindow& window)
{
    if (::pipe2(g_stopPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    struct sigaction action {};
    action.sa_handler = &OnStopSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal : {SIGTERM, SIGHUP, SIGINT})
        ::sigaction(signal, &action, nullptr);
    auto* notifier = new QSocketNotifier(g_stopPipe[0], QSocketNotifier::Read, &window);
    QObject::connect(notifier, &QSocketNotifier::activated, &window, [&window] {
        window.SaveSettings();
        QApplication::quit();
    });
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
    if (const std::optional<int> answered = AnswerHelpOrVersion(words, "kelbrowser", kUsage))
        return *answered;
    std::string dictionary, instances, tour;
    if (!TakeValueOptions(words, {{"--dictionary", &dictionary}, {"--instances", &instances}}, false))
        return UsageError(kUsage);
    bool wantTour = false;
    if (!words.empty() && words[0] == "--tour") {
        wantTour = true;
        tour = words.size() > 1 ? words[1] : "kelbrowser-tour";
        words.erase(words.begin(), words.begin() + std::min<std::ptrdiff_t>(2, static_cast<std::ptrdiff_t>(words.size())));
    }
    if (!words.empty())
        return UsageError(kUsage);
    if (wantTour) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // What the tour sends and saves stays in its folder.
        QDir().mkpath(QString::fromStdString(tour));
        const std::string folder = QDir(QString::fromStdString(tour)).absolutePath().toStdString();
        setenv("ORVEX_USER_PATH", folder.c_str(), 1);
    } else if (!HasDisplay()) {
        std::cerr << "kelbrowser: no display (neither DISPLAY nor WAYLAND_DISPLAY is set): run it on a desktop,"
                     " or give --tour DIR to tour it without one\n";
        return kToolExitUsage;
    }

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
            StopGracefullyOnSignals(window);
            status = QApplication::exec();
        }
        kel->SetConsole(nullptr);
    }
    DestroyKEL();
    return status;
}
