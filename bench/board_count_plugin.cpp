// A plugin for the board's emulator (qemu-arm -plugin ./libcount.so,arg=FILE): counts the
// instructions that are executed between two markers and writes the counts to FILE, one line for
// each region. The markers are instructions that do nothing, see CountedRegion.h.
//
// No package ships the emulator's plugin header; what is needed of it is declared here.

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>

extern "C" {

using qemu_plugin_id_t = std::uint64_t;
struct qemu_info_t;
struct qemu_plugin_tb;
struct qemu_plugin_insn;

enum qemu_plugin_cb_flags {
    QEMU_PLUGIN_CB_NO_REGS
};

using qemu_plugin_vcpu_tb_trans_cb_t = void (*)(qemu_plugin_id_t id, qemu_plugin_tb* tb);
using qemu_plugin_vcpu_udata_cb_t = void (*)(unsigned int vcpu, void* userdata);
using qemu_plugin_udata_cb_t = void (*)(qemu_plugin_id_t id, void* userdata);

void qemu_plugin_register_vcpu_tb_trans_cb(qemu_plugin_id_t id, qemu_plugin_vcpu_tb_trans_cb_t cb);
void qemu_plugin_register_atexit_cb(qemu_plugin_id_t id, qemu_plugin_udata_cb_t cb, void* userdata);
std::size_t qemu_plugin_tb_n_insns(const qemu_plugin_tb* tb);
qemu_plugin_insn* qemu_plugin_tb_get_insn(const qemu_plugin_tb* tb, std::size_t index);
const void* qemu_plugin_insn_data(const qemu_plugin_insn* insn);
std::size_t qemu_plugin_insn_size(const qemu_plugin_insn* insn);
void qemu_plugin_register_vcpu_insn_exec_cb(qemu_plugin_insn* insn, qemu_plugin_vcpu_udata_cb_t cb,
                                            qemu_plugin_cb_flags flags, void* userdata);

__attribute__((visibility("default"))) int qemu_plugin_version = 1;
__attribute__((visibility("default"))) int
qemu_plugin_install(qemu_plugin_id_t id, const qemu_info_t* info, int argc, char** argv);
}

namespace {

// In Thumb and in ARM encoding.
constexpr std::uint32_t thumbBegin = 0x46db; // mov r11, r11
constexpr std::uint32_t thumbEnd = 0x46e4;   // mov r12, r12
constexpr std::uint32_t armBegin = 0xe1a0b00b;
constexpr std::uint32_t armEnd = 0xe1a0c00c;

std::FILE* output = nullptr;
bool isCounting = false;
std::uint64_t count = 0;

void onBegin(unsigned int, void*) {
    isCounting = true;
    count = 0;
}

void onEnd(unsigned int, void*) {
    isCounting = false;
    std::fprintf(output, "%" PRIu64 "\n", count);
}

void onInstruction(unsigned int, void*) {
    count += isCounting ? 1 : 0;
}

qemu_plugin_vcpu_udata_cb_t callbackOf(const qemu_plugin_insn* insn) {
    const std::size_t size = qemu_plugin_insn_size(insn);
    std::uint32_t code = 0;
    std::memcpy(&code, qemu_plugin_insn_data(insn), size <= sizeof code ? size : sizeof code);
    if ((size == 2 && code == thumbBegin) || (size == 4 && code == armBegin)) {
        return onBegin;
    }
    if ((size == 2 && code == thumbEnd) || (size == 4 && code == armEnd)) {
        return onEnd;
    }
    return onInstruction;
}

void onTranslation(qemu_plugin_id_t, qemu_plugin_tb* tb) {
    for (std::size_t i = 0; i < qemu_plugin_tb_n_insns(tb); ++i) {
        qemu_plugin_insn* const insn = qemu_plugin_tb_get_insn(tb, i);
        qemu_plugin_register_vcpu_insn_exec_cb(insn, callbackOf(insn), QEMU_PLUGIN_CB_NO_REGS,
                                               nullptr);
    }
}

void onExit(qemu_plugin_id_t, void*) {
    std::fclose(output);
}

} // namespace

int qemu_plugin_install(qemu_plugin_id_t id, const qemu_info_t*, int argc, char** argv) {
    // Arguments arrive as NAME=VALUE; the name is of no interest.
    const char* const value = argc == 1 ? std::strchr(argv[0], '=') : nullptr;
    output = value == nullptr ? nullptr : std::fopen(value + 1, "w");
    if (output == nullptr) {
        std::fputs("usage: qemu-arm -plugin ./libcount.so,out=FILE PROGRAM\n", stderr);
        return 1;
    }
    qemu_plugin_register_vcpu_tb_trans_cb(id, onTranslation);
    qemu_plugin_register_atexit_cb(id, onExit, nullptr);
    return 0;
}
