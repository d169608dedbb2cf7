// SPDX-License-Identifier: BSD-3-Clause
#include "launch/GaLaunchRegistry.h"
#include "support/TempDir.h"
#include "support/WaitFor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <fcntl.h>
#include <unistd.h>

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

std::vector<std::string> Names(const GaLaunchRegistry& registry, std::vector<unsigned int> path, unsigned int directive,
                               unsigned int element)
{
    const GaLaunchQuery query{path.data(), static_cast<unsigned int>(path.size()), directive, element};
    std::vector<std::string> names;
    for (const GaLaunchRegistration* found : registry.Find(query))
        names.push_back(found->name);
    return names;
}

TEST(LaunchRegistry, MatchesClassDirectiveAndElementWithWildcards)
{
    const GaLaunchRegistry registry = GaLaunchRegistry::FromText(
        "[ Launch : Any ]\n    Command = a\n[ End Launch : Any ]\n"
        "[ Launch : Routers ]\n    Class = 1.2\n    Directive = *\n    Command = b\n[ End Launch : Routers ]\n"
        "[ Launch : Trace ]\n    Class = 1.2.3\n    Directive = 10\n    Element = 2\n    Command = c\n"
        "[ End Launch : Trace ]\n"
        "[ Display ]\n    Width = 3\n[ End Display ]\n");
    EXPECT_EQ(registry.All().size(), 3u) << "other sections are not registrations";
    EXPECT_THAT(Names(registry, {1, 2}, 5, 1), ElementsAre("Any", "Routers"));
    EXPECT_THAT(Names(registry, {1, 2, 3}, 10, 2), ElementsAre("Any", "Trace"));
    EXPECT_THAT(Names(registry, {1, 2, 3}, 10, 3), ElementsAre("Any"));
    EXPECT_THAT(Names(registry, {1}, 10, 2), ElementsAre("Any"));
}

TEST(LaunchRegistry, LeavesOutWhatCannotBeUsedAndSaysWhy)
{
    std::vector<std::string> problems;
    const GaLaunchRegistry registry = GaLaunchRegistry::FromText(
        "[ Launch : NoCommand ]\n    Class = 1\n[ End Launch : NoCommand ]\n"
        "[ Launch : BadClass ]\n    Class = 1..2\n    Command = x\n[ End Launch : BadClass ]\n"
        "[ Launch : BadDirective ]\n    Directive = ten\n    Command = x\n[ End Launch : BadDirective ]\n"
        "[ Launch : BadElement ]\n    Element = -1\n    Command = x\n[ End Launch : BadElement ]\n"
        "[ Launch : ]\n    Command = x\n[ End Launch : ]\n"
        "[ Launch : Good ]\n    Command = x\n[ End Launch : Good ]\n",
        &problems);
    ASSERT_EQ(registry.All().size(), 1u);
    EXPECT_EQ(registry.All()[0].name, "Good");
    EXPECT_THAT(problems, ElementsAre(HasSubstr("NoCommand ] has no Command"), HasSubstr("BadClass ] Class is not"),
                                      HasSubstr("Directive is not a number"), HasSubstr("Element is not a number"),
                                      HasSubstr("has no name")));
    problems.clear();
    EXPECT_TRUE(GaLaunchRegistry::FromFile("/nonexistent/launch.cfg", &problems).All().empty());
    EXPECT_THAT(problems, ElementsAre(HasSubstr("/nonexistent/launch.cfg: ")));
}

TEST(LaunchRegistry, StartsTheCommandDetachedWithItsVariables)
{
    TempDir dir;
    const std::string out = dir / "out.txt";
    EXPECT_EQ(GaLaunchStartDetached("echo \"$ORVEX_LAUNCH_ENTITY $HOME_IS_KEPT\" > '" + out + "'",
                                    {"ORVEX_LAUNCH_ENTITY=Network core", "HOME_IS_KEPT=yes"}),
              0);
    std::string text;
    WaitFor([&] { return !(text = TempDir::Read(out)).empty(); });
    EXPECT_EQ(text, "Network core yes\n");
}

// A descriptor the host holds open, inheritable or not, never reaches the program.
TEST(LaunchRegistry, TheProgramGetsTheStandardDescriptorsOnly)
{
    TempDir dir;
    const std::string held = dir / "held";
    const int inheritable = ::open(held.c_str(), O_WRONLY | O_CREAT, 0600);
    ASSERT_GE(inheritable, 3);
    const std::string out = dir / "fds.txt";
    // The shell's own descriptors, listed by a child that writes the file.
    ASSERT_EQ(GaLaunchStartDetached("ls /proc/$$/fd > '" + out + ".part' && mv '" + out + ".part' '" + out + "'", {}),
              0);
    std::string text;
    WaitFor([&] { return !(text = TempDir::Read(out)).empty(); });
    ::close(inheritable);
    ASSERT_FALSE(text.empty());
    // The shell keeps descriptors of its own from 10 up while it redirects.
    std::istringstream listed(text);
    for (int fd; listed >> fd;)
        EXPECT_TRUE(fd <= 2 || fd >= 10) << fd << " came from the host:\n" << text;
}

}  // namespace
