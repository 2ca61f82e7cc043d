#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "image/plush_image.h"
#include "platform/key_table.h"
#include "platform/letterbox.h"
#include "platform/pixel_rows.h"
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

    void setTitle(const char* title);
    void setLogicalSize(int width, int height);
    // The backbuffer takes the client area's size, and is blank until the next composition if that changed.
    void setClientSize(int width, int height);
    void setClearColour(ClearColour colour);
    // Keeps a copy. A picture without pixels is ignored.
    void pushImage(const PlushImage& image);
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

    // Rows from the top without padding, client size: the picture in the device's order, and the same in RGBA
    // words, made when asked for.
    std::span<const std::uint32_t> dibPixels() const { return dibPixels_; }
    std::span<const std::uint32_t> backbuffer() const;
    // A copy of the backbuffer, which the caller owns.
    PlushImage* capture() const;

private:
    void loseFocus();
    void setKey(int code, bool down);
    void updateMousePosition(int clientX, int clientY);
    // The pushed picture's size, or the logical size while there is none.
    int pictureWidth() const { return image_.empty() ? logicalWidth_ : imageWidth_; }
    int pictureHeight() const { return image_.empty() ? logicalHeight_ : imageHeight_; }
    Letterbox letterbox() const;
    void renderIntoBackbuffer();
    void renderImage(const Letterbox& box, std::uint32_t clearPixel);
    void renderRow(const Letterbox& box, int y, int imageRow, std::uint32_t clearPixel);
    void repeatRowAbove(int y);
    std::size_t rowStart(int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(clientWidth_);
    }

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
    std::vector<std::uint32_t> image_;
    int imageWidth_ = 0;
    int imageHeight_ = 0;
    std::vector<std::uint32_t> dibPixels_;
    mutable std::vector<std::uint32_t> backbuffer_;
    mutable bool isBackbufferOld_ = false;
    std::vector<std::uint32_t> row_;
    std::vector<int> columns_;
};

}  // namespace kelmora
