// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/KELPlaceholderDefault.h"

#include "kel/frame/KELResources.h"
#include "kel/frame/KELString.h"

KELPlaceholderDefault::~KELPlaceholderDefault() = default;

bool KELPlaceholderDefault::ShowServerDefault()
{
    ShowNothing(KELResources::String(KELString::kServerDefault));
    m_holds = true;
    return true;
}
