#include "kel/fields/IFieldBuilder.h"

#include "kel/fields/IContainer.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/fields/IFieldAttribute.h"
#include "kel/fields/IFieldCombo.h"
#include "kel/fields/IFieldDateTime.h"
#include "kel/fields/IFieldEdit.h"
#include "kel/fields/IFieldEditMulti.h"
#include "kel/fields/IFieldLaunch.h"
#include "kel/fields/IFieldNotSupported.h"
#include "kel/fields/IFieldNumeric.h"
#include "kel/fields/IFieldRecord.h"
#include "kel/fields/IFieldSetOf.h"
#include "kel/fields/IFieldToggle.h"
#include "kel/fields/KELFormContext.h"
#include "kel/frame/KELLaunch.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "zed/dict/ZedDictCodes.h"
#include "zed/value/TEntitySpec.h"
#include "zed/value/ZedDatatypes.h"

#include <array>

namespace {

using Factory = std::unique_ptr<IField> (*)(IElementInfo&, IContainer*);

template <class Kind>
std::unique_ptr<IField> Make(IElementInfo& info, IContainer* container)
{
    return std::make_unique<Kind>(info, container);
}

// A time that cannot be changed is shown as text.
std::unique_ptr<IField> MakeTime(IElementInfo& info, IContainer* container)
{
    if (info.GetAccess() == ZED_ACCESS_READ_ONLY)
        return Make<IFieldEdit>(info, container);
    return Make<IFieldDateTime>(info, container);
}

struct Kind {
    unsigned int dt;
    Factory make;
};

// Data-type code to field kind. Codes not listed (and every code outside 1
// to 83) get the placeholder.
constexpr std::array kKinds = {
    Kind{ZED_DT_BOOLEAN, &Make<IFieldToggle>},
    Kind{ZED_DT_LATIN1STRING, &Make<IFieldEditMulti>},
    Kind{ZED_DT_SIMPLENAME, &Make<IFieldEdit>},
    Kind{ZED_DT_FULLNAME, &Make<IFieldEdit>},
    Kind{ZED_DT_OCTETSTRING, &Make<IFieldEdit>},
    Kind{ZED_DT_ENTITYSPEC, &Make<IFieldEdit>},
    Kind{ZED_DT_ENTITYCLASS, &Make<IFieldEdit>},
    Kind{ZED_DT_ATTRIBUTELIST, &Make<IFieldEdit>},
    Kind{ZED_DT_EVENTREPORT, &Make<IFieldEdit>},
    Kind{ZED_DT_ENUMERATION, &Make<IFieldCombo>},
    Kind{ZED_DT_RECORD, &Make<IFieldRecord>},
    Kind{ZED_DT_SETOF, &Make<IFieldSetOf>},
    Kind{ZED_DT_SEQUENCEOF, &Make<IFieldSetOf>},
    Kind{ZED_DT_ATTRIBUTE, &Make<IFieldAttribute>},
    Kind{ZED_DT_ATTRIBUTEID, &Make<IFieldAttributeID>},
    Kind{ZED_DT_INTEGER16, &Make<IFieldInteger16>},
    Kind{ZED_DT_INTEGER32, &Make<IFieldInteger32>},
    Kind{ZED_DT_UNSIGNED16, &Make<IFieldUnsigned16>},
    Kind{ZED_DT_UNSIGNED32, &Make<IFieldUnsigned32>},
    Kind{ZED_DT_COUNTER16, &Make<IFieldCounter16>},
    Kind{ZED_DT_COUNTER32, &Make<IFieldCounter32>},
    Kind{ZED_DT_ABSTIME, &MakeTime},
    Kind{ZED_DT_FLOAT, &Make<IFieldFloat>},
    Kind{ZED_DT_REAL, &Make<IFieldReal>},
};

Factory FactoryFor(unsigned int dt)
{
    for (const Kind& kind : kKinds)
        if (kind.dt == dt)
            return kind.make;
    return &Make<IFieldNotSupported>;
}

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

} // namespace

IFieldBuilder::~IFieldBuilder() = default;

std::unique_ptr<IField> IFieldBuilder::CreateField(IContainer* container, unsigned int& controlId, IElementInfo& info)
{
    const NestingLevel level;
    std::unique_ptr<IField> field;
    if (t_nesting > kMaxNesting) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldBuilder", container)
            << "KEL : IFieldBuilder::CreateField, fields nest deeper than " << kMaxNesting << " levels";
        field = Make<IFieldNotSupported>(info, container);
    } else {
        field = LaunchField(container, info);
    }
    // An attribute list is shown as text wherever a reply carries one; the
    // argument of a directive that takes one is edited attribute by attribute.
    if (!field && info.GetDT() == ZED_DT_ATTRIBUTELIST && WritableLineForm(container, info))
        field = Make<IFieldAttrList>(info, container);
    if (!field)
        field = FactoryFor(info.GetDT())(info, container);
    field->Create(controlId, info);
    return field;
}
