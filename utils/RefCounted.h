// Plain intrusive reference counting for objects used by one thread at a
// time (memory blocks, buffer implementations, data containers): the count
// is not atomic. RefPtr holds one reference.
#pragma once

#include <cstdint>
#include <utility>

namespace BrmUtils {

// The count itself. It starts at 0; whoever makes the object takes the first
// reference.
class RefCountBase {
public:
    uint32_t GetRefCount() const { return refCount_; }
    bool HasOneRef() const { return refCount_ == 1; }

protected:
    RefCountBase() = default;
    ~RefCountBase() = default;
    RefCountBase(const RefCountBase&) = delete;
    RefCountBase& operator=(const RefCountBase&) = delete;

    void AddRefImpl() const { ++refCount_; }
    // True when the last reference went.
    bool ReleaseImpl() const { return --refCount_ == 0; }

private:
    mutable uint32_t refCount_ = 0;
};

template <typename T>
struct DefaultRefCountedTraits {
    static void Destruct(const T* object) { delete object; }
};

// Derive as `class X : public RefCounted<X>`. Traits::Destruct runs when the
// count falls to zero.
template <typename T, typename Traits = DefaultRefCountedTraits<T>>
class RefCounted : public RefCountBase {
public:
    void AddRef() const { AddRefImpl(); }
    void Release() const {
        if (ReleaseImpl()) Traits::Destruct(static_cast<const T*>(this));
    }

protected:
    RefCounted() = default;
    ~RefCounted() = default;
};

// A pointer that holds one reference of an object with AddRef and Release.
template <typename T>
class RefPtr {
public:
    RefPtr() = default;
    RefPtr(std::nullptr_t) {}
    // Takes a new reference.
    explicit RefPtr(T* p) : p_(p) {
        if (p_) p_->AddRef();
    }
    RefPtr(const RefPtr& other) : RefPtr(other.p_) {}
    RefPtr(RefPtr&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
    template <typename U>
    RefPtr(const RefPtr<U>& other) : RefPtr(other.Get()) {}
    ~RefPtr() {
        if (p_) p_->Release();
    }
    RefPtr& operator=(RefPtr other) noexcept {
        std::swap(p_, other.p_);
        return *this;
    }

    // Adopts a reference the caller already holds.
    static RefPtr Adopt(T* p) {
        RefPtr r;
        r.p_ = p;
        return r;
    }
    // Gives up the reference to the caller.
    T* Detach() { return std::exchange(p_, nullptr); }
    void Reset() { RefPtr().Swap(*this); }
    void Swap(RefPtr& other) noexcept { std::swap(p_, other.p_); }

    T* Get() const { return p_; }
    T* operator->() const { return p_; }
    T& operator*() const { return *p_; }
    explicit operator bool() const { return p_ != nullptr; }
    friend bool operator==(const RefPtr& a, const RefPtr& b) { return a.p_ == b.p_; }

private:
    T* p_ = nullptr;
};

}  // namespace BrmUtils
