#include "plush/shader/program.h"

namespace kelmora::plush_shader {

std::vector<std::string> uniformNames(const Program& program) {
    std::vector<std::string> names;
    for (const UniformSlot& uniform : program.uniforms) names.push_back(uniform.name);
    return names;
}

}  // namespace kelmora::plush_shader
