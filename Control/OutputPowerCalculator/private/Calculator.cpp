#include "Calculator.h"

#include "ResultCode.h"

Calculator::~Calculator() = default;

int Calculator::getCompensationForChannelSpacing(RadioChannel, EChannelSpacingType,
                                                 long& compensation) const {
    compensation = 0;
    return ResultCode::Success;
}
