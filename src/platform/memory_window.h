#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "platform/recorded_input.h"
#include "platform/window_backend.h"

namespace kelmora {

struct WindowsWindow;

// A display that exists in memory only, focused from the start: pictures are composed and captured as on any
// other, and input comes from a test or from a recording.
class MemoryWindow : public WindowBackend {
public:
    // No client area is larger than the screen.
    static constexpr PixelSize screen{4096, 4096};
    // What full screen fills.
    static constexpr PixelSize fullscreenSize{1920, 1080};

    explicit MemoryWindow(WindowCore& core);

    // The event arrives with the next update.
    void post(const WindowEvent& event) { posted_.push_back(event); }
    // Plays the steps from the next update on. Relative paths of pictures are taken from `shotFolder` unless
    // that is empty. A picture that cannot be written raises std::runtime_error in its update.
    void play(std::vector<RecordedStep> steps, std::string shotFolder);

    const std::string& shownTitle() const { return shownTitle_; }
    bool hidden() const { return hidden_; }
    int presentCount() const { return presentCount_; }
    const std::string& copiedText() const { return copiedText_; }

    bool pumpEvents() override;
    void present() override;
    void setTitle(const char* title) override { shownTitle_ = title; }
    PixelSize setSize(int width, int height) override;
    void hide() override { hidden_ = true; }
    PixelSize screenSize() const override { return screen; }
    void setFullscreen(bool on) override;
    bool isFullscreen() const override { return fullscreen_; }
    // A recording finds the same window each time.
    std::optional<PixelArea> place() const override { return std::nullopt; }
    void setPlace(const PixelArea&) override {}
    bool copyText(const std::string& text) override {
        copiedText_ = text;
        return true;
    }
    std::vector<PixelArea> screens() const override { return {{0, 0, screen.width, screen.height}}; }

private:
    void save(const RecordedStep& shot) const;

    WindowCore& core_;
    std::deque<WindowEvent> posted_;
    std::vector<RecordedStep> steps_;
    std::size_t nextStep_ = 0;
    std::vector<RecordedStep> dueShots_;
    std::string shotFolder_;
    int update_ = 0;
    std::string shownTitle_;
    std::string copiedText_;
    bool hidden_ = false;
    bool fullscreen_ = false;
    PixelSize windowSize_{1, 1};  // to come back to from full screen
    int presentCount_ = 0;
};

// Plays the file that KELMORA_INPUT names, and writes pictures to the folder that KELMORA_SHOTS names. Raises
// std::runtime_error for a recording that cannot be read.
std::unique_ptr<MemoryWindow> createMemoryWindow(WindowCore& core);

// The memory display behind a window; null when it has another one.
MemoryWindow* memoryWindowOf(WindowsWindow* window);

}  // namespace kelmora
