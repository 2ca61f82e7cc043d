#include "bindings/image_arguments.h"

#include "image/image_registry.h"

namespace kelmora {

PlushImage* findLiveImage(const void* handle) {
    auto* image = static_cast<PlushImage*>(const_cast<void*>(handle));
    return image && livePlushImages.contains(image) && image->pixels ? image : nullptr;
}

PlushImage& liveImage(const BindingCall& call, const void* handle, std::string_view name) {
    PlushImage* image = findLiveImage(handle);
    if (!image) call.fail(std::string(name) + " must be a valid image");
    return *image;
}

PlushImage& imageArgument(const BindingCall& call, std::size_t index, std::string_view name) {
    return liveImage(call, call.pointer(index, name), name);
}

}  // namespace kelmora
