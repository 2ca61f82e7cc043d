#include "platform/window_core.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <numeric>

#include "image/pixel_memory.h"

namespace kelmora {
namespace {

constexpr const char* defaultTitle = "VesperMoon";

}  // namespace

WindowCore::WindowCore(const char* title, int width, int height) {
    setTitle(title);
    setLogicalSize(width, height);
    setClientSize(1, 1);
}

void WindowCore::handle(const WindowEvent& event) {
    using Kind = WindowEvent::Kind;
    if (listener_) listener_(event);
    if (filter_ && filter_(event)) return;
    switch (event.kind) {
        case Kind::resized:
            return setClientSize(event.x, event.y);
        case Kind::focusGained:
            focused_ = true;
            return;
        case Kind::focusLost:
            return loseFocus();
        case Kind::closeRequested:
            return requestClose();
        case Kind::keyDown:
            return setKey(event.keyCode, true);
        case Kind::keyUp:
            return setKey(event.keyCode, false);
        case Kind::mouseMoved:
            return updateMousePosition(event.x, event.y);
        case Kind::buttonDown:
            presses_.add(event.button);
            [[fallthrough]];
        case Kind::buttonUp:
            updateMousePosition(event.x, event.y);
            buttons_[static_cast<std::size_t>(event.button)] = event.kind == Kind::buttonDown;
            return;
        case Kind::wheelTurned:
            return turnWheel(event.y);
        case Kind::typed:
            return;
    }
}

// The releases go to whoever has the focus now, so nothing may stay down here.
void WindowCore::loseFocus() {
    focused_ = false;
    releaseAll();
}

void WindowCore::releaseAll() {
    buttons_.fill(false);
    keys_.fill(false);
    returnIsTaken_ = false;
}

// A system may repeat a key that is held; only the first of those is a press.
void WindowCore::setKey(int code, bool down) {
    if (code < 0 || code > 255) return;
    bool& isDown = keys_[static_cast<std::size_t>(code)];
    if (down && !isDown && focused_) {
        if (togglesFullscreen(code)) return;
        presses_.add(code);
    }
    if (!down && code == keyReturn) returnIsTaken_ = false;
    isDown = down;
}

// The Return of Alt+Return is for the window alone: a script would take it for an answer.
bool WindowCore::togglesFullscreen(int code) {
    const bool altReturn = code == keyReturn && (keys_[keyAlt] || returnIsTaken_);
    if (code == keyF11 || (altReturn && !returnIsTaken_)) fullscreenToggle_ = !fullscreenToggle_;
    if (altReturn) returnIsTaken_ = true;
    return altReturn;
}

void WindowCore::turnWheel(int notches) {
    constexpr int farthest = 1000;
    wheel_ = std::clamp(wheel_ + std::clamp(notches, -farthest, farthest), -farthest, farthest);
    presses_.addWheel(std::clamp(notches, -farthest, farthest));
}

KeyState WindowCore::keyState() const {
    KeyState state;
    if (!focused_) return state;
    for (std::size_t i = 0; i < keySlotCount; ++i) {
        const KeySlot& slot = keyTable[i];
        state.down[i] = keys_[slot.code] || (slot.otherCode != 0 && keys_[slot.otherCode]);
    }
    return state;
}

void WindowCore::setTitle(const char* title) {
    title_ = title ? title : defaultTitle;
}

void WindowCore::setLogicalSize(int width, int height) {
    logicalWidth_ = std::max(width, 1);
    logicalHeight_ = std::max(height, 1);
    renewAll();
}

void WindowCore::setClientSize(int width, int height) {
    width = std::max(width, 1);
    height = std::max(height, 1);
    renewAll();
    if (width == clientWidth_ && height == clientHeight_) return;
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    std::vector<std::uint32_t> backbuffer(count);
    std::vector<std::uint32_t> dibPixels(count);
    backbuffer_.swap(backbuffer);
    dibPixels_.swap(dibPixels);
    isBackbufferOld_ = false;
    clientWidth_ = width;
    clientHeight_ = height;
}

void WindowCore::setClearColour(ClearColour colour) {
    clear_ = colour;
    renewAll();
}

void WindowCore::setScaling(Scaling scaling) {
    scaling_ = scaling;
    renewAll();
}

void WindowCore::pushImage(const PlushImage& image) {
    if (image.width < 1 || image.height < 1 || !image.pixels) return;
    dirty_ = true;
    const auto width = static_cast<std::size_t>(image.width);
    const auto height = static_cast<std::size_t>(image.height);
    if (image.width != imageWidth_ || image.height != imageHeight_) {
        isAllStale_ = true;
        image_.resize(width * height);
        staleRows_.assign(height, false);
        imageWidth_ = image.width;
        imageHeight_ = image.height;
    }
    const std::size_t rowBytes = width * sizeof(std::uint32_t);
    for (std::size_t y = 0; y < height; ++y) {
        std::uint32_t* const row = image_.data() + y * width;
        const unsigned char* const pushed = image.pixels + y * rowBytes;
        if (std::memcmp(row, pushed, rowBytes) == 0) continue;
        std::memcpy(row, pushed, rowBytes);
        staleRows_[y] = true;
    }
}

void WindowCore::renewAll() {
    dirty_ = true;
    isAllStale_ = true;
}

Letterbox WindowCore::letterbox() const {
    return letterboxOf(scaling_, clientWidth_, clientHeight_, pictureWidth(), pictureHeight());
}

void WindowCore::updateMousePosition(int clientX, int clientY) {
    const Letterbox box = letterbox();
    mouseX_ = imagePosition(clientX, box.x, box.width, pictureWidth());
    mouseY_ = imagePosition(clientY, box.y, box.height, pictureHeight());
}

bool WindowCore::composeIfDirty() {
    if (!dirty_) return false;
    renderIntoBackbuffer();
    dirty_ = false;
    return true;
}

void WindowCore::setOverlay(const PlushImage* image, int top) {
    if (image || !overlay_.empty()) renewAll();
    overlay_.clear();
    if (!image || image->width < 1 || image->height < 1 || !image->pixels) return;
    overlayWidth_ = image->width;
    overlayTop_ = top;
    overlay_.resize(static_cast<std::size_t>(image->width) * static_cast<std::size_t>(image->height));
    std::memcpy(overlay_.data(), image->pixels, overlay_.size() * sizeof(std::uint32_t));
}

void WindowCore::renderIntoBackbuffer() {
    isBackbufferOld_ = true;
    renderPicture();
    if (!overlay_.empty()) renderOverlay();
    isAllStale_ = !overlay_.empty();
    std::fill(staleRows_.begin(), staleRows_.end(), false);
}

void WindowCore::renderOverlay() {
    const auto width = static_cast<std::size_t>(overlayWidth_);
    const int height = static_cast<int>(overlay_.size() / width);
    for (int y = std::max(-overlayTop_, 0); y < height && overlayTop_ + y < clientHeight_; ++y) {
        const std::uint32_t* source = overlay_.data() + static_cast<std::size_t>(y) * width;
        std::uint32_t* target = dibPixels_.data() + rowStart(overlayTop_ + y);
        for (int x = 0; x < std::min(overlayWidth_, clientWidth_); ++x) {
            const std::uint32_t below = devicePixel(target[x]);
            const ClearColour colour{static_cast<std::uint8_t>(below), static_cast<std::uint8_t>(below >> 8),
                                     static_cast<std::uint8_t>(below >> 16)};
            target[x] = devicePixel(blendPixel(colour, source[x]));
        }
    }
}

void WindowCore::renderPicture() {
    const std::uint32_t clearPixel = devicePixel(clear_.opaqueWord());
    if (image_.empty()) {
        std::fill(dibPixels_.begin(), dibPixels_.end(), clearPixel);
        return;
    }
    const Letterbox box = letterbox();
    if (isAllStale_) std::fill_n(dibPixels_.data(), rowStart(box.y), clearPixel);
    const bool isSameSize = box.width == imageWidth_ && box.height == imageHeight_;
    if (scaling_ == Scaling::smooth && !isSameSize)
        renderSmooth(box, clearPixel);
    else
        renderImage(box, clearPixel);
    if (!isAllStale_) return;
    const std::size_t below = rowStart(box.y + box.height);
    std::fill_n(dibPixels_.data() + below, dibPixels_.size() - below, clearPixel);
}

// A picture enlarged shows the same row of its own several times over; those are copied whole.
void WindowCore::renderImage(const Letterbox& box, std::uint32_t clearPixel) {
    columns_.resize(static_cast<std::size_t>(box.width));
    for (int x = 0; x < box.width; ++x)
        columns_[static_cast<std::size_t>(x)] = sourcePosition(x, imageWidth_, box.width);

    int previousImageRow = -1;
    for (int y = 0; y < box.height; ++y) {
        const int imageRow = sourcePosition(y, imageHeight_, box.height);
        if (!isStale(imageRow)) continue;
        if (imageRow == previousImageRow)
            repeatRowAbove(box.y + y);
        else
            renderRow(box, box.y + y, imageRow, clearPixel);
        previousImageRow = imageRow;
    }
}

std::span<const std::uint32_t> WindowCore::imageRow(int row) const {
    const auto width = static_cast<std::size_t>(imageWidth_);
    return std::span(image_).subspan(static_cast<std::size_t>(row) * width, width);
}

void WindowCore::renderSmooth(const Letterbox& box, std::uint32_t clearPixel) {
    scaler_.prepare(imageWidth_, imageHeight_, box.width, box.height);
    for (int y = 0; y < box.height; ++y) {
        const SmoothScaler::Between between = scaler_.rowsAt(y);
        if (!isStale(between.upper) && !isStale(between.lower)) continue;
        bringRow(between.upper);
        bringRow(between.lower);
        row_.resize(static_cast<std::size_t>(box.width));
        scaler_.mix(between, row_.data());
        putRow(box, box.y + y, row_, clearPixel);
    }
}

// The scaler wants opaque pixels: what is see-through is laid over the clear colour before.
void WindowCore::bringRow(int imageRow) {
    if (scaler_.holds(imageRow)) return;
    const std::span source = this->imageRow(imageRow);
    if (rowIsOpaque(source)) return scaler_.bring(imageRow, source);
    columns_.resize(source.size());
    std::iota(columns_.begin(), columns_.end(), 0);
    row_.resize(source.size());
    blendGatheredRow(source.data(), columns_, clear_, row_.data());
    scaler_.bring(imageRow, row_);
}

void WindowCore::renderRow(const Letterbox& box, int y, int imageRow, std::uint32_t clearPixel) {
    std::span<const std::uint32_t> drawn = this->imageRow(imageRow);
    const bool isOpaque = rowIsOpaque(drawn);
    if (!isOpaque || box.width != imageWidth_) {
        row_.resize(columns_.size());
        if (isOpaque)
            gatherRow(drawn.data(), columns_, row_.data());
        else
            blendGatheredRow(drawn.data(), columns_, clear_, row_.data());
        drawn = row_;
    }
    putRow(box, y, drawn, clearPixel);
}

void WindowCore::putRow(const Letterbox& box, int y, std::span<const std::uint32_t> drawn,
                        std::uint32_t clearPixel) {
    std::uint32_t* row = dibPixels_.data() + rowStart(y);
    std::fill(row, row + box.x, clearPixel);
    deviceRow(drawn, row + box.x);
    std::fill(row + box.x + box.width, row + clientWidth_, clearPixel);
}

void WindowCore::repeatRowAbove(int y) {
    const auto width = static_cast<std::size_t>(clientWidth_);
    std::copy_n(dibPixels_.data() + rowStart(y - 1), width, dibPixels_.data() + rowStart(y));
}

std::span<const std::uint32_t> WindowCore::backbuffer() const {
    if (isBackbufferOld_) {
        std::transform(dibPixels_.begin(), dibPixels_.end(), backbuffer_.begin(),
                       [](std::uint32_t pixel) { return devicePixel(pixel) | 0xff000000u; });
        isBackbufferOld_ = false;
    }
    return backbuffer_;
}

PlushImage* WindowCore::capture() const {
    const std::size_t bytes = backbuffer().size() * sizeof(std::uint32_t);
    PixelMemory pixels = allocatePixels(bytes);
    std::memcpy(pixels.get(), backbuffer_.data(), bytes);
    auto image = std::make_unique<PlushImage>();
    image->width = clientWidth_;
    image->height = clientHeight_;
    image->pixels = pixels.release();
    return image.release();
}

}  // namespace kelmora
