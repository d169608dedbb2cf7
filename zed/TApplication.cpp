#include "zed/TApplication.h"

#include "zed/TTraceProvider.h"

TApplication::TApplication() : m_pTraceProvider(std::make_unique<TTraceProvider>()) {}

TApplication::~TApplication() = default;

void TApplication::SetTraceProvider(std::unique_ptr<TTraceProvider> provider)
{
    if (provider)
        m_pTraceProvider = std::move(provider);
}

TApplication* ZEDGetApplication()
{
    // Constructed on first use so that trace works from any static initialiser.
    static TApplication application;
    return &application;
}
