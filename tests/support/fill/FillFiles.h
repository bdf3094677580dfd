// FillDocs: writers of fill files for tests and samples. A fill file is a
// zip container: "mimetype", the part table, the metadata, a thumbnail, the
// description "content/fill.xml" and the tiles it names. The description is
// written by the fill objects themselves; tests that need a damaged one set
// the XML text instead.
//
//   FillFile file = FountainSample();
//   file.props.title = L"Sunset";
//   Bytes zip = Build(file);
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fill/FillInfo.h"
#include "imaging/NativeBitmap.h"

namespace FillDocs {

using Bytes = std::vector<uint8_t>;

inline constexpr char kMediaType[] = "application/x-vnd.brimo.zcf.fill+zip";

struct Properties {
    std::wstring title, keywords, comments, category, subFormat, creatorTool;
};

struct FillFile {
    std::shared_ptr<FillInfo> fill;  // written into content/fill.xml and the metadata
    std::string fillXml;             // when not empty, content/fill.xml as it stands
    bool withMain = true;            // false: no content/fill.xml at all
    Properties props;
    std::vector<std::pair<std::string, Bytes>> parts;  // further members, e.g. tiles
    Bytes thumbnail;                 // encoded image, "previews/thumbnail.png"
    int thumbnailWidth = 0, thumbnailHeight = 0;
    std::string mimetype = kMediaType;
};

Bytes Build(const FillFile& file);

// Complete files of each kind: a bitmap fill with a PNG tile, mirroring and
// filters; a vector fill with a drawing tile and a crop; a fountain with
// rotation, skew and colour stops. Each has a 96 x 96 thumbnail that shows
// the fill and the properties filled in.
FillFile BitmapSample();
FillFile VectorSample();
FillFile FountainSample();

Bytes EncodePng(const BrmUtils::NativeBitmap& bitmap);

}  // namespace FillDocs
