// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/output/IPresentationBase.h"
#include "zed/dict/ZedDictCodes.h"

#include <string>

class TReply;

/// The engine of every output (form, list, text): it builds the elements of a
/// presentation from the dictionary, for the arguments of one reply of a
/// directive, of an event report, or for an entity class's attributes, and
/// puts the values of each reply that arrives into them.
class KEL_EXPORT IOutputBase : public IPresentationBase {
public:
    /// What a presentation shows.
    enum PresentationKind : unsigned int { DirectiveReply = 0, EventReport = 1, Attributes = 2 };

    ~IOutputBase() override;

    /// Puts the reply's values into the elements; faults are traced, never thrown.
    virtual void ProcessReply(const TReply& reply);
    /// The arguments of an event report, under "Event:<id>".
    virtual void CreatePresentation(const std::string& name, const TEntitySpec& entity, unsigned int eventId);
    /// The arguments of one reply of a directive (replyType 8 a response, 9 an
    /// exception), under "Dir:<id>.Resp:<code>" or "Dir:<id>.Exc:<code>".
    virtual void CreatePresentation(const std::string& name, const TEntitySpec& entity, unsigned int directiveId,
                                    ZED_T_DICT_OBJECT_TYPE replyType, unsigned int replyCode);
    /// The attributes of the entity's class in a partition (0: all).
    virtual void CreatePresentationAttr(const std::string& name, const TEntitySpec& entity, unsigned int partition);

    unsigned int GetDirOrEventID() const { return m_dirOrEventId; }
    unsigned int GetReplyCode() const { return m_replyCode; }
    ZED_T_DICT_OBJECT_TYPE GetReplyType() const { return m_replyType; }
    unsigned int GetPresentationKind() const { return m_presentationKind; }

protected:
    IOutputBase();
    void SetDirOrEventID(unsigned int id) { m_dirOrEventId = id; }
    void SetReplyType(ZED_T_DICT_OBJECT_TYPE type) { m_replyType = type; }
    void SetReplyCode(unsigned int code) { m_replyCode = code; }
    void SetPresentationKind(unsigned int kind) { m_presentationKind = kind; }

private:
    /// Makes and inserts the element of each displayed argument.
    void CreateArgumentElements(const std::string& prefix, unsigned int directiveOrEvent,
                                ZED_T_DICT_OBJECT_TYPE selector, unsigned int replyCode);
    /// CreateArgumentElements, a failure traced: false when the lines could not be made.
    bool CreateArgumentLines(const std::string& prefix, unsigned int id, ZED_T_DICT_OBJECT_TYPE replyType,
                             unsigned int replyCode);
    void Insert(IElementInfo& info);

    unsigned int m_dirOrEventId = 0;
    ZED_T_DICT_OBJECT_TYPE m_replyType = 0;
    unsigned int m_replyCode = 0;
    unsigned int m_presentationKind = DirectiveReply;
};
