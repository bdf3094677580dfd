// IFileInfo: the one object a client of the library holds. A client asks a
// GetInst factory for a reader of a document, asks it for a thumbnail, an
// icon, property values or the document's text, and ends with Release.
//
// The operations from BuildCatalogue on are the hooks by which WFileBase and
// the factories drive a reader; they live in this class because it declares
// the whole table of virtual operations, but a client never calls them.
#pragma once

#include <vector>

#include "platform/Bitmap.h"
#include "platform/ObjIdl.h"
#include "platform/PropIdl.h"

// The 32-bit selector of the factories. Any other value makes them answer null.
enum EFileFormat : int32_t {
    FileFormatDrawing = 0,      // drawing document or template (RIFF or zip container)
    FileFormatPaint = 1,        // paint image
    FileFormatMetafile = 2,     // exchange metafile
    FileFormatFill = 3,         // fill file
};

// A caller's callback for the enumerations. What the record points to depends
// on the enumeration: an FMTID (EnumFormatIds), a STATPROPSTG (EnumProperties),
// a PropertyGroup (EnumGroups, see fileinfo/PropertyCatalogue.h), a
// PROPERTYKEY (EnumGroupMembers) or a TextChunk (EnumTextChunks).
class PropertyVisitor {
public:
    virtual void Visit(const void* record) = 0;

protected:
    ~PropertyVisitor() = default;
};

// The chunk-break values of a text run, as the platform's text filters know them.
constexpr uint32_t CHUNK_NO_BREAK = 0;
constexpr uint32_t CHUNK_EOP = 3;  // end of a line, paragraph, column or frame
constexpr uint32_t CHUNK_EOC = 4;  // first run of a new text stream

// The record of EnumTextChunks: one run of the document's text.
struct TextChunk {
    const wchar_t* text;  // not zero-terminated necessarily; `length` characters
    int32_t length;
    uint16_t language;    // language number of the run
    uint32_t chunkBreak;  // CHUNK_NO_BREAK, CHUNK_EOP or CHUNK_EOC
};

class IFileInfo {
public:
    // A new reader of the document on `stream` (one reference is taken by the
    // reader) or at `path`, with its reference count at 1; null for an unknown
    // format or a source that cannot be opened.
    static IFileInfo* GetInst(IStream* stream, EFileFormat format);
    static IFileInfo* GetInst(const wchar_t* path, EFileFormat format);

    virtual void AddRef() = 0;
    // Answers the count before the call; at zero the object is gone.
    virtual ULONG Release() = 0;

    // The thumbnail fitted into `size` on opaque white; null on any failure.
    // `hasAlpha`, when given, receives 0.
    virtual HBITMAP GetBitmap(SIZE size, uint32_t reserved, bool allowEnlarge, uint8_t* hasAlpha) = 0;
    // 0xFFFFFFFF: the count is not known, try the pages one by one.
    virtual uint32_t GetPageCount() = 0;
    virtual HBITMAP GetPageBitmap(uint32_t page, SIZE size, uint32_t reserved, bool allowEnlarge,
                                  uint8_t* hasAlpha) = 0;
    // The thumbnail centred in a transparent square of `edge` pixels.
    virtual HICON GetIcon(void* reserved, uint32_t edge) = 0;

    virtual HRESULT EnumFormatIds(PropertyVisitor& visitor) = 0;
    // `value` is an output: whatever it holds is overwritten, not cleared.
    virtual HRESULT GetValue(const PROPERTYKEY* key, PROPVARIANT* value) = 0;
    virtual HRESULT ReadValue(const FMTID* fmtid, const PROPSPEC* spec, PROPVARIANT* value) = 0;
    virtual HRESULT SetValue(const PROPERTYKEY* key, const PROPVARIANT* value) = 0;
    virtual HRESULT WriteValue(const FMTID* fmtid, const PROPSPEC* spec, const PROPVARIANT* value) = 0;
    virtual HRESULT EnumProperties(const FMTID* fmtid, PropertyVisitor& visitor) = 0;
    virtual bool IsReadOnly(const PROPERTYKEY* key) = 0;
    virtual bool IsReadOnlySpec(const FMTID* fmtid, const PROPSPEC* spec) = 0;
    virtual bool HasProperty(const PROPERTYKEY* key) = 0;
    virtual bool HasPropertySpec(const FMTID* fmtid, const PROPSPEC* spec) = 0;
    virtual uint32_t GetCount() = 0;
    virtual HRESULT GetAt(uint32_t index, PROPERTYKEY* key) = 0;
    // Writes the values stored by the setters into the source.
    virtual HRESULT Commit() = 0;
    virtual bool HasOpenProperties() = 0;
    virtual HRESULT EnumTextChunks(PropertyVisitor& visitor) = 0;
    virtual void EnumGroups(PropertyVisitor& visitor) = 0;
    virtual void EnumGroupMembers(const PROPERTYKEY* groupKey, PropertyVisitor& visitor) = 0;

    // Hooks of the readers, called by the factories and by WFileBase.
    virtual void BuildCatalogue() = 0;

protected:
    // Objects end through Release, never by delete from outside.
    virtual ~IFileInfo() = default;

public:
    virtual bool OpenFile(const wchar_t* path) = 0;
    virtual bool OpenStream(IStream* stream) = 0;
    // A packed DIB (BITMAPINFOHEADER, colour table below 16 bits, pixels) in
    // a malloc'd block with its size; an empty block when there is none.
    virtual DibBlock ReadPreviewDib() = 0;
    virtual std::vector<PROPERTYKEY>& GetOpenKeys(std::vector<PROPERTYKEY>& keys) = 0;
    virtual HRESULT GetOpenValue(const PROPERTYKEY* key, PROPVARIANT* value) = 0;
    virtual HRESULT SetOpenValue(const PROPERTYKEY* key, const PROPVARIANT* value) = 0;
    virtual void CloseFile() = 0;

protected:
    IFileInfo() = default;
    IFileInfo(const IFileInfo&) = delete;
    IFileInfo& operator=(const IFileInfo&) = delete;
};
