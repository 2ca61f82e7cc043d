#include "plush/shader/machine.h"

#include <algorithm>

#include "base/saturating.h"
#include "plush/shader/arithmetic.h"

namespace kelmora::plush_shader {
namespace {

float sampled(const SourcePicture& source, float x, float y, int channel) {
    const std::int32_t column = std::clamp(saturatingInt(std::floor(x)), 0, source.width - 1);
    const std::int32_t row = std::clamp(saturatingInt(std::floor(y)), 0, source.height - 1);
    const std::size_t pixel = static_cast<std::size_t>(row) * static_cast<std::size_t>(source.width) +
                              static_cast<std::size_t>(column);
    return arithmetic::channelValue(source.pixels[pixel * 4 + static_cast<std::size_t>(channel)]);
}

}  // namespace

std::vector<float> initialRegisters(const Program& program, const SourcePicture& source,
                                    const Uniforms& uniforms, const Environment& environment) {
    std::vector<float> registers(std::max<std::size_t>(program.registerCount, slots::firstFree));
    registers[slots::width] = static_cast<float>(source.width);
    registers[slots::height] = static_cast<float>(source.height);
    registers[slots::greyR] = environment.grey.r;
    registers[slots::greyG] = environment.grey.g;
    registers[slots::greyB] = environment.grey.b;
    for (const ConstantSlot& constant : program.constants) registers[constant.slot] = constant.value;
    for (const UniformSlot& uniform : program.uniforms) {
        const auto given = uniforms.find(uniform.name);
        if (given != uniforms.end()) registers[uniform.slot] = given->second;
    }
    return registers;
}

void execute(const Program& program, float* registers, const unsigned char* source, int width, int height,
             detail::RandomState& random) {
    namespace ar = arithmetic;
    const SourcePicture picture{source, width, height};
    const std::size_t count = program.instructions.size();
    for (std::size_t counter = 0; counter < count; ++counter) {
        const Instruction& instruction = program.instructions[counter];
        const Op op = instruction.operation();
        if (op == Op::Halt) return;
        if (op == Op::Jump) {
            counter = instruction.b - std::size_t{1};
            continue;
        }
        const float a = registers[instruction.a];
        if (op == Op::Jz) {
            if (a == 0) counter = instruction.b - std::size_t{1};
            continue;
        }
        const float b = registers[instruction.b];
        const float c = registers[instruction.c];
        float& dst = registers[instruction.dst];
        switch (op) {
            case Op::Mov:
                dst = a;
                break;
            case Op::Add:
                dst = a + b;
                break;
            case Op::Sub:
                dst = a - b;
                break;
            case Op::Mul:
                dst = a * b;
                break;
            case Op::Div:
                dst = a / b;
                break;
            case Op::Mod:
                dst = ar::modulo(a, b);
                break;
            case Op::Pow:
                dst = ar::power(a, b);
                break;
            case Op::Neg:
                dst = -a;
                break;
            case Op::Not:
                dst = ar::truth(a == 0);
                break;
            case Op::Eq:
                dst = ar::truth(a == b);
                break;
            case Op::Ne:
                dst = ar::truth(a != b);
                break;
            case Op::Lt:
                dst = ar::truth(a < b);
                break;
            case Op::Le:
                dst = ar::truth(a <= b);
                break;
            case Op::Gt:
                dst = ar::truth(a > b);
                break;
            case Op::Ge:
                dst = ar::truth(a >= b);
                break;
            case Op::And:
                dst = a != 0 ? b : a;
                break;
            case Op::Or:
                dst = a != 0 ? a : b;
                break;
            case Op::Abs:
                dst = std::fabs(a);
                break;
            case Op::Floor:
                dst = std::floor(a);
                break;
            case Op::Ceil:
                dst = std::ceil(a);
                break;
            case Op::Round:
                dst = std::round(a);
                break;
            case Op::Sqrt:
                dst = std::sqrt(a);
                break;
            case Op::Sin:
                dst = ar::sine(a);
                break;
            case Op::Cos:
                dst = ar::cosine(a);
                break;
            case Op::Tan:
                dst = ar::tangent(a);
                break;
            case Op::Atan:
                dst = ar::arcTangent(a);
                break;
            case Op::Exp:
                dst = ar::exponential(a);
                break;
            case Op::Log:
                dst = ar::logarithm(a);
                break;
            case Op::Fract:
                dst = ar::fraction(a);
                break;
            case Op::Sign:
                dst = ar::sign(a);
                break;
            case Op::Atan2:
                dst = ar::angle(a, b);
                break;
            case Op::Min:
                dst = ar::minimum(a, b);
                break;
            case Op::Max:
                dst = ar::maximum(a, b);
                break;
            case Op::Step:
                dst = ar::step(a, b);
                break;
            case Op::Clamp:
                dst = ar::clamp(a, b, c);
                break;
            case Op::Mix:
                dst = ar::mix(a, b, c);
                break;
            case Op::Smoothstep:
                dst = ar::smoothstep(a, b, c);
                break;
            case Op::Random:
                dst = random.next();
                break;
            case Op::SampleR:
            case Op::SampleG:
            case Op::SampleB:
            case Op::SampleA:
                dst = sampled(picture, a, b, static_cast<int>(op) - static_cast<int>(Op::SampleR));
                break;
            case Op::Jump:
            case Op::Jz:
            case Op::Halt:
                break;
        }
    }
}

}  // namespace kelmora::plush_shader
