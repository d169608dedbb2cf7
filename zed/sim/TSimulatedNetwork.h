// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/call/TManagementModule.h"
#include "zed/dict/TDictionary.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class TSimInstanceStore;

/// The embedded default management module: a network simulated in process
/// from a dictionary and an instance file, so that every host and test runs
/// without a server.
///
/// Directives are recognised by their dictionary names:
///   Show    returns, per instance, the attribute list of the partition asked
///           for by its "Partition" argument (0 or absent: every partition);
///   Set     changes the attributes whose values its request carries (a
///           directive that takes attributes); a value marked default puts an
///           attribute back to its default;
///   Create  adds an instance (initial values from the request and the
///           dictionary's defaults); Delete removes one with everything below;
///   Test    (interfaces) a reachability test with required and optional
///           arguments, local and server defaults, a response and exceptions;
///   Echo    (interfaces) answers its arguments, one of each kind of value:
///           response Mirrored gives them back, Summary (chosen by the
///           Outcome argument) counts them;
///   any other directive answers its first response.
/// An unknown instance or class answers common exception 1 (no such entity),
/// an unknown directive common exception 2. A request that does not fit the
/// directive never reaches it: the call layer answers it (ZEDCheckRequest).
/// A wildcard instance answers once per instance.
/// Set, Create and Delete report a "ConfigurationChanged" event when the class
/// has one; a Set of "AdminState" reports "LinkStateChanged" where the class
/// has it. docs/simulated-network.md has the details.
class ZED_EXPORT TSimulatedNetwork : public TManagementModule {
public:
    static constexpr unsigned int kNoSuchEntity = 1;           // ZED_COMMON_NO_SUCH_ENTITY
    static constexpr unsigned int kDirectiveNotSupported = 2;  // ZED_COMMON_DIRECTIVE_NOT_SUPPORTED
    static constexpr unsigned int kInvalidRequest = 3;         // ZED_COMMON_INVALID_REQUEST

    explicit TSimulatedNetwork(TDictionaryPtr dictionary);
    ~TSimulatedNetwork() override;

    /// Replace the instances; throw TException on a bad file, keeping the old ones.
    void LoadInstances(const std::string& path);
    void ParseInstances(std::string_view json, const std::string& source);

    std::vector<TCallResult> Execute(const TEntitySpec& entity, unsigned int directive,
                                     const TRequest& request) override;

    /// The event reports made since the last call, oldest first: each a
    /// response whose one value is the TEventReport.
    std::vector<TCallResult> TakeEvents() override;
    void SetEventListener(EventListener listener) override;

    const TSimInstanceStore& GetStore() const;

    /// Loads both files, makes the dictionary the application's and the
    /// network its default module. Throws TException on a bad file.
    static std::shared_ptr<TSimulatedNetwork> Install(const std::string& dictionaryPath,
                                                      const std::string& instancePath);

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};
