#include "Sides.h"

#include <stdexcept>
#include <utility>

namespace {

std::vector<std::int32_t> pmaxTable(std::int32_t highestPower) {
    // 65536QAM is in none.
    constexpr std::int32_t modulations[] = {2,   4,   16,   32,   64,   128,
                                            256, 512, 1024, 2048, 4096, 16384};
    std::vector<std::int32_t> table = {24};
    std::int32_t power = highestPower;
    for (const std::int32_t modulation : modulations) {
        table.push_back(modulation);
        table.push_back(power);
        power -= 50;
    }
    return table;
}

/// What happens once in a process has happened on both sides.
reference::ProcessState s_process;

template <class Trace>
std::vector<Record> recordsIn(const Trace& trace) {
    std::vector<Record> records;
    for (const auto& record : trace) {
        records.push_back({static_cast<int>(record.kind), record.level, record.code, record.file,
                           record.function, record.text});
    }
    return records;
}

static_assert(
    static_cast<int>(TraceRecord::Kind::Enter) == static_cast<int>(reference::TraceKind::enter) &&
    static_cast<int>(TraceRecord::Kind::Message) == static_cast<int>(reference::TraceKind::msg) &&
    static_cast<int>(TraceRecord::Kind::Raw) == static_cast<int>(reference::TraceKind::raw));

} // namespace

const std::vector<Family> families = {{"FirstOutdoor", "QZT 846 001"},
                                      {"ThirdOutdoor", "QZT 846 003"},
                                      {"OlderRadioUnit", "QZT35205/1HP"},
                                      {"NewerRadioUnit", "QZT99999/9"}};

std::string nameOf(const Scene& scene) {
    const char* limit = "";
    if (scene.limit == Limit::ByProfile) {
        limit = "Limited";
    } else if (scene.limit == Limit::ByCarrierAggregationProfile) {
        limit = "LimitedUnderCarrierAggregation";
    }
    return std::string(scene.family.name) + (scene.hasBooster ? "WithBooster" : "") +
           (scene.isAdaptive ? "Adaptive" : "Fixed") + limit;
}

UsualAnswers usualAnswers(const Scene& scene) {
    UsualAnswers usual;
    const auto set = [&usual](Call call, std::vector<std::int32_t> values) {
        usual[static_cast<std::size_t>(call)].values = std::move(values);
    };
    usual[static_cast<std::size_t>(Call::ProductNumber)].text = scene.family.productNumber;
    set(Call::MinOutputPower, {-1000});
    // Each table has powers of its own.
    set(Call::PmaxDpd1Etsi, pmaxTable(2950));
    set(Call::PmaxDpd2Etsi, pmaxTable(2951));
    set(Call::PmaxDpd1Ansi, pmaxTable(2962));
    set(Call::PmaxDpd2Ansi, pmaxTable(2973));
    set(Call::IsMaxAcmLimited, {scene.limit != Limit::None});
    set(Call::IsCarrierAggregation, {scene.limit == Limit::ByCarrierAggregationProfile});
    set(Call::ProfileIndex, {1});
    set(Call::MaxModulationLimited, {512});
    set(Call::MaxModulationUnlimited, {1024});
    set(Call::AcmRange,
        scene.isAdaptive ? std::vector<std::int32_t>{31, 81} : std::vector<std::int32_t>{61, 61});
    set(Call::Modulation, {16});
    set(Call::MaxAvailableModulation, {2048});
    set(Call::Codes, {31, 32, 61, 101});
    set(Call::ChannelSpacing, {28});
    set(Call::DpdVersion, {2});
    set(Call::Market, {0});
    set(Call::Profiles, {1, 2, 3});
    set(Call::CarrierAggregationProfiles, {4, 5});
    set(Call::ReferenceSec, {3});
    set(Call::Offset, {250});
    set(Call::Records, {5, 14, 7, 56});
    set(Call::DpdVersionById, {1});
    set(Call::MarketById, {1});
    set(Call::CodesById, {30, 31, 61});
    set(Call::ChannelSpacingById, {56});
    set(Call::ProfilesById, {11, 12});
    set(Call::CarrierAggregationProfilesById, {13});
    set(Call::CompensationArray, {28, 150, 56, -200});
    set(Call::CompensationArraySize, {4});
    return usual;
}

std::vector<Record> recordsOf(const std::vector<TraceRecord>& trace) {
    return recordsIn(trace);
}

std::vector<Record> recordsOf(const reference::Trace& trace) {
    return recordsIn(trace);
}

void LibrarySide::build() {
    // The old one withdraws itself by the name under which the new one will stand.
    service.reset();
    service = std::make_unique<OutputPowerCalculator>(channel);
}

std::vector<Record> LibrarySide::takeTrace() {
    return recordsOf(DeskTrace::getInstance().take());
}

void ReferenceSide::build() {
    service.emplace(channel, node, s_process);
}

std::vector<Record> ReferenceSide::takeTrace() {
    return recordsOf(std::exchange(service->m_trace, {}));
}

BothSides::BothSides(const Scene& scene)
    : usual(usualAnswers(scene))
    , library(usual, scene.channel)
    , reference(usual, scene.channel) {
    if (library.service->initialize() != 0 || reference.service->initialize() != 0) {
        throw std::logic_error("the service does not start in the usual surroundings");
    }
    library.service->setPowerCutback(100);
    reference.service->setPowerCutback(100);
    if (scene.hasBooster) {
        library.service->setBoosterPresence(1, 2500, 700, Modulation::QAM1024);
        reference.service->setBoosterPresence(1, 2500, 700, 1024);
    }
    library.takeTrace();
    reference.takeTrace();
    restart();
}

void BothSides::restart() {
    library.script.restart();
    reference.script.restart();
}
