// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldContainer.h"

#include "kel/fields/IField.h"
#include "kel/fields/IFieldBuilder.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/ICreationFailedException.h"
#include "kel/frame/KELTrace.h"

#include <algorithm>

IFieldContainer::IFieldContainer(IField* parentField, QWidget* parent)
    : IContainer(parent), IControlBase(parentField), m_pFieldParent(parentField)
{
    KELConfigContext* context = GetConfigContext();
    if (!context && parentField && parentField->GetContainer())
        context = parentField->GetContainer()->GetConfigContext();
    if (!context && parentField)
        context = parentField->ConfigurationContext();
    if (context && GetKELapp())
        GetKELapp()->GetConfigInt(context, "Presentation Form", "MinWidth", m_minWidth, kDefaultMinWidth, 1);
    if (!parentField) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldContainer", this)
            << "KEL : IFieldContainer::IFieldContainer : pParent must be valid";
    } else {
        SetPopupMode(IFieldPopupMenu::ModeFor(parentField));
    }
}

IFieldContainer::~IFieldContainer() { ClearAndDestroy(); }

IField* IFieldContainer::InsertField(IElementInfo& info)
{
    std::unique_ptr<IField> field;
    try {
        field = IFieldBuilder::CreateField(this, m_nextControlId, info);
    } catch (const ICreationFailedException& failure) {
        throw ICreationFailedException(failure.ToString());
    }
    IField* inserted = field.get();
    m_fields.push_back(std::move(field));
    return inserted;
}

void IFieldContainer::InsertField(std::unique_ptr<IField> field)
{
    if (!field) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldContainer", this)
            << "KEL : IFieldContainer::InsertField pField must be valid !";
        return;
    }
    m_fields.push_back(std::move(field));
}

std::unique_ptr<IField> IFieldContainer::RemoveField(int id)
{
    const auto found = std::find_if(m_fields.begin(), m_fields.end(), [&](const std::unique_ptr<IField>& field) {
        return field->GetID() == static_cast<unsigned int>(id);
    });
    if (found == m_fields.end()) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldContainer", this)
            << "KEL : IFieldContainer::RemoveField " << id << " not found in container. ";
        return nullptr;
    }
    std::unique_ptr<IField> field = std::move(*found);
    m_fields.erase(found);
    return field;
}

std::unique_ptr<IField> IFieldContainer::RemoveField()
{
    if (m_fields.empty())
        return nullptr;
    std::unique_ptr<IField> field = std::move(m_fields.back());
    m_fields.pop_back();
    return field;
}

IField* IFieldContainer::GetNext(long& position) const
{
    if (position < 0 || static_cast<std::size_t>(position) >= m_fields.size()) {
        position = -1;
        return nullptr;
    }
    IField* field = m_fields[static_cast<std::size_t>(position)].get();
    ++position;
    if (static_cast<std::size_t>(position) >= m_fields.size())
        position = -1;
    return field;
}

void IFieldContainer::ClearAndDestroy()
{
    // One by one from the end, so that a field's destructor never meets a half-cleared list.
    while (!m_fields.empty())
        RemoveField().reset();
}

QSize IFieldContainer::Layout(bool place) const
{
    const int right = width();  // the client rectangle's right edge
    int width = place ? (right < 1 ? m_minWidth : right) : (right < 1 ? 0 : right);
    int y = 1;
    int previousX = 0;
    for (const std::unique_ptr<IField>& field : m_fields) {
        int x = static_cast<int>(field->GetIndent()) * m_indentStep;
        if (x != previousX && x < previousX)
            y += kOutdentGap;
        previousX = x;
        if (x < 0)
            x = 1;
        const QSize size = field->GetSize();
        if (place)
            field->MoveAndResize(QPoint(x, y), size);
        y += size.height() + 2;
        width = std::max(width, x + size.width());
    }
    return m_fields.empty() ? QSize(0, 0) : QSize(width, y);
}

void IFieldContainer::PlaceElements()
{
    Layout(true);
    update();
}

void IFieldContainer::ComputeSize(QSize& size) const { size = Layout(false); }

void IFieldContainer::SizeHasChanged()
{
    ComputeSize(m_size);
    if (m_pFieldParent)
        m_pFieldParent->SizeHasChanged();
}

void IFieldContainer::MoveAndResize(const QPoint& position, const QSize& size)
{
    if (position == m_position && size == m_size)
        return;
    m_position = position;
    m_size = size;
}

bool IFieldContainer::event(QEvent* event) { return HandlePopupEvent(this, event) || IContainer::event(event); }
