// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The eight numeric field kinds. They differ only in the type a text is read
// as, the format the text is rewritten in and the value class they give.

#include "kel/fields/IFieldEditNum.h"
#include "zed/value/TScalarValues.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>

/// What the numeric field kinds share: the text is read as Parsed, rewritten in
/// its canonical form (16-bit kinds masked), and given as a Value.
template <class Parsed, class Value, bool Floating, bool Mask16>
class IFieldNumeric : public IFieldEditNum {
public:
    using IFieldEditNum::IFieldEditNum;

    bool Valid(std::string& text) override
    {
        std::istringstream in(text);
        Parsed parsed{};
        in >> parsed;
        if (in.fail() || in.bad())
            return false;
        char shown[64];
        if constexpr (Floating)
            std::snprintf(shown, sizeof shown, "%f", static_cast<double>(parsed));
        else if constexpr (Mask16)
            std::snprintf(shown, sizeof shown, "%i", static_cast<int>(parsed & 0xFFFF));
        else
            std::snprintf(shown, sizeof shown, "%i", static_cast<int>(parsed));
        text = shown;
        return true;
    }

protected:
    std::unique_ptr<TValue> MakeValue(const std::string& text) const override
    {
        using Content = decltype(std::declval<Value>().GetValue());
        using Stored = std::remove_cv_t<std::remove_reference_t<Content>>;
        if constexpr (Floating)
            return std::make_unique<Value>(static_cast<Stored>(std::atof(text.c_str())));
        else
            return std::make_unique<Value>(static_cast<Stored>(std::atol(text.c_str())));
    }
    std::unique_ptr<TValue> MakeEmpty() const override { return std::make_unique<Value>(); }
};

/// Field of data type 30 (Integer16).
class KEL_EXPORT IFieldInteger16 final : public IFieldNumeric<std::int16_t, TInteger16, false, false> {
    using IFieldNumeric::IFieldNumeric;
};
/// Field of data type 31 (Integer32).
class KEL_EXPORT IFieldInteger32 final : public IFieldNumeric<std::int32_t, TInteger32, false, false> {
    using IFieldNumeric::IFieldNumeric;
};
/// Field of data type 34 (Unsigned16).
class KEL_EXPORT IFieldUnsigned16 final : public IFieldNumeric<std::uint16_t, TUnsigned16, false, true> {
    using IFieldNumeric::IFieldNumeric;
};
/// Field of data type 35 (Unsigned32).
class KEL_EXPORT IFieldUnsigned32 final : public IFieldNumeric<std::uint32_t, TUnsigned32, false, false> {
    using IFieldNumeric::IFieldNumeric;
};
/// Field of data type 37 (Counter16).
class KEL_EXPORT IFieldCounter16 final : public IFieldNumeric<std::uint16_t, TCounter16, false, true> {
    using IFieldNumeric::IFieldNumeric;
};
/// Field of data type 38 (Counter32).
class KEL_EXPORT IFieldCounter32 final : public IFieldNumeric<std::uint32_t, TCounter32, false, false> {
    using IFieldNumeric::IFieldNumeric;
};
/// Field of data type 63 (Float).
class KEL_EXPORT IFieldFloat final : public IFieldNumeric<float, TFloat, true, false> {
    using IFieldNumeric::IFieldNumeric;
};
/// Field of data type 72 (Real).
class KEL_EXPORT IFieldReal final : public IFieldNumeric<double, TReal, true, false> {
    using IFieldNumeric::IFieldNumeric;
};
