// SPDX-License-Identifier: BSD-3-Clause
#include "zed/ZedFile.h"

#include "zed/TException.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The kind of a file that is not a regular one, as a reason to refuse it.
std::string KindOf(mode_t mode)
{
    if (S_ISDIR(mode))
        return std::strerror(EISDIR);
    if (S_ISFIFO(mode))
        return "a FIFO, not a regular file";
    if (S_ISCHR(mode) || S_ISBLK(mode))
        return "a device, not a regular file";
    if (S_ISSOCK(mode))
        return "a socket, not a regular file";
    return "not a regular file";
}

class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    ~Descriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Get() const { return m_fd; }

private:
    int m_fd;
};

}  // namespace

bool ZedReadRegularFile(const std::string& path, std::size_t limit, std::string& content, std::string& error)
{
    // Non-blocking, so that opening a FIFO returns at once; a regular file
    // reads the same either way. Never inherited by a program started later.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file.Get() < 0) {
        error = std::strerror(errno);
        return false;
    }
    struct stat info {};
    if (::fstat(file.Get(), &info) != 0) {
        error = std::strerror(errno);
        return false;
    }
    if (!S_ISREG(info.st_mode)) {
        error = KindOf(info.st_mode);
        return false;
    }
    const std::string tooLarge = limit >= (std::size_t(1) << 20) ? "larger than " + std::to_string(limit >> 20) + " MiB"
                                                                 : "larger than " + std::to_string(limit) + " bytes";
    if (static_cast<std::uintmax_t>(info.st_size) > limit) {
        error = tooLarge;
        return false;
    }
    std::string read;
    read.resize(static_cast<std::size_t>(info.st_size));
    std::size_t filled = 0;
    // The size known, one read mostly. A file that grows meanwhile is read on,
    // to the limit, through a small buffer: growing the text itself to look
    // for more would copy all of it.
    char more[1 << 14];
    for (;;) {
        const bool inText = filled < read.size();
        const ssize_t n = inText ? ::read(file.Get(), read.data() + filled, read.size() - filled)
                                 : ::read(file.Get(), more, sizeof more);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            error = std::strerror(errno);
            return false;
        }
        if (n == 0)
            break;
        if (!inText) {
            if (read.size() + static_cast<std::size_t>(n) > limit) {
                error = tooLarge;
                return false;
            }
            read.append(more, static_cast<std::size_t>(n));
        }
        filled += static_cast<std::size_t>(n);
    }
    read.resize(filled);
    content = std::move(read);
    return true;
}

std::string ZedReadFile(const std::string& path, const char* what)
{
    std::string content, error;
    if (!ZedReadRegularFile(path, ZED_MAX_FILE_SIZE, content, error))
        throw TException(path + ": cannot read the " + what + ": " + error);
    return content;
}
