// SPDX-License-Identifier: BSD-3-Clause
#include "kel/model/IPresentationElement.h"
#include "kel/model/KELValueElement.h"

IPresentationElement::IPresentationElement(unsigned int id) : m_key(static_cast<int>(id)), m_id(id) {}

IPresentationElement::~IPresentationElement() = default;

KELValueElement::~KELValueElement() = default;

bool IPresentationElement::FillRequest(TRequest&) { return false; }

void IPresentationElement::Dump() {}
