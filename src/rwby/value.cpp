#include "rwby/value.h"

#include <algorithm>
#include <array>
#include <functional>
#include <stdexcept>

#include "base/pending_destruction.h"
#include "base/saturating.h"
#include "rwby/map_object.h"
#include "rwby/program.h"
#include "text/limits.h"
#include "text/number_text.h"

namespace vesper::ruby {
namespace {

constexpr std::array<std::string_view, 8> typeNames{"nil",    "integer", "float", "boolean",
                                                    "string", "array",   "map",   "function"};

// Builds the text of nested containers. Nesting and size are held, so that no value can exhaust the native
// stack or the memory: an array may hold itself, and a few dozen shared ones can print as gigabytes.
class TextBuilder {
public:
    void append(const RubyValue& value) {
        if (value.isArray()) {
            appendArray(value);
        } else if (value.isMap()) {
            appendMap(value);
        } else if (value.isString()) {
            text_ += value.stringObject().text();
        } else {
            text_ += scalarText(value);
        }
        if (text_.size() > kelmora::maximumTextSize) throw std::runtime_error("the text is too large");
    }
    std::string take() { return std::move(text_); }

private:
    static constexpr std::size_t maximumDepth = 500;

    static std::string scalarText(const RubyValue& value) {
        switch (value.type()) {
            case RubyValueType::Integer:
                return kelmora::integerText(value.integerValue());
            case RubyValueType::Float:
                return kelmora::floatText(value.floatValue());
            case RubyValueType::Boolean:
                return value.booleanValue() ? "true" : "false";
            case RubyValueType::Function:
                return "[function " + value.functionObject().name + "]";
            default:
                return "nil";
        }
    }

    void enter(const RubyValue& container) {
        const void* identity = container.identity();
        if (std::find(path_.begin(), path_.end(), identity) != path_.end())
            throw std::runtime_error("a container that holds itself has no text");
        if (path_.size() >= maximumDepth) throw std::runtime_error("containers are nested too deeply");
        path_.push_back(identity);
    }
    void appendArray(const RubyValue& value) {
        enter(value);
        text_ += '[';
        bool first = true;
        for (const RubyValue& item : value.items()) {
            if (!std::exchange(first, false)) text_ += ", ";
            append(item);
        }
        text_ += ']';
        path_.pop_back();
    }
    void appendMap(const RubyValue& value) {
        enter(value);
        text_ += '{';
        bool first = true;
        const MapObject& map = value.mapObject();
        for (const std::uint32_t place : map.sortedOrder()) {
            const MapObject::Entry& entry = map.entries()[place];
            if (!std::exchange(first, false)) text_ += ", ";
            text_.append(entry.key->text()).append(": ");
            append(entry.value);
        }
        text_ += '}';
        path_.pop_back();
    }

    std::string text_;
    std::vector<const void*> path_;
};

void deleteObject(RubyValueType type, kelmora::RefCounted* object) {
    if (type == RubyValueType::Array) {
        delete static_cast<ArrayObject*>(object);
    } else if (type == RubyValueType::Map) {
        delete static_cast<MapObject*>(object);
    } else {
        delete static_cast<FunctionObject*>(object);
    }
}

}  // namespace

std::string_view rubyValueTypeName(RubyValueType type) {
    const auto index = static_cast<std::size_t>(type);
    return index < typeNames.size() ? typeNames[index] : "unknown";
}

void RubyValue::destroyObject(RubyValueType type, kelmora::RefCounted* object) {
    if (type == RubyValueType::String) {
        delete static_cast<StringObject*>(object);
        return;
    }
    if (type == RubyValueType::Array && static_cast<ArrayObject*>(object)->items.empty()) {
        deleteObject(type, object);
        return;
    }
    kelmora::PendingDestruction<RubyValueType, deleteObject>::add(type, object);
}

RubyValue RubyValue::character(char byte) {
    static const std::array<RubyValue, 256>& characters = [] {
        auto& made = *new std::array<RubyValue, 256>;
        for (std::size_t i = 0; i < made.size(); ++i) {
            const char c = static_cast<char>(i);
            made[i] = text({&c, 1});
        }
        return std::ref(made);
    }();
    return characters[static_cast<unsigned char>(byte)];
}

RubyValue RubyValue::array(RubyItems items) {
    auto* object = new ArrayObject;
    object->items = std::move(items);
    return counted(RubyValueType::Array, object);
}

RubyValue RubyValue::map(MapObject* object) noexcept {
    return counted(RubyValueType::Map, object);
}

RubyValue RubyValue::makeMap() {
    return map(new MapObject);
}

RubyValue RubyValue::function(FunctionObject* object) noexcept {
    return counted(RubyValueType::Function, object);
}

std::int64_t RubyValue::asInteger() const {
    if (isInteger()) return integerValue();
    if (isFloat()) return kelmora::saturatingInt64(floatValue());
    throw std::runtime_error("value is not numeric");
}

double RubyValue::asFloat() const {
    if (!isNumeric()) throw std::runtime_error("value is not numeric");
    return numericValue();
}

bool RubyValue::asBoolean() const {
    if (!isBoolean()) throw std::runtime_error("value is not boolean");
    return booleanValue();
}

std::string_view RubyValue::asString() const {
    if (!isString()) throw std::runtime_error("value is not a string");
    return stringObject().text();
}

RubyItems& RubyValue::asArray() const {
    if (!isArray()) throw std::runtime_error("value is not an array");
    return items();
}

MapObject& RubyValue::asMap() const {
    if (!isMap()) throw std::runtime_error("value is not a map");
    return mapObject();
}

std::string RubyValue::toString() const {
    if (isString()) return std::string(stringObject().text());
    TextBuilder builder;
    builder.append(*this);
    return builder.take();
}

bool valuesEqual(const RubyValue& a, const RubyValue& b) {
    if (a.isNumeric() && b.isNumeric()) {
        if (a.isInteger() && b.isInteger()) return a.integerValue() == b.integerValue();
        return a.numericValue() == b.numericValue();
    }
    if (a.type() != b.type()) return false;
    switch (a.type()) {
        case RubyValueType::Boolean:
            return a.booleanValue() == b.booleanValue();
        case RubyValueType::String:
            return a.identity() == b.identity() || a.stringObject().text() == b.stringObject().text();
        case RubyValueType::Array:
        case RubyValueType::Map:
        case RubyValueType::Function:
            return a.identity() == b.identity();
        default:
            return true;
    }
}

}  // namespace vesper::ruby
