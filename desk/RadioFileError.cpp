#include "RadioFileError.h"

namespace {

std::string lineOf(const std::string& place, const std::string& problem,
                   const std::string& remedy) {
    return place + ": " + problem + (remedy.empty() ? "" : "; " + remedy);
}

} // namespace

RadioFileError::RadioFileError(const std::string& place, const std::string& problem,
                               const std::string& remedy)
    : std::runtime_error(lineOf(place, problem, remedy))
    , m_place(place)
    , m_problem(problem)
    , m_remedy(remedy) {}
