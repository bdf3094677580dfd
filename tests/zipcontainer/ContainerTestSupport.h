// Containers for the tests: zips made from name/text pairs by the test
// archive writer, opened as containers, and small bitmaps.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "imaging/NativeBitmap.h"
#include "tests/support/zip/ZipTestArchive.h"
#include "zipcontainer/ZipContainerImpl.h"

namespace ctest {

using BrmPlatform::BrmStringW;
using Parts = std::vector<std::pair<std::string, std::string>>;

inline BrmStringW W(const std::string& s) { return BrmStringW(std::wstring(s.begin(), s.end())); }

inline std::vector<uint8_t> Zip(const Parts& parts, uint16_t method = 0) {
    ziptest::Archive archive;
    for (const auto& [name, text] : parts) archive.entries.push_back(ziptest::MakeEntry(name, ziptest::Bytes(text), method));
    return ziptest::Build(archive);
}

inline ZipContainerRef Open(const std::vector<uint8_t>& zip, bool detect = true, const ContainerOptions& options = {}) {
    auto stream = ziptest::StreamOn(zip);
    return ZipContainerImpl::OpenFromStream(stream.get(), detect, {}, options);
}

// The part's bytes as text; "<null>" when it doesn't open.
inline std::string Read(ZipContainerImplBase& c, const std::string& name) {
    ziptest::Ref<IStream> s(c.OpenPart(W(name)));
    if (!s) return "<null>";
    auto bytes = ziptest::ReadAll(s.get());
    return std::string(bytes.begin(), bytes.end());
}

inline std::unique_ptr<BrmUtils::NativeBitmap> Bitmap(int w, int h, BrmUtils::PixelFormat f) {
    auto b = BrmUtils::NativeBitmap::Create(w, h, f);
    auto px = b->LockBits();
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) px->GetRow(y)[x] = 0xFF000000u | uint32_t(x * 7 % 256) << 8 | uint32_t(y % 256);
    return b;
}

inline std::string Links(const Parts& links) {
    std::string out = "<?xml version=\"1.0\"?><linkInfo>";
    for (const auto& [part, ref] : links) out += "<link part=\"" + part + "\" ref=\"" + ref + "\"/>";
    return out + "</linkInfo>";
}

}  // namespace ctest
