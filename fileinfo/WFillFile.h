// WFillFile: the reader of fill files (a zip container with a fill
// description). To the shell a fill is a small document with a thumbnail, a
// title, keywords, comments, a category, a content type and the application
// that made it; all but the application can be written back.
#pragma once

#include "fileinfo/WFileBase.h"
#include "metadata/Container.h"
#include "zipcontainer/ZipContainerImpl.h"

class WFillFile final : public WFileBase {
public:
    WFillFile() = default;

    void BuildCatalogue() override;
    // The thumbnail comes from the container, not from a packed DIB.
    DibBlock ReadPreviewDib() override { return {}; }
    HBITMAP GetBitmap(SIZE size, uint32_t reserved, bool allowEnlarge, uint8_t* hasAlpha) override;
    HICON GetIcon(void* reserved, uint32_t edge) override;
    // Writes the metadata into a new fill file: the destination stream the
    // source hands out, or a temporary file that then replaces the path.
    HRESULT CommitDocument() override;
    void CloseFile() override;

private:
    ~WFillFile() override;

    // Opens the container on first use. True once tried, also when the
    // source is no fill file: the getters then read empty metadata.
    bool Open();
    // Copies the old container into `target` with fill.xml written afresh
    // from a clone of the fill object, and the metadata as set.
    bool WriteTo(ZipContainerImplBase& target);
    HRESULT CommitToStream();
    HRESULT CommitToPath();

    HRESULT GetTitle(VARTYPE type, PROPVARIANT* value);
    HRESULT SetTitle(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetKeywords(VARTYPE type, PROPVARIANT* value);
    HRESULT SetKeywords(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetComments(VARTYPE type, PROPVARIANT* value);
    HRESULT SetComments(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetCategory(VARTYPE type, PROPVARIANT* value);
    HRESULT SetCategory(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetContentType(VARTYPE type, PROPVARIANT* value);
    HRESULT SetContentType(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetApplication(VARTYPE type, PROPVARIANT* value);

    HRESULT GetLocalized(const Metadata::PropertyDescriptor& row, bool list, VARTYPE type, PROPVARIANT* value);
    HRESULT SetLocalized(const Metadata::PropertyDescriptor& row, const PROPVARIANT* value);

    bool opened = false;
    ZipContainerRef container;
    Metadata::Container metadata;
};
