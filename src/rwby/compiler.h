#pragma once

#include <string_view>

#include "base/native_stack.h"
#include "base/ref.h"
#include "rwby/program.h"

namespace vesper::ruby {

// The instructions of a source, not yet finalised. Raises GuestError with the place of what it met.
kelmora::Ref<Program> compileSource(std::string_view source, std::string_view chunkName,
                                    const kelmora::NativeStack& stack);

}  // namespace vesper::ruby
