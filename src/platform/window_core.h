#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "image/plush_image.h"
#include "platform/key_table.h"
#include "platform/letterbox.h"
#include "platform/pixel_rows.h"
#include "platform/press_log.h"
#include "platform/smooth_scaler.h"
#include "platform/window_event.h"

namespace kelmora {

// A window without its display: what the game asked for, what the display reported, and the picture composed
// from both. A back end feeds it events and shows `dibPixels()`.
class WindowCore {
public:
    // Logical sizes are raised to at least 1; a null title means the default one. The client area is one
    // pixel until the display tells its size.
    WindowCore(const char* title, int width, int height);

    void handle(const WindowEvent& event);
    // Hears every event before it is handled. One listener at a time; an empty one ends it.
    void listen(std::function<void(const WindowEvent&)> listener) { listener_ = std::move(listener); }

    // What it gives true for goes no further. Hears events behind the listener; an empty one ends it.
    void intercept(std::function<bool(const WindowEvent&)> filter) { filter_ = std::move(filter); }
    // As if every key and button had been let go.
    void releaseAll();

    void setTitle(const char* title);
    void setLogicalSize(int width, int height);
    // The backbuffer takes the client area's size, and is blank until the next composition if that changed.
    void setClientSize(int width, int height);
    void setClearColour(ClearColour colour);
    // Keeps a copy. A picture without pixels is ignored.
    void pushImage(const PlushImage& image);
    // Lies over the picture from a row of the client area on, in its pixels; null takes it away. Keeps a
    // copy.
    void setOverlay(const PlushImage* image, int top);
    void setScaling(Scaling scaling);
    void requestClose() { shouldClose_ = true; }
    // Composes the picture if anything about it has changed; tells whether it did.
    bool composeIfDirty();

    const std::string& title() const { return title_; }
    int logicalWidth() const { return logicalWidth_; }
    int logicalHeight() const { return logicalHeight_; }
    int clientWidth() const { return clientWidth_; }
    int clientHeight() const { return clientHeight_; }
    bool shouldClose() const { return shouldClose_; }
    bool focused() const { return focused_; }
    // In pixels of the picture.
    int mouseX() const { return mouseX_; }
    int mouseY() const { return mouseY_; }
    bool buttonDown(MouseButton button) const { return buttons_[static_cast<std::size_t>(button)]; }
    bool anyButtonDown() const { return buttons_[0] || buttons_[1] || buttons_[2]; }
    KeyState keyState() const;
    // By virtual-key code; nothing is down without the focus.
    bool keyDown(int code) const {
        return focused_ && code >= 0 && code < 256 && keys_[static_cast<std::size_t>(code)];
    }
    // What went down since it was last asked for, the first press first; null after the last.
    const char* takePress() { return presses_.take(); }
    // Notches of the wheel since this was last asked, away from its user above 0.
    int takeWheel() { return std::exchange(wheel_, 0); }
    // Whether the player has asked for the other one of full screen and window since this was last asked.
    bool takeFullscreenToggle() { return std::exchange(fullscreenToggle_, false); }

    // Rows from the top without padding, client size: the picture in the device's order, and the same in RGBA
    // words, made when asked for.
    std::span<const std::uint32_t> dibPixels() const { return dibPixels_; }
    std::span<const std::uint32_t> backbuffer() const;
    // A copy of the backbuffer, which the caller owns.
    PlushImage* capture() const;

private:
    void loseFocus();
    void setKey(int code, bool down);
    bool togglesFullscreen(int code);
    void turnWheel(int notches);
    void updateMousePosition(int clientX, int clientY);
    // The pushed picture's size, or the logical size while there is none.
    int pictureWidth() const { return image_.empty() ? logicalWidth_ : imageWidth_; }
    int pictureHeight() const { return image_.empty() ? logicalHeight_ : imageHeight_; }
    Letterbox letterbox() const;
    // What is shown does not hold any more, and not for a changed row alone.
    void renewAll();
    bool isStale(int imageRow) const { return isAllStale_ || staleRows_[static_cast<std::size_t>(imageRow)]; }
    void renderIntoBackbuffer();
    void renderPicture();
    void renderOverlay();
    void renderImage(const Letterbox& box, std::uint32_t clearPixel);
    void renderRow(const Letterbox& box, int y, int imageRow, std::uint32_t clearPixel);
    void repeatRowAbove(int y);
    void renderSmooth(const Letterbox& box, std::uint32_t clearPixel);
    // A row of the picture between what is left of the window.
    void putRow(const Letterbox& box, int y, std::span<const std::uint32_t> drawn, std::uint32_t clearPixel);
    void bringRow(int imageRow);
    std::span<const std::uint32_t> imageRow(int row) const;
    std::size_t rowStart(int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(clientWidth_);
    }

    std::function<void(const WindowEvent&)> listener_;
    std::function<bool(const WindowEvent&)> filter_;
    bool shouldClose_ = false;
    bool focused_ = false;
    bool dirty_ = true;
    int clientWidth_ = 0;
    int clientHeight_ = 0;
    int logicalWidth_ = 1;
    int logicalHeight_ = 1;
    std::string title_;
    ClearColour clear_;
    int mouseX_ = 0;
    int mouseY_ = 0;
    std::array<bool, 3> buttons_{};
    std::array<bool, 256> keys_{};
    PressLog presses_;
    int wheel_ = 0;
    bool fullscreenToggle_ = false;
    bool returnIsTaken_ = false;  // by a toggle, until it comes up
    std::vector<std::uint32_t> image_;
    std::vector<bool> staleRows_;  // of the picture, since it was last shown
    bool isAllStale_ = true;
    int imageWidth_ = 0;
    int imageHeight_ = 0;
    std::vector<std::uint32_t> overlay_;
    int overlayWidth_ = 0;
    int overlayTop_ = 0;
    std::vector<std::uint32_t> dibPixels_;
    mutable std::vector<std::uint32_t> backbuffer_;
    mutable bool isBackbufferOld_ = false;
    std::vector<std::uint32_t> row_;
    std::vector<int> columns_;
    Scaling scaling_ = Scaling::nearest;
    SmoothScaler scaler_;
};

}  // namespace kelmora
