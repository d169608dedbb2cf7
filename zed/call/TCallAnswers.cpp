// SPDX-License-Identifier: BSD-3-Clause
#include "zed/call/TCallAnswers.h"

#include "zed/value/TScalarValues.h"

namespace ZedAnswer {

TCallResult Result(const TEntitySpec& entity, TReply reply, unsigned int status)
{
    TCallResult result;
    result.outEntity = entity;
    result.timeStamp = TAbsTime::Now();
    result.reply = std::move(reply);
    result.status = status;
    return result;
}

TCallResult Common(const TEntitySpec& entity, unsigned int code, const std::string& reason)
{
    TReply reply(ZED_REPLY_EXCEPTION, code);
    if (!reason.empty())
        reply.Add(std::make_unique<TLatin1String>(reason, 1));
    return Result(entity, std::move(reply), ZED_STATUS_COMMON_EXCEPTION);
}

TReply Reply(const TDictReply& definition, unsigned int replyType, ZedNamedValues values)
{
    TReply reply(replyType, definition.GetReplyCode());
    for (auto& [name, value] : values)
        if (const TDictArgument* named = ZedFindNamed(definition.GetArguments(), name); named && value) {
            value->SetID(named->GetID());
            reply.Add(std::move(value));
        }
    return reply;
}

TCallResult Exception(const TEntitySpec& entity, const TDictDirective& directive, const std::string& name,
                      ZedNamedValues values)
{
    const TDictReply* definition = ZedFindNamed(directive.GetExceptions(), name);
    if (!definition)
        return Common(entity, ZED_COMMON_INVALID_REQUEST);
    return Result(entity, Reply(*definition, ZED_REPLY_EXCEPTION, std::move(values)), ZED_STATUS_SPECIALISED_EXCEPTION);
}

TCallResult Response(const TEntitySpec& entity, const TDictDirective& directive, ZedNamedValues values)
{
    if (directive.GetResponses().empty())
        return Result(entity, TReply(ZED_REPLY_RESPONSE, 0), ZED_STATUS_RESPONSE);
    return Result(entity, Reply(directive.GetResponses().front(), ZED_REPLY_RESPONSE, std::move(values)),
                  ZED_STATUS_RESPONSE);
}

}  // namespace ZedAnswer
