#include <stdexcept>

#include "base/depth_guard.h"
#include "base/paths.h"
#include "script/bytecode_compiler.h"
#include "script/interpreter.h"
#include "script/line_parser.h"
#include "script/source_path.h"

namespace kelmora {

namespace {

std::uint64_t nextSerial() {
    static std::uint64_t last = 0;
    return ++last;
}

}  // namespace

Interpreter::Interpreter(VesperScript& ownFace, HostServices& ownHost)
    : face(ownFace),
      host(ownHost),
      temporaries(std::make_unique<ValuePlace[]>(temporaryCount)),
      serial(nextSerial()) {
    stack.markBase();
}

std::int32_t Interpreter::elapsedMilliseconds() const {
    const auto elapsed = std::chrono::steady_clock::now() - started;
    return static_cast<std::int32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
}

BytecodeProgram Interpreter::compileToBytecode(const std::string& source) {
    markStackBase();
    BytecodeProgram program;
    program.source = context.file();
    program.lines = parseLines(source, context);
    compileLines(program, stack);
    return program;
}

BytecodeProgram Interpreter::compileToBytecode(const std::string& source, const std::string& sourcePath) {
    if (sourcePath.empty()) return compileToBytecode(source);
    const std::string path = normalisePath(sourcePath);
    const SourceFile origin{sourceDirectoryForPath(path), path};
    const SourceFileGuard file(context, origin);
    return compileToBytecode(source);
}

Variable Interpreter::runBytecodeProgram(const std::shared_ptr<const BytecodeProgram>& program) {
    markStackBase();
    const DepthGuard depth(programDepth);
    Variable result;
    {
        const SourceLineGuard line(context);
        const SourceFileGuard file(context, program->source);
        result = runCode(chunkCode(*program, 0, false));
    }

    Variable root = Variable::function(new ScriptCallable);
    ScriptCallable& callable = root.function();
    callable.program = program;
    callable.source = program->source;
    callable.nativeScopeIndex = scopes.nativeLevel();
    labels.registerCallable(callable);
    // Without labels nothing can come back to the program.
    if (!program->nestBlocks.empty()) programCallables.push_back(std::move(root));
    if (programDepth == 1) scopes.commitExternals();
    return result;
}

Variable Interpreter::loadChunk(const std::string& source, const std::string& sourcePath) {
    const auto program = std::make_shared<BytecodeProgram>(compileToBytecode(source, sourcePath));
    Variable function = Variable::function(new ScriptCallable);
    ScriptCallable& callable = function.function();
    callable.isLoadedChunk = true;
    callable.program = program;
    callable.source = program->source;
    return function;
}

}  // namespace kelmora
