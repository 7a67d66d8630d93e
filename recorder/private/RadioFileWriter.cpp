#include "RadioFileWriter.h"

#include "CallName.h"
#include "ResultCode.h"

#include <algorithm>
#include <functional>
#include <ostream>

namespace {

using Word = Tape::Word;

// Limits of a radio file, with room for what is written beside the requests.
constexpr std::size_t mostBytes = (std::size_t{2} << 20) - (std::size_t{128} << 10);
constexpr std::size_t mostValues = 120000;
constexpr std::size_t mostKept = std::size_t{15} << 20;

/// Notes of one kind, before the rest is counted only.
constexpr std::size_t mostNotes = 20;

void add(std::vector<std::string>& notes, const std::string& note) {
    if (std::find(notes.begin(), notes.end(), note) == notes.end()) {
        notes.push_back(note);
    }
}

void beginRequest(JsonText& json, Call call) {
    json.openObject();
    json.key("call").text(nameOf(call));
}

void number(JsonText& json, const char* key, Word value) {
    json.key(key).number(value);
}

void cutback(JsonText& json, Word value) {
    json.key("cutback").number(static_cast<std::uint32_t>(value));
}

void booster(JsonText& json, const Word* words) {
    number(json, "presence", words[0]);
    number(json, "gain", words[1]);
    number(json, "maxInputPower", words[2]);
    json.key("maxModulation");
    NodeText::modulation(json, words[3]);
}

void expectedPowers(JsonText& json, const Word* words, std::initializer_list<const char*> keys) {
    json.key("expect").openObject();
    json.key("result").number(static_cast<std::uint32_t>(words[0]));
    const Word* power = words + 1;
    for (const char* const key : keys) {
        number(json, key, *power++);
    }
    json.closeObject();
}

/// A request of a file, from the words of the tape.
void writeRequest(JsonText& json, const Word* words, std::size_t count) {
    const auto call = static_cast<Call>(words[0]);
    const auto expect = [&](const Word* powers, std::initializer_list<const char*> keys) {
        if (words[2] != 0) {
            number(json, "preset", words[2]);
        }
        Word outputs[3] = {words[1], 0, 0};
        std::copy_n(powers, keys.size(), outputs + 1);
        expectedPowers(json, outputs, keys);
    };
    beginRequest(json, call);
    switch (call) {
    case Call::Initialize:
        break;
    case Call::SetPowerCutback:
        cutback(json, words[3]);
        expect(words, {});
        break;
    case Call::SetTemporaryPowerCutback:
        json.key("use").flag(words[3] != 0);
        cutback(json, words[4]);
        expect(words, {});
        break;
    case Call::SetTemperature:
        number(json, "temperature", words[3]);
        expect(words, {});
        break;
    case Call::SetBoosterPresence:
        booster(json, words + 3);
        expect(words, {});
        break;
    case Call::CalculatePowerCapabilities:
        json.key("modulation");
        NodeText::modulation(json, words[3]);
        expect(words + 4, {"minPower", "maxPower"});
        break;
    case Call::CalculateAdmodPowerCapabilities:
        json.key("modulation");
        NodeText::modulation(json, words[3]);
        json.key("rsec");
        NodeText::rsec(json, words[4]);
        expect(words + 5, {"minPower", "maxPower"});
        break;
    case Call::FindPminPmax:
        expect(words + 3, {"pmin", "pmax"});
        break;
    case Call::GetUnrestrictedPmax:
        expect(words + 3, {"pmax"});
        break;
    case Call::GetMinMaxOutputPowerVsModulationArray: {
        number(json, "frameFormatId", words[3]);
        json.key("minModulationAndCode");
        NodeText::code(json, words[4]);
        json.key("maxModulationAndCode");
        NodeText::code(json, words[5]);
        json.key("referenceSec");
        NodeText::rsec(json, words[6]);
        const std::size_t before = 9 + 2 * static_cast<std::size_t>(words[8]);
        if (words[8] > 0) {
            json.key("powerMap").openList();
            for (std::size_t at = 9; at < before; at += 2) {
                json.openList();
                NodeText::code(json, words[at]);
                json.number(words[at + 1]);
                json.closeList();
            }
            json.closeList();
        }
        if (words[2] != 0) {
            number(json, "preset", words[2]);
        }
        json.key("expect").openObject();
        json.key("result").number(static_cast<std::uint32_t>(words[1]));
        number(json, "minOutputPower", words[7]);
        json.key("powerMap").openList();
        for (std::size_t at = before; at < count; at += 2) {
            json.openObject();
            number(json, "code", words[at]);
            number(json, "maxPower", words[at + 1]);
            json.closeObject();
        }
        json.closeList();
        json.closeObject();
        break;
    }
    }
    json.closeObject();
}

const char* doubtText(std::uint16_t doubt) {
    switch (doubt) {
    case Doubt::changedMeanwhile:
        return "an answer changed while it was under way, it may have seen both";
    case Doubt::twoPresets:
        return "an output that was left alone held something else before";
    case Doubt::tooWide:
        return "a number of more than 32 bits was cut";
    default:
        return "its power maps had too many entries, the last are missing";
    }
}

} // namespace

/// The way along the tape, from the first step to the last: what each makes of the file.
class RadioFileWriter::Walk {
public:
    /// Takes a request or a patch, and the step that it comes with.
    using Sink = std::function<void(const JsonText& json, std::uint32_t step, std::size_t kept)>;

    /// @param recorded is copied to `work`, without its first steps.
    Walk(const Tape& recorded, Tape& work, std::uint32_t folded, unsigned met)
        : m_tape(work)
        , m_node(work, met) {
        work.copyFrom(recorded);
        for (std::uint32_t step = 0; step < folded; ++step) {
            work.fold();
        }
        m_node.survey();
    }

    void base(JsonText& json) { m_node.write(json, NodeText::all, false, m_remarks); }

    void requests(const Sink& sink) {
        restoreInputs(sink);
        for (std::uint32_t index = 0; index < m_tape.stepCount(); ++index) {
            const Tape::Step step = m_tape.step(index);
            if (step.slot != Tape::Step::request) {
                Tape::Slot& slot = m_tape.slot(step.slot);
                if (slot.before != step.value) {
                    slot.before = step.value;
                    m_changed |= NodeText::bitOf(slot.question);
                }
                continue;
            }
            patch(sink, index);
            request(sink, step, index);
        }
    }

    const NodeText::Remarks& remarks() const { return m_remarks; }
    const std::vector<std::string>& doubts() const { return m_doubts; }

private:
    void emit(const Sink& sink, std::uint32_t step, std::size_t kept) {
        sink(m_json, step, kept);
        m_json.clear();
        ++m_count;
    }

    /// The inputs that requests before the first one have set.
    void restoreInputs(const Sink& sink) {
        const Tape::Inputs& inputs = m_tape.inputs();
        if (inputs.hasCutback) {
            beginRequest(m_json, Call::SetPowerCutback);
            cutback(m_json, inputs.cutback);
            m_json.closeObject();
            emit(sink, 0, 0);
        }
        if (inputs.hasTemporary) {
            beginRequest(m_json, Call::SetTemporaryPowerCutback);
            m_json.key("use").flag(inputs.useTemporary != 0);
            cutback(m_json, inputs.temporaryCutback);
            m_json.closeObject();
            emit(sink, 0, 0);
        }
        if (inputs.hasTemperature) {
            beginRequest(m_json, Call::SetTemperature);
            number(m_json, "temperature", inputs.temperature);
            m_json.closeObject();
            emit(sink, 0, 0);
        }
        if (inputs.hasBooster) {
            beginRequest(m_json, Call::SetBoosterPresence);
            booster(m_json, inputs.booster);
            m_json.closeObject();
            emit(sink, 0, 0);
        }
    }

    void patch(const Sink& sink, std::uint32_t step) {
        m_changed &= m_node.written();
        if (m_changed == 0) {
            return;
        }
        m_json.openObject();
        m_json.key("call").text(std::string("patch"));
        m_json.key("file").openObject();
        m_node.write(m_json, m_changed, true, m_remarks);
        m_json.closeObject();
        m_json.closeObject();
        const std::size_t kept = m_node.costOf(m_changed);
        m_changed = 0;
        emit(sink, step, kept);
    }

    void request(const Sink& sink, const Tape::Step& step, std::uint32_t index) {
        const Word* const words = m_tape.wordsOf(step.value);
        if ((step.doubt & Doubt::threw) != 0) {
            m_doubts.push_back("before request " + std::to_string(m_count) + ": a call of " +
                               nameOf(static_cast<Call>(words[0])) +
                               " ended with an exception; it is left out");
            return;
        }
        for (std::uint16_t doubt = 1; doubt <= Doubt::longMap; doubt = doubt * 2U) {
            if ((step.doubt & doubt) != 0) {
                m_doubts.push_back("request " + std::to_string(m_count) + ": " + doubtText(doubt));
            }
        }
        writeRequest(m_json, words, m_tape.lengthOf(step.value) / sizeof(Word));
        emit(sink, index, 0);
    }

    Tape& m_tape;
    NodeText m_node;
    JsonText m_json;
    NodeText::Remarks m_remarks;
    std::vector<std::string> m_doubts;
    std::uint64_t m_changed = 0; ///< questions answered otherwise since the last request
    std::size_t m_count = 0;     ///< requests of the file so far
};

RadioFileWriter::RadioFileWriter(unsigned channel, unsigned met, const Tape& recorded, Tape& work)
    : m_channel(channel)
    , m_met(met)
    , m_recorded(recorded)
    , m_work(work) {}

/// Finds out how many of the first steps have to go, so that the file stays within the limits.
void RadioFileWriter::fit() {
    std::vector<Weight> weights(m_recorded.stepCount() + 1);
    Walk walk(m_recorded, m_work, 0, m_met);
    walk.requests([&weights](const JsonText& json, std::uint32_t step, std::size_t kept) {
        weights[step].bytes += json.written().size() + 8;
        weights[step].values += json.values();
        weights[step].kept += kept;
    });
    Weight sum;
    m_folded = m_recorded.stepCount();
    while (m_folded > 0) {
        const Weight& weight = weights[m_folded - 1];
        sum = {sum.bytes + weight.bytes, sum.values + weight.values, sum.kept + weight.kept};
        if (sum.bytes > mostBytes || sum.values > mostValues || sum.kept > mostKept) {
            break;
        }
        --m_folded;
    }
}

std::vector<std::string> RadioFileWriter::notes() {
    Walk walk(m_recorded, m_work, m_folded, m_met);
    JsonText json;
    walk.base(json);
    walk.requests([](const JsonText&, std::uint32_t, std::size_t) {});

    std::vector<std::string> notes{
        "Written by a flight recorder. It holds the product number, the Pmax tables, the "
        "operator's "
        "selections, the calibration and the requests of one radio channel, and no other data of "
        "the node. A key that may be absent and is was never asked."};
    if (!walk.remarks().neverAsked.empty()) {
        std::string note = "Never asked, so these values are not the node's:";
        std::vector<std::string> places;
        for (const std::string& place : walk.remarks().neverAsked) {
            add(places, place);
        }
        for (const std::string& place : places) {
            note += (&place == &places.front() ? " " : ", ") + place;
        }
        notes.push_back(note);
    }
    const auto addSome = [&notes](const std::vector<std::string>& some) {
        std::vector<std::string> different;
        for (const std::string& note : some) {
            add(different, note);
        }
        const std::size_t count = std::min(different.size(), mostNotes);
        notes.insert(notes.end(), different.begin(),
                     different.begin() + static_cast<std::ptrdiff_t>(count));
        if (different.size() > count) {
            notes.push_back("and " + std::to_string(different.size() - count) +
                            " more of this kind");
        }
    };
    addSome(walk.remarks().unlike);
    addSome(walk.doubts());

    const Tape::Losses& losses = m_work.losses();
    const auto count = [&notes](std::uint32_t number, const std::string& what) {
        if (number > 0) {
            notes.push_back(std::to_string(number) + what);
        }
    };
    count(losses.stepsFolded, " older requests are left out; what they set is set first");
    count(losses.requestsLost, " requests are lost: the memory was too small for them");
    count(losses.answersLost, " answers are lost: the memory was too small for them");
    count(losses.askedOutside,
          " times a neighbour was asked outside of these requests: by others, or by requests that "
          "did not come through the broker");
    count(losses.predicateThrew, " times the trigger threw");
    if (losses.refusedAtRestart) {
        notes.emplace_back("A start that the node refused tables or its minimum power is left out; "
                           "powers after it may differ");
    }
    if (!m_work.isStarted()) {
        notes.emplace_back("The service was not seen to start: its neighbours' answers are missing "
                           "if it started before the recorder was attached");
    }
    if ((m_met & Met::capabilityHandler) != 0 && (m_met & Met::capabilityHandlerAsGiven) == 0) {
        notes.emplace_back("The node has no capability handler under the number that the service "
                           "was built with, which a radio file cannot say");
    }
    return notes;
}

bool RadioFileWriter::write(std::ostream& stream) {
    fit();
    JsonText json;
    stream << "{\n  \"channel\": " << m_channel << ",\n  \"notes\": [";
    const char* separator = "\n    ";
    for (const std::string& note : notes()) {
        json.clear();
        json.text(note);
        stream << separator << json.written();
        separator = ",\n    ";
    }
    stream << "\n  ],\n";

    Walk walk(m_recorded, m_work, m_folded, m_met);
    json.clear();
    walk.base(json);
    if (!json.written().empty()) {
        stream << "  " << json.written() << ",\n";
    }
    stream << "  \"requests\": [";
    separator = "\n    ";
    walk.requests([&](const JsonText& request, std::uint32_t, std::size_t) {
        stream << separator << request.written();
        separator = ",\n    ";
    });
    stream << "\n  ]\n}\n";
    return stream.good();
}
