// SPDX-License-Identifier: BSD-3-Clause
// zedsh: the access library from the command line, on the simulated network.
//
//   zedsh classes                       the class tree
//   zedsh attributes CLASS              a class's attributes ("Network Router")
//   zedsh directives CLASS              its directives, arguments and replies
//   zedsh types                         the dictionary's types
//   zedsh call ENTITY DIRECTIVE [ARGUMENT=VALUE ...]
//                                       carries a directive out and prints the
//                                       replies and any event reports; a
//                                       directive that takes attributes (Set,
//                                       Create) is given ATTRIBUTE=VALUE
//   zedsh validate FILE...              checks dictionary and instance files,
//                                       printing every fault with its file
//                                       and JSON path
//   zedsh mib MODULE...                 compiles MIB modules into a dictionary
//
// Options before the command: --dictionary FILE, --instances FILE (default:
// $ZED_DICTIONARY, $ZED_INSTANCES, else the network shipped in data/network);
// --agents FILE reaches the SNMP agents of an agents file instead of the
// simulated network (the dictionary then defaults to data/snmp's, with the
// MIB modules of net-snmp's default list found, or those --mibs names, and
// those the agents name, compiled in; --mib-dirs says where they are).
// Exit status: 0 done (responses; every file valid), 1 an exception reply
// came back (a file is not valid), 2 bad command line or argument, 3 a file
// could not be loaded.

#include "ShippedNetwork.h"
#include "ToolOptions.h"
#include "Mib.h"
#include "Validate.h"
#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/call/TCall.h"
#include "zed/call/TReplyText.h"
#include "zed/mib/TMibLoad.h"
#include "zed/sim/TSimulatedNetwork.h"
#include "zed/snmp/TSnmpModule.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TEventReport.h"
#include "zed/value/TValueParser.h"

#include <cstdlib>
#include <cstdint>
#include <iostream>
#include <string>
#include <vector>

// The version record of the project's binaries (zedsh stands on zed alone).
[[gnu::used]] static const char zedsh_version_record[] =
    "@(#)KELVERSION " ZED_VERSION_STRING ";FileDescription=zedsh;ProductName=KEL;";

namespace {

constexpr int kExitException = 1;
constexpr int kExitUsage = kToolExitUsage;
constexpr int kExitLoad = 3;

const char* kUsage = "usage: zedsh [--dictionary FILE] [--instances FILE | --agents FILE [--mibs MODULES]]\n"
                     "             [--mib-dirs DIRS] COMMAND\n"
                     "commands:\n"
                     "  classes                              the class tree\n"
                     "  attributes CLASS                     attributes of a class, e.g. \"Network Router\"\n"
                     "  directives CLASS                     directives of a class with their arguments\n"
                     "  types                                the dictionary's types\n"
                     "  call ENTITY DIRECTIVE [ARG=VALUE...] carry a directive out, e.g.\n"
                     "      zedsh call \"Network core Router *\" Show Partition=Status\n"
                     "      zedsh call \"Network core Router r1 Interface eth0\" Test Count=3\n"
                     "      zedsh call \"Network core Router r1\" Set Priority=7 'Location={\"Site\": \"Hall C\"}'\n"
                     "      zedsh --agents agents.conf call \"Agent core-r1\" Set Location=\"Hall C\"\n"
                     "    Directives that take attributes (Set, Create) are given ATTRIBUTE=VALUE.\n"
                     "    ARG=@default sends the argument marked \"use the server's default\".\n"
                     "  validate FILE...                     check dictionary and instance files, printing every\n"
                     "                                       fault as FILE: JSON path: reason; instance files are\n"
                     "                                       checked against a dictionary among the FILEs, else\n"
                     "                                       the --dictionary one\n"
                     "  mib [--mib-dirs DIRS] [--with-retired] MODULE...\n"
                     "                                       compile MIB modules (names, or files by path) into a\n"
                     "                                       dictionary written on standard output; faults on\n"
                     "                                       standard error\n";

const char* AccessText(ZED_T_DICT_ACCESS access)
{
    switch (access) {
    case ZED_ACCESS_READ_ONLY: return "read-only";
    case ZED_ACCESS_WRITE_ONLY: return "write-only";
    case ZED_ACCESS_READ_WRITE: return "read-write";
    default: return "-";
    }
}

std::string DefaultText(const TDictValue& value)
{
    switch (value.DefaultAllowed()) {
    case ZED_DEFAULT_DICTIONARY: return ", default \"" + value.GetDefaultValue() + "\"";
    case ZED_DEFAULT_SERVER: return ", default from the server";
    default: return "";
    }
}

void PrintClasses(const TDictClass& cls, int depth)
{
    std::cout << std::string(2 * depth, ' ') << cls.GetName() << " (" << cls.GetCode() << ")\n";
    for (std::size_t i = 0; i < cls.GetChildCount(); ++i)
        PrintClasses(cls.GetChild(i), depth + 1);
}

void PrintArguments(const std::vector<TDictArgument>& arguments, const char* indent)
{
    for (const TDictArgument& a : arguments)
        std::cout << indent << a.GetName() << " (" << a.GetID() << ") : " << a.GetType().GetName()
                  << (a.IsRequired() ? ", required" : "") << (a.GetUnits().empty() ? "" : ", in " + a.GetUnits())
                  << DefaultText(a) << "\n";
}

const TDictClass* ClassOf(const TDictionary& dictionary, const std::string& text)
{
    std::string error;
    auto cls = TEntityClass::Parse(text, &dictionary, &error);
    const TDictClass* found = cls ? dictionary.FindClass(*cls) : nullptr;
    if (!found)
        std::cerr << "zedsh: no class \"" << text << "\"" << (error.empty() ? "" : ": " + error) << "\n";
    return found;
}

// Long texts (a pasted argument can be megabytes) are cut in messages.
std::string Shown(const std::string& text)
{
    constexpr std::size_t kShown = 60;
    if (text.size() <= kShown + 20)
        return "\"" + text + "\"";
    return "\"" + text.substr(0, kShown) + "...\" (" + std::to_string(text.size()) + " characters)";
}

// The request's value of one ATTRIBUTE=VALUE or ARGUMENT=VALUE word; none
// (said on standard error) when it is not one.
TValuePtr RequestValue(const TDictionary& dictionary, const TDictClass& cls, const TDictDirective& directive,
                       const std::string& word)
{
    // A directive that takes attributes names them; any other its arguments.
    const bool attributes = directive.TakesAttributes();
    const auto equals = word.find('=');
    const std::string name = equals == std::string::npos ? std::string() : word.substr(0, equals);
    const TDictValue* element = nullptr;
    if (equals != std::string::npos)
        element =
            attributes ? static_cast<const TDictValue*>(cls.FindAttribute(name)) : directive.FindRequestArgument(name);
    if (!element) {
        std::cerr << "zedsh: " << Shown(word) << " is not " << (attributes ? "ATTRIBUTE" : "ARGUMENT") << "=VALUE for "
                  << (attributes ? "an attribute of " + cls.GetName() : "an argument of " + directive.GetName())
                  << "\n";
        return nullptr;
    }
    const std::string text = word.substr(equals + 1);
    std::string error;
    TValuePtr value;
    if (text == "@default") {
        if ((value = ZEDMakeValue(element->GetType(), element->GetID())))
            value->SetDefault();
    } else {
        value = ZEDParseValue(element->GetType(), text, element->GetID(), {&dictionary, &cls}, &error);
    }
    if (!value)
        std::cerr << "zedsh: " << element->GetName() << ": " << Shown(text) << ": " << error << "\n";
    return value;
}

// The directive of words[1] on the entity of words[0]; none (said) when either is not the dictionary's.
const TDictDirective* DirectiveOf(const TDictionary& dictionary, const std::vector<std::string>& words,
                                  std::optional<TEntitySpec>& entity)
{
    std::string error;
    entity = TEntitySpec::Parse(words[0], &dictionary, &error);
    if (entity && entity->GetDepth() == 0) {
        entity.reset();
        error = "names no class";
    }
    if (!entity) {
        std::cerr << "zedsh: bad entity " << Shown(words[0]) << ": " << error << "\n";
        return nullptr;
    }
    const TDictClass* cls = dictionary.FindClass(entity->GetEntityClass());
    const TDictDirective* directive = cls ? cls->FindDirective(words[1]) : nullptr;
    if (!directive)
        std::cerr << "zedsh: "
                  << (cls ? cls->GetName() + " has no directive " + Shown(words[1])
                          : "no class of the dictionary for " + Shown(words[0]))
                  << "\n";
    return directive;
}

int Call(const TDictionary& dictionary, const std::vector<std::string>& words)
{
    std::optional<TEntitySpec> entity;
    const TDictDirective* directive = DirectiveOf(dictionary, words, entity);
    if (!directive)
        return kExitUsage;
    const TDictClass& cls = *dictionary.FindClass(entity->GetEntityClass());
    TSyncCall call(*entity, directive->GetID());
    for (std::size_t i = 2; i < words.size(); ++i) {
        TValuePtr value = RequestValue(dictionary, cls, *directive, words[i]);
        if (!value)
            return kExitUsage;
        call.GetRequest().Add(std::move(value));
    }
    call.Execute();
    bool exception = false;
    for (std::size_t i = 0; call.SelectReply(i); ++i) {
        ZEDWriteReply(std::cout, dictionary, call, directive->GetID());
        exception = exception || call.GetReply().GetReplyType() != ZED_REPLY_RESPONSE;
    }
    for (const TCallResult& event : ZEDGetApplication()->TakeEvents())
        ZEDWriteEvents(std::cout, dictionary, event);
    return exception ? kExitException : 0;
}

int ListClasses(const TDictionary& dictionary, const std::vector<std::string>&)
{
    for (std::size_t i = 0; i < dictionary.GetRootClassCount(); ++i)
        PrintClasses(dictionary.GetRootClass(i), 0);
    return 0;
}

int ListTypes(const TDictionary& dictionary, const std::vector<std::string>&)
{
    for (const TDictTypePtr& type : dictionary.GetTypes())
        std::cout << type->GetName() << " (" << type->GetID() << "): " << type->ToString() << "\n";
    return 0;
}

int ListAttributes(const TDictionary& dictionary, const std::vector<std::string>& words)
{
    const TDictClass* cls = ClassOf(dictionary, words[0]);
    if (!cls)
        return kExitUsage;
    for (const TDictAttribute& a : cls->GetAttributes()) {
        const std::string* partition = dictionary.FindPartitionName(a.GetPartition());
        std::cout << a.GetName() << " (" << a.GetID() << ") : " << a.GetType().GetName() << ", "
                  << (partition ? *partition : "?") << ", " << AccessText(a.GetAccess())
                  << (a.GetUnits().empty() ? "" : ", in " + a.GetUnits()) << DefaultText(a)
                  << (a.IsDisplayed() ? "" : ", not displayed") << "\n";
    }
    return 0;
}

int ListDirectives(const TDictionary& dictionary, const std::vector<std::string>& words)
{
    const TDictClass* cls = ClassOf(dictionary, words[0]);
    if (!cls)
        return kExitUsage;
    for (const TDictDirective& d : cls->GetDirectives()) {
        std::cout << d.GetName() << " (" << d.GetID() << ")" << (d.TakesAttributes() ? ": takes attribute values" : "")
                  << "\n";
        PrintArguments(d.GetRequestArguments(), "    ");
        for (const auto* replies : {&d.GetResponses(), &d.GetExceptions()})
            for (const TDictReply& r : *replies) {
                std::cout << "  " << (r.GetDictObjectType() == ZED_DICT_RESPONSE ? "response " : "exception ")
                          << r.GetName() << " (" << r.GetReplyCode() << "): " << r.GetReplyText() << "\n";
                PrintArguments(r.GetArguments(), "      ");
            }
    }
    return 0;
}

// The commands that read the network's dictionary, with how many words follow each.
struct Command {
    std::string_view name;
    std::size_t least, most;
    int (*run)(const TDictionary&, const std::vector<std::string>&);
};
constexpr Command kCommands[] = {
    {"classes", 0, 0, ListClasses},       {"types", 0, 0, ListTypes},  {"attributes", 1, 1, ListAttributes},
    {"directives", 1, 1, ListDirectives}, {"call", 2, SIZE_MAX, Call},
};

struct Files {
    std::string dictionary, instances, agents, mibs, mibDirs;
};

// A call waits for its answers and ends: nothing to receive notifications for.
std::shared_ptr<TManagementModule> InstallNetwork(const Files& files)
{
    if (files.agents.empty())
        return TSimulatedNetwork::Install(NetworkFileOption(files.dictionary, "ZED_DICTIONARY", "dictionary.json"),
                                          NetworkFileOption(files.instances, "ZED_INSTANCES", "instances.json"));
    const TSnmpInstall install =
        ZedInstallSnmp(files.dictionary.empty() ? ShippedNetworkFile("../snmp/dictionary.json") : files.dictionary,
                       files.agents, TMibChoice::FromCommandLine(files.mibDirs, files.mibs), false);
    for (const TMibFault& fault : install.mibs.faults)
        std::cerr << "zedsh: " << (fault.fatal ? "" : "warning: ") << fault.Said() << "\n";
    return install.module;
}

int RunCommand(const std::vector<std::string>& words)
{
    const TDictionary& dictionary = *ZEDGetApplication()->GetDictionary();
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    for (const Command& command : kCommands)
        if (command.name == words[0] && rest.size() >= command.least && rest.size() <= command.most) {
            try {
                return command.run(dictionary, rest);
            } catch (const TException& e) {
                std::cerr << "zedsh: " << e.what() << "\n";
                return kExitUsage;
            }
        }
    std::cerr << kUsage;
    return kExitUsage;
}

}  // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> words(argv + 1, argv + argc);
    if (const std::optional<int> answered = AnswerHelpOrVersion(words, "zedsh", kUsage))
        return *answered;
    Files files;
    if (!TakeValueOptions(words,
                          {{"--dictionary", &files.dictionary},
                           {"--instances", &files.instances},
                           {"--agents", &files.agents},
                           {"--mibs", &files.mibs},
                           {"--mib-dirs", &files.mibDirs}},
                          true)
        || words.empty() || (!files.agents.empty() && !files.instances.empty())
        || (files.agents.empty() && !(files.mibs + files.mibDirs).empty() && words[0] != "mib"))
        return UsageError(kUsage);
    if (words[0] == "help") {
        std::cout << kUsage;
        return 0;
    }
    // Checking files must not depend on the network loading.
    if (words[0] == "validate") {
        if (words.size() < 2) {
            std::cerr << kUsage;
            return kExitUsage;
        }
        return ZedshValidate(std::vector<std::string>(words.begin() + 1, words.end()),
                             NetworkFileOption(files.dictionary, "ZED_DICTIONARY", "dictionary.json"));
    }
    if (words[0] == "mib")
        return ZedshMib(std::vector<std::string>(words.begin() + 1, words.end()), files.mibDirs, kUsage);
    std::shared_ptr<TManagementModule> network;
    try {
        network = InstallNetwork(files);
    } catch (const TException& e) {
        std::cerr << "zedsh: " << e.what() << "\n";
        return kExitLoad;
    }
    return RunCommand(words);
}
