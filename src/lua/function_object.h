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

// A function of a script, of the library, or one that the host bound. pcall and error are run by the
// interpreter itself.
class FunctionObject final : public kelmora::RefCounted, private ListedObject {
public:
    enum class Kind : std::uint8_t { Script, Native, Bound, ProtectedCall, Raise };

    FunctionObject(ObjectList& list, kelmora::Ref<const Prototype> prototype)
        : plainArguments_(prototype->parameters),
          prototype_(std::move(prototype)),
          captures_(prototype_->captures.size()) {
        list.add(*this);
    }
    FunctionObject(ObjectList& list, std::string name, NativeFunction native, Kind kind)
        : kind_(kind), name_(std::move(name)), native_(native) {
        list.add(*this);
    }
    FunctionObject(ObjectList& list, std::string name, std::function<void(NativeCall&)> bound)
        : kind_(Kind::Bound), name_(std::move(name)), bound_(std::move(bound)) {
        list.add(*this);
    }

    Kind kind() const { return kind_; }
    // How many arguments a call gives that can begin at once: a script function's parameters, else no number
    // that a call has.
    std::uint16_t plainArguments() const { return plainArguments_; }
    // Of a script function.
    const Prototype& prototype() const { return *prototype_; }
    Value* captures() { return captures_.data(); }
    // Of any other.
    const std::string& name() const { return name_; }
    void callNative(NativeCall& call) const {
        if (native_) {
            native_(call);
        } else {
            bound_(call);
        }
    }

private:
    Value asValue() override { return Value(this); }
    void releaseContent() override { captures_.clear(); }

    Kind kind_ = Kind::Script;
    std::uint16_t plainArguments_ = manyValues - 1;
    kelmora::Ref<const Prototype> prototype_;
    std::vector<Value> captures_;
    std::string name_;
    NativeFunction native_ = nullptr;
    std::function<void(NativeCall&)> bound_;
};

inline Value::Value(FunctionObject* object)
    : Value(ValueKind::Function, &static_cast<kelmora::RefCounted&>(*object)) {}
inline FunctionObject& Value::function() const {
    return static_cast<FunctionObject&>(*payload_.object);
}

}  // namespace vesper::lua
