// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/KELSectionMerge.h"

#include "kel/config/ICustomField.h"
#include "kel/config/ISection.h"
#include "kel/config/KELConfigStatus.h"
#include "kel/config/KELTextReader.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

bool KELReadSections(KELTextReader& file, KELSectionMap& sections)
{
    bool dropped = false;
    for (;;) {
        const std::size_t start = file.GetPosition();
        auto section = std::make_unique<ISection>();
        const int status = section->Load(file);
        if (status == KEL_CFG_SUCCESS) {
            sections.Put(std::move(section));
            continue;
        }
        if (status != KEL_CFG_EOF || !file.OnlyBlankOrCommentsFrom(start))
            dropped = true;
        if (status == KEL_CFG_EOF)
            return dropped;
    }
}

namespace {

ISection& SectionIn(KELSectionMap& sections, const std::string& name)
{
    if (ISection* found = sections.Find(name))
        return *found;
    return sections.Put(std::make_unique<ISection>(name));
}

}  // namespace

void KELMergeSections(const KELSectionMap& loaded, const KELSectionMap& current, KELSectionMap& onDisk)
{
    for (std::size_t i = 0; i < loaded.Size(); ++i) {
        const ISection& before = loaded.At(i);
        const ISection* now = current.Find(before.GetSectionName());
        if (!now) {
            onDisk.Remove(before.GetSectionName());
            continue;
        }
        for (std::size_t f = 0; f < before.GetFieldCount(); ++f)
            if (const ICustomField& field = before.GetField(f); !now->FindValue(field.GetFieldName()))
                if (ISection* there = onDisk.Find(before.GetSectionName()))
                    there->RemoveField(field.GetFieldName());
    }
    for (std::size_t i = 0; i < current.Size(); ++i) {
        const ISection& now = current.At(i);
        const ISection* before = loaded.Find(now.GetSectionName());
        for (std::size_t f = 0; f < now.GetFieldCount(); ++f) {
            const ICustomField& field = now.GetField(f);
            const std::string* was = before ? before->FindValue(field.GetFieldName()) : nullptr;
            if (!was || *was != field.GetValue())
                SectionIn(onDisk, now.GetSectionName()).SetString(field.GetFieldName(), field.GetValue());
        }
        // A section this process made, even empty, stays made.
        if (!before)
            SectionIn(onDisk, now.GetSectionName());
    }
}

KELFileLock::KELFileLock(const std::string& path)
{
    m_fd = ::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (m_fd < 0)
        return;
    int locked;
    while ((locked = ::flock(m_fd, LOCK_EX)) != 0 && errno == EINTR) {
    }
    if (locked != 0) {
        ::close(m_fd);
        m_fd = -1;
    }
}

KELFileLock::~KELFileLock()
{
    if (m_fd >= 0)
        ::close(m_fd);  // closing releases the lock
}
