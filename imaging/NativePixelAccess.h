// NativePixelAccess: row access to a NativeBitmap's pixman pixels.
#pragma once

#include "imaging/NativeBitmap.h"

namespace BrmUtils {

class NativePixelAccess final : public NativeBitmap::PixelAccess {
public:
    explicit NativePixelAccess(NativeBitmap* bitmap) : bitmap_(bitmap) {}
    ~NativePixelAccess() override;

    // Null for a row out of range; on first use the pixel base is taken.
    uint32_t* GetRow(int row) override;

private:
    NativeBitmap* bitmap_;
    uint8_t* scan0_ = nullptr;
    int stride_ = 0;
    bool locked_ = false;
};

}  // namespace BrmUtils
