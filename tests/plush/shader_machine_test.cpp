#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include "plush/shader/arithmetic.h"
#include "plush/shader/batch_machine.h"
#include "plush/shader/builtin_processors.h"
#include "plush/shader/compiler.h"
#include "plush/shader/run.h"
#include "plush/shader_generator.h"

// What the machines compute, and that the batched one gives the bytes of the plain one with every set of
// inner loops. KELMORA_SHADER_SEEDS runs more random shaders than a test run does.
namespace kelmora::plush_shader {
namespace {

using Bytes = std::vector<unsigned char>;

std::vector<std::pair<const char*, const detail::BatchKernels*>> allKernels() {
    std::vector<std::pair<const char*, const detail::BatchKernels*>> all{
        {"plain", &detail::plainBatchKernels}};
#if defined(KELMORA_X86)
    all.emplace_back("sse2", &detail::sse2BatchKernels);
    if (hasAvx2()) all.emplace_back("avx2", &detail::avx2BatchKernels);
#endif
    return all;
}

struct SettingsGuard {
    ~SettingsGuard() {
        useMachine(Machine::Fastest);
        detail::useBatchKernels(nullptr);
    }
};

std::shared_ptr<const Program> compiled(const std::string& source) {
    return compile(source, {{}, true});
}

Bytes randomPicture(std::mt19937& random, int width, int height) {
    Bytes bytes;
    for (int i = 0; i < width * height * 4; ++i) {
        const auto value = static_cast<unsigned char>(random());
        bytes.push_back(random() % 4 == 0 ? static_cast<unsigned char>(value & 1 ? 255 : 0) : value);
    }
    return bytes;
}

// One pixel of the channel red, from a shader.
float redOf(const std::string& expression) {
    const auto program = compiled("r = " + expression);
    const unsigned char pixel[4] = {51, 102, 204, 255};
    std::vector<float> registers = initialRegisters(*program, {pixel, 1, 1}, {{"tr", 0.25f}}, {});
    detail::RandomState random = detail::RandomState::forConstant();
    for (std::size_t i = 0; i < 4; ++i) registers[i] = arithmetic::channelValue(pixel[i]);
    execute(*program, registers.data(), pixel, 1, 1, random);
    return registers[slots::r];
}

TEST(ShaderMachine, ComputesWhatTheOperatorsSay) {
    const std::pair<const char*, float> cases[] = {
        {"-2 ^ 2", -4},
        {"2 ^ -1", 0.5f},
        {"2 ^ 3 ^ 0", 2},
        {"1 == 1 == 2", 0},
        {"not 3 == 0", 1},
        {"1 + 2 * 3 % 2 - 4 / 8", 0.5f},
        {"-5 % 3", 1},
        {"5 % -3", -1},
        {"mod(5, 0)", 0},
        {"1 / 0", INFINITY},
        {"1 / -0", -INFINITY},
        {"1 / floor(-0)", -INFINITY},
        {"1 / ceil(-0.5)", -INFINITY},
        {"0/0 ~= 0/0", 1},
        {"0/0 <= 1 or 7", 7},
        {"0/0 and 8", 8},
        {"0 and 8", 0},
        {"round(0.49999997) + round(2.5) * 10", 30},
        {"round(-2.5)", -3},
        {"floor(-2.5) + ceil(2.5)", 0},
        {"floor(3e9)", 3e9f},
        {"fract(-0.25)", 0.75f},
        {"sign(-3) + sign(0/0)", -1},
        {"min(0/0, 4)", 4},
        {"max(4, 0/0) ~= max(4, 0/0)", 1},
        {"step(2, 1) + step(2, 2) * 10", 10},
        {"clamp(5, 1, 3) + clamp(0, 1, -1) * 10", 13},
        {"lerp(2, 4, 0.25)", 2.5f},
        {"smoothstep(0, 2, 1)", 0.5f},
        {"smoothstep(2, 0, 5)", 0},
        {"sqrt(9) + atan2(0, 1) + log(exp(0))", 3},
        {"sampleG(-5, 9e9) + sampleB(0/0, 0)", 0.4f + 0.8f},
        {"tr + true - false", 1.25f},
        {"VESPER_GREY_G", 0.65f * 1.457f},
        {"width + height", 2},
        {"random()", 804377.0f / 16777216},
    };
    for (const auto& [expression, value] : cases) EXPECT_EQ(redOf(expression), value) << expression;
}

TEST(ShaderMachine, ChannelsComeAndGoExactly) {
    for (int byte = 0; byte < 256; ++byte) {
        const auto value = static_cast<float>(byte);
        EXPECT_EQ(value * detail::channelFactor + value * detail::channelFactorRest, value / 255.0f);
        EXPECT_EQ(arithmetic::channelByte(value / 255.0f), byte);
    }
    EXPECT_EQ(arithmetic::channelByte(0.5f), 127);
    EXPECT_EQ(arithmetic::channelByte(std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(arithmetic::channelByte(-1), 0);
    EXPECT_EQ(arithmetic::channelByte(INFINITY), 255);
}

TEST(ShaderMachine, RowsAreSharedInEqualChunksWithSeedsOfTheirOwn) {
    const auto program = compiled("r = random()");
    const auto picture = [&](int threads) {
        Bytes bytes(64 * 65 * 4);
        run(*program, bytes.data(), 64, 65, {}, {{}, threads});
        return bytes;
    };
    const Bytes one = picture(1), four = picture(4);
    for (int row = 0; row < 65; ++row) {
        // Four workers take 17 rows each; the seed comes from the first row.
        Bytes alone(64 * 4);
        detail::RandomState random = detail::RandomState::forRow(row / 17 * 17);
        for (int i = 0; i < row % 17 * 64; ++i) random.next();
        for (std::size_t i = 0; i < 64; ++i) alone[i * 4] = arithmetic::channelByte(random.next());
        EXPECT_TRUE(std::equal(alone.begin(), alone.end(), four.begin() + row * 64 * 4)) << row;
    }
    EXPECT_TRUE(std::equal(one.begin(), one.begin() + 17 * 64 * 4, four.begin()));
    EXPECT_NE(one, four);
    EXPECT_EQ(picture(8), picture(800));
}

TEST(ShaderMachine, NothingHappensWithoutPixelsOrWrites) {
    const auto program = compiled("r = 1");
    unsigned char pixels[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    run(*program, nullptr, 1, 1, {}, {});
    run(*program, pixels, 0, 1, {}, {});
    run(*compiled("local q = sampleR(x, y)"), pixels, 2, 1, {}, {});
    render(*program, pixels, 2, 1, pixels, 2, 1, {}, {});
    render(*program, pixels, 2, 1, nullptr, 2, 1, {}, {});
    render(*program, pixels, 2, 1, pixels + 4, 1, 0, {}, {});
    EXPECT_EQ(pixels[0], 1);
    unsigned char target[4] = {};
    render(*compiled("local q = sampleR(x, y)"), pixels + 4, 1, 1, target, 1, 1, {}, {});
    EXPECT_EQ(target[3], 8);
    render(*program, pixels, 2, 1, target, 1, 1, {}, {});
    EXPECT_EQ(target[0], 255);
    EXPECT_EQ(target[1], 2);
}

// A registers' value that goes from pixel to pixel is no fault; such programs just stay with the plain
// machine.
TEST(ShaderBatches, AreNotUsedWherePixelsDependOnEachOther) {
    const std::pair<const char*, bool> cases[] = {
        {"r = g + 1", true},
        {"r = random()", false},
        {"if a > 0 q = 1 end r = q", false},
        {"q = 0; if a > 0 q = 1 end r = q", true},
        {"if a > 0 q = 1 else q = 2 end r = q", true},
        {"if a > 0 q = 1 else return end r = q", true},
        {"if a > 0 q = 1 elseif b > 0 q = 2 end; q = 3; r = q", true},
        {"if a > 0 if b > 0 q = 1 end r = q end", false},
    };
    for (const auto& [source, batched] : cases)
        EXPECT_EQ(detail::lowerToBatches(*compiled(source)).has_value(), batched) << source;
}

TEST(ShaderBatches, CopiesCostNothingAndConstantsAreComputedOnce) {
    const auto lowered = detail::lowerToBatches(*compiled("local k = tr * 2 + width\nr, g = g * k, r"));
    ASSERT_TRUE(lowered);
    EXPECT_EQ(lowered->prologue.size(), 2u);
    EXPECT_EQ(lowered->body.size(), 4u);  // the product, the end, packing and storing
    // Three channels of a pixel are fetched once.
    const auto sampled =
        detail::lowerToBatches(*compiled("r = sampleR(x, y)\ng = sampleG(x, y)\nb = sampleB(x, y)"));
    EXPECT_EQ(sampled->body.size(), 7u);
}

class Agreement {
public:
    Agreement(std::mt19937& random, const Program& program) : random_(random), program_(program) {}

    void expectSameInPlace(int width, int height) {
        const Bytes before = randomPicture(random_, width, height);
        expectSame(before, [&](Bytes& bytes, const Environment& environment) {
            run(program_, bytes.data(), width, height, uniforms(), environment);
        });
    }
    void expectSameRendered(int width, int height, int targetWidth, int targetHeight) {
        const Bytes source = randomPicture(random_, width, height);
        const Bytes before(static_cast<std::size_t>(targetWidth * targetHeight * 4), 7);
        expectSame(before, [&](Bytes& bytes, const Environment& environment) {
            render(program_, source.data(), width, height, bytes.data(), targetWidth, targetHeight,
                   uniforms(), environment);
        });
    }

private:
    Uniforms uniforms() const { return {{"tr", 0.3f}, {"tg", -2.5f}}; }

    template <typename Draw>
    void expectSame(const Bytes& before, Draw draw) {
        const Environment environment{{}, 1 + static_cast<int>(random_() % 8)};
        useMachine(Machine::Plain);
        Bytes expected = before;
        draw(expected, environment);
        useMachine(Machine::Batched);
        for (const auto& [name, kernels] : allKernels()) {
            detail::useBatchKernels(kernels);
            Bytes drawn = before;
            draw(drawn, environment);
            ASSERT_TRUE(drawn == expected) << name << ", pixel " << firstDifference(drawn, expected) << ":\n"
                                           << program_.source;
        }
    }
    static std::ptrdiff_t firstDifference(const Bytes& a, const Bytes& b) {
        return (std::mismatch(a.begin(), a.end(), b.begin()).first - a.begin()) / 4;
    }

    std::mt19937& random_;
    const Program& program_;
};

TEST(ShaderBatches, BuiltinProcessorsAgreeWithThePlainMachine) {
    const SettingsGuard guard;
    std::mt19937 random(11);
    for (std::int32_t id = 1; id <= builtinProcessorCount; ++id) {
        Agreement agreement(random, *builtinProcessor(id));
        agreement.expectSameInPlace(97, 83);
        agreement.expectSameRendered(20, 31, 97, 83);
    }
}

// What channels hold has to outlive their being written, within a way and across ways.
TEST(ShaderBatches, ChannelsThatTradePlacesAgree) {
    const SettingsGuard guard;
    std::mt19937 random(12);
    for (const char* source : {
             "if tr or a q, b = 1, r; return a, b, g, r end",
             "local old = r\nif a > 0 r = 0 end\ng = old",
             "r, g, b, a = a, r, g, b\nif r > g r, g = g, r; return end\na = r",
             "if r > 0.5 if g > 0.5 return b end; r = g else r, a = a, r end\nb = r",
             "q = r\nif a < 0.5 r = 1; q = g elseif b < 0.5 return q, q else g = q; r = q end\na = q",
             "if x > 2 return r, b, r end",
             "a = 0\nif g < 0.9 do a = g end; return 1 end\nr = a",
         }) {
        const auto program = compiled(source);
        ASSERT_TRUE(detail::lowerToBatches(*program)) << source;
        Agreement agreement(random, *program);
        agreement.expectSameInPlace(41, 13);
        agreement.expectSameRendered(20, 31, 33, 17);
    }
}

// Each seed is a shader over pictures of random sizes, in place and rendered.
TEST(ShaderBatches, RandomShadersAgreeWithThePlainMachine) {
    const SettingsGuard guard;
    const char* wanted = std::getenv("KELMORA_SHADER_SEEDS");
    const unsigned seeds = wanted ? static_cast<unsigned>(std::strtoul(wanted, nullptr, 10)) : 600;
    unsigned batched = 0;
    for (unsigned seed = 0; seed < seeds; ++seed) {
        std::mt19937 random(seed);
        const auto size = [&](unsigned most) { return 1 + static_cast<int>(random() % most); };
        const auto program = compiled(ShaderGenerator(random, seed % 5 == 0).shader());
        if (detail::lowerToBatches(*program)) ++batched;
        Agreement agreement(random, *program);
        const bool large = seed % 8 == 0;
        agreement.expectSameInPlace(size(large ? 100 : 24), size(large ? 90 : 20));
        agreement.expectSameInPlace(size(600), size(3));
        const int width = size(50), height = size(30);
        agreement.expectSameRendered(width, height, size(large ? 100 : 40), size(large ? 90 : 20));
        agreement.expectSameRendered(width, height, width, height);
        if (HasFatalFailure()) FAIL() << "seed " << seed;
    }
    EXPECT_GT(batched, seeds / 2);
}

}  // namespace
}  // namespace kelmora::plush_shader
