#pragma once

#include "Answer.h"
#include "CallRecorder.h"
#include "FailureDrill.h"
#include "IAcmHandler.h"

#include <optional>

/// What a SimulatedAcmHandler answers. Without a selection the default body of IAcmHandler answers.
struct AcmHandlerAnswers {
    struct Range {
        ModulationAndCoding min{ModulationAndCoding::UNDEFINED};
        ModulationAndCoding max{ModulationAndCoding::UNDEFINED};
    };

    std::optional<Answer<Range>> selection;
};

/// An ACM handler with programmable answers. Any number of threads may ask; setAnswers() must not
/// run beside them.
class SimulatedAcmHandler : public IAcmHandler, public CallRecorder, public FailureDrill {
public:
    explicit SimulatedAcmHandler(const AcmHandlerAnswers& answers = {});

    void setAnswers(const AcmHandlerAnswers& answers);

    unsigned getMinMaxModulationAndCode(ModulationAndCoding& min,
                                        ModulationAndCoding& max) override;

private:
    AcmHandlerAnswers m_answers;
};
