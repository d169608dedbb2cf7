// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldBuilder.h"

#include "kel/fields/IContainer.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/fields/IFieldAttribute.h"
#include "kel/fields/IFieldLaunch.h"
#include "kel/fields/IFieldNotSupported.h"
#include "kel/fields/KELFieldKinds.h"
#include "kel/fields/KELFormContext.h"
#include "kel/frame/KELLaunch.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "zed/dict/ZedDictCodes.h"
#include "zed/value/TEntitySpec.h"
#include "zed/value/ZedDatatypes.h"

namespace {

// Types cannot refer to themselves, but a type made in code can still nest
// deeper than any dictionary may. Composites build their inner fields from
// inside their own creation, so the builder counts how deep it is in itself;
// past the limit a field is a placeholder, so that building stops instead of
// exhausting the stack.
constexpr int kMaxNesting = 4 * ZED_MAX_TYPE_DEPTH;
thread_local int t_nesting = 0;

class NestingLevel {
public:
    NestingLevel() { ++t_nesting; }
    ~NestingLevel() { --t_nesting; }
    NestingLevel(const NestingLevel&) = delete;
    NestingLevel& operator=(const NestingLevel&) = delete;
};

// The form of an element that stands on a form itself (not inside a
// composite) and can be changed; null otherwise.
KELFormContext* WritableLineForm(IContainer* container, IElementInfo& info)
{
    if (info.GetAccess() == ZED_ACCESS_READ_ONLY || !container || dynamic_cast<IFieldContainer*>(container))
        return nullptr;
    return container->GetFormContext();
}

// The first application registered for the element of a form line, if any.
std::unique_ptr<IField> LaunchField(IContainer* container, IElementInfo& info)
{
    KELFormContext* form = WritableLineForm(container, info);
    if (!form)
        return nullptr;
    const unsigned int element = static_cast<unsigned int>(info.GetID());
    const std::vector<std::string> names =
        KELLaunch::GetApplications(form->GetCurrentEntity(), form->GetCurrentDirective(), element);
    if (names.empty())
        return nullptr;
    return std::make_unique<IFieldLaunch>(info, container, names.front());
}

}  // namespace

IFieldBuilder::~IFieldBuilder() = default;

std::unique_ptr<IField> IFieldBuilder::CreateField(IContainer* container, unsigned int& controlId, IElementInfo& info)
{
    const NestingLevel level;
    std::unique_ptr<IField> field;
    if (t_nesting > kMaxNesting) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldBuilder", container)
            << "KEL : IFieldBuilder::CreateField, fields nest deeper than " << kMaxNesting << " levels";
        field = std::make_unique<IFieldNotSupported>(info, container);
    } else {
        field = LaunchField(container, info);
    }
    // An attribute list is shown as text wherever a reply carries one; the
    // argument of a directive that takes one is edited attribute by attribute.
    if (!field && info.GetDT() == ZED_DT_ATTRIBUTELIST && WritableLineForm(container, info))
        field = std::make_unique<IFieldAttrList>(info, container);
    if (!field)
        if (const KELFieldKinds::Factory* make = KELFieldKinds::Find(info))
            field = (*make)(info, container);
    if (!field)  // no kind, or a kind that made none
        field = std::make_unique<IFieldNotSupported>(info, container);
    field->Create(controlId, info);
    return field;
}
