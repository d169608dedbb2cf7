#include "kel/fields/KELCheckedField.h"

KELCheckedField::~KELCheckedField() = default;
