#include "base/host_services.h"
#include "bindings/image_arguments.h"
#include "bindings/modules.h"
#include "image/row_workers.h"
#include "plush/image_processing.h"
#include "plush/text_picture.h"
#include "script/vesper_script.h"

namespace kelmora {
namespace {

void requireFit(const BindingCall& call, const PlushImage& image, double factor) {
    if (!fitsEnlarged(image, factor)) call.fail("the image is too large");
}

Variable plushDither(const BindingCall& call) {
    call.require(2);
    PlushImage& image = imageArgument(call, 0, "image");
    const std::int32_t amount = call.integer(1, "amount");
    const bool doubleFirst = call.count() > 2 && call.condition(2);
    if (doubleFirst) requireFit(call, image, 2);
    ditherImage(image, amount, doubleFirst, threadCount);
    return {};
}

Variable smooth(const BindingCall& call, EdgeForm edges) {
    PlushImage& image = imageArgument(call, 0, "image");
    const double factor = call.count() > 1 ? call.number(1, "factor") : 1;
    requireFit(call, image, factor);
    upscalePlushImage(image, factor, threadCount);
    bilinearInPlace(image, edges, threadCount);
    return {};
}

Variable bilinear(const BindingCall& call) {
    return smooth(call, EdgeForm::Soft);
}

Variable bilinearFuzz(const BindingCall& call) {
    return smooth(call, EdgeForm::Solid);
}

Variable trimImage(const BindingCall& call) {
    call.require(3);
    PlushImage& image = imageArgument(call, 0, "image");
    const std::int32_t width = call.integer(1, "width");
    trimPlushImage(image, width, call.integer(2, "height"));
    return {};
}

Variable printImage(const BindingCall& call) {
    call.require(3);
    const PlushImage& image = imageArgument(call, 0, "image");
    const std::int32_t columns = call.integer(1, "columns");
    const std::int32_t rows = call.integer(2, "rows");
    HostServices& host = call.engine().host();
    host.print(textPicture(image, columns, rows,
                           host.showsTrueColour() ? TextForm::TrueColour : TextForm::Characters));
    return {};
}

constexpr BindingRow rows[] = {
    {"dither", plushDither},  {"bilinear", bilinear},     {"bilinearSolid", bilinearFuzz},
    {"trimImage", trimImage}, {"printImage", printImage},
};

}  // namespace

std::span<const BindingRow> imageProcessingBindings() {
    return rows;
}

}  // namespace kelmora
