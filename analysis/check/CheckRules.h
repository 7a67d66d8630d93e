#pragma once

#include "Finding.h"

#include <vector>

/// Everything that `qor-power check` looks for.
namespace CheckRules {

// The form of the file
inline constexpr CheckRule NotJson{"QP-001", Severity::Error, "the file is not JSON"};
inline constexpr CheckRule NotARadioFile{"QP-002", Severity::Error, "the file is no radio file"};

// The file as a whole
inline constexpr CheckRule DoesNotStart{"QP-010", Severity::Error, "the service does not start"};
inline constexpr CheckRule OtherChannel{"QP-011", Severity::Warning,
                                        "the channel is neither 1 nor 2"};
inline constexpr CheckRule NotAllChecked{"QP-012", Severity::Hint,
                                         "the file is too large to be checked whole"};

// What the radio can do
inline constexpr CheckRule PmaxRises{"QP-101", Severity::Warning,
                                     "a Pmax table rises with the modulation"};
inline constexpr CheckRule PmaxTwice{"QP-102", Severity::Warning,
                                     "a Pmax table lists a modulation twice"};
inline constexpr CheckRule PmaxBrokenRow{"QP-103", Severity::Warning,
                                         "a Pmax table ends within a row"};
inline constexpr CheckRule PmaxNoModulation{"QP-104", Severity::Warning,
                                            "a row of a Pmax table is for no modulation"};
inline constexpr CheckRule PmaxEmpty{"QP-105", Severity::Warning, "a Pmax table is empty"};
inline constexpr CheckRule PredistortionLowers{"QP-106", Severity::Hint,
                                               "the DPD 2 table allows less than the DPD 1 table"};
inline constexpr CheckRule NearProduct{"QP-110", Severity::Warning,
                                       "the product number is almost a known one"};
inline constexpr CheckRule UnknownProduct{"QP-111", Severity::Hint,
                                          "the product number is not known"};
inline constexpr CheckRule NoProduct{"QP-112", Severity::Hint, "there is no product number"};
inline constexpr CheckRule LimitNotAsked{"QP-120", Severity::Warning,
                                         "a limit of the modulation is never asked for"};
inline constexpr CheckRule LimitMissing{"QP-121", Severity::Warning,
                                        "the limit that is asked for is missing"};
inline constexpr CheckRule ProfileWithoutLimit{"QP-122", Severity::Warning,
                                               "a performance profile has no limit"};
inline constexpr CheckRule MarketWithoutLimit{"QP-123", Severity::Warning, "a market has no limit"};

// Frame formats
inline constexpr CheckRule ArrayFails{"QP-201", Severity::Error,
                                      "the array query fails for a frame format"};
inline constexpr CheckRule NoPmaxRow{"QP-202", Severity::Warning, "a code has no Pmax row"};
inline constexpr CheckRule UnknownDpd{"QP-203", Severity::Error, "the DPD version is unknown"};
inline constexpr CheckRule DpdFallback{"QP-204", Severity::Hint,
                                       "the table of another DPD version answers"};
inline constexpr CheckRule MarketFallback{"QP-205", Severity::Warning,
                                          "the table of another market answers"};
inline constexpr CheckRule TableAbsent{"QP-206", Severity::Warning,
                                       "the table that is read is absent"};
inline constexpr CheckRule OtherTableForPmax{"QP-207", Severity::Warning,
                                             "findPminPmax reads another table"};
inline constexpr CheckRule AboveRadio{"QP-208", Severity::Hint,
                                      "a code is above the radio's highest modulation"};
inline constexpr CheckRule NoPower{"QP-209", Severity::Warning, "a code gets no power"};
inline constexpr CheckRule DoubtfulPower{"QP-210", Severity::Warning, "a power is doubtful"};
inline constexpr CheckRule BelowMinimum{"QP-211", Severity::Warning,
                                        "a power is below the minimum"};
inline constexpr CheckRule NoMinimumOffset{"QP-212", Severity::Warning,
                                           "a channel spacing has no minimum-power offset"};
inline constexpr CheckRule AnswerMissing{"QP-213", Severity::Warning,
                                         "the hardware configuration gives no answer"};
inline constexpr CheckRule CodeTwice{"QP-214", Severity::Warning, "a code is listed twice"};
inline constexpr CheckRule NoSuchCode{"QP-215", Severity::Warning, "a code has no modulation"};
inline constexpr CheckRule OddSpacing{"QP-216", Severity::Warning,
                                      "a channel spacing is none of the usual ones"};
inline constexpr CheckRule NotCalibrated{"QP-217", Severity::Hint,
                                         "a channel spacing is not calibrated"};
inline constexpr CheckRule MaxModulationDiffers{
    "QP-218", Severity::Warning, "the modem's highest modulation and the codes differ"};
inline constexpr CheckRule ModulationWithoutCode{"QP-219", Severity::Warning,
                                                 "the configured modulation has no code"};
inline constexpr CheckRule IdTwice{"QP-220", Severity::Warning, "an id is given to two records"};
inline constexpr CheckRule IdOutOfReach{"QP-221", Severity::Warning, "an id cannot be asked for"};

// The operator's selection and the link
inline constexpr CheckRule SelectionReversed{"QP-301", Severity::Warning,
                                             "the selected minimum is above the maximum"};
inline constexpr CheckRule SelectionNotCarried{"QP-302", Severity::Warning,
                                               "the frame format lacks a selected code"};
inline constexpr CheckRule NoSelection{"QP-303", Severity::Hint, "no range is selected"};
inline constexpr CheckRule OffsetTwice{"QP-304", Severity::Warning,
                                       "a channel spacing has two minimum-power offsets"};
inline constexpr CheckRule ClassByNumber{
    "QP-305", Severity::Warning, "a class is given by a number that is the text of another"};

// Stored variables
inline constexpr CheckRule ArraySizeDiffers{"QP-401", Severity::Warning,
                                            "the arraysize variable disagrees with the array"};
inline constexpr CheckRule HalfPair{"QP-402", Severity::Warning,
                                    "the calibration ends within a pair"};
inline constexpr CheckRule CalibratedTwice{"QP-403", Severity::Warning,
                                           "a channel spacing is calibrated twice"};
inline constexpr CheckRule CalibrationUnused{"QP-404", Severity::Hint,
                                             "a calibrated spacing matches no frame format"};
inline constexpr CheckRule NearVariable{"QP-405", Severity::Warning,
                                        "a variable has almost the name of one that is read"};
inline constexpr CheckRule VariableUnread{"QP-406", Severity::Hint, "a variable is never read"};

// Requests
inline constexpr CheckRule OddStep{"QP-501", Severity::Warning,
                                   "a figure looks as if it were in the wrong unit"};
inline constexpr CheckRule OddPresence{"QP-502", Severity::Warning,
                                       "the booster's presence is negative"};
inline constexpr CheckRule BoosterWithoutLimit{"QP-503", Severity::Warning,
                                               "the booster's highest modulation is none"};
inline constexpr CheckRule CutbackTooLarge{"QP-504", Severity::Warning,
                                           "a cutback leaves no power"};
inline constexpr CheckRule CutbackLifted{"QP-505", Severity::Warning,
                                         "a temporary cutback of 0 dB lifts the permanent one"};
inline constexpr CheckRule RequestReversed{"QP-510", Severity::Warning,
                                           "a request's minimum is above its maximum"};
inline constexpr CheckRule RequestNotCarried{"QP-511", Severity::Warning,
                                             "a request uses a code that the frame format lacks"};
inline constexpr CheckRule ModulationNotCarried{"QP-512", Severity::Warning,
                                                "a request asks for a modulation without a code"};
inline constexpr CheckRule NoFrameFormat{"QP-513", Severity::Warning,
                                         "a request names a frame format that is not there"};
inline constexpr CheckRule RequestFails{"QP-514", Severity::Warning, "a request fails"};
inline constexpr CheckRule ClassIgnored{"QP-515", Severity::Hint,
                                        "a request's class does not count"};
inline constexpr CheckRule MapEntryTwice{"QP-516", Severity::Warning,
                                         "a power map lists a code twice"};
inline constexpr CheckRule PatchNotSeen{"QP-520", Severity::Warning,
                                        "a patch does not show until the service starts anew"};
inline constexpr CheckRule PatchEmpty{"QP-521", Severity::Hint, "a patch changes nothing"};

/// All of them, in the order of their codes.
const std::vector<const CheckRule*>& all();

} // namespace CheckRules
