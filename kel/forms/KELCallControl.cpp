// SPDX-License-Identifier: BSD-3-Clause
#include "kel/forms/KELCallControl.h"

#include "kel/forms/IInputForm.h"
#include "kel/forms/IInputOutputForm.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELPrompt.h"
#include "zed/call/TCall.h"
#include "zed/call/TCallLoop.h"
#include "zed/call/TReplyText.h"
#include "zed/dict/TDictionary.h"
#include "zed/dict/ZedDirectiveNames.h"

#include <QPointer>

#include <algorithm>
#include <sstream>

namespace {

constexpr int kMostTimeoutSeconds = 3600;

const TDictDirective* DirectiveOf(const TDictionary& dictionary, const TEntitySpec& entity, std::string_view name)
{
    const TDictClass* cls = dictionary.FindClass(entity.GetEntityClass());
    return cls ? cls->FindDirective(std::string(name)) : nullptr;
}

}  // namespace

std::chrono::milliseconds KELCallControl::ConfiguredTimeout(KELConfigContext* context)
{
    int seconds = static_cast<int>(kDefaultTimeout.count());
    if (context && GetKELapp())
        GetKELapp()->GetConfigInt(context, "Calls", "Timeout", seconds, seconds, 1);
    return std::chrono::seconds(std::clamp(seconds, 1, kMostTimeoutSeconds));
}

KELCallControl::KELCallControl(const TDictionary& dictionary, IMessageConsole* console,
                               std::chrono::milliseconds timeout)
    : m_dictionary(dictionary), m_console(console), m_timeout(timeout)
{
}

KELCallControl::~KELCallControl() = default;

bool KELCallControl::IsBusy() const { return m_pending != nullptr; }

void KELCallControl::Say(KEL_T_Severity severity, const std::string& text) const
{
    if (m_console)
        m_console->SetMessage(severity, text);
}

bool KELCallControl::SayEnded(TCall& call, const std::string& message) const
{
    const std::string exception = ZEDFirstException(m_dictionary, call);
    Say(exception.empty() ? KEL_SEVERITY_DONE : KEL_SEVERITY_PROBLEM,
        exception.empty() ? message : message + " -- " + exception);
    return exception.empty();
}

void KELCallControl::Keep(const TCall& call, unsigned int directive, const std::string& name)
{
    m_last = {std::make_shared<const TCall>(call), directive, name};
    if (m_answered)
        m_answered(m_last);
}

bool KELCallControl::Start(std::unique_ptr<TAsyncCall> call, const std::string& name,
                           std::function<void(TAsyncCall&)> answered)
{
    TAsyncCall& started = *call;
    const std::string entity = started.GetEntity().ToString(&m_dictionary);
    m_pending = std::move(call);
    m_waitingFor = name + " to " + entity;
    const bool going = started.Start(
        [this, answered = std::move(answered)](TAsyncCall& done) {
            m_finished = std::move(m_pending);
            answered(done);
            if (m_busyChanged)
                m_busyChanged();
        },
        m_timeout);
    if (!going) {
        // Never started, so no completion of it runs; the call answered last
        // may be running its own (an Apply's read), and stays.
        m_pending.reset();
        Say(KEL_SEVERITY_PROBLEM, "The call could not be made: no management module answers for " + entity);
    }
    if (m_busyChanged)
        m_busyChanged();
    return going;
}

void KELCallControl::Cancel()
{
    if (!m_pending)
        return;
    Say(KEL_SEVERITY_INFORMATION, "Cancelled: " + m_waitingFor);
    m_pending.reset();
    if (m_busyChanged)
        m_busyChanged();
}

bool KELCallControl::Send(IInputForm& form)
{
    if (IsBusy())
        return false;
    auto call = std::make_unique<TAsyncCall>(form.GetEntity(), form.GetDirectiveID());
    if (!form.FillRequest(call->GetRequest())) {
        Say(KEL_SEVERITY_PROBLEM, "Not sent: " + form.GetRefusal());
        return false;
    }
    const std::string entity = form.GetEntity().ToString(&m_dictionary);
    const std::string name = form.GetName();
    if (name == ZedDirective::kDelete
        && KELPrompt::Question(name, "Delete " + entity + "?", false) != KELPrompt::Answer::Yes) {
        Say(KEL_SEVERITY_INFORMATION, "Not sent: the Delete of " + entity + " was not confirmed.");
        return false;
    }
    m_requestText.clear();
    form.GetRequest(m_requestText);
    // What was sent is what the next form of this directive starts from (the
    // user file keeps it), and where undoing now starts from.
    form.SaveContents("");
    form.UndoBoundary();
    std::ostringstream shown;
    ZEDWriteRequest(shown, m_dictionary, call->GetEntity(), call->GetDirective(), call->GetRequest());
    const std::string message = name + " sent to " + entity + (shown.str().empty() ? "" : ": " + shown.str());
    const unsigned int directive = form.GetDirectiveID();
    const TEntitySpec target = form.GetEntity();
    const bool changesEntities = name == ZedDirective::kCreate || name == ZedDirective::kDelete;
    return Start(std::move(call), name, [this, message, name, directive, target, changesEntities](TAsyncCall& done) {
        Keep(done, directive, name);
        if (SayEnded(done, message) && changesEntities && m_entityChanged)
            m_entityChanged(target);
    });
}

bool KELCallControl::Read(IInputOutputForm& form, bool keep)
{
    const TDictDirective* show = DirectiveOf(m_dictionary, form.GetEntity(), ZedDirective::kShow);
    if (IsBusy() || !show)
        return false;
    QPointer<IInputOutputForm> reading = &form;
    const unsigned int directive = show->GetID();
    return Start(std::make_unique<TAsyncCall>(form.GetEntity(), directive), ZedDirective::kShow,
                 [this, reading, directive, keep](TAsyncCall& done) {
                     if (reading)
                         reading->ProcessReply(done.GetReply());
                     if (done.GetStatus() != ZED_STATUS_RESPONSE)
                         Say(KEL_SEVERITY_PROBLEM,
                             "The attributes could not be read: " + ZEDFirstException(m_dictionary, done));
                     if (keep)
                         Keep(done, directive, ZedDirective::kShow);
                 });
}

bool KELCallControl::Apply(IInputOutputForm& form)
{
    const TDictDirective* set = DirectiveOf(m_dictionary, form.GetEntity(), ZedDirective::kSet);
    if (IsBusy() || !set)
        return false;
    auto call = std::make_unique<TAsyncCall>(form.GetEntity(), set->GetID());
    if (!form.FillRequest(call->GetRequest())) {
        Say(KEL_SEVERITY_PROBLEM, "Not applied: " + form.GetRefusal());
        return false;
    }
    m_requestText.clear();
    form.GetRequest(m_requestText);
    if (call->GetRequest().Size() == 0) {
        Say(KEL_SEVERITY_INFORMATION, "Nothing to apply: no attribute was changed.");
        return false;
    }
    form.UndoBoundary();
    QPointer<IInputOutputForm> applied = &form;
    const unsigned int directive = set->GetID();
    const std::string message = "Set sent to " + form.GetEntity().ToString(&m_dictionary);
    return Start(std::move(call), ZedDirective::kSet, [this, applied, directive, message](TAsyncCall& done) {
        SayEnded(done, message);
        Keep(done, directive, ZedDirective::kSet);
        // The form then shows what the network now holds.
        if (applied)
            Read(*applied, false);
    });
}
