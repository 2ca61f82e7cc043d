#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include "ai/ai_generation.h"
#include "ai/ai_model_file.h"

// What is read once and written reads back as itself, unless its marks have moved: then it is read or
// refused.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) try {
    const auto model = kelmora::aiModelFromText({reinterpret_cast<const char*>(data), size});
    kelmora::AIRandom random(1);
    kelmora::aiGenerateTextImpl(model, {{}, 50, "x", 2}, random);
    if (kelmora::aiModelFromText(kelmora::aiModelText(model)).stateCount() > model.stateCount()) std::abort();
    return 0;
} catch (const std::runtime_error&) {
    return 0;
}
