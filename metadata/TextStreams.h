// The text summary of a document (textinfo.xml): text flows of runs, each
// run with a language number and the kind of break that precedes it.
#pragma once

#include <cstdint>
#include <vector>

#include "metadata/Container.h"

namespace Metadata {

enum TextRunBreak : int32_t {
    BreakNone = 0,       // no break attribute, or another word
    BreakLine = 1,       // "line"
    BreakParagraph = 2,  // "para"
    BreakColumn = 3,     // "column"
    BreakFrame = 4,      // "frame"
    BreakStream = 5,     // the first run of a text flow
};

struct TextRunEntry {
    BrmStringW text;
    int32_t language = 0;
    TextRunBreak breakKind = BreakNone;
};

// The runs of every legacykvd:TextStream of the description, in document
// order; runs without text are skipped. A run is BreakStream when it is the
// first element of its stream.
std::vector<TextRunEntry> ReadTextStreams(const Container& container);

}  // namespace Metadata
