#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "plush/shader/compiler.h"
#include "plush/shader/run.h"

// A text that compiles gives the same picture on both machines.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelmora::plush_shader;
    const auto draw = [](const Program& program, Machine machine) {
        std::vector<unsigned char> pixels;
        for (unsigned i = 0; i < 13 * 7 * 4; ++i)
            pixels.push_back(static_cast<unsigned char>(i * i * 7 & 255));
        useMachine(machine);
        run(program, pixels.data(), 13, 7, {{"tr", 0.5f}}, {});
        return pixels;
    };
    try {
        const auto program = compile(std::string(data, data + size), {{"", "", "", "", "", "", "u"}, true});
        if (program->instructions.size() < 20000 &&
            draw(*program, Machine::Plain) != draw(*program, Machine::Batched))
            std::abort();
    } catch (const std::runtime_error& error) {
        if (!std::string(error.what()).starts_with("shader line ")) std::abort();
    }
    return 0;
}
