#include "platform/memory_window.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "base/whole_file.h"
#include "platform/window.h"
#include "platform/windows_window.h"

namespace kelmora {
namespace {

PictureWriter pictureWriter = nullptr;

}  // namespace

MemoryWindow::MemoryWindow(WindowCore& core) : core_(core), shownTitle_(core.title()) {
    const PixelSize size = setSize(core.logicalWidth(), core.logicalHeight());
    core_.setClientSize(size.width, size.height);
    core_.handle(WindowEvent::focusGained());
}

PixelSize MemoryWindow::setSize(int width, int height) {
    return {std::clamp(width, 1, screen.width), std::clamp(height, 1, screen.height)};
}

void MemoryWindow::setFullscreen(bool on) {
    if (on) windowSize_ = {core_.clientWidth(), core_.clientHeight()};
    fullscreen_ = on;
    const PixelSize size = on ? fullscreenSize : windowSize_;
    core_.handle(WindowEvent::resized(size.width, size.height));
}

void MemoryWindow::play(std::vector<RecordedStep> steps, std::string shotFolder) {
    steps_ = std::move(steps);
    shotFolder_ = std::move(shotFolder);
    nextStep_ = 0;
    update_ = 0;
}

bool MemoryWindow::pumpEvents() {
    for (; !posted_.empty(); posted_.pop_front()) core_.handle(posted_.front());

    ++update_;
    for (; nextStep_ < steps_.size() && steps_[nextStep_].update == update_; ++nextStep_) {
        const RecordedStep& step = steps_[nextStep_];
        if (step.event)
            core_.handle(*step.event);
        else
            dueShots_.push_back(step);
    }
    return !dueShots_.empty();
}

void MemoryWindow::present() {
    ++presentCount_;
    const std::vector<RecordedStep> shots = std::move(dueShots_);
    dueShots_.clear();
    for (const RecordedStep& shot : shots) save(shot);
}

void MemoryWindow::save(const RecordedStep& shot) const {
    const std::string path = (std::filesystem::path(shotFolder_) / shot.shotPath).string();
    const auto* pixels = reinterpret_cast<const unsigned char*>(core_.backbuffer().data());
    if (!pictureWriter || !pictureWriter(path.c_str(), pixels, core_.clientWidth(), core_.clientHeight()))
        throw std::runtime_error("recorded input, line " + std::to_string(shot.line) + ": cannot write \"" +
                                 path + "\"");
}

std::unique_ptr<MemoryWindow> createMemoryWindow(WindowCore& core) {
    auto window = std::make_unique<MemoryWindow>(core);
    const char* inputPath = std::getenv("KELMORA_INPUT");
    if (!inputPath || !*inputPath) return window;

    const auto text = readWholeFile(inputPath);
    if (!text) throw std::runtime_error("KELMORA_INPUT: cannot read \"" + std::string(inputPath) + "\"");
    const char* shotFolder = std::getenv("KELMORA_SHOTS");
    window->play(parseRecordedInput(*text, inputPath), shotFolder ? shotFolder : "");
    return window;
}

MemoryWindow* memoryWindowOf(WindowsWindow* window) {
    return window ? dynamic_cast<MemoryWindow*>(window->backend.get()) : nullptr;
}

}  // namespace kelmora

void platform_set_picture_writer(PictureWriter writer) {
    kelmora::pictureWriter = writer;
}
