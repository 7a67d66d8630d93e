#pragma once

#include "Finding.h"

#include <vector>

/// Everything that a check looks for: name, code, severity and title, in the order of the codes.
#define QOR_CHECK_RULES(RULE)                                                                      \
    /* The form of the file */                                                                     \
    RULE(NotJson, "QP-001", Error, "the file is not JSON")                                         \
    RULE(NotARadioFile, "QP-002", Error, "the file is no radio file")                              \
    /* The file as a whole */                                                                      \
    RULE(DoesNotStart, "QP-010", Error, "the service does not start")                              \
    RULE(OtherChannel, "QP-011", Warning, "the channel is neither 1 nor 2")                        \
    RULE(NotAllChecked, "QP-012", Hint, "the file is too large to be checked whole")               \
    RULE(WholeDecibels, "QP-013", Warning, "figures look like whole decibels")                     \
    /* What the radio can do */                                                                    \
    RULE(PmaxRises, "QP-101", Warning, "a Pmax table rises with the modulation")                   \
    RULE(PmaxTwice, "QP-102", Warning, "a Pmax table lists a modulation twice")                    \
    RULE(PmaxBrokenRow, "QP-103", Warning, "a Pmax table ends within a row")                       \
    RULE(PmaxNoModulation, "QP-104", Warning, "a row of a Pmax table is for no modulation")        \
    RULE(PmaxEmpty, "QP-105", Warning, "a Pmax table is empty")                                    \
    RULE(PredistortionLowers, "QP-106", Hint, "the DPD 2 table allows less than the DPD 1 table")  \
    RULE(PredistortionExchanged, "QP-107", Warning, "the DPD 1 and DPD 2 tables look exchanged")   \
    RULE(NearProduct, "QP-110", Warning, "the product number is almost a known one")               \
    RULE(UnknownProduct, "QP-111", Hint, "the product number is not known")                        \
    RULE(NoProduct, "QP-112", Hint, "there is no product number")                                  \
    RULE(HiddenBlanks, "QP-113", Warning, "blanks in the product number do not show")              \
    RULE(LimitNotAsked, "QP-120", Warning, "a limit of the modulation is never asked for")         \
    RULE(LimitMissing, "QP-121", Warning, "the limit that is asked for is missing")                \
    RULE(ProfileWithoutLimit, "QP-122", Warning, "a performance profile has no limit")             \
    RULE(MarketWithoutLimit, "QP-123", Warning, "a market has no limit")                           \
    /* Frame formats */                                                                            \
    RULE(ArrayFails, "QP-201", Error, "the array query fails for a frame format")                  \
    RULE(NoPmaxRow, "QP-202", Warning, "a code has no Pmax row")                                   \
    RULE(UnknownDpd, "QP-203", Error, "the DPD version is unknown")                                \
    RULE(DpdFallback, "QP-204", Hint, "the table of another DPD version answers")                  \
    RULE(MarketFallback, "QP-205", Warning, "the table of another market answers")                 \
    RULE(TableAbsent, "QP-206", Warning, "the table that is read is absent")                       \
    RULE(OtherTableForPmax, "QP-207", Warning, "findPminPmax reads another table")                 \
    RULE(AboveRadio, "QP-208", Hint, "a code is above the radio's highest modulation")             \
    RULE(NoPower, "QP-209", Warning, "a code gets no power")                                       \
    RULE(DoubtfulPower, "QP-210", Warning, "a power is doubtful")                                  \
    RULE(BelowMinimum, "QP-211", Warning, "a power is below the minimum")                          \
    RULE(NoMinimumOffset, "QP-212", Warning, "a channel spacing has no minimum-power offset")      \
    RULE(AnswerMissing, "QP-213", Warning, "the hardware configuration gives no answer")           \
    RULE(CodeTwice, "QP-214", Warning, "a code is listed twice")                                   \
    RULE(NoSuchCode, "QP-215", Warning, "a code has no modulation")                                \
    RULE(OddSpacing, "QP-216", Warning, "a channel spacing is none of the usual ones")             \
    RULE(NotCalibrated, "QP-217", Hint, "a channel spacing is not calibrated")                     \
    RULE(MaxModulationDiffers, "QP-218", Warning,                                                  \
         "the modem's highest modulation and the codes differ")                                    \
    RULE(ModulationWithoutCode, "QP-219", Warning, "the configured modulation has no code")        \
    RULE(IdTwice, "QP-220", Warning, "an id is given to two records")                              \
    RULE(IdOutOfReach, "QP-221", Warning, "an id cannot be asked for")                             \
    RULE(UnlikeItsRecord, "QP-222", Warning,                                                       \
         "the configured frame format is unlike its own record")                                   \
    /* The operator's selection and the link */                                                    \
    RULE(SelectionReversed, "QP-301", Warning, "the selected minimum is above the maximum")        \
    RULE(SelectionNotCarried, "QP-302", Warning, "the frame format lacks a selected code")         \
    RULE(NoSelection, "QP-303", Hint, "no range is selected")                                      \
    RULE(OffsetTwice, "QP-304", Warning, "a channel spacing has two minimum-power offsets")        \
    RULE(ClassByNumber, "QP-305", Warning, "a class is given by a number that reads like another") \
    /* Stored variables */                                                                         \
    RULE(ArraySizeDiffers, "QP-401", Warning, "the arraysize variable disagrees with the array")   \
    RULE(HalfPair, "QP-402", Warning, "the calibration ends within a pair")                        \
    RULE(CalibratedTwice, "QP-403", Warning, "a channel spacing is calibrated twice")              \
    RULE(CalibrationUnused, "QP-404", Hint, "a calibrated spacing matches no frame format")        \
    RULE(NearVariable, "QP-405", Warning, "a variable has almost the name of one that is read")    \
    RULE(VariableUnread, "QP-406", Hint, "a variable is never read")                               \
    RULE(PairsReversed, "QP-407", Warning, "calibration pairs are reversed")                       \
    /* Requests */                                                                                 \
    RULE(OddStep, "QP-501", Warning, "a figure looks as if it were in the wrong unit")             \
    RULE(OddPresence, "QP-502", Warning, "the booster's presence is negative")                     \
    RULE(BoosterWithoutLimit, "QP-503", Warning, "the booster's highest modulation is none")       \
    RULE(CutbackTooLarge, "QP-504", Warning, "a cutback is too large")                             \
    RULE(CutbackLifted, "QP-505", Warning, "a temporary cutback of 0 dB lifts the permanent one")  \
    RULE(RequestReversed, "QP-510", Warning, "a request's minimum is above its maximum")           \
    RULE(RequestNotCarried, "QP-511", Warning,                                                     \
         "a request uses a code that the frame format lacks")                                      \
    RULE(ModulationNotCarried, "QP-512", Warning,                                                  \
         "a request asks for a modulation without a code")                                         \
    RULE(NoFrameFormat, "QP-513", Warning, "a request names a frame format that is not there")     \
    RULE(RequestFails, "QP-514", Warning, "a request fails")                                       \
    RULE(ClassIgnored, "QP-515", Hint, "a request's class does not count")                         \
    RULE(MapEntryTwice, "QP-516", Warning, "a power map lists a code twice")                       \
    RULE(PatchNotSeen, "QP-520", Warning, "a patch does not show until the service starts anew")   \
    RULE(PatchEmpty, "QP-521", Hint, "a patch changes nothing")

namespace CheckRules {

#define QOR_DEFINE(name, code, severity, title)                                                    \
    inline constexpr CheckRule name{code, Severity::severity, title};
QOR_CHECK_RULES(QOR_DEFINE)
#undef QOR_DEFINE

/// All of them, in the order of their codes.
inline const std::vector<const CheckRule*>& all() {
#define QOR_ADDRESS(name, code, severity, title) &name,
    static const std::vector<const CheckRule*> rules{QOR_CHECK_RULES(QOR_ADDRESS)};
#undef QOR_ADDRESS
    return rules;
}

} // namespace CheckRules
