// SPDX-License-Identifier: BSD-3-Clause
#include "kel/model/IDropEntity.h"

#include <QDataStream>

#include <cstdint>

IDropEntity::IDropEntity() = default;

IDropEntity::~IDropEntity() = default;

void IDropEntity::Serialize(QDataStream& archive, bool storing)
{
    if (storing) {
        archive << static_cast<quint32>(m_id) << m_value;
        return;
    }
    quint32 id = 0;
    QString value;
    archive >> id >> value;
    if (archive.status() != QDataStream::Ok)
        return;  // a short or damaged stream leaves the entity as it was
    m_id = id;
    m_value = value;
}
