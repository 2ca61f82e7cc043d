#include <stdexcept>

#include "base/depth_guard.h"
#include "base/paths.h"
#include "script/bytecode_compiler.h"
#include "script/bytecode_executor.h"
#include "script/line_parser.h"
#include "script/source_path.h"
#include "script/vesper_script.h"

namespace kelmora {

BytecodeProgram VesperScript::compileToBytecode(const std::string& source) {
    if (callDepth_ == 0 && programDepth_ == 0) stack_.markBase();
    BytecodeProgram program;
    program.source = context_.file();
    program.lines = parseLines(source, context_);
    compileLines(program, stack_);
    return program;
}

BytecodeProgram VesperScript::compileToBytecode(const std::string& source, const std::string& sourcePath) {
    if (sourcePath.empty()) return compileToBytecode(source);
    const std::string path = normalisePath(sourcePath);
    const SourceFile origin{sourceDirectoryForPath(path), path};
    const SourceFileGuard file(context_, origin);
    return compileToBytecode(source);
}

Variable VesperScript::runScript(const std::string& source) {
    const auto program = std::make_shared<BytecodeProgram>(compileToBytecode(source));
    Variable result = runBytecodeProgram(program);
    rethrowPendingCoroutineException();
    return result;
}

Variable VesperScript::runBytecode(BytecodeProgram program) {
    Variable result = runBytecodeProgram(std::make_shared<BytecodeProgram>(std::move(program)));
    rethrowPendingCoroutineException();
    return result;
}

Variable VesperScript::runBytecodeProgram(const std::shared_ptr<const BytecodeProgram>& program) {
    if (callDepth_ == 0 && programDepth_ == 0) stack_.markBase();
    const DepthGuard depth(programDepth_);
    BlockSignal signal;
    {
        const SourceLineGuard line(context_);
        const SourceFileGuard file(context_, program->source);
        const LocalScopeGuard scope(scopes_, false);
        BytecodeExecutor(*this, *program, signal).enterBlock(BytecodeExecutor::blockOf(*this, *program, 0));
    }
    if (signal.kind == BlockSignal::Kind::Break) throw std::runtime_error("break used outside a loop");

    Variable root = Variable::function(new ScriptCallable);
    ScriptCallable& callable = root.function();
    callable.program = program;
    callable.source = program->source;
    callable.nativeScopeIndex = scopes_.nativeLevel();
    labels_.registerCallable(callable);
    // Without labels nothing can come back to the program.
    if (!program->nestBlocks.empty()) programCallables_.push_back(std::move(root));
    if (programDepth_ == 1) scopes_.commitExternals();
    return signal.kind == BlockSignal::Kind::Return ? std::move(signal.value) : Variable();
}

Variable VesperScript::loadChunk(const std::string& source, const std::string& sourcePath) {
    const auto program = std::make_shared<BytecodeProgram>(compileToBytecode(source, sourcePath));
    Variable function = Variable::function(new ScriptCallable);
    ScriptCallable& callable = function.function();
    callable.isLoadedChunk = true;
    callable.program = program;
    callable.source = program->source;
    return function;
}

}  // namespace kelmora
