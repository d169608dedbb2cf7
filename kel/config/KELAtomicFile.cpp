#include "kel/config/KELAtomicFile.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool Fail(std::string* error, const std::string& what)
{
    if (error)
        *error = what + ": " + std::strerror(errno);
    return false;
}

std::string DirectoryOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

bool WriteAll(int fd, std::string_view content)
{
    while (!content.empty()) {
        const ssize_t n = ::write(fd, content.data(), content.size());
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        content.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

// A copy for file systems without hard links.
bool CopyFile(const std::string& from, const std::string& to)
{
    const int in = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0)
        return false;
    const int out = ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    bool ok = out >= 0;
    char buffer[1 << 16];
    ssize_t n;
    while (ok && (n = ::read(in, buffer, sizeof buffer)) != 0)
        ok = n > 0 ? WriteAll(out, std::string_view(buffer, static_cast<std::size_t>(n))) : errno == EINTR;
    ok = ok && ::fsync(out) == 0;
    if (out >= 0)
        ::close(out);
    ::close(in);
    return ok;
}

} // namespace

bool KELWriteFileAtomically(const std::string& path, std::string_view content, bool keepBackup, std::string* error)
{
    static std::atomic<unsigned int> counter{0};
    const std::string temporary = path + "." + std::to_string(::getpid()) + "." + std::to_string(counter++) + ".tmp";
    // Created like any new file (the umask applies); an existing file's
    // permissions are copied below.
    const int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0)
        return Fail(error, "cannot create " + temporary);
    struct stat old {};
    const bool existed = ::stat(path.c_str(), &old) == 0;
    bool ok = WriteAll(fd, content) && (!existed || ::fchmod(fd, old.st_mode & 07777) == 0) && ::fsync(fd) == 0;
    const int savedErrno = errno;
    ok = ::close(fd) == 0 && ok;
    if (!ok) {
        errno = savedErrno;
        Fail(error, "cannot write " + temporary);
        ::unlink(temporary.c_str());
        return false;
    }
    if (keepBackup && existed) {
        const std::string backup = path + ".bak";
        ::unlink(backup.c_str());
        if (::link(path.c_str(), backup.c_str()) != 0 && !CopyFile(path, backup)) {
            Fail(error, "cannot keep " + backup);
            ::unlink(temporary.c_str());
            return false;
        }
    }
    if (::rename(temporary.c_str(), path.c_str()) != 0) {
        Fail(error, "cannot replace " + path);
        ::unlink(temporary.c_str());
        return false;
    }
    // The rename itself reaches the disk with the directory.
    const int dir = ::open(DirectoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}
