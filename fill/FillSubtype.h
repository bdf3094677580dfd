// The fill file as a container subtype: its media types, its main part
// "content/fill.xml" read into a FillInfo, and the licence statement every
// saved fill carries in its metadata. Readers open and create fill
// containers through the functions here.
#pragma once

#include "zipcontainer/ZipContainerSubtypeImpl.h"

namespace FillSubtype {

inline constexpr wchar_t kMediaType[] = L"application/x-vnd.brimo.zcf.fill+zip";
inline constexpr wchar_t kPartMediaType[] = L"application/x-vnd.brimo.zcf.fill";
inline constexpr wchar_t kMainPart[] = L"fill.xml";

const SubtypeSpec& Spec();

// The fill container on a source stream (`path` is the file behind it, for
// relative links; may be empty), or an empty reference when the source is no
// fill file. The container takes its own reference on the stream.
ZipContainerRef Open(IStream* stream, const BrmPlatform::BrmStringW& path = {});
// A new fill container written to the stream or file at its Commit.
ZipContainerRef Create(IStream* stream);
ZipContainerRef Create(const BrmPlatform::BrmStringW& path);

// The fill object of a container made here; null for any other.
ZipContainerSubtypeImpl* AsFill(ZipContainerImplBase* container);

}  // namespace FillSubtype
