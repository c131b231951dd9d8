#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace MailCore {

/// Leaves trivially constructible elements uninitialised on resize, so that a buffer that is about to be
/// filled is not written twice; and aligns to a cache line: reading a file into a buffer that is not takes
/// the kernel four times as long.
template <typename Value>
struct UninitializedAllocator : std::allocator<Value> {
    template <typename Other>
    struct rebind {
        using other = UninitializedAllocator<Other>;
    };
    UninitializedAllocator() = default;
    template <typename Other>
    UninitializedAllocator(const UninitializedAllocator<Other>&) noexcept {}

    static constexpr std::align_val_t alignment{64};
    Value* allocate(std::size_t count) {
        return static_cast<Value*>(::operator new(count * sizeof(Value), alignment));
    }
    void deallocate(Value* place, std::size_t) noexcept { ::operator delete(place, alignment); }

    template <typename Other>
    void construct(Other* place) noexcept {
        ::new (static_cast<void*>(place)) Other;
    }
    template <typename Other, typename... Arguments>
    void construct(Other* place, Arguments&&... arguments) {
        ::new (static_cast<void*>(place)) Other(std::forward<Arguments>(arguments)...);
    }
};

/// Bytes of a file, before any charset has been applied. `resize` does not clear what it adds.
using Bytes = std::vector<std::byte, UninitializedAllocator<std::byte>>;
/// A borrowed run of bytes.
using ByteView = std::span<const std::byte>;
/// A position in a file, in bytes from its start.
using ByteOffset = std::uint64_t;

/// The same bytes seen as bytes; borrows `text`.
inline ByteView bytesOf(std::string_view text) noexcept {
    return std::as_bytes(std::span(text.data(), text.size()));
}

/// The same bytes seen as chars, with no claim that they are text; borrows `bytes`.
inline std::string_view charsOf(ByteView bytes) noexcept {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// An owned copy of `bytes`.
inline Bytes copyOf(ByteView bytes) {
    return {bytes.begin(), bytes.end()};
}

} // namespace MailCore
