#pragma once

#include "kel/fields/KELTextField.h"

class QDateTimeEdit;
class QString;

/// An absolute time that may be changed: a date-time control showing
/// "MM/dd/yyy HH:mm:ss" in UTC, as the access library keeps times. A field
/// without a value shows nothing (or the not-returned text); one left to the
/// server's default shows string 4044 and reads back as the default's text, so
/// that its value goes marked default.
class KEL_EXPORT IFieldDateTime : public KELTextField {
public:
    /// The format as operators know it, where "yyy" is the full year; Qt
    /// spells that "yyyy" (its "yyy" would show two digits and a letter y).
    static constexpr const char* kDisplayFormat = "MM/dd/yyy HH:mm:ss";
    static QString QtDisplayFormat(const char* format);

    IFieldDateTime(IElementInfo& info, IContainer* container);
    ~IFieldDateTime() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    /// The time in the access library's text form; empty without a value.
    void GetValue(std::string& text) const override;
    void SetToNotReturned() override;
    void SetValue(const std::string& text) override;
    void SetValue(const TValue& value) override;
    void GetPartialRequest(std::string& request) override;
    bool SetToNullValue() override;
    bool SetToServerDefault() override;
    std::unique_ptr<TValue> GetTValue(bool always) override;

protected:
    const char* KindName() const override { return "IFieldDateTime"; }
    const char* DumpName() const override { return "DateTime"; }

private:
    void ShowEmpty(const QString& text);
    void ShowTime(std::int64_t milliseconds);

    QDateTimeEdit* m_pEdit = nullptr;  // the window; a child of the container
    bool m_hasValue = false;
    /// Left to the server: shown as such, and read back as the default's text.
    bool m_serverDefault = false;
};
