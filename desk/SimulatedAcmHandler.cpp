#include "SimulatedAcmHandler.h"

SimulatedAcmHandler::SimulatedAcmHandler(const AcmHandlerAnswers& answers)
    : CallRecorder("IAcmHandler")
    , m_answers(answers) {}

void SimulatedAcmHandler::setAnswers(const AcmHandlerAnswers& answers) {
    m_answers = answers;
}

unsigned SimulatedAcmHandler::getMinMaxModulationAndCode(ModulationAndCoding& min,
                                                         ModulationAndCoding& max) {
    record("getMinMaxModulationAndCode");
    if (const std::optional<unsigned> code = countCall()) {
        return *code;
    }
    if (!m_answers.selection) {
        return IAcmHandler::getMinMaxModulationAndCode(min, max);
    }
    if (const ResultOnly* const resultOnly = std::get_if<ResultOnly>(&*m_answers.selection)) {
        return resultOnly->result;
    }
    const auto& range = std::get<AcmHandlerAnswers::Range>(*m_answers.selection);
    min = range.min;
    max = range.max;
    return ResultCode::Success;
}
