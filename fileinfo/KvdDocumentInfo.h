// KvdDocumentInfo: one pass over the chunk tree of an older drawing document
// that keeps the few facts the readers show (summary, info texts, links,
// fonts, page size and resolution, the thumbnail) and nothing of the
// drawing itself. Pages are stepped over by their size, so a scan reads a
// few hundred bytes plus the thumbnail however big the document is.
#pragma once
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "metadata/MultiLanguageString.h"
#include "platform/Bitmap.h"
#include "riff/Reader.h"
#include "utils/strings/BrmString.h"

class KvdDocumentInfo {
public:
    // What Scan looks at.
    enum ScanMode : uint32_t {
        kScanSummary = 2,    // sumi, cmpr, page, doc, url, INFO
        kScanThumbnail = 4,  // DISP
        kScanProfiles = 8,   // iccp
        // DISP checked as kScanThumbnail checks it, its header kept, but its
        // pixels stepped over rather than read: for the properties alone,
        // which fail as a whole when the thumbnail is broken.
        kScanThumbnailCheck = 16,
    };

    // Takes ownership of the reader (destroyed with this object).
    KvdDocumentInfo(KvdFileIO::Reader* reader, uint32_t formType);
    ~KvdDocumentInfo() = default;
    KvdDocumentInfo(const KvdDocumentInfo&) = delete;
    KvdDocumentInfo& operator=(const KvdDocumentInfo&) = delete;

    // Runs the pass; false when the document is broken in a chunk of interest
    // (the fields then hold whatever was found and are not to be used).
    bool Scan(uint32_t mode);
    // The program version of the form (times 100), 0 for a form of no row.
    uint16_t Version() const;

    // The packed DIB of the thumbnail in a malloc'd block; empty if none.
    DibBlock PackedDib() const;
    // The same block handed over without a copy; afterwards this object has
    // none (PackedDib and TakePackedDib answer empty, dibHeader stays).
    DibBlock TakePackedDib();

    using BrmStringW = BrmPlatform::BrmStringW;

    std::unique_ptr<KvdFileIO::Reader> reader;
    uint32_t formType;
    uint32_t codePage = 0;
    bool firstFlag = false;
    bool secondFlag = false;
    int32_t appVersion = 0;
    double compressionRatio = 0.0;
    Metadata::MultiLanguageString keywords;
    Metadata::MultiLanguageString comments;
    BrmStringW linkPaths;
    uint32_t locale = 0;
    uint32_t summaryField44 = 0;
    uint32_t summaryField32 = 0;
    uint32_t summaryField28 = 0;
    uint16_t platform = 0;
    uint16_t productId = 0;
    uint32_t buildNumber = 0;
    bool hasOleObjects = false;
    bool hasTextDefaults = false;
    BrmStringW fontNames;
    int32_t pageCount = 0;
    double resolutionX = 0.0, resolutionY = 0.0;
    double pageWidth = 0.0, pageHeight = 0.0;
    BITMAPINFOHEADER dibHeader{};
    // The packed DIB as read: the header's 40 bytes, the colour table and
    // the pixels in one block, so that handing it out needs no copy.
    struct FreeBlock {
        void operator()(uint8_t* block) const { std::free(block); }
    };
    std::unique_ptr<uint8_t, FreeBlock> dibBlock;
    size_t dibBlockSize = 0;
    int32_t clipRect[4] = {0, 0, 0, 0};
    int32_t pageWidthRaw = 0, pageHeightRaw = 0;
    std::vector<uint8_t> iccDocument, iccSystem;

private:
    bool ReadSummary();
    bool ReadVersion();
    bool ReadString(BrmStringW& text);
    bool ReadInfoList();
    bool ReadLinkList();
    bool ReadProfileList();
    bool ReadDocumentList();
    bool ReadPageConfig();
    bool ReadFontTable();
    bool ReadThumbnail(bool readPixels);
    // The whole current chunk, if it is no bigger than the stream can hold.
    bool ReadWholeChunk(std::vector<uint8_t>& bytes);

    // The bytes of the text and font chunks, one after the other: one block
    // serves them all.
    std::vector<uint8_t> chunkBytes;
};
