// WFileBase: the base of every format reader. It owns the source stream, the
// cached preview and the property catalogue, and answers every property
// operation of IFileInfo from that catalogue plus the reader's open
// properties (GetOpenKeys / GetOpenValue / SetOpenValue).
//
// A reader registers its properties in BuildCatalogue and writes one small
// member function per property:
//
//     void WMyFile::BuildCatalogue() {
//         OpenGroup(kGroupDescription);
//         AddProperty(kTitleKey, PropTypesText, &WMyFile::GetTitle, &WMyFile::SetTitle);
//         AddProperty(kKeywordsKey, PropTypesList, &WMyFile::GetKeywords);
//         CloseGroup();
//     }
#pragma once

#include <atomic>
#include <type_traits>
#include <vector>

#include "fileinfo/IFileInfo.h"
#include "fileinfo/PropertyCatalogue.h"
#include "utils/strings/BrmString.h"

class WFileBase : public IFileInfo {
public:
    void AddRef() override;
    ULONG Release() override;

    HBITMAP GetBitmap(SIZE size, uint32_t reserved, bool allowEnlarge, uint8_t* hasAlpha) override;
    uint32_t GetPageCount() override;
    HBITMAP GetPageBitmap(uint32_t page, SIZE size, uint32_t reserved, bool allowEnlarge,
                          uint8_t* hasAlpha) override;
    HICON GetIcon(void* reserved, uint32_t edge) override;

    HRESULT EnumFormatIds(PropertyVisitor& visitor) override;
    HRESULT GetValue(const PROPERTYKEY* key, PROPVARIANT* value) override;
    HRESULT ReadValue(const FMTID* fmtid, const PROPSPEC* spec, PROPVARIANT* value) override;
    HRESULT SetValue(const PROPERTYKEY* key, const PROPVARIANT* value) override;
    HRESULT WriteValue(const FMTID* fmtid, const PROPSPEC* spec, const PROPVARIANT* value) override;
    HRESULT EnumProperties(const FMTID* fmtid, PropertyVisitor& visitor) override;
    bool IsReadOnly(const PROPERTYKEY* key) override;
    bool IsReadOnlySpec(const FMTID* fmtid, const PROPSPEC* spec) override;
    bool HasProperty(const PROPERTYKEY* key) override;
    bool HasPropertySpec(const FMTID* fmtid, const PROPSPEC* spec) override;
    uint32_t GetCount() override;
    HRESULT GetAt(uint32_t index, PROPERTYKEY* key) override;
    // Forgets the kept read, then CommitDocument.
    HRESULT Commit() final;
    bool HasOpenProperties() override;
    HRESULT EnumTextChunks(PropertyVisitor& visitor) override;
    void EnumGroups(PropertyVisitor& visitor) override;
    void EnumGroupMembers(const PROPERTYKEY* groupKey, PropertyVisitor& visitor) override;

    bool OpenFile(const wchar_t* path) override;
    bool OpenStream(IStream* stream) override;
    std::vector<PROPERTYKEY>& GetOpenKeys(std::vector<PROPERTYKEY>& keys) override;
    HRESULT GetOpenValue(const PROPERTYKEY* key, PROPVARIANT* value) override;
    HRESULT SetOpenValue(const PROPERTYKEY* key, const PROPVARIANT* value) override;
    void CloseFile() override;

protected:
    WFileBase();
    ~WFileBase() override;

    // Writes the values set so far back to the source; by default there is
    // nothing a reader can write.
    virtual HRESULT CommitDocument();

    // Registration, for BuildCatalogue. `types` holds the primary type in its
    // low half and the secondary in its high half (PropTypesText, ...). A key
    // registered before keeps its first record; while a group is open the key
    // is appended to it in any case.
    template <class Reader>
    void AddProperty(const PROPERTYKEY& key, uint32_t types, HRESULT (Reader::*getter)(VARTYPE, PROPVARIANT*),
                     std::type_identity_t<HRESULT (Reader::*)(VARTYPE, const PROPVARIANT*)> setter = nullptr) {
        static_assert(std::is_base_of_v<WFileBase, Reader>, "getters and setters are members of the reader");
        AddRecord(key, types, static_cast<PropertyGetter>(getter), static_cast<PropertySetter>(setter));
    }
    // A property with neither getter nor setter: known, always empty, read-only.
    void AddProperty(const PROPERTYKEY& key, uint32_t types) { AddRecord(key, types, nullptr, nullptr); }
    // Starts a display group named by `groupKey`; an open group is closed first.
    void OpenGroup(const PROPERTYKEY& groupKey);
    void CloseGroup();

    const PropertyCatalogue& Catalogue() const { return catalogue; }
    const std::vector<PropertyGroup>& Groups() const { return groups; }

    // The source; null when closed or when no open has worked. Readers seek
    // absolutely: the position a client handed the stream in at is not kept.
    IStream* stream = nullptr;
    // The path given to OpenFile; empty when opened on a stream.
    BrmPlatform::BrmStringW path;

private:
    void AddRecord(const PROPERTYKEY& key, uint32_t types, PropertyGetter getter, PropertySetter setter);
    // The one reading routine of GetValue and ReadValue.
    HRESULT ReadProperty(const PROPERTYKEY& key, PROPVARIANT* value, bool primary);
    // The one writing routine of SetValue and WriteValue.
    HRESULT WriteProperty(const PROPERTYKEY& key, const PROPVARIANT* value);
    // GetOpenKeys with any exception of a reader turned into "no keys".
    std::vector<PROPERTYKEY> OpenKeys();
    // The cached preview, read on first use; false when the reader has none.
    bool EnsurePreview();
    void ForgetLastRead();

    // The value of the last read of a property whose two types are the same,
    // for the display read of the same key that usually follows it (a scan
    // reads every property in both forms; the second read would run the same
    // getter again). Kept only for a read-only property of a reader without
    // open properties, whose value nothing but a new source can change; only
    // the read that comes directly after may use it, and every write, commit
    // and change of source drops it.
    struct LastRead {
        PROPERTYKEY key{};
        HRESULT hr = S_OK;
        PROPVARIANT value{};
        bool valid = false;
    };
    LastRead lastRead;

    std::atomic<int32_t> refCount{1};
    DibBlock preview;
    std::vector<PropertyGroup> groups;
    PropertyCatalogue catalogue;
    bool groupOpen = false;
};
