// QpxDocumentInfo: what the paint image reader knows of one file. Scan reads
// the header, the records behind it, the object table and the property
// block once; ReadThumbnail finds the preview (an object of the binary
// generations, or the thumbnail directory of the TIFF generation); Rewrite
// copies the file with a new property block holding the open properties.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "fileinfo/IFileInfo.h"
#include "utils/props/MemoryPropertyStore.h"
#include "utils/strings/BrmString.h"

class QpxStreamReader;

class QpxDocumentInfo {
public:
    QpxDocumentInfo() = default;
    ~QpxDocumentInfo();
    QpxDocumentInfo(const QpxDocumentInfo&) = delete;
    QpxDocumentInfo& operator=(const QpxDocumentInfo&) = delete;

    // Reads the file once; the next call answers the first call's result.
    // On false the fields keep what was read before the failure.
    bool Scan(IStream* stream);
    // The packed DIB of the preview in a malloc'd block; empty if none.
    DibBlock ReadThumbnail(IStream* stream);
    // Writes the file with the open properties into `target`; false on any
    // failed read or write (the target then holds a part, to be dropped).
    bool Rewrite(IStream* source, IStream* target);

    // The open properties, made empty on first need; null only without memory.
    BrmUtils::MemoryPropertyStore* Store();
    bool Scanned() const { return scanned; }
    bool ScanResult() const { return scanResult; }
    // A binary generation (not the TIFF one): only these can be rewritten.
    bool IsBinary() const { return binary; }

    using BrmStringW = BrmPlatform::BrmStringW;

    std::array<void*, 7> dibBlocks{};
    bool scanned = false;
    BrmUtils::MemoryPropertyStore* store = nullptr;
    bool hasStore = false;
    bool wideName = false;
    int64_t tailOffset = 0;
    int64_t tailSize = 0;
    BrmStringW formatName;
    int64_t dataOffset = 0, reserved = 0;
    double resolutionX = 0.0, resolutionY = 0.0;
    int32_t width = 0, height = 0;
    uint32_t colourMode = 0;
    std::vector<BrmStringW> fonts;
    BrmStringW profileName;
    uint32_t renderingIntent = 0;

    // Facts the rewrite needs besides the Part's fields.
    bool doubledHeader = false;
    bool binary = false;
    uint32_t flags = 0;
    bool hasProfile = false, hasIntent = false;
    BrmStringW description;

    // Reads the records the header's flags announce and its skip, leaving
    // `in` at the start of the image data; the records' fields go to
    // `fields` when given.
    static bool ReadRecords(QpxStreamReader& in, const uint8_t* header, QpxDocumentInfo* fields);
    // The object table where the header puts it, `imageData` being the
    // position ReadRecords left; refused when the stream cannot hold it.
    static bool ReadTable(QpxStreamReader& in, const uint8_t* header, std::vector<uint64_t>& offsets);

private:
    bool ScanHeader(QpxStreamReader& in);
    bool ScanObjects(QpxStreamReader& in, const uint8_t* header, uint64_t imageData);
    bool ScanTextObject(QpxStreamReader& in, uint32_t extraSize);
    bool ScanPropertyBlock(QpxStreamReader& in);
    bool ScanMeta(const std::vector<uint8_t>& record);
    bool WriteBlock(IStream* target);

    bool scanResult = false;
};

// The resolution of the header as whole dots per inch.
double QpxResolution(uint32_t value);
