// Whole-document conversions between the legacy metadata form (one flat
// legacykvd namespace) and the current one. Both build a new document from
// the rows of one table and leave the source unchanged; properties without
// a row are not carried over.
#pragma once

#include "metadata/Container.h"

namespace Metadata {

// Every legacy row into its current row; the two flag rows become bool
// (false when missing), the document identifier goes to both
// xmpMM:InstanceID and xmpMM:DocumentID (null when missing).
Container ConvertLegacyToCurrent(Container& source);

// The reverse; xmpMM:InstanceID becomes the identifier, the compression
// ratio is written as 0, the flags as 1 or 0.
Container ConvertCurrentToLegacy(Container& source);

}  // namespace Metadata
