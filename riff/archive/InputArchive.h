// The input side of the object archive: the base archive with its byte
// source, the "good" flag and a hand-back buffer of unread bytes. The
// program never loads objects; the light archive in JmvArchive.h only reads
// a few records, so the bookkeeping of object loading is absent here.
#pragma once

#include <cstdint>
#include <vector>

#include "riff/archive/ArchiveIO.h"
#include "utils/strings/BrmString.h"

namespace BrmUtils::Serialization {

class InputArchive {
public:
    virtual ~InputArchive() = default;
};

}  // namespace BrmUtils::Serialization

namespace BrmClr {

class InputArchive : public BrmUtils::Serialization::InputArchive {};

}  // namespace BrmClr

namespace udi {

// The archive's error codes. They travel as thrown values; nothing in the
// library catches this type, so a throw ends at the reader's general guard.
enum UDI_RC : int32_t {
    UDI_RC_OK = 0,
    UDI_RC_INDEX_OUT_OF_RANGE = 257,  // an index entry that isn't there
};

class InputArchive : public BrmClr::InputArchive {
public:
    // io is not owned.
    explicit InputArchive(BrmUtils::Serialization::IBaseIO* io) : io(io) {}

    // Takes bytes from unread first, the rest from io. The first failure
    // clears good; with good cleared nothing more is read. Answers good.
    bool Read(void* buffer, uint64_t count);
    bool ReadU32(uint32_t& value);
    bool ReadI32(int32_t& value);
    bool ReadU64(uint64_t& value);
    // A u32 length and that many bytes. A length with the top bit set is a
    // negative length: no bytes follow and the string is empty. output is
    // assigned only while good holds.
    bool ReadString(BrmPlatform::BrmStringA& output);
    // Reads count bytes into bytes, growing it only as data arrive, so a
    // lying count costs no more memory than the source really holds.
    bool ReadBytes(std::vector<uint8_t>& bytes, uint64_t count);
    // Drops count bytes: unread first, then io's Skip.
    bool SkipBytes(uint64_t count);

    // Puts bytes in front of what is read next.
    void HandBack(const void* data, size_t count);

    bool IsGood() const { return good; }
    void SetGood(bool value) { good = value; }

protected:
    BrmUtils::Serialization::IBaseIO* io;
    bool good = true;
    std::vector<uint8_t> unread;
};

// Pointer remapping of loaded objects. The light archive loads no objects;
// its answers are fixed and nothing calls them.
class PtrRemapper {
public:
    virtual ~PtrRemapper() = default;
    virtual uint32_t PointerSize() = 0;
    virtual uint64_t Remap(uint64_t pointer) = 0;
    virtual void Register(uint64_t pointer, void* object) = 0;
    virtual void Forget(uint64_t pointer) = 0;
};

}  // namespace udi
