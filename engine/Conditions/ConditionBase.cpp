#include "Conditions/ConditionBase.h"

ConditionBase::ConditionBase() = default;
ConditionBase::~ConditionBase() = default;
