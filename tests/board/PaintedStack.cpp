#include "PaintedStack.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ucontext.h>

namespace {

constexpr std::uint32_t paint = 0xA5C35A3C;

// Of the program, so that painting takes nothing from the heap.
alignas(16) std::array<std::uint32_t, 65536> s_stack;
const std::function<void()>* s_action;
std::uintptr_t s_call;
ucontext_t s_here;
ucontext_t s_there;

void runOnStack() {
    s_call = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    (*s_action)();
}

} // namespace

std::size_t PaintedStack::depthOf(const std::function<void()>& action) {
    s_stack.fill(paint);
    s_action = &action;
    if (getcontext(&s_there) != 0) {
        std::perror("getcontext");
        std::exit(1);
    }
    s_there.uc_stack.ss_sp = s_stack.data();
    s_there.uc_stack.ss_size = sizeof(s_stack);
    s_there.uc_link = &s_here;
    makecontext(&s_there, runOnStack, 0);
    if (swapcontext(&s_here, &s_there) != 0) {
        std::perror("swapcontext");
        std::exit(1);
    }
    const auto* const deepest = std::find_if(s_stack.begin(), s_stack.end(),
                                             [](std::uint32_t word) { return word != paint; });
    if (deepest == s_stack.begin()) {
        std::fputs("the painted stack is too small\n", stderr);
        std::exit(1);
    }
    return s_call - reinterpret_cast<std::uintptr_t>(deepest);
}
