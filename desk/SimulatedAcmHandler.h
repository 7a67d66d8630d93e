#pragma once

#include "Answer.h"
#include "CallRecorder.h"
#include "FailureDrill.h"
#include "IAcmHandler.h"

#include <optional>

/// What a SimulatedAcmHandler answers. Without a selection the default body of IAcmHandler answers.
struct AcmHandlerAnswers {
    /// A selected range.
    struct Range {
        ModulationAndCoding min{ModulationAndCoding::UNDEFINED}; ///< lowest code
        ModulationAndCoding max{ModulationAndCoding::UNDEFINED}; ///< highest code
    };

    std::optional<Answer<Range>> selection; ///< of getMinMaxModulationAndCode()
};

/// An ACM handler with programmable answers. Any number of threads may ask; setAnswers() must not
/// run beside them.
class SimulatedAcmHandler : public IAcmHandler, public CallRecorder, public FailureDrill {
public:
    /// Programs the first answers.
    explicit SimulatedAcmHandler(const AcmHandlerAnswers& answers = {});

    /// Programs further answers.
    void setAnswers(const AcmHandlerAnswers& answers);

    unsigned getMinMaxModulationAndCode(ModulationAndCoding& min,
                                        ModulationAndCoding& max) override;

private:
    AcmHandlerAnswers m_answers;
};
