// The CPR_ exports: thin forwards to zlib.
#include "riff/CprExports.h"

extern "C" {

int CPR_deflateInit_(z_streamp strm, int level, const char* version, int streamSize) {
    return deflateInit_(strm, level, version, streamSize);
}

int CPR_deflate(z_streamp strm, int flush) {
    return deflate(strm, flush);
}

int CPR_deflateEnd(z_streamp strm) {
    return deflateEnd(strm);
}

int CPR_inflateInit_(z_streamp strm, const char* version, int streamSize) {
    return inflateInit2_(strm, 15, version, streamSize);
}

int CPR_inflate(z_streamp strm, int flush) {
    return inflate(strm, flush);
}

int CPR_inflateEnd(z_streamp strm) {
    return inflateEnd(strm);
}

}  // extern "C"
