// FileStream: IStream over the platform's file calls.
#include "utils/streams/FileStream.h"

#include <cctype>
#include <cstring>
#include <filesystem>
#include <new>

#include "platform/LastError.h"

namespace BrmUtils {

FileStream::FileStream(HANDLE file, const wchar_t* name, bool ownsHandle)
    : file(file), ownsHandle(ownsHandle), fileName(name) {}

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

HRESULT FileStream::Read(void* pv, ULONG cb, ULONG* pcbRead) {
    if (pcbRead)
        *pcbRead = 0;
    if (!pv)
        return STG_E_INVALIDPOINTER;
    DWORD got = 0;
    if (!ReadFile(file, pv, cb, &got, nullptr))
        return Failure();
    if (pcbRead)
        *pcbRead = got;
    return S_OK;
}

HRESULT FileStream::Write(const void* pv, ULONG cb, ULONG* pcbWritten) {
    if (pcbWritten)
        *pcbWritten = 0;
    if (!pv && cb != 0)
        return STG_E_INVALIDPOINTER;
    DWORD put = 0;
    if (cb != 0 && !WriteFile(file, pv, cb, &put, nullptr))
        return Failure();
    if (pcbWritten)
        *pcbWritten = put;
    return S_OK;
}

HRESULT FileStream::Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) {
    if (dwOrigin > STREAM_SEEK_END)
        return STG_E_INVALIDFUNCTION;
    // The stream origins have the values of FILE_BEGIN, FILE_CURRENT, FILE_END.
    LARGE_INTEGER reached{};
    if (!SetFilePointerEx(file, dlibMove, &reached, dwOrigin)) {
        StoreLastError();
        return E_FAIL;
    }
    if (plibNewPosition)
        plibNewPosition->QuadPart = uint64_t(reached.QuadPart);
    return S_OK;
}

HRESULT FileStream::SetSize(ULARGE_INTEGER libNewSize) {
    LARGE_INTEGER old{};
    if (!SetFilePointerEx(file, MakeLargeInteger(0), &old, FILE_CURRENT))
        return Failure();
    if (!SetFilePointerEx(file, MakeLargeInteger(int64_t(libNewSize.QuadPart)), nullptr, FILE_BEGIN))
        return Failure();
    if (!SetEndOfFile(file)) {
        const HRESULT hr = Failure();
        SetFilePointerEx(file, old, nullptr, FILE_BEGIN);
        return hr;
    }
    if (!SetFilePointerEx(file, old, nullptr, FILE_BEGIN))
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
