#include "SimulatedSystemPowerController.h"

SimulatedSystemPowerController::SimulatedSystemPowerController(
    const SystemPowerControllerAnswers& answers)
    : CallRecorder("ISystemPowerController")
    , m_answers(answers) {}

void SimulatedSystemPowerController::setAnswers(const SystemPowerControllerAnswers& answers) {
    m_answers = answers;
}

EReferenceSEC SimulatedSystemPowerController::getReferenceSec() const {
    record("getReferenceSec");
    return m_answers.referenceSec;
}

bool SimulatedSystemPowerController::getMinOutputPowerOffset(EChannelSpacingType channelSpacing,
                                                             long& offset) const {
    record("getMinOutputPowerOffset", channelSpacing);
    if (countCall()) {
        return false;
    }
    for (const auto& known : m_answers.minOutputPowerOffsets) {
        if (known.channelSpacing == channelSpacing) {
            offset = known.offset;
            return true;
        }
    }
    return false;
}
