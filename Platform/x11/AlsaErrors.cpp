#include "Platform/x11/AlsaErrors.h"

#include <dlfcn.h>

namespace kestrova {

namespace {

// As the library's header declares them.
using Handler = void (*)(const char* file, int line, const char* function, int error, const char* format,
                         ...);
using SetHandler = int (*)(Handler);

void ignore(const char*, int, const char*, int, const char*, ...) {}

} // namespace

void keepAlsaFromWriting() {
    // Who plays through a sound server never has the library, and shall not get it for this.
    void* const library = dlopen("libasound.so.2", RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr)
        return;
    if (const auto setHandler = reinterpret_cast<SetHandler>(dlsym(library, "snd_lib_error_set_handler")))
        setHandler(ignore);
    dlclose(library);
}

} // namespace kestrova
