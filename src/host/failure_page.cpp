#include "host/failure_page.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string_view>
#include <system_error>

#include "audio/track.h"
#include "base/whole_file.h"
#include "host/message_page.h"
#include "shim/shim.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

std::string timeText(std::time_t time) {
    std::array<char, 32> text{};
    const std::tm* parts = std::localtime(&time);
    if (!parts || std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", parts) == 0) return "";
    return text.data();
}

// Files by which games keep a place to come back to.
bool isSave(const fs::path& file) {
    const std::string name = file.filename().string();
    return file.extension() == ".save" ||
           (file.extension() == ".plush" && name.starts_with("save") && !name.starts_with("save-"));
}

std::string savedWords(const fs::path& folder) {
    std::error_code error;
    std::optional<fs::file_time_type> newest;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const fs::file_time_type time = entry.last_write_time(error);
        if (!error && isSave(entry.path()) && (!newest || time > *newest)) newest = time;
    }
    if (!newest) return "Nothing had been saved yet.";
    const auto age =
        std::chrono::duration_cast<std::chrono::seconds>(fs::file_time_type::clock::now() - *newest);
    return "What was saved is kept. The newest is from " +
           timeText(std::time(nullptr) - static_cast<std::time_t>(age.count())) + ".";
}

std::string calmText(const Runtime& runtime, const std::string& errorFile, bool isWritten) {
    std::string text = "The story stopped here, by a fault that is not yours.\n\n" +
                       savedWords(runtime.keptFolder()) + "\n\n";
    if (isWritten)
        text += "What happened is in the file\n" + errorFile +
                "\nThe people who made the game will want to see it.";
    return text;
}

bool isUnseen() {
    const char* video = std::getenv("KELMORA_VIDEO");
    return video && std::string_view(video) == "memory";
}

bool tellPlayer(Runtime& runtime, const std::string& failure, const std::function<void()>& update) {
    const std::string file = fs::path(runtime.keptFolder() + "error.txt").lexically_normal().string();
    const bool isWritten = writeWholeFile(file, timeText(std::time(nullptr)) + "\n" + failure);
    MessagePage page;
    page.mood = MessagePage::Mood::calm;
    page.title = runtime.windowTitle.empty() ? "The game stopped" : runtime.windowTitle;
    page.text = calmText(runtime, file, isWritten);
    page.copied = failure;
    if (runtime.window) {
        showMessagePage(runtime.window, page, update);
    } else if (!isUnseen()) {
        platform_show_message(page.title.c_str(), page.text.c_str());
    }
    return false;
}

// Paths as the author knows them, from the game's folder on.
std::string withShortPaths(std::string failure, const Runtime& runtime) {
    const std::string root = fs::path(runtime.path + "..").lexically_normal().generic_string();
    if (root.size() < 2) return failure;
    const std::string prefix = root.back() == '/' ? root : root + "/";
    for (std::size_t at = 0; (at = failure.find(prefix, at)) != std::string::npos;)
        failure.erase(at, prefix.size());
    return failure;
}

bool tellAuthor(Runtime& runtime, const std::string& failure, const std::function<void()>& update) {
    if (!runtime.window) return false;
    MessagePage page;
    page.title = "The game stopped";
    page.text = withShortPaths(failure, runtime);
    page.copied = failure;
    page.mayReload = true;
    return showMessagePage(runtime.window, page, update) == PageEnd::reload;
}

}  // namespace

bool isPacked(const Runtime& runtime) {
    std::error_code error;
    return fs::is_regular_file(runtime.path + "../Resources/packed.txt", error);
}

bool showFailure(Runtime& runtime, const std::string& failure, const std::function<void()>& update) try {
    vesper::audio::clear();
    return isPacked(runtime) ? tellPlayer(runtime, failure, update) : tellAuthor(runtime, failure, update);
} catch (const std::exception& error) {
    std::cerr << "The failure cannot be shown: " << error.what() << std::endl;
    return false;
}

}  // namespace kelmora
