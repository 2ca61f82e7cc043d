#include "script/source_path.h"

#include "base/paths.h"

namespace kelmora {

void retargetBytecodeSource(BytecodeProgram& program, const std::string& sourcePath) {
    program.source = {sourceDirectoryForPath(sourcePath), sourcePath};
    for (FunctionDeclaration& function : program.functionDeclarations) {
        function.source = program.source;
    }
}

}  // namespace kelmora
