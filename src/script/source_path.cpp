#include "script/source_path.h"

namespace kelmora {

std::string sourceDirectoryForPath(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? std::string() : path.substr(0, separator);
}

void retargetBytecodeSource(BytecodeProgram& program, const std::string& sourcePath) {
    program.source = {sourceDirectoryForPath(sourcePath), sourcePath};
    for (FunctionDeclaration& function : program.functionDeclarations) {
        function.source = program.source;
    }
}

}  // namespace kelmora
