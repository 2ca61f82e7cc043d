// The loops of a set of batch kernels. Included once by each set's source inside its unnamed namespace, where
// these are defined: Lanes, some floats, and Ints, as many 32-bit integers; laneStep, their number; and the
// operations on them. Masks are all ones or all zeros in each lane.

using Unary = Lanes (*)(Lanes);
using Binary = Lanes (*)(Lanes, Lanes);
using Ternary = Lanes (*)(Lanes, Lanes, Lanes);

template <Unary operation>
void unaryLoop(float* dst, const float* a, const float*, const float*, std::size_t lanes) {
    for (std::size_t i = 0; i < lanes; i += laneStep) store(dst + i, operation(load(a + i)));
}

template <Binary operation>
void binaryLoop(float* dst, const float* a, const float* b, const float*, std::size_t lanes) {
    for (std::size_t i = 0; i < lanes; i += laneStep) store(dst + i, operation(load(a + i), load(b + i)));
}

template <Ternary operation>
void ternaryLoop(float* dst, const float* a, const float* b, const float* c, std::size_t lanes) {
    for (std::size_t i = 0; i < lanes; i += laneStep)
        store(dst + i, operation(load(a + i), load(b + i), load(c + i)));
}

template <Binary comparison>
bool compareLoop(float* mask, const float* a, const float* b, std::size_t lanes) {
    Lanes any = all(0);
    for (std::size_t i = 0; i < lanes; i += laneStep) {
        const Lanes holds = comparison(load(a + i), load(b + i));
        store(mask + i, holds);
        any = either(any, holds);
    }
    return anySet(any);
}

// Against zero; the second operand is not there.
template <Binary comparison>
bool compareZeroLoop(float* mask, const float* a, const float*, std::size_t lanes) {
    Lanes any = all(0);
    for (std::size_t i = 0; i < lanes; i += laneStep) {
        const Lanes holds = comparison(load(a + i), all(0));
        store(mask + i, holds);
        any = either(any, holds);
    }
    return anySet(any);
}

Lanes copied(Lanes a) {
    return a;
}
Lanes negated(Lanes a) {
    return differing(a, all(-0.0f));
}
Lanes magnitude(Lanes a) {
    return without(all(-0.0f), a);
}
Lanes select(Lanes mask, Lanes a, Lanes b) {
    return either(both(mask, a), without(mask, b));
}
Lanes truth(Lanes mask) {
    return both(mask, all(1));
}
Lanes isZero(Lanes a) {
    return truth(equal(a, all(0)));
}
template <Binary comparison>
Lanes compared(Lanes a, Lanes b) {
    return truth(comparison(a, b));
}
Lanes greater(Lanes a, Lanes b) {
    return less(b, a);
}
Lanes greaterOrEqual(Lanes a, Lanes b) {
    return lessOrEqual(b, a);
}
Lanes modulo(Lanes a, Lanes b) {
    const Lanes rest = subtract(a, multiply(roundedDown(divide(a, b)), b));
    return without(equal(b, all(0)), rest);
}
Lanes logicalAnd(Lanes a, Lanes b) {
    return select(notEqual(a, all(0)), b, a);
}
Lanes logicalOr(Lanes a, Lanes b) {
    return select(notEqual(a, all(0)), a, b);
}
Lanes roundedAway(Lanes a) {
    const Lanes size = magnitude(a);
    const Lanes whole = roundedDown(size);
    const Lanes up = truth(lessOrEqual(all(0.5f), subtract(size, whole)));
    return either(add(whole, up), both(a, all(-0.0f)));
}
Lanes fraction(Lanes a) {
    return subtract(a, roundedDown(a));
}
Lanes sign(Lanes a) {
    return subtract(truth(less(all(0), a)), truth(less(a, all(0))));
}
Lanes step(Lanes edge, Lanes a) {
    return without(less(a, edge), all(1));
}
Lanes clamp(Lanes a, Lanes low, Lanes high) {
    return select(less(a, low), low, minimum(high, a));
}
Lanes mix(Lanes a, Lanes b, Lanes c) {
    return add(a, multiply(subtract(b, a), c));
}
Lanes smoothstep(Lanes low, Lanes high, Lanes a) {
    const Lanes t = clamp(divide(subtract(a, low), subtract(high, low)), all(0), all(1));
    return multiply(multiply(t, t), subtract(all(3), multiply(all(2), t)));
}

// The upper bytes stay where they are: the factors bring them down.
template <int shift>
Lanes channelOf(Ints pixels) {
    constexpr float down = shift == 24 ? 1.0f : 1.0f / (1 << shift % 24);
    const Ints bits = shift == 24 ? shiftedRight<24>(pixels) : bothBits(pixels, allInts(255u << shift));
    const Lanes byte = toFloats(bits);
    return add(multiply(byte, all(channelFactor * down)), multiply(byte, all(channelFactorRest * down)));
}

// As integers; NaN and all below 0 are 0.
Ints channelBytes(Lanes a) {
    return truncated(multiply(minimum(maximum(a, all(0)), all(1)), all(255)));
}

template <int shift>
void channelLoop(float* dst, const float* pixels, const float*, const float*, std::size_t lanes) {
    for (std::size_t i = 0; i < lanes; i += laneStep)
        store(dst + i, channelOf<shift>(loadInts(reinterpret_cast<const unsigned char*>(pixels + i))));
}

void fetchLoop(float* dst, const float* x, const float* y, const SourcePicture& source, std::size_t lanes) {
    const Lanes right = all(static_cast<float>(source.width - 1));
    const Lanes bottom = all(static_cast<float>(source.height - 1));
    alignas(32) std::int32_t columns[laneStep], rows[laneStep];
    for (std::size_t i = 0; i < lanes; i += laneStep) {
        // Once they are not negative, cutting off is rounding down.
        storeInts(reinterpret_cast<unsigned char*>(columns),
                  truncated(minimum(maximum(load(x + i), all(0)), right)));
        storeInts(reinterpret_cast<unsigned char*>(rows),
                  truncated(minimum(maximum(load(y + i), all(0)), bottom)));
        for (std::size_t k = 0; k < laneStep; ++k) {
            const std::size_t pixel =
                static_cast<std::size_t>(rows[k]) * static_cast<std::size_t>(source.width) +
                static_cast<std::size_t>(columns[k]);
            std::memcpy(dst + i + k, source.pixels + pixel * 4, 4);
        }
    }
}

void mergeLoop(float* dst, const float* a, const float* mask, std::size_t lanes) {
    for (std::size_t i = 0; i < lanes; i += laneStep)
        store(dst + i, select(load(mask + i), load(a + i), load(dst + i)));
}

void othersLoop(float* parked, const float* mask, std::size_t lanes) {
    for (std::size_t i = 0; i < lanes; i += laneStep) store(parked + i, without(load(mask + i), allOnes()));
}

bool splitLoop(float* mask, float* parked, const float* goingOn, std::size_t lanes) {
    Lanes any = all(0);
    for (std::size_t i = 0; i < lanes; i += laneStep) {
        const Lanes before = load(mask + i);
        const Lanes going = load(goingOn + i);
        if (parked) store(parked + i, either(load(parked + i), without(going, before)));
        const Lanes after = both(before, going);
        store(mask + i, after);
        any = either(any, after);
    }
    return anySet(any);
}

void parkLoop(float* parked, const float* mask, std::size_t lanes) {
    for (std::size_t i = 0; i < lanes; i += laneStep)
        store(parked + i, either(load(parked + i), load(mask + i)));
}

bool reconvergeLoop(float* mask, float* parked, bool only, std::size_t lanes) {
    Lanes any = all(0);
    for (std::size_t i = 0; i < lanes; i += laneStep) {
        const Lanes joined = only ? load(parked + i) : either(load(mask + i), load(parked + i));
        store(mask + i, joined);
        store(parked + i, all(0));
        any = either(any, joined);
    }
    return anySet(any);
}

template <std::size_t channels>
void loadLoop(const unsigned char* pixels, const ChannelLanes& to, std::size_t lanes) {
    const auto [r, g, b, a] = to;
    for (std::size_t i = 0; i < lanes; i += laneStep) {
        const Ints bytes = loadInts(pixels + i * 4);
        if constexpr ((channels & 1) != 0) store(r + i, channelOf<0>(bytes));
        if constexpr ((channels & 2) != 0) store(g + i, channelOf<8>(bytes));
        if constexpr ((channels & 4) != 0) store(b + i, channelOf<16>(bytes));
        if constexpr ((channels & 8) != 0) store(a + i, channelOf<24>(bytes));
    }
}

template <std::size_t channels>
void packLoop(float* dst, const ChannelLanes& from, std::size_t lanes) {
    const auto [r, g, b, a] = from;
    for (std::size_t i = 0; i < lanes; i += laneStep) {
        Ints pixels = allInts(0);
        if constexpr ((channels & 1) != 0) pixels = channelBytes(load(r + i));
        if constexpr ((channels & 2) != 0)
            pixels = eitherBits(pixels, shiftedLeft<8>(channelBytes(load(g + i))));
        if constexpr ((channels & 4) != 0)
            pixels = eitherBits(pixels, shiftedLeft<16>(channelBytes(load(b + i))));
        if constexpr ((channels & 8) != 0)
            pixels = eitherBits(pixels, shiftedLeft<24>(channelBytes(load(a + i))));
        storeInts(reinterpret_cast<unsigned char*>(dst + i), pixels);
    }
}

template <bool hasOthers, bool hasMask>
void depositLoop(unsigned char* pixels, std::uint32_t bits, const float* values, const float* others,
                 const float* mask, std::size_t lanes) {
    for (std::size_t i = 0; i < lanes; i += laneStep) {
        Ints written = allInts(bits);
        Ints value = bitsOf(load(values + i));
        if constexpr (hasOthers) value = eitherBits(value, bitsOf(load(others + i)));
        if constexpr (hasMask) {
            written = bothBits(written, bitsOf(load(mask + i)));
            value = bothBits(written, value);
        }
        storeInts(pixels + i * 4, eitherBits(withoutBits(written, loadInts(pixels + i * 4)), value));
    }
}

void deposit(unsigned char* pixels, std::uint32_t bits, const float* values, const float* others,
             const float* mask, std::size_t lanes) {
    constexpr decltype(&deposit) loops[] = {depositLoop<false, false>, depositLoop<false, true>,
                                            depositLoop<true, false>, depositLoop<true, true>};
    loops[(others ? 2 : 0) + (mask ? 1 : 0)](pixels, bits, values, others, mask, lanes);
}

void positionsLoop(float* dst, std::int32_t first, float scale, std::size_t lanes) {
    for (std::size_t i = 0; i < lanes; i += laneStep)
        store(dst + i, multiply(toFloats(countedFrom(first + static_cast<std::int32_t>(i))), all(scale)));
}

void fillLoop(unsigned char* pixels, std::uint32_t value, std::uint32_t mask, std::size_t count) {
    std::size_t i = 0;
    for (; i + laneStep <= count; i += laneStep)
        storeInts(pixels + i * 4,
                  eitherBits(withoutBits(allInts(mask), loadInts(pixels + i * 4)), allInts(value & mask)));
    for (; i < count; ++i) {
        std::uint32_t pixel;
        std::memcpy(&pixel, pixels + i * 4, 4);
        pixel = (pixel & ~mask) | (value & mask);
        std::memcpy(pixels + i * 4, &pixel, 4);
    }
}

constexpr std::array<CompareLanes, comparisonCount> comparisons{
    compareZeroLoop<notEqual>, compareZeroLoop<equal>,   compareLoop<equal>,   compareLoop<notEqual>,
    compareLoop<less>,         compareLoop<lessOrEqual>, compareLoop<greater>, compareLoop<greaterOrEqual>};

template <std::size_t... sets>
constexpr void setChannelLoops(BatchKernels& kernels, std::index_sequence<sets...>) {
    ((kernels.load[sets] = loadLoop<sets>, kernels.pack[sets] = packLoop<sets>), ...);
}

constexpr BatchKernels makeKernels() {
    BatchKernels kernels{};
    kernels.compare = comparisons;
    kernels.fetch = fetchLoop;
    kernels.merge = mergeLoop;
    kernels.others = othersLoop;
    kernels.split = splitLoop;
    kernels.park = parkLoop;
    kernels.reconverge = reconvergeLoop;
    kernels.deposit = deposit;
    kernels.positions = positionsLoop;
    kernels.fill = fillLoop;
    setChannelLoops(kernels, std::make_index_sequence<16>());
    const auto set = [&](Op op, ComputeLanes loop) { kernels.compute[static_cast<std::size_t>(op)] = loop; };
    set(Op::Mov, unaryLoop<copied>);
    set(Op::Add, binaryLoop<add>);
    set(Op::Sub, binaryLoop<subtract>);
    set(Op::Mul, binaryLoop<multiply>);
    set(Op::Div, binaryLoop<divide>);
    set(Op::Mod, binaryLoop<modulo>);
    set(Op::Pow, library::power);
    set(Op::Neg, unaryLoop<negated>);
    set(Op::Not, unaryLoop<isZero>);
    set(Op::Eq, binaryLoop<compared<equal>>);
    set(Op::Ne, binaryLoop<compared<notEqual>>);
    set(Op::Lt, binaryLoop<compared<less>>);
    set(Op::Le, binaryLoop<compared<lessOrEqual>>);
    set(Op::Gt, binaryLoop<compared<greater>>);
    set(Op::Ge, binaryLoop<compared<greaterOrEqual>>);
    set(Op::And, binaryLoop<logicalAnd>);
    set(Op::Or, binaryLoop<logicalOr>);
    set(Op::Abs, unaryLoop<magnitude>);
    set(Op::Floor, unaryLoop<roundedDown>);
    set(Op::Ceil, unaryLoop<roundedUp>);
    set(Op::Round, unaryLoop<roundedAway>);
    set(Op::Sqrt, unaryLoop<squareRoot>);
    set(Op::Sin, library::sine);
    set(Op::Cos, library::cosine);
    set(Op::Tan, library::tangent);
    set(Op::Atan, library::arcTangent);
    set(Op::Exp, library::exponential);
    set(Op::Log, library::logarithm);
    set(Op::Fract, unaryLoop<fraction>);
    set(Op::Sign, unaryLoop<sign>);
    set(Op::Atan2, library::angle);
    set(Op::Min, binaryLoop<minimum>);
    set(Op::Max, binaryLoop<maximum>);
    set(Op::Step, binaryLoop<step>);
    set(Op::Clamp, ternaryLoop<clamp>);
    set(Op::Mix, ternaryLoop<mix>);
    set(Op::Smoothstep, ternaryLoop<smoothstep>);
    set(Op::SampleR, channelLoop<0>);
    set(Op::SampleG, channelLoop<8>);
    set(Op::SampleB, channelLoop<16>);
    set(Op::SampleA, channelLoop<24>);
    return kernels;
}
