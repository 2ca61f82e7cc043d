#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/machine_facts.h"
#include "platform/system.h"
#include "platform/windows/windows_api.h"

namespace kelmora {

std::string executableFile() {
    std::vector<char> path(MAX_PATH);
    for (;;) {
        const DWORD length = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) return {};
        if (length < path.size()) return {path.data(), length};
        path.resize(path.size() * 2);
    }
}

std::string accountName() {
    std::array<char, 257> name{};  // what an account's name holds at most
    DWORD size = name.size();
    return GetUserNameA(name.data(), &size) ? name.data() : "";
}

std::string platformName() {
    SYSTEM_INFO system{};
    GetNativeSystemInfo(&system);
    const std::string name = "Windows ";
    switch (system.wProcessorArchitecture) {
        case 0:
            return name + "x86";
        case 5:
            return name + "arm";
        case 9:
            return name + "x86_64";
        case 12:
            return name + "arm64";
        default:
            return name + "Unknown";
    }
}

// GetVersionEx names an older version to programs that do not list this one.
std::string systemVersion() {
    const auto getVersion = systemFunction<LONG WINAPI(OSVERSIONINFOW*)>("ntdll.dll", "RtlGetVersion");
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (!getVersion || getVersion(&version) != 0) return {};
    return std::to_string(version.dwMajorVersion) + "." + std::to_string(version.dwMinorVersion) + "." +
           std::to_string(version.dwBuildNumber);
}

std::string processorModel() {
    std::array<char, 256> model{};
    DWORD size = model.size();
    const LSTATUS status =
        RegGetValueA(HKEY_LOCAL_MACHINE, "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0",
                     "ProcessorNameString", RRF_RT_REG_SZ, nullptr, model.data(), &size);
    return status == ERROR_SUCCESS ? model.data() : "";
}

std::string temporaryFolder() {
    std::array<char, MAX_PATH + 1> folder{};
    const DWORD length = GetTempPathA(folder.size(), folder.data());
    return length < folder.size() ? std::string(folder.data(), length) : std::string();
}

std::string userDataFolder() {
    std::array<char, 1024> folder{};
    const DWORD length = GetEnvironmentVariableA("LOCALAPPDATA", folder.data(), folder.size());
    return length > 0 && length < folder.size() ? std::string(folder.data(), length) + "\\" : std::string();
}

}  // namespace kelmora

bool platform_is_windows() {
    return true;
}

bool platform_show_message(const char* title, const char* text) {
    return MessageBoxA(nullptr, text, title, MB_OK | MB_ICONINFORMATION | MB_SETFOREGROUND) != 0;
}

std::uintptr_t platform_stack_low_address() {
    const char here = 0;
    MEMORY_BASIC_INFORMATION region{};
    if (VirtualQuery(&here, &region, sizeof region) == 0) return 0;
    return reinterpret_cast<std::uintptr_t>(region.AllocationBase);
}

void platform_raise_thread_priority() {
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_ABOVE_NORMAL);
}
