// RiffReader: the walk over the chunk stack, and how it enters and leaves
// compressed sections.
#include "riff/RiffReader.h"

#include <algorithm>
#include <cstring>

#include "riff/CompressedSection.h"
#include "riff/FormTable.h"
#include "riff/FourCC.h"
#include "riff/RiffChunkCompressed.h"
#include "riff/RiffChunkNormal.h"
#include "utils/memory/Buffer.h"
#include "utils/streams/StreamHelpers.h"

namespace KvdFileIO {

namespace {
uint32_t LoadU32(const uint8_t* p) {
    return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
}

// A chunk can hold no more than its parent has left from here on; a size
// field beyond that is a truncated or damaged file. With no size to compare
// (Stat or Seek failing) the field stands.
uint64_t ClampToParent(IStream* parent, uint64_t size) {
    STATSTG stat{};
    ULARGE_INTEGER position{};
    if (FAILED(parent->Stat(&stat, STATFLAG_NONAME))) return size;
    if (FAILED(parent->Seek(MakeLargeInteger(0), STREAM_SEEK_CUR, &position))) return size;
    uint64_t total = stat.cbSize.QuadPart;
    uint64_t left = total > position.QuadPart ? total - position.QuadPart : 0;
    return std::min(size, left);
}
}  // namespace

RiffReader::RiffReader(IStream* stream) : source(stream) {
    if (source) source->AddRef();
}

RiffReader::~RiffReader() {
    Close();
}

bool RiffReader::Open(uint32_t& form) {
    if (!source || !stack.empty()) return false;
    uint8_t header[8];
    if (!BrmUtils::ReadExactly(source, header, sizeof header) || LoadU32(header) != kTagRiff) return false;
    uint8_t type[4];
    if (!BrmUtils::ReadExactly(source, type, sizeof type)) return false;
    formType = LoadU32(type);
    form = formType;

    uint64_t riffSize = LoadU32(header + 4);
    uint64_t size = ClampToParent(source, riffSize >= 4 ? riffSize - 4 : 0);
    stack.push_back(std::make_unique<RiffChunkNormal>(source, kTagRiff, true, size, false));
    stack.push_back(nullptr);
    return true;
}

bool RiffReader::Close() {
    while (!stack.empty()) Pop();
    blockTable.clear();
    SafeRelease(source);
    return true;
}

bool RiffReader::Destroy() {
    delete this;
    return true;
}

bool RiffReader::Rewind() {
    while (stack.size() > 1) Pop();
    blockTable.clear();
    if (stack.empty()) return false;
    RiffChunkBase* root = stack.front().get();
    root->Seek(0, STREAM_SEEK_SET);
    if (!root->IsList()) return false;
    stack.push_back(nullptr);
    return true;
}

uint16_t RiffReader::GetFormVersion() {
    const FormDescriptor* row = FindForm(formType);
    return row ? row->version : 0;
}

uint16_t RiffReader::GetDocumentKind() {
    const FormDescriptor* row = FindForm(formType);
    return row ? row->kind : 0;
}

uint32_t RiffReader::GetFileVersion() {
    const FormDescriptor* row = FindForm(formType);
    return row ? row->fileVersion : 0;
}

RiffChunkBase* RiffReader::Current() const {
    return stack.empty() ? nullptr : stack.back().get();
}

void RiffReader::Pop() {
    stack.pop_back();
}

bool RiffReader::HasRoomFor(size_t entries) const {
    return stack.size() + entries <= kMaxDepth;
}

bool RiffReader::Next() {
    if (stack.size() < 2) return false;
    for (;;) {
        if (RiffChunkBase* current = Current()) {
            if (!current->Skip()) return false;  // the chunk stays current
        }
        Pop();
        bool retry = false;
        bool found = ReadHeader(stack.back().get(), retry);
        if (!retry) return found;
    }
}

bool RiffReader::ReadHeader(RiffChunkBase* parent, bool& retry) {
    retry = false;
    if (!parent) {
        stack.push_back(nullptr);
        return false;
    }
    IStream* in = parent->GetStream();
    uint8_t header[8];
    uint64_t got = 0;
    if (!BrmUtils::ReadFully(in, header, sizeof header, got)) {
        stack.push_back(nullptr);
        return false;
    }
    if (got < sizeof header) {
        if (got == 0 && parent->IsCompressed()) {
            // The section has ended: go on with the plain `cmpr` chunk below,
            // whose Skip steps over the whole section.
            Pop();
            blockTable.clear();
            retry = true;
            return false;
        }
        stack.push_back(nullptr);
        return false;
    }

    uint32_t tag = LoadU32(header);
    uint64_t size = LoadU32(header + 4);
    if (!blockTable.empty()) {
        // Inside a compressed section the field is an index into the table;
        // an index out of range stands as the size.
        if (size < blockTable.size()) size = blockTable[size];
    } else if (size == 0 && !zeroSizeIsEmpty) {
        size = uint32_t(BrmUtils::GetSize(in));
    }

    bool compressedArea = parent->IsInCompressedArea();
    bool list = false;
    if (tag == kTagList) {
        uint8_t type[4];
        if (!BrmUtils::ReadExactly(in, type, sizeof type)) {
            stack.push_back(nullptr);
            return false;
        }
        tag = LoadU32(type);
        if (tag == kTagCompressed)
            compressedArea = true;  // stepped over like data until OpenCompressed
        else
            list = true;
        size = size >= 4 ? size - 4 : 0;
    }
    size = ClampToParent(in, size);
    stack.push_back(std::make_unique<RiffChunkNormal>(in, tag, list, size, compressedArea));
    return true;
}

bool RiffReader::FindChunk(uint32_t id) {
    while (Next())
        if (GetChunkId() == id) return true;
    return false;
}

uint32_t RiffReader::GetChunkId() {
    RiffChunkBase* current = Current();
    return current ? current->GetTag() : 0;
}

bool RiffReader::IsList() {
    RiffChunkBase* current = Current();
    return current && current->IsList();
}

bool RiffReader::Descend() {
    if (!IsList() || !HasRoomFor(1)) return false;
    stack.push_back(nullptr);
    return true;
}

bool RiffReader::Ascend() {
    if (stack.size() < 2) return false;
    Pop();
    RiffChunkBase* current = Current();
    if (current && current->IsCompressed()) {
        // Out of the section altogether: stand on the plain `cmpr` chunk.
        blockTable.clear();
        Pop();
    }
    return true;
}

int64_t RiffReader::GetChunkSize() {
    RiffChunkBase* current = Current();
    return current ? int64_t(current->GetSize()) : 0;
}

IStream* RiffReader::GetChunkStream() {
    RiffChunkBase* current = Current();
    if (!current) return nullptr;
    IStream* stream = current->GetStream();
    stream->AddRef();
    return stream;
}

bool RiffReader::ReadChunkToBuffer(BrmUtils::Memory::Buffer& buffer, uint64_t size) {
    RiffChunkBase* current = Current();
    if (!current) return false;
    buffer.Clear();
    // Room for what the chunk can give; any rest is zeros added at the end.
    uint64_t room = std::min(size, current->GetSize());
    if (room > 0 && !buffer.Reserve(room)) return false;
    uint64_t copied = 0;
    if (FAILED(buffer.Append(current->GetStream(), size, &copied))) return false;
    return copied == size || buffer.SetSize(size);
}

bool RiffReader::ReadChunkData(void* destination, uint64_t size) {
    RiffChunkBase* current = Current();
    if (!current || (!destination && size > 0)) return false;
    uint64_t got = 0;
    bool ok = BrmUtils::ReadFully(current->GetStream(), destination, size, got);
    if (got < size) std::memset(static_cast<uint8_t*>(destination) + got, 0, size - got);
    return ok;
}

IStream* RiffReader::GetParentStream() {
    if (stack.size() < 2) return nullptr;
    RiffChunkBase* parent = stack[stack.size() - 2].get();
    if (!parent) return nullptr;
    IStream* stream = parent->GetStream();
    stream->AddRef();
    return stream;
}

bool RiffReader::OpenCompressed() {
    RiffChunkBase* section = Current();
    if (!section || section->GetTag() != kTagCompressed || section->IsCompressed()) return false;
    // Sections do not nest: one block table serves the walk.
    RiffChunkBase* parent = stack[stack.size() - 2].get();
    if (!parent || parent->IsInCompressedArea() || !HasRoomFor(2)) return false;

    IStream* in = GetParentStream();
    if (!in) return false;
    std::unique_ptr<IStream, void (*)(IStream*)> hold(in, [](IStream* s) { s->Release(); });

    // The header follows the list type; stand there even if a caller has
    // read some of the section through its chunk stream.
    section->Seek(0, STREAM_SEEK_SET);
    CompressedSectionHeader header;
    if (!ReadSectionHeader(in, header)) return false;

    // The table block follows the data block; read it first and come back.
    std::vector<uint32_t> table;
    if (header.uncompressedTableSize / 4 != 0) {
        uint64_t dataStart = BrmUtils::GetPosition(in);
        if (FAILED(in->Seek(MakeLargeInteger(header.compressedDataSize), STREAM_SEEK_CUR, nullptr))) return false;
        if (!ReadBlockTable(in, header, table)) return false;
        if (BrmUtils::SeekTo(in, dataStart) != dataStart) return false;
    }

    uint64_t limit = SectionOutputLimit(header);
    std::unique_ptr<KvdCpr::Decompressor> decompressor = MakeDecompressor(in, header.compressedDataSize, limit);
    if (!decompressor) return false;
    stack.push_back(std::make_unique<RiffChunkCompressed>(std::move(decompressor), limit));
    stack.push_back(nullptr);
    blockTable = std::move(table);
    return true;
}

bool RiffReader::SetIsList(bool flag) {
    RiffChunkBase* current = Current();
    if (!current) return false;
    current->SetIsList(flag);
    return true;
}

uint64_t RiffReader::GetStreamSize() {
    return BrmUtils::GetSize(source);
}

uint64_t RiffReader::GetStreamPosition() {
    return BrmUtils::GetPosition(source);
}

}  // namespace KvdFileIO
