#pragma once

#include "EReferenceSEC.h"
#include "Export.h"
#include "IInterface.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"

#include <map>
#include <string>

/// How much transmit power the radio may deliver, at most and at least: the questions that the
/// node's control components put to the output power calculator, and the operating inputs that they
/// push into it.
///
/// Units: every power is in hundredths of a dBm at the antenna port, every cutback, gain and offset
/// in hundredths of a dB, as signed 32-bit numbers (a `long` on the board). Sums and differences
/// are computed in 32 bits and wrap; where `long` has 64 bits the results are the same.
///
/// Result codes: see ResultCode.h. 0 is success; 2 says that the calculator does not apply to the
/// modulation; 32768 and more are failures, each of which has been traced where it was found.
///
/// The queries read the configured frame format, the ACM selection and the product number afresh at
/// every call. A setter stores its values and nothing else: they take effect at the next query.
/// Nothing guards a setter that runs beside a query of the same object.
///
/// What a neighbour throws passes through a query, and so does std::bad_alloc. The service is then
/// what it was before, nothing is lost, and the next query answers right; some of the outputs may
/// have been written.
class QOR_EXPORT IOutputPowerCalculator : public virtual IInterface {
public:
    ~IOutputPowerCalculator() override;

    /// Maximum power of every modulation-and-code of a frame format, and its minimum power.
    ///
    /// @param frameFormatId id of a frame format of the hardware configuration; a value below 1
    ///        means the frame format that is configured now.
    /// @param minModulationAndCodeIn lowest selected code; ModulationAndCoding::UNDEFINED: the ACM
    ///        handler's selection.
    /// @param maxModulationAndCodeIn highest selected code; likewise.
    /// @param referenceSec RSEC of the link;
    ///        EReferenceSEC::UNDEFINED: the one that the system power
    ///        controller reports.
    /// @param[out] minOutputPower minimum output power of the frame format's channel spacing;
    ///        untouched on failure.
    /// @param[in,out] powerMap one entry is inserted or overwritten for each code that the
    ///        radio can carry. It is not cleared: codes that get no power keep what the caller
    ///        put there.
    /// @return 0; 32771 for an array that is empty or whose highest code has no modulation (the map
    ///         is untouched); 32768 if the channel-spacing compensation could not be read
    ///         (likewise). A code whose own power fails is left out of the map and is no failure.
    virtual unsigned getMinMaxOutputPowerVsModulationArray(
        long frameFormatId, ModulationAndCoding minModulationAndCodeIn,
        ModulationAndCoding maxModulationAndCodeIn, EReferenceSEC referenceSec,
        long& minOutputPower, std::map<ModulationAndCoding, long>& powerMap) const = 0;

    /// Puts a temporary cutback in force, or lifts it. While it is in force the permanent cutback
    /// is ignored, however large it is: the two never add up.
    /// @param use whether the temporary cutback is in force.
    /// @param cutback in hundredths of a dB; not checked.
    /// @return always 0.
    virtual unsigned setTemporaryPowerCutback(bool use, unsigned long cutback) = 0;

    /// Sets the permanent cutback, in hundredths of a dB; not checked.
    /// @return always 0.
    virtual unsigned setPowerCutback(unsigned long cutback) = 0;

    /// Minimum and maximum power at one modulation on the configured frame format, for a fixed
    /// modulation within the operator's selection, with the cutback in force.
    ///
    /// @param[out] minPower minimum output power; written in every case.
    /// @param[out] maxPower the lower of the Pmax at the selected minimum
    ///        modulation and at the asked one, plus the channel-spacing
    ///        compensation; with a booster what the family's calculator allows.
    ///        Written only on success.
    /// @return 0;
    ///         32768 if no modulation is selected anywhere, the compensation could not be read,
    ///         or the calculator refused.
    virtual int calculatePowerCapabilities(Modulation modulation, long& minPower,
                                           long& maxPower) const = 0;

    /// Minimum and maximum power at one modulation on the configured frame format, under adaptive
    /// modulation, with the cutback in force.
    ///
    /// @param[out] minPower written only on success (0).
    /// @param[out] maxPower what the family's calculator allows. On a
    ///        failure it is untouched, except that a radio-unit family whose
    ///        booster tables have no entry leaves the power before the
    ///        booster in it.
    /// @return 0; 2 if the calculator does not apply to the modulation; 32768, 32776 or 32778.
    virtual int calculateAdmodPowerCapabilities(Modulation actualModulation, EReferenceSEC rsec,
                                                long& minPower, long& maxPower) = 0;

    /// The radio's power range on the configured frame format: the minimum output power of its
    /// channel spacing and the highest Pmax of its table.
    /// @return 0; 32768 for an unknown DPD version, with both outputs untouched.
    virtual int findPminPmax(long& pmin, long& pmax) const = 0;

    /// Pmax at the modulation of the configured frame format plus the channel-spacing compensation,
    /// without any cutback.
    /// @param[out] pmax untouched when the compensation could not be read, or when a booster is
    ///        present and the family's calculator refused.
    /// @return 0, also when the power itself could not be found (that is only traced); 32768 if the
    ///         compensation could not be read.
    virtual int getUnrestrictedPmax(long& pmax) const = 0;

    /// Stores the radio's temperature.
    /// @return always 0.
    virtual unsigned setTemperature(long temperature) = 0;

    /// Stores what is known of an external booster, four values that belong together.
    /// @param presence 0: no booster. 7 selects the booster band without a band adjustment.
    /// @param gain in hundredths of a dB.
    /// @param maxInputPower highest power at the booster's input, in hundredths of a dBm.
    /// @param maxModulation highest modulation that the booster carries.
    /// @return always 0.
    virtual unsigned setBoosterPresence(int presence, int gain, int maxInputPower,
                                        Modulation maxModulation) = 0;

    /// "IOutputPowerCalculator", followed by "_" and the number unless it is 0.
    static std::string interfaceName(unsigned int channel);
};
