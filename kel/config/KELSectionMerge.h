// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Two host applications may save the same user file. Each save merges, under
// a lock, what this process changed since it loaded the file into what is on
// disk now, so that neither loses the other's entries:
//
//     KELFileLock lock(path);                          // held until the save is done
//     KELMergeSections(loaded, current, onDisk);       // onDisk becomes the merge
//
// An entry counts as changed by this process when its value differs between
// what was loaded and what it holds now, when it was added, or when it was
// removed (a whole section too). Everything else is taken from disk.

#include "kel/config/KELSectionMap.h"

#include <string>

class KELTextReader;

// Reads every well-formed section of the text into the collection (the last
// of a name wins); true when a malformed one had to be dropped.
bool KELReadSections(KELTextReader& file, KELSectionMap& sections);

// Applies the changes from `loaded` to `current` onto `onDisk`.
void KELMergeSections(const KELSectionMap& loaded, const KELSectionMap& current, KELSectionMap& onDisk);

// An exclusive advisory lock on FILE.lock (flock) for a scope: the writers of
// a file take turns at reading, merging and replacing it. Where no lock file
// can be made (a read-only folder) it locks nothing: that save cannot be
// written either, or is written in place alone.
class KELFileLock {
public:
    explicit KELFileLock(const std::string& path);
    KELFileLock(const KELFileLock&) = delete;
    KELFileLock& operator=(const KELFileLock&) = delete;
    ~KELFileLock();

    bool Held() const { return m_fd >= 0; }

private:
    int m_fd = -1;
};
