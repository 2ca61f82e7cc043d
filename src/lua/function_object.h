#pragma once

#include <functional>
#include <memory>
#include <span>

#include "lua/object_list.h"
#include "lua/prototype.h"
#include "lua/value.h"

namespace vesper::lua {

class NativeCall;
using NativeFunction = void (*)(NativeCall& call);

// A function of a script or of the library. pcall and error are run by the interpreter itself.
class FunctionObject final : public kelmora::RefCounted, private ListedObject {
public:
    enum class Kind : std::uint8_t { Script, Native, ProtectedCall, Raise };

    FunctionObject(ObjectList& list, kelmora::Ref<const Prototype> prototype)
        : prototype_(std::move(prototype)), captures_(prototype_->captures.size()) {
        list.add(*this);
    }
    FunctionObject(ObjectList& list, std::string name, std::function<void(NativeCall&)> native,
                   Kind kind = Kind::Native)
        : kind_(kind), name_(std::move(name)), native_(std::move(native)) {
        list.add(*this);
    }

    Kind kind() const { return kind_; }
    // Of a script function.
    const Prototype& prototype() const { return *prototype_; }
    Value* captures() { return captures_.data(); }
    // Of a native one.
    const std::string& name() const { return name_; }
    void callNative(NativeCall& call) const { native_(call); }

private:
    Value asValue() override { return Value(this); }
    void releaseContent() override { captures_.clear(); }

    Kind kind_ = Kind::Script;
    kelmora::Ref<const Prototype> prototype_;
    std::vector<Value> captures_;
    std::string name_;
    std::function<void(NativeCall&)> native_;
};

inline Value::Value(FunctionObject* object) : Value(ValueKind::Function, object) {}
inline FunctionObject& Value::function() const {
    return *static_cast<FunctionObject*>(payload_.object);
}

}  // namespace vesper::lua
