// The loops of a set of face kernels. Included once by each set's source inside its unnamed namespace, where
// these are defined: Lanes, some floats, Whole, as many integers, laneCount, and the operations on them;
// KELMORA_LANES, what their functions need to be compiled for the set.

KELMORA_LANES inline Lanes valuesAt(const FaceRow::Even& even, Lanes places) {
    return add(all(even.first), multiply(all(even.step), places));
}

// 0 for what is no number.
KELMORA_LANES inline Whole texelNumber(Lanes coordinate, std::int32_t count) {
    const Lanes texel = greater(multiply(coordinate, all(static_cast<float>(count))), all(0));
    return integers(lesser(texel, all(static_cast<float>(count - 1))));
}

KELMORA_LANES inline Lanes wrapped(Lanes coordinate) {
    const Lanes part = subtract(coordinate, floats(integers(coordinate)));
    return add(part, both(less(part, all(0)), all(1)));
}

KELMORA_LANES void map(const FaceRow& face, const FogRow& fog, std::size_t first, std::size_t count,
                       FaceRun& run) {
    const SceneTexture& texture = *face.texture;
    const auto width = static_cast<std::size_t>(texture.width);
    const Lanes one = all(1);
    for (std::size_t i = 0; i < count; i += laneCount) {
        const Lanes places = placesFrom(static_cast<float>(i));
        const Lanes ahead = divide(one, greater(valuesAt(face.nearness, places), all(leastNearness)));
        Lanes down = multiply(valuesAt(face.down, places), ahead);
        if (face.wraps) down = wrapped(down);
        alignas(32) std::int32_t rows[laneCount];
        alignas(32) std::int32_t columns[laneCount];
        store(rows, texelNumber(down, texture.height));
        store(columns, texelNumber(multiply(valuesAt(face.along, places), ahead), texture.width));
        for (std::size_t lane = 0; lane < laneCount; ++lane) {
            const std::size_t texel =
                static_cast<std::size_t>(rows[lane]) * width + static_cast<std::size_t>(columns[lane]);
            std::memcpy(&run.texel[first + i + lane], texture.pixels + texel * 4, 4);
        }
        const Lanes length = root(add(load(fog.squaredAside + i), all(fog.squaredDown)));
        const Lanes corner =
            add(multiply(root(add(load(fog.squaredU + i), all(fog.squaredV))), all(fogFromMiddle)), one);
        // 1 for what is no number.
        const Lanes amount =
            lesser(multiply(multiply(corner, length), multiply(ahead, all(fog.thickness))), one);
        store(run.fog + first + i, amount);
    }
}

// The whole part of a channel, held to a byte; 0 for what is no number.
KELMORA_LANES inline Whole wholeByte(Lanes channel) {
    return integers(lesser(greater(channel, all(0)), all(255)));
}

KELMORA_LANES inline Whole shadedChannel(Whole texel, Lanes light, float fog, Lanes amount, Lanes rest) {
    const Lanes surface = floats(wholeByte(multiply(light, floats(lowByte(texel)))));
    return integers(add(multiply(all(fog), amount), multiply(surface, rest)));
}

KELMORA_LANES inline void shadeGroup(const Vec3& fog, const FaceRun& run, std::size_t i, Lanes red,
                                     Lanes green, Lanes blue, unsigned char* pixels) {
    const Lanes amount = load(run.fog + i);
    const Lanes rest = subtract(all(1), amount);
    const Whole texel = load(run.texel + i);
    storePixels(pixels + i * 4, shadedChannel(texel, red, fog.x, amount, rest),
                shadedChannel(shifted<8>(texel), green, fog.y, amount, rest),
                shadedChannel(shifted<16>(texel), blue, fog.z, amount, rest));
}

KELMORA_LANES void shade(const Vec3& fog, const FaceRun& run, unsigned char* pixels) {
    for (std::size_t i = 0; i < faceRunLength; i += laneCount)
        shadeGroup(fog, run, i, load(run.red + i), load(run.green + i), load(run.blue + i), pixels);
}

KELMORA_LANES void shadeEvenly(const Vec3& fog, const Vec3& light, const FaceRun& run,
                               unsigned char* pixels) {
    const Lanes red = all(light.x);
    const Lanes green = all(light.y);
    const Lanes blue = all(light.z);
    for (std::size_t i = 0; i < faceRunLength; i += laneCount)
        shadeGroup(fog, run, i, red, green, blue, pixels);
}
