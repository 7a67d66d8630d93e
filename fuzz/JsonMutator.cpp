#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <utility>
#include <vector>

/// Changes radio files as JSON, every other time: bytes changed at random are mostly a syntax
/// error, and those are soon all known.

extern "C" {

/// libFuzzer's own mutations.
std::size_t LLVMFuzzerMutate(std::uint8_t* bytes, std::size_t size, std::size_t maxSize);

/// What libFuzzer calls in their place.
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size, std::size_t maxSize,
                                    unsigned seed);
}

namespace {

using nlohmann::json;

const json values = json::parse(R"([
    0, 1, 2, 3, -1, 4, 7, 28, 31, 56, 100, 163, 1000, 2600, 32767, 32768, -32768, -32769, 65536, 100000,
    2147483647, 2147483648, -2147483648, 4294967295, 4294967296, 1.5, "", "4QAM", "256QAM", "4096QAM",
    "UNDEFINED", "2", "6HB", "Ansi", "Global", "QZT 846 003", "QZT35205/1HP", true, false, null])");

/// Every value of a document, the document itself first.
void collect(json& value, std::vector<json*>& all) {
    all.push_back(&value);
    if (value.is_structured()) {
        for (json& member : value) {
            collect(member, all);
        }
    }
}

class Mutator {
public:
    Mutator(json& document, unsigned seed)
        : m_random(seed) {
        collect(document, m_all);
    }

    void mutate() {
        json& value = *m_all[below(m_all.size())];
        switch (below(value.is_structured() && !value.empty() ? 7 : 3)) {
        case 0:
            value = values[below(values.size())];
            break;
        case 1:
            value = json(*m_all[below(m_all.size())]);
            break;
        case 2:
            change(value);
            break;
        case 3:
        case 4:
            remove(value);
            break;
        case 5:
            insert(value);
            break;
        default:
            std::swap(member(value), member(value));
            break;
        }
    }

private:
    std::size_t below(std::size_t count) { return m_random() % count; }

    json& member(json& container) {
        return *std::next(container.begin(), static_cast<std::ptrdiff_t>(below(container.size())));
    }

    void change(json& value) {
        if (value.is_number_integer()) {
            // Near values tell a limit from its neighbours.
            value = static_cast<std::int64_t>(value.get<std::uint64_t>() + below(5) - 2);
        } else if (value.is_boolean()) {
            value = !value.get<bool>();
        } else if (value.is_object()) {
            value = json{{"result", values[below(values.size())]}};
        } else {
            value = json::array({value});
        }
    }

    void remove(json& container) {
        container.erase(
            std::next(container.begin(), static_cast<std::ptrdiff_t>(below(container.size()))));
    }

    /// Adds a member or element that another container of the kind has, under its own key.
    void insert(json& container) {
        const json& other = *m_all[below(m_all.size())];
        if (container.is_array()) {
            container.insert(
                std::next(container.begin(), static_cast<std::ptrdiff_t>(below(container.size()))),
                json(other.is_array() && !other.empty() ? other.front() : other));
        } else if (other.is_object() && !other.empty()) {
            const auto chosen =
                std::next(other.begin(), static_cast<std::ptrdiff_t>(below(other.size())));
            const std::string key = chosen.key();
            const json content = chosen.value();
            container[key] = content;
        }
    }

    std::minstd_rand m_random;
    std::vector<json*> m_all;
};

} // namespace

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size, std::size_t maxSize,
                                    unsigned seed) {
    if (seed % 2 == 0) {
        json document = json::parse(bytes, bytes + size, nullptr, false, true);
        if (!document.is_discarded()) {
            Mutator(document, seed).mutate();
            // Texts that are no UTF-8 have not been parsed.
            const std::string text = document.dump();
            if (text.size() <= maxSize) {
                std::copy(text.begin(), text.end(), bytes);
                return text.size();
            }
        }
    }
    return LLVMFuzzerMutate(bytes, size, maxSize);
}
