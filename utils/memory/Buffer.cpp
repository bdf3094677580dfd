// The Buffer handle: copy on write between handles, reading and writing
// through accessors, and filling from a stream.
#include "utils/memory/Buffer.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/PropIdl.h"
#include "utils/memory/BufferImplSimple.h"
#include "utils/memory/Manager.h"

namespace BrmUtils::Memory {

namespace {

constexpr uint64_t kMaxStreamRead = 0xFFFFFFFFu;
constexpr ULONG kUnknownLengthChunk = 4096;

}  // namespace

Buffer::Buffer(const Buffer& other) : impl_(other.impl_) {
    if (impl_) impl_->AddRef();
}

Buffer::Buffer(Buffer&& other) noexcept : impl_(std::exchange(other.impl_, nullptr)) {
    if (impl_) impl_->ReplaceOwner(&other, this);
}

Buffer& Buffer::operator=(const Buffer& other) {
    if (this != &other) {
        Impl* old = impl_;
        impl_ = other.impl_;
        if (impl_) impl_->AddRef();
        if (old) old->Release();
    }
    return *this;
}

Buffer& Buffer::operator=(Buffer&& other) noexcept {
    if (this != &other) {
        if (impl_) impl_->Release();
        impl_ = std::exchange(other.impl_, nullptr);
        if (impl_) impl_->ReplaceOwner(&other, this);
    }
    return *this;
}

Buffer::~Buffer() {
    if (impl_) impl_->Release();
}

uint64_t Buffer::GetSize() const { return impl_ ? impl_->GetSize() : 0; }

uint64_t Buffer::GetCapacity() const { return impl_ ? impl_->GetCapacity() : 0; }

Buffer::Impl* Buffer::PrepareForWrite(uint64_t sizeHint, bool discardEmpty) {
    if (!impl_) {
        impl_ = new Buffer_Impl_Simple(GetMemoryManager());
        impl_->AddRef();
    }
    Impl* next = impl_->Prepare(Me(), sizeHint, discardEmpty);
    if (next) impl_ = next;
    return next;
}

bool Buffer::Resize(uint64_t size, bool zeroNewBytes) {
    const uint64_t old = GetSize();
    if (size == old && (impl_ || size == 0)) return true;
    Impl* impl = PrepareForWrite(size, true);
    if (!impl || !impl->SetSize(Me(), size)) return false;
    return !zeroNewBytes || size <= old || ZeroRange(old, size - old);
}

bool Buffer::SetSize(uint64_t size) { return Resize(size, true); }

bool Buffer::Reserve(uint64_t capacity) {
    if (capacity == 0) return true;
    Impl* impl = PrepareForWrite(std::max(capacity, GetSize()), false);
    return impl && impl->Reserve(Me(), capacity);
}

void Buffer::Clear() {
    if (impl_) impl_->Release();
    impl_ = nullptr;
}

void Buffer::Compact() {
    if (!impl_) return;
    if (Impl* impl = PrepareForWrite(GetSize(), true)) impl->Compact(Me());
}

bool Buffer::ZeroRange(uint64_t offset, uint64_t length) {
    while (length > 0) {
        WriteDataAccessor to;
        if (!GetWriteAccessor(to, offset, length) || to.GetLength() == 0) return false;
        std::memset(to.GetData(), 0, to.GetLength());
        offset += to.GetLength();
        length -= to.GetLength();
    }
    return true;
}

bool Buffer::Read(uint64_t offset, void* destination, uint64_t length, uint64_t* count) const {
    if (count) *count = 0;
    const uint64_t size = GetSize();
    if (offset >= size || length == 0) return true;
    uint64_t left = std::min(length, size - offset);
    auto* out = static_cast<uint8_t*>(destination);
    while (left > 0) {
        ReadDataAccessor from;
        if (!impl_->GetReadAccessor(from, Me(), offset, left, true) || from.GetLength() == 0) return false;
        std::memcpy(out, from.GetData(), from.GetLength());
        out += from.GetLength();
        offset += from.GetLength();
        left -= from.GetLength();
        if (count) *count += from.GetLength();
    }
    return true;
}

bool Buffer::Write(uint64_t offset, const void* source, uint64_t length, uint64_t* count, bool extend) {
    if (count) *count = 0;
    if (length == 0) return true;
    if (offset > UINT64_MAX - length) return false;
    uint64_t size = GetSize();
    if (extend && offset + length > size) {
        if (!Resize(offset + length, false)) return false;
        // The gap between the old end and offset reads as zero.
        if (offset > size && !ZeroRange(size, offset - size)) return false;
        size = offset + length;
    } else if (!PrepareForWrite(size, true)) {
        return false;
    }
    if (offset >= size) return false;
    uint64_t left = std::min(length, size - offset);
    auto* in = static_cast<const uint8_t*>(source);
    while (left > 0) {
        WriteDataAccessor to;
        if (!impl_->GetWriteAccessor(to, Me(), offset, left, true) || to.GetLength() == 0) return false;
        std::memcpy(to.GetData(), in, to.GetLength());
        in += to.GetLength();
        offset += to.GetLength();
        left -= to.GetLength();
        if (count) *count += to.GetLength();
    }
    return true;
}

bool Buffer::Append(const void* source, uint64_t length) {
    uint64_t written = 0;
    return Write(GetSize(), source, length, &written, true) && written == length;
}

bool Buffer::CopyTo(uint64_t offset, uint64_t count, Buffer& destination, uint64_t destinationOffset) const {
    if (count == 0) return offset <= GetSize() && destinationOffset <= destination.GetSize();
    return impl_ && impl_->CopyTo(Me(), offset, count, destination, destinationOffset);
}

HRESULT Buffer::Append(IStream* stream, uint64_t count, uint64_t* copied) {
    if (copied) *copied = 0;
    if (!stream) return E_POINTER;
    const uint64_t start = GetSize();

    STATSTG stat{};
    ULARGE_INTEGER position{};
    bool known = SUCCEEDED(stream->Stat(&stat, STATFLAG_NONAME)) &&
                 SUCCEEDED(stream->Seek(MakeLargeInteger(0), STREAM_SEEK_CUR, &position));
    if (stat.pwcsName) CoTaskMemFree(stat.pwcsName);

    if (known && stat.cbSize.QuadPart > position.QuadPart) {
        // Straight into the buffer's own memory.
        const uint64_t n = std::min(count, stat.cbSize.QuadPart - position.QuadPart);
        if (start > UINT64_MAX - n || !Resize(start + n, false)) return E_OUTOFMEMORY;
        uint64_t done = 0;
        HRESULT hr = S_OK;
        bool ended = false;
        while (done < n && !ended) {
            WriteDataAccessor to;
            if (!GetWriteAccessor(to, start + done, n - done) || to.GetLength() == 0) {
                hr = E_OUTOFMEMORY;
                break;
            }
            uint8_t* p = to.GetData();
            uint64_t room = to.GetLength();
            while (room > 0) {
                ULONG want = ULONG(std::min(room, kMaxStreamRead));
                ULONG got = 0;
                hr = stream->Read(p, want, &got);
                got = std::min(got, want);
                done += got;
                p += got;
                room -= got;
                if (FAILED(hr) || got < want) {
                    ended = true;
                    break;
                }
            }
        }
        if (done < n) Resize(start + done, false);
        if (copied) *copied = done;
        return FAILED(hr) ? hr : S_OK;
    }

    // Length unknown: small reads until the source has nothing more.
    uint8_t chunk[kUnknownLengthChunk];
    uint64_t done = 0;
    while (done < count) {
        ULONG want = ULONG(std::min<uint64_t>(kUnknownLengthChunk, count - done));
        ULONG got = 0;
        HRESULT hr = stream->Read(chunk, want, &got);
        got = std::min(got, want);
        if (got > 0 && !Append(chunk, got)) {
            if (copied) *copied = done;
            return E_OUTOFMEMORY;
        }
        done += got;
        if (copied) *copied = done;
        if (FAILED(hr)) return hr;
        if (got == 0) break;
    }
    return S_OK;
}

bool Buffer::GetReadAccessor(ReadDataAccessor& out, uint64_t offset, uint64_t length) const {
    if (!impl_) {
        out.Reset();
        return false;
    }
    return impl_->GetReadAccessor(out, Me(), offset, length, true);
}

bool Buffer::GetWriteAccessor(WriteDataAccessor& out, uint64_t offset, uint64_t length) {
    Impl* impl = offset < GetSize() ? PrepareForWrite(GetSize(), true) : nullptr;
    if (!impl) {
        out.Reset();
        return false;
    }
    return impl->GetWriteAccessor(out, Me(), offset, length, true);
}

bool Buffer::GetReadAccessors(std::vector<ReadDataAccessor>& out) const {
    out.clear();
    return !impl_ || impl_->GetReadAccessors(out, Me());
}

bool Buffer::GetWriteAccessors(std::vector<WriteDataAccessor>& out) {
    out.clear();
    if (!impl_) return true;
    Impl* impl = PrepareForWrite(GetSize(), true);
    return impl && impl->GetWriteAccessors(out, Me());
}

}  // namespace BrmUtils::Memory
