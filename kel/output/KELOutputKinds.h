// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/frame/KELRegistration.h"

#include <functional>
#include <memory>
#include <string>

class KELConfigContext;
class QWidget;
class TCall;

/// What a host asks an output to show of a call that came back.
struct KEL_EXPORT KELOutputRequest {
    enum Shows {
        Reply,    ///< its first reply, whatever it was (an output form by default)
        Replies,  ///< the replies of a call to several entities, a row each (an output list by default)
    };
    Shows shows = Reply;
    const TCall* call = nullptr;
    unsigned int directive = 0;
    /// The directive's name, which the output's settings go under.
    std::string name;
    KELConfigContext* context = nullptr;
};

/// Which output shows what a host asks for. Kinds are registered for what
/// they show, each with a rank; the highest-ranked kind that makes an output
/// for the request (a kind may decline: null) wins, of equal rank the later
/// registration. KEL's own kinds are registered the same way at rank 0
/// (kBuiltIn):
///
///     const auto chart = KELOutputKinds::Register(KELOutputRequest::Replies, 1,
///         [](const KELOutputRequest& request) -> std::unique_ptr<QWidget> {
///             if (request.name != "Show")
///                 return nullptr;  // the list, as before
///             return std::make_unique<CounterChart>(*request.call);
///         });
///
/// A registration lasts as long as the handle it returns. The table is the
/// process's and is used from the GUI thread.
class KEL_EXPORT KELOutputKinds {
public:
    using Factory = std::function<std::unique_ptr<QWidget>(const KELOutputRequest& request)>;
    static constexpr int kBuiltIn = 0;

    [[nodiscard]] static KELRegistration Register(KELOutputRequest::Shows shows, int rank, Factory make);
    /// The output the table gives the request, shown; null when no kind made one.
    static std::unique_ptr<QWidget> Make(const KELOutputRequest& request);
};
