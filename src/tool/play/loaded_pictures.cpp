#include "tool/play/loaded_pictures.h"

#include <stdexcept>

#include "image/image_registry.h"
#include "shim/shim.h"

namespace kelmora {

namespace fs = std::filesystem;

namespace {

fs::path plainPath(const fs::path& path) {
    std::error_code error;
    return fs::weakly_canonical(path, error);
}

}  // namespace

LoadedPictures::LoadedPictures(GameSession& session) {
    VesperScript& engine = session.runtime().engine;
    session.wrap("Plush", "loadPNG",
                 [this, &engine](const Variable& original, const std::vector<Variable>& arguments) {
                     Variable loaded = engine.callCallable(original, arguments);
                     if (loaded.isMulti() && !loaded.values().empty() && loaded.values()[0].isPointer() &&
                         !arguments.empty() && arguments[0].isString())
                         files_[loaded.values()[0].pointerValue()] = plainPath(arguments[0].text());
                     return loaded;
                 });
    session.wrap("Plush", "killImage",
                 [this, &engine](const Variable& original, const std::vector<Variable>& arguments) {
                     if (!arguments.empty() && arguments[0].isPointer())
                         files_.erase(arguments[0].pointerValue());
                     return engine.callCallable(original, arguments);
                 });
}

int LoadedPictures::reload(const fs::path& file) {
    const fs::path wanted = plainPath(file);
    int count = 0;
    for (const auto& [picture, path] : files_) {
        auto* image = static_cast<PlushImage*>(const_cast<void*>(picture));
        if (path != wanted || !livePlushImages.contains(image)) continue;
        int width = 0;
        int height = 0;
        unsigned char* pixels = vh_load_png(file.string().c_str(), &width, &height);
        if (!pixels) throw std::runtime_error("the picture cannot be read");
        const PixelMemory old(image->pixels);
        image->pixels = pixels;
        image->width = width;
        image->height = height;
        ++count;
    }
    return count;
}

}  // namespace kelmora
