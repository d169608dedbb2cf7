#include "zed/TApplication.h"

#include "zed/dict/TDictionary.h"
#include "zed/trace/TTraceProvider.h"

TApplication::TApplication() : m_pTraceProvider(std::make_unique<TTraceProvider>()) {}

TApplication::~TApplication() = default;

void TApplication::SetTraceProvider(std::unique_ptr<TTraceProvider> provider)
{
    if (provider)
        m_pTraceProvider = std::move(provider);
}

void TApplication::SetDictionary(std::shared_ptr<const TDictionary> dictionary)
{
    m_pDictionary = std::move(dictionary);
}

TApplication* ZEDGetApplication()
{
    // Constructed on first use so that trace works from any static initialiser.
    static TApplication application;
    return &application;
}
