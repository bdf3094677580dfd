// BrmUtils::Any: the typed value box that carries metadata values and
// decompressor parameters between layers that do not know each other's types.
//
// An Any is three words: two words of storage and a flag. A small holder
// (its virtual table pointer and one word of value) stands inline in the
// storage; a larger one lives on the heap and the first word points at it.
// The empty Any is the indirect form with a null pointer.
//
// Values are read back by type: GetPtr<T>() or AnyCast<T>(any, default)
// compare the held type descriptor with T; a mismatch or an empty Any gives
// null or the caller's default. Types that can be compared (numbers, strings,
// Guid, vectors of such) compare inside the Any; structures without an order
// are held without comparison and never compare equal.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <new>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace BrmUtils {

// How a held type compares. A type with a member Compare (the string class)
// uses it; others use == and <; vectors compare element by element. A type
// with neither is held without comparison.
template <typename T>
struct AnyComparer {
    static constexpr bool kHasCompare = requires(const T& a, const T& b) {
        { a.Compare(b) } -> std::convertible_to<int>;
    };
    static constexpr bool kHasOperators = requires(const T& a, const T& b) {
        { a == b } -> std::convertible_to<bool>;
        { a < b } -> std::convertible_to<bool>;
    };
    static constexpr bool kComparable = kHasCompare || kHasOperators;

    static bool Equals(const T& a, const T& b) {
        if constexpr (kHasCompare)
            return a.Compare(b) == 0;
        else
            return a == b;
    }
    static bool Less(const T& a, const T& b) {
        if constexpr (kHasCompare)
            return a.Compare(b) < 0;
        else
            return a < b;
    }
};

template <typename E, typename A>
struct AnyComparer<std::vector<E, A>> {
    static constexpr bool kComparable = AnyComparer<E>::kComparable;

    static bool Equals(const std::vector<E, A>& a, const std::vector<E, A>& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), AnyComparer<E>::Equals);
    }
    static bool Less(const std::vector<E, A>& a, const std::vector<E, A>& b) {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), AnyComparer<E>::Less);
    }
};

class Any {
public:
    // The abstract holder of one value.
    class HolderInterface {
    public:
        virtual ~HolderInterface() = default;
        // Makes a copy of this holder in target (target is empty).
        virtual void CopyTo(Any& target) const = 0;
        // The same, moving the value out of this holder.
        virtual void MoveTo(Any& target) = 0;
        // Value assignment from a holder of the same type; other types are ignored.
        virtual void Assign(const HolderInterface& other) = 0;
        virtual bool Equals(const HolderInterface& other) const = 0;
        virtual const std::type_info& GetType() const = 0;
        virtual bool Less(const HolderInterface& other) const = 0;
        // The address of the held value.
        virtual const void* GetValue() const = 0;
    };

    // Comparable: Equals and Less work on the value (else they answer
    // false). Inline: the holder may stand in the Any's own storage when it
    // fits. The program always sets both the same way.
    template <typename T, bool Comparable, bool Inline>
    class Holder;

    static constexpr std::size_t kInlineSize = 2 * sizeof(void*);

    // Whether the holder H of a T stands inline.
    template <typename H, typename T>
    static constexpr bool kStoredInline = sizeof(H) <= kInlineSize && alignof(H) <= alignof(void*) &&
                                          std::is_nothrow_move_constructible_v<T>;

    Any() noexcept { SetEmpty(); }
    Any(const Any& other) {
        SetEmpty();
        if (const HolderInterface* h = other.GetHolder()) h->CopyTo(*this);
    }
    Any(Any&& other) noexcept {
        SetEmpty();
        TakeFrom(other);
    }
    // Holds a copy of value, comparable if its type can be compared.
    template <typename V, typename T = std::decay_t<V>>
        requires(!std::is_same_v<T, Any>)
    Any(V&& value) {
        SetEmpty();
        Emplace<T>(std::forward<V>(value));
    }
    ~Any() { Clear(); }

    Any& operator=(const Any& other) {
        if (this == &other) return *this;
        HolderInterface* mine = GetHolder();
        const HolderInterface* theirs = other.GetHolder();
        if (mine && theirs && mine->GetType() == theirs->GetType()) {
            mine->Assign(*theirs);
        } else {
            Any copy(other);
            Clear();
            TakeFrom(copy);
        }
        return *this;
    }
    Any& operator=(Any&& other) noexcept {
        if (this != &other) {
            Clear();
            TakeFrom(other);
        }
        return *this;
    }
    template <typename V, typename T = std::decay_t<V>>
        requires(!std::is_same_v<T, Any>)
    Any& operator=(V&& value) {
        Emplace<T>(std::forward<V>(value));
        return *this;
    }

    // Replaces the value by a T made from args, held by Holder<T, C, I>.
    template <typename T, bool C = AnyComparer<T>::kComparable, bool I = C, typename... Args>
    T& Emplace(Args&&... args);

    void Clear() noexcept {
        if (isIndirect_) {
            delete storage_.heap;
        } else {
            InlineHolder()->~HolderInterface();
        }
        SetEmpty();
    }
    void Swap(Any& other) noexcept {
        Any tmp(std::move(other));
        other = std::move(*this);
        *this = std::move(tmp);
    }

    bool IsEmpty() const { return GetHolder() == nullptr; }
    bool IsInline() const { return isIndirect_ == 0; }
    // The held type; typeid(void) when empty.
    const std::type_info& GetType() const {
        const HolderInterface* h = GetHolder();
        return h ? h->GetType() : typeid(void);
    }
    template <typename T>
    bool Is() const {
        return GetType() == typeid(T);
    }

    // The held value if it is a T, else null.
    template <typename T>
    const T* GetPtr() const {
        const HolderInterface* h = GetHolder();
        if (!h || h->GetType() != typeid(T)) return nullptr;
        return static_cast<const T*>(h->GetValue());
    }
    template <typename T>
    T* GetPtr() {
        return const_cast<T*>(std::as_const(*this).template GetPtr<T>());
    }
    // The held value if it is a T, else defaultValue.
    template <typename T>
    T GetValue(const T& defaultValue = T()) const {
        const T* p = GetPtr<T>();
        return p ? *p : defaultValue;
    }

    const HolderInterface* GetHolder() const { return isIndirect_ ? storage_.heap : InlineHolder(); }
    HolderInterface* GetHolder() { return isIndirect_ ? storage_.heap : InlineHolder(); }

    // Two empty values are equal; values of different types are not.
    bool Equals(const Any& other) const {
        const HolderInterface* a = GetHolder();
        const HolderInterface* b = other.GetHolder();
        if (!a || !b) return a == b;
        return a->GetType() == b->GetType() && a->Equals(*b);
    }
    // Empty orders first; different types order by their descriptors.
    bool Less(const Any& other) const {
        const HolderInterface* a = GetHolder();
        const HolderInterface* b = other.GetHolder();
        if (!a || !b) return !a && b;
        if (a->GetType() != b->GetType()) return a->GetType().before(b->GetType());
        return a->Less(*b);
    }
    friend bool operator==(const Any& a, const Any& b) { return a.Equals(b); }
    friend bool operator<(const Any& a, const Any& b) { return a.Less(b); }

private:
    void SetEmpty() noexcept {
        storage_.heap = nullptr;
        isIndirect_ = 1;
    }
    // Moves other's holder here (this is empty) and leaves other empty.
    void TakeFrom(Any& other) noexcept {
        if (other.isIndirect_) {
            storage_.heap = other.storage_.heap;
            isIndirect_ = 1;
            other.SetEmpty();
        } else {
            other.InlineHolder()->MoveTo(*this);
            other.Clear();
        }
    }
    HolderInterface* InlineHolder() const {
        return std::launder(reinterpret_cast<HolderInterface*>(const_cast<unsigned char*>(storage_.bytes)));
    }

    union Storage {
        HolderInterface* heap;
        alignas(void*) unsigned char bytes[kInlineSize];
    };
    Storage storage_;
    uintptr_t isIndirect_;
};
static_assert(sizeof(Any) == 3 * sizeof(void*));

template <typename T, bool Comparable, bool Inline>
class Any::Holder final : public Any::HolderInterface {
    static_assert(!Comparable || AnyComparer<T>::kComparable, "a comparable holder needs a type that compares");

public:
    template <typename... Args>
    explicit Holder(Args&&... args) : value(std::forward<Args>(args)...) {}

    // A copy is always comparable when the type is, so that a value copied
    // into an Any can be compared whichever holder it came from.
    static constexpr bool kCopyComparable = Comparable || AnyComparer<T>::kComparable;
    static constexpr bool kCopyInline = Inline || kCopyComparable;

    void CopyTo(Any& target) const override { target.template Emplace<T, kCopyComparable, kCopyInline>(value); }
    void MoveTo(Any& target) override { target.template Emplace<T, kCopyComparable, kCopyInline>(std::move(value)); }
    void Assign(const HolderInterface& other) override {
        if (other.GetType() == typeid(T)) value = *static_cast<const T*>(other.GetValue());
    }
    bool Equals(const HolderInterface& other) const override {
        if constexpr (Comparable) {
            if (other.GetType() != typeid(T)) return false;
            return AnyComparer<T>::Equals(value, *static_cast<const T*>(other.GetValue()));
        } else {
            (void)other;
            return false;
        }
    }
    const std::type_info& GetType() const override { return typeid(T); }
    bool Less(const HolderInterface& other) const override {
        if constexpr (Comparable) {
            if (other.GetType() != typeid(T)) return false;
            return AnyComparer<T>::Less(value, *static_cast<const T*>(other.GetValue()));
        } else {
            (void)other;
            return false;
        }
    }
    const void* GetValue() const override { return &value; }

    T value;
};

template <typename T, bool C, bool I, typename... Args>
T& Any::Emplace(Args&&... args) {
    using H = Holder<T, C, I>;
    Clear();
    if constexpr (I && kStoredInline<H, T>) {
        try {
            H* h = new (storage_.bytes) H(std::forward<Args>(args)...);
            isIndirect_ = 0;
            return h->value;
        } catch (...) {
            SetEmpty();
            throw;
        }
    } else {
        H* h = new H(std::forward<Args>(args)...);
        storage_.heap = h;
        isIndirect_ = 1;
        return h->value;
    }
}

// The value of a if it holds a T, otherwise defaultValue.
template <typename T>
T AnyCast(const Any& a, const T& defaultValue = T()) {
    return a.GetValue<T>(defaultValue);
}
// The held T, or null.
template <typename T>
const T* AnyCast(const Any* a) {
    return a ? a->GetPtr<T>() : nullptr;
}
template <typename T>
T* AnyCast(Any* a) {
    return a ? a->GetPtr<T>() : nullptr;
}

}  // namespace BrmUtils
