// SPDX-License-Identifier: BSD-3-Clause
// A burst of notifications into kelbrowser's window: 5,000 SNMPv2c traps
// within half a second, sent by a program of their own on loopback. Aims:
// at least 99% of them shown in the Events lists, no turn of the event loop
// longer than 100 ms, and the memory flat from one burst to the next. The
// baseline, in the same run: the same burst into the library alone (the
// module read in a plain poll loop, nothing drawn).
//
//   burst_bench SENDER [--count N] [--seconds S] [--bursts B]
//
// Prints one line per subject; exit status 1 when an aim is missed.

#include "KelBrowserWindow.h"
#include "kel/config/KELConfigContext.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELCallPump.h"
#include "kel/output/IOutputList.h"
#include "kel/output/KELListModel.h"
#include "zed/TApplication.h"
#include "zed/snmp/TSnmpModule.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QProcess>
#include <QTabWidget>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>

namespace {

constexpr double kMostLost = 0.01;
constexpr qint64 kLongestTurn = 100;

long ResidentKilobytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0)
            return std::stol(line.substr(6));
    return 0;
}

std::shared_ptr<TSnmpModule> MakeModule(std::size_t mostWaiting)
{
    TSnmpAgents agents;
    TSnmpAgent agent;
    agent.name = "core-r1";
    agent.address = "udp:127.0.0.1:16161";
    agents.agents.push_back(agent);
    agents.receiverAddress = "udp:127.0.0.1:0";
    agents.mostWaiting = mostWaiting;
    auto dictionary = TDictionary::Load(std::string(KEL_SOURCE_DIR) + "/data/snmp/dictionary.json");
    ZEDGetApplication()->SetDictionary(dictionary);
    return std::make_shared<TSnmpModule>(dictionary, std::move(agents), true);
}

QStringList FloodArguments(const TSnmpModule& module, int count, double seconds)
{
    return {QStringLiteral("flood"), QString::fromStdString(module.GetReceiverAddress().substr(4)),
            QString::number(count), QString::number(seconds), QStringLiteral("public")};
}

// The library alone: the module's own poll loop while the sender runs.
std::size_t LibraryAlone(const QString& sender, int count, double seconds)
{
    auto module = MakeModule(static_cast<std::size_t>(count) * 2);
    QProcess flood;
    flood.start(sender, FloodArguments(*module, count, seconds));
    flood.waitForStarted();
    std::size_t taken = 0;
    QElapsedTimer quiet;
    quiet.start();
    while (flood.state() != QProcess::NotRunning || quiet.elapsed() < 300) {
        ZedWaitSet set;
        module->AddWaitSet(set);
        ZedWait(set, std::chrono::milliseconds(10));
        module->ProcessReady();
        const std::size_t now = module->TakeEvents().size();
        taken += now;
        if (now)
            quiet.restart();
        flood.waitForFinished(0);
    }
    return taken;
}

// The event loop's longest stall: a precise timer asks to run every 5 ms,
// and any longer gap between two of its runs is a turn that held the loop.
class TurnClock : public QObject {
public:
    TurnClock()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            if (m_since.isValid())
                m_longest = std::max(m_longest, m_since.elapsed() - kTick);
            m_since.start();
        });
        m_timer.start(kTick);
    }
    qint64 Longest() const { return m_longest; }
    void Reset()
    {
        m_longest = 0;
        m_since.invalidate();
    }

private:
    static constexpr int kTick = 5;
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};

std::size_t Shown(KelBrowserWindow& window)
{
    std::size_t shown = 0;
    QTabWidget* tabs = window.GetEventLists();
    for (int i = 0; i < tabs->count(); ++i)
        if (auto* list = dynamic_cast<IOutputList*>(tabs->widget(i)))
            shown += static_cast<std::size_t>(list->GetModel()->rowCount()) + list->GetModel()->GetDroppedRows();
    return shown;
}

}  // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QStringList args = application.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: burst_bench SENDER [--count N] [--seconds S] [--bursts B]\n");
        return 2;
    }
    const QString sender = args[1];
    const auto option = [&](const char* name, double fallback) {
        const int at = static_cast<int>(args.indexOf(QString::fromLatin1(name)));
        return at > 0 && at + 1 < args.size() ? args[at + 1].toDouble() : fallback;
    };
    const int count = static_cast<int>(option("--count", 5000));
    const double seconds = option("--seconds", 0.5);
    const int bursts = std::max(2, static_cast<int>(option("--bursts", 3)));

    const std::size_t alone = LibraryAlone(sender, count, seconds);
    std::printf("library alone: %zu of %d kept (%.1f%%)\n", alone, count, 100.0 * double(alone) / count);

    IApplication* kel = InitializeKEL("burst_bench");
    auto module = MakeModule(TSnmpAgents::kDefaultMostWaiting);
    ZEDGetApplication()->SetDefaultModule(module);
    KELConfigContext* context = kel->DefineNewContext("burst_bench");
    bool met = true;
    {
        KelBrowserWindow window(*ZEDGetApplication()->GetDictionary(), context);
        window.resize(1000, 760);
        window.show();
        window.ShowOutput(QStringLiteral("Events"));
        QApplication::processEvents();
        TurnClock clock;
        std::vector<long> resident;
        for (int burst = 1; burst <= bursts; ++burst) {
            const std::size_t before = Shown(window);
            clock.Reset();
            QProcess flood;
            flood.start(sender, FloodArguments(*module, count, seconds));
            // Qt's own loop runs the window while the burst comes in; it ends
            // once the sender has ended and nothing came for 300 ms.
            QEventLoop loop;
            QElapsedTimer quiet;
            quiet.start();
            std::size_t last = before;
            QTimer watch;
            QObject::connect(&watch, &QTimer::timeout, &loop, [&] {
                if (const std::size_t now = Shown(window); now != last) {
                    last = now;
                    quiet.restart();
                }
                if (flood.state() == QProcess::NotRunning && quiet.elapsed() >= 300)
                    loop.quit();
            });
            watch.start(20);
            loop.exec();
            const std::size_t shown = Shown(window) - before;
            resident.push_back(ResidentKilobytes());
            const bool kept = double(shown) >= double(count) * (1 - kMostLost);
            const bool brisk = clock.Longest() <= kLongestTurn;
            met = met && kept && brisk;
            std::printf("kelbrowser burst %d: %zu of %d shown (%.1f%%), longest turn %lld ms, resident %ld KiB%s\n",
                        burst, shown, count, 100.0 * double(shown) / count, static_cast<long long>(clock.Longest()),
                        resident.back(), kept && brisk ? "" : "  <- aim missed");
        }
        // Flat: the last burst grows memory by at most a tenth of what the first left.
        const long growth = resident.back() - resident[resident.size() - 2];
        const bool flat = growth <= resident.front() / 10;
        met = met && flat;
        std::printf("memory from burst %d to %d: %+ld KiB%s\n", bursts - 1, bursts, growth,
                    flat ? "" : "  <- not flat");
        std::printf("notifications: %s\n", module->GetNotificationCounts().Summary().c_str());
    }
    ZEDGetApplication()->SetDefaultModule(nullptr);
    DestroyKEL();
    return met ? 0 : 1;
}
