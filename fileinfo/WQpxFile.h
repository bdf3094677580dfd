// WQpxFile: the reader of paint images of every generation. Everything it
// knows of the file sits in one QpxDocumentInfo; the newest generation also
// holds open properties, which Commit writes back by rewriting the file's
// tail (over the file through a temporary beside it, or into the stream a
// host's IDestinationStreamFactory gives).
#pragma once

#include <memory>

#include "fileinfo/QpxDocumentInfo.h"
#include "fileinfo/WFileBase.h"

class WQpxFile : public WFileBase {
public:
    WQpxFile();
    ~WQpxFile() override;

    void BuildCatalogue() override;
    DibBlock ReadPreviewDib() override;
    HRESULT CommitDocument() override;
    bool HasOpenProperties() override;
    bool IsReadOnly(const PROPERTYKEY* key) override;
    std::vector<PROPERTYKEY>& GetOpenKeys(std::vector<PROPERTYKEY>& keys) override;
    HRESULT GetOpenValue(const PROPERTYKEY* key, PROPVARIANT* value) override;
    HRESULT SetOpenValue(const PROPERTYKEY* key, const PROPVARIANT* value) override;
    bool OpenFile(const wchar_t* path) override;
    bool OpenStream(IStream* stream) override;
    void CloseFile() override;

private:
    // The scan on the source; false without a source or when it failed.
    bool Scanned();
    HRESULT CommitToFactory(IDestinationStreamFactory* factory);
    HRESULT CommitToPath();

    HRESULT GetResolutionX(VARTYPE type, PROPVARIANT* value);
    HRESULT GetResolutionY(VARTYPE type, PROPVARIANT* value);
    HRESULT GetResolutionUnit(VARTYPE type, PROPVARIANT* value);
    HRESULT GetWidth(VARTYPE type, PROPVARIANT* value);
    HRESULT GetHeight(VARTYPE type, PROPVARIANT* value);
    HRESULT GetDimensions(VARTYPE type, PROPVARIANT* value);
    HRESULT GetComments(VARTYPE type, PROPVARIANT* value);
    HRESULT SetComments(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetColourMode(VARTYPE type, PROPVARIANT* value);
    HRESULT GetProfile(VARTYPE type, PROPVARIANT* value);
    HRESULT GetRenderingIntent(VARTYPE type, PROPVARIANT* value);
    HRESULT GetBitDepth(VARTYPE type, PROPVARIANT* value);
    HRESULT GetFonts(VARTYPE type, PROPVARIANT* value);
    HRESULT GetApplication(VARTYPE type, PROPVARIANT* value);
    HRESULT GetFormatVersion(VARTYPE type, PROPVARIANT* value);

    std::unique_ptr<QpxDocumentInfo> info;
};

// The bit depth shown for a colour mode; 0 for a mode of no row.
uint32_t QpxBitDepth(uint32_t colourMode);
