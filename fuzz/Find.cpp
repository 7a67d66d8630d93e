#include "Find.h"

#include <cstdlib>
#include <iostream>

void reportFind(const std::string& what) {
    std::cerr << "FIND: " << what << std::endl;
    std::abort();
}
