#pragma once

#include "CallRecorder.h"
#include "FailureDrill.h"
#include "ISystemPowerController.h"

#include <vector>

/// What a SimulatedSystemPowerController answers.
struct SystemPowerControllerAnswers {
    /// What is added to the minimum power at a channel spacing.
    struct MinOutputPowerOffset {
        EChannelSpacingType channelSpacing; ///< in whole MHz
        long offset;                        ///< in hundredths of a dB
    };

    EReferenceSEC referenceSec = EReferenceSEC::UNDEFINED; ///< of the link

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
    /// Programs the first answers.
    explicit SimulatedSystemPowerController(const SystemPowerControllerAnswers& answers = {});

    /// Programs further answers.
    void setAnswers(const SystemPowerControllerAnswers& answers);

    EReferenceSEC getReferenceSec() const override;
    bool getMinOutputPowerOffset(EChannelSpacingType channelSpacing, long& offset) const override;

private:
    SystemPowerControllerAnswers m_answers;
};
