// Attaching and dropping the source (OpenFile, OpenStream, CloseFile) and
// the factories' handling of formats and stream positions.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "platform/Files.h"
#include "tests/fileinfo/TestReader.h"

using namespace fitest;

namespace {

// A stream that only counts: every call, the references, and a position.
class RecordingStream final : public IStream {
public:
    HRESULT QueryInterface(REFIID, void** object) override { return *object = nullptr, ++calls, E_NOINTERFACE; }
    ULONG AddRef() override { return ULONG(++refs); }
    ULONG Release() override { return ULONG(--refs); }  // lives on the test's stack
    HRESULT Read(void*, ULONG, ULONG* read) override {
        if (read) *read = 0;
        return ++calls, S_OK;
    }
    HRESULT Write(const void*, ULONG, ULONG*) override { return ++calls, STG_E_ACCESSDENIED; }
    HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPosition) override {
        ++calls;
        if (origin != STREAM_SEEK_SET && origin != STREAM_SEEK_CUR) return STG_E_INVALIDFUNCTION;
        position = uint64_t(move.QuadPart) + (origin == STREAM_SEEK_CUR ? position : 0);
        if (newPosition) newPosition->QuadPart = position;
        return S_OK;
    }
    HRESULT SetSize(ULARGE_INTEGER) override { return ++calls, E_FAIL; }
    HRESULT CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override { return ++calls, E_FAIL; }
    HRESULT Commit(DWORD) override { return ++calls, S_OK; }
    HRESULT Revert() override { return ++calls, E_FAIL; }
    HRESULT LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return ++calls, E_FAIL; }
    HRESULT UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return ++calls, E_FAIL; }
    HRESULT Stat(STATSTG*, DWORD) override { return ++calls, E_FAIL; }
    HRESULT Clone(IStream**) override { return ++calls, E_FAIL; }

    int refs = 1;
    int calls = 0;
    uint64_t position = 0;
};

std::wstring TempPath(const char* name) {
    return GetTempPathString() + L"fileinfo-front-" + std::to_wstring(::getpid()) + L"-" +
           std::wstring(name, name + std::strlen(name));
}

}  // namespace

TEST(GetInst, FormatsLeaveTheStreamAsFound) {
    const std::wstring missing = TempPath("missing.bin");
    for (int format : {0, 1, 2, 3, 4, 5, -1, 0x7FFFFFFF, int(0x80000000)}) {
        SCOPED_TRACE(format);
        const bool known = format >= 0 && format <= 3;
        RecordingStream stream;
        stream.position = 5;  // a known format's probe starts where the client stands and puts it back
        {
            FileInfoPtr info(IFileInfo::GetInst(&stream, EFileFormat(format)));
            if (!known) {
                EXPECT_EQ(info, nullptr);
            }
        }
        EXPECT_EQ(stream.position, 5u);
        EXPECT_EQ(stream.refs, 1);
        if (!known) {  // an unknown format never touches it
            EXPECT_EQ(stream.calls, 0);
        }
        EXPECT_EQ(IFileInfo::GetInst(static_cast<IStream*>(nullptr), EFileFormat(format)), nullptr);
        EXPECT_EQ(IFileInfo::GetInst(missing.c_str(), EFileFormat(format)), nullptr);
    }
}

