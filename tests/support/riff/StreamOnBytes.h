// TestDocs: an IStream over bytes made by the writers, held by a smart
// pointer that releases it.
#pragma once

#include <memory>

#include "platform/ObjIdl.h"
#include "tests/support/riff/RiffWriter.h"
#include "utils/streams/MemStream.h"

namespace TestDocs {

struct StreamReleaser {
    void operator()(IUnknown* p) const {
        if (p) p->Release();
    }
};
using StreamPtr = std::unique_ptr<IStream, StreamReleaser>;

// A read-only stream on a copy of the bytes, positioned at 0.
inline StreamPtr StreamOnBytes(const Bytes& bytes) {
    return StreamPtr(BrmUtils::CreateMemStreamOnBytes(bytes.data(), bytes.size()));
}

}  // namespace TestDocs
