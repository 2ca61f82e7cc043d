#include "tool/play/thin_drawing.h"

#include "image/image_registry.h"

namespace kelmora {

bool ThinDrawing::isLarge(const void* picture) const {
    const auto live = [](const void* handle) {
        auto* image = static_cast<PlushImage*>(const_cast<void*>(handle));
        return livePlushImages.contains(image) ? image : nullptr;
    };
    const PlushImage* image = live(picture);
    const PlushImage* frame = live(frame_);
    return image && frame && image->width >= frame->width && image->height >= frame->height;
}

ThinDrawing::ThinDrawing(GameSession& session, int updatesForPicture)
    : updatesForPicture_(updatesForPicture) {
    VesperScript& engine = session.runtime().engine;
    const auto pictureOf = [](const std::vector<Variable>& arguments) -> const void* {
        return !arguments.empty() && arguments[0].isPointer() ? arguments[0].pointerValue() : nullptr;
    };
    session.wrap(
        "Metal", "renderImage",
        [this, &engine, pictureOf](const Variable& original, const std::vector<Variable>& arguments) {
            frame_ = pictureOf(arguments);
            return draws_ ? engine.callCallable(original, arguments) : Variable();
        });
    const auto thin = [&](const char* member, auto isLeftOut) {
        session.wrap(
            "Plush", member,
            [this, &engine, isLeftOut](const Variable& original, const std::vector<Variable>& arguments) {
                if (!draws_ && isLeftOut(arguments)) return Variable();
                return engine.callCallable(original, arguments);
            });
    };
    const auto isFrame = [this, pictureOf](const std::vector<Variable>& arguments) {
        const void* picture = pictureOf(arguments);
        return frame_ && (picture == frame_ || (isNovel_ && isLarge(picture)));
    };
    for (const char* member : {"blitImage", "blitImageRect", "fillRect", "fillBox", "drawBox", "drawLine"})
        thin(member, isFrame);
    // In place it gives nothing back.
    thin("shader", [isFrame](const std::vector<Variable>& arguments) {
        return arguments.size() > 4 && isTruthy(arguments[4]) && isFrame(arguments);
    });
    thin("modifyImage", isFrame);
    // Scenes are large, whatever they are drawn into.
    for (const char* member : {"raycast", "projection"})
        thin(member, [](const std::vector<Variable>&) { return true; });
}

}  // namespace kelmora
