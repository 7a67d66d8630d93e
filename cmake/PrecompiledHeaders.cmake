# QOR_PRECOMPILED_HEADERS parses the large headers of others once for many sources. It is for builds of
# everything that nobody changes in between. A source that forgets an include of its own compiles with it,
# and a compiler cache keeps less, so it is off unless a preset asks for it.
option(QOR_PRECOMPILED_HEADERS "Parse the headers of the standard library and of packages once" OFF)

set(qor_standard_headers
    <algorithm> <array> <cstddef> <cstdint> <filesystem> <fstream> <functional> <iostream> <map> <memory>
    <optional> <set> <sstream> <string> <string_view> <utility> <variant> <vector>)

# qor_precompile_headers(TARGET HEADERS...): a target with many sources that include these and the
# standard library's.
function(qor_precompile_headers target)
    if(QOR_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} PRIVATE ${qor_standard_headers} ${ARGN})
    endif()
endfunction()
