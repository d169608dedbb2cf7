// SPDX-License-Identifier: BSD-3-Clause
#include "launch/GaLaunchRegistry.h"

#include "kel/config/IConfiguration.h"
#include "kel/config/ISection.h"
#include "kel/config/KELTextReader.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

constexpr std::string_view kPrefix = "Launch :";

bool ReadNumber(std::string_view text, unsigned int& number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && !text.empty();
}

// "*" or nothing: any. Otherwise a number, or a path of numbers joined by ".".
bool ReadPath(std::string_view text, std::optional<std::vector<unsigned int>>& path)
{
    if (text.empty() || text == "*")
        return true;
    std::vector<unsigned int> codes;
    for (std::size_t start = 0;;) {
        const std::size_t dot = text.find('.', start);
        unsigned int code = 0;
        if (!ReadNumber(text.substr(start, dot == std::string_view::npos ? std::string_view::npos : dot - start), code))
            return false;
        codes.push_back(code);
        if (dot == std::string_view::npos)
            break;
        start = dot + 1;
    }
    path = std::move(codes);
    return true;
}

bool ReadOne(std::string_view text, std::optional<unsigned int>& number)
{
    if (text.empty() || text == "*")
        return true;
    unsigned int value = 0;
    if (!ReadNumber(text, value))
        return false;
    number = value;
    return true;
}

std::string Field(const ISection& section, std::string_view key)
{
    const std::string* value = section.FindValue(key);
    return value ? *value : std::string();
}

}  // namespace

bool GaLaunchRegistration::Matches(const GaLaunchQuery& query) const
{
    if (classPath
        && (classPath->size() != query.depth || !std::equal(classPath->begin(), classPath->end(), query.classPath)))
        return false;
    return (!directive || *directive == query.directive) && (!element || *element == query.element);
}

GaLaunchRegistry GaLaunchRegistry::FromText(std::string_view text, std::vector<std::string>* problems)
{
    IConfiguration file;
    KELTextReader reader = KELTextReader::OverView(text);
    file.Load(reader);
    GaLaunchRegistry registry;
    const KELSectionMap& sections = file.GetGlobalSections();
    for (std::size_t i = 0; i < sections.Size(); ++i) {
        const ISection& section = sections.At(i);
        const std::string& title = section.GetSectionName();
        if (title.compare(0, kPrefix.size(), kPrefix) != 0)
            continue;
        GaLaunchRegistration registration;
        const std::size_t nameStart = title.find_first_not_of(' ', kPrefix.size());
        registration.name = nameStart == std::string::npos ? std::string() : title.substr(nameStart);
        registration.command = Field(section, "Command");
        std::string fault;
        if (registration.name.empty())
            fault = "has no name";
        else if (registration.command.empty())
            fault = "has no Command";
        else if (!ReadPath(Field(section, "Class"), registration.classPath))
            fault = "Class is not a path of codes such as 1.2.3";
        else if (!ReadOne(Field(section, "Directive"), registration.directive))
            fault = "Directive is not a number";
        else if (!ReadOne(Field(section, "Element"), registration.element))
            fault = "Element is not a number";
        if (!fault.empty()) {
            if (problems)
                problems->push_back("[ " + title + " ] " + fault + ": left out");
            continue;
        }
        registry.m_registrations.push_back(std::move(registration));
    }
    return registry;
}

GaLaunchRegistry GaLaunchRegistry::FromFile(const std::string& path, std::vector<std::string>* problems)
{
    KELTextReader reader;
    std::string error;
    if (!reader.Open(path, &error)) {
        if (problems)
            problems->push_back(path + ": " + error);
        return {};
    }
    std::string_view line;
    std::string text;
    while (reader.ReadLine(line))
        text.append(line).push_back('\n');
    return FromText(text, problems);
}

std::vector<const GaLaunchRegistration*> GaLaunchRegistry::Find(const GaLaunchQuery& query) const
{
    std::vector<const GaLaunchRegistration*> found;
    for (const GaLaunchRegistration& registration : m_registrations)
        if (registration.Matches(query))
            found.push_back(&registration);
    return found;
}

namespace {

// Closes every descriptor from first on but keep; async-signal-safe, for the
// time between fork and exec.
void CloseFrom(int first, int keep)
{
    if (keep > first)
        ::syscall(SYS_close_range, first, keep - 1, 0);
    if (::syscall(SYS_close_range, std::max(first, keep + 1), ~0U, 0) == 0)
        return;
    // A kernel without close_range: every descriptor there can be.
    const long most = ::sysconf(_SC_OPEN_MAX);
    for (int fd = std::max(first, keep + 1); fd < (most > 0 ? most : 1024); ++fd)
        ::close(fd);
    for (int fd = first; fd < keep; ++fd)
        ::close(fd);
}

// The host's environment with the variables given ("NAME=value") in place of its own.
std::vector<std::string> EnvironmentWith(const std::vector<std::string>& variables)
{
    std::vector<std::string> environment(variables);
    for (char** entry = environ; entry && *entry; ++entry) {
        const std::string_view existing(*entry);
        const std::string_view name = existing.substr(0, existing.find('='));
        bool replaced = false;
        for (const std::string& variable : variables)
            replaced = replaced || std::string_view(variable).substr(0, variable.find('=')) == name;
        if (!replaced)
            environment.emplace_back(existing);
    }
    return environment;
}

// In the child: the grandchild runs the command, in a session of its own, and
// writes to the report pipe why it could not.
[[noreturn]] void RunDetached(const char* const* argv, char* const* envp, int report)
{
    setsid();
    const pid_t grandchild = fork();
    if (grandchild == 0) {
        const int null = open("/dev/null", O_RDONLY);
        if (null >= 0)
            dup2(null, STDIN_FILENO);
        // The program gets 0, 1 and 2 only: nothing the host holds (its
        // trace file, its display connection) leaks into it. The report
        // pipe stays until exec closes it.
        CloseFrom(STDERR_FILENO + 1, report);
        execve("/bin/sh", const_cast<char* const*>(argv), envp);
        const int error = errno;
        (void)!write(report, &error, sizeof error);
        _exit(127);
    }
    if (grandchild < 0) {
        const int error = errno;
        (void)!write(report, &error, sizeof error);
    }
    _exit(0);
}

}  // namespace

int GaLaunchStartDetached(const std::string& command, const std::vector<std::string>& variables)
{
    // Everything the children need is made before fork: between fork and exec
    // only async-signal-safe calls are allowed in a threaded process.
    std::vector<std::string> environment = EnvironmentWith(variables);
    std::vector<char*> envp;
    for (std::string& entry : environment)
        envp.push_back(entry.data());
    envp.push_back(nullptr);
    const char* argv[] = {"sh", "-c", command.c_str(), nullptr};

    // The grandchild reports a failed exec through a pipe that closes on a good one.
    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0)
        return errno;
    const pid_t child = fork();
    if (child < 0) {
        const int error = errno;
        close(report[0]);
        close(report[1]);
        return error;
    }
    if (child == 0) {
        close(report[0]);
        RunDetached(argv, envp.data(), report[1]);
    }
    close(report[1]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    int error = 0;
    ssize_t got;
    while ((got = read(report[0], &error, sizeof error)) < 0 && errno == EINTR) {
    }
    close(report[0]);
    return got == static_cast<ssize_t>(sizeof error) ? error : 0;
}
