#pragma once

#include <glib-object.h>

#include <utility>

namespace TesselMail {

/// A counted reference to a GObject of a library that has no C++ binding.
template <typename Object>
class ObjectRef {
public:
    ObjectRef() noexcept = default;
    /// Takes over the caller's reference.
    static ObjectRef adopt(Object* object) noexcept { return ObjectRef(object); }
    /// Adds a reference; one that floats becomes ours.
    static ObjectRef retain(Object* object) noexcept {
        return ObjectRef(object ? static_cast<Object*>(g_object_ref_sink(object)) : nullptr);
    }
    ObjectRef(const ObjectRef& other) noexcept : ObjectRef(retain(other.object_)) {}
    ObjectRef(ObjectRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ObjectRef& operator=(ObjectRef other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ObjectRef() {
        if (object_) g_object_unref(object_);
    }

    Object* get() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

private:
    explicit ObjectRef(Object* object) noexcept : object_(object) {}
    Object* object_ = nullptr;
};

/// Watches a GObject that belongs to somebody else and may go at any time.
template <typename Object>
class ObjectWatch {
public:
    ObjectWatch() noexcept { g_weak_ref_init(&object_, nullptr); }
    ObjectWatch(const ObjectWatch&) = delete;
    ObjectWatch& operator=(const ObjectWatch&) = delete;
    ~ObjectWatch() { g_weak_ref_clear(&object_); }

    void set(Object* object) noexcept { g_weak_ref_set(&object_, object); }
    /// The object while it is there.
    ObjectRef<Object> get() noexcept {
        return ObjectRef<Object>::adopt(static_cast<Object*>(g_weak_ref_get(&object_)));
    }

private:
    GWeakRef object_{};
};

} // namespace TesselMail
