#include "rwby/ruby_vm.h"

#include <algorithm>

#include "base/file_stream.h"
#include "rwby/compiler.h"
#include "rwby/library/library.h"
#include "rwby/machine.h"

namespace vesper::ruby {
namespace {

std::string readFile(kelmora::HostServices& host, const std::string& path, const char* failure) {
    std::FILE* stream = host.openFile(path, "rb");
    if (!stream) throw std::runtime_error(failure + path);
    std::string content;
    kelmora::FileStream(stream, nullptr).readAll(content);
    return content;
}

}  // namespace

RubyVM::RubyVM(kelmora::HostServices& host, kelmora::NativeStack& stack)
    : impl_(std::make_unique<Impl>(*this, host, stack)) {
    bindDefaults(*this, impl_->globals);
}

RubyVM::~RubyVM() = default;

RubyResult RubyVM::runScript(std::string_view source, std::string_view chunkName) {
    return impl_->run([&] { return impl_->compile(source, chunkName); });
}

RubyResult RubyVM::runScriptFile(const std::string& path) {
    return impl_->run(
        [&] { return impl_->compile(readFile(impl_->host, path, "unable to open script file: "), path); });
}

RubyResult RubyVM::runBytecode(std::span<const std::uint8_t> bytecode) {
    return impl_->run([&] {
        auto program = deserialiseProgram(bytecode);
        impl_->finalise(*program);
        return program;
    });
}

RubyResult RubyVM::runBytecodeFile(const std::string& path) {
    std::string content;
    try {
        content = readFile(impl_->host, path, "unable to open bytecode file: ");
    } catch (const std::exception& error) {
        return {false, error.what(), {}};
    }
    return runBytecode({reinterpret_cast<const std::uint8_t*>(content.data()), content.size()});
}

RubyCompilation RubyVM::compileScript(std::string_view source, std::string_view chunkName) {
    if (!impl_->nativeStack.isMarked()) impl_->nativeStack.markBase();
    try {
        return {true, "", serialiseProgram(*compileSource(source, chunkName, impl_->nativeStack))};
    } catch (const std::exception& error) {
        return {false, error.what(), {}};
    }
}

bool RubyVM::writeBytecodeFile(std::string_view source, std::string_view chunkName,
                               const std::string& outputPath, std::string* error) {
    RubyCompilation compilation = compileScript(source, chunkName);
    if (compilation.success && !impl_->host.replaceFile(outputPath, compilation.bytecode)) {
        compilation.success = false;
        compilation.error = "unable to open bytecode output file: " + outputPath;
    }
    if (error) *error = compilation.error;
    return compilation.success;
}

std::optional<RubyValue> RubyVM::getGlobal(std::string_view name) const {
    const RubyValue* value = impl_->globals.find(name);
    return value ? std::optional(*value) : std::nullopt;
}

void RubyVM::setGlobal(std::string_view name, RubyValue value) {
    impl_->globals.setGlobalSlotValue(impl_->globals.ensureGlobalSlot(name), std::move(value));
}

void RubyVM::removeGlobal(std::string_view name) {
    if (impl_->globals.find(name)) setGlobal(name, RubyValue::undefined());
}

void RubyVM::bindFunction(std::string name, BoundFunction function) {
    const RubyValue value = RubyValue::function(new FunctionObject(name, std::move(function)));
    setGlobal(name, value);
}

RubyValue RubyVM::call(const RubyValue& function, Arguments arguments) {
    const RubyValue kept = function;
    const StackWindow window(impl_->stack, arguments.size());
    std::copy(arguments.begin(), arguments.end(), window.values());
    return impl_->callValue(kept, {window.values(), arguments.size()});
}

RubyValue RubyVM::compileFunction(std::string_view source, std::string_view chunkName) {
    return RubyValue::function(new FunctionObject("<main>", impl_->compile(source, chunkName), 0));
}

kelmora::HostServices& RubyVM::host() {
    return impl_->host;
}

RandomSource& RubyVM::random() {
    return impl_->random;
}

void RubyVM::setStepLimit(std::uint64_t steps) {
    impl_->stepLimit = steps;
}

void RubyVM::setExecutionMode(ExecutionMode mode) {
    impl_->mode = mode;
}

}  // namespace vesper::ruby
