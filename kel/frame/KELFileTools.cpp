// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELFileTools.h"
#include "kel/frame/KELString.h"

#include "kel/frame/KELResources.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fstream>
#include <map>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr unsigned int kWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

std::string WithoutTrailingSlash(const std::string& path)
{
    return path.size() > 1 && path.back() == '/' ? path.substr(0, path.size() - 1) : path;
}

// The entries of a directory in name order, "." and ".." left out.
std::vector<std::string> Entries(const std::string& directory)
{
    std::vector<std::string> names;
    std::unique_ptr<DIR, int (*)(DIR*)> dir(::opendir(directory.c_str()), &::closedir);
    if (!dir)
        return names;
    while (const dirent* entry = ::readdir(dir.get()))
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            names.emplace_back(entry->d_name);
    std::sort(names.begin(), names.end());
    return names;
}

bool Exists(const std::string& path, struct stat& info) { return ::lstat(path.c_str(), &info) == 0; }

void Walk(const std::string& root, const std::string& relative, std::map<std::string, bool>& files)
{
    for (const std::string& name : Entries(root + relative)) {
        const std::string rel = relative + name;
        struct stat info {};
        if (!Exists(root + rel, info))
            continue;
        if (S_ISDIR(info.st_mode))
            Walk(root, rel + "/", files);
        else
            files[rel] = true;
    }
}

}  // namespace

CFileToolException::CFileToolException(int code, std::string fileName, std::string secondText)
    : std::runtime_error(MessageFor(code, fileName, secondText)), m_code(code), m_fileName(std::move(fileName)),
      m_secondText(std::move(secondText))
{
}

CFileToolException::~CFileToolException() = default;

std::string CFileToolException::MessageFor(int code, const std::string& fileName, const std::string& secondText)
{
    // Codes 7 and 8 take their texts crosswise (4064, 4063), as they always have.
    static constexpr unsigned int kResource[] = {
        KELString::kFileOperationFailed, KELString::kFileNotRead,         KELString::kDirectoryNotCreated,
        KELString::kFileNotDeleted,      KELString::kDirectoryNotRemoved, KELString::kFileNotWritten,
        KELString::kFileNotCopied,       KELString::kAttributesNotSet,    KELString::kChecksumNotOpened};
    if (code < 0 || code > 8)
        return {};
    if (code == 0)
        return KELResources::String(kResource[0]);
    return KELResources::Format(kResource[code], {fileName, secondText});
}

bool CFileToolException::GetErrorMessage(char* buffer, unsigned int size) const
{
    if (m_code < 0 || m_code > 8 || !buffer || size == 0)
        return false;
    const std::string message = what();
    const std::size_t n = std::min<std::size_t>(message.size(), size - 1);
    std::memcpy(buffer, message.data(), n);
    buffer[n] = '\0';
    return true;
}

std::string KELFileTools::GetCorrectDirectoryPath(const std::string& path)
{
    return !path.empty() && path.back() == '/' ? path.substr(0, path.size() - 1) : path;
}

void KELFileTools::SetFilePathToRelative(const std::string& base, const std::string& full, std::string& out)
{
    out = full.size() > base.size() ? full.substr(base.size()) : std::string();
}

bool KELFileTools::IsDirectory(const std::string& path)
{
    struct stat info {};
    return ::stat(WithoutTrailingSlash(path).c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

void KELFileTools::CreateDirectory(const std::string& path)
{
    const std::string target = WithoutTrailingSlash(path);
    if (target.empty() || IsDirectory(target))
        return;
    if (const auto slash = target.rfind('/'); slash != std::string::npos && slash > 0) {
        const std::string parent = target.substr(0, slash);
        if (!IsDirectory(parent))
            CreateDirectory(parent);
    }
    if (::mkdir(target.c_str(), 0777) != 0 && !IsDirectory(target))
        throw CFileToolException(CFileToolException::CreateDirectoryFailed, target, std::strerror(errno));
}

void KELFileTools::RemoveDirectory(const std::string& path)
{
    const std::string directory = WithoutTrailingSlash(path);
    for (const std::string& name : Entries(directory)) {
        const std::string entry = directory + "/" + name;
        struct stat info {};
        if (!Exists(entry, info))
            continue;
        if (S_ISDIR(info.st_mode)) {
            RemoveDirectory(entry);
            continue;
        }
        // A read-only file is not deleted: the tree stays as far as it got.
        if ((info.st_mode & kWriteBits) == 0 || ::unlink(entry.c_str()) != 0)
            throw CFileToolException(CFileToolException::DeleteFileFailed, entry,
                                     (info.st_mode & kWriteBits) == 0 ? "read-only" : std::strerror(errno));
    }
    if (::rmdir(directory.c_str()) != 0)
        throw CFileToolException(CFileToolException::RemoveDirectoryFailed, directory, std::strerror(errno));
}

void KELFileTools::SetFileAttributes(const std::string& path, unsigned int permissions)
{
    const std::string target = WithoutTrailingSlash(path);
    if (::chmod(target.c_str(), permissions & 07777) != 0)
        throw CFileToolException(CFileToolException::SetAttributesFailed, target, std::strerror(errno));
    if (IsDirectory(target))
        for (const std::string& name : Entries(target))
            SetFileAttributes(target + "/" + name, permissions);
}

bool KELFileTools::CheckFileExist(const std::string& path, bool flag)
{
    const std::string target = WithoutTrailingSlash(path);
    struct stat info {};
    if (!Exists(target, info))
        return flag;
    if (flag && (info.st_mode & kWriteBits) == 0)
        SetFileAttributes(target, (info.st_mode & 07777) | S_IWUSR);
    if (!S_ISDIR(info.st_mode))
        return true;
    for (const std::string& name : Entries(target))
        if (!CheckFileExist(target + "/" + name, flag))
            return false;
    return true;
}

void KELFileTools::ListDirectoryDifference(const std::string& dir1, const std::string& dir2,
                                           std::vector<std::string>& out)
{
    std::map<std::string, bool> first, second;
    Walk(WithoutTrailingSlash(dir1) + "/", "", first);
    Walk(WithoutTrailingSlash(dir2) + "/", "", second);
    out.clear();
    for (const auto& [name, unused] : first) {
        if (!second.count(name))
            out.push_back("< " + name);
        else if (!CompareFiles(WithoutTrailingSlash(dir1) + "/" + name, WithoutTrailingSlash(dir2) + "/" + name))
            out.push_back("! " + name);
    }
    for (const auto& [name, unused] : second)
        if (!first.count(name))
            out.push_back("> " + name);
}

bool KELFileTools::GetTmpFileName(std::string& name)
{
    const char* directory = std::getenv("TMPDIR");
    std::string pattern = std::string(directory && *directory ? directory : "/tmp") + "/PLMXXXXXX";
    const int fd = ::mkstemp(pattern.data());
    if (fd < 0)
        return false;
    ::close(fd);
    name = pattern;
    return true;
}

bool KELFileTools::CompareFiles(const std::string& name1, const std::string& name2)
{
    std::ifstream a(name1, std::ios::binary), b(name2, std::ios::binary);
    if (!a || !b)
        return false;
    char blockA[256], blockB[256];
    for (;;) {
        a.read(blockA, sizeof blockA);
        b.read(blockB, sizeof blockB);
        if (a.gcount() != b.gcount() || std::memcmp(blockA, blockB, static_cast<std::size_t>(a.gcount())) != 0)
            return false;
        if (a.gcount() < static_cast<std::streamsize>(sizeof blockA))
            return true;
    }
}

void KELFileTools::FileChecksum(const std::string& name, unsigned long& checksum)
{
    std::ifstream file(name, std::ios::binary);
    if (!file)
        throw CFileToolException(CFileToolException::ChecksumOpenFailed, name);
    checksum = 0;
    file.seekg(0);
}
