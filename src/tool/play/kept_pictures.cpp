#include "tool/play/kept_pictures.h"

#include <cstring>

#include "image/image_registry.h"

namespace kelmora {

void KeptPictures::serve(GameSession& session) {
    VesperScript& engine = session.runtime().engine;
    session.wrap("Plush", "loadPNG",
                 [this, &engine](const Variable& original, const std::vector<Variable>& arguments) {
                     return load(engine, original, arguments);
                 });
}

Variable KeptPictures::load(VesperScript& engine, const Variable& original,
                            const std::vector<Variable>& arguments) {
    if (arguments.size() != 1 || !arguments[0].isString() ||
        arguments[0].text().find("/volatile/") != std::string::npos)
        return engine.callCallable(original, arguments);
    const std::string& path = arguments[0].text();
    const auto known = pictures_.find(path);
    if (known == pictures_.end()) {
        Variable loaded = engine.callCallable(original, arguments);
        keep(path, loaded);
        return loaded;
    }
    const Picture& picture = known->second;
    PixelMemory pixels = allocatePixels(picture.pixels.size());
    std::memcpy(pixels.get(), picture.pixels.data(), picture.pixels.size());
    PlushImage* image = adoptPixels(std::move(pixels), picture.width, picture.height);
    return Variable::makeMulti(
        {Variable::pointer(image), Variable::integer(picture.height), Variable::integer(picture.width)});
}

void KeptPictures::keep(const std::string& path, const Variable& loaded) {
    if (!loaded.isMulti() || loaded.values().empty() || !loaded.values()[0].isPointer()) return;
    auto* image = static_cast<PlushImage*>(loaded.values()[0].pointerValue());
    if (!livePlushImages.contains(image)) return;
    const std::size_t size =
        std::size_t{4} * static_cast<std::size_t>(image->width) * static_cast<std::size_t>(image->height);
    if (bytes_ + size > mostBytes) return;
    bytes_ += size;
    pictures_[path] = {image->width, image->height, {image->pixels, image->pixels + size}};
}

}  // namespace kelmora
