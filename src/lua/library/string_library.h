#pragma once

#include "lua/native_call.h"

namespace vesper::lua {

// string.pack and string.unpack: values as bytes, by a format like "<i4 s2 z".
void packText(NativeCall& call);
void unpackText(NativeCall& call);

}  // namespace vesper::lua
