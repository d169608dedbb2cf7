// SPDX-License-Identifier: BSD-3-Clause
#include "zed/dict/TDictIterators.h"

#include "zed/TApplication.h"
#include "zed/TException.h"

namespace {

const TDictClass& ClassOf(const TDictionaryPtr& dictionary, const TEntityClass& entityClass)
{
    if (!dictionary)
        throw TException("no dictionary is loaded");
    const TDictClass* cls = dictionary->FindClass(entityClass);
    if (!cls)
        throw TException("the dictionary has no class " + entityClass.ToString(dictionary.get()));
    return *cls;
}

}  // namespace

TDictArgumentIterator::TDictArgumentIterator(const TEntityClass& entityClass, unsigned int directiveOrEvent,
                                             ZED_T_DICT_OBJECT_TYPE selector, unsigned int replyCode)
    : m_dictionary(ZEDGetApplication()->GetDictionary())
{
    const TDictClass& cls = ClassOf(m_dictionary, entityClass);
    if (selector == ZED_DICT_EVENT) {
        if (const TDictEvent* event = cls.FindEvent(directiveOrEvent))
            m_arguments = &event->GetArguments();
        return;
    }
    const TDictDirective* directive = cls.FindDirective(directiveOrEvent);
    if (!directive)
        return;
    if (selector == ZED_DICT_REQUEST)
        m_arguments = &directive->GetRequestArguments();
    else if (const TDictReply* reply = directive->FindReply(selector, replyCode))
        m_arguments = &reply->GetArguments();
}

TDictAttributeIterator::TDictAttributeIterator(const TEntityClass& entityClass, unsigned int partition)
    : m_dictionary(ZEDGetApplication()->GetDictionary()), m_partition(partition)
{
    m_attributes = &ClassOf(m_dictionary, entityClass).GetAttributes();
    Skip();
}

void TDictAttributeIterator::First()
{
    m_index = 0;
    Skip();
}

void TDictAttributeIterator::Next()
{
    ++m_index;
    Skip();
}

void TDictAttributeIterator::Skip()
{
    while (m_partition != 0 && m_index < m_attributes->size() && (*m_attributes)[m_index].GetPartition() != m_partition)
        ++m_index;
}
