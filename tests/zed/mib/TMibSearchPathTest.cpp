// SPDX-License-Identifier: BSD-3-Clause
// Where MIB modules are found and which are loaded, as net-snmp's tools
// decide it, on folders the test makes.

#include "support/TempDir.h"
#include "zed/mib/TMibSearchPath.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

namespace {

std::string Module(const std::string& name)
{
    return "-- a comment naming OTHER-MIB DEFINITIONS first\n" + name
           + " DEFINITIONS ::= BEGIN\nIMPORTS OBJECT-TYPE FROM SNMPv2-SMI;\nEND\n";
}

TEST(MibSearchPath, TheDefaultIsNetSnmpsThenDebiansDownloadedFolders)
{
    const TMibSearchPath path = TMibSearchPath::Default("/home/op");
    EXPECT_THAT(path.Folders(), ElementsAre("/home/op/.snmp/mibs", "/usr/share/snmp/mibs", "/usr/share/snmp/mibs/iana",
                                            "/usr/share/snmp/mibs/ietf", "/usr/share/mibs/ietf", "/usr/share/mibs/iana",
                                            "/usr/share/mibs/netsnmp"));
    EXPECT_THAT(TMibSearchPath::Default("").Folders(), Not(Contains("/.snmp/mibs"))) << "no home, no home folder";

    TMibSearchPath changed = path;
    changed.Apply("+/opt/mibs::/usr/share/snmp/mibs");
    EXPECT_EQ(changed.Folders().size(), path.Folders().size() + 1) << "added after, each folder once";
    EXPECT_EQ(changed.Folders().back(), "/opt/mibs");
    changed.Apply("/a:/b");
    EXPECT_THAT(changed.Folders(), ElementsAre("/a", "/b"));
    EXPECT_EQ(changed.Joined(), "/a:/b");
}

TEST(MibSearchPath, AModuleIsFoundByItsNameWhateverItsExtensionThenByWhatItDefines)
{
    TempDir first, second;
    TempDir::Write(second / "IF-MIB.funcs", "{sysDescr, {system, descr}}.\n");
    TempDir::Write(second / "IF-MIB.mib", Module("IF-MIB"));
    TempDir::Write(first / "IF-MIB.txt", Module("IF-MIB"));
    TempDir::Write(second / "SNMPv2-SMI", Module("SNMPv2-SMI"));
    TempDir::Write(second / "rfc9999.txt", Module("MY-MIB"));
    TempDir::Write(second / "notes.txt", "no module here\n");
    TMibSearchPath path;
    path.Apply(first.Path() + ":" + second.Path() + ":/no/such/folder");

    EXPECT_EQ(path.FindModule("IF-MIB"), first / "IF-MIB.txt") << "the first folder's";
    path.Apply(second.Path());
    EXPECT_EQ(path.FindModule("IF-MIB"), second / "IF-MIB.mib") << "not the file of the same name that is no module";
    path.Apply(first.Path() + ":" + second.Path());
    EXPECT_EQ(path.FindModule("SNMPv2-SMI"), second / "SNMPv2-SMI");
    EXPECT_EQ(path.FindModule("MY-MIB"), second / "rfc9999.txt") << "by the name its text defines";
    EXPECT_EQ(path.FindModule("OTHER-MIB"), std::nullopt) << "a comment defines nothing";
    EXPECT_THAT(path.AllModules(), ElementsAre("IF-MIB", "MY-MIB", "SNMPv2-SMI"));
}

TEST(MibSearchPath, ModuleListsAddToTheDefaultsWithAPlusReplaceThemOtherwiseAndAllIsEveryModule)
{
    TempDir folder;
    TempDir::Write(folder / "A-MIB.txt", Module("A-MIB"));
    TempDir::Write(folder / "B-MIB.txt", Module("B-MIB"));
    TMibSearchPath path;
    path.Apply(folder.Path());
    const std::vector<std::string> defaults = {"SNMPv2-MIB", "IF-MIB"};

    EXPECT_THAT(ZedMibModuleList("+X-MIB,IF-MIB", defaults, path), ElementsAre("SNMPv2-MIB", "IF-MIB", "X-MIB"));
    EXPECT_THAT(ZedMibModuleList("X-MIB: Y-MIB", defaults, path), ElementsAre("X-MIB", "Y-MIB"));
    EXPECT_THAT(ZedMibModuleList("ALL", defaults, path), ElementsAre("A-MIB", "B-MIB"));
    EXPECT_THAT(ZedMibModuleList("", defaults, path), ElementsAre());
    EXPECT_THAT(ZedMibDefaultModules(), Contains("IF-MIB"));
}

}  // namespace
