#include "Commands/UnitManipulatorBase.h"

UnitManipulatorBase::~UnitManipulatorBase() = default;
