#include "ExplanationAudit.h"

#include <cstdlib>
#include <iostream>

/// Explains every answer of a run of random radio files and adds each one up again.
int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: qor-audit-explanations FIRST-SEED COUNT\n";
        return 4;
    }
    const std::uint64_t first = std::strtoull(argv[1], nullptr, 10);
    const std::uint64_t count = std::strtoull(argv[2], nullptr, 10);

    ExplanationAudit audit;
    for (std::uint64_t seed = first; seed < first + count; ++seed) {
        audit.auditRandomFile(seed);
        audit.auditRandomLog(seed);
        if (!audit.findings().empty()) {
            for (const std::string& finding : audit.findings()) {
                std::cout << finding << '\n';
            }
            return 1;
        }
    }
    std::cout << count << " random radio files, " << audit.starts() << " queries, "
              << audit.answers() << " powers and " << audit.refusals()
              << " refusals explained, and " << audit.loggedAnswers()
              << " powers from logs: every one adds up\n";
    for (const auto& [rule, times] : audit.decisive()) {
        std::cout << "  " << codeOf(rule) << ' ' << times << '\n';
    }
    return 0;
}
