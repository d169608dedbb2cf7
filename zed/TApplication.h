#pragma once

#include "zed/ZedExport.h"

#include <memory>

class TTraceProvider;

// The access library's process-wide object. It lives from the first call of
// ZEDGetApplication until the process ends.
class ZED_EXPORT TApplication {
public:
    TApplication();
    TApplication(const TApplication&) = delete;
    TApplication& operator=(const TApplication&) = delete;
    ~TApplication();

    // Never null.
    TTraceProvider* GetTraceProvider() const { return m_pTraceProvider.get(); }

    // A host may install a provider of its own; the previous one is destroyed,
    // so nobody may keep a pointer to it across this call.
    void SetTraceProvider(std::unique_ptr<TTraceProvider> provider);

private:
    std::unique_ptr<TTraceProvider> m_pTraceProvider;
};

ZED_EXPORT TApplication* ZEDGetApplication();
