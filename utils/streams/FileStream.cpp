// FileStream: IStream over the platform's file calls.
#include "utils/streams/FileStream.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <new>

#include "platform/LastError.h"

namespace BrmUtils {

FileStream::FileStream(HANDLE file, const wchar_t* name, bool ownsHandle)
    : file(file), ownsHandle(ownsHandle), fileName(name) {
    LARGE_INTEGER offset{};
    if (SetFilePointerEx(file, MakeLargeInteger(0), &offset, FILE_CURRENT))
        position = uint64_t(offset.QuadPart);
}

FileStream::FileStream(HANDLE file, const wchar_t* name, const Snapshot& snapshot)
    : file(file), ownsHandle(true), fileName(name), snapshot(snapshot) {}

FileStream::~FileStream() {
    if (ownsHandle && file != INVALID_HANDLE_VALUE)
        CloseHandle(file);
    if (deleteOnClose && !fileName.IsEmpty())
        DeleteFileW(fileName.GetString());
}

namespace {

FileStream* OpenWith(const wchar_t* path, DWORD access, DWORD disposition) {
    if (!path || !*path) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const HANDLE file = CreateFileW(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, disposition,
                                    FILE_ATTRIBUTE_NORMAL, INVALID_HANDLE_VALUE);
    if (file == INVALID_HANDLE_VALUE)
        return nullptr;
    auto* stream = new (std::nothrow) FileStream(file, path);
    if (!stream) {
        CloseHandle(file);
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    }
    return stream;
}

}  // namespace

FileStream* FileStream::Open(const wchar_t* path) {
    return OpenWith(path, GENERIC_READ, OPEN_EXISTING);
}

FileStream* FileStream::Create(const wchar_t* path) {
    return OpenWith(path, GENERIC_READ | GENERIC_WRITE, CREATE_ALWAYS);
}

HRESULT FileStream::QueryInterface(REFIID riid, void** object) {
    if (object && riid == IID_IStreamResourceLocator) {
        *object = static_cast<IStreamResourceLocator*>(this);
        AddRef();
        return S_OK;
    }
    if (object && riid == IID_IStreamView) {
        *object = static_cast<IStreamView*>(this);
        AddRef();
        return S_OK;
    }
    return StreamBase::QueryInterface(riid, object);
}

ULONG FileStream::AddRef() {
    return StreamBase::AddRef();
}

ULONG FileStream::Release() {
    return StreamBase::Release();
}

HRESULT FileStream::Failure() {
    return StoreLastError() == ERROR_ACCESS_DENIED ? STG_E_ACCESSDENIED : E_FAIL;
}

bool FileStream::FillBlock(uint64_t offset) {
    if (!buffer) {
        buffer.reset(new (std::nothrow) uint8_t[kBlockSize]);
        if (!buffer) {
            SetLastError(ERROR_NOT_ENOUGH_MEMORY);
            return false;
        }
    }
    bufferStart = offset - offset % kBlockSize;
    bufferLength = 0;
    DWORD got = 0;
    if (!ReadFileAt(file, buffer.get(), DWORD(kBlockSize), bufferStart, &got))
        return false;
    bufferLength = got;
    return true;
}

const uint8_t* FileStream::View(uint64_t offset, size_t length) {
    if (length == 0 || offset % kBlockSize + length > kBlockSize)
        return nullptr;  // not within one block
    const bool held = offset >= bufferStart && offset - bufferStart + length <= bufferLength;
    if (!held && (!FillBlock(offset) || offset - bufferStart + length > bufferLength))
        return nullptr;
    return buffer.get() + (offset - bufferStart);
}

HRESULT FileStream::Read(void* pv, ULONG cb, ULONG* pcbRead) {
    if (pcbRead)
        *pcbRead = 0;
    if (!pv)
        return STG_E_INVALIDPOINTER;
    auto* out = static_cast<uint8_t*>(pv);
    ULONG done = 0;
    while (done < cb) {
        if (position >= bufferStart && position < bufferStart + bufferLength) {
            const size_t n = std::min<uint64_t>(cb - done, bufferStart + bufferLength - position);
            std::memcpy(out + done, buffer.get() + (position - bufferStart), n);
            done += ULONG(n);
            position += n;
            continue;
        }
        if (cb - done >= kBlockSize) {
            // Whole blocks go straight to the caller.
            DWORD got = 0;
            if (!ReadFileAt(file, out + done, cb - done, position, &got))
                return Failure();
            done += got;
            position += got;
            break;
        }
        if (!FillBlock(position))
            return Failure();
        if (position >= bufferStart + bufferLength)
            break;  // at or past the end of the file
    }
    if (pcbRead)
        *pcbRead = done;
    return S_OK;
}

HRESULT FileStream::Write(const void* pv, ULONG cb, ULONG* pcbWritten) {
    if (pcbWritten)
        *pcbWritten = 0;
    if (!pv && cb != 0)
        return STG_E_INVALIDPOINTER;
    if (cb == 0)
        return S_OK;
    bufferLength = 0;
    snapshot.reset();
    DWORD put = 0;
    if (!WriteFileAt(file, pv, cb, position, &put))
        return Failure();
    position += put;
    if (pcbWritten)
        *pcbWritten = put;
    return S_OK;
}

HRESULT FileStream::Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) {
    int64_t base = 0;
    switch (dwOrigin) {
    case STREAM_SEEK_SET: break;
    case STREAM_SEEK_CUR: base = int64_t(position); break;
    case STREAM_SEEK_END: {
        if (snapshot) {
            base = int64_t(snapshot->size);
            break;
        }
        LARGE_INTEGER size{};
        if (!GetFileSizeEx(file, &size)) {
            StoreLastError();
            return E_FAIL;
        }
        base = size.QuadPart;
        break;
    }
    default: return STG_E_INVALIDFUNCTION;
    }
    const int64_t move = dlibMove.QuadPart;
    if ((move < 0 && base + move < 0) || (move > 0 && base > INT64_MAX - move)) {
        SetLastError(ERROR_NEGATIVE_SEEK);
        StoreLastError();
        return E_FAIL;
    }
    position = uint64_t(base + move);
    if (plibNewPosition)
        plibNewPosition->QuadPart = position;
    return S_OK;
}

HRESULT FileStream::SetSize(ULARGE_INTEGER libNewSize) {
    if (libNewSize.QuadPart > uint64_t(INT64_MAX))
        return STG_E_INVALIDFUNCTION;
    bufferLength = 0;
    snapshot.reset();
    // The handle's offset serves only to tell where the file ends.
    if (!SetFilePointerEx(file, MakeLargeInteger(int64_t(libNewSize.QuadPart)), nullptr, FILE_BEGIN) ||
        !SetEndOfFile(file))
        return Failure();
    return S_OK;
}

HRESULT FileStream::Commit(DWORD) {
    if (!FlushFileBuffers(file))
        return Failure();
    return S_OK;
}

HRESULT FileStream::Stat(STATSTG* pstatstg, DWORD grfStatFlag) {
    const HRESULT hr = StreamBase::Stat(pstatstg, grfStatFlag);
    if (FAILED(hr))
        return hr;
    if (snapshot) {
        pstatstg->cbSize.QuadPart = snapshot->size;
        pstatstg->mtime = snapshot->modified;
        return hr;
    }
    LARGE_INTEGER size{};
    if (GetFileSizeEx(file, &size))
        pstatstg->cbSize.QuadPart = uint64_t(size.QuadPart);
    FILETIME modified{};
    if (GetFileTime(file, nullptr, nullptr, &modified))
        pstatstg->mtime = modified;
    return hr;
}

HRESULT FileStream::Clone(IStream** ppstm) {
    if (!ppstm)
        return STG_E_INVALIDPOINTER;
    *ppstm = nullptr;
    HANDLE duplicate = INVALID_HANDLE_VALUE;
    if (!DuplicateHandle(file, &duplicate))
        return HRESULT_FROM_WIN32(StoreLastError());
    auto* clone = new (std::nothrow) FileStream(duplicate, fileName.GetString());
    if (!clone) {
        CloseHandle(duplicate);
        return E_OUTOFMEMORY;
    }
    clone->position = position;
    *ppstm = clone;
    return S_OK;
}

BrmPlatform::BrmStringW FileStream::GetName() {
    return fileName;
}

// "file://" and the absolute path, its UTF-8 bytes percent-escaped except
// for the unreserved characters and the separators.
BrmPlatform::BrmStringW FileStream::GetResourceLocator() {
    if (fileName.IsEmpty())
        return BrmPlatform::BrmStringW();
    std::error_code error;
    const std::filesystem::path absolute =
        std::filesystem::absolute(std::filesystem::path(PathToNative(fileName.GetString())), error);
    if (error)
        return BrmPlatform::BrmStringW();
    static const char kHex[] = "0123456789ABCDEF";
    BrmPlatform::BrmStringW url(L"file://");
    for (const unsigned char c : absolute.native()) {
        if (std::isalnum(c) || std::strchr("/-._~", c)) {
            url += wchar_t(c);
        } else {
            url += L'%';
            url += wchar_t(kHex[c >> 4]);
            url += wchar_t(kHex[c & 15]);
        }
    }
    return url;
}

}  // namespace BrmUtils
