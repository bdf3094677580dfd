// The global string manager, its nil block and the block factory.
#include "utils/strings/StringData.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>

namespace BrmPlatform {
namespace details {

namespace {

// The nil block: a header and a zero wide enough to end a wide string, which
// also ends a narrow one. It has static storage and no destructor, so strings
// held by other static objects stay valid however the exit order falls.
struct NilBlock {
    StringDataHeader header;
    wchar_t zero[1];
};
static_assert(offsetof(NilBlock, zero) == sizeof(StringDataHeader),
              "the characters must follow the header directly");

}  // namespace

void StringDataHeader::ReleaseCounted() noexcept
{
    if (refCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
        std::free(this);
}

StringManager& StringManager::Instance() noexcept
{
    static StringManager manager;
    return manager;
}

StringDataHeader* StringManager::GetNilString() noexcept
{
    static NilBlock nil{{{1}, 0, 0, 1, this}, {0}};
    return &nil.header;
}

template <typename T>
StringDataHeader* NewStringData(int allocLength, int length, const T* source)
{
    if (allocLength < 0 || length < 0 || length > allocLength)
        throw std::bad_alloc();
    const std::size_t bytes = sizeof(StringDataHeader) + (std::size_t(allocLength) + 1) * sizeof(T);
    void* memory = std::malloc(bytes);
    if (!memory)
        throw std::bad_alloc();
    auto* header = static_cast<StringDataHeader*>(memory);
    new (&header->refCount) std::atomic<int32_t>();
    header->refCount.store(1, std::memory_order_release);
    header->length = length;
    header->allocLength = allocLength;
    header->permanent = 0;
    header->manager = &StringManager::Instance();
    T* chars = header->Data<T>();
    if (length > 0 && source)
        std::memcpy(chars, source, std::size_t(length) * sizeof(T));
    chars[length] = 0;
    return header;
}

template StringDataHeader* NewStringData<char>(int, int, const char*);
template StringDataHeader* NewStringData<wchar_t>(int, int, const wchar_t*);

}  // namespace details
}  // namespace BrmPlatform
