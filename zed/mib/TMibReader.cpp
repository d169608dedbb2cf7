// SPDX-License-Identifier: BSD-3-Clause
#include "zed/mib/TMibReader.h"

#include "zed/mib/TMibFaults.h"
#include "zed/snmp/ZedSnmpLibrary.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <algorithm>
#include <filesystem>
#include <mutex>
#include <set>

namespace fs = std::filesystem;

namespace {

// net-snmp's module_name() writes into a buffer of this size at most.
constexpr std::size_t kModuleNameBytes = 256;

std::mutex& ParserLock()
{
    static std::mutex lock;
    return lock;
}

const char* SyntaxOfType(int type)
{
    switch (type) {
    case TYPE_OBJID: return "OBJECT IDENTIFIER";
    case TYPE_OCTETSTR: return "OCTET STRING";
    case TYPE_INTEGER: return "INTEGER";
    case TYPE_NETADDR: return "NetworkAddress";
    case TYPE_IPADDR: return "IpAddress";
    case TYPE_COUNTER: return "Counter32";
    case TYPE_GAUGE: return "Gauge32";
    case TYPE_TIMETICKS: return "TimeTicks";
    case TYPE_OPAQUE: return "Opaque";
    case TYPE_COUNTER64: return "Counter64";
    case TYPE_BITSTRING: return "BITS";
    case TYPE_NSAPADDRESS: return "NsapAddress";
    case TYPE_UINTEGER: return "UInteger32";
    case TYPE_UNSIGNED32: return "Unsigned32";
    case TYPE_INTEGER32: return "Integer32";
    default: return "";
    }
}

ZedMibAccess AccessOf(int access)
{
    switch (access) {
    case MIB_ACCESS_READONLY: return ZedMibAccess::ReadOnly;
    case MIB_ACCESS_READWRITE: return ZedMibAccess::ReadWrite;
    case MIB_ACCESS_WRITEONLY: return ZedMibAccess::WriteOnly;
    case MIB_ACCESS_CREATE: return ZedMibAccess::ReadCreate;
    case MIB_ACCESS_NOTIFY: return ZedMibAccess::ForNotify;
    default: return ZedMibAccess::NotAccessible;
    }
}

ZedMibStatus StatusOf(int status)
{
    if (status == MIB_STATUS_DEPRECATED)
        return ZedMibStatus::Deprecated;
    if (status == MIB_STATUS_OBSOLETE)
        return ZedMibStatus::Obsolete;
    return ZedMibStatus::Current;
}

// SMI text is ASCII, but vendors write descriptions in Latin-1 too: text
// that is not UTF-8 is read as Latin-1, so that nothing of it is lost or
// taken for something else.
std::string Utf8(std::string_view text)
{
    std::size_t at = 0;
    while (at < text.size()) {
        const auto lead = static_cast<unsigned char>(text[at]);
        const std::size_t length = lead < 0x80           ? 1
                                   : (lead >> 5) == 0x6  ? 2
                                   : (lead >> 4) == 0xe  ? 3
                                   : (lead >> 3) == 0x1e ? 4
                                                         : 0;
        bool valid = length > 0 && at + length <= text.size();
        for (std::size_t i = 1; valid && i < length; ++i)
            valid = (static_cast<unsigned char>(text[at + i]) & 0xc0) == 0x80;
        if (!valid)
            break;
        at += length;
    }
    if (at == text.size())
        return std::string(text);
    std::string latin1;
    for (char c : text) {
        const auto octet = static_cast<unsigned char>(c);
        if (octet < 0x80) {
            latin1 += c;
        } else {
            latin1 += static_cast<char>(0xc0 | (octet >> 6));
            latin1 += static_cast<char>(0x80 | (octet & 0x3f));
        }
    }
    return latin1;
}

std::string Text(const char* text) { return text ? Utf8(text) : std::string(); }

// A description's lines without the indentation of the text around it.
std::string PlainText(const char* text)
{
    std::string plain;
    std::string_view rest = text ? text : "";
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        while (!line.empty() && (line.front() == ' ' || line.front() == '\t'))
            line.remove_prefix(1);
        while (!line.empty() && (line.back() == ' ' || line.back() == '\t' || line.back() == '\r'))
            line.remove_suffix(1);
        plain.append(plain.empty() ? "" : "\n").append(line);
    }
    return Utf8(plain);
}

bool IsEntry(const tree& node) { return node.indexes || node.augments; }

bool HasEntryChild(const tree& node)
{
    for (const tree* child = node.child_list; child; child = child->next_peer)
        if (IsEntry(*child))
            return true;
    return false;
}

ZedMibKind KindOf(const tree& node)
{
    if (node.type == TYPE_NOTIFTYPE || node.type == TYPE_TRAPTYPE)
        return ZedMibKind::Notification;
    if (IsEntry(node))
        return ZedMibKind::Entry;
    if (HasEntryChild(node))
        return ZedMibKind::Table;
    if (*SyntaxOfType(node.type) == '\0' || node.child_list)
        return ZedMibKind::Node;
    return node.parent && IsEntry(*node.parent) ? ZedMibKind::Column : ZedMibKind::Scalar;
}

// The syntax and what the definition says of an object's values.
void ReadSyntax(const tree& node, TMibNode& out)
{
    out.syntax = SyntaxOfType(node.type);
    if (node.tc_index >= 0)
        if (const char* convention = get_tc_descriptor(node.tc_index))
            out.convention = Utf8(convention);
    out.hint = Text(node.hint);
    out.units = Text(node.units);
    out.defval = Text(node.defaultValue);
    for (const enum_list* item = node.enums; item; item = item->next)
        out.numbers.push_back({item->value, Text(item->label)});
    for (const range_list* range = node.ranges; range; range = range->next)
        out.ranges.push_back({range->low, range->high});
    // net-snmp lists named numbers last first.
    std::sort(out.numbers.begin(), out.numbers.end(),
              [](const TMibNamedNumber& a, const TMibNamedNumber& b) { return a.value < b.value; });
}

TMibNode NodeOf(const tree& node, ZedOid oid, std::string module)
{
    TMibNode out;
    out.name = Text(node.label);
    out.module = std::move(module);
    out.oid = std::move(oid);
    out.kind = KindOf(node);
    out.access = AccessOf(node.access);
    out.status = StatusOf(node.status);
    out.description = PlainText(node.description);
    if (out.kind == ZedMibKind::Scalar || out.kind == ZedMibKind::Column)
        ReadSyntax(node, out);
    for (const index_list* index = node.indexes; index; index = index->next) {
        out.index.push_back(Text(index->ilabel));
        out.implied = index->isimplied != 0;
    }
    out.augments = Text(node.augments);
    for (const varbind_list* object = node.varbinds; object; object = object->next)
        out.objects.push_back(Text(object->vblabel));
    return out;
}

// One read: the parser readied afresh, its messages heard, and both undone
// when the read ends, whatever way it ends.
class ParserSession {
public:
    explicit ParserSession(TMibFaultLog& log) : m_hold(ParserLock())
    {
        ZedSnmpInitLibrary();
        shutdown_mib();
        // The parser's keywords come with its roots, and are needed to tell
        // a module's file by its first words.
        netsnmp_init_mib_internals();
        snmp_set_save_descriptions(1);
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_MIB_ERRORS, 1);
        netsnmp_ds_set_int(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_MIB_WARNINGS, 1);
        m_previous = ZedSnmpSetLogSink([&log](int priority, const std::string& text) { log.Hear(priority, text); });
    }
    ~ParserSession()
    {
        ZedSnmpSetLogSink(std::move(m_previous));
        shutdown_mib();
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_MIB_ERRORS, 0);
        netsnmp_ds_set_int(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_MIB_WARNINGS, 0);
        snmp_set_save_descriptions(0);
    }
    ParserSession(const ParserSession&) = delete;
    ParserSession& operator=(const ParserSession&) = delete;

private:
    std::lock_guard<std::mutex> m_hold;
    ZedSnmpLogSink m_previous;
};

class Walker {
public:
    Walker(const std::set<std::string>& named, const std::set<std::string>& failed) : m_named(named), m_failed(failed)
    {
    }

    // Every node of the tree, depth first in OID order, without recursion:
    // a module may nest as deep as it likes.
    std::vector<TMibNode> Walk(const tree* head)
    {
        std::vector<TMibNode> nodes;
        std::vector<std::pair<const tree*, ZedOid>> stack;
        for (const tree* root = head; root; root = root->next_peer)
            stack.emplace_back(root, ZedOid{static_cast<std::uint32_t>(root->subid)});
        while (!stack.empty()) {
            auto [node, oid] = std::move(stack.back());
            stack.pop_back();
            if (std::string module = ModuleOf(*node); !m_failed.count(module))
                nodes.push_back(NodeOf(*node, oid, std::move(module)));
            for (const tree* child = node->child_list; child; child = child->next_peer) {
                ZedOid below = oid;
                below.push_back(static_cast<std::uint32_t>(child->subid));
                stack.emplace_back(child, std::move(below));
            }
        }
        std::sort(nodes.begin(), nodes.end(), [](const TMibNode& a, const TMibNode& b) { return a.oid < b.oid; });
        return nodes;
    }

private:
    // The module named by the caller that defines the node, else the first that does.
    std::string ModuleOf(const tree& node) const
    {
        char name[kModuleNameBytes] = {};
        std::string first = Utf8(module_name(node.modid, name));
        for (int i = 0; i < node.number_modules && node.module_list; ++i)
            if (std::string module = Utf8(module_name(node.module_list[i], name)); m_named.count(module))
                return module;
        return first;
    }

    const std::set<std::string>& m_named;
    const std::set<std::string>& m_failed;
};

std::string Normal(const std::string& file) { return fs::path(file).lexically_normal().string(); }

// A module asked for, and the file it is read from (none: not found).
struct Asked {
    std::string module;
    std::string file;
    bool byFile = false;
};

std::vector<Asked> Resolve(const TMibSearchPath& path, const std::vector<std::string>& modules, TMibFaultLog& log)
{
    const std::map<std::string, std::string> files = path.ModuleFiles();
    std::vector<Asked> asked;
    for (const std::string& name : modules) {
        Asked one;
        one.byFile = name.find('/') != std::string::npos;
        one.module = one.byFile ? TMibSearchPath::ModuleDefinedIn(name) : name;
        if (const auto found = files.find(one.module); one.byFile && !one.module.empty())
            one.file = Normal(name);
        else if (!one.byFile && found != files.end())
            one.file = Normal(found->second);
        if (one.module.empty())
            one.module = name;
        if (one.file.empty())
            log.NotFound(name, one.byFile, path.Joined());
        const auto same = [&one](const Asked& known) { return known.module == one.module; };
        if (std::none_of(asked.begin(), asked.end(), same))
            asked.push_back(std::move(one));
    }
    return asked;
}

}  // namespace

const TMibNode* TMibModules::Find(std::string_view name) const
{
    for (const TMibNode& node : nodes)
        if (node.name == name)
            return &node;
    return nullptr;
}

const TMibNode* TMibModules::Find(const ZedOid& oid) const
{
    const auto found = std::lower_bound(nodes.begin(), nodes.end(), oid,
                                        [](const TMibNode& node, const ZedOid& key) { return node.oid < key; });
    return found != nodes.end() && found->oid == oid ? &*found : nullptr;
}

std::vector<const TMibNode*> TMibModules::ChildrenOf(const TMibNode& parent) const
{
    std::vector<const TMibNode*> children;
    auto at = std::upper_bound(nodes.begin(), nodes.end(), parent.oid,
                               [](const ZedOid& key, const TMibNode& node) { return key < node.oid; });
    for (; at != nodes.end() && at->oid.size() > parent.oid.size()
           && std::equal(parent.oid.begin(), parent.oid.end(), at->oid.begin());
         ++at)
        if (at->oid.size() == parent.oid.size() + 1)
            children.push_back(&*at);
    return children;
}

TMibModules TMibReader::Read(const TMibSearchPath& path, const std::vector<std::string>& modules)
{
    TMibFaultLog log;
    const std::vector<Asked> asked = Resolve(path, modules, log);
    std::map<std::string, std::string> files;  // of the modules found
    for (const Asked& one : asked)
        if (!one.file.empty())
            files.emplace(one.module, one.file);
    TMibModules read;
    {
        ParserSession session(log);
        // The parser prefers the folder it was told of last.
        for (auto folder = path.Folders().rbegin(); folder != path.Folders().rend(); ++folder)
            add_mibdir(folder->c_str());
        for (const Asked& one : asked) {
            if (one.file.empty())
                continue;
            log.Reading(one.module);
            if (one.byFile)
                read_mib(one.file.c_str());
            else
                netsnmp_read_module(one.module.c_str());
        }
        adopt_orphans();
        log.Judge(files);
        std::set<std::string> named;
        for (const auto& [module, file] : files)
            named.insert(module);
        read.nodes = Walker(named, log.FailedModules()).Walk(get_tree_head());
    }
    for (const Asked& one : asked)
        (one.file.empty() || log.Failed(one.module) ? read.failed : read.loaded).push_back(one.module);
    read.faults = log.Faults();
    return read;
}
