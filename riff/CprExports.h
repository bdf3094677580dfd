// zlib's deflate and inflate calls under the CPR_ prefix, for other
// components that want the library's compression without linking zlib
// themselves. They keep zlib's signatures and results.
#pragma once

#include <zlib.h>

extern "C" {

int CPR_deflateInit_(z_streamp strm, int level, const char* version, int streamSize);
int CPR_deflate(z_streamp strm, int flush);
int CPR_deflateEnd(z_streamp strm);
// Always a zlib stream with header and checksum, window 15.
int CPR_inflateInit_(z_streamp strm, const char* version, int streamSize);
int CPR_inflate(z_streamp strm, int flush);
int CPR_inflateEnd(z_streamp strm);

}  // extern "C"
