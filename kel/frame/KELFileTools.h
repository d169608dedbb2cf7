// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <stdexcept>
#include <string>
#include <vector>

/// A failed file operation: a code, the file it concerns and a second text.
/// The message comes from the resource module (codes 0 to 8).
class KEL_EXPORT CFileToolException : public std::runtime_error {
public:
    enum Code {
        General = 0,
        Read = 1,
        CreateDirectoryFailed = 2,
        DeleteFileFailed = 3,
        RemoveDirectoryFailed = 4,
        Write = 5,
        Copy = 6,
        SetAttributesFailed = 7,
        ChecksumOpenFailed = 8,
    };

    CFileToolException(int code, std::string fileName, std::string secondText = "");
    ~CFileToolException() override;

    int GetErrorCode() const { return m_code; }
    const std::string& GetFileName() const { return m_fileName; }
    const std::string& GetSecondText() const { return m_secondText; }
    /// Fills the caller's buffer with the message; false (buffer untouched)
    /// for codes that have none (9 and above).
    bool GetErrorMessage(char* buffer, unsigned int size) const;
    static std::string MessageFor(int code, const std::string& fileName, const std::string& secondText);

private:
    int m_code;
    std::string m_fileName;
    std::string m_secondText;
};

/// Path, directory, attribute and comparison helpers. Failures throw
/// CFileToolException. Attributes are POSIX permission bits; a file is
/// read-only when it has no write bit, and is then not deleted.
class KEL_EXPORT KELFileTools {
public:
    static std::string GetCorrectDirectoryPath(const std::string& path);
    /// out = the last (length of full - length of base) characters of full.
    static void SetFilePathToRelative(const std::string& base, const std::string& full, std::string& out);
    static bool IsDirectory(const std::string& path);
    /// Creates the missing directories of the path, parents first.
    static void CreateDirectory(const std::string& path);
    static void RemoveDirectory(const std::string& path);
    static void SetFileAttributes(const std::string& path, unsigned int permissions);
    static bool CheckFileExist(const std::string& path, bool flag);
    /// "< name" only in dir1, "> name" only in dir2, "! name" in both but different;
    /// names relative to the directories, sub-directories walked, in name order.
    static void ListDirectoryDifference(const std::string& dir1, const std::string& dir2,
                                        std::vector<std::string>& out);
    /// A new empty file "PLM..." in the temporary directory.
    static bool GetTmpFileName(std::string& name);
    static bool CompareFiles(const std::string& name1, const std::string& name2);
    /// Always 0: a placeholder that callers treat as such. Throws code 8 when
    /// the file cannot be opened.
    static void FileChecksum(const std::string& name, unsigned long& checksum);
};
