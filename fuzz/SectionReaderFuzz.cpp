// SPDX-License-Identifier: BSD-3-Clause
// Any bytes fed to the section reader give statuses, never a crash or a hang,
// and whatever loads writes back to text that loads to the same sections.

#include "kel/config/ICustomField.h"
#include "kel/config/ISection.h"
#include "kel/config/KELConfigStatus.h"
#include "kel/config/KELTextReader.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

bool SameFields(const ISection& a, const ISection& b)
{
    if (a.GetSectionName() != b.GetSectionName() || a.GetFieldCount() != b.GetFieldCount())
        return false;
    for (std::size_t i = 0; i < a.GetFieldCount(); ++i) {
        const ICustomField& field = a.GetField(i);
        const std::string* other = b.FindValue(field.GetFieldName());
        if (!other || *other != field.GetValue())
            return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    KELTextReader file = KELTextReader::OverView(std::string_view(reinterpret_cast<const char*>(data), size));
    for (;;) {
        const std::size_t before = file.GetPosition();
        ISection section;
        const int status = section.Load(file);
        if (status != KEL_CFG_SUCCESS && status != KEL_CFG_INVALID_BEGIN && status != KEL_CFG_INVALID_END
            && status != KEL_CFG_EOF)
            std::abort();
        if (status == KEL_CFG_EOF)
            break;
        if (file.GetPosition() <= before)
            std::abort();  // no progress: the caller's loop would never end
        if (status != KEL_CFG_SUCCESS)
            continue;

        std::string saved;
        section.Save(saved);
        KELTextReader again = KELTextReader::OverView(saved);
        ISection reloaded;
        if (reloaded.Load(again) != KEL_CFG_SUCCESS || !SameFields(section, reloaded))
            std::abort();
    }
    return 0;
}
