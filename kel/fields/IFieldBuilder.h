// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <memory>

class IContainer;
class IElementInfo;
class IField;

/// The one place that decides which field kind stands for an element: a
/// registered application to launch first (for an element standing on a form
/// itself), else the kind the field-kind table gives (KELFieldKinds: KEL's own
/// by data-type code, or a host's), else a placeholder; an attribute list that
/// an operator fills in on a form is edited attribute by attribute.
class KEL_EXPORT IFieldBuilder {
public:
    virtual ~IFieldBuilder();

    /// A new field, created (controls made, controlId advanced). A creation
    /// failure throws ICreationFailedException.
    static std::unique_ptr<IField> CreateField(IContainer* container, unsigned int& controlId, IElementInfo& info);
};
