// SPDX-License-Identifier: BSD-3-Clause
#include "zed/call/TReplyText.h"

#include "zed/ZedText.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TEventReport.h"

#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

// Values print on one line, but attribute lists one attribute a line, named
// and with units, as an operator reads them. What a value holds of control
// characters is escaped: a value from a device cannot forge a line of its
// own or move a terminal's cursor.
void WriteValue(std::ostream& out, const std::string& label, const TValue& value, const TDictClass* cls,
                const std::string& units, const std::string& indent)
{
    if (value.GetDatatype() == ZED_DT_ATTRIBUTELIST && value.IsPresent() && !value.HasReason()) {
        const auto& list = static_cast<const TAttributeList&>(value);
        out << indent << label << ":\n";
        for (std::size_t i = 0; i < list.Size(); ++i) {
            const TAttribute& attribute = list.At(i);
            const TDictAttribute* definition =
                cls ? cls->FindAttribute(attribute.GetAttributeID().GetValue()) : nullptr;
            WriteValue(out, definition ? definition->GetPresentationName() : attribute.GetAttributeID().ToString(),
                       attribute.GetValue(), cls, definition ? definition->GetUnits() : "", indent + "  ");
        }
        return;
    }
    out << indent << label << " = " << ZedEscapeControls(value.ToString())
        << (units.empty() || value.HasReason() ? "" : " " + units) << "\n";
}

void WriteReplyValues(std::ostream& out, const TReply& reply, const std::vector<TDictArgument>* arguments,
                      const TDictClass* cls)
{
    for (std::size_t i = 0; i < reply.Size(); ++i) {
        const TValue& value = reply.At(i);
        const TDictArgument* argument = nullptr;
        for (std::size_t a = 0; arguments && a < arguments->size(); ++a)
            if ((*arguments)[a].GetID() == value.GetID())
                argument = &(*arguments)[a];
        WriteValue(out, argument ? argument->GetPresentationName() : std::to_string(value.GetID()), value, cls,
                   argument ? argument->GetUnits() : "", "    ");
    }
}

}  // namespace

void ZEDWriteReply(std::ostream& out, const TDictionary& dictionary, const TCall& call, unsigned int directiveId)
{
    const TDictClass* cls = dictionary.FindClass(call.GetOutEntity().GetEntityClass());
    const TDictDirective* directive = cls ? cls->FindDirective(directiveId) : nullptr;
    const TReply& reply = call.GetReply();
    out << call.GetOutEntity().ToString(&dictionary) << "  at " << call.GetTimeStamp().ToString() << "\n";
    const TDictReply* definition = nullptr;
    std::string kind;
    if (call.GetStatus() == ZED_STATUS_COMMON_EXCEPTION) {
        // A common exception is described on the class, null instance, under directive 55.
        const TDictDirective* common = cls ? cls->FindDirective(ZED_COMMON_EXCEPTION_DIRECTIVE) : nullptr;
        definition = common ? common->FindReply(ZED_DICT_EXCEPTION, reply.GetReplyCode()) : nullptr;
        kind = "common exception";
    } else {
        const bool exception = reply.GetReplyType() != ZED_REPLY_RESPONSE;
        definition =
            directive ? directive->FindReply(exception ? ZED_DICT_EXCEPTION : ZED_DICT_RESPONSE, reply.GetReplyCode())
                      : nullptr;
        kind = exception ? "exception" : "response";
    }
    out << "  " << kind << " " << (definition ? definition->GetName() : "?") << " (" << reply.GetReplyCode() << ")"
        << (definition ? ": " + definition->GetReplyText() : "") << "\n";
    WriteReplyValues(out, reply, definition ? &definition->GetArguments() : nullptr, cls);
}

void ZEDWriteRequest(std::ostream& out, const TDictionary& dictionary, const TEntitySpec& entity,
                     unsigned int directiveId, const TRequest& request)
{
    const TDictClass* cls = dictionary.FindClass(entity.GetEntityClass());
    const TDictDirective* directive = cls ? cls->FindDirective(directiveId) : nullptr;
    for (std::size_t i = 0; i < request.Size(); ++i) {
        const TValue& value = request.At(i);
        const TDictValue* named = nullptr;
        if (directive && directive->TakesAttributes())
            named = cls->FindAttribute(value.GetID());
        else if (directive)
            named = directive->FindRequestArgument(value.GetID());
        out << (i ? ", " : "") << (named ? named->GetPresentationName() : std::to_string(value.GetID())) << " = "
            << (value.IsDefault() ? std::string("(default)") : ZedEscapeControls(value.ToString()));
    }
}

void ZEDWriteEvents(std::ostream& out, const TDictionary& dictionary, const TCallResult& result)
{
    const TDictClass* cls = dictionary.FindClass(result.outEntity.GetEntityClass());
    for (std::size_t i = 0; i < result.reply.Size(); ++i) {
        if (result.reply.At(i).GetDatatype() != ZED_DT_EVENTREPORT)
            continue;
        const auto& report = static_cast<const TEventReport&>(result.reply.At(i));
        const TDictEvent* event = cls ? cls->FindEvent(report.GetEventID()) : nullptr;
        out << "event " << (event ? event->GetName() : std::to_string(report.GetEventID())) << " from "
            << report.GetEntity().ToString(&dictionary) << "\n";
        for (std::size_t a = 0; a < report.GetArguments().Size(); ++a) {
            const TValue& value = report.GetArguments().At(a);
            const TDictArgument* argument = nullptr;
            for (std::size_t k = 0; event && k < event->GetArguments().size(); ++k)
                if (event->GetArguments()[k].GetID() == value.GetID())
                    argument = &event->GetArguments()[k];
            WriteValue(out, argument ? argument->GetPresentationName() : std::to_string(value.GetID()), value, cls, "",
                       "    ");
        }
    }
}

std::string ZEDFirstException(const TDictionary& dictionary, TCall& call)
{
    std::string exception;
    for (std::size_t i = 0; call.SelectReply(i) && exception.empty(); ++i) {
        if (call.GetStatus() == ZED_STATUS_RESPONSE)
            continue;
        std::ostringstream text;
        ZEDWriteReply(text, dictionary, call, call.GetDirective());
        std::istringstream lines(text.str());
        std::string line;
        std::getline(lines, line);  // the entity and time
        while (std::getline(lines, line)) {
            const std::string trimmed = line.substr(std::min(line.size(), line.find_first_not_of(' ')));
            exception += (exception.empty() ? "" : exception.back() == ':' ? " " : "; ") + trimmed;
        }
    }
    call.SelectReply(0);
    return exception;
}
