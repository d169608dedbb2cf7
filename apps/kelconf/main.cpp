// SPDX-License-Identifier: BSD-3-Clause
// kelconf: looks at KEL configuration files from the command line.
//
//   kelconf check FILE
//       loads FILE as a configuration and writes it back to standard output
//       in the file format (header and every section that loaded); each
//       section load that failed is reported as "status N" on standard error
//       (5 invalid begin line, 4 invalid end line, 8 end of file inside a
//       section).
//   kelconf get [--workspace FILE] CONTEXT SECTION KEY
//       runs the layered lookup of a context under the current paths (user
//       file, then system file; with a workspace, its sections first) and
//       prints the status (1 found, 9 not found, 2 no file) and the value.
//
// Exit status: 0 done, 2 an unreadable file (get still prints its answer), a
// missing resource module or a wrong command line.

#include "kel/config/IConfiguration.h"
#include "kel/frame/KELString.h"
#include "kel/config/ISection.h"
#include "kel/config/KELConfigContext.h"
#include "kel/config/KELConfigStatus.h"
#include "kel/config/KELTextReader.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELVersionRecord.h"
#include "ToolOptions.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

KEL_VERSION_RECORD("kelconf");

namespace {

constexpr int kExitUsage = kToolExitUsage;

const char* kUsage = "usage: kelconf check FILE\n"
                     "       kelconf get [--workspace FILE] CONTEXT SECTION KEY\n"
                     "       kelconf --help | --version\n";

// The context's messages, one a line: the ones it joins are parted again.
void PrintMessages(const std::string& messages)
{
    std::string text = messages;
    const std::string user = KELResources::String(KELString::kUserFileUnreadable);
    for (std::size_t at = text.find(user, 1); at != std::string::npos; at = text.find(user, at + user.size() + 1))
        if (text[at - 1] != '\n')
            text.insert(at, 1, '\n');
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        if (end > start)
            std::fprintf(stderr, "kelconf: %s\n", text.substr(start, end - start).c_str());
        start = end + 1;
    }
}

// Reports every section load that failed, as the section reader sees it.
void ReportFailedSections(KELTextReader& file)
{
    for (;;) {
        const std::size_t start = file.GetPosition();
        ISection section;
        const int status = section.Load(file);
        if (status == KEL_CFG_SUCCESS)
            continue;
        if (status == KEL_CFG_EOF && file.OnlyBlankOrCommentsFrom(start))
            break;
        std::fprintf(stderr, "status %d\n", status);
        if (status == KEL_CFG_EOF)
            break;
    }
}

int Check(const std::string& path)
{
    KELTextReader file;
    std::string error;
    if (!file.Open(path, &error)) {
        std::fprintf(stderr, "kelconf: cannot read %s: %s\n", path.c_str(), error.c_str());
        return kExitUsage;
    }
    // One read of the file serves both passes: a pipe or FIFO can be read only once.
    ReportFailedSections(file);
    IConfiguration configuration(path);
    configuration.Load(file);
    std::string out;
    configuration.SaveToText(out);
    std::fwrite(out.data(), 1, out.size(), stdout);
    return 0;
}

int Get(std::vector<std::string> words)
{
    std::string workspace;
    if (words.size() == 5 && words[0] == "--workspace") {
        workspace = words[1];
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words.size() != 3)
        return UsageError(kUsage);
    IApplication* app = InitializeKEL("kelconf");
    if (!app)
        return kExitUsage;  // InitializeKEL said why
    KELConfigContext* context = app->DefineNewContext(words[0].c_str());
    std::string errors;
    bool allRead = context->LoadSystemAndUserConfig(errors);
    PrintMessages(errors);
    std::fprintf(stderr, "kelconf: system file %s\nkelconf: user file   %s\n",
                 context->GetSystemConfigFile()->GetFilename().c_str(),
                 context->GetUserConfigFile()->GetFilename().c_str());
    if (!workspace.empty()) {
        std::string name;
        context->GetWorkspaceConfFile(workspace.c_str(), name);
        if (!context->LoadWorkspace(workspace.c_str())) {
            std::fprintf(stderr, "kelconf: cannot read the workspace settings %s\n", name.c_str());
            allRead = false;
        } else
            std::fprintf(stderr, "kelconf: workspace   %s\n", name.c_str());
    }
    std::string value;
    const int status = app->GetConfigString(context, words[1], words[2], value, "", workspace.empty() ? 1 : 0);
    std::printf("status %d\nvalue %s\n", status, value.c_str());
    DestroyKEL();
    // The answer still comes, but a file that could not be read is a fault to report.
    return allRead ? 0 : kExitUsage;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (const std::optional<int> answered = AnswerHelpOrVersion(words, "kelconf", kUsage))
        return *answered;
    if (words.size() == 2 && words[0] == "check")
        return Check(words[1]);
    if (!words.empty() && words[0] == "get")
        return Get(std::vector<std::string>(words.begin() + 1, words.end()));
    return UsageError(kUsage);
}
