#pragma once

#include <cstdint>

#include "image/plush_image.h"

// Filters over a whole picture, in place. Images have pixels. Rows are shared among up to `workers` workers;
// the bytes are the same for any number. The reflection map stays as it is.
namespace kelmora {

// Leaves colours that are multiples of `amount`, and full ones, in a fine pattern that keeps each area's
// mean; alpha stays. An amount below 1 changes no colour. The picture is doubled by replication first where
// that is asked; it has to fit (see fitsEnlarged).
void ditherImage(PlushImage& image, std::int32_t amount, bool doubleFirst, std::int32_t workers);

enum class EdgeForm { Soft, Solid };
// Each pixel becomes the mean of it and its neighbours, nearer ones counting more, clear ones without
// colour. Solid edges keep the alpha of each pixel.
void bilinearInPlace(PlushImage& image, EdgeForm edges, std::int32_t workers);

// Whether the picture times the factor is no larger than any picture may be.
[[nodiscard]] bool fitsEnlarged(const PlushImage& image, double factor);
// Scales both sides by the factor, truncated, by replication; nothing for a factor of 1 or less. It has to
// fit.
void upscalePlushImage(PlushImage& image, double factor, std::int32_t workers);

// Keeps the upper left part. Does nothing unless both sizes are positive and inside the image.
void trimPlushImage(PlushImage& image, std::int32_t width, std::int32_t height);

}  // namespace kelmora
