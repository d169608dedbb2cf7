// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpAgentsFile.h"

#include "zed/TException.h"
#include "zed/ZedFile.h"
#include "zed/snmp/TSnmpKeys.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <map>
#include <optional>
#include <set>

namespace {

std::string Trim(const std::string& text)
{
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return text;
}

// net-snmp refuses shorter pass phrases when it makes the keys.
constexpr std::size_t kShortestKey = 8;
// Bounds of the bounds: a count past these is a typing slip, not a wish.
constexpr std::size_t kMostBound = 10000000;
constexpr std::size_t kMostWalkBytes = std::size_t(1) << 32;

class AgentsReader {
public:
    AgentsReader(const std::string& source) : m_source(source) {}

    TSnmpAgents Read(const std::string& text)
    {
        std::size_t start = 0;
        while (start <= text.size()) {
            std::size_t end = text.find('\n', start);
            if (end == std::string::npos)
                end = text.size();
            ++m_line;
            Line(Trim(text.substr(start, end - start)));
            start = end + 1;
        }
        if (m_open)
            Fail("the section \"" + m_section + "\" has no end line", m_openedAt);
        return std::move(m_result);
    }

private:
    [[noreturn]] void Fail(const std::string& fault, int line = 0) const
    {
        throw TException(m_source + ":" + std::to_string(line ? line : m_line) + ": " + fault);
    }

    void Line(const std::string& line)
    {
        if (line.empty() || line[0] == '#')
            return;
        if (line.front() == '[') {
            if (line.back() != ']')
                Fail("a section line ends with \"]\"");
            Section(Trim(line.substr(1, line.size() - 2)));
            return;
        }
        const auto equals = line.find('=');
        if (equals == std::string::npos)
            Fail("expected \"Key = value\" or a section line");
        if (!m_open)
            Fail("a key outside any section");
        std::string value = Trim(line.substr(equals + 1));
        if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
            value = value.substr(1, value.size() - 2);
        Key(Trim(line.substr(0, equals)), value);
    }

    void Section(const std::string& head)
    {
        const bool isEnd = Lower(head.substr(0, 4)) == "end " || Lower(head) == "end";
        const std::string name = isEnd ? Trim(head.substr(3)) : head;
        if (isEnd) {
            if (!m_open)
                Fail("an end line without its section");
            if (Lower(name) != Lower(m_section))
                Fail("the section \"" + m_section + "\" (line " + std::to_string(m_openedAt) + ") ends with \"End "
                     + name + "\"");
            Close();
            return;
        }
        if (m_open)
            Fail("the section \"" + m_section + "\" (line " + std::to_string(m_openedAt) + ") has no end line");
        m_open = true;
        m_section = name;
        m_openedAt = m_line;
        m_keys.clear();
        const auto colon = name.find(':');
        const std::string kind = Lower(Trim(name.substr(0, colon)));
        if (kind == "agent" && colon != std::string::npos) {
            m_agent = TSnmpAgent{};
            m_agent->name = Trim(name.substr(colon + 1));
            if (m_agent->name.empty())
                Fail("an agent section names its agent: [ Agent : name ]");
            if (!m_names.insert(m_agent->name).second)
                Fail("a second agent named \"" + m_agent->name + "\"");
        } else if ((kind == "notifications" || kind == "calls") && colon == std::string::npos) {
            m_agent.reset();
            m_calls = kind == "calls";
        } else {
            Fail("unknown section \"" + name + "\": expected \"Agent : name\", \"Notifications\" or \"Calls\"");
        }
    }

    void Key(const std::string& key, const std::string& value)
    {
        const std::string lower = Lower(key);
        if (!m_keys.insert(lower).second)
            Fail("the key " + key + " is given twice in this section");
        if (m_agent)
            AgentKey(*m_agent, lower, key, value);
        else if (m_calls)
            CallsKey(lower, key, value);
        else
            NotificationsKey(lower, key, value);
    }

    void CallsKey(const std::string& lower, const std::string& key, const std::string& value)
    {
        if (lower == "mostrows")
            m_result.callRows = Count(key, value, kMostBound);
        else if (lower == "mostbytes")
            m_result.callBytes = Count(key, value, kMostWalkBytes);
        else
            Fail("unknown key " + key + " in Calls: expected MostRows or MostBytes");
    }

    void NotificationsKey(const std::string& lower, const std::string& key, const std::string& value)
    {
        if (lower == "address")
            m_result.receiverAddress = NonEmpty(key, value);
        else if (lower == "mostwaiting")
            m_result.mostWaiting = Count(key, value, kMostBound);
        else
            Fail("unknown key " + key + " in Notifications: expected Address or MostWaiting");
    }

    void AgentKey(TSnmpAgent& a, const std::string& lower, const std::string& key, const std::string& value)
    {
        if (lower == "address")
            a.address = NonEmpty(key, value);
        else if (lower == "version")
            a.version = Version(value);
        else if (lower == "community")
            a.community = NonEmpty(key, value);
        else if (lower == "writecommunity")
            a.writeCommunity = NonEmpty(key, value);
        else if (lower == "timeout")
            a.timeout = Seconds(value);
        else if (lower == "retries")
            a.retries = Retries(value);
        else if (lower == "trapcommunity")
            a.trapCommunity = NonEmpty(key, value);
        else if (lower == "walkrows")
            a.walkRows = Count(key, value, kMostBound);
        else if (lower == "walkbytes")
            a.walkBytes = Count(key, value, kMostWalkBytes);
        else if (lower == "walktime")
            a.walkTime = Seconds(value, key);
        else if (lower == "user")
            a.user = NonEmpty(key, value);
        else if (lower == "authprotocol")
            a.authProtocol = OneOf(key, value, {"SHA-256", "SHA-512"});
        else if (lower == "authkey")
            a.authKey = Key8(key, value);
        else if (lower == "privprotocol")
            a.privProtocol = OneOf(key, value, {"AES"});
        else if (lower == "privkey")
            a.privKey = Key8(key, value);
        else if (lower == "level")
            a.level = Level(value);
        else if (lower == "mibs")
            a.mibs = NonEmpty(key, value);
        else
            Fail("unknown key " + key
                 + ": expected Address, Version, Community, WriteCommunity, TrapCommunity, "
                   "Timeout, Retries, WalkRows, WalkBytes, WalkTime, User, Level, AuthProtocol, "
                   "AuthKey, PrivProtocol, PrivKey or Mibs");
    }

    void Close()
    {
        m_open = false;
        if (!m_agent)
            return;
        TSnmpAgent& a = *m_agent;
        const auto missing = [&](const char* what) { Fail("the agent " + a.name + " has no " + what, m_openedAt); };
        if (a.address.empty())
            missing("Address");
        if (a.version == TSnmpAgent::Version::V3) {
            if (a.user.empty())
                missing("User (SNMPv3)");
            if (!m_keys.count("level"))
                a.level = !a.privKey.empty()   ? TSnmpAgent::Level::AuthPriv
                          : !a.authKey.empty() ? TSnmpAgent::Level::AuthNoPriv
                                               : TSnmpAgent::Level::NoAuthNoPriv;
            if (a.level != TSnmpAgent::Level::NoAuthNoPriv && a.authKey.empty())
                missing("AuthKey for its Level");
            if (a.level == TSnmpAgent::Level::AuthPriv && a.privKey.empty())
                missing("PrivKey for its Level");
            if (a.level != TSnmpAgent::Level::NoAuthNoPriv && a.authProtocol.empty())
                a.authProtocol = "SHA-256";
            if (a.level == TSnmpAgent::Level::AuthPriv && a.privProtocol.empty())
                a.privProtocol = "AES";
        } else if (!a.user.empty() || !a.authKey.empty() || !a.privKey.empty()) {
            Fail("the agent " + a.name + " has SNMPv3 keys but Version is not 3", m_openedAt);
        }
        m_result.agents.push_back(std::move(a));
        m_agent.reset();
    }

    std::string NonEmpty(const std::string& key, const std::string& value) const
    {
        if (value.empty())
            Fail("the key " + key + " has no value");
        return value;
    }

    std::string Key8(const std::string& key, const std::string& value) const
    {
        if (value.size() < kShortestKey)
            Fail(key + " is shorter than " + std::to_string(kShortestKey) + " characters");
        return value;
    }

    std::string OneOf(const std::string& key, const std::string& value, std::initializer_list<const char*> known) const
    {
        std::string list;
        for (const char* k : known) {
            if (Lower(value) == Lower(k))
                return k;
            list += (list.empty() ? "" : ", ") + std::string(k);
        }
        Fail(key + " \"" + value + "\" is not one of " + list);
    }

    TSnmpAgent::Version Version(const std::string& value) const
    {
        const std::string v = Lower(value);
        if (v == "1")
            return TSnmpAgent::Version::V1;
        if (v == "2c")
            return TSnmpAgent::Version::V2c;
        if (v == "3")
            return TSnmpAgent::Version::V3;
        Fail("Version \"" + value + "\" is not 1, 2c or 3");
    }

    TSnmpAgent::Level Level(const std::string& value) const
    {
        const std::string v = Lower(value);
        if (v == "noauthnopriv")
            return TSnmpAgent::Level::NoAuthNoPriv;
        if (v == "authnopriv")
            return TSnmpAgent::Level::AuthNoPriv;
        if (v == "authpriv")
            return TSnmpAgent::Level::AuthPriv;
        Fail("Level \"" + value + "\" is not noAuthNoPriv, authNoPriv or authPriv");
    }

    double Seconds(const std::string& value, const std::string& key = "Timeout") const
    {
        double seconds = 0;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), seconds);
        if (error != std::errc() || end != value.data() + value.size() || !(seconds >= 0.01 && seconds <= 3600))
            Fail(key + " \"" + value + "\" is not a number of seconds from 0.01 to 3600");
        return seconds;
    }

    std::size_t Count(const std::string& key, const std::string& value, std::size_t most) const
    {
        std::size_t count = 0;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), count);
        if (error != std::errc() || end != value.data() + value.size() || count < 1 || count > most)
            Fail(key + " \"" + value + "\" is not a whole number from 1 to " + std::to_string(most));
        return count;
    }

    int Retries(const std::string& value) const
    {
        int retries = -1;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), retries);
        if (error != std::errc() || end != value.data() + value.size() || retries < 0 || retries > 20)
            Fail("Retries \"" + value + "\" is not a whole number from 0 to 20");
        return retries;
    }

    std::string m_source;
    int m_line = 0;
    bool m_open = false;
    std::string m_section;
    int m_openedAt = 0;
    std::set<std::string> m_keys;
    std::set<std::string> m_names;
    std::optional<TSnmpAgent> m_agent;
    bool m_calls = false;  // in the Calls section
    TSnmpAgents m_result;
};

}  // namespace

const TSnmpAgent* TSnmpAgents::Find(const std::string& name) const
{
    for (const TSnmpAgent& agent : agents)
        if (agent.name == name)
            return &agent;
    return nullptr;
}

TSnmpAgents ZedParseAgents(const std::string& text, const std::string& source)
{
    return AgentsReader(source).Read(text);
}

TSnmpAgents ZedReadAgentsFile(const std::string& path)
{
    std::string text = ZedReadFile(path, "agents file");
    TSnmpAgents agents;
    try {
        agents = ZedParseAgents(text, path);
    } catch (...) {
        ZedWipe(text);
        throw;
    }
    ZedWipe(text);  // it held the pass phrases
    struct stat info {};
    if (stat(path.c_str(), &info) != 0) {
        for (TSnmpAgent& agent : agents.agents)
            ZedSnmpSealKeys(agent);
        return agents;  // read a moment ago: gone since, as if read before
    }
    char mode[8];
    std::snprintf(mode, sizeof mode, "%04o", unsigned(info.st_mode & 07777));
    if (info.st_mode & (S_IWGRP | S_IWOTH))
        throw TException(path + ": its group or others may write it (mode " + mode
                         + "), and so point an agent at a host of their own; make it private with: chmod 600 " + path);
    if (info.st_uid != geteuid() && info.st_uid != 0)
        throw TException(path + ": it belongs to another user (uid " + std::to_string(info.st_uid)
                         + "), who may point an agent at a host of their own; copy it to a file of your own");
    const bool secret =
        std::any_of(agents.agents.begin(), agents.agents.end(), [](const TSnmpAgent& a) { return a.HoldsSecrets(); });
    if (secret && (info.st_mode & (S_IRGRP | S_IROTH)))
        throw TException(path + ": holds keys or a write community but its group or others may read it (mode " + mode
                         + "); make it private with: chmod 600 " + path);
    for (TSnmpAgent& agent : agents.agents)
        ZedSnmpSealKeys(agent);
    return agents;
}
