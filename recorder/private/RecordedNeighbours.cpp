#include "RecordedNeighbours.h"

#include "BoardSupport.h"
#include "ResultCode.h"

namespace {

using Word = Tape::Word;

/// A functor, so that a list of codes is copied without a call for each.
constexpr auto codeOf = [](const ModulationAndCoding& modulationAndCode) {
    return modulationAndCode.code;
};

/// The recording whose request is under way on this thread.
Recording* askingRecording() {
    return ofThread.request == nullptr ? nullptr : ofThread.request->recording;
}

/// Notes an answer that can fail, of one word.
void noteAnswer(Recording& recording, Question question, long argument, unsigned result,
                Word before, Word after) {
    if (ResultCode::isFailure(result)) {
        const Shape shape = before == after ? Shape::ResultOnly : Shape::WroteAndFailed;
        const Word words[] = {wordOf(shape), wordOf(result), after};
        recording.note(question, wordOf(argument), words);
    } else {
        const Word words[] = {wordOf(Shape::Value), after};
        recording.note(question, wordOf(argument), words);
    }
}

/// Notes a new answer of one word.
/// @return the word.
template <Question question, auto known, class Neighbour>
__attribute__((noinline)) Word notedAnew(const Neighbour& decorator, Word word) {
    Recording* const recording = decorator.recording();
    if (recording != nullptr && recording->isAsking()) {
        recording->noteKnown(question, word, decorator.*known);
    }
    markAsked(Recording::bitOf(question));
    return word;
}

/// Compares an answer of one word and, if it is another one, notes it. Most answers pass here and
/// are known: the rest is called last, so that nothing has to be kept for it.
/// @return the answer.
template <Question question, auto known, class Neighbour, class Answer>
inline Answer noted(const Neighbour& decorator, Answer answer) {
    // Without a recording nothing is known.
    if (__builtin_expect(!(decorator.*known).is(wordOf(answer)), 0)) {
        return static_cast<Answer>(notedAnew<question, known>(decorator, wordOf(answer)));
    }
    markAsked(Recording::bitOf(question));
    return answer;
}

} // namespace

// The radio hardware

std::string RecordedCapabilityHandler::getTmuHwProductNumber() const {
    std::string number = m_real.getTmuHwProductNumber();
    constexpr std::uint32_t bit = Recording::bitOf(Question::ProductNumber);
    if (__builtin_expect(!m_productNumber.is(number), 0)) {
        noteProductNumber(number);
    } else if ((ofThread.asked & bit) == 0) {
        noteVariables();
    }
    return number;
}

void RecordedCapabilityHandler::noteProductNumber(const std::string& number) const {
    Recording* const recording = this->recording();
    if (recording == nullptr) {
        return;
    }
    if (recording->isAsking()) {
        recording->noteText(Question::ProductNumber, number, m_productNumber);
    }
    if ((ofThread.asked & Recording::bitOf(Question::ProductNumber)) == 0) {
        noteVariables();
    }
}

void RecordedCapabilityHandler::noteVariables() const {
    markAsked(Recording::bitOf(Question::ProductNumber));
    // A query chooses the family for the calibration first, and then reads that.
    Recording* const recording = this->recording();
    if (recording != nullptr && recording->isAsking()) {
        recording->noteVariables();
    }
}

unsigned RecordedCapabilityHandler::getMinOutputPower(const int** table) const {
    const int* const before = *table;
    const unsigned result = m_real.getMinOutputPower(table);
    Recording* const recording = this->recording();
    if (recording == nullptr || ofThread.request != nullptr) {
        return result;
    }
    const bool isRefused = ResultCode::isFailure(result);
    if (isRefused || *table == nullptr) {
        const Shape shape = *table == before ? Shape::ResultOnly : Shape::WroteAndFailed;
        const Word words[] = {wordOf(shape), wordOf(result)};
        recording->note(Question::MinOutputPower, 0, words);
    } else {
        const Word words[] = {wordOf(Shape::Value), **table};
        recording->note(Question::MinOutputPower, 0, words);
    }
    recording->start(isRefused);
    return result;
}

void RecordedCapabilityHandler::notePmax(Question question, unsigned result,
                                         const int* const* table, const int* const* count,
                                         const int* tableBefore, const int* countBefore) const {
    Recording* const recording = this->recording();
    // A service fetches its tables when it starts.
    if (recording == nullptr || ofThread.request != nullptr) {
        return;
    }
    const bool isWritten = *table != tableBefore || *count != countBefore;
    const bool isFailure = ResultCode::isFailure(result);
    if (isFailure || (*table == nullptr && *count == nullptr && !isWritten)) {
        const Shape shape = isWritten ? Shape::WroteAndFailed : Shape::ResultOnly;
        const Word words[] = {wordOf(shape), wordOf(result)};
        recording->note(question, 0, words);
        return;
    }
    // What was there before may have been handed out once more or left alone, which is the same to
    // this view of the table, and not to another that the next answer is for.
    if (!isWritten && recording->hasSucceeded(question)) {
        return;
    }
    const bool isEmpty = *table == nullptr || *count == nullptr || **count < 1;
    recording->notePmax(question, isEmpty ? nullptr : *table, isEmpty ? 0 : **count);
}

unsigned RecordedCapabilityHandler::getPmaxCapabilityDpd1Ansi(const int** table,
                                                              const int** count) const {
    const int* const tableBefore = *table;
    const int* const countBefore = *count;
    const unsigned result = m_real.getPmaxCapabilityDpd1Ansi(table, count);
    notePmax(Question::PmaxDpd1Ansi, result, table, count, tableBefore, countBefore);
    return result;
}

unsigned RecordedCapabilityHandler::getPmaxCapabilityDpd2Ansi(const int** table,
                                                              const int** count) const {
    const int* const tableBefore = *table;
    const int* const countBefore = *count;
    const unsigned result = m_real.getPmaxCapabilityDpd2Ansi(table, count);
    notePmax(Question::PmaxDpd2Ansi, result, table, count, tableBefore, countBefore);
    return result;
}

unsigned RecordedCapabilityHandler::getPmaxCapabilityDpd1Etsi(const int** table,
                                                              const int** count) const {
    const int* const tableBefore = *table;
    const int* const countBefore = *count;
    const unsigned result = m_real.getPmaxCapabilityDpd1Etsi(table, count);
    notePmax(Question::PmaxDpd1Etsi, result, table, count, tableBefore, countBefore);
    return result;
}

unsigned RecordedCapabilityHandler::getPmaxCapabilityDpd2Etsi(const int** table,
                                                              const int** count) const {
    const int* const tableBefore = *table;
    const int* const countBefore = *count;
    const unsigned result = m_real.getPmaxCapabilityDpd2Etsi(table, count);
    notePmax(Question::PmaxDpd2Etsi, result, table, count, tableBefore, countBefore);
    return result;
}

bool RecordedCapabilityHandler::isMaxAcmLimitedByHw() const {
    const bool isLimited =
        noted<Question::MaxAcmLimitedByHw, &RecordedCapabilityHandler::m_maxAcmLimitedByHw>(
            *this, m_real.isMaxAcmLimitedByHw());
    if (isLimited) {
        noteCarrierAggregation();
    }
    return isLimited;
}

void RecordedCapabilityHandler::noteCarrierAggregation() const {
    const Recording* const recording = this->recording();
    if (recording != nullptr && recording->isAsking()) {
        // The service asks the board next.
        noted<Question::CarrierAggregation, &RecordedCapabilityHandler::m_carrierAggregation>(
            *this, os::bsp::rl::isFftypeCarrierAggregation());
    }
}

short RecordedCapabilityHandler::getPerformanceProfileIndex() const {
    return noted<Question::PerformanceProfileIndex,
                 &RecordedCapabilityHandler::m_performanceProfileIndex>(
        *this, m_real.getPerformanceProfileIndex());
}

Modulation RecordedCapabilityHandler::getMaxModulationLimitedByHw(
    const std::vector<short>& performanceProfiles, short performanceProfileIndex) const {
    const Modulation modulation =
        m_real.getMaxModulationLimitedByHw(performanceProfiles, performanceProfileIndex);
    const auto index = static_cast<std::size_t>(performanceProfileIndex);
    const bool isInside = performanceProfileIndex >= 0 && index < performanceProfiles.size();
    return noteByKey(Question::MaxModulationLimitedByHw, Question::LastMaxModulationLimitedByHw,
                     isInside ? performanceProfiles[index] : noProfile, modulation, m_limited);
}

Modulation RecordedCapabilityHandler::getMaxModulationWithoutLimitation(
    const EFrameFormatMarket& market) const {
    const Modulation modulation = m_real.getMaxModulationWithoutLimitation(market);
    return noteByKey(Question::MaxModulationWithoutLimitation,
                     Question::LastMaxModulationWithoutLimitation, wordOf(market), modulation,
                     m_withoutLimitation);
}

inline Modulation RecordedCapabilityHandler::noteByKey(Question question, Question last,
                                                       std::int32_t key, Modulation modulation,
                                                       KnownAnswer<2>& known) const {
    if (__builtin_expect(!known.is(key, wordOf(modulation)), 0)) {
        return noteNewByKey(question, last, key, modulation, known);
    }
    markAsked(Recording::bitOf(question));
    return modulation;
}

Modulation RecordedCapabilityHandler::noteNewByKey(Question question, Question last,
                                                   std::int32_t key, Modulation modulation,
                                                   KnownAnswer<2>& known) const {
    Recording* const recording = this->recording();
    if (recording != nullptr && recording->isAsking()) {
        recording->noteByKey(question, last, {key, wordOf(modulation)}, known);
    }
    markAsked(Recording::bitOf(question));
    return modulation;
}

void RecordedCapabilityHandler::forget() {
    m_productNumber.forget();
    m_maxAcmLimitedByHw.forget();
    m_carrierAggregation.forget();
    m_performanceProfileIndex.forget();
    m_limited.forget();
    m_withoutLimitation.forget();
}

// The operator's selection

unsigned RecordedAcmHandler::getMinMaxModulationAndCode(ModulationAndCoding& min,
                                                        ModulationAndCoding& max) {
    const unsigned result = m_real.getMinMaxModulationAndCode(min, max);
    // After a failure nothing counts as selected, whatever was written.
    const bool isFailure = ResultCode::isFailure(result);
    const Word shape = wordOf(isFailure ? Shape::ResultOnly : Shape::Value);
    const Word first = isFailure ? wordOf(result) : codeOf(min);
    const Word second = isFailure ? 0 : codeOf(max);
    if (ofThread.request == nullptr || !m_selection.is(shape, first, second)) {
        return noteSelection(result, shape, first, second);
    }
    markAsked(Recording::bitOf(Question::AcmSelection));
    return result;
}

unsigned RecordedAcmHandler::noteSelection(unsigned result, Word shape, Word first, Word second) {
    Recording* const recording = this->recording();
    if (recording != nullptr && ofThread.request == nullptr) {
        recording->noteOutside();
    } else if (recording != nullptr && recording->isAsking()) {
        recording->noteKnown(Question::AcmSelection, 0, KnownAnswer<3>::Words{shape, first, second},
                             m_selection);
    }
    markAsked(Recording::bitOf(Question::AcmSelection));
    return result;
}

// The frame format

Modulation RecordedFrameFormat::getModulation() const {
    return noted<Question::Modulation, &RecordedFrameFormat::m_modulation>(*this,
                                                                           m_real.getModulation());
}

Modulation RecordedFrameFormat::getMaxAvailableModulation() const {
    return noted<Question::MaxAvailableModulation, &RecordedFrameFormat::m_maxAvailableModulation>(
        *this, m_real.getMaxAvailableModulation());
}

void RecordedFrameFormat::getModulationAndCodeArray(
    std::vector<ModulationAndCoding>& modulationAndCodes) const {
    m_real.getModulationAndCodeArray(modulationAndCodes);
    Recording* const recording = this->recording();
    if (recording != nullptr && recording->isAsking()) {
        recording->noteList(Question::ModulationAndCodes, 0, modulationAndCodes.data(),
                            modulationAndCodes.size(), codeOf);
    }
}

EChannelSpacingType RecordedFrameFormat::getChannelSpacing() const {
    return noted<Question::ChannelSpacing, &RecordedFrameFormat::m_channelSpacing>(
        *this, m_real.getChannelSpacing());
}

EDpdVersion RecordedFrameFormat::getDpdVersion() const {
    const EDpdVersion dpdVersion = m_real.getDpdVersion();
    if (ofThread.request == nullptr) {
        return noteOutside(dpdVersion);
    }
    return noted<Question::DpdVersion, &RecordedFrameFormat::m_dpdVersion>(*this, dpdVersion);
}

EDpdVersion RecordedFrameFormat::noteOutside(EDpdVersion dpdVersion) const {
    if (recording() != nullptr) {
        recording()->noteOutside();
    }
    return dpdVersion;
}

EFrameFormatMarket RecordedFrameFormat::getTelecomMarket() const {
    return noted<Question::Market, &RecordedFrameFormat::m_market>(*this,
                                                                   m_real.getTelecomMarket());
}

void RecordedFrameFormat::getPerformanceProfiles(std::vector<short>& performanceProfiles) const {
    m_real.getPerformanceProfiles(performanceProfiles);
    Recording* const recording = this->recording();
    if (recording != nullptr && recording->isAsking()) {
        recording->noteList(Question::PerformanceProfiles, 0, performanceProfiles.data(),
                            performanceProfiles.size(), wordOf<short>);
    }
}

void RecordedFrameFormat::getCarrierAggregationPerformanceProfiles(
    std::vector<short>& performanceProfiles) const {
    m_real.getCarrierAggregationPerformanceProfiles(performanceProfiles);
    Recording* const recording = this->recording();
    if (recording != nullptr && recording->isAsking()) {
        recording->noteList(Question::CarrierAggregationPerformanceProfiles, 0,
                            performanceProfiles.data(), performanceProfiles.size(), wordOf<short>);
    }
}

void RecordedFrameFormat::forget() {
    m_modulation.forget();
    m_maxAvailableModulation.forget();
    m_channelSpacing.forget();
    m_dpdVersion.forget();
    m_market.forget();
}

// The link

EReferenceSEC RecordedSystemPowerController::getReferenceSec() const {
    return noted<Question::ReferenceSec, &RecordedSystemPowerController::m_referenceSec>(
        *this, m_real.getReferenceSec());
}

bool RecordedSystemPowerController::getMinOutputPowerOffset(EChannelSpacingType channelSpacing,
                                                            long& offset) const {
    const bool isKnown = m_real.getMinOutputPowerOffset(channelSpacing, offset);
    const Word value = isKnown ? wordOf(offset) : 0;
    if (__builtin_expect(!m_offset.is(wordOf(channelSpacing), isKnown ? 1 : 0, value), 0)) {
        return noteOffset(wordOf(channelSpacing), isKnown, value);
    }
    markAsked(Recording::bitOf(Question::MinOutputPowerOffset));
    return isKnown;
}

bool RecordedSystemPowerController::noteOffset(Word channelSpacing, bool isKnown,
                                               Word offset) const {
    Recording* const recording = this->recording();
    if (recording != nullptr && recording->isAsking()) {
        recording->noteKnown(Question::MinOutputPowerOffset, 1,
                             KnownAnswer<3>::Words{channelSpacing, isKnown ? 1 : 0, offset},
                             m_offset);
    }
    markAsked(Recording::bitOf(Question::MinOutputPowerOffset));
    return isKnown;
}

void RecordedSystemPowerController::forget() {
    m_referenceSec.forget();
    m_offset.forget();
}

// The frame formats by id

void RecordedHardwareConfigurationHandler::getFrameFormatRecords(
    bool flag, std::vector<FrameFormatRecord>& records) const {
    m_real.getFrameFormatRecords(flag, records);
    if (Recording* const recording = askingRecording()) {
        recording->noteRecords(records);
    }
}

EDpdVersion RecordedHardwareConfigurationHandler::getDpdVersion(RadioChannel channel,
                                                                long frameFormatId) const {
    const EDpdVersion dpdVersion = m_real.getDpdVersion(channel, frameFormatId);
    if (Recording* const recording = askingRecording()) {
        const Word words[] = {wordOf(dpdVersion)};
        recording->note(Question::IdDpdVersion, wordOf(frameFormatId), words);
    }
    return dpdVersion;
}

unsigned RecordedHardwareConfigurationHandler::getTelecomMarket(RadioChannel channel,
                                                                long frameFormatId,
                                                                EFrameFormatMarket& market) const {
    const EFrameFormatMarket before = market;
    const unsigned result = m_real.getTelecomMarket(channel, frameFormatId, market);
    if (Recording* const recording = askingRecording()) {
        noteAnswer(*recording, Question::IdMarket, frameFormatId, result, wordOf(before),
                   wordOf(market));
    }
    return result;
}

unsigned RecordedHardwareConfigurationHandler::getModulationAndCodeArray(
    RadioChannel channel, long frameFormatId,
    std::vector<ModulationAndCoding>& modulationAndCodes) const {
    const unsigned result =
        m_real.getModulationAndCodeArray(channel, frameFormatId, modulationAndCodes);
    Recording* const recording = askingRecording();
    if (recording != nullptr && ResultCode::isFailure(result)) {
        // The service passes an empty list.
        const Shape shape = modulationAndCodes.empty() ? Shape::ResultOnly : Shape::WroteAndFailed;
        const Word words[] = {wordOf(shape), wordOf(result)};
        recording->note(Question::IdModulationAndCodes, wordOf(frameFormatId), words);
    } else if (recording != nullptr) {
        recording->noteList(Question::IdModulationAndCodes, wordOf(frameFormatId),
                            modulationAndCodes.data(), modulationAndCodes.size(), codeOf);
    }
    return result;
}

unsigned
RecordedHardwareConfigurationHandler::getChannelSpacing(RadioChannel channel, long frameFormatId,
                                                        EChannelSpacingType& channelSpacing) const {
    const EChannelSpacingType before = channelSpacing;
    const unsigned result = m_real.getChannelSpacing(channel, frameFormatId, channelSpacing);
    if (Recording* const recording = askingRecording()) {
        noteAnswer(*recording, Question::IdChannelSpacing, frameFormatId, result, wordOf(before),
                   wordOf(channelSpacing));
    }
    return result;
}

void RecordedHardwareConfigurationHandler::getPerformanceProfiles(
    RadioChannel channel, long frameFormatId, std::vector<short>& performanceProfiles) const {
    m_real.getPerformanceProfiles(channel, frameFormatId, performanceProfiles);
    if (Recording* const recording = askingRecording()) {
        recording->noteList(Question::IdPerformanceProfiles, wordOf(frameFormatId),
                            performanceProfiles.data(), performanceProfiles.size(), wordOf<short>);
    }
}

void RecordedHardwareConfigurationHandler::getCarrierAggregationPerformanceProfiles(
    RadioChannel channel, long frameFormatId, std::vector<short>& performanceProfiles) const {
    m_real.getCarrierAggregationPerformanceProfiles(channel, frameFormatId, performanceProfiles);
    if (Recording* const recording = askingRecording()) {
        recording->noteList(Question::IdCarrierAggregationPerformanceProfiles,
                            wordOf(frameFormatId), performanceProfiles.data(),
                            performanceProfiles.size(), wordOf<short>);
    }
}
