#pragma once

#include "kel/fields/KELFieldWithoutValue.h"

class QLineEdit;

// The field of an element whose type has no field of its own: a read-only
// line that shows a value's text form, returns none and sends nothing.
class KEL_EXPORT IFieldNotSupported : public KELFieldWithoutValue {
public:
    static constexpr int kWidth = 350;

    IFieldNotSupported(IElementInfo& info, IContainer* container);
    ~IFieldNotSupported() override;

    void Create(unsigned int& id, IElementInfo& info) override;

protected:
    void Show(const QString& text) override;
    const char* DumpPrefix() const override { return "KEL : NotSupported Value : "; }

private:
    QLineEdit* m_pEdit = nullptr;  // the window; a child of the container
};
