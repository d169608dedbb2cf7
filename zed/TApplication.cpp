// SPDX-License-Identifier: BSD-3-Clause
#include "zed/TApplication.h"

#include <algorithm>

#include "zed/call/TCallLoop.h"
#include "zed/call/TManagementModule.h"
#include "zed/dict/TDictionary.h"
#include "zed/value/TEntitySpec.h"
#include "zed/trace/TTraceProvider.h"

// The version record every binary of the project carries (the form KEL's
// KELUtilities::GetFileVersion reads).
[[gnu::used]] static const char zed_version_record[] =
    "@(#)KELVERSION " ZED_VERSION_STRING ";FileDescription=zed access library;ProductName=KEL;";

struct TApplication::Modules {
    std::map<unsigned int, std::shared_ptr<TManagementModule>> byTopClass;
    std::shared_ptr<TManagementModule> fallback;
    TManagementModule::EventListener listener;

    // Each module once, though it may be registered for several classes.
    std::vector<TManagementModule*> Distinct() const
    {
        std::vector<TManagementModule*> modules;
        const auto add = [&](TManagementModule* module) {
            if (module && std::find(modules.begin(), modules.end(), module) == modules.end())
                modules.push_back(module);
        };
        for (const auto& [code, module] : byTopClass)
            add(module.get());
        add(fallback.get());
        return modules;
    }
};

TApplication::TApplication()
    : m_pTraceProvider(std::make_unique<TTraceProvider>()), m_pModules(std::make_unique<Modules>()),
      m_pCallLoop(std::make_unique<TCallLoop>())
{
}

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

void TApplication::RegisterModule(unsigned int topClassCode, std::shared_ptr<TManagementModule> module)
{
    if (module) {
        if (m_pModules->listener)
            module->SetEventListener(m_pModules->listener);
        m_pModules->byTopClass[topClassCode] = std::move(module);
    } else
        m_pModules->byTopClass.erase(topClassCode);
}

void TApplication::SetDefaultModule(std::shared_ptr<TManagementModule> module)
{
    if (module && m_pModules->listener)
        module->SetEventListener(m_pModules->listener);
    m_pModules->fallback = std::move(module);
}

std::vector<TCallResult> TApplication::TakeEvents()
{
    std::vector<TCallResult> events;
    for (TManagementModule* module : m_pModules->Distinct())
        for (TCallResult& event : module->TakeEvents())
            events.push_back(std::move(event));
    return events;
}

void TApplication::SetEventListener(std::function<void(const TCallResult&)> listener)
{
    m_pModules->listener = std::move(listener);
    for (TManagementModule* module : m_pModules->Distinct())
        module->SetEventListener(m_pModules->listener);
}

std::shared_ptr<TManagementModule> TApplication::FindModule(const TEntitySpec& entity) const
{
    if (entity.GetDepth() > 0)
        if (auto found = m_pModules->byTopClass.find(entity.GetCode(0)); found != m_pModules->byTopClass.end())
            return found->second;
    return m_pModules->fallback;
}

std::vector<TManagementModule*> TApplication::GetModules() const { return m_pModules->Distinct(); }

TApplication* ZEDGetApplication()
{
    // Constructed on first use so that trace works from any static initialiser.
    static TApplication application;
    return &application;
}
