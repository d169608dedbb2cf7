#include "kel/model/IPresentationElement.h"

IPresentationElement::IPresentationElement(unsigned int id) : m_key(static_cast<int>(id)), m_id(id) {}

IPresentationElement::~IPresentationElement() = default;

bool IPresentationElement::FillRequest(TRequest&) { return false; }

void IPresentationElement::Dump() {}
