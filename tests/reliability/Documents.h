// Documents of every format for the reliability tests and scripts: the
// samples (written by tools/mksamples) and paint images and object-archive
// metafiles made here by the test writers, which the samples may lack.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "fileinfo/IFileInfo.h"

namespace reliability {

struct Document {
    std::string name;  // file name with its extension
    EFileFormat format;
    std::vector<uint8_t> bytes;
};

// A paint image with a tiled thumbnail of `side` pixels square, a
// background, a text object and a property block: its write-back copies
// every object, so a larger side makes a longer commit.
std::vector<uint8_t> PaintImage(uint32_t side);

// Everything a host reads of an open document (properties with their
// display forms, thumbnail, page previews, icon, packed DIB, text) as one
// string, equal for equal readings.
std::string ReadEverything(IFileInfo* info, EFileFormat format);

// Every document of samples/ the library reads, then generated ones.
std::vector<Document> AllDocuments();

// Drawing documents of the RIFF forms and zip media types that the desktop
// files claim and no sample has (motion documents, symbol libraries,
// patterns, technical drawings as containers), named with an extension no
// glob claims so that their content alone tells their type.
std::vector<Document> OtherTypeDocuments();

}  // namespace reliability
