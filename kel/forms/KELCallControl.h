// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/frame/KELConsoleSink.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

class IInputForm;
class IInputOutputForm;
class KELConfigContext;
class TAsyncCall;
class TCall;
class TDictionary;
class TEntitySpec;

/// The calls of one document of a host: one at a time, never waited for,
/// each ended by the time limit if its answer does not come; the console is
/// told what was sent and how it ended. It makes the calls of the forms: the
/// Send of an input form, the read (Show) and the Apply (Set, then a read)
/// of an attributes form. The last answer is kept for the host's outputs.
class KEL_EXPORT KELCallControl {
public:
    /// An answered call as the outputs show it: the directive and its name.
    struct Answer {
        std::shared_ptr<const TCall> call;
        unsigned int directive = 0;
        std::string name;
    };

    /// How long a call may wait unless told otherwise.
    static constexpr std::chrono::seconds kDefaultTimeout{30};
    /// The time limit the settings give ("Calls", "Timeout", in seconds, 1 to 3,600).
    static std::chrono::milliseconds ConfiguredTimeout(KELConfigContext* context);

    /// console may be null: nothing is said then.
    KELCallControl(const TDictionary& dictionary, IMessageConsole* console,
                   std::chrono::milliseconds timeout = kDefaultTimeout);
    KELCallControl(const KELCallControl&) = delete;
    KELCallControl& operator=(const KELCallControl&) = delete;
    ~KELCallControl();

    /// The input form's request, sent. False when the form refused (the
    /// console says which line and why), a Delete was not confirmed, a call
    /// is out or the call could not be made.
    bool Send(IInputForm& form);
    /// Reads the form's entity (Show) into it; the answer is kept and told
    /// only when keep says so.
    bool Read(IInputOutputForm& form, bool keep = true);
    /// Sets the attributes changed in the form, then reads them again.
    bool Apply(IInputOutputForm& form);
    /// Gives up the call that is out, saying so.
    void Cancel();

    bool IsBusy() const;
    /// What the call that is out waits for ("Show to Agent core-r1").
    const std::string& GetWaitingFor() const { return m_waitingFor; }
    const Answer& GetLastAnswer() const { return m_last; }
    /// The request last sent or applied, as the form writes it.
    const std::string& GetRequestText() const { return m_requestText; }
    void SetTimeout(std::chrono::milliseconds timeout) { m_timeout = timeout; }

    /// Told of each answer kept.
    void OnAnswered(std::function<void(const Answer&)> answered) { m_answered = std::move(answered); }
    /// Told when a call goes out or ends.
    void OnBusyChanged(std::function<void()> changed) { m_busyChanged = std::move(changed); }
    /// Told when a Create or Delete of the entity succeeded.
    void OnEntityChanged(std::function<void(const TEntitySpec&)> changed) { m_entityChanged = std::move(changed); }

private:
    bool Start(std::unique_ptr<TAsyncCall> call, const std::string& name, std::function<void(TAsyncCall&)> answered);
    void Keep(const TCall& call, unsigned int directive, const std::string& name);
    void Say(KEL_T_Severity severity, const std::string& text) const;
    // The console line of a call ended: the message, and why it failed if it
    // did; true when it did not.
    bool SayEnded(TCall& call, const std::string& message) const;

    const TDictionary& m_dictionary;
    IMessageConsole* m_console;
    std::chrono::milliseconds m_timeout;
    std::unique_ptr<TAsyncCall> m_pending;
    // The call answered last: kept until the next, for its completion may still run.
    std::unique_ptr<TAsyncCall> m_finished;
    std::string m_waitingFor;
    std::string m_requestText;
    Answer m_last;
    std::function<void(const Answer&)> m_answered;
    std::function<void()> m_busyChanged;
    std::function<void(const TEntitySpec&)> m_entityChanged;
};
