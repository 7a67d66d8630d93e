#pragma once

#include "OutputPowerCalculator.h"

/// Opens the private steps and members of OutputPowerCalculator to the tests. It only forwards; of
/// steps that are also there without traces, to the one with them.
class OutputPowerCalculatorInside {
public:
    using Service = OutputPowerCalculator;
    using UseConfiguredFF = OutputPowerCalculator::UseConfiguredFF;

    static Calculator* getCalculator(const Service& service) { return service.getCalculator(true); }

    static int getMaxPowerArray(const Service& service, EDpdVersion dpdVersion,
                                EFrameFormatMarket market, TxRfMaxPowerCapability& out) {
        return service.getMaxPowerArray(dpdVersion, market, out);
    }

    static int getMaxPower(const Service& service, EDpdVersion dpdVersion,
                           EFrameFormatMarket market, Modulation modulation, long& maxPower) {
        return service.getMaxPower(dpdVersion, market, modulation, maxPower);
    }

    static int getCsPowerCompensation(const Service& service, EChannelSpacingType channelSpacing,
                                      long& compensation) {
        return service.getCsPowerCompensation(true, channelSpacing, compensation);
    }

    static int getAdModMaxPower(const Service& service, EDpdVersion dpdVersion,
                                EFrameFormatMarket market, EReferenceSEC rsec,
                                Modulation selectedMinMod, Modulation selectedMaxMod,
                                Modulation availableMaxMod, Modulation actualMod,
                                long csPowerCompensation, long& maxPower, bool useCutback) {
        Service::PowerQuery query = {dpdVersion,          market,         rsec,
                                     selectedMinMod,      selectedMaxMod, availableMaxMod,
                                     csPowerCompensation, useCutback};
        service.prepare(query);
        return service.getAdModMaxPowerTraced(query, actualMod, maxPower);
    }

    static int getFixModMaxPower(const Service& service, EDpdVersion dpdVersion,
                                 EFrameFormatMarket market, Modulation selectedMod,
                                 Modulation modulation, long csPowerCompensation, long& maxPower,
                                 bool useCutback) {
        Service::PowerQuery query =
            service.fixedQuery(dpdVersion, market, selectedMod, csPowerCompensation, useCutback);
        return service.getFixModMaxPowerTraced(query, modulation, maxPower);
    }

    static int getSelectedMinMaxAcm(const Service& service, ModulationAndCoding& min,
                                    ModulationAndCoding& max) {
        return service.getSelectedMinMaxAcm(min, max);
    }

    static Modulation limitMaxModDueToRadioCapability(const Service& service,
                                                      UseConfiguredFF useConfiguredFF, long rfid,
                                                      Modulation modemMaxAvailableModulation) {
        return service.limitMaxModDueToRadioCapability(true, useConfiguredFF, rfid,
                                                       modemMaxAvailableModulation);
    }

    static long getMinOutputPower(const Service& service, unsigned int channelSpacing) {
        return service.getMinOutputPower(true, channelSpacing);
    }

    static long getMinOutputPowerUsingRfid(const Service& service, unsigned int rfid) {
        return service.getMinOutputPowerUsingRfid(rfid);
    }

    static RadioChannel radioChannel(const Service& service) { return service.m_radioChannel; }
    static const int* minOutputPower(const Service& service) { return service.m_minOutputPower; }
    static long temperature(const Service& service) { return service.m_temperature; }
    static bool useTemporaryPowerCutback(const Service& service) {
        return service.m_useTemporaryPowerCutback;
    }
    static unsigned long temporaryPowerCutback(const Service& service) {
        return service.m_temporaryPowerCutback;
    }
    static unsigned long powerCutback(const Service& service) { return service.m_powerCutback; }
    static int boosterPresence(const Service& service) { return service.m_boosterPresence; }
    static int boosterGain(const Service& service) { return service.m_boosterGain; }
    static int boosterMaxInputPower(const Service& service) {
        return service.m_boosterMaxInputPower;
    }
    static Modulation boosterMaxModulation(const Service& service) {
        return service.m_boosterMaxModulation;
    }

    static const IHardwareConfigurationHandler*
    hardwareConfigurationHandler(const Service& service) {
        return service.m_hardwareConfigurationHandler;
    }
    static const IAcmHandler* acmHandler(const Service& service) { return service.m_acmHandler; }
    static const ISystemPowerController* systemPowerController(const Service& service) {
        return service.m_systemPowerController;
    }
    static const ICapabilityHandler* capabilityHandler(const Service& service) {
        return service.m_capabilityHandler;
    }
    static const IFrameFormat* frameFormat(const Service& service) { return service.m_frameFormat; }
};
