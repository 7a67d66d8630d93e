#include "Datum.h"
#include "Engine.h"

#include <array>
#include <cstddef>
#include <emscripten/emscripten.h>
#include <string>

// What the page calls: it puts its two texts where qorInput() says, calls qorAsk(), and reads the
// two texts that qorOutput() points at until the next call.

namespace {

std::array<std::string, 2> inputs;  // request, text
std::array<std::string, 2> outputs; // answer, messages as a JSON list

Engine& engine() {
    static Engine instance;
    return instance;
}

} // namespace

extern "C" {

/// Room for so many bytes of the request (0) or of the text (1).
EMSCRIPTEN_KEEPALIVE char* qorInput(std::size_t which, std::size_t size) {
    inputs.at(which).resize(size);
    return inputs.at(which).data();
}

/// @return the outcome, by its number.
EMSCRIPTEN_KEEPALIVE int qorAsk() {
    Engine::Answer answer = engine().ask(inputs[0], inputs[1]);
    outputs = {std::move(answer.text), jsonLine(answer.messages)};
    return static_cast<int>(answer.outcome);
}

/// The answer (0) or its messages (1).
EMSCRIPTEN_KEEPALIVE const char* qorOutput(std::size_t which) {
    return outputs.at(which).data();
}

EMSCRIPTEN_KEEPALIVE std::size_t qorOutputSize(std::size_t which) {
    return outputs.at(which).size();
}

} // extern "C"
