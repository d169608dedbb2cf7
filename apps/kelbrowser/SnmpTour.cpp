// SPDX-License-Identifier: BSD-3-Clause
#include "KelBrowserWindow.h"
#include "ShippedNetwork.h"
#include "Tour.h"
#include "zed/dict/ZedDirectiveNames.h"
#include "TourSupport.h"
#include "kel/controls/KELFilterBox.h"
#include "kel/output/KELListModel.h"
#include "kel/output/IOutputList.h"
#include "kel/fields/IField.h"
#include "kel/forms/IFormLine.h"
#include "kel/forms/IInputOutputForm.h"
#include "kel/controls/ILabel.h"
#include "kel/config/KELConfigContext.h"
#include "kel/frame/IApplication.h"
#include "kel/forms/IInputForm.h"
#include "kel/frame/KELCallPump.h"
#include "kel/model/IPresentationContainer.h"
#include "zed/TApplication.h"
#include "zed/TException.h"
#include "kel/controls/IControlContainer.h"
#include "kel/forms/IPresentationForm.h"
#include "kel/frame/IHelpDialog.h"
#include "zed/mib/TMibLoad.h"
#include "zed/snmp/TSnmpLocalAgent.h"
#include "zed/snmp/TSnmpModule.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTabWidget>
#include <QThread>

#include <glob.h>

#include <fstream>
#include <iostream>

namespace {

// The line of that label on an attributes form.
IField* Line(IInputOutputForm& form, const std::string& label)
{
    IField* found = nullptr;
    form.GetContainer()->ForEachElement([&](IPresentationElement& element) {
        auto* line = dynamic_cast<IFormLine*>(&element);
        if (!found && line && line->GetLabel() && line->GetLabel()->GetPresentationName() == label)
            found = line->GetField();
    });
    return found;
}

int Steps(KelBrowserWindow& window, TSnmpModule& module, const std::string& agent, const std::string& folder,
          std::ostream& out)
{
    int faults = 0;
    out << "== Attributes of " << agent << " (its system group)\n";
    if (!window.OpenAttributes(agent) || !window.WaitForCalls() || !window.GetAttributes()) {
        out << "  the attributes could not be read\n";
        return 1;
    }
    faults += Save(window, folder, "20-snmp-system.png", out) ? 0 : 1;

    IField* location = Line(*window.GetAttributes(), "Location");
    if (!location) {
        out << "  no Location line\n";
        return faults + 1;
    }
    location->SetValue(std::string("Hall C"));
    const bool applied = window.Apply() && window.WaitForCalls();
    std::string after;
    location->GetValue(after);
    out << "  Location -> Hall C, applied: " << (applied ? "yes" : "no") << ", read again: " << after
        << "\n  request: " << window.GetRequestText() << "\n";
    faults += applied && after == "Hall C" ? 0 : 1;
    faults += Save(window, folder, "21-snmp-set-location.png", out) ? 0 : 1;

    const std::string interfaces = agent + " Interface *";
    out << "\n== Show on " << interfaces << "\n";
    bool opened = window.OpenForm(interfaces, std::string(ZedDirective::kShow)) && window.GetForm();
    if (opened)
        window.GetForm()->GetContainer()->ForEachElement([](IPresentationElement& element) {
            auto* line = dynamic_cast<IFormLine*>(&element);
            if (line && line->GetLabel() && line->GetLabel()->GetPresentationName() == ZedDirective::kPartition)
                line->GetField()->SetValue(std::string("All"));
        });
    if (!opened || !window.Send() || !window.WaitForCalls()) {
        out << "  the interfaces could not be read\n";
        return faults + 1;
    }
    out << window.GetReplyText();
    window.ShowOutput(QStringLiteral("List"));
    faults += Save(window, folder, "22-snmp-interfaces.png", out) ? 0 : 1;

    // An interface with a hardware address: octets that are not text, shown
    // read-only in hexadecimal with their ASCII beside them.
    std::string withAddress;
    if (const IOutputList* list = window.GetOutputList())
        for (int row = 0; row < list->GetModel()->rowCount() && withAddress.empty(); ++row)
            for (int column = 1; column < list->GetModel()->columnCount(); ++column)
                if (const QString cell = list->GetModel()->index(row, column).data().toString();
                    cell.size() == 17 && cell.count(QLatin1Char(':')) == 5)
                    withAddress = list->GetModel()->index(row, 0).data().toString().toStdString();
    out << "\n== Show on "
        << (withAddress.empty() ? std::string("(no interface with a hardware address)") : withAddress) << "\n";
    if (!withAddress.empty() && window.OpenForm(withAddress, std::string(ZedDirective::kShow)) && window.GetForm()) {
        window.GetForm()->GetContainer()->ForEachElement([](IPresentationElement& element) {
            auto* line = dynamic_cast<IFormLine*>(&element);
            if (line && line->GetLabel() && line->GetLabel()->GetPresentationName() == ZedDirective::kPartition)
                line->GetField()->SetValue(std::string("All"));
        });
        if (window.Send() && window.WaitForCalls()) {
            window.ShowOutput(QStringLiteral("Reply"));
            if (IOutputForm* reply = window.GetOutputForm())
                reply->GetFilterBox()->setText(QStringLiteral("Address"));  // the reply pane is short
            QApplication::processEvents();
            faults += Save(window, folder, "24-snmp-hex-octets.png", out) ? 0 : 1;
        } else {
            out << "  the interface could not be read\n";
            ++faults;
        }
    }

    // Notifications as an agent sends them: a restart, then a link going
    // down; and one forged with a community that is not the agent's.
    out << "\n== Traps to " << module.GetReceiverAddress() << "\n";
    window.WatchNotifications([&module] { return module.GetNotificationCounts().Summary(); });
    const QString target = QString::fromStdString(module.GetReceiverAddress().substr(4));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("MIBS"), QString());
    for (const QStringList& trap :
         {QStringList{"-v", "2c", "-c", "public", target, "", "1.3.6.1.6.3.1.1.5.1"},
          QStringList{"-v", "2c", "-c", "public", target, "", "1.3.6.1.6.3.1.1.5.3", "1.3.6.1.2.1.2.2.1.1.1", "i", "1",
                      "1.3.6.1.2.1.2.2.1.7.1", "i", "1", "1.3.6.1.2.1.2.2.1.8.1", "i", "2"},
          QStringList{"-v", "2c", "-c", "forged", target, "", "1.3.6.1.6.3.1.1.5.3", "1.3.6.1.2.1.2.2.1.1.1", "i",
                      "1"}}) {
        QProcess sender;
        sender.setProcessEnvironment(environment);
        sender.start(QStringLiteral("/usr/bin/snmptrap"), trap);
        const bool sent = sender.waitForFinished(10000) && sender.exitCode() == 0;
        out << "  snmptrap -c " << trap[3].toStdString() << " "
            << trap.mid(trap.indexOf(QString()) + 1).join(' ').toStdString() << ": " << (sent ? "sent" : "failed")
            << "\n";
        faults += sent ? 0 : 1;
    }
    QElapsedTimer waited;
    waited.start();
    while ((window.GetEventLists()->count() < 2 || window.GetEvents()->GetSummary().isEmpty())
           && waited.elapsed() < 5000) {
        QApplication::processEvents(QEventLoop::AllEvents, 50);
        QThread::msleep(5);
    }
    window.ShowOutput(QStringLiteral("Events"));
    window.GetEventLists()->setCurrentIndex(window.GetEventLists()->count() - 1);
    out << "  event lists: " << window.GetEventLists()->count() << "\n";
    for (int i = 0; i < window.GetEventLists()->count(); ++i)
        out << "    " << window.GetEventLists()->tabText(i).toStdString() << "\n";
    faults += window.GetEventLists()->count() == 2 ? 0 : 1;
    out << "  said above the lists: " << window.GetEvents()->GetSummary().toStdString() << "\n";
    faults += window.GetEvents()->GetSummary().contains(QStringLiteral("the community is not the agent's")) ? 0 : 1;
    faults += Save(window, folder, "23-snmp-trap-events.png", out) ? 0 : 1;
    out << "\n";
    return faults;
}

// The standard modules the tour compiles: net-snmp's folders, and erlang's
// copy of the SNMPv2 modules where erlang-snmp is installed (Debian keeps
// the IETF's own out of its free sections).
TMibChoice TourModules()
{
    TMibChoice choice;
    choice.path = TMibSearchPath::FromEnvironment();
    glob_t found{};
    if (glob("/usr/lib/erlang/lib/snmp-*/mibs", GLOB_ONLYDIR, nullptr, &found) == 0 && found.gl_pathc > 0)
        choice.path.Apply(std::string("+") + found.gl_pathv[found.gl_pathc - 1]);
    globfree(&found);
    choice.modules = {"SNMPv2-MIB"};
    return choice;
}

// The field of that label on the document shown.
IField* FieldOf(KelBrowserWindow& window, const std::string& label)
{
    IField* found = nullptr;
    if (auto* form = dynamic_cast<IPresentationForm*>(window.GetDocuments()->currentWidget()))
        form->GetControlContainer()->ForEachElement([&](IPresentationElement& element) {
            if (auto* line = dynamic_cast<IFormLine*>(&element);
                !found && line && line->GetLabel() && line->GetLabel()->GetPresentationName() == label)
                found = line->GetField();
        });
    return found;
}

// Classes no one bound by hand: compiled from SNMPv2-MIB at start.
int MibSteps(KelBrowserWindow& window, const std::string& agent, const std::string& folder, std::ostream& out)
{
    int faults = 0;
    const std::string rows = agent + " sysORTable *";
    out << "== Show on " << rows << " (a table compiled from SNMPv2-MIB)\n";
    if (!window.OpenForm(rows, std::string(ZedDirective::kShow)) || !window.Send() || !window.WaitForCalls()) {
        out << "  the table could not be read\n";
        return 1;
    }
    out << window.GetReplyText();
    window.ShowOutput(QStringLiteral("List"));
    faults += Save(window, folder, "25-mib-table-list.png", out) ? 0 : 1;

    const std::string row = agent + " sysORTable 1";
    out << "\n== Attributes of " << row << ", and the help of a field: its DESCRIPTION\n";
    if (!window.OpenAttributes(row) || !window.WaitForCalls() || !window.GetAttributes()) {
        out << "  the row could not be read\n";
        return faults + 1;
    }
    faults += Save(window, folder, "26-mib-row-form.png", out) ? 0 : 1;
    IField* description = FieldOf(window, "sysORDescr");
    if (!description) {
        out << "  no sysORDescr line\n";
        return faults + 1;
    }
    faults += SaveFieldHelp(window, *description, folder, "27-mib-field-help.png", QSize(460, 300), out);
    out << "\n";
    return faults;
}

}  // namespace

int RunSnmpTour(const std::string& folder)
{
    std::ofstream transcript(folder + "/transcript.txt", std::ios::app);
    transcript << "== SNMP: the same forms on a real agent\n";
    if (TSnmpLocalAgent::Program().empty()) {
        transcript << "  snmpd is not installed: the SNMP steps were skipped\n";
        std::cout << "kelbrowser: snmpd is not installed (Debian package snmpd): the SNMP steps were skipped\n";
        return 0;
    }
    auto* recorder = new TranscriptPrompt(transcript);
    std::unique_ptr<KELPrompt> previous = KELPrompt::Install(std::unique_ptr<KELPrompt>(recorder));
    int faults = 0;
    try {
        TSnmpLocalAgent agent({});
        TSnmpAgents agents = agent.MakeAgents(TSnmpAgent::Version::V2c, "core-r");
        agents.receiverAddress = "udp:127.0.0.1:0";
        const TMibChoice modules = TourModules();
        const bool compiling = modules.path.FindModule(modules.modules.front()).has_value();
        const std::string shipped = ShippedNetworkFile("../snmp/dictionary.json");
        TMibLoaded mibs;
        if (compiling)
            mibs = ZedLoadWithMibs(shipped, modules);
        else
            mibs.dictionary = TDictionary::Load(shipped);
        const TDictionaryPtr dictionary = mibs.dictionary;
        auto module = std::make_shared<TSnmpModule>(dictionary, agents, true);
        ZEDGetApplication()->SetDictionary(dictionary);
        ZEDGetApplication()->SetDefaultModule(module);
        if (GetKELapp()->GetCallPump())
            GetKELapp()->GetCallPump()->Refresh();  // the receiver's socket is watched from now on
        transcript << "  snmpd (pid " << agent.GetPid() << ") on " << agent.GetAddress() << ", notifications to "
                   << module->GetReceiverAddress() << "\n\n";
        // Its own settings: what is sent from its forms is not the simulated network's.
        KELConfigContext* context = GetKELapp()->DefineNewContext(kSnmpContext);
        std::string missing;
        context->LoadSystemAndUserConfig(missing);
        KelBrowserWindow window(*dictionary, context,
                                [&] { return KelBrowserWindow::ListByClass(*dictionary, {agents.agents[0].name}); });
        window.resize(1000, 760);
        window.show();
        window.WaitForCalls();
        faults += Steps(window, *module, "Agent " + agents.agents[0].name, folder, transcript);
        window.WaitForCalls();
        if (!mibs.loaded.empty())
            faults += MibSteps(window, "Agent " + agents.agents[0].name, folder, transcript);
        else
            transcript << "== MIB modules: SNMPv2-MIB is not on the search path (snmp-mibs-downloader or erlang-snmp "
                          "has it): the steps of compiled classes were skipped\n\n";
        window.WaitForCalls();
    } catch (const TException& e) {
        transcript << "  " << e.what() << "\n";
        ++faults;
    }
    KELPrompt::Install(std::move(previous));
    transcript << (faults ? std::to_string(faults) + " SNMP step(s) went wrong\n"
                          : "every SNMP step went as expected\n");
    std::cout << "kelbrowser: SNMP tour on a private snmpd in " << folder << "/ ("
              << (faults ? std::to_string(faults) + " fault(s)" : "all as expected") << ")\n";
    return faults ? 1 : 0;
}
