#include "platform/machine_facts.h"

#include <chrono>
#include <cstring>
#include <string_view>
#include <thread>

#include "platform/system.h"

namespace {

bool copyOut(std::string_view text, char* buffer, unsigned size) {
    if (!buffer || size == 0) return false;
    buffer[0] = '\0';
    if (text.empty() || text.size() >= size) return false;
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = '\0';
    return true;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

}  // namespace

bool windows_executable_directory(char* buffer, unsigned size) {
    const std::string path = kelmora::executableFile();
    return copyOut(std::string_view(path).substr(0, path.find_last_of("/\\") + 1), buffer, size);
}

bool windows_user_name(char* buffer, unsigned size) {
    return copyOut(trimmed(kelmora::accountName()), buffer, size);
}

bool windows_platform_name(char* buffer, unsigned size) {
    return copyOut(kelmora::platformName(), buffer, size);
}

bool windows_version_string(char* buffer, unsigned size) {
    const std::string version = kelmora::systemVersion();
    return copyOut(version.empty() ? "Unknown" : version, buffer, size);
}

bool windows_processor_name(char* buffer, unsigned size) {
    const std::string model(trimmed(kelmora::processorModel()));
    if (!model.empty()) return copyOut(model, buffer, size);
    const std::string platform = kelmora::platformName();
    return copyOut(platform.empty() ? "Unknown" : "Unknown " + platform, buffer, size);
}

bool platform_user_data_directory(char* buffer, unsigned size) {
    return copyOut(kelmora::userDataFolder(), buffer, size);
}

bool windows_temp_directory(char* buffer, unsigned size) {
    return copyOut(kelmora::temporaryFolder(), buffer, size) || copyOut("./", buffer, size);
}

void vh_sleep_ms(int milliseconds) {
    if (milliseconds > 0) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}
