# Writes the source file that holds the example radios.
#
#   cmake -D OUTPUT=FILE.cpp -D RADIOS=FILE.json;... -P EmbedExampleRadios.cmake
set(entries "")
list(SORT RADIOS)
foreach(radio IN LISTS RADIOS)
    cmake_path(GET radio FILENAME name)
    file(READ "${radio}" text)
    if(text MATCHES "\\)radio\"")
        message(FATAL_ERROR "${radio} holds what ends a text in the source file: )radio\"")
    endif()
    string(APPEND entries "        {\"${name}\", R\"radio(${text})radio\"},\n")
endforeach()
file(WRITE "${OUTPUT}" "#include \"ExampleRadios.h\"

const std::vector<ExampleRadio>& exampleRadios() {
    static const std::vector<ExampleRadio> radios{
${entries}    };
    return radios;
}
")
