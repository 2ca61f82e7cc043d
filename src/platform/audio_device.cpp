#include "platform/audio_device.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "platform/memory_audio.h"

namespace kelmora {

std::unique_ptr<AudioDevice> openAudioDevice(std::uint32_t sampleRate) {
    const char* chosen = std::getenv("KELMORA_AUDIO");
    const std::string audio = chosen ? chosen : "";
    if (audio.empty() || audio == systemAudioName()) return openSystemAudio(sampleRate);
    if (audio == "memory") return openMemoryAudio(sampleRate);
    throw std::runtime_error("KELMORA_AUDIO is \"" + audio + "\", expected \"memory\" or \"" +
                             systemAudioName() + "\"");
}

}  // namespace kelmora
