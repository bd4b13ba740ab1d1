// module_record FILE: loads a module as a script runtime does and prints the record that it
// registers, as JSON. What the module needs of a runtime beyond the registration stays unbound.

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>

namespace {

/// The record as a runtime reads it.
struct Record {
    int version;
    unsigned flags;
    void* library;
    const char* file;
    void* initialise;
    void* initialiseContext;
    const char* name;
    void* data;
    Record* next;
};

Record* registered = nullptr;
int registrations = 0;

/// How many static objects were made, by the calls that ask for taking them down at exit.
int statics = 0;
int staticsAtRegistration = 0;

/// An address, and whether it was found in a segment that can be written.
struct Search {
    uintptr_t address;
    bool isWritable;
};

int lookInto(dl_phdr_info* library, size_t, void* data) {
    auto& search = *static_cast<Search*>(data);
    for (int index = 0; index < library->dlpi_phnum; ++index) {
        const auto& segment = library->dlpi_phdr[index];
        const uintptr_t offset = search.address - (library->dlpi_addr + segment.p_vaddr);
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_W) != 0 && offset < segment.p_memsz)
            search.isWritable = true;
    }
    return 0;
}

bool isWritable(const void* address) {
    Search search{reinterpret_cast<uintptr_t>(address), false};
    dl_iterate_phdr(lookInto, &search);
    return search.isWritable;
}

/// Whether two addresses lie in the same library.
bool areTogether(const void* one, const void* other) {
    Dl_info first{};
    Dl_info second{};
    return dladdr(one, &first) != 0 && dladdr(other, &second) != 0 &&
           first.dli_fbase == second.dli_fbase;
}

const char* truth(bool value) { return value ? "true" : "false"; }

/// Whether the place of the current input worker, which the module shows, holds one.
bool hasInputWorker(void* module) {
    void* const* place = static_cast<void**>(dlsym(module, "g_input_worker"));
    return place == nullptr || *place != nullptr;
}

void print(const Record& record, void* module) {
    std::printf("{\"version\":%d,\"flags\":%u,\"library\":%s,", record.version, record.flags,
                truth(record.library != nullptr));
    std::printf("\"file\":\"%s\",\"initialise\":%s,\"initialiseContext\":%s,", record.file,
                truth(areTogether(record.initialise, &record)),
                truth(record.initialiseContext != nullptr));
    std::printf("\"name\":\"%s\",\"data\":%s,\"next\":%s,", record.name,
                truth(record.data != nullptr), truth(record.next != nullptr));
    std::printf("\"writable\":%s,\"registrations\":%d,\"isLast\":%s,\"inputWorker\":%s}\n",
                truth(isWritable(&record)), registrations, truth(statics == staticsAtRegistration),
                truth(hasInputWorker(module)));
}

}  // namespace

extern "C" __attribute__((visibility("default"))) void node_module_register(void* record) {
    registered = static_cast<Record*>(record);
    ++registrations;
    staticsAtRegistration = statics;
}

// In place of the C library's; the name that ARM has for it, and the others'.
extern "C" __attribute__((visibility("default"))) int __aeabi_atexit(void*, void (*)(void*),
                                                                     void*) {
    ++statics;
    return 0;
}

extern "C" __attribute__((visibility("default"))) int __cxa_atexit(void (*)(void*), void*, void*) {
    ++statics;
    return 0;
}

int main(int count, char** words) {
    if (count != 2) {
        std::fprintf(stderr, "usage: module_record FILE\n");
        return 2;
    }
    void* const module = dlopen(words[1], RTLD_LAZY);
    if (module == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    if (registered == nullptr) {
        std::fprintf(stderr, "%s registers nothing\n", words[1]);
        return 1;
    }
    print(*registered, module);
    std::fflush(stdout);
    // Without the module's destructors, which may ask the runtime that isn't there.
    _exit(0);
}
