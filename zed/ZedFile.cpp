#include "zed/ZedFile.h"

#include "zed/TException.h"

#include <cerrno>
#include <cstdio>
#include <cstdint>
#include <cstring>
#include <memory>
#include <sys/stat.h>

std::string ZedReadFile(const std::string& path, const char* what)
{
    const auto fail = [&](const std::string& reason) {
        return TException(path + ": cannot read the " + what + ": " + reason);
    };
    struct Closer {
        void operator()(std::FILE* f) const { std::fclose(f); }
    };
    std::unique_ptr<std::FILE, Closer> file(std::fopen(path.c_str(), "rb"));
    if (!file)
        throw fail(std::strerror(errno));
    struct stat info {};
    if (::fstat(::fileno(file.get()), &info) != 0)
        throw fail(std::strerror(errno));
    if (S_ISDIR(info.st_mode))
        throw fail(std::strerror(EISDIR));
    const std::string tooLarge = "larger than " + std::to_string(ZED_MAX_FILE_SIZE >> 20) + " MiB";
    if (S_ISREG(info.st_mode) && static_cast<std::uintmax_t>(info.st_size) > ZED_MAX_FILE_SIZE)
        throw fail(tooLarge);
    std::string text;
    char buffer[1 << 16];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, file.get())) > 0) {
        if (text.size() + n > ZED_MAX_FILE_SIZE)
            throw fail(tooLarge);
        text.append(buffer, n);
    }
    if (std::ferror(file.get()))
        throw fail(std::strerror(errno ? errno : EIO));
    return text;
}
