#include "plush/shader/program.h"

namespace kelmora::plush_shader {

int operandCount(Op op) {
    switch (op) {
        case Op::Jump:
        case Op::Random:
        case Op::Halt:
            return 0;
        case Op::Mov:
        case Op::Neg:
        case Op::Not:
        case Op::Jz:
            return 1;
        case Op::Clamp:
        case Op::Mix:
        case Op::Smoothstep:
            return 3;
        default:
            return op >= Op::Abs && op <= Op::Sign ? 1 : 2;
    }
}

std::vector<std::string> uniformNames(const Program& program) {
    std::vector<std::string> names;
    for (const UniformSlot& uniform : program.uniforms) names.push_back(uniform.name);
    return names;
}

}  // namespace kelmora::plush_shader
