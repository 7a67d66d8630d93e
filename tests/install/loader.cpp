// A host that opens the library at run time: it opens the shared objects that are named, one after
// the other, and runs the main() of the last.

#include <dlfcn.h>

#include <cstdio>

int main(int argc, char** argv) {
    void* last = nullptr;
    for (int i = 1; i < argc; ++i) {
        last = dlopen(argv[i], RTLD_NOW | RTLD_GLOBAL);
        if (last == nullptr) {
            std::fprintf(stderr, "%s\n", dlerror());
            return 1;
        }
    }
    const auto run = reinterpret_cast<int (*)()>(dlsym(last, "main"));
    return run == nullptr ? 1 : run();
}
