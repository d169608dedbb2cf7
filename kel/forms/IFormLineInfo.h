// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/model/IElementInfo.h"

/// What a form keeps of one element for its bookkeeping: identifier (its key),
/// position, visibility and element info.
class KEL_EXPORT IFormLineInfo {
public:
    explicit IFormLineInfo(unsigned int id = 0) : m_id(id) {}

    unsigned int GetID() const { return m_id; }
    void SetID(unsigned int id) { m_id = id; }
    unsigned int GetPosition() const { return m_position; }
    void SetPosition(unsigned int position) { m_position = position; }
    int GetVisibility() const { return m_visibility; }
    void SetVisibility(int visibility) { m_visibility = visibility; }
    IElementInfo& GetElementInfo() { return m_info; }
    const IElementInfo& GetElementInfo() const { return m_info; }

private:
    unsigned int m_position = 0;
    unsigned int m_id;
    int m_visibility = 1;
    IElementInfo m_info;
};
