// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/IOutputForm.h"
#include "kel/frame/KELString.h"

#include "kel/controls/IControlBase.h"

#include "kel/controls/IControlContainer.h"
#include "kel/controls/ILabel.h"
#include "kel/fields/IField.h"
#include "kel/frame/KELResources.h"
#include "kel/model/IElementInfo.h"
#include "kel/model/IPresentationContainer.h"
#include "kel/output/ICommentLine.h"
#include "kel/output/KELCallReply.h"
#include "zed/TApplication.h"
#include "zed/call/TCall.h"
#include "zed/dict/TDictionary.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TScalarValues.h"
#include "zed/value/TValueParser.h"

#include <QDateTime>
#include <QLocale>
#include <QScrollBar>

namespace {

const TDictClass* ClassOf(const TEntitySpec& entity)
{
    const TDictionaryPtr dictionary = ZEDGetApplication()->GetDictionary();
    return dictionary ? dictionary->FindClass(entity.GetEntityClass()) : nullptr;
}

// An attribute that came without a value still has its line: an absent value
// of its dictionary type (text when the class does not know it, or when its
// kind is never absent), known by the attribute's code.
TValuePtr NoValueOf(const TEntitySpec& entity, const TAttribute& attribute)
{
    const unsigned int code = attribute.GetAttributeID().GetValue();
    const TDictClass* cls = ClassOf(entity);
    const TDictAttribute* known = cls ? cls->FindAttribute(code) : nullptr;
    TValuePtr value = known ? ZEDMakeValue(known->GetType(), code) : nullptr;
    if (!value || value->IsPresent())
        value = std::make_unique<TLatin1String>();
    value->SetID(code);
    return value;
}

// The time in the operator's locale and time zone.
std::string LocalTime(const TAbsTime& time)
{
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(time.GetMilliseconds()).toLocalTime();
    const QLocale locale;
    return (locale.toString(local.date(), QLocale::ShortFormat) + QLatin1Char(' ')
            + local.time().toString(QStringLiteral("HH:mm:ss")))
        .toStdString();
}

}  // namespace

IOutputForm::IOutputForm(KELConfigContext* context, QWidget* parent) : IPresentationForm(context, parent) {}

IOutputForm::~IOutputForm()
{
    // The lines' fields delete their controls, children of the container: while it still stands.
    SetContainer(nullptr);
}

IPresentationContainer* IOutputForm::CreateContainer() { return IPresentationForm::CreateContainer(); }

std::unique_ptr<IPresentationElement> IOutputForm::CreateElement(IElementInfo& info)
{
    return IPresentationForm::CreateElement(info);
}

void IOutputForm::PreCreate() { IPresentationForm::PreCreate(); }

void IOutputForm::PostCreate() { IPresentationForm::PostCreate(); }

void IOutputForm::Dump() { IPresentationBase::Dump(); }

void IOutputForm::CreatePresentation(const std::string& name, const KELCallReply& reply, unsigned int directiveId)
{
    SetName(name);
    SetEntity(reply.Entity());
    SetDirOrEventID(directiveId);
    // The same kind as an event presentation: a later ProcessReply walks the
    // reply as an event report.
    SetPresentationKind(EventReport);
    switch (reply.CallStatus()) {
    case ZED_STATUS_RESPONSE: SetReplyType(ZED_DICT_RESPONSE); break;
    case ZED_STATUS_COMMON_EXCEPTION:
    case ZED_STATUS_SPECIALISED_EXCEPTION: SetReplyType(ZED_DICT_EXCEPTION); break;
    default: break;
    }
    SetReplyCode(reply.Reply().GetReplyCode());
    SetCurrentState(reply.Entity().ToString().c_str(), directiveId);
    PreCreate();
    SetContainer(CreateContainer());
    // Everything an output form shows is read-only: shown so once, for all.
    IControlBase::ShowAsReadOnly(static_cast<QWidget*>(GetControlContainer()));

    AddCommentLine(kEntityLine, KELString::kEntityLabel, reply.Entity().ToString());
    AddCommentLine(kTimeLine, KELString::kTimeLabel, LocalTime(reply.TimeStamp()));
    AddCommentLine(kReplyTextLine, KELString::kReplyLabel, ReplyText(reply));
    if (GetReplyType() != ZED_DICT_RESPONSE)
        ShowAsException();

    long line = 0;
    for (TReplyIterator it(reply.Reply()); it.IsValid(); it.Next()) {
        const TValue& value = it.Get();
        if (value.GetDatatype() == ZED_DT_ATTRIBUTELIST) {
            const auto& list = static_cast<const TAttributeList&>(value);
            for (std::size_t i = 0; i < list.Size(); ++i) {
                const TAttribute& attribute = list.At(i);
                if (attribute.HasValue())
                    AddValueField(reply.Entity(), attribute.GetValue(), line, false);
                else
                    AddValueField(reply.Entity(), *NoValueOf(reply.Entity(), attribute), line, false);
            }
        } else {
            AddValueField(reply.Entity(), value, line, true);
        }
    }
    horizontalScrollBar()->setValue(0);
    verticalScrollBar()->setValue(0);
    OnNewSize();
    PostCreate();
}

std::string IOutputForm::ReplyText(const KELCallReply& reply)
{
    // A common exception stands on every class under its own directive.
    if (reply.CallStatus() == ZED_STATUS_COMMON_EXCEPTION)
        SetDirOrEventID(ZED_COMMON_EXCEPTION_DIRECTIVE);
    const TDictClass* cls = ClassOf(reply.Entity());
    const TDictDirective* directive = cls ? cls->FindDirective(GetDirOrEventID()) : nullptr;
    const TDictReply* dictReply =
        directive ? directive->FindReply(GetReplyType() == ZED_DICT_RESPONSE ? ZED_DICT_RESPONSE : ZED_DICT_EXCEPTION,
                                         GetReplyCode())
                  : nullptr;
    return dictReply ? dictReply->GetReplyText() : std::string();
}

// An exception is no success and does not look like one: its reply text and
// the form's frame take the warning colour.
void IOutputForm::ShowAsException()
{
    const QColor warning(0xb0, 0x00, 0x00);
    if (auto* line = dynamic_cast<IFormLine*>(GetContainer() ? GetContainer()->FindElement(kReplyTextLine) : nullptr)) {
        if (QWidget* window = line->GetField() ? line->GetField()->GetWindow() : nullptr) {
            QPalette palette = window->palette();
            palette.setColor(QPalette::Text, warning);
            window->setPalette(palette);
        }
        if (line->GetLabel()) {
            line->GetLabel()->SetLabelColor(warning);
            if (line->GetLabelWindow())
                line->GetLabelWindow()->update();
        }
    }
    // The frame in the warning colour; the lines inside keep their own colours.
    QPalette normal = viewport()->palette();
    normal.setColor(QPalette::WindowText, normal.color(QPalette::WindowText));
    QPalette framed = palette();
    framed.setColor(QPalette::WindowText, warning);
    setPalette(framed);
    viewport()->setPalette(normal);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setLineWidth(2);
    setAccessibleDescription(QStringLiteral("An exception reply"));
}

void IOutputForm::AddCommentLine(long id, int label, const std::string& text)
{
    IElementInfo info(GetEntity(), GetName(), "");
    info.SetID(static_cast<int>(id));
    info.SetDT(ZED_DT_LATIN1STRING);
    info.SetAccess(ZED_ACCESS_READ_ONLY);
    info.SetPresentationName(KELResources::String(label));
    auto line = std::make_unique<ICommentLine>(info, GetControlContainer(), ControlIdCounter());
    ICommentLine* shown = line.get();
    if (GetContainer() && GetContainer()->InsertElement(std::move(line)))
        shown->SetValue(TLatin1String(text));
}

void IOutputForm::AddValueField(const TEntitySpec& entity, const TValue& value, long& lineId, bool isArgument)
{
    IElementInfo info(entity, GetName(), "");
    info.SetDT(value.GetDatatype());
    info.SetID(static_cast<int>(value.GetID()));
    info.SetPresentationName("Value " + std::to_string(value.GetID()));
    info.SetAccess(ZED_ACCESS_READ_ONLY);
    if (const TDictClass* cls = ClassOf(entity)) {
        const TDictValue* named = nullptr;
        if (!isArgument) {
            named = cls->FindAttribute(value.GetID());
        } else if (const TDictDirective* directive = cls->FindDirective(GetDirOrEventID())) {
            if (const TDictReply* reply = directive->FindReply(GetReplyType(), GetReplyCode()))
                named = reply->FindArgument(value.GetID());
            if (!named)
                named = directive->FindRequestArgument(value.GetID());
        }
        if (named) {
            info.SetName(named->GetName());
            info.SetPresentationName(named->GetPresentationName());
            // Units stand behind the value, as the text of a reply shows them.
            info.SetUnits(named->GetUnits());
        }
    }
    info.SetDictTypeOf(value);
    info.SetID(static_cast<int>(lineId++));
    std::unique_ptr<IPresentationElement> element = CreateElement(info);
    if (!element)
        return;
    auto* line = dynamic_cast<IFormLine*>(element.get());
    if (!GetContainer() || !GetContainer()->InsertElement(std::move(element)) || !line)
        return;
    if (value.IsPresent())
        line->SetValue(value);
    else
        line->SetToNotReturned();
}

void IOutputForm::CleanPresentation()
{
    SetContainer(nullptr);
    ForgetControlContainer();
    delete takeWidget();
}
