// The shared character block behind every BrmStringT: a header directly in
// front of the characters, a reference count, and the one nil block that all
// empty strings of both widths point to.
#pragma once

#include <atomic>
#include <cstdint>

namespace BrmPlatform {
namespace details {

struct IStringManager;

// Lies directly in front of the characters of a string.
struct StringDataHeader {
    std::atomic<int32_t> refCount;
    int32_t length;       // characters in use
    int32_t allocLength;  // characters that fit, terminating zero not counted
    // Set only on the nil block, which lives for ever and is not counted: every
    // empty string of every thread points to it, and counting it would make
    // its one cache line bounce between processors at each empty string.
    int32_t permanent;
    IStringManager* manager;

    template <typename T>
    T* Data() noexcept { return reinterpret_cast<T*>(this + 1); }

    template <typename T>
    static StringDataHeader* FromData(const T* data) noexcept
    {
        return reinterpret_cast<StringDataHeader*>(const_cast<T*>(data)) - 1;
    }

    // The nil block counts as shared, so that no write goes into it.
    bool IsShared() const noexcept { return permanent || refCount.load(std::memory_order_acquire) > 1; }
    void AddRef() noexcept
    {
        if (!permanent)
            refCount.fetch_add(1, std::memory_order_relaxed);
    }
    // Takes one owner off; the owner that reaches zero frees the block.
    void Release() noexcept
    {
        if (!permanent)
            ReleaseCounted();
    }

private:
    void ReleaseCounted() noexcept;
};

// Answers the nil block, which needs no reference of its own.
struct IStringManager {
    virtual StringDataHeader* GetNilString() noexcept = 0;

protected:
    ~IStringManager() = default;
};

// The sole manager, one global object. Its nil block (length 0, allocLength 0,
// a zero wide enough for both widths) is never freed.
class StringManager final : public IStringManager {
public:
    static StringManager& Instance() noexcept;
    StringDataHeader* GetNilString() noexcept override;
};

// A fresh block from the general heap for allocLength + 1 characters, refCount
// 1, with length characters copied from source (when length > 0) and a zero
// behind them. Throws std::bad_alloc when the heap has nothing left.
template <typename T>
StringDataHeader* NewStringData(int allocLength, int length, const T* source);

}  // namespace details
}  // namespace BrmPlatform
