// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpLocalAgent.h"

#include "zed/TException.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

extern char** environ;

namespace {

namespace fs = std::filesystem;

// A UDP port of 127.0.0.1 that is free now.
int FreePort()
{
    const int s = socket(AF_INET, SOCK_DGRAM, 0);
    if (s < 0)
        return 0;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    int port = 0;
    if (bind(s, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0
        && getsockname(s, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    close(s);
    return port;
}

std::string ReadAll(const fs::path& path)
{
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

bool Ended(int pid)
{
    int status = 0;
    return waitpid(pid, &status, WNOHANG) == pid;
}

void End(int pid)
{
    if (pid <= 0)
        return;
    kill(pid, SIGCONT);
    kill(pid, SIGTERM);
    for (int i = 0; i < 500; ++i) {
        if (Ended(pid))
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
}

}  // namespace

std::string TSnmpLocalAgent::Program()
{
    for (const char* path : {"/usr/sbin/snmpd", "/usr/local/sbin/snmpd"})
        if (access(path, X_OK) == 0)
            return path;
    return {};
}

TSnmpLocalAgent::TSnmpLocalAgent(Options options)
{
    if (Program().empty())
        throw TException("snmpd is not installed (Debian package snmpd)");
    const char* temporary = std::getenv("TMPDIR");
    std::string pattern = std::string(temporary && *temporary ? temporary : "/tmp") + "/kel-snmpd-XXXXXX";
    if (!mkdtemp(pattern.data()))
        throw TException("no folder for snmpd could be made under " + fs::path(pattern).parent_path().string());
    m_folder = pattern;
    // A port taken between choosing and binding ends snmpd at once: choose again.
    for (int attempt = 0; attempt < 5; ++attempt)
        if (TryStart(options))
            return;
    const std::string log = ReadAll(fs::path(m_folder) / "snmpd.log");
    fs::remove_all(m_folder);
    throw TException("snmpd did not start: " + (log.empty() ? std::string("no log") : log));
}

namespace {

void WriteConfiguration(const fs::path& file, const TSnmpLocalAgent::Options& options)
{
    std::ofstream conf(file);
    // Writes reach the system group and the notification tables only: an
    // agent run by root must never take a real interface down.
    conf << "view kelall included .1\n"
         << "view kelwrite included .1.3.6.1.2.1.1\n"
         << "view kelwrite included .1.3.6.1.6.3.13\n"
         << "rocommunity " << TSnmpLocalAgent::kReadCommunity << " 127.0.0.1\n"
         << "rwcommunity " << TSnmpLocalAgent::kWriteCommunity << " 127.0.0.1 -V kelwrite\n"
         << "createUser " << TSnmpLocalAgent::kUser << " SHA-256 \"" << TSnmpLocalAgent::kAuthKey << "\" AES \""
         << TSnmpLocalAgent::kPrivKey << "\"\n"
         << "group kelusers usm " << TSnmpLocalAgent::kUser << "\n"
         << "access kelusers \"\" usm priv exact kelall kelwrite none\n";
    if (!options.trapSink.empty())
        conf << "trap2sink " << options.trapSink << " " << TSnmpLocalAgent::kReadCommunity << "\n";
    for (const std::string& line : options.configuration)
        conf << line << "\n";
}

std::vector<char*> Pointers(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// Its streams go nowhere: a pipe it held open would keep whoever reads the
// caller's output waiting for as long as it runs.
pid_t SpawnQuiet(std::vector<std::string> args, std::vector<std::string> env)
{
    std::vector<char*> argv = Pointers(args);
    std::vector<char*> envp = Pointers(env);
    posix_spawn_file_actions_t streams;
    posix_spawn_file_actions_init(&streams);
    for (int stream : {0, 1, 2})
        posix_spawn_file_actions_addopen(&streams, stream, "/dev/null", stream ? O_WRONLY : O_RDONLY, 0);
    pid_t pid = -1;
    const int spawned = posix_spawn(&pid, args[0].c_str(), &streams, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&streams);
    if (spawned != 0)
        throw TException("snmpd could not be started");
    return pid;
}

}  // namespace

bool TSnmpLocalAgent::TryStart(const Options& options)
{
    m_ports.clear();
    std::string endpoints;
    for (std::size_t i = 0; i < options.ports; ++i) {
        m_ports.push_back(FreePort());
        endpoints += (i ? "," : "") + std::string("udp:127.0.0.1:") + std::to_string(m_ports.back());
    }
    const fs::path folder(m_folder);
    fs::create_directories(folder / "persistent");
    WriteConfiguration(folder / "snmpd.conf", options);
    fs::remove(folder / "snmpd.log");
    const std::string log = (folder / "snmpd.log").string();
    m_pid = SpawnQuiet({Program(), "-f", "-C", "-c", (folder / "snmpd.conf").string(), "-Lf", log, endpoints},
                       {"SNMP_PERSISTENT_DIR=" + (folder / "persistent").string(), "MIBS=", "PATH=/usr/bin:/bin"});
    return WaitReady(log);
}

// Ready once it says which version it is: it has opened its ports then.
bool TSnmpLocalAgent::WaitReady(const std::string& log)
{
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    while (std::chrono::steady_clock::now() < until) {
        if (Ended(m_pid)) {
            m_pid = -1;
            return false;
        }
        if (ReadAll(log).find("NET-SNMP version") != std::string::npos)
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    End(m_pid);
    m_pid = -1;
    return false;
}

TSnmpLocalAgent::~TSnmpLocalAgent()
{
    Stop();
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

std::string TSnmpLocalAgent::GetAddress(std::size_t port) const
{
    return "udp:127.0.0.1:" + std::to_string(m_ports.at(port));
}

TSnmpAgents TSnmpLocalAgent::MakeAgents(TSnmpAgent::Version version, const std::string& prefix, double timeout,
                                        int retries) const
{
    TSnmpAgents agents;
    for (std::size_t i = 0; i < m_ports.size(); ++i) {
        TSnmpAgent agent;
        agent.name = prefix + "-" + std::to_string(i + 1);
        agent.address = GetAddress(i);
        agent.version = version;
        agent.timeout = timeout;
        agent.retries = retries;
        if (version == TSnmpAgent::Version::V3) {
            agent.community.clear();
            agent.user = kUser;
            agent.level = TSnmpAgent::Level::AuthPriv;
            agent.authProtocol = "SHA-256";
            agent.authKey = kAuthKey;
            agent.privProtocol = "AES";
            agent.privKey = kPrivKey;
        } else {
            agent.community = kReadCommunity;
            agent.writeCommunity = kWriteCommunity;
        }
        agents.agents.push_back(std::move(agent));
    }
    return agents;
}

void TSnmpLocalAgent::WriteAgentsFile(const std::string& path, TSnmpAgent::Version version, const std::string& prefix,
                                      double timeout, int retries) const
{
    std::ostringstream text;
    text << "# agents of a private snmpd (pid " << m_pid << ")\n";
    for (const TSnmpAgent& a : MakeAgents(version, prefix, timeout, retries).agents) {
        text << "[ Agent : " << a.name << " ]\n    Address = " << a.address << "\n    Timeout = " << a.timeout
             << "\n    Retries = " << a.retries << "\n";
        if (version == TSnmpAgent::Version::V3)
            text << "    Version = 3\n    User = " << a.user
                 << "\n    Level = authPriv\n    AuthProtocol = " << a.authProtocol << "\n    AuthKey = " << a.authKey
                 << "\n    PrivProtocol = " << a.privProtocol << "\n    PrivKey = " << a.privKey << "\n";
        else
            text << "    Version = 2c\n    Community = " << a.community << "\n    WriteCommunity = " << a.writeCommunity
                 << "\n";
        text << "[ End Agent : " << a.name << " ]\n\n";
    }
    // Private from the first byte: it holds keys.
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, S_IRUSR | S_IWUSR);
    if (file < 0)
        throw TException(path + ": cannot be written");
    fchmod(file, S_IRUSR | S_IWUSR);
    const std::string content = text.str();
    const bool written = write(file, content.data(), content.size()) == static_cast<ssize_t>(content.size());
    close(file);
    if (!written)
        throw TException(path + ": cannot be written");
}

void TSnmpLocalAgent::Pause()
{
    if (m_pid > 0)
        kill(m_pid, SIGSTOP);
}

void TSnmpLocalAgent::Resume()
{
    if (m_pid > 0)
        kill(m_pid, SIGCONT);
}

void TSnmpLocalAgent::Stop()
{
    End(m_pid);
    m_pid = -1;
}
