// The document container: a zip file with well-known parts beside its
// payload (mimetype, link table, metadata, part table, previews) in one of
// two layouts. ZipContainerImplBase is the reference-counted interface the
// readers hold; ZipContainerImpl implements it over a ZipFileSet. An opened
// file is never changed in place: changes go to a new target that Commit
// assembles and puts over the old file in one atomic step.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "imaging/NativeBitmap.h"
#include "metadata/Container.h"
#include "metadata/xml/XmlFile.h"
#include "platform/ObjIdl.h"
#include "utils/RefCounted.h"
#include "utils/strings/BrmString.h"
#include "zipcontainer/LinkTable.h"
#include "zipcontainer/PartRecord.h"
#include "zipcontainer/PartSet.h"
#include "zipcontainer/SubtypeInfo.h"
#include "zipcontainer/ZipFileSet.h"

class ZipContainerImpl;
using ZipContainerRef = BrmUtils::RefPtr<ZipContainerImpl>;

// Pairs of (text, replacement) applied in order to paths of external files.
using SearchPaths = std::vector<std::pair<BrmPlatform::BrmStringW, BrmPlatform::BrmStringW>>;

// How a container treats references that leave it.
struct ContainerOptions {
    // The process-wide default of refuseFileLinks for options made from now
    // on, so that a host that scans untrusted files (or the tool's
    // --no-external-links) can forbid "file:" references in every container
    // the readers open. Off unless set.
    static void SetRefuseFileLinksDefault(bool refuse);
    static bool RefuseFileLinksDefault();

    // Refuse every "file:" reference: a document from an untrusted source
    // then cannot make the reader open other local files.
    bool refuseFileLinks = RefuseFileLinksDefault();
    // Containers reached through "file:" references nest at most this deep;
    // a loop of references ends here with no part.
    static constexpr int kMaxNesting = 8;
    // How deep this container sits in such a chain (0 for the one a caller
    // opened).
    int nesting = 0;
    SearchPaths searchPaths;
};

// Well-known part names.
namespace ContainerNames {
inline constexpr const wchar_t* kMimeType = L"mimetype";
inline constexpr const wchar_t* kPartTable = L"META-INF/container.xml";
inline constexpr const wchar_t* kLinks = L"META-INF/links.xml";
inline constexpr const wchar_t* kLegacyLinks = L"links.xml";
inline constexpr const wchar_t* kMetadata = L"META-INF/metadata.xml";
inline constexpr const wchar_t* kLegacyMetadata = L"metadata/metadata.xml";
inline constexpr const wchar_t* kTextInfo = L"metadata/textinfo.xml";
inline constexpr const wchar_t* kPreviews = L"previews/";
inline constexpr const wchar_t* kLegacyPreviews = L"metadata/thumbnails/";
inline constexpr const wchar_t* kContent = L"content/";
inline constexpr const wchar_t* kThumbnailKind = L"thumbnail";
inline constexpr const wchar_t* kMainKind = L"main";
}  // namespace ContainerNames

class ZipContainerImplBase {
public:
    using BrmStringW = BrmPlatform::BrmStringW;
    using Bitmap = BrmUtils::NativeBitmap;
    using BitmapPtr = std::unique_ptr<BrmUtils::NativeBitmap>;

    // Atomic count; `destroying` keeps a destructor that takes and drops a
    // reference from deleting twice.
    void AddRef() const { refCount_.fetch_add(1, std::memory_order_relaxed); }
    void Release() const;

    virtual bool Open(bool detectLayout, bool convertMetadata) = 0;
    virtual bool InitNew(const BrmStringW& mimeType, bool legacyLayout, bool convertMetadata) = 0;
    virtual bool Commit() = 0;
    virtual bool IsModified() const = 0;
    virtual bool IsLegacyLayout() const = 0;

    // Writes the document into a new deflated part; `options` are those of
    // the printer (0 for the default indented form).
    virtual bool WriteXmlPart(const BrmStringW& name, const Brm::XmlFile& document, int options = 0) = 0;
    virtual bool AddFilePart(const BrmStringW& name, const BrmStringW& path, int options = 0) = 0;
    // The parsed part; null when absent or not well-formed.
    virtual std::unique_ptr<Brm::XmlFile> ReadXmlPart(const BrmStringW& name) = 0;

    virtual std::set<int32_t> GetKindIndices(const BrmStringW& fileKind) const = 0;
    // Records by kind (case ignored; null pointer for any) and index (a
    // negative index for any), in table order.
    virtual std::vector<NamedPartRecord> FindParts(const wchar_t* fileKind, int32_t index) const = 0;
    virtual NamedPartRecord FindBestPart(const BrmStringW& fileKind, int32_t maxWidth, int32_t maxHeight,
                                         int32_t index) const = 0;
    virtual NamedPartRecord GetPreviewRecord(const BrmStringW& fileKind, int32_t maxWidth, int32_t maxHeight,
                                             int32_t index) const = 0;
    virtual NamedPartRecord GetThumbnailRecord() const = 0;

    // Encodes the bitmap in the media type and stores it under `name`; with
    // a non-empty kind the part table gets its record.
    virtual bool WriteImagePart(const BrmStringW& name, const Bitmap& bitmap, const BrmStringW& mimeType,
                                const BrmStringW& fileKind, const Metadata::MultiLanguageString& captions,
                                int32_t index) = 0;
    virtual BitmapPtr ReadImagePart(const BrmStringW& name) = 0;
    virtual bool AddPreview(const Bitmap& bitmap, const BrmStringW& fileKind,
                            const Metadata::MultiLanguageString& captions, int32_t index, bool lossless) = 0;
    virtual BitmapPtr GetPreviewImage(const BrmStringW& fileKind, int32_t maxWidth, int32_t maxHeight,
                                      int32_t index) = 0;
    virtual bool AddThumbnail(const Bitmap& bitmap) = 0;
    virtual BitmapPtr GetThumbnailImage() = 0;

    virtual const LinkTable& Links() const = 0;
    virtual LinkTable& Links() = 0;
    virtual const Metadata::Container& Metadata() const = 0;
    virtual Metadata::Container& Metadata() = 0;
    virtual const ZipFileSetRef& ZipSet() const = 0;
    virtual ZipFileSetRef& ZipSet() = 0;
    virtual BrmStringW GetMimeType() const = 0;

    virtual void SetPartRecord(const BrmStringW& name, const PartRecord* record) = 0;
    virtual void RemovePartRecord(const BrmStringW& name) = 0;
    virtual std::vector<NamedPartRecord> GetPartRecords() const = 0;

    virtual bool RemoveFile(const BrmStringW& name) = 0;
    virtual bool RemoveFolder(const BrmStringW& name) = 0;
    virtual int RemoveMatching(const BrmStringW& expression) = 0;
    virtual bool Exists(const BrmStringW& name) const = 0;
    // Copies every live member except the excluded names (a name ending in
    // '/' excludes the folder) to `target`; the names copied go to `copied`.
    virtual bool CopyPartsTo(ZipContainerImplBase& target, const std::vector<BrmStringW>& excluded,
                             std::vector<BrmStringW>* copied) = 0;

    // A stream on the part (one reference for the caller), or null.
    virtual IStream* OpenPart(const BrmStringW& name, bool randomAccess = false) = 0;
    // A new member (deflated unless `stored`); drops any link of the name
    // and stores `record` if given. One reference for the caller, or null.
    virtual IStream* CreatePart(const BrmStringW& name, bool stored, bool randomAccess = false,
                                const PartRecord* record = nullptr) = 0;
    // Names of live members in archive order, then link-only names; with a
    // non-empty pattern only names it matches in full, case ignored.
    virtual std::vector<BrmStringW> ListPartNames(const wchar_t* pattern = nullptr) const = 0;
    virtual std::vector<PartListing> ListParts(const wchar_t* pattern = nullptr) const = 0;

    virtual void SetModified(bool modified) = 0;
    virtual SubtypeInfo* GetSubtypeInfo() const = 0;
    virtual BrmStringW GetSubtypeName() const = 0;

    virtual void SetLink(const BrmStringW& part, const BrmStringW& reference) = 0;
    virtual bool RemoveLink(const BrmStringW& part) = 0;
    virtual bool CopyLinksTo(ZipContainerImplBase& target) const = 0;
    virtual bool CopyPartRecordsTo(ZipContainerImplBase& target) const = 0;
    // A new container on `set` for `path`, holding copies of all parts.
    virtual ZipContainerRef CloneTo(ZipFileSet* set, const BrmStringW& path, const SearchPaths& searchPaths) = 0;

    virtual void ResetStandardMetadata() = 0;
    virtual ~ZipContainerImplBase() = default;
    virtual void RefreshStandardMetadata() = 0;

protected:
    ZipContainerImplBase() = default;
    ZipContainerImplBase(const ZipContainerImplBase&) = delete;
    ZipContainerImplBase& operator=(const ZipContainerImplBase&) = delete;

private:
    mutable std::atomic<int32_t> refCount_{0};
    mutable std::atomic<bool> destroying_{false};
};

class ZipContainerImpl : public ZipContainerImplBase {
public:
    // Makes the object on a set for a source path; the subtype's factory
    // makes its own class. The object must not be opened yet.
    using Factory = std::function<ZipContainerImpl*(ZipFileSet* set, const BrmStringW& sourcePath,
                                                    const ContainerOptions& options)>;

    // --- Factories: an empty reference on any failure ---------------------
    static ZipContainerRef OpenFromPath(const BrmStringW& path, bool detectLayout = true,
                                        const ContainerOptions& options = {}, const Factory& factory = {});
    // `path` is the file behind the stream (for relative links), may be empty.
    static ZipContainerRef OpenFromStream(IStream* stream, bool detectLayout = true, const BrmStringW& path = {},
                                          const ContainerOptions& options = {}, const Factory& factory = {});
    // A new, empty container (current layout, no mime type) on the file or
    // stream; the file's old content is replaced at Commit.
    static ZipContainerRef CreateOnPath(const BrmStringW& path, const ContainerOptions& options = {},
                                        const Factory& factory = {});
    static ZipContainerRef CreateOnStream(IStream* stream, const ContainerOptions& options = {},
                                          const Factory& factory = {});

    ZipContainerImpl(ZipFileSet* set, const BrmStringW& sourcePath, const ContainerOptions& options = {});
    ~ZipContainerImpl() override;

    bool Open(bool detectLayout, bool convertMetadata) override;
    bool InitNew(const BrmStringW& mimeType, bool legacyLayout, bool convertMetadata) override;
    bool Commit() override;
    bool IsModified() const override;
    bool IsLegacyLayout() const override { return legacyLayout_; }

    bool WriteXmlPart(const BrmStringW& name, const Brm::XmlFile& document, int options = 0) override;
    bool AddFilePart(const BrmStringW& name, const BrmStringW& path, int options = 0) override;
    std::unique_ptr<Brm::XmlFile> ReadXmlPart(const BrmStringW& name) override;

    std::set<int32_t> GetKindIndices(const BrmStringW& fileKind) const override;
    std::vector<NamedPartRecord> FindParts(const wchar_t* fileKind, int32_t index) const override;
    NamedPartRecord FindBestPart(const BrmStringW& fileKind, int32_t maxWidth, int32_t maxHeight,
                                 int32_t index) const override;
    NamedPartRecord GetPreviewRecord(const BrmStringW& fileKind, int32_t maxWidth, int32_t maxHeight,
                                     int32_t index) const override;
    NamedPartRecord GetThumbnailRecord() const override;

    bool WriteImagePart(const BrmStringW& name, const Bitmap& bitmap, const BrmStringW& mimeType,
                        const BrmStringW& fileKind, const Metadata::MultiLanguageString& captions,
                        int32_t index) override;
    BitmapPtr ReadImagePart(const BrmStringW& name) override;
    bool AddPreview(const Bitmap& bitmap, const BrmStringW& fileKind, const Metadata::MultiLanguageString& captions,
                    int32_t index, bool lossless) override;
    BitmapPtr GetPreviewImage(const BrmStringW& fileKind, int32_t maxWidth, int32_t maxHeight,
                              int32_t index) override;
    bool AddThumbnail(const Bitmap& bitmap) override;
    BitmapPtr GetThumbnailImage() override;

    const LinkTable& Links() const override { return links_; }
    LinkTable& Links() override { return links_; }
    const Metadata::Container& Metadata() const override { return *metadata_; }
    Metadata::Container& Metadata() override { return *metadata_; }
    const ZipFileSetRef& ZipSet() const override { return set_; }
    ZipFileSetRef& ZipSet() override { return set_; }
    BrmStringW GetMimeType() const override { return mimeType_; }

    void SetPartRecord(const BrmStringW& name, const PartRecord* record) override;
    void RemovePartRecord(const BrmStringW& name) override;
    std::vector<NamedPartRecord> GetPartRecords() const override;

    bool RemoveFile(const BrmStringW& name) override;
    bool RemoveFolder(const BrmStringW& name) override;
    int RemoveMatching(const BrmStringW& expression) override;
    bool Exists(const BrmStringW& name) const override;
    bool CopyPartsTo(ZipContainerImplBase& target, const std::vector<BrmStringW>& excluded,
                     std::vector<BrmStringW>* copied) override;

    IStream* OpenPart(const BrmStringW& name, bool randomAccess = false) override;
    IStream* CreatePart(const BrmStringW& name, bool stored, bool randomAccess = false,
                        const PartRecord* record = nullptr) override;
    std::vector<BrmStringW> ListPartNames(const wchar_t* pattern = nullptr) const override;
    std::vector<PartListing> ListParts(const wchar_t* pattern = nullptr) const override;

    void SetModified(bool modified) override { modified_ = modified; }
    SubtypeInfo* GetSubtypeInfo() const override { return nullptr; }
    BrmStringW GetSubtypeName() const override { return {}; }

    void SetLink(const BrmStringW& part, const BrmStringW& reference) override;
    bool RemoveLink(const BrmStringW& part) override;
    bool CopyLinksTo(ZipContainerImplBase& target) const override;
    bool CopyPartRecordsTo(ZipContainerImplBase& target) const override;
    ZipContainerRef CloneTo(ZipFileSet* set, const BrmStringW& path, const SearchPaths& searchPaths) override;

    void ResetStandardMetadata() override;
    void RefreshStandardMetadata() override;

    // --- Beyond the interface ----------------------------------------------
    const BrmStringW& SourcePath() const { return sourcePath_; }
    const ContainerOptions& Options() const { return options_; }
    void SetSearchPaths(const SearchPaths& searchPaths) { options_.searchPaths = searchPaths; }
    const PartSet& Parts() const { return parts_; }
    // The layout's names.
    BrmStringW LinksName() const;
    BrmStringW MetadataName() const;
    BrmStringW PreviewFolder() const;
    // The name of the preview of that kind and index (negative: none) in
    // this layout, with the extension of the media type.
    BrmStringW PreviewName(const BrmStringW& fileKind, int32_t index, const BrmStringW& mediaType) const;
    // The media type AddPreview stores the bitmap in, in this layout.
    BrmStringW PreviewMediaType(const Bitmap& bitmap, bool lossless) const;

    // The set's new-target callback: "mimetype" as the first member.
    bool WriteMimeType();

    // Writes this container as it now stands (parts, links, part table,
    // metadata) to a new file beside `path`, then renames it over `path`.
    // On any failure `path` keeps its old bytes and no new file remains.
    // This is how an opened (read-only) document is updated. `wrapTarget`,
    // if given, gets the new file's stream and answers the stream to write
    // to (one reference); tests use it to make writes fail.
    bool SaveToFile(const BrmStringW& path, const std::function<IStream*(IStream*)>& wrapTarget = {});

protected:
    // Runs a factory's object through Open or InitNew; empty on failure.
    static ZipContainerRef Start(ZipContainerImpl* object, ZipFileSet* set, bool detectLayout);
    static ZipContainerRef MakeOn(ZipFileSetRef set, const BrmStringW& sourcePath, bool detectLayout,
                                  const ContainerOptions& options, const Factory& factory);
    // The layout test of Open.
    static bool DetectLegacyLayout(const ZipFileSet& set);
    // Tries the URIs of a reference in turn.
    IStream* OpenReference(const BrmStringW& reference, bool randomAccess);
    // One URI; `final` is set when its answer ends the search.
    IStream* OpenUri(BrmStringW uri, bool randomAccess, bool* final);
    IStream* OpenFileUri(const BrmStringW& uri, bool randomAccess, bool* final);
    BrmStringW ApplySearchPaths(BrmStringW path) const;

    ZipFileSetRef set_;
    BrmStringW sourcePath_;
    LinkTable links_;
    ContainerOptions options_;
    BrmStringW mimeType_;
    std::unique_ptr<Metadata::Container> metadata_;
    PartSet parts_;
    bool modified_ = false;
    bool legacyLayout_ = false;
    bool convertMetadata_ = false;
};
