// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/ZedExport.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

struct TCallResult;

class TCallLoop;
class TDictionary;
class TEntitySpec;
class TManagementModule;
class TTraceProvider;

/// The access library's process-wide object. It lives from the first call of
/// ZEDGetApplication until the process ends.
class ZED_EXPORT TApplication {
public:
    TApplication();
    TApplication(const TApplication&) = delete;
    TApplication& operator=(const TApplication&) = delete;
    ~TApplication();

    /// Never null.
    TTraceProvider* GetTraceProvider() const { return m_pTraceProvider.get(); }

    /// A host may install a provider of its own; the previous one is destroyed,
    /// so nobody may keep a pointer to it across this call.
    void SetTraceProvider(std::unique_ptr<TTraceProvider> provider);

    /// The dictionary that names classes and types for everything in the
    /// process; null until one is set.
    const std::shared_ptr<const TDictionary>& GetDictionary() const { return m_pDictionary; }
    void SetDictionary(std::shared_ptr<const TDictionary> dictionary);

    /// The module that carries out calls on entities under the top class of
    /// that code; the default module takes every other class.
    void RegisterModule(unsigned int topClassCode, std::shared_ptr<TManagementModule> module);
    void SetDefaultModule(std::shared_ptr<TManagementModule> module);
    /// Null when no module takes the entity.
    std::shared_ptr<TManagementModule> FindModule(const TEntitySpec& entity) const;
    /// Every module, each once.
    std::vector<TManagementModule*> GetModules() const;
    /// Where calls wait for their modules without blocking (TCallLoop).
    TCallLoop& GetCallLoop() const { return *m_pCallLoop; }

    /// The event reports of every module, gathered (TManagementModule::TakeEvents).
    std::vector<TCallResult> TakeEvents();
    /// Hands every module's reports to the listener as they arrive, modules
    /// registered later included; an empty listener goes back to keeping them.
    void SetEventListener(std::function<void(const TCallResult&)> listener);

private:
    struct Modules;
    std::unique_ptr<TTraceProvider> m_pTraceProvider;
    std::unique_ptr<Modules> m_pModules;
    std::unique_ptr<TCallLoop> m_pCallLoop;
    std::shared_ptr<const TDictionary> m_pDictionary;
};

ZED_EXPORT TApplication* ZEDGetApplication();
