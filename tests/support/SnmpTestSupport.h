// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// What the SNMP tests share: the shipped SNMP files, programs run beside the
// test's own event loop (net-snmp's tools, the hostile agent), and turns of
// a module until something holds.

#include "zed/TApplication.h"
#include "zed/call/TCall.h"
#include "zed/call/ZedWaitSet.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TValueParser.h"
#include "zed/snmp/TSnmpLocalAgent.h"
#include "zed/snmp/TSnmpModule.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

inline std::string SnmpFile(const char* name) { return std::string(KEL_SOURCE_DIR) + "/data/snmp/" + name; }

// Without snmpd the tests say so; in CI they must run.
#define REQUIRE_SNMPD()                                                                                                \
    do {                                                                                                               \
        if (TSnmpLocalAgent::Program().empty()) {                                                                      \
            if (std::getenv("CI"))                                                                                     \
                FAIL() << "snmpd is not installed (scripts/setup.sh installs it)";                                     \
            GTEST_SKIP() << "snmpd is not installed";                                                                  \
        }                                                                                                              \
    } while (0)

// A program run beside the test's own event loop (snmpinform waits for its
// acknowledgement, which the module gives from its turn); ended by its
// process id when it has not ended by itself.
class Child {
public:
    explicit Child(std::vector<std::string> args, bool readOutput = false)
    {
        // net-snmp's tools keep their engine's state in one file for all of
        // the user's processes: tests side by side would read each other's
        // half-written engine IDs and fail the SNMPv3 handshake.
        if (args[0].rfind("/usr/bin/snmp", 0) == 0)
            args.insert(args.begin() + 1, {"--noPersistentLoad=1", "--noPersistentSave=1"});
        std::vector<char*> argv;
        for (std::string& a : args)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        std::string mibs = "MIBS=";
        char* envp[] = {mibs.data(), nullptr};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        int out[2] = {-1, -1};
        if (readOutput && pipe(out) == 0) {
            posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
            posix_spawn_file_actions_addclose(&actions, out[0]);
        }
        posix_spawn(&m_pid, argv[0], &actions, nullptr, argv.data(), envp);
        posix_spawn_file_actions_destroy(&actions);
        if (out[1] >= 0) {
            close(out[1]);
            m_output = fdopen(out[0], "r");
        }
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child()
    {
        if (m_output)
            fclose(m_output);
        if (m_pid > 0 && !m_ended) {
            kill(m_pid, SIGTERM);
            waitpid(m_pid, nullptr, 0);
        }
    }

    std::optional<int> Ended()
    {
        int status = 0;
        if (m_ended || waitpid(m_pid, &status, WNOHANG) != m_pid)
            return m_ended ? std::optional<int>(m_status) : std::nullopt;
        m_ended = true;
        m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return m_status;
    }

    // The first line the program printed; empty when it ended first.
    std::string FirstLine()
    {
        char line[256] = "";
        if (!m_output || !std::fgets(line, sizeof line, m_output))
            return {};
        std::string text = line;
        while (!text.empty() && text.back() == '\n')
            text.pop_back();
        return text;
    }

private:
    pid_t m_pid = -1;
    bool m_ended = false;
    int m_status = -1;
    FILE* m_output = nullptr;
};

inline std::string Shell(const std::string& command)
{
    std::string output;
    if (FILE* pipe = popen(("MIBS= " + command + " 2>&1").c_str(), "r")) {
        char buffer[4096];
        while (std::size_t n = fread(buffer, 1, sizeof buffer, pipe))
            output.append(buffer, n);
        pclose(pipe);
    }
    return output;
}

// Gives the module its turns, each after a wait of at most 10 ms, until done
// says so or the time is up; true when done said so.
inline bool TurnUntil(TSnmpModule& module, const std::function<bool()>& done,
                      std::chrono::milliseconds within = std::chrono::seconds(10))
{
    const auto until = std::chrono::steady_clock::now() + within;
    while (!done()) {
        if (std::chrono::steady_clock::now() >= until)
            return false;
        ZedWaitSet set;
        module.AddWaitSet(set);
        ZedWait(set, std::chrono::milliseconds(10));
        module.ProcessReady();
    }
    return true;
}

// Runs a program to its end while the module turns; its exit status, or -1.
inline int RunBeside(TSnmpModule& module, std::vector<std::string> args)
{
    Child child(std::move(args));
    std::optional<int> ended;
    TurnUntil(module, [&] { return (ended = child.Ended()).has_value(); });
    module.ProcessReady();
    return ended.value_or(-1);
}

// Carries a directive out through the call layer, as a form does; values as
// a person types them (attribute values for Set and Create, arguments else).
inline TSyncCall CallAs(const TDictionary& dictionary, const std::string& entity, const std::string& directive,
                        const std::map<std::string, std::string>& values = {})
{
    const TEntitySpec spec(entity);
    const TDictClass* cls = dictionary.FindClass(spec.GetEntityClass());
    const TDictDirective* d = cls->FindDirective(directive);
    TSyncCall call(spec, d->GetID());
    for (const auto& [name, text] : values) {
        const TDictValue* element = d->TakesAttributes() ? static_cast<const TDictValue*>(cls->FindAttribute(name))
                                                         : d->FindRequestArgument(name);
        call.GetRequest().Add(ZEDParseValue(element->GetType(), text, element->GetID(), {&dictionary, cls}));
    }
    call.Execute();
    return call;
}

// The value of an attribute in the reply selected, as text.
inline std::string AttributeOf(const TCall& call, const std::string& name)
{
    const auto* list = static_cast<const TAttributeList*>(call.GetReply().FindFirst(ZED_DT_ATTRIBUTELIST));
    if (!list)
        return "(no attributes: " + call.GetReply().ToString() + ")";
    for (std::size_t i = 0; i < list->Size(); ++i)
        if (list->At(i).GetAttributeID().GetName() == name)
            return list->At(i).GetValue().ToString();
    return "(no " + name + ")";
}

// A module of the agents on the dictionary, receiving on a free loopback
// port when asked, made the application's default as a host makes it.
inline std::shared_ptr<TSnmpModule> InstallForTest(const TDictionaryPtr& dictionary, TSnmpAgents agents, bool receive)
{
    agents.receiverAddress = "udp:127.0.0.1:0";
    auto module = std::make_shared<TSnmpModule>(dictionary, std::move(agents), receive);
    ZEDGetApplication()->SetDictionary(dictionary);
    ZEDGetApplication()->SetDefaultModule(module);
    return module;
}
