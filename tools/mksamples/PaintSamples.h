// The paint images of samples/ (one of each generation, a small landscape
// as preview) and the small paint images that seed the fuzz target.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace PaintSamples {

using Bytes = std::vector<uint8_t>;
using Named = std::vector<std::pair<std::string, Bytes>>;

// File name and bytes of each sample.
Named Samples();
// Every binary generation and record layout, and TIFF files of each
// compression the reader accepts; each a few kilobytes at most.
Named FuzzSeeds();

}  // namespace PaintSamples
