// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/KELOutputKinds.h"
#include "zed/dict/ZedDirectiveNames.h"

#include "kel/output/IOutputForm.h"
#include "kel/output/IOutputList.h"
#include "kel/output/KELCallReply.h"
#include "kel/output/KELListModel.h"
#include "kel/frame/KELRankedTable.h"
#include "zed/TApplication.h"
#include "zed/call/TCall.h"
#include "zed/dict/TDictionary.h"
#include "zed/value/TEnumeration.h"

namespace {

std::unique_ptr<QWidget> ReplyForm(const KELOutputRequest& request)
{
    auto form = std::make_unique<IOutputForm>(request.context);
    form->setAccessibleName(QStringLiteral("Reply"));
    form->CreatePresentation(request.name, KELCallReply(*request.call), request.directive);
    return form;
}

// A Show lists the attributes of the partition asked for; any other directive
// the arguments of its reply.
std::unique_ptr<QWidget> RepliesList(const KELOutputRequest& request)
{
    const TCall& call = *request.call;
    auto list = std::make_unique<IOutputList>(request.context);
    list->setAccessibleName(QStringLiteral("List"));
    const TDictionary* dictionary = ZEDGetApplication()->GetDictionary().get();
    const TDictClass* cls = dictionary ? dictionary->FindClass(call.GetEntity().GetEntityClass()) : nullptr;
    const TDictDirective* asked = cls ? cls->FindDirective(request.directive) : nullptr;
    if (asked && asked->GetName() == ZedDirective::kShow && call.GetRequest().Size() > 0) {
        const TValue& partition = call.GetRequest()[1];
        const unsigned int code = partition.GetDatatype() == ZED_DT_ENUMERATION
                                      ? static_cast<unsigned int>(static_cast<const TEnumeration&>(partition).GetCode())
                                      : 0u;
        list->CreatePresentationAttr(ZedDirective::kShow, call.GetEntity(), code);
    } else {
        const TReply& first = call.GetReply();
        list->CreatePresentation(asked ? asked->GetName() : "", call.GetEntity(), request.directive,
                                 first.GetReplyType() == ZED_REPLY_RESPONSE ? ZED_DICT_RESPONSE : ZED_DICT_EXCEPTION,
                                 first.GetReplyCode());
    }
    KELCallReplyList replies;
    replies.AddAll(call);
    for (const auto& reply : replies.Replies())
        list->ProcessReply(*reply);
    for (int c = 0; c < list->GetModel()->columnCount(); ++c)
        list->resizeColumnToContents(c);
    return list;
}

using Table = KELRankedTable<KELOutputRequest::Shows, KELOutputKinds::Factory>;

Table& Kinds()
{
    static Table table = [] {
        Table made;
        made.Add(KELOutputRequest::Reply, KELOutputKinds::kBuiltIn, &ReplyForm);
        made.Add(KELOutputRequest::Replies, KELOutputKinds::kBuiltIn, &RepliesList);
        return made;
    }();
    return table;
}

}  // namespace

KELRegistration KELOutputKinds::Register(KELOutputRequest::Shows shows, int rank, Factory make)
{
    return Kinds().Register(shows, rank, std::move(make));
}

std::unique_ptr<QWidget> KELOutputKinds::Make(const KELOutputRequest& request)
{
    if (!request.call)
        return nullptr;
    // Copies: a kind may register or unregister others while it makes its output.
    for (const Factory& make : Kinds().Ranked([&](KELOutputRequest::Shows shows) { return shows == request.shows; }))
        if (std::unique_ptr<QWidget> output = make(request))
            return output;
    return nullptr;
}
