// WKvdFile: the reader of the older drawing documents (one RIFF file with a
// summary, an info list, the document list, the pages and a thumbnail). It
// scans the file once, on the first question, and serves what it found;
// it never writes.
#pragma once
#include <memory>

#include "fileinfo/KvdDocumentInfo.h"
#include "fileinfo/WFileBase.h"

class WKvdFile : public WFileBase {
public:
    WKvdFile() = default;
    ~WKvdFile() override = default;

    void BuildCatalogue() override;
    DibBlock ReadPreviewDib() override;
    bool OpenFile(const wchar_t* path) override;
    bool OpenStream(IStream* stream) override;
    void CloseFile() override;

    // The property keys of this reader, for tests and the tools.
    static const PROPERTYKEY kKeywords, kComments, kApplication, kAppVersion, kFormatVersion, kPageCount,
        kResolutionX, kResolutionY, kResolutionUnit, kDimensions, kFonts, kOrientation, kSecondFlag, kFirstFlag,
        kCompressionRatio, kLinks, kTextDefaults;

private:
    // Scans the document on first use; true when the scan succeeded. The
    // thumbnail is only checked unless `thumbnail` asks for it to be read
    // (KvdDocumentInfo::kScanThumbnail).
    bool EnsureScanned(uint32_t thumbnail = KvdDocumentInfo::kScanThumbnailCheck);
    // One scan of the whole document, the thumbnail checked or read as
    // `thumbnail` says; null when it failed.
    std::unique_ptr<KvdDocumentInfo> Scan(uint32_t thumbnail);

    HRESULT GetKeywords(VARTYPE type, PROPVARIANT* value);
    HRESULT GetComments(VARTYPE type, PROPVARIANT* value);
    HRESULT GetApplication(VARTYPE type, PROPVARIANT* value);
    HRESULT GetAppVersion(VARTYPE type, PROPVARIANT* value);
    HRESULT GetFormatVersion(VARTYPE type, PROPVARIANT* value);
    HRESULT GetPages(VARTYPE type, PROPVARIANT* value);
    HRESULT GetResolutionX(VARTYPE type, PROPVARIANT* value);
    HRESULT GetResolutionY(VARTYPE type, PROPVARIANT* value);
    HRESULT GetResolutionUnit(VARTYPE type, PROPVARIANT* value);
    HRESULT GetDimensions(VARTYPE type, PROPVARIANT* value);
    HRESULT GetFonts(VARTYPE type, PROPVARIANT* value);
    HRESULT GetOrientation(VARTYPE type, PROPVARIANT* value);
    HRESULT GetSecondFlag(VARTYPE type, PROPVARIANT* value);
    HRESULT GetFirstFlag(VARTYPE type, PROPVARIANT* value);
    HRESULT GetCompressionRatio(VARTYPE type, PROPVARIANT* value);
    HRESULT GetLinks(VARTYPE type, PROPVARIANT* value);
    HRESULT GetTextDefaults(VARTYPE type, PROPVARIANT* value);

    std::unique_ptr<KvdDocumentInfo> info;
    bool scanned = false;
    uint64_t scanStart = 0;  // stream position of the document's start
};
