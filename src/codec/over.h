#pragma once

namespace vh::png {

// Composes a straight-alpha RGBA pixel over another. Unlike the compositor's mix it weighs both alphas.
inline void compose_over(const unsigned char* source, unsigned char* target) {
    const unsigned a = source[3];
    const unsigned b = target[3];
    if (a == 0 && b != 0) return;
    if (a == 255 || b == 0) {
        for (int i = 0; i < 4; ++i) target[i] = source[i];
        return;
    }
    const unsigned below = (255 - a) * b;
    const unsigned alpha = a + (below + 127) / 255;
    for (int i = 0; i < 3; ++i) {
        const unsigned from_target = (below * target[i] + 127) / 255;
        target[i] = static_cast<unsigned char>((source[i] * a + alpha / 2 + from_target) / alpha);
    }
    target[3] = static_cast<unsigned char>(alpha);
}

}  // namespace vh::png
