#pragma once

#include "EChannelSpacingType.h"
#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "Export.h"
#include "IOutputPowerCalculator.h"
#include "TxRfMaxPowerCapability.h"

#include <cstdint>
#include <map>
#include <vector>

class Calculator;
class IAcmHandler;
class ICapabilityHandler;
class IFrameFormat;
class IHardwareConfigurationHandler;
class ISystemPowerController;

/// The output power calculator of one radio channel: the service behind IOutputPowerCalculator.
///
/// The hosting control software creates one object for each radio channel and calls initialize(),
/// which connects it to its neighbours and publishes it in the interface broker as
/// "IOutputPowerCalculator_<channel>". The queries use the neighbours without asking whether they
/// are there, so they need a successful initialize(); the setters may be called at any time. The
/// destructor withdraws the service.
///
/// The service starts no thread and takes no lock. It borrows its neighbours and their tables. The
/// first query of each hardware family creates the family's calculator, unguarded: let one thread
/// call createCalculators() before several ask.
///
/// What is created once stays until the process ends, because a query or a destructor may come
/// however late: the calculators, and the names that the channels are published under, less than
/// 300 bytes in all. A host that unloads the library and loads it again leaves as much behind each
/// time.
class QOR_EXPORT OutputPowerCalculator : public IOutputPowerCalculator {
public:
    /// Where a query takes the data of a frame format from.
    enum class UseConfiguredFF : std::int32_t {
        Configured = 0, ///< IFrameFormat
        ById = 1        ///< IHardwareConfigurationHandler
    };

    /// @param radioChannel the channel to serve, 1 or 2; any other number serves channel 1.
    ///        The four Pmax tables look their capability handler up under the number
    ///        as it was given, 0 being the handler without a channel: that is meant, because a
    ///        node that publishes its tables under another number would otherwise lose them.
    explicit OutputPowerCalculator(unsigned long radioChannel);

    /// Withdraws the service from the broker, whether or not it was ever published.
    ~OutputPowerCalculator() override;

    /// Fetches the Pmax tables, looks the neighbours up and publishes the service. May be repeated.
    ///
    /// A Pmax table that cannot be fetched stops nothing: its queries fail later.
    /// @return 0; 32768 if a neighbour is missing or the capability handler refuses its minimum
    ///         power. The neighbours found before stay connected; the service is not published.
    ///         Nor is it when a neighbour throws, which passes through.
    unsigned initialize();

    /// Creates the calculators of all hardware families, which otherwise the first query of each
    /// does: some 100 bytes in all, for all services of the process. For hosts of which several
    /// threads ask; not safe to be called by two at once itself. May be repeated.
    ///
    /// std::bad_alloc passes through. What was created before stays, and a later call or query
    /// creates the rest.
    static void createCalculators();

    unsigned getMinMaxOutputPowerVsModulationArray(
        long frameFormatId, ModulationAndCoding minModulationAndCodeIn,
        ModulationAndCoding maxModulationAndCodeIn, EReferenceSEC referenceSec,
        long& minOutputPower, std::map<ModulationAndCoding, long>& powerMap) const override;
    unsigned setTemporaryPowerCutback(bool use, unsigned long cutback) override;
    unsigned setPowerCutback(unsigned long cutback) override;
    int calculatePowerCapabilities(Modulation modulation, long& minPower,
                                   long& maxPower) const override;
    int calculateAdmodPowerCapabilities(Modulation actualModulation, EReferenceSEC rsec,
                                        long& minPower, long& maxPower) override;
    int findPminPmax(long& pmin, long& pmax) const override;
    int getUnrestrictedPmax(long& pmax) const override;
    unsigned setTemperature(long temperature) override;
    unsigned setBoosterPresence(int presence, int gain, int maxInputPower,
                                Modulation maxModulation) override;

    /// Lowers a maximum power by the cutback in force: the temporary one while it is in force, else
    /// the permanent one. There is no lower bound.
    void applyCutbackToMaxPower(long& power) const;

private:
    /// Opens the private steps to the tests.
    friend class OutputPowerCalculatorInside;

    unsigned long cutbackInForce() const {
        return m_useTemporaryPowerCutback ? m_temporaryPowerCutback : m_powerCutback;
    }

    /// The calculator of the radio's hardware family, chosen afresh by the product number.
    Calculator* getCalculator(bool isTraced) const;

    /// The Pmax table of a known DPD version.
    const TxRfMaxPowerCapability& tableOf(EDpdVersion dpdVersion, bool isAnsi) const;

    /// Copies the Pmax table for a DPD version and market; `out` is untouched on failure. Every
    /// market but Ansi reads the ETSI table.
    int getMaxPowerArray(EDpdVersion dpdVersion, EFrameFormatMarket market,
                         TxRfMaxPowerCapability& out) const;

    /// Pmax of one modulation.
    int getMaxPower(EDpdVersion dpdVersion, EFrameFormatMarket market, Modulation modulation,
                    long& maxPower) const;

    /// Channel-spacing compensation of the radio's family on the served channel.
    int getCsPowerCompensation(bool isTraced, EChannelSpacingType channelSpacing,
                               long& compensation) const;

    /// What the modulations of a query share. Pmax values that they share are looked up once: no
    /// neighbour is asked for them.
    struct PowerQuery {
        EDpdVersion dpdVersion;
        EFrameFormatMarket market;
        EReferenceSEC rsec;
        Modulation selectedMinMod; ///< the selected one, where only one is
        Modulation selectedMaxMod;
        Modulation availableMaxMod;
        long csPowerCompensation;
        bool useCutback;

        const TxRfMaxPowerCapability* table = nullptr; ///< null for an unknown DPD version
        bool isSelectedMinKnown = false;
        long pmaxSelectedMin = 0; ///< cut back if the query asks for that
        bool isReferenceKnown = false;
        Modulation referenceMod = Modulation::UNDEFINED;
        long pmaxReference = 0;
    };

    /// The query of a fixed modulation, prepared.
    PowerQuery fixedQuery(EDpdVersion dpdVersion, EFrameFormatMarket market, Modulation selectedMod,
                          long csPowerCompensation, bool useCutback) const;

    /// Looks up what the modulations of a query share.
    void prepare(PowerQuery& query) const;

    /// Maximum power under adaptive modulation, by the radio's family. Nothing clamps the result.
    int getAdModMaxPower(PowerQuery& query, Modulation actualMod, long& maxPower) const;

    /// The same step by step, for the traces.
    int getAdModMaxPowerTraced(PowerQuery query, Modulation actualMod, long& maxPower) const;

    /// The part of both that begins with the choice of the calculator.
    int askCalculator(PowerQuery& query, Modulation actualMod, long pmaxSelectedMin,
                      long pmaxActual, long csPowerCompensation, bool isTraced,
                      long& maxPower) const;

    /// Whether a query knows the Pmax of its reference modulation, also after looking it up.
    static bool knowsReference(PowerQuery& query, Modulation reference);

    /// Maximum power for a fixed modulation, and the same step by step.
    int getFixModMaxPower(const PowerQuery& query, Modulation modulation, long& maxPower) const;
    int getFixModMaxPowerTraced(PowerQuery query, Modulation modulation, long& maxPower) const;

    /// The part of both with a booster.
    int getBoostedPower(PowerQuery query, Modulation modulation, bool isTraced,
                        long& maxPower) const;

    /// The queries, traced step by step or not.
    int answerPowerCapabilities(bool isTraced, Modulation modulation, long& minPower,
                                long& maxPower) const;
    int answerAdmodPowerCapabilities(bool isTraced, Modulation actualModulation, EReferenceSEC rsec,
                                     long& minPower, long& maxPower) const;
    int answerUnrestrictedPmax(bool isTraced, long& pmax) const;

    /// The operator's selection; both ends are undefined when there is none. Always 0.
    int getSelectedMinMaxAcm(ModulationAndCoding& min, ModulationAndCoding& max) const;

    /// Whether adaptive modulation is in use: the ends of the range in effect differ. An undefined
    /// end stands for the operator's selection.
    bool getAdmodEnable(ModulationAndCoding min, ModulationAndCoding max) const;

    /// The modulation to count from when adaptive modulation asks for the selected minimum: that of
    /// the selected code, else the frame format's. Undefined if there is none.
    Modulation getSelectedMinModulation(const ModulationAndCoding& selectedMin) const;

    /// Highest modulation that both the modem and the radio hardware allow.
    Modulation limitMaxModDueToRadioCapability(bool isTraced, UseConfiguredFF useConfiguredFF,
                                               long rfid,
                                               const Modulation& modemMaxAvailableModulation) const;

    unsigned
    getMaxOutputPowerArrayUsingConfigured(EReferenceSEC rsec, bool adModEnable,
                                          Modulation selectedMinMod, Modulation selectedMaxMod,
                                          std::map<ModulationAndCoding, long>& powerMap) const;
    unsigned getMaxOutputPowerArrayUsingRfid(long rfid, EReferenceSEC rsec, bool adModEnable,
                                             Modulation selectedMinMod, Modulation selectedMaxMod,
                                             std::map<ModulationAndCoding, long>& powerMap) const;
    unsigned populateModulationPowerMap(
        const std::vector<ModulationAndCoding>& modulationAndCodeArray, long rfid,
        EReferenceSEC rsec, bool adModEnable, Modulation selectedMinMod, Modulation selectedMaxMod,
        UseConfiguredFF useConfiguredFF, EDpdVersion dpdVersion, EFrameFormatMarket market,
        EChannelSpacingType channelSpacing, std::map<ModulationAndCoding, long>& powerMap) const;

    /// Minimum output power at a channel spacing. Never fails: without an offset for the spacing it
    /// is the radio's own minimum.
    long getMinOutputPower(bool isTraced, unsigned int channelSpacing) const;

    /// Minimum output power of the frame format with an id; that of channel spacing 0 for an
    /// unknown id.
    long getMinOutputPowerUsingRfid(unsigned int rfid) const;

    RadioChannel m_radioChannel;
    const int* m_minOutputPower = nullptr;
    long m_temperature = 0;
    bool m_useTemporaryPowerCutback = false;
    unsigned long m_temporaryPowerCutback = 0;
    unsigned long m_powerCutback = 0;
    TxRfMaxPowerCapability m_txRfMaxPowerCapabilityDpd1Etsi;
    TxRfMaxPowerCapability m_txRfMaxPowerCapabilityDpd2Etsi;
    TxRfMaxPowerCapability m_txRfMaxPowerCapabilityDpd1Ansi;
    TxRfMaxPowerCapability m_txRfMaxPowerCapabilityDpd2Ansi;
    IHardwareConfigurationHandler* m_hardwareConfigurationHandler = nullptr;
    IAcmHandler* m_acmHandler = nullptr;
    ISystemPowerController* m_systemPowerController = nullptr;
    ICapabilityHandler* m_capabilityHandler = nullptr;
    IFrameFormat* m_frameFormat = nullptr;
    int m_boosterPresence = 0;
    int m_boosterGain = 0;
    int m_boosterMaxInputPower = 0;
    Modulation m_boosterMaxModulation = Modulation::CW;
};
