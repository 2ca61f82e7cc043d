#pragma once

#include "image/plush_image.h"
#include "script/binding.h"

namespace kelmora {

// The image behind a handle; null for one that is dead, forged or of another kind, and for one without
// pixels.
PlushImage* findLiveImage(const void* handle);
// The same, and else raises "<name> must be a valid image".
PlushImage& liveImage(const BindingCall& call, const void* handle, std::string_view name);
PlushImage& imageArgument(const BindingCall& call, std::size_t index, std::string_view name);

}  // namespace kelmora
