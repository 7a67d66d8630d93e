#include "RadioFileError.h"

#include "JsonPointer.h"

namespace {

std::string lineOf(const std::string& place, const std::string& problem,
                   const std::string& remedy) {
    return place + ": " + problem + (remedy.empty() ? "" : "; " + remedy);
}

} // namespace

RadioFileError::RadioFileError(const TextPlace& place, const std::string& problem,
                               const std::string& remedy)
    : std::runtime_error(lineOf(placeText(place), problem, remedy))
    , m_textPlace(place)
    , m_place(placeText(place))
    , m_problem(problem)
    , m_remedy(remedy) {}

RadioFileError::RadioFileError(const std::vector<std::string>& path, const std::string& problem,
                               const std::string& remedy)
    : std::runtime_error(lineOf(pointerText(path), problem, remedy))
    , m_path(path)
    , m_place(pointerText(path))
    , m_problem(problem)
    , m_remedy(remedy) {}
