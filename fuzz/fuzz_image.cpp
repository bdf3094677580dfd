// Arbitrary bytes as a packed DIB (the thumbnail route of the readers) and
// as an image file of any format the library reads.
#include <cstddef>
#include <cstdint>

#include "imaging/NativeBitmap.h"
#include "imaging/Thumbnail.h"
#include "imaging/codecs/ImageCodecs.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (auto thumb = BrmUtils::DibToBitmap(data, size, {48, 48}, true, false, size & 1)) {
        HBITMAP out = BrmUtils::CreateHBITMAP(*thumb, 0xFFFFFFFF);
        DeleteObject(out);
    }
    if (auto image = BrmUtils::LoadImage(data, size)) {
        if (auto icon = BrmUtils::ImageToIcon(*image, 16)) DestroyIcon(icon);
    }
    return 0;
}
