#include "Lever.h"

#include "AnalysisError.h"
#include "Arguments.h"
#include "Decibels.h"
#include "InputAxis.h"
#include "JsonPointer.h"
#include "Node.h"
#include "OneLine.h"
#include "RadioFilePlaces.h"
#include "TextForms.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <map>
#include <memory>
#include <utility>
#include <variant>

namespace {

using Chooser = PowerTable::Chooser;
using FormatRecord = HardwareConfigurationHandlerAnswers::FrameFormat;
using Limits32 = std::numeric_limits<std::int32_t>;
using Options = Lever::Options;

/// How far a number is searched, in hundredths of a dB.
constexpr std::int64_t farthest = 10000;

/// One place between values that have no distance.
constexpr std::int64_t onePlace = 100;

Options setting(const std::string& pointer, const std::string& value) {
    return {"--set", pointer + '=' + value};
}

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

/// The values that make sense for a radio, or none.
std::vector<Inputs::Value> usualValuesOf(const InputAxis& axis, const RadioCase& radio) {
    try {
        return axis.usualValues("input", radio);
    } catch (const QuestionError&) {
        return {};
    }
}

/// The last request that sets an input, where it counts.
template <class Call>
std::optional<std::size_t> requestOf(const RadioCase& radio, bool isGiven) {
    std::optional<std::size_t> found;
    for (std::size_t index = 0; index < radio.file.requests.size() && !isGiven; ++index) {
        if (std::holds_alternative<Call>(radio.file.requests[index].call)) {
            found = index;
        }
    }
    return found;
}

std::string placeIn(const std::optional<std::size_t>& request, const char* member) {
    return request ? RadioFilePlaces::request(*request, member) : std::string();
}

/// Changes the capability handler in a copy of its own.
template <class Change>
void changeHandler(RadioCase& radio, Change change) {
    auto handler = std::make_shared<CapabilityHandlerAnswers>(*radio.file.node.capabilityHandler);
    change(*handler);
    radio.file.node.capabilityHandler = std::move(handler);
}

class Levers {
public:
    Levers(const RadioCase& radio, const ExplainedTable& explained, const Explanation& row,
           const ModulationChoice& choice)
        : m_radio(radio)
        , m_explained(explained)
        , m_table(explained.table)
        , m_row(row)
        , m_choice(choice)
        , m_record(recordOf(radio)) {}

    std::vector<Lever> find() {
        addCutbacks();
        addSelection("min", "selected minimum", m_table.selectedMin, m_table.selectedMinBy, true);
        addSelection("max", "selected maximum", m_table.selectedMax, m_table.selectedMaxBy, false);
        addAxis("rsec", InputAxis::labelOf(m_table.rsec),
                m_table.rsecBy == Chooser::Radio
                    ? m_radio.file.placeOf({"systemPowerController", "referenceSec"})
                    : "");
        addAxis("dpd", InputAxis::labelOf(m_table.dpdVersion), formatPlace("dpdVersion"));
        addAxis("market", InputAxis::labelOf(m_table.market), formatPlace("market"));
        addAxis("channel-spacing", InputAxis::labelOf(m_table.channelSpacing),
                formatPlace("channelSpacing"));
        addFrameFormats();
        addLimits();
        addCalibration();
        for (const Explanation::Lookup& lookup : m_row.lookups) {
            addPmax(lookup);
        }
        addBooster();
        addAxis("product", InputAxis::labelOf(Inputs::ProductNumber{m_table.productNumber}),
                m_radio.file.placeOf({"capabilityHandler", "productNumber"}));
        std::erase_if(m_levers,
                      [](const Lever& lever) { return !lever.range && lever.values.empty(); });
        for (Lever& lever : m_levers) {
            std::ranges::stable_sort(lever.values, {}, &Lever::Value::steps);
        }
        return std::move(m_levers);
    }

private:
    static const FormatRecord* recordOf(const RadioCase& radio) {
        const auto& handler = radio.file.node.hardwareConfigurationHandler;
        if (handler == nullptr || radio.query.frameFormatId < 1) {
            return nullptr;
        }
        const auto found =
            std::ranges::find(handler->frameFormats, radio.query.frameFormatId, &FormatRecord::id);
        return found == handler->frameFormats.end() ? nullptr : &*found;
    }

    std::string formatPlace(const char* key) const {
        if (m_table.frameFormatId < 1) {
            return m_radio.file.placeOf({"frameFormat", key});
        }
        if (m_record == nullptr) {
            return {};
        }
        const auto& records = m_radio.file.node.hardwareConfigurationHandler->frameFormats;
        return m_radio.file.placeOf({"hardwareConfigurationHandler", "frameFormats",
                                     std::to_string(m_record - records.data()), key});
    }

    Lever& add(Lever lever) { return m_levers.emplace_back(std::move(lever)); }

    /// A number in a request of the file, or in an input of the question.
    void addNumber(Lever lever, std::int64_t from, std::int64_t to,
                   std::string (*text)(std::int64_t),
                   const std::function<Inputs::Value(const RadioCase&, std::int64_t)>& valueOf,
                   const std::string& option) {
        if (from == to) {
            return;
        }
        const std::string pointer = lever.pointer;
        lever.range =
            Lever::Range{from, to, text,
                         [valueOf](RadioCase& radio, std::int64_t value) {
                             radio = Inputs::varied(radio, valueOf(radio, value));
                         },
                         [this_ = &m_radio, valueOf, pointer, option](std::int64_t value) {
                             return pointer.empty()
                                        ? Options{option, Inputs::textOf(valueOf(*this_, value))}
                                        : setting(pointer, std::to_string(value));
                         }};
        if (from > Limits32::max()) {
            // Only a cutback is that much. The sums take it for one below none: its power rises and
            // falls over its values, and those that give more power make no sense.
            lever.values = {
                {text(to), from - to,
                 [apply = lever.range->apply, to](RadioCase& radio) { apply(radio, to); },
                 lever.range->options(to)}};
            lever.notTried =
                "other values of the " + lever.words + ", which is so large that sums wrap around";
            lever.range.reset();
        }
        add(std::move(lever));
    }

    void addCutbacks() {
        const OperatingInputs& given = m_radio.query.inputs;
        const OperatingInputs& inputs = m_table.inputs;
        const std::int64_t permanent = inputs.permanentCutback.value_or(0);
        addNumber(
            {"cutback", "permanent cutback", Decibels::dB(permanent),
             placeIn(requestOf<Calls::SetPowerCutback>(m_radio, given.permanentCutback.has_value()),
                     "cutback")},
            permanent, 0, Decibels::dB,
            [](const RadioCase&, std::int64_t value) {
                return Inputs::PermanentCutback{static_cast<std::uint32_t>(value)};
            },
            "--cutback");
        if (!inputs.isTemporary()) {
            return;
        }
        const std::int64_t temporary = inputs.cutbackInForce();
        const auto request =
            requestOf<Calls::SetTemporaryPowerCutback>(m_radio, given.temporaryCutback.has_value());
        const Lever lever{"temporary-cutback", "temporary cutback", Decibels::dB(temporary),
                          placeIn(request, "cutback")};
        addNumber(
            lever, temporary, 0, Decibels::dB,
            [](const RadioCase&, std::int64_t value) {
                return OperatingInputs::TemporaryCutback{true, static_cast<std::uint32_t>(value)};
            },
            "--temporary-cutback");
        Lever& lifted = add(lever);
        lifted.pointer = placeIn(request, "use");
        lifted.values.push_back(
            {"lifted", temporary,
             [](RadioCase& radio) {
                 radio = Inputs::varied(radio, OperatingInputs::TemporaryCutback{false, 0});
             },
             request ? setting(lifted.pointer, "false")
                     : Options{"--temporary-cutback", Arguments::none}});
    }

    /// The ends of the selected range that leave every code that is asked for within it.
    void addSelection(const std::string& name, const std::string& words,
                      ModulationAndCoding current, Chooser chooser, bool isMin) {
        const bool isSelected = current.code != ModulationAndCoding::UNDEFINED;
        const bool isInFile = isSelected && chooser == Chooser::Radio;
        Lever lever{name, words,
                    isSelected ? convertCodeAndModulationEnumToString(current) : Arguments::none,
                    isInFile ? m_radio.file.placeOf({"acmHandler", name}) : ""};
        std::vector<std::int32_t> codes;
        for (const PowerTable::Row& row : m_table.rows) {
            if (row.modulation != Modulation::UNDEFINED) {
                codes.push_back(row.modulationAndCode.code);
            }
        }
        std::ranges::sort(codes);
        codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
        const auto place = [&codes](std::int32_t code) {
            return std::ranges::lower_bound(codes, code) - codes.begin();
        };
        for (const std::int32_t code : codes) {
            if (code == current.code || excludes(code, isMin)) {
                continue;
            }
            const ModulationAndCoding value{code};
            const std::string text = convertCodeAndModulationEnumToString(value);
            lever.values.push_back(
                {text, std::abs(place(code) - place(current.code)) * onePlace,
                 [value, isMin](RadioCase& radio) {
                     radio = Inputs::varied(radio, isMin ? Inputs::Value(Inputs::SelectedMin{value})
                                                         : Inputs::SelectedMax{value});
                 },
                 isInFile ? setting(lever.pointer, quoted(text)) : Options{"--" + name, text}});
        }
        if (!m_radio.query.onePower || isInFile) {
            add(std::move(lever));
        }
    }

    bool excludes(std::int32_t end, bool isMin) const {
        return std::ranges::any_of(m_table.rows, [&](const PowerTable::Row& row) {
            const std::int32_t code = row.modulationAndCode.code;
            return m_choice.includes(row) && (isMin ? code < end : code > end);
        });
    }

    /// Another value of an input that has usual ones.
    void addAxis(const std::string& name, const std::string& current, const std::string& pointer) {
        static const std::string anInput = "input";
        const InputAxis& axis = InputAxis::named(anInput, name);
        Lever lever{name, axis.words(), current, pointer};
        for (const Inputs::Value& value : usualValuesOf(axis, m_radio)) {
            const std::string text = Inputs::textOf(value);
            if (InputAxis::labelOf(value) == current) {
                continue;
            }
            const bool isNumber = name == "dpd" || name == "channel-spacing";
            const std::string shown = text == Arguments::none ? "" : text;
            lever.values.push_back(
                {InputAxis::labelOf(value), onePlace,
                 [value](RadioCase& radio) { radio = Inputs::varied(radio, value); },
                 pointer.empty() ? Options{"--" + name, text}
                                 : setting(pointer, isNumber ? text : quoted(shown))});
        }
        add(std::move(lever));
    }

    void addFrameFormats() {
        const auto& handler = m_radio.file.node.hardwareConfigurationHandler;
        if (m_radio.query.onePower || handler == nullptr) {
            return;
        }
        const auto textOf = [](std::int32_t id) {
            return id < 1 ? std::string("configured") : "id " + std::to_string(id);
        };
        Lever lever{"frame-format", "frame format", textOf(m_table.frameFormatId)};
        std::vector<std::int32_t> ids{0};
        for (const FormatRecord& record : handler->frameFormats) {
            if (record.id >= 1 && std::ranges::find(ids, record.id) == ids.end()) {
                ids.push_back(static_cast<std::int32_t>(record.id));
            }
        }
        for (const std::int32_t id : ids) {
            if (id != std::max(m_table.frameFormatId, 0)) {
                lever.values.push_back({textOf(id),
                                        onePlace,
                                        [id](RadioCase& radio) { radio.query.frameFormatId = id; },
                                        {"--frame-format", std::to_string(id)}});
            }
        }
        add(std::move(lever));
    }

    // The radio's highest modulation

    const std::vector<short>& profiles() const {
        static const std::vector<short> none;
        const bool isAggregated = m_radio.file.node.carrierAggregation;
        if (m_record != nullptr) {
            return isAggregated ? m_record->carrierAggregationPerformanceProfiles
                                : m_record->performanceProfiles;
        }
        const auto& format = m_radio.file.node.frameFormat;
        if (m_table.frameFormatId >= 1 || format == nullptr) {
            return none;
        }
        return isAggregated ? format->carrierAggregationPerformanceProfiles
                            : format->performanceProfiles;
    }

    std::string handlerPlace(const std::string& key) const {
        return m_radio.file.placeOf({"capabilityHandler", key});
    }

    void addLimits() {
        if (!m_table.modulationLimit) {
            return;
        }
        const CapabilityHandlerAnswers& handler = *m_radio.file.node.capabilityHandler;
        const bool isByProfile = m_table.modulationLimit->byProfile;
        Lever byProfile{"limit-by-profile", "limit by performance profile",
                        isByProfile ? "yes" : "no", handlerPlace("maxAcmLimitedByHw")};
        byProfile.values.push_back(
            {isByProfile ? "no" : "yes", onePlace,
             [isByProfile](RadioCase& radio) {
                 changeHandler(radio, [isByProfile](CapabilityHandlerAnswers& changed) {
                     changed.maxAcmLimitedByHw = !isByProfile;
                 });
             },
             setting(byProfile.pointer, isByProfile ? "false" : "true")});
        const short index = handler.performanceProfileIndex.value_or(0);
        if (!isByProfile) {
            addLimit(&CapabilityHandlerAnswers::maxModulationWithoutLimitation,
                     "maxModulationWithoutLimitation", m_table.market, marketText(m_table.market));
        } else if (index >= 0 && static_cast<std::size_t>(index) < profiles().size()) {
            const short profile = profiles()[static_cast<std::size_t>(index)];
            addLimit(&CapabilityHandlerAnswers::maxModulationLimitedByHw,
                     "maxModulationLimitedByHw", profile, std::to_string(profile));
        }
        add(std::move(byProfile));
        if (isByProfile) {
            addProfiles(index);
        }
    }

    void addProfiles(short current) {
        Lever lever{"performance-profile", "performance profile index", std::to_string(current),
                    handlerPlace("performanceProfileIndex")};
        for (std::size_t index = 0; index < profiles().size(); ++index) {
            const auto value = static_cast<short>(index);
            if (value != current) {
                lever.values.push_back({std::to_string(value), onePlace,
                                        [value](RadioCase& radio) {
                                            changeHandler(
                                                radio, [value](CapabilityHandlerAnswers& changed) {
                                                    changed.performanceProfileIndex = value;
                                                });
                                        },
                                        setting(lever.pointer, std::to_string(value))});
            }
        }
        add(std::move(lever));
    }

    /// The highest modulation by a key (a profile's value or a market), or one for all of them.
    template <class Key>
    void addLimit(std::optional<std::variant<Modulation, std::map<Key, Modulation>>>
                      CapabilityHandlerAnswers::*limit,
                  const std::string& member, Key key, const std::string& keyText) {
        const auto& answer = (*m_radio.file.node.capabilityHandler).*limit;
        if (!answer) {
            return;
        }
        const auto* const byKey = std::get_if<std::map<Key, Modulation>>(&*answer);
        if (byKey != nullptr && !byKey->contains(key)) {
            return; // without a limit
        }
        const Modulation current =
            byKey != nullptr ? byKey->at(key) : std::get<Modulation>(*answer);
        std::vector<std::string> path{"capabilityHandler", member};
        if (byKey != nullptr) {
            path.push_back(keyText);
        }
        Lever lever{"hardware-limit", "highest modulation of the radio",
                    convertAcmEnumToString(current), m_radio.file.placeOf(path)};
        addHigher(lever, current, [limit, key](RadioCase& radio, Modulation modulation) {
            changeHandler(radio, [&](CapabilityHandlerAnswers& changed) {
                auto& target = *(changed.*limit);
                if (auto* const map = std::get_if<std::map<Key, Modulation>>(&target)) {
                    (*map)[key] = modulation;
                } else {
                    target = modulation;
                }
            });
        });
        add(std::move(lever));
    }

    /// Every modulation above one, the nearest first.
    template <class Apply>
    static void addHigher(Lever& lever, Modulation current, Apply apply) {
        std::vector<Modulation> higher;
        for (const std::string& text : modulationTextForms().texts()) {
            const Modulation modulation =
                modulationTextForms().find(text).value_or(Modulation::UNDEFINED);
            if (modulation > current && modulation != Modulation::UNDEFINED) {
                higher.push_back(modulation);
            }
        }
        std::ranges::sort(higher);
        for (std::size_t index = 0; index < higher.size(); ++index) {
            const Modulation modulation = higher[index];
            const std::string text = convertAcmEnumToString(modulation);
            lever.values.push_back(
                {text, static_cast<std::int64_t>(index + 1) * onePlace,
                 [apply, modulation](RadioCase& radio) { apply(radio, modulation); },
                 lever.pointer.empty() ? Options() : setting(lever.pointer, quoted(text))});
        }
    }

    // Figures of the radio

    void addCalibration() {
        const auto spacing = static_cast<std::int32_t>(m_table.channelSpacing);
        const std::string name = Node::calibrationOf(m_radio.file.channel);
        const std::string sizeName = name + "size";
        const auto& variables = m_radio.file.node.variables;
        std::vector<std::int32_t> elements;
        std::uint32_t valid = 0;
        if (variables != nullptr && variables->contains(name)) {
            elements = variables->at(name);
        }
        if (variables != nullptr && variables->contains(sizeName) &&
            !variables->at(sizeName).empty()) {
            valid = static_cast<std::uint32_t>(variables->at(sizeName).front());
        }
        const std::size_t end = std::min<std::size_t>(elements.size(), valid);
        const std::size_t count = std::min(end / 2 + end % 2, elements.size() / 2);
        std::size_t pair = 0;
        while (pair < count && elements[2 * pair] != spacing) {
            ++pair;
        }
        const bool isThere = pair < count;
        const bool hasVariables = variables != nullptr;
        const std::size_t place = isThere ? 2 * pair + 1 : 1;
        if (!isThere) {
            // In front, where every number of valid elements counts it.
            elements.insert(elements.begin(), 0);
            elements.insert(elements.begin(), spacing);
            valid = static_cast<std::uint32_t>(end + 2);
        }
        const std::int64_t from = elements[place];
        Lever lever{"calibration", "compensation of " + std::to_string(spacing) + " MHz",
                    isThere ? Decibels::dB(from) : "not calibrated",
                    isThere ? m_radio.file.placeOf({"variables", name, std::to_string(place)})
                            : ""};
        const std::string arrayPlace = m_radio.file.placeOf({"variables", name});
        const std::string sizePlace = m_radio.file.placeOf({"variables", sizeName});
        lever.range = Lever::Range{
            from, std::min<std::int64_t>(from + farthest, Limits32::max()), Decibels::dB,
            [=](RadioCase& radio, std::int64_t value) {
                auto changed =
                    radio.file.node.variables == nullptr
                        ? std::make_shared<NodeAnswers::Variables>()
                        : std::make_shared<NodeAnswers::Variables>(*radio.file.node.variables);
                (*changed)[name] = elements;
                (*changed)[name][place] = static_cast<std::int32_t>(value);
                (*changed)[sizeName] = {static_cast<std::int32_t>(valid)};
                radio.file.node.variables = std::move(changed);
            },
            [=, pointer = lever.pointer](std::int64_t value) {
                if (isThere) {
                    return setting(pointer, std::to_string(value));
                }
                std::string list;
                for (std::size_t index = 0; index < elements.size(); ++index) {
                    list += (index == 0 ? "" : ",") +
                            std::to_string(index == place ? value : elements[index]);
                }
                const std::string size = std::to_string(valid);
                return hasVariables ? Options{"--set", arrayPlace + "=[" + list + ']', "--set",
                                              sizePlace + '=' + size}
                                    : setting("/variables", "{\"" + name + "\":[" + list + "],\"" +
                                                                sizeName + "\":" + size + '}');
            }};
        add(std::move(lever));
    }

    /// Whether the last row of a Pmax table lacks its power, so that no row can stand behind it.
    bool endsOdd(const std::string& key) const {
        const RadioFilePlaces::PmaxAnswer table = RadioFilePlaces::pmaxAnswer(key);
        if (table == nullptr) {
            return false;
        }
        const auto& answer = (*m_radio.file.node.capabilityHandler).*table;
        const auto* const integers = answer ? std::get_if<std::vector<int>>(&*answer) : nullptr;
        return integers != nullptr && integers->size() % 2 != 0;
    }

    void addPmax(const Explanation::Lookup& lookup) {
        const std::string modulation = convertAcmEnumToString(lookup.modulation);
        const std::string words = "Pmax of " + modulation;
        const bool isKnown = std::ranges::find(m_levers, words, &Lever::words) != m_levers.end();
        if (isKnown || lookup.modulation == Modulation::UNDEFINED ||
            lookup.missing == Rule::UnknownDpdVersion || (!lookup.missing && !lookup.power)) {
            return;
        }
        const std::string key = m_explained.pmaxTableKey;
        const bool isFlat = m_radio.file.flatPmaxTables.contains(key);
        Lever lever{"pmax-row", words, lookup.power ? Decibels::dBm(*lookup.power) : "no row",
                    lookup.pointer};
        const std::int64_t from = lookup.power.value_or(-farthest);
        lever.range = Lever::Range{
            from,
            std::min<std::int64_t>(from + 2 * farthest, Limits32::max()),
            Decibels::dBm,
            [key, asked = lookup.modulation](RadioCase& radio, std::int64_t power) {
                radio.file =
                    Inputs::withPmax(radio.file, key, asked, static_cast<std::int32_t>(power));
            },
            [isFlat, modulation, pointer = lookup.pointer, isMissing = lookup.missing.has_value(),
             number = std::to_string(static_cast<int>(lookup.modulation)),
             table = handlerPlace(key), isOdd = endsOdd(key)](std::int64_t power) {
                const std::string figure = std::to_string(power);
                if (!isMissing || isOdd) {
                    return pointer.empty() ? Options() : setting(pointer, figure);
                }
                const std::string end = table + (isFlat ? "/integers/-=" : "/-=");
                return isFlat
                           ? Options{"--set", end + number, "--set", end + figure}
                           : Options{"--set", end + '[' + quoted(modulation) + ',' + figure + ']'};
            },
            lookup.missing.has_value()};
        add(std::move(lever));
    }

    void addBooster() {
        if (!m_table.inputs.booster || m_table.inputs.booster->presence == 0) {
            return;
        }
        using Booster = OperatingInputs::Booster;
        const Booster booster = *m_table.inputs.booster;
        const auto request =
            requestOf<Calls::SetBoosterPresence>(m_radio, m_radio.query.inputs.booster.has_value());
        // Two changes of one booster come together.
        const auto changed = [booster](const RadioCase& radio) {
            return radio.query.inputs.booster.value_or(booster);
        };
        const auto number = [&](const char* input, const char* words, const char* member,
                                std::int32_t Booster::*part, std::int64_t to,
                                std::string (*text)(std::int64_t)) {
            addNumber(
                {input, words, text(booster.*part), placeIn(request, member)}, booster.*part,
                std::clamp<std::int64_t>(to, Limits32::min(), Limits32::max()), text,
                [changed, part](const RadioCase& radio, std::int64_t value) {
                    Booster with = changed(radio);
                    with.*part = static_cast<std::int32_t>(value);
                    return with;
                },
                "--booster");
        };
        const auto present = [&](Lever lever, const std::string& to, std::int32_t presence) {
            Booster alone = booster;
            alone.presence = presence;
            lever.pointer = placeIn(request, "presence");
            lever.values.push_back({to, onePlace,
                                    [changed, presence](RadioCase& radio) {
                                        Booster with = changed(radio);
                                        with.presence = presence;
                                        radio = Inputs::varied(radio, with);
                                    },
                                    request ? setting(lever.pointer, std::to_string(presence))
                                            : Options{"--booster", Inputs::textOf(alone)}});
            add(std::move(lever));
        };
        present({"booster", "booster", "present"}, Arguments::none, 0);
        number("booster-gain", "booster gain", "gain", &Booster::gain, booster.gain - farthest,
               Decibels::dB);
        number("booster-max-input", "booster's highest input power", "maxInputPower",
               &Booster::maxInputPower, booster.maxInputPower + farthest, Decibels::dBm);
        // Only one presence selects the other band.
        constexpr std::int32_t presenceOfOtherBand = 7;
        const std::int32_t other =
            booster.presence == presenceOfOtherBand ? 1 : presenceOfOtherBand;
        present({"booster-presence", "booster presence", std::to_string(booster.presence)},
                std::to_string(other), other);
        Lever highest{"booster-max-modulation", "booster's highest modulation",
                      convertAcmEnumToString(booster.maxModulation),
                      placeIn(request, "maxModulation")};
        addHigher(highest, booster.maxModulation,
                  [changed](RadioCase& radio, Modulation modulation) {
                      Booster with = changed(radio);
                      with.maxModulation = modulation;
                      radio = Inputs::varied(radio, with);
                  });
        add(std::move(highest));
    }

    const RadioCase& m_radio;
    const ExplainedTable& m_explained;
    const PowerTable& m_table;
    const Explanation& m_row;
    const ModulationChoice& m_choice;
    const FormatRecord* m_record; ///< of the frame format that is asked for by its id
    std::vector<Lever> m_levers;
};

} // namespace

std::vector<Lever> leversOf(const RadioCase& radio, const ExplainedTable& explained,
                            const Explanation& row, const ModulationChoice& choice) {
    return Levers(radio, explained, row, choice).find();
}
