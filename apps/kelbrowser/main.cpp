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
//                              defaults to the shipped data/snmp one); with
//                              the MIB modules of net-snmp's default list
//                              found, or those --mibs names, compiled in
//                              (--mib-dirs: where they are)
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
#include "MibSettings.h"
#include "ShippedNetwork.h"
#include "ToolOptions.h"
#include "kel/console/IConsole.h"
#include "Tour.h"
#include "kel/config/KELConfigContext.h"
#include "kel/frame/IApplication.h"
#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/mib/TMibLoad.h"
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
                     "       kelbrowser [--dictionary FILE] --agents FILE [--mibs MODULES] [--mib-dirs DIRS]\n"
                     "       kelbrowser [--dictionary FILE] [--instances FILE | --agents FILE ...] --startup-time\n"
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

// What the command line asks for.
struct Options {
    std::string dictionary, instances, agents, tour, mibs, mibDirs;
    bool wantTour = false;
    bool startupTime = false;
};

std::optional<Options> ReadOptions(std::vector<std::string> words)
{
    Options options;
    const auto startupFlag = std::find(words.begin(), words.end(), "--startup-time");
    options.startupTime = startupFlag != words.end();
    if (options.startupTime)
        words.erase(startupFlag);
    if (!TakeValueOptions(words,
                          {{"--dictionary", &options.dictionary},
                           {"--instances", &options.instances},
                           {"--agents", &options.agents},
                           {"--mibs", &options.mibs},
                           {"--mib-dirs", &options.mibDirs}},
                          false))
        return std::nullopt;
    if (!words.empty() && words[0] == "--tour") {
        options.wantTour = true;
        options.tour = words.size() > 1 ? words[1] : "kelbrowser-tour";
        words.erase(words.begin(),
                    words.begin() + std::min<std::ptrdiff_t>(2, static_cast<std::ptrdiff_t>(words.size())));
    }
    const bool snmp = !options.agents.empty();
    if (!words.empty() || (snmp && (options.wantTour || !options.instances.empty()))
        || (!snmp && !(options.mibs + options.mibDirs).empty()) || (options.startupTime && options.wantTour))
        return std::nullopt;
    return options;
}

// Where the window shows and what the settings are written to; false when
// there is no display to show it on.
bool PrepareEnvironment(const Options& options, std::optional<QTemporaryDir>& startupSettings)
{
    if (options.startupTime) {
        if (!HasDisplay())
            qputenv("QT_QPA_PLATFORM", "offscreen");
        startupSettings.emplace();
        setenv("ORVEX_USER_PATH", startupSettings->path().toLocal8Bit().constData(), 1);
    } else if (options.wantTour) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // What the tour sends and saves stays in its folder.
        QDir().mkpath(QString::fromStdString(options.tour));
        const std::string folder = QDir(QString::fromStdString(options.tour)).absolutePath().toStdString();
        setenv("ORVEX_USER_PATH", folder.c_str(), 1);
    } else if (!HasDisplay()) {
        std::cerr << "kelbrowser: no display (neither DISPLAY nor WAYLAND_DISPLAY is set): run it on a desktop,"
                     " or give --tour DIR to tour it without one\n";
        return false;
    }
    return true;
}

// The network the window manages: the agents of an agents file, or the simulated one.
struct Network {
    std::shared_ptr<TManagementModule> module;
    std::shared_ptr<TSnmpModule> snmp;
    std::string notReceiving;  // why notifications are not received, if they are not
    TMibLoaded mibs;           // the MIB modules compiled in, and their faults
};

std::string DictionaryOf(const Options& options)
{
    return options.dictionary.empty() ? ShippedNetworkFile("../snmp/dictionary.json") : options.dictionary;
}

Network InstallNetwork(const Options& options, const TMibChoice& mibs)
{
    Network network;
    if (options.agents.empty()) {
        network.module =
            TSimulatedNetwork::Install(NetworkFileOption(options.dictionary, "ZED_DICTIONARY", "dictionary.json"),
                                       NetworkFileOption(options.instances, "ZED_INSTANCES", "instances.json"));
        return network;
    }
    // The agents are reached even when their notifications cannot be received.
    TSnmpInstall install = ZedInstallSnmp(DictionaryOf(options), options.agents, mibs, true);
    network.snmp = install.module;
    network.notReceiving = std::move(install.notReceiving);
    network.mibs = std::move(install.mibs);
    network.module = network.snmp;
    return network;
}

// The agents' own names, their tables found by the tree: an agent's tables
// may be long or slow to walk.
KelBrowserWindow::EntityLister ListerFor(const Network& network)
{
    if (!network.snmp)
        return {};
    std::vector<std::string> names;
    for (const TSnmpAgent& agent : network.snmp->GetAgents().agents)
        names.push_back(agent.name);
    return [names] { return KelBrowserWindow::ListByClass(*ZEDGetApplication()->GetDictionary(), names); };
}

// Faults of MIB modules, each a console line (the first few; the rest are zedsh mib's to name).
void SayMibFaults(KelBrowserWindow& window, const std::vector<TMibFault>& faults)
{
    constexpr std::size_t kMostLines = 20;
    for (std::size_t i = 0; i < faults.size() && i < kMostLines; ++i)
        window.SetMessage(faults[i].fatal ? KEL_SEVERITY_PROBLEM : KEL_SEVERITY_INFORMATION,
                          "MIB module: " + faults[i].Said());
    if (faults.size() > kMostLines)
        window.SetMessage(KEL_SEVERITY_INFORMATION, "MIB modules: " + std::to_string(faults.size() - kMostLines)
                                                        + " more faults (zedsh mib names each)");
}

// What became of the MIB modules: the faults, and what was loaded.
void SayMibs(KelBrowserWindow& window, const TMibLoaded& mibs)
{
    SayMibFaults(window, mibs.faults);
    if (!mibs.loaded.empty())
        window.SetMessage(KEL_SEVERITY_INFORMATION, "MIB modules loaded: " + std::to_string(mibs.loaded.size()) + " ("
                                                        + std::to_string(mibs.classes) + " classes, "
                                                        + std::to_string(mibs.events) + " events)");
}

// The status the window's event loop ends with to be made again, with the
// modules loaded since added: the dictionary, the module and the window
// stand on each other, and are made again together.
constexpr int kReload = 64;

// Load MIB Module: compiled first, kept in the settings and made part of the
// network only when it compiles.
// What the windows made one after another share: the modules chosen, and
// the one loaded last, said in the next window.
struct MibSession {
    TMibChoice mibs;
    std::string loaded;
};

KelBrowserWindow::MibLoader LoaderFor(KelBrowserWindow& window, KELConfigContext* context, const Options& options,
                                      MibSession& session)
{
    return [&window, context, &options, &session](const std::string& module) {
        TMibChoice& mibs = session.mibs;
        TMibChoice trial = mibs;
        trial.Add(module);
        const TMibLoaded tried = ZedLoadWithMibs(DictionaryOf(options), trial);
        const bool byFile = module.find('/') != std::string::npos;
        const std::string name = byFile ? TMibSearchPath::ModuleDefinedIn(module) : module;
        if (std::find(tried.loaded.begin(), tried.loaded.end(), name) == tried.loaded.end()) {
            SayMibFaults(window, tried.faults);
            window.SetMessage(KEL_SEVERITY_PROBLEM, "The MIB module " + module + " could not be loaded");
            return false;
        }
        KeepMibModule(context, module);
        mibs = std::move(trial);
        session.loaded = name;
        QApplication::exit(kReload);
        return true;
    };
}

void SayNotifications(KelBrowserWindow& window, const Network& network)
{
    if (!network.notReceiving.empty()) {
        window.SetMessage(KEL_SEVERITY_PROBLEM, "Notifications are not received: " + network.notReceiving);
    } else if (const std::shared_ptr<TSnmpModule> snmp = network.snmp) {
        window.SetMessage(KEL_SEVERITY_INFORMATION, "Notifications are received on " + snmp->GetReceiverAddress());
        window.WatchNotifications([snmp] { return snmp->GetNotificationCounts().Summary(); });
    }
}

int RunWindow(IApplication& kel, KELConfigContext* context, const Options& options, const Network& network,
              MibSession& session, const QElapsedTimer& sinceMain)
{
    KelBrowserWindow window(*ZEDGetApplication()->GetDictionary(), context, ListerFor(network));
    kel.SetConsole(window.GetConsole());
    SayMibs(window, network.mibs);
    SayNotifications(window, network);
    if (network.snmp)
        window.SetMibLoader(LoaderFor(window, context, options, session));
    if (!session.loaded.empty())
        window.SetMessage(KEL_SEVERITY_DONE, "MIB module " + std::exchange(session.loaded, {})
                                                 + " loaded, and kept in the settings for the next start");
    int status = 0;
    if (options.wantTour) {
        status = RunTour(window, options.tour);
    } else {
        window.resize(1000, 760);
        FirstPaintReport firstPaint(window, sinceMain);
        if (options.startupTime)
            QApplication::instance()->installEventFilter(&firstPaint);
        window.show();
        StopGracefullyOnSignals(window);
        status = QApplication::exec();
    }
    kel.SetConsole(nullptr);
    return status;
}

}  // namespace

int main(int argc, char** argv)
{
    QElapsedTimer sinceMain;
    sinceMain.start();
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (const std::optional<int> answered = AnswerHelpOrVersion(words, "kelbrowser", kUsage))
        return *answered;
    const std::optional<Options> options = ReadOptions(words);
    if (!options)
        return UsageError(kUsage);
    std::optional<QTemporaryDir> startupSettings;
    if (!PrepareEnvironment(*options, startupSettings))
        return kToolExitUsage;

    QApplication application(argc, argv);
    IApplication* kel = InitializeKEL("kelbrowser");
    if (!kel)
        return 3;
    KELConfigContext* context = kel->DefineNewContext(options->agents.empty() ? "kelbrowser" : kSnmpContext);
    // What was sent last time from each form; a first run has no files yet.
    std::string missing;
    context->LoadSystemAndUserConfig(missing);
    MibSession session{MibChoiceOf(context, options->mibDirs, options->mibs), {}};
    int status = kReload;
    while (status == kReload) {
        // The module of the window before lets go of the notifications' address first.
        ZEDGetApplication()->SetDefaultModule(nullptr);
        Network network;
        try {
            network = InstallNetwork(*options, session.mibs);
        } catch (const TException& e) {
            std::cerr << "kelbrowser: " << e.what() << "\n";
            DestroyKEL();
            return 3;
        }
        status = RunWindow(*kel, context, *options, network, session, sinceMain);
    }
    if (options->wantTour && RunSnmpTour(options->tour) != 0)
        status = 1;
    DestroyKEL();
    return status;
}
