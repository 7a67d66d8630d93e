#pragma once

#include "CallRecorder.h"
#include "FailureDrill.h"
#include "ISystemPowerController.h"

#include <vector>

/// What a SimulatedSystemPowerController answers.
struct SystemPowerControllerAnswers {
    struct MinOutputPowerOffset {
        EChannelSpacingType channelSpacing;
        long offset; ///< in hundredths of a dB
    };

    EReferenceSEC referenceSec = EReferenceSEC::UNDEFINED;

    /// Of two offsets for one spacing the first counts.
    std::vector<MinOutputPowerOffset> minOutputPowerOffsets;
};

/// A system power controller with programmable answers. Any number of threads may ask; setAnswers()
/// must not run beside them. The operation that can fail (FailureDrill) is
/// getMinOutputPowerOffset(): it then answers that no offset is known.
class SimulatedSystemPowerController : public ISystemPowerController,
                                       public CallRecorder,
                                       public FailureDrill {
public:
    explicit SimulatedSystemPowerController(const SystemPowerControllerAnswers& answers = {});

    void setAnswers(const SystemPowerControllerAnswers& answers);

    EReferenceSEC getReferenceSec() const override;
    bool getMinOutputPowerOffset(EChannelSpacingType channelSpacing, long& offset) const override;

private:
    SystemPowerControllerAnswers m_answers;
};
