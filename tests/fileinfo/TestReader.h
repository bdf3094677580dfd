// A reader made for the tests of WFileBase: a small catalogue of every kind
// of record (text, list, numbers, no getter, throwing getter and setter, a
// key registered twice), optional open properties held in a map, and a
// preview DIB set by the test.
#pragma once

#include <memory>
#include <vector>

#include "fileinfo/WFileBase.h"

namespace fitest {

// The two FMTIDs of the test catalogue; A sorts before B.
constexpr FMTID kSetA = {0x11111111, 0x1111, 0x1111, {0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11}};
constexpr FMTID kSetB = {0x22222222, 0x2222, 0x2222, {0x22, 0x22, 0x22, 0x22, 0x22, 0x22, 0x22, 0x22}};
// Only the open properties use this one.
constexpr FMTID kSetOpen = {0x00000001, 0x0000, 0x0000, {0, 0, 0, 0, 0, 0, 0, 0}};

constexpr PROPERTYKEY Key(const FMTID& fmtid, DWORD pid) { return PROPERTYKEY{fmtid, pid}; }

constexpr PROPERTYKEY kTitle = Key(kSetA, 2);        // text, getter and setter
constexpr PROPERTYKEY kKeywords = Key(kSetA, 5);     // list from one string
constexpr PROPERTYKEY kNoGetter = Key(kSetA, 7);     // registered without functions
constexpr PROPERTYKEY kThrowing = Key(kSetA, 9);     // getter and setter throw
constexpr PROPERTYKEY kPages = Key(kSetA, 100);      // VT_UI4 or its text
constexpr PROPERTYKEY kBig = Key(kSetA, 256);        // VT_I4, sorts before PID 100
constexpr PROPERTYKEY kFlag = Key(kSetB, 3);         // VT_BOOL, getter without value

class TestReader : public WFileBase {
public:
    // A reader with its catalogue built, as the factories leave it.
    static TestReader* Make();

    void BuildCatalogue() override;
    DibBlock ReadPreviewDib() override;

    bool HasOpenProperties() override { return openEnabled; }
    std::vector<PROPERTYKEY>& GetOpenKeys(std::vector<PROPERTYKEY>& keys) override;
    HRESULT GetOpenValue(const PROPERTYKEY* key, PROPVARIANT* value) override;
    HRESULT SetOpenValue(const PROPERTYKEY* key, const PROPVARIANT* value) override;

    // The properties' getters and setters.
    HRESULT GetTitle(VARTYPE requested, PROPVARIANT* value);
    HRESULT SetTitle(VARTYPE primary, const PROPVARIANT* value);
    HRESULT GetKeywords(VARTYPE requested, PROPVARIANT* value);
    HRESULT GetPages(VARTYPE requested, PROPVARIANT* value);
    HRESULT GetBig(VARTYPE requested, PROPVARIANT* value);
    HRESULT GetFlag(VARTYPE requested, PROPVARIANT* value);
    HRESULT GetThrowing(VARTYPE requested, PROPVARIANT* value);
    HRESULT SetThrowing(VARTYPE primary, const PROPVARIANT* value);

    // Open properties: known keys in insertion order, and their numbers.
    bool openEnabled = false;
    std::vector<std::pair<PROPERTYKEY, LONG>> open;

    // What the getters saw and hold.
    VARTYPE lastRequested = VT_EMPTY;
    std::wstring title = L"A title";

    // The preview handed out (copied into a new block on each read).
    std::vector<uint8_t> dib;
    int previewReads = 0;

    IStream* Stream() const { return stream; }
    const BrmPlatform::BrmStringW& Path() const { return path; }
};

struct ReleaseFileInfo {
    void operator()(IFileInfo* p) const { p->Release(); }
};
using ReaderPtr = std::unique_ptr<TestReader, ReleaseFileInfo>;
using FileInfoPtr = std::unique_ptr<IFileInfo, ReleaseFileInfo>;

// A visitor that hands each record to a function.
template <typename F>
class FnVisitor final : public PropertyVisitor {
public:
    explicit FnVisitor(F f) : f(f) {}
    void Visit(const void* record) override { f(record); }

private:
    F f;
};

}  // namespace fitest
