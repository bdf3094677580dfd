// The preview of a paint image of the TIFF generation: the walk over the
// directories picks the one the application wrote as its thumbnail, and
// libtiff decodes that directory's strips.
#pragma once

#include "fileinfo/IFileInfo.h"

// The thumbnail as a packed DIB in a malloc'd block; empty when the file is
// no little-endian TIFF of the application, has no thumbnail directory or
// cannot be decoded.
DibBlock ReadQpxTiffThumbnail(IStream* stream);
