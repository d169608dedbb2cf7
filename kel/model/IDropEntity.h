// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QString>

class QDataStream;

/// What a drag of an entity carries: an id and a text, written to and read
/// from a data stream in that order (the id as 4 bytes unsigned).
class KEL_EXPORT IDropEntity {
public:
    IDropEntity();
    virtual ~IDropEntity();

    const unsigned int& GetId() const { return m_id; }
    void SetId(const unsigned int& id) { m_id = id; }
    const QString& GetValue() const { return m_value; }
    void SetValue(const QString& value) { m_value = value; }

    /// Writes when storing, else reads.
    virtual void Serialize(QDataStream& archive, bool storing);

private:
    unsigned int m_id = 0;
    QString m_value;
};
