// kelconf: looks at KEL configuration files from the command line.
//
//   kelconf check FILE   reads FILE section after section and writes back
//                        every section that loaded, in the file format, to
//                        standard output; each section load that failed is
//                        reported as "status N" on standard error.
//
// Exit status: 0 when FILE could be read, 2 when it could not or when the
// command line is wrong.

#include "kel/config/ISection.h"
#include "kel/config/KELConfigStatus.h"
#include "kel/config/KELTextReader.h"
#include "kel/config/KELTextTrim.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace {

constexpr int kExitUsage = 2;

void Usage()
{
    std::fputs("usage: kelconf check FILE\n", stderr);
}

// True when nothing from here on is more than blank and comment lines: the
// reader's end-of-file status then means a clean end, not a cut-off section.
bool OnlyBlankOrComments(std::string_view rest)
{
    KELTextReader reader = KELTextReader::OverView(rest);
    std::string_view line;
    while (reader.ReadLine(line))
        if (!KELIsSkippedLine(KELTrimLeft(line)))
            return false;
    return true;
}

int Check(const std::string& path)
{
    KELTextReader file;
    std::string error;
    if (!file.Open(path, &error)) {
        std::fprintf(stderr, "kelconf: cannot read %s: %s\n", path.c_str(), error.c_str());
        return kExitUsage;
    }
    std::string out;
    for (;;) {
        const std::size_t start = file.GetPosition();
        ISection section;
        const int status = section.Load(file);
        if (status == KEL_CFG_SUCCESS) {
            section.Save(out);
            continue;
        }
        if (status == KEL_CFG_EOF && OnlyBlankOrComments(file.GetText().substr(start)))
            break;
        std::fprintf(stderr, "status %d\n", status);
        if (status == KEL_CFG_EOF)
            break;
    }
    std::fwrite(out.data(), 1, out.size(), stdout);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::string_view(argv[1]) == "check")
        return Check(argv[2]);
    Usage();
    return kExitUsage;
}
