// A stream on an open file handle. The stream owns the handle and closes it
// when the last reference goes; with deleteOnClose it removes the file then.
// It keeps its own position and reads through a block buffer, so that the
// many small reads of a reader walking a document cost one system call per
// block rather than one each; a small file is read in one call.
#pragma once

#include <memory>
#include <optional>

#include "platform/Files.h"
#include "utils/streams/StreamBase.h"

namespace BrmUtils {

class FileStream : public StreamBase, public IStreamResourceLocator, public IStreamView {
public:
    // Takes an open handle (owned unless ownsHandle is false) and the file's
    // name, which Stat and the resource locator report. The stream starts
    // at the handle's offset and leaves that offset alone. One reference.
    FileStream(HANDLE file, const wchar_t* name, bool ownsHandle = true);

    // What the opener of a file for reading learnt from the system just
    // before: its size and the time of its last change.
    struct Snapshot {
        uint64_t size = 0;
        FILETIME modified{};
    };
    // A stream on a handle just opened for reading only (offset 0, owned).
    // Seek from the end and Stat answer from the snapshot, so that a reader
    // asking for the length again and again costs no system call; a file
    // that another process changes meanwhile keeps the length it had at
    // the open (its bytes are still read as they are).
    FileStream(HANDLE file, const wchar_t* name, const Snapshot& snapshot);

    // Opens an existing file for reading, others may read and write it
    // meanwhile. Null on failure, with the last error set.
    static FileStream* Open(const wchar_t* path);
    // Creates or truncates a file for reading and writing. Null on failure,
    // with the last error set.
    static FileStream* Create(const wchar_t* path);

    HRESULT QueryInterface(REFIID riid, void** object) override;
    ULONG AddRef() override;
    ULONG Release() override;

    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override;
    HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) override;
    HRESULT Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin, ULARGE_INTEGER* plibNewPosition) override;
    HRESULT SetSize(ULARGE_INTEGER libNewSize) override;
    HRESULT Commit(DWORD grfCommitFlags) override;
    HRESULT Stat(STATSTG* pstatstg, DWORD grfStatFlag) override;
    HRESULT Clone(IStream** ppstm) override;

    BrmPlatform::BrmStringW GetName() override;
    BrmPlatform::BrmStringW GetResourceLocator() override;
    // A range within one block of the file, from the block buffer (filled
    // first when it holds another block).
    const uint8_t* View(uint64_t offset, size_t length) override;

    HANDLE GetHandle() const { return file; }
    // Removes the file when the stream goes: for temporary files.
    void SetDeleteOnClose(bool value) { deleteOnClose = value; }

protected:
    ~FileStream() override;

private:
    // Stores the error text and maps the last error to a stream result.
    HRESULT Failure();
    // Fills the buffer with the block that holds `offset`; false on a failed read.
    bool FillBlock(uint64_t offset);

    // Blocks are aligned to their size: a reader stepping backwards, as one
    // looking for a trailer does, stays in the block it has.
    static constexpr size_t kBlockSize = 64 * 1024;

    HANDLE file;
    uint64_t position = 0;
    // Bytes of the file from bufferStart, valid until this stream writes.
    std::unique_ptr<uint8_t[]> buffer;
    uint64_t bufferStart = 0;
    size_t bufferLength = 0;
    bool ownsHandle;
    BrmPlatform::BrmStringW fileName;
    bool deleteOnClose = false;
    std::optional<Snapshot> snapshot;
};

}  // namespace BrmUtils
