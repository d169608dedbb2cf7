// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>

// Replaces a file's content so that readers see the old content or the new,
// never a part of either:
//
//     KELFileWriter writer(path);
//     if (writer.Open(&error))          // nothing is changed yet
//         writer.Commit(text, &error);  // the whole text, in one step
//
// The text goes to a new file beside the file (named FILE.<pid>.<n>.tmp),
// reaches the disk, takes the old file's permissions and is renamed over it.
// A path that is a symbolic link stays a link: its target is replaced. A file
// without write permission is refused, as opening it for writing would be.
// Where no new file can be made beside it (a read-only directory), a writable
// file is rewritten in place and flushed instead: that write is not atomic,
// but the settings are not lost. Opening also removes the temporaries of
// earlier writers of the same file that died part-way (their process is gone).
//
// A writer that must never write through a link (a file the library names
// itself) replaces whatever stands at the path, a link included, and never
// writes in place.
class KELFileWriter {
public:
    enum class Links { Follow, Replace };

    explicit KELFileWriter(std::string path, Links links = Links::Follow);
    KELFileWriter(const KELFileWriter&) = delete;
    KELFileWriter& operator=(const KELFileWriter&) = delete;
    // An uncommitted temporary is removed.
    ~KELFileWriter();

    // False, with the reason, when the file cannot be written.
    bool Open(std::string* error);
    // Writes the whole content; false, with the reason, when it could not be.
    bool Commit(std::string_view content, std::string* error);
    // The new file beside the file, once open: for a writer that writes it by its name.
    const std::string& GetTemporary() const { return m_temporary; }
    // Puts what was written into the temporary by its name in the file's place.
    bool CommitWritten(std::string* error);

    // True when Open had to fall back to writing the file itself.
    bool InPlace() const { return m_inPlace; }
    // The file that is written: the path with its links followed.
    const std::string& GetTarget() const { return m_target; }

private:
    void RemoveStaleTemporaries() const;
    bool CommitInPlace(std::string_view content, std::string* error);
    bool CommitReplacing(std::string_view content, std::string* error);

    std::string m_path;
    Links m_links;
    std::string m_target;
    std::string m_temporary;
    int m_fd = -1;
    bool m_inPlace = false;
};

// Open and Commit in one call.
bool KELWriteFileAtomically(const std::string& path, std::string_view content, std::string* error);
