// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/KELFileWriter.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool Fail(std::string* error, const std::string& what, int fault = errno)
{
    if (error)
        *error = what + ": " + std::strerror(fault);
    return false;
}

std::string DirectoryOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

std::string BaseOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Follows symbolic links to the file they name, even one that does not exist
// yet; a loop of links ends at the last name reached.
std::string FollowLinks(std::string path)
{
    for (int hops = 0; hops < 40; ++hops) {
        char target[PATH_MAX];
        const ssize_t n = ::readlink(path.c_str(), target, sizeof target - 1);
        if (n < 0)
            break;
        const std::string next(target, static_cast<std::size_t>(n));
        path = next.front() == '/' ? next : DirectoryOf(path) + "/" + next;
    }
    return path;
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

void SyncDirectory(const std::string& path)
{
    const int dir = ::open(DirectoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
}

// The writer process of a temporary named BASE.<pid>.<n>.tmp, or 0 when the
// name is not of that form.
pid_t WriterOf(std::string_view name, std::string_view base)
{
    constexpr std::string_view kSuffix = ".tmp";
    if (name.size() <= base.size() + 1 + kSuffix.size() || name.substr(0, base.size()) != base
        || name[base.size()] != '.' || name.substr(name.size() - kSuffix.size()) != kSuffix)
        return 0;
    const std::string_view middle = name.substr(base.size() + 1, name.size() - base.size() - 1 - kSuffix.size());
    const auto dot = middle.find('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == middle.size() || dot > 9)
        return 0;
    for (std::size_t i = 0; i < middle.size(); ++i)
        if (i != dot && (middle[i] < '0' || middle[i] > '9'))
            return 0;
    return static_cast<pid_t>(std::stol(std::string(middle.substr(0, dot))));
}

}  // namespace

KELFileWriter::KELFileWriter(std::string path, Links links) : m_path(std::move(path)), m_links(links) {}

KELFileWriter::~KELFileWriter()
{
    if (m_fd >= 0) {
        ::close(m_fd);
        if (!m_inPlace)
            ::unlink(m_temporary.c_str());
    }
}

bool KELFileWriter::Open(std::string* error)
{
    if (m_path.empty()) {
        if (error)
            *error = "no file name";
        return false;
    }
    m_target = m_links == Links::Follow ? FollowLinks(m_path) : m_path;
    struct stat old {};
    const bool existed = ::lstat(m_target.c_str(), &old) == 0 && !S_ISLNK(old.st_mode);
    // The permission the designed truncating write would have been refused by.
    if (existed && ::faccessat(AT_FDCWD, m_target.c_str(), W_OK, AT_EACCESS) != 0)
        return Fail(error, "cannot write " + m_target);
    RemoveStaleTemporaries();

    static std::atomic<unsigned int> counter{0};
    m_temporary = m_target + "." + std::to_string(::getpid()) + "." + std::to_string(counter++) + ".tmp";
    // Created like any new file (the umask applies); an existing file's
    // permissions are copied at commit.
    m_fd = ::open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (m_fd >= 0)
        return true;
    const int fault = errno;
    if (m_links == Links::Replace)
        return Fail(error, "cannot create " + m_temporary, fault);
    // Nothing can be made beside the file: the file itself is all there is to write.
    m_fd = ::open(m_target.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    if (m_fd < 0)
        return Fail(error, "cannot create " + m_temporary, fault);
    m_inPlace = true;
    return true;
}

bool KELFileWriter::Commit(std::string_view content, std::string* error)
{
    if (m_fd < 0) {
        if (error)
            *error = "not open";
        return false;
    }
    return m_inPlace ? CommitInPlace(content, error) : CommitReplacing(content, error);
}

bool KELFileWriter::CommitInPlace(std::string_view content, std::string* error)
{
    bool ok = ::ftruncate(m_fd, 0) == 0 && WriteAll(m_fd, content) && ::fsync(m_fd) == 0;
    const int fault = errno;
    ok = ::close(m_fd) == 0 && ok;
    m_fd = -1;
    return ok || Fail(error, "cannot write " + m_target, fault);
}

bool KELFileWriter::CommitWritten(std::string* error)
{
    if (m_fd < 0 || m_inPlace) {
        if (error)
            *error = "not open";
        return false;
    }
    return CommitReplacing({}, error);
}

bool KELFileWriter::CommitReplacing(std::string_view content, std::string* error)
{
    struct stat old {};
    const bool existed = ::lstat(m_target.c_str(), &old) == 0 && S_ISREG(old.st_mode);
    bool ok = WriteAll(m_fd, content) && (!existed || ::fchmod(m_fd, old.st_mode & 07777) == 0) && ::fsync(m_fd) == 0;
    const int fault = errno;
    ok = ::close(m_fd) == 0 && ok;
    m_fd = -1;
    if (!ok) {
        ::unlink(m_temporary.c_str());
        return Fail(error, "cannot write " + m_temporary, fault);
    }
    if (::rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        const int renameFault = errno;
        ::unlink(m_temporary.c_str());
        return Fail(error, "cannot replace " + m_target, renameFault);
    }
    // The rename itself reaches the disk with the directory.
    SyncDirectory(m_target);
    return true;
}

void KELFileWriter::RemoveStaleTemporaries() const
{
    DIR* dir = ::opendir(DirectoryOf(m_target).c_str());
    if (!dir)
        return;
    const std::string base = BaseOf(m_target);
    const std::string directory = DirectoryOf(m_target) + "/";
    while (const dirent* entry = ::readdir(dir)) {
        const pid_t writer = WriterOf(entry->d_name, base);
        // Only a writer that provably no longer runs leaves its temporary behind for good.
        if (writer > 0 && writer != ::getpid() && ::kill(writer, 0) != 0 && errno == ESRCH)
            ::unlink((directory + entry->d_name).c_str());
    }
    ::closedir(dir);
}

bool KELWriteFileAtomically(const std::string& path, std::string_view content, std::string* error)
{
    KELFileWriter writer(path);
    return writer.Open(error) && writer.Commit(content, error);
}
