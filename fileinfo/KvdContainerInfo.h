// KvdContainerInfo: the reader of the newer drawing documents, zip
// containers whose facts all come from one metadata part, plus a text part
// for the names of pages, layers and objects and for the indexer's text. It
// opens its source in the constructor, because the factory must know
// whether the source is a container at all, and it is the one reader whose
// main properties are written back (Commit).
//
// Two layouts exist. The legacy one keeps "metadata/metadata.xml" and
// "metadata/textinfo.xml" in the legacykvd vocabulary; the current one
// keeps "META-INF/metadata.xml" and "META-INF/textinfo.xml" in dc, xmp, brm,
// kvd, kvt and kvdinfo. Every getter asks the container's layout first.
#pragma once

#include "fileinfo/WFileBase.h"
#include "metadata/Container.h"
#include "metadata/PropertyDescriptor.h"
#include "zipcontainer/ZipContainerImpl.h"

namespace BrmUtils {
class MemoryPropertyStore;
class NativeBitmap;
}  // namespace BrmUtils

class KvdContainerInfo : public WFileBase {
public:
    // Opens the source as a container; a source that is none leaves
    // HasContainer() false (the factory then releases the object).
    explicit KvdContainerInfo(IStream* source);
    explicit KvdContainerInfo(const wchar_t* path);

    bool HasContainer() const { return container != nullptr; }

    void BuildCatalogue() override;
    HBITMAP GetBitmap(SIZE size, uint32_t reserved, bool allowEnlarge, uint8_t* hasAlpha) override;
    uint32_t GetPageCount() override;
    HBITMAP GetPageBitmap(uint32_t page, SIZE size, uint32_t reserved, bool allowEnlarge,
                          uint8_t* hasAlpha) override;
    HICON GetIcon(void* reserved, uint32_t edge) override;
    HRESULT CommitDocument() override;
    bool HasOpenProperties() override;
    HRESULT EnumTextChunks(PropertyVisitor& visitor) override;
    bool OpenFile(const wchar_t* path) override;
    bool OpenStream(IStream* stream) override;
    DibBlock ReadPreviewDib() override;
    std::vector<PROPERTYKEY>& GetOpenKeys(std::vector<PROPERTYKEY>& keys) override;
    HRESULT GetOpenValue(const PROPERTYKEY* key, PROPVARIANT* value) override;
    HRESULT SetOpenValue(const PROPERTYKEY* key, const PROPVARIANT* value) override;

protected:
    ~KvdContainerInfo() override;

private:
    using Row = Metadata::PropertyDescriptor;

    bool IsLegacy() const;
    // The row of the layout: `current` with the flag clear, `legacy` with it set.
    const Row& Pick(const Row& current, const Row& legacy) const { return IsLegacy() ? legacy : current; }
    // The text part, loaded on first need; false while there is none.
    bool EnsureTextInfo();
    // The open properties, made on first need; null when they cannot be made.
    BrmUtils::MemoryPropertyStore* EnsureOpenProperties();
    HBITMAP FitBitmap(std::unique_ptr<BrmUtils::NativeBitmap> image, SIZE size, bool allowEnlarge,
                      uint8_t* hasAlpha);
    // Writes the document into `target` (a new, empty container) and commits it.
    bool WriteTo(const ZipContainerRef& target);
    HRESULT CommitToStream(IStream* stream);
    HRESULT CommitToPath(const wchar_t* path);

    // The catalogue's getters and setters (KvdContainerCatalogue.cpp).
    HRESULT GetTitle(VARTYPE type, PROPVARIANT* value);
    HRESULT SetTitle(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetSubject(VARTYPE type, PROPVARIANT* value);
    HRESULT SetSubject(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetKeywords(VARTYPE type, PROPVARIANT* value);
    HRESULT SetKeywords(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetComments(VARTYPE type, PROPVARIANT* value);
    HRESULT SetComments(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetCategory(VARTYPE type, PROPVARIANT* value);
    HRESULT SetCategory(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetAuthor(VARTYPE type, PROPVARIANT* value);
    HRESULT SetAuthor(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetLastAuthor(VARTYPE type, PROPVARIANT* value);
    HRESULT GetApplication(VARTYPE type, PROPVARIANT* value);
    HRESULT GetAppVersion(VARTYPE type, PROPVARIANT* value);
    HRESULT GetFormatVersion(VARTYPE type, PROPVARIANT* value);
    HRESULT GetRevision(VARTYPE type, PROPVARIANT* value);
    HRESULT SetRevision(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetCopyright(VARTYPE type, PROPVARIANT* value);
    HRESULT SetCopyright(VARTYPE type, const PROPVARIANT* value);
    HRESULT GetPages(VARTYPE type, PROPVARIANT* value);
    HRESULT GetParagraphs(VARTYPE type, PROPVARIANT* value);
    HRESULT GetLines(VARTYPE type, PROPVARIANT* value);
    HRESULT GetWords(VARTYPE type, PROPVARIANT* value);
    HRESULT GetCharacters(VARTYPE type, PROPVARIANT* value);
    HRESULT GetResolutionX(VARTYPE type, PROPVARIANT* value);
    HRESULT GetResolutionY(VARTYPE type, PROPVARIANT* value);
    HRESULT GetDimensions(VARTYPE type, PROPVARIANT* value);
    HRESULT GetFonts(VARTYPE type, PROPVARIANT* value);
    HRESULT GetLanguages(VARTYPE type, PROPVARIANT* value);
    HRESULT GetPageSize(VARTYPE type, PROPVARIANT* value);
    HRESULT GetOrientation(VARTYPE type, PROPVARIANT* value);
    HRESULT GetFontsEmbedded(VARTYPE type, PROPVARIANT* value);
    HRESULT GetObjectCount(VARTYPE type, PROPVARIANT* value);
    HRESULT GetLinks(VARTYPE type, PROPVARIANT* value);
    HRESULT GetPageNames(VARTYPE type, PROPVARIANT* value);
    HRESULT GetLayerNames(VARTYPE type, PROPVARIANT* value);
    HRESULT GetObjectNames(VARTYPE type, PROPVARIANT* value);
    HRESULT GetObjectKinds(VARTYPE type, PROPVARIANT* value);
    HRESULT GetFills(VARTYPE type, PROPVARIANT* value);
    HRESULT GetOutlines(VARTYPE type, PROPVARIANT* value);
    HRESULT GetEffects(VARTYPE type, PROPVARIANT* value);
    HRESULT GetStyles(VARTYPE type, PROPVARIANT* value);
    HRESULT GetPalettes(VARTYPE type, PROPVARIANT* value);
    HRESULT GetColours(VARTYPE type, PROPVARIANT* value);
    HRESULT GetSpotColours(VARTYPE type, PROPVARIANT* value);
    HRESULT GetRgbProfile(VARTYPE type, PROPVARIANT* value);
    HRESULT GetCmykProfile(VARTYPE type, PROPVARIANT* value);
    HRESULT GetGreyProfile(VARTYPE type, PROPVARIANT* value);
    HRESULT GetColourMode(VARTYPE type, PROPVARIANT* value);
    HRESULT GetRenderingIntent(VARTYPE type, PROPVARIANT* value);
    HRESULT GetResolutionUnit(VARTYPE type, PROPVARIANT* value);
    HRESULT GetSides(VARTYPE type, PROPVARIANT* value);
    HRESULT GetFolds(VARTYPE type, PROPVARIANT* value);
    HRESULT GetTemplateType(VARTYPE type, PROPVARIANT* value);
    HRESULT GetIndustry(VARTYPE type, PROPVARIANT* value);

    // Shared forms of the getters and setters.
    HRESULT LocalizedText(const Row& row, PROPVARIANT* value);
    HRESULT StoreLocalizedText(const Row& row, const PROPVARIANT* value);
    HRESULT PlainText(const Row& row, PROPVARIANT* value);
    HRESULT Integer(const Row& row, PROPVARIANT* value);
    HRESULT List(Metadata::Container& from, const Row& row, VARTYPE type, PROPVARIANT* value);
    template <typename Info>
    Info Structure(const Row& current, const Row& legacy);

    ZipContainerRef container;
    Metadata::Container metadata;
    Metadata::Container textInfo;
    BrmUtils::MemoryPropertyStore* openProperties = nullptr;
    IStream* source = nullptr;
    BrmPlatform::BrmStringW sourcePath;
};
