#pragma once

#include <cstddef>
#include <new>

namespace kelmora {

// Base of small objects that come and go in great numbers: their memory is handed out again instead of
// going back to the system, so an address that was one of T never becomes one of another kind. They live on
// one thread. A sanitiser sees each of them by itself.
template <typename T>
class Pooled {
public:
    static void* operator new(std::size_t size) {
        if constexpr (!reusesMemory) return ::operator new(size);
        if (!free_) free_ = makeBlock(size);
        Slot* slot = free_;
        free_ = slot->next;
        return slot;
    }
    static void operator delete(void* memory) {
        if constexpr (reusesMemory) {
            free_ = new (memory) Slot{free_};
        } else {
            ::operator delete(memory);
        }
    }

protected:
    ~Pooled() = default;

private:
    struct Slot {
        Slot* next;
    };

#ifdef KELMORA_SANITISED
    static constexpr bool reusesMemory = false;
#else
    static constexpr bool reusesMemory = true;
#endif
    static constexpr std::size_t slotsInBlock = 64;

    [[gnu::noinline]] static Slot* makeBlock(std::size_t size) {
        static_assert(alignof(T) <= alignof(Slot) && sizeof(T) % alignof(Slot) == 0);
        auto* block = static_cast<std::byte*>(::operator new(size* slotsInBlock));
        Slot* first = nullptr;
        for (std::size_t i = slotsInBlock; i-- > 0;) first = new (block + i * size) Slot{first};
        return first;
    }

    static inline Slot* free_ = nullptr;
};

}  // namespace kelmora
