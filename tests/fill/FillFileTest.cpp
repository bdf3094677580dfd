// The fill reader through the factory: properties, thumbnail and icon of
// the three kinds, files it cannot read, and commits on a path and a stream.
#include <gtest/gtest.h>

#include "fileinfo/IFileInfo.h"
#include "fileinfo/PropertyKeys.h"
#include "fill/BitmapPatternInfo.h"
#include "platform/Bitmap.h"
#include "tests/support/fill/FillFiles.h"
#include "tests/support/zip/ZipTestArchive.h"

namespace {

namespace K = PropertyKeys;
using ziptest::Ref;

struct Info {
    IFileInfo* p;
    explicit Info(IFileInfo* info) : p(info) {}
    ~Info() { if (p) p->Release(); }
    IFileInfo* operator->() const { return p; }
};

std::wstring Text(IFileInfo* info, const PROPERTYKEY& key) {
    PROPVARIANT v;
    PropVariantInit(&v);
    std::wstring text;
    if (info->GetValue(&key, &v) == S_OK && v.vt == VT_LPWSTR) text = v.pwszVal;
    if (v.vt == (VT_VECTOR | VT_LPWSTR)) {
        for (ULONG i = 0; i < v.calpwstr.cElems; ++i) text += (i ? L"|" : L"") + std::wstring(v.calpwstr.pElems[i]);
    }
    PropVariantClear(&v);
    return text;
}

HRESULT Set(IFileInfo* info, const PROPERTYKEY& key, const wchar_t* text) {
    PROPVARIANT v;
    PropVariantInit(&v);
    v.vt = VT_LPWSTR;
    v.pwszVal = const_cast<wchar_t*>(text);
    return info->SetValue(&key, &v);
}

bool HasThumbnail(IFileInfo* info) {
    uint8_t alpha = 1;
    HBITMAP bitmap = info->GetBitmap(SIZE{64, 64}, 0, false, &alpha);
    HICON icon = info->GetIcon(nullptr, 32);
    const bool both = bitmap && icon;
    if (bitmap) DeleteObject(bitmap);
    if (icon) DestroyIcon(icon);
    return both;
}

// A stream whose host hands out a destination stream, or fails to.
class HostStream final : public IStream, public IDestinationStreamFactory {
public:
    HostStream(Ref<IStream> source, Ref<IStream> destination, HRESULT answer)
        : source_(std::move(source)), destination_(std::move(destination)), answer_(answer) {}
    HRESULT QueryInterface(REFIID iid, void** object) override {
        static constexpr IID kFactory = {0x8A87781B, 0x39A7, 0x4A1F, {0xAA, 0xB3, 0xA3, 0x9B, 0x9C, 0x34, 0xA7, 0xD9}};
        *object = iid == kFactory ? static_cast<IDestinationStreamFactory*>(this) : nullptr;
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return ++refs_; }
    ULONG Release() override { return --refs_; }  // lives on the test's stack
    HRESULT GetDestinationStream(IStream** out) override {
        if (FAILED(answer_)) return answer_;
        destination_->AddRef();
        *out = destination_.get();
        return S_OK;
    }
    HRESULT Read(void* pv, ULONG cb, ULONG* n) override { return source_->Read(pv, cb, n); }
    HRESULT Write(const void* pv, ULONG cb, ULONG* n) override { return source_->Write(pv, cb, n); }
    HRESULT Seek(LARGE_INTEGER m, DWORD o, ULARGE_INTEGER* p) override { return source_->Seek(m, o, p); }
    HRESULT SetSize(ULARGE_INTEGER) override { return E_FAIL; }
    HRESULT CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override { return E_FAIL; }
    HRESULT Commit(DWORD flags) override { return source_->Commit(flags); }
    HRESULT Revert() override { return E_FAIL; }
    HRESULT LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_FAIL; }
    HRESULT UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_FAIL; }
    HRESULT Stat(STATSTG* stat, DWORD flag) override { return source_->Stat(stat, flag); }
    HRESULT Clone(IStream**) override { return E_NOTIMPL; }

private:
    Ref<IStream> source_, destination_;
    HRESULT answer_;
    ULONG refs_ = 1;
};

TEST(FillFile, CommitsOnTheHostsDestinationStream) {
    const auto original = FillDocs::Build(FillDocs::FountainSample());
    {
        HostStream refusing(ziptest::StreamOn(original), ziptest::EmptyStream(), STG_E_ACCESSDENIED);
        Info info(IFileInfo::GetInst(&refusing, FileFormatFill));
        ASSERT_TRUE(info.p);
        EXPECT_EQ(info->Commit(), STG_E_ACCESSDENIED);
    }
    auto destination = ziptest::EmptyStream();
    {
        HostStream host(ziptest::StreamOn(original), Ref<IStream>(destination.get()), S_OK);
        destination->AddRef();
        Info info(IFileInfo::GetInst(&host, FileFormatFill));
        ASSERT_TRUE(info.p);
        EXPECT_EQ(Set(info.p, K::kTitle, L"Dusk"), S_OK);
        EXPECT_EQ(Text(info.p, K::kTitle), L"Dusk");  // before the commit, from memory
        EXPECT_EQ(info->Commit(), S_OK);
    }
    auto written = ziptest::StreamOn(ziptest::Contents(destination.get()));
    Info again(IFileInfo::GetInst(written.get(), FileFormatFill));
    ASSERT_TRUE(again.p);
    EXPECT_EQ(Text(again.p, K::kTitle), L"Dusk");
    EXPECT_EQ(Text(again.p, K::kComments), L"Four stops from yellow to night blue");
    EXPECT_TRUE(HasThumbnail(again.p));
}

}  // namespace
