// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

/// What an element of a set asks of the set-of field that holds it: a new
/// element, or to lose one. The set-of field implements it.
class KEL_EXPORT KELSetOfOwner {
public:
    virtual ~KELSetOfOwner();

    virtual void AddNewElement() = 0;
    virtual void RemoveElement(unsigned int id) = 0;
};
