// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/controls/IControlBase.h"
#include "kel/fields/IContainer.h"

#include <memory>
#include <vector>

class IElementInfo;
class IField;

/// The window of a composite field (record, set-of, attribute list) in which
/// its child fields stand: it makes them through the field builder, owns them
/// in insertion order, lays them out one under the other with indentation,
/// and hands popup-menu commands to its control base.
class KEL_EXPORT IFieldContainer : public IContainer, public IControlBase {
public:
    /// The gap added above a field whose indentation is less than the one before.
    static constexpr int kOutdentGap = 10;
    static constexpr int kDefaultMinWidth = 600;

    explicit IFieldContainer(IField* parentField, QWidget* parent = nullptr);
    ~IFieldContainer() override;

    /// Builds a field for the element and appends it; a creation failure is
    /// thrown on (as a new ICreationFailedException) and nothing is appended.
    IField* InsertField(IElementInfo& info);
    /// Appends a field made elsewhere; a null one is traced and ignored.
    void InsertField(std::unique_ptr<IField> field);
    /// Unlinks the first field of the id and hands it back; null (traced) when none has it.
    std::unique_ptr<IField> RemoveField(int id);
    /// Unlinks the last field.
    std::unique_ptr<IField> RemoveField();
    std::size_t GetCount() const { return m_fields.size(); }
    /// Walks the fields in order: a position below 0 is the end.
    long GoFirst() const { return m_fields.empty() ? -1 : 0; }
    IField* GetNext(long& position) const;
    IField* GetFieldParent() const { return m_pFieldParent; }
    void ClearAndDestroy();
    void ComputeSize(QSize& size) const;

    int GetIndentStep() const { return m_indentStep; }
    void SetIndentStep(int step) { m_indentStep = step; }
    int GetMinWidth() const { return m_minWidth; }
    /// The counter handed to each new field's Create.
    unsigned int& NextControlId() { return m_nextControlId; }
    QPoint GetPosition() const { return m_position; }
    QSize GetContainerSize() const { return m_size; }

    void PlaceElements() override;
    void SizeHasChanged() override;
    /// Stores the place and size only: the owning field places the window itself.
    void MoveAndResize(const QPoint& position, const QSize& size) override;

protected:
    bool event(QEvent* event) override;

private:
    /// Walks the fields with the layout's rules; place moves each one.
    QSize Layout(bool place) const;

    std::vector<std::unique_ptr<IField>> m_fields;
    int m_indentStep = 0;
    int m_minWidth = kDefaultMinWidth;
    unsigned int m_nextControlId = 1;
    QPoint m_position;
    QSize m_size{0, 0};
    IField* m_pFieldParent;  // the composite field that owns this container; not owned
};
