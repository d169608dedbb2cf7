// SPDX-License-Identifier: BSD-3-Clause
#include "zed/call/ZedInstances.h"

#include "zed/TException.h"
#include "zed/call/TCall.h"
#include "zed/dict/TDictionary.h"
#include "zed/dict/ZedDirectiveNames.h"
#include "zed/value/TEntitySpec.h"

namespace {

void ListBelow(const TDictionary& dictionary, const TEntitySpec& above, const TDictClass& cls,
               std::vector<std::string>& found)
{
    const TDictDirective* show = cls.FindDirective(std::string(ZedDirective::kShow));
    if (!show)
        return;
    TEntitySpec wildcard = above;
    wildcard.AddClassWildcard(cls.GetCode());
    TSyncCall call(wildcard, show->GetID());
    try {
        call.Execute();
    } catch (const TException&) {
        return;
    }
    if (call.GetReplyCount() > 1)
        found.push_back(wildcard.ToString(&dictionary));
    for (std::size_t i = 0; call.SelectReply(i); ++i) {
        if (call.GetStatus() != ZED_STATUS_RESPONSE)
            continue;
        const TEntitySpec entity = call.GetOutEntity();
        found.push_back(entity.ToString(&dictionary));
        for (std::size_t c = 0; c < cls.GetChildCount(); ++c)
            ListBelow(dictionary, entity, cls.GetChild(c), found);
    }
}

}  // namespace

std::vector<std::string> ZedListInstances(const TDictionary& dictionary)
{
    std::vector<std::string> found;
    for (std::size_t i = 0; i < dictionary.GetRootClassCount(); ++i)
        ListBelow(dictionary, TEntitySpec(), dictionary.GetRootClass(i), found);
    return found;
}

std::vector<std::string> ZedListByClass(const TDictionary& dictionary, const std::vector<std::string>& tops)
{
    std::vector<std::string> found;
    if (dictionary.GetRootClassCount() == 0)
        return found;
    const TDictClass& top = dictionary.GetRootClass(0);
    for (const std::string& name : tops) {
        TEntitySpec entity;
        entity.AddClass(top.GetCode(), name);
        found.push_back(entity.ToString(&dictionary));
        for (std::size_t c = 0; c < top.GetChildCount(); ++c) {
            TEntitySpec rows = entity;
            rows.AddClassWildcard(top.GetChild(c).GetCode());
            found.push_back(rows.ToString(&dictionary));
        }
    }
    return found;
}
