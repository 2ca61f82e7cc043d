// The loops of a set of ray kernels. Included once by each set's source inside its unnamed namespace, where
// these are defined: Fours, four doubles, and the operations on them; KELMORA_LANES, what their functions
// need to be compiled for the set.

// One component of directions: those at the middle of the row, and what a step to the right adds.
struct Component {
    Fours middle;
    Fours across;
    Fours down;

    KELMORA_LANES Component(double forward, double right, double up, double downwards)
        : middle(all(forward)), across(all(right)), down(all(up * downwards)) {}
    KELMORA_LANES Fours at(Fours a) const { return add(add(middle, multiply(across, a)), down); }
};

KELMORA_LANES inline Fours withoutZero(Fours component) {
    const Fours sign = all(-0.0);
    const Fours magnitude = without(component, sign);
    const Fours least = either(all(leastComponent), both(component, sign));
    return choose(less(magnitude, all(leastComponent)), least, component);
}

KELMORA_LANES void aim(const RenderScene& scene, const double* u, double v, double floorHeight,
                       double roofHeight, RayRun& run) {
    const Camera& camera = scene.camera;
    const double downwards = v * camera.halfHeight;
    const Component forX(camera.forward.x, camera.right.x, camera.up.x, downwards);
    const Component forY(camera.forward.y, camera.right.y, camera.up.y, downwards);
    const Component forZ(camera.forward.z, camera.right.z, camera.up.z, downwards);
    const Fours halfWidth = all(camera.halfWidth);
    const Fours one = all(1);
    const Fours squaredV = all(v * v);
    const Fours floorAway = all(floorHeight - camera.eye.z);
    const Fours roofAway = all(roofHeight - camera.eye.z);
    for (std::size_t i = 0; i < rayRunLength; i += 4) {
        const Fours across = load(u + i);
        const Fours a = multiply(across, halfWidth);
        const Fours x = forX.at(a);
        const Fours y = forY.at(a);
        const Fours z = forZ.at(a);
        const Fours squared = add(add(multiply(x, x), multiply(y, y)), multiply(z, z));
        // A direction without length stays as it is.
        const Fours factor = choose(less(all(0), squared), divide(one, root(squared)), one);
        const Fours unitX = withoutZero(multiply(x, factor));
        const Fours unitY = withoutZero(multiply(y, factor));
        const Fours unitZ = withoutZero(multiply(z, factor));
        store(run.x + i, unitX);
        store(run.y + i, unitY);
        store(run.z + i, unitZ);
        store(run.inverseX + i, divide(one, unitX));
        store(run.inverseY + i, divide(one, unitY));
        store(run.inverseZ + i, divide(one, unitZ));
        store(run.floor + i, divide(floorAway, unitZ));
        store(run.roof + i, divide(roofAway, unitZ));
        const Fours aside = root(add(multiply(across, across), squaredV));
        store(run.fogMultiplier + i,
              add(multiply(multiply(aside, all(fogTowardsCorner)), all(fogOfCorner)), one));
    }
}

// The whole part of a channel, held to a byte; 0 for what is no number.
KELMORA_LANES inline __m128i wholeByte(__m128 channel) {
    const __m128 held = _mm_min_ps(_mm_max_ps(channel, _mm_setzero_ps()), _mm_set1_ps(255));
    return _mm_cvttps_epi32(held);
}

KELMORA_LANES inline __m128i shadedChannel(__m128i texel, const float* light, float fog, __m128 amount,
                                           __m128 rest) {
    const __m128 own = _mm_cvtepi32_ps(_mm_and_si128(texel, _mm_set1_epi32(255)));
    const __m128 surface = _mm_cvtepi32_ps(wholeByte(_mm_mul_ps(_mm_load_ps(light), own)));
    return wholeByte(_mm_add_ps(_mm_mul_ps(_mm_set1_ps(fog), amount), _mm_mul_ps(surface, rest)));
}

KELMORA_LANES void shade(const RenderScene& scene, const RayRun& run, unsigned char* pixels) {
    const Fours renderDistance = all(scene.renderDistance);
    const __m128 one = _mm_set1_ps(1);
    for (std::size_t i = 0; i < rayRunLength; i += 4) {
        const Fours thickness = multiply(load(run.fogMultiplier + i), load(run.distance + i));
        // 1 for what is no number.
        const __m128 amount = _mm_min_ps(narrowed(divide(thickness, renderDistance)), one);
        const __m128 rest = _mm_sub_ps(one, amount);
        const __m128i texel = _mm_load_si128(reinterpret_cast<const __m128i*>(run.texel + i));
        const __m128i red = shadedChannel(texel, run.red + i, scene.fog.x, amount, rest);
        const __m128i green =
            shadedChannel(_mm_srli_epi32(texel, 8), run.green + i, scene.fog.y, amount, rest);
        const __m128i blue =
            shadedChannel(_mm_srli_epi32(texel, 16), run.blue + i, scene.fog.z, amount, rest);
        const __m128i pixel =
            _mm_or_si128(_mm_or_si128(red, _mm_slli_epi32(green, 8)),
                         _mm_or_si128(_mm_slli_epi32(blue, 16), _mm_set1_epi32(-0x1000000)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels + i * 4), pixel);
    }
}
