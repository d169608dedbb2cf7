// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

class TRequest;

/// The base of the generated elements that stand for one dictionary element
/// (form lines, list columns, text elements). Its key, under which a
/// presentation keeps it, is fixed when it is made; its element id may change.
class KEL_EXPORT IPresentationElement {
public:
    explicit IPresentationElement(unsigned int id = 0);
    IPresentationElement(const IPresentationElement& other) = default;
    IPresentationElement& operator=(const IPresentationElement& other) = default;
    virtual ~IPresentationElement();

    int GetKey() const { return m_key; }
    unsigned int GetID() const { return m_id; }
    void SetID(unsigned int id) { m_id = id; }

    /// Adds this element's part of a request; the base adds nothing.
    virtual bool FillRequest(TRequest& request);
    /// Writes the element to the trace; the base writes nothing.
    virtual void Dump();

protected:
    /// For elements whose key follows a property of theirs (a form line's position).
    void SetKey(int key) { m_key = key; }

private:
    int m_key;
    unsigned int m_id;
};
