#include "script/vesper_script.h"

#include <stdexcept>

#include "base/paths.h"
#include "script/bytecode_image.h"
#include "script/interpreter.h"
#include "script/library/library.h"
#include "script/line_parser.h"

namespace kelmora {

VesperScript::VesperScript(HostServices& host) : interpreter_(std::make_unique<Interpreter>(*this, host)) {
    registerLibrary(*interpreter_);
}

VesperScript::~VesperScript() = default;

Variable VesperScript::runScript(const std::string& source) {
    return runBytecode(compileToBytecode(source));
}

Variable VesperScript::runBytecode(BytecodeProgram program) {
    Variable result =
        interpreter_->runBytecodeProgram(std::make_shared<const BytecodeProgram>(std::move(program)));
    interpreter_->rethrowPendingCoroutineException();
    return result;
}

Variable VesperScript::executeBlock(const std::string& source) {
    Interpreter& script = *interpreter_;
    script.markStackBase();
    const SourceLineGuard line(script.context);
    const std::vector<ParsedScriptLine> lines = parseLines(source, script.context);
    std::uint32_t index = 0;
    BlockSignal signal;
    Variable result = script.executeParsedBlock(lines, index, signal);
    script.rethrowPendingCoroutineException();
    if (signal.kind == BlockSignal::Kind::Break) throw std::runtime_error("break used outside a loop");
    return result;
}

BytecodeProgram VesperScript::compileToBytecode(const std::string& source) {
    return interpreter_->compileToBytecode(source);
}
BytecodeProgram VesperScript::compileToBytecode(const std::string& source, const std::string& sourcePath) {
    return interpreter_->compileToBytecode(source, sourcePath);
}

std::vector<unsigned char> VesperScript::serialiseBytecode(const BytecodeProgram& program) {
    return kelmora::serialiseBytecode(program);
}
BytecodeProgram VesperScript::deserialiseBytecode(std::span<const unsigned char> bytes,
                                                  const std::string& sourceName) {
    return kelmora::deserialiseBytecode(bytes, sourceName);
}
BytecodeProgram VesperScript::deserialiseOwnImage(std::span<const unsigned char> bytes) {
    return kelmora::deserialiseOwnImage(bytes);
}
void VesperScript::saveBytecode(const BytecodeProgram& program, const std::string& path) {
    kelmora::saveBytecode(program, path);
}
BytecodeProgram VesperScript::loadBytecode(const std::string& path) {
    return kelmora::loadBytecode(path);
}

void VesperScript::setFastExpressions(bool on) {
    interpreter_->fastExpressions = on;
}
void VesperScript::setStepLimit(std::uint64_t steps) {
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    interpreter_->stepsLeft = static_cast<std::int64_t>(std::min(steps, most));
}
bool VesperScript::stepLimitReached() const {
    return interpreter_->stepsLeft == 0;
}

void VesperScript::pushVariable(const std::string& name, const Variable& value) {
    interpreter_->pushVariable(name, value);
}

Variable VesperScript::pullVariable(const std::string& name) const {
    Scopes& scopes = interpreter_->scopes;
    std::string_view scopedName;
    int scope = 0;
    const Variable* found = parseScopedVariableToken(name, scopedName, scope)
                                ? scopes.findExplicit(internName(scopedName), scope)
                                : scopes.find(internName(name));
    if (!found) throw std::runtime_error("Variable not found: " + name);
    return *found;
}

std::vector<std::pair<std::string, Variable>> VesperScript::globals() const {
    std::vector<std::pair<std::string, Variable>> found;
    for (const auto& [name, value] : interpreter_->scopes.definedGlobals())
        found.emplace_back(nameText(name), *value);
    return found;
}

void VesperScript::pushFunction(const std::string& name, NativeFunction body) {
    pushVariable(name, makeNativeCallable(std::move(body), name));
}

Variable VesperScript::createNativeCallable(NativeFunction body, const std::string& name, BuiltinId id) {
    return makeNativeCallable(std::move(body), name, id);
}

Variable VesperScript::callCallable(const Variable& callee, const std::vector<Variable>& arguments) {
    if (!callee.isFunction()) throw std::runtime_error("callCallable: value is not a function");
    return interpreter_->invokeCallable(callee, arguments);
}

bool VesperScript::shouldAbortForSoftRaisedError() const {
    return interpreter_->shouldAbortForSoftRaisedError();
}

HostServices& VesperScript::host() const {
    return interpreter_->host;
}
NativeStack& VesperScript::nativeStack() {
    return interpreter_->stack;
}

std::string VesperScript::normalisePath(const std::string& path) {
    return kelmora::normalisePath(path);
}
std::string VesperScript::resolvePath(const std::string& path) const {
    return interpreter_->resolvePath(path);
}

}  // namespace kelmora
