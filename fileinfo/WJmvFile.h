// WJmvFile: the reader of exchange metafiles. They carry no properties, only
// a thumbnail; the newer object-archive form is tried first, then the older
// RIFF form "JMV1".
#pragma once

#include "fileinfo/WFileBase.h"

class WJmvFile final : public WFileBase {
public:
    WJmvFile() = default;

    // No properties: the catalogue stays empty.
    void BuildCatalogue() override {}
    DibBlock ReadPreviewDib() override;

private:
    ~WJmvFile() override = default;

    // The thumbnail of the RIFF form, read from the stream's start.
    DibBlock ReadRiffPreview();
};
