#include <array>

#include "host/registration.h"
#include "shim/shim.h"

namespace kelmora {
namespace {

using PlatformQuery = bool (*)(char* buffer, unsigned size);

struct IntegerGlobal {
    const char* name;
    std::int32_t value;
};

constexpr IntegerGlobal screenGlobals[] = {
    {"VESPER_INT", 0},
    {"VESPER_FLOAT", 1},
    {"VESPER_BOOL", 2},
    {"VESPER_STRING", 3},
    {"VESPER_FUNCTION", 4},
    {"VESPER_POINTER", 5},
    {"VESPER_SCREEN_Y", 544},
    {"VESPER_SCREEN_X", 960},
    {"VESPER_SCREEN_CULL_FAR", 100},
    {"VESPER_SCREEN_CULL_NEAR", 0},
    {"VESPER_SCREEN_FOV", 90},
};

constexpr IntegerGlobal mouseGlobals[] = {
    {"VESPER_MOUSE_NIL", 0}, {"VESPER_MOUSE_LEFT", 1}, {"VESPER_MOUSE_MIDDLE", 2}, {"VESPER_MOUSE_RIGHT", 3}};

constexpr IntegerGlobal effectGlobals[] = {
    {"VESPER_GREYSCALE", 1},   {"VESPER_INACTIVE", 2},      {"VESPER_COLOUR_INVERT", 4},
    {"VESPER_COLOUR_FILL", 5}, {"VESPER_AETHER_INVERT", 3}, {"VESPER_AETHER_CLEANUP", 6},
    {"VESPER_AETHER_FILL", 7}, {"VESPER_AETHER_SET", 8},
};

constexpr IntegerGlobal layerGlobals[] = {
    {"VESPER_LAYER_FRAMEBUFFER", 1}, {"VESPER_LAYER_BACKGROUND", 2},  {"VESPER_LAYER_CHARACTER", 3},
    {"VESPER_LAYER_FOREGROUND", 4},  {"VESPER_LAYER_SUPERGROUND", 5},
};

constexpr IntegerGlobal taskGlobals[] = {
    {"VESPER_SKIP", 10},
    {"VESPER_IMAGE", 11},
    {"VESPER_TEXT", 12},
    {"VESPER_TEXT_SLIDE_RIGHT", 13},
    {"VESPER_TEXT_SLIDE_LEFT", 14},
    {"VESPER_CHARACTER1", 15},
    {"VESPER_CHARACTER2", 16},
    {"VESPER_CHARACTER3", 17},
    {"VESPER_CHARACTER4", 18},
    {"VESPER_PARALLAX", 19},
    {"VESPER_BACKGROUND", 20},
    {"VESPER_INTERFACE", 21},
    {"VESPER_MESSAGE", 22},
    {"VESPER_DATE", 23},
    {"VESPER_TIME", 24},
    {"VESPER_NAME", 25},
    {"VESPER_TITLE", 26},
    {"VESPER_LOCATION", 27},
    {"VESPER_REGION", 28},
    {"VESPER_WEATHER", 29},
    {"VESPER_OPTION_1", 31},
    {"VESPER_OPTION_2", 32},
    {"VESPER_OPTION_3", 33},
};

// Two names for the state 54: the target of a game is its visual novel.
constexpr IntegerGlobal stateGlobals[] = {
    {"VESPER_MENU_MAIN", 50},   {"VESPER_MENU_PAUSE", 51},        {"VESPER_MENU_SAVE", 52},
    {"VESPER_MENU_OPTION", 53}, {"VESPER_GAME_VISUAL_NOVEL", 54}, {"VESPER_GAME_TARGET", 54},
    {"VESPER_CREDIT", 55},      {"VESPER_GAME_NEW", 56},          {"VESPER_GAME_LOAD", 57},
    {"VESPER_RENDER_EXIT", 58},
};

class GlobalPublisher {
public:
    explicit GlobalPublisher(VesperScript& engine) : engine_(engine) {}

    void boolean(const std::string& name, bool value) {
        engine_.pushVariable(name, Variable::boolean(value));
    }
    void integer(const std::string& name, std::int32_t value) {
        engine_.pushVariable(name, Variable::integer(value));
    }
    void text(const std::string& name, const char* value) {
        engine_.pushVariable(name, Variable::text(value));
    }
    void number(const std::string& name, double value) {
        engine_.pushVariable(name, Variable::number(static_cast<float>(value)));
    }
    void integers(std::span<const IntegerGlobal> globals) {
        for (const IntegerGlobal& global : globals) integer(global.name, global.value);
    }
    void numbered(const std::string& prefix, int last, std::int32_t (*value)(int)) {
        for (int i = 1; i <= last; ++i) integer(prefix + std::to_string(i), value(i));
    }
    // Left as it was when the platform has no answer.
    void query(const std::string& name, PlatformQuery ask) {
        std::array<char, 512> buffer{};
        if (ask(buffer.data(), buffer.size())) text(name, buffer.data());
    }

private:
    VesperScript& engine_;
};

void publishCapabilities(GlobalPublisher& publish) {
    publish.boolean("METAL_ENABLED", vh_has_metal_window() != 0);
    publish.boolean("QUARTZ_ENABLED", vh_has_quartz_window() != 0);
    publish.boolean("MIXER_ENABLED", vh_has_mixer() != 0);
    publish.boolean("VESPERSCRIPT_ENABLED", true);
    publish.boolean("MIXER_SKIP_SLIDE", false);
    publish.boolean("VESPERBOOT_ENABLED", false);
    publish.text("VESPERBOOT_ARCH", "");
    publish.integer("VESPERBOOT_HARDWARE_THREADS", 1);
    publish.integer("LUA_VERSION_MAJOR", vh_lua_version_major());
    publish.integer("LUA_VERSION_MINOR", vh_lua_version_minor());
    publish.integer("LUA_VERSION_PATCH", vh_lua_version_patch());
    publish.number("LUA_VERSION", vh_lua_version_number());
    publish.text("VESPER_SCRIPT", "visual-novel.vs");
    publish.text("VESPER_GAME_NAME", "Kelmora Testing");
    publish.integers(screenGlobals);
    for (const char* flag : {"debugger", "debuggerdeep", "textframebuffer", "checksumBypass"})
        publish.boolean(flag, false);
}

void publishMachine(GlobalPublisher& publish) {
    for (const char* name :
         {"VESPER_PROCESSOR_NAME", "VESPER_PROCESSOR", "VESPER_OS_PLATFORM", "VESPER_OS_VERSION"})
        publish.integer(name, 0);
    publish.text("VESPER_USER_NAME", "");
    publish.text("VESPER_TEMP_DIRECTORY", "/tmp/");
    publish.boolean("VESPER_WINDOWS_ENABLED", platform_is_windows());
    publish.text("VESPER_ENGINE_VERSION", "v1.1");
    publish.text("VESPER_ENGINE_POSTFIX", "Prerelease");
    publish.integer("VESPER_FRAMERATE", 41);
    publish.boolean("VESPER_FEMALE", false);
    publish.integer("VESPER_AUDIO_OFFSET", 0);
    publish.boolean("VESPER_AUDIO_PLAYING", false);
    publish.integers(mouseGlobals);
    publish.query("VESPER_OS_PLATFORM", windows_platform_name);
    publish.query("VESPER_OS_VERSION", windows_version_string);
    publish.query("VESPER_PROCESSOR_NAME", windows_processor_name);
    publish.query("VESPER_USER_NAME", windows_user_name);
    publish.query("VESPER_TEMP_DIRECTORY", windows_temp_directory);
}

void publishRenderNames(GlobalPublisher& publish) {
    publish.integer("VESPER_TMP0", 0);
    publish.numbered("VESPER_TMP", 9, [](int) { return 0; });
    publish.integer("VESPER_RENDER_TMP", -1);
    publish.integer("VESPER_RENDER_TMP2", -1);
    publish.numbered("VESPER_RENDER_", 13, [](int i) { return i; });
    publish.numbered("VESPER_RENDER_S", 13, [](int i) { return i; });
    publish.boolean("VESPER_RENDER_SKIP_PARALLAX", false);
    publish.integer("VESPER_WEATHER_LAYER", -1);
    publish.integer("VESPER_WEATHER_CLEAR", 0);
    publish.integer("VESPER_WEATHER_LEAF", 1);
    publish.numbered("VESPER_WEATHER_LAYER_IMAGE", 5, [](int) { return 0; });
    publish.numbered("VESPER_WEATHER_LAYER_PATH", 5, [](int) { return 0; });
    publish.integers(effectGlobals);
    for (int i = 1; i <= 4; ++i) publish.boolean("VESPER_INACTIVE_" + std::to_string(i), false);
    publish.integers(layerGlobals);
    publish.integers(taskGlobals);
    publish.boolean("VESPER_PARALLAX_UIFG", false);
    publish.integers(stateGlobals);
}

}  // namespace

void publishEnvironmentGlobals(VesperScript& engine) {
    GlobalPublisher publish(engine);
    publishCapabilities(publish);
    publishMachine(publish);
    publishRenderNames(publish);
    // Slips of the keyboard that scripts may lean on.
    for (const char* slip : {"fasle", "flase", "flse"}) publish.boolean(slip, false);
    for (const char* slip : {"tre", "tue", "ture"}) publish.boolean(slip, true);
}

}  // namespace kelmora
