#include "OutputPowerCalculatorVersion.h"

int qorOutputPowerCalculatorVersion() {
    return QOR_OUTPUT_POWER_CALCULATOR_VERSION;
}
