#include "platform/linux/sdl_library.h"

#include <dlfcn.h>

#include <memory>

namespace kelmora {

const SdlLibrary* SdlLibrary::load() {
    static const std::unique_ptr<const SdlLibrary> library = []() -> std::unique_ptr<const SdlLibrary> {
        void* handle = dlopen("libSDL2-2.0.so.0", RTLD_NOW | RTLD_LOCAL);
        if (!handle) return nullptr;
        auto loaded = std::unique_ptr<const SdlLibrary>(new SdlLibrary(handle));
        return loaded->isComplete_ ? std::move(loaded) : nullptr;
    }();
    return library.get();
}

SdlLibrary::Symbol SdlLibrary::function(const char* name) {
    void* address = dlsym(handle_, name);
    if (!address) isComplete_ = false;
    return {address};
}

const SdlLibrary& sdl() {
    return *SdlLibrary::load();
}

}  // namespace kelmora
