#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "plush/shader/compiler.h"
#include "plush/shader/program_builder.h"

namespace kelmora::plush_shader::detail {

// What each name of a shader stands for at the place that is being compiled.
class NameResolver {
public:
    NameResolver(const CompileOptions& options, const TokenCursor& cursor, ProgramBuilder& builder);

    // One block of statements; its locals end with it. The outermost one also holds the globals.
    class Scope {
    public:
        explicit Scope(NameResolver& names) : names_(names) { names.scopes_.emplace_back(); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() { names_.scopes_.pop_back(); }

    private:
        NameResolver& names_;
    };

    Slot declareLocal(const std::string& name);
    bool isVariable(const std::string& name) const { return findVariable(name) != nullptr; }
    bool isUniformsTable(const std::string& name) const {
        return !uniformsTable_.empty() && name == uniformsTable_ && !isVariable(name);
    }

    Slot read(const std::string& name);
    Slot write(const std::string& name);
    // A uniform by its own name, known or new.
    Slot uniform(const std::string& name);

private:
    using Names = std::unordered_map<std::string, Slot>;

    const Slot* findVariable(const std::string& name) const;
    Slot markedRead(Slot slot);
    Slot channel(Slot slot, const std::string& name, std::string_view kind);

    const CompileOptions& options_;
    const TokenCursor& cursor_;
    ProgramBuilder& builder_;
    std::vector<Names> scopes_;
    Names parameters_;
    Names uniforms_;
    std::string uniformsTable_;
};

}  // namespace kelmora::plush_shader::detail
