// PNG bytes of a bitmap that a reader handed out (GetBitmap, GetIcon).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Bitmap.h"

namespace fi {

// With `alpha` false the image is written opaque. False, with the reason,
// for an empty bitmap or one the encoder refuses.
bool EncodePng(const FiBitmap& bitmap, bool alpha, std::vector<uint8_t>* png, std::string* why);

}  // namespace fi
