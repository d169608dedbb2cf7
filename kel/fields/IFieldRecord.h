// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/KELCompositeField.h"
#include "zed/dict/TDictType.h"

#include <memory>

class IFieldContainer;
class ILabel;

/// A record: a field container holding one member (a label and the field of
/// the member's type) per member of the record type, in the type's order. A
/// member of record type is a record field again, so records nest to any depth.
class KEL_EXPORT IFieldRecord : public KELCompositeField {
public:
    IFieldRecord(IElementInfo& info, IContainer* container);
    ~IFieldRecord() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    /// ")" whatever the members hold, as designed.
    void GetValue(std::string& text) const override;
    void SetToNotReturned() override;
    void SetValue(const TValue& value) override;
    using KELCompositeField::SetValue;
    void GetPartialRequest(std::string& request) override;
    bool SetToNullValue() override;
    bool SetToServerDefault() override;
    std::unique_ptr<TValue> GetTValue(bool partial) override;

    const TDictTypeRecord* GetDictType() const { return m_pRecordType.get(); }
    void SetDictType(const TDictType& type);
    void CreateFields();
    int GetLabelSize() const { return m_labelSize; }

protected:
    const char* KindName() const override { return "IFieldRecord"; }
    const char* DumpName() const override { return "Record"; }

private:
    int m_access = 1;
    std::shared_ptr<const TDictTypeRecord> m_pRecordType;
    int m_labelSize = 0;
    unsigned int* m_pCounter = nullptr;  // the form's counter, during Create only
};

/// One member of a record: its label, then 18 pixels further its field.
class KEL_EXPORT IFieldRecordMember : public IField {
public:
    static constexpr int kLabelGap = 18;

    IFieldRecordMember(IElementInfo& info, IContainer* container);
    ~IFieldRecordMember() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    void GetValue(std::string& text) const override;
    void SetToNotReturned() override;
    void SetValue(const std::string& text) override;
    void SetValue(const TValue& value) override;
    void GetPartialRequest(std::string& request) override;
    void FillWithConfig(const std::string& key) override;
    void SaveContents(const std::string& key) const override;
    void Dump() override;
    void SizeHasChanged() override;
    void MoveAndResize(const QPoint& position, const QSize& size) override;
    QSize GetSize() override;
    QPoint Move(const QPoint& position) override;
    QSize Resize(const QSize& size) override;
    bool SetToNullValue() override;
    bool SetToServerDefault() override;
    std::unique_ptr<TValue> GetTValue(bool partial) override;

    ILabel* GetLabel() const { return m_pLabel.get(); }
    IField* GetField() const { return m_pField.get(); }

private:
    bool Whole(const char* operation) const;
    void PlaceField();

    std::unique_ptr<ILabel> m_pLabel;
    std::unique_ptr<IField> m_pField;
    QPoint m_place;
    QSize m_extent{0, 0};
};
