// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/frame/KELRegistration.h"

#include <functional>
#include <memory>
#include <string>

class IContainer;
class IElementInfo;
class IField;

/// Which field kind stands for an element, wherever a field is made: on an
/// input, input-output or output form, and inside a record or a set.
///
/// Kinds are registered for a data-type code or for a dictionary type by its
/// name, each with a rank. Of the kinds that match an element the highest
/// rank wins; of equal rank, a kind for the element's dictionary type wins
/// over one for its data type, and the later registration over the earlier.
/// KEL's own kinds are registered the same way at rank 0 (kBuiltIn), so a
/// host's kind of rank 1 replaces one of them where it matches:
///
///     const auto upper = KELFieldKinds::ForTypeName("Hostname", 1,
///         [](IElementInfo& info, IContainer* container) {
///             return std::make_unique<HostnameField>(info, container);
///         });
///
/// A registration lasts as long as the handle it returns. The table is the
/// process's and is used from the GUI thread.
class KEL_EXPORT KELFieldKinds {
public:
    using Factory = std::function<std::unique_ptr<IField>(IElementInfo& info, IContainer* container)>;
    static constexpr int kBuiltIn = 0;

    using Registration = KELRegistration;

    /// A kind for every element of the data-type code.
    [[nodiscard]] static Registration ForDatatype(unsigned int dt, int rank, Factory make);
    /// A kind for every element of the dictionary type of that name.
    [[nodiscard]] static Registration ForTypeName(std::string typeName, int rank, Factory make);
    /// The kind the table gives the element; null when none matches.
    static const Factory* Find(const IElementInfo& info);
};
