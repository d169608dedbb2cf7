// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <functional>
#include <utility>

/// A registration that lasts as long as its handle: destroying the handle, or
/// assigning another over it, undoes it. Moved, the new handle owns it.
class KEL_EXPORT KELRegistration {
public:
    KELRegistration() = default;
    explicit KELRegistration(std::function<void()> undo) : m_undo(std::move(undo)) {}
    KELRegistration(KELRegistration&& other) noexcept : m_undo(std::move(other.m_undo)) { other.m_undo = nullptr; }
    KELRegistration& operator=(KELRegistration&& other) noexcept
    {
        if (this != &other) {
            Undo();
            m_undo = std::move(other.m_undo);
            other.m_undo = nullptr;
        }
        return *this;
    }
    KELRegistration(const KELRegistration&) = delete;
    KELRegistration& operator=(const KELRegistration&) = delete;
    ~KELRegistration() { Undo(); }

    /// Whether it still holds a registration.
    explicit operator bool() const { return static_cast<bool>(m_undo); }

private:
    void Undo()
    {
        if (m_undo)
            std::exchange(m_undo, nullptr)();
    }

    std::function<void()> m_undo;
};
