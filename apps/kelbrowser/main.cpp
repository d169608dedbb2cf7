// SPDX-License-Identifier: BSD-3-Clause
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
//   kelbrowser --agents FILE   the SNMP agents of an agents file instead of
//                              the simulated network (the dictionary then
//                              defaults to the shipped data/snmp one)
//   kelbrowser --startup-time  opens as usual (headless without a display),
//                              says on stdout how long after main began the
//                              window was first painted, and quits; its
//                              settings live in a temporary folder
//
// Options: --dictionary FILE, --instances FILE (default: $ZED_DICTIONARY,
// $ZED_INSTANCES, else the network shipped in data/network). The tour ends
// with the same forms on a private snmpd when snmpd is installed. Exit
// status: 0 done, 1 a step of the tour went wrong, 2 a bad command line or no
// display without --tour, 3 the network or KEL could not be loaded.

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
#include "zed/snmp/TSnmpModule.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

namespace {

const char* kUsage = "usage: kelbrowser [--dictionary FILE] [--instances FILE] [--tour [DIR]]\n"
                     "       kelbrowser [--dictionary FILE] --agents FILE\n"
                     "       kelbrowser [--dictionary FILE] [--instances FILE] --startup-time\n"
                     "       kelbrowser --help | --version\n";

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

// Reports the first paint of the main window or of anything in it (what an
// operator first sees) and quits once that paint is done.
class FirstPaintReport : public QObject {
public:
    FirstPaintReport(const QWidget& window, const QElapsedTimer& sinceMain) : m_window(window), m_since(sinceMain) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (!m_reported && event->type() == QEvent::Paint && watched->isWidgetType()
            && static_cast<QWidget*>(watched)->window() == &m_window) {
            m_reported = true;
            QTimer::singleShot(0, this, [this] {
                std::cout << "kelbrowser: first window shown " << m_since.elapsed() << " ms after main began"
                          << std::endl;
                QApplication::quit();
            });
        }
        return false;
    }

private:
    const QWidget& m_window;
    const QElapsedTimer& m_since;
    bool m_reported = false;
};

bool HasDisplay()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (platform == "offscreen" || platform == "minimal")
        return false;
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

}  // namespace

int main(int argc, char** argv)
{
    QElapsedTimer sinceMain;
    sinceMain.start();
    std::vector<std::string> words(argv + 1, argv + argc);
    if (const std::optional<int> answered = AnswerHelpOrVersion(words, "kelbrowser", kUsage))
        return *answered;
    const auto startupFlag = std::find(words.begin(), words.end(), "--startup-time");
    const bool startupTime = startupFlag != words.end();
    if (startupTime)
        words.erase(startupFlag);
    std::string dictionary, instances, agents, tour;
    if (!TakeValueOptions(words, {{"--dictionary", &dictionary}, {"--instances", &instances}, {"--agents", &agents}},
                          false))
        return UsageError(kUsage);
    bool wantTour = false;
    if (!words.empty() && words[0] == "--tour") {
        wantTour = true;
        tour = words.size() > 1 ? words[1] : "kelbrowser-tour";
        words.erase(words.begin(),
                    words.begin() + std::min<std::ptrdiff_t>(2, static_cast<std::ptrdiff_t>(words.size())));
    }
    if (!words.empty() || (!agents.empty() && (wantTour || !instances.empty()))
        || (startupTime && (wantTour || !agents.empty())))
        return UsageError(kUsage);
    std::optional<QTemporaryDir> startupSettings;
    if (startupTime) {
        if (!HasDisplay())
            qputenv("QT_QPA_PLATFORM", "offscreen");
        startupSettings.emplace();
        setenv("ORVEX_USER_PATH", startupSettings->path().toLocal8Bit().constData(), 1);
    } else if (wantTour) {
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
    std::shared_ptr<TManagementModule> network;
    std::shared_ptr<TSnmpModule> snmp;
    std::string notReceiving;
    try {
        if (!agents.empty()) {
            const std::string snmpDictionary =
                dictionary.empty() ? ShippedNetworkFile("../snmp/dictionary.json") : dictionary;
            try {
                snmp = TSnmpModule::Install(snmpDictionary, agents);
            } catch (const TException& e) {
                // The agents are still reached; their notifications are not.
                snmp = TSnmpModule::Install(snmpDictionary, agents, false);
                notReceiving = e.what();
            }
            network = snmp;
        } else {
            network = TSimulatedNetwork::Install(NetworkFileOption(dictionary, "ZED_DICTIONARY", "dictionary.json"),
                                                 NetworkFileOption(instances, "ZED_INSTANCES", "instances.json"));
        }
    } catch (const TException& e) {
        std::cerr << "kelbrowser: " << e.what() << "\n";
        return 3;
    }
    IApplication* kel = InitializeKEL("kelbrowser");
    if (!kel)
        return 3;
    KELConfigContext* context = kel->DefineNewContext(snmp ? kSnmpContext : "kelbrowser");
    // What was sent last time from each form; a first run has no files yet.
    std::string missing;
    context->LoadSystemAndUserConfig(missing);
    int status = 0;
    {
        KelBrowserWindow::EntityLister lister;
        if (snmp) {
            std::vector<std::string> names;
            for (const TSnmpAgent& agent : snmp->GetAgents().agents)
                names.push_back(agent.name);
            lister = [names] { return KelBrowserWindow::ListByClass(*ZEDGetApplication()->GetDictionary(), names); };
        }
        KelBrowserWindow window(*ZEDGetApplication()->GetDictionary(), context, lister);
        kel->SetConsole(window.GetConsole());
        if (!notReceiving.empty())
            window.SetMessage(KEL_SEVERITY_PROBLEM, "Notifications are not received: " + notReceiving);
        else if (snmp)
            window.SetMessage(KEL_SEVERITY_INFORMATION, "Notifications are received on " + snmp->GetReceiverAddress());
        if (snmp && notReceiving.empty())
            window.WatchNotifications([snmp] { return snmp->GetNotificationCounts().Summary(); });
        if (wantTour) {
            status = RunTour(window, tour);
        } else {
            window.resize(1000, 760);
            FirstPaintReport firstPaint(window, sinceMain);
            if (startupTime)
                application.installEventFilter(&firstPaint);
            window.show();
            StopGracefullyOnSignals(window);
            status = QApplication::exec();
        }
        kel->SetConsole(nullptr);
    }
    if (wantTour && RunSnmpTour(tour) != 0)
        status = 1;
    DestroyKEL();
    return status;
}
