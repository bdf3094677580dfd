// The newest exchange metafiles are object archives: a header, tagged
// records, the document's objects, and at the end a pointer to a metadata
// section (plain or raw deflate) with the summary and an index whose second
// entry locates the thumbnail record. ReadJmvArchive takes the summary and
// the thumbnail and loads nothing else.
//
//   JmvArchiveInfo info;
//   stream->AddRef();                       // ReadJmvArchive takes one reference
//   if (ReadJmvArchive(info, stream)) ...   // info.thumbnail: a packed DIB, or empty
//
// A stream that does not start with "JMV3" is put back at 0 and false is
// answered, so the caller can try the RIFF form. A metadata section whose
// index has fewer than two entries throws udi::UDI_RC 257.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/ObjIdl.h"
#include "riff/archive/InputArchive.h"
#include "utils/strings/BrmString.h"

struct JmvArchiveInfo {
    BrmPlatform::BrmStringW keywords;
    BrmPlatform::BrmStringW notes;
    int32_t boundingBox[4] = {0, 0, 0, 0};
    uint32_t text = 0;
    uint32_t vect = 0;
    int32_t pageCount = 0;
    uint32_t targ = 0;
    std::vector<uint8_t> thumbnail;
    bool valid = false;
};

// The light archive: reads the header records, the metadata section and the
// thumbnail record, and remaps no pointers.
class BUDIInputArchiveLight : public udi::InputArchive, public udi::PtrRemapper {
public:
    explicit BUDIInputArchiveLight(udi::DecompressIO* io) : udi::InputArchive(io), source(io) {}

    uint32_t PointerSize() override { return 4; }
    uint64_t Remap(uint64_t) override { return 0; }
    void Register(uint64_t, void*) override {}
    void Forget(uint64_t) override {}

    // Skips records until one of tag `wanted`. A record whose tag (signed)
    // is below wanted is handed back unread and false answered; above, it is
    // skipped by its size.
    bool FindRecord(int32_t wanted);
    // The whole read; see ReadJmvArchive.
    bool ReadInfo(JmvArchiveInfo& info);

    const std::vector<uint64_t>& Index() const { return index; }

private:
    bool ReadMetadataRecords(JmvArchiveInfo& info);
    void ReadThumbnail(JmvArchiveInfo& info);

    std::vector<uint64_t> index;
    udi::DecompressIO* source;
};

// Reads the summary of an object archive into info (cleared first). Takes
// over one reference on stream and releases it on every exit, also a throw.
// Answers info.valid.
bool ReadJmvArchive(JmvArchiveInfo& info, IStream* stream);
