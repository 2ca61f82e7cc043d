#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace kelmora {

// Base of objects that script values share. The count is plain: script values live on one thread.
class RefCounted {
public:
    RefCounted() = default;
    RefCounted(const RefCounted&) = delete;
    RefCounted& operator=(const RefCounted&) = delete;

    void retain() const { ++references_; }
    // True when the last reference went and the object has to be destroyed.
    bool release() const { return --references_ == 0; }
    bool isShared() const { return references_ > 1; }

protected:
    ~RefCounted() = default;

private:
    mutable std::uint32_t references_ = 0;
};

// Counted pointer to a RefCounted object of a type whose destruction cannot nest deeply.
template <typename T>
class Ref {
public:
    Ref() = default;
    Ref(std::nullptr_t) {}
    explicit Ref(T* object) : object_(object) {
        if (object_) object_->retain();
    }
    Ref(const Ref& other) : Ref(other.object_) {}
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Ref() {
        if (object_ && object_->release()) destroy(object_);
    }

    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }
    friend bool operator==(const Ref& a, const Ref& b) { return a.object_ == b.object_; }

private:
    [[gnu::noinline]] static void destroy(T* object) { delete object; }

    T* object_ = nullptr;
};

template <typename T, typename... Arguments>
Ref<T> makeRef(Arguments&&... arguments) {
    return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace kelmora
