// Value comparison for the metadata tests: whether two values read from
// documents are the same, by the value's type, and a builder of language
// alternatives.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <utility>
#include <vector>

#include "metadata/Schema.h"

namespace MetadataTest {

namespace CT = Metadata::ComplexTypes;
using BrmPlatform::BrmStringW;
using BrmUtils::Any;
using Metadata::MultiLanguageString;
using StringList = std::vector<BrmPlatform::BrmStringW>;

// Plain structures without padding (SYSTEMTIME, RECT) compare by their bytes.
template <typename T>
bool SameBytes(const Any& a, const Any& b) {
    static_assert(std::has_unique_object_representations_v<T>, "padding would make the comparison read garbage");
    return a.Is<T>() && b.Is<T>() && std::memcmp(a.GetPtr<T>(), b.GetPtr<T>(), sizeof(T)) == 0;
}

// Whether two values of one row are the same, by the row's value type.
inline bool Same(const Any& a, const Any& b) {
    if (a.GetType() != b.GetType()) return false;
    if (a.Is<int>()) return a.GetValue<int>() == b.GetValue<int>();
    if (a.Is<bool>()) return a.GetValue<bool>() == b.GetValue<bool>();
    if (a.Is<double>()) return a.GetValue<double>() == b.GetValue<double>();
    if (a.Is<BrmStringW>()) return a.GetPtr<BrmStringW>()->Compare(*b.GetPtr<BrmStringW>()) == 0;
    if (a.Is<BrmUtils::Guid>()) return a.GetValue<BrmUtils::Guid>() == b.GetValue<BrmUtils::Guid>();
    if (a.Is<MultiLanguageString>()) return *a.GetPtr<MultiLanguageString>() == *b.GetPtr<MultiLanguageString>();
    if (a.Is<StringList>()) return *a.GetPtr<StringList>() == *b.GetPtr<StringList>();
    using Guids = std::vector<BrmUtils::Guid>;
    if (a.Is<Guids>()) return a.GetValue<Guids>() == b.GetValue<Guids>();
    if (a.Is<SYSTEMTIME>()) return SameBytes<SYSTEMTIME>(a, b);
    if (a.Is<RECT>()) return SameBytes<RECT>(a, b);
    if (a.Is<CT::EffectInfo>()) return *a.GetPtr<CT::EffectInfo>() == *b.GetPtr<CT::EffectInfo>();
    if (a.Is<CT::ObjectInfo>()) return *a.GetPtr<CT::ObjectInfo>() == *b.GetPtr<CT::ObjectInfo>();
    if (a.Is<CT::CurveInfo>()) return *a.GetPtr<CT::CurveInfo>() == *b.GetPtr<CT::CurveInfo>();
    if (a.Is<CT::BitmapInfo>()) return *a.GetPtr<CT::BitmapInfo>() == *b.GetPtr<CT::BitmapInfo>();
    if (a.Is<CT::TextInfo>()) return *a.GetPtr<CT::TextInfo>() == *b.GetPtr<CT::TextInfo>();
    if (a.Is<CT::FillInfo>()) return *a.GetPtr<CT::FillInfo>() == *b.GetPtr<CT::FillInfo>();
    if (a.Is<CT::OutlineInfo>()) return *a.GetPtr<CT::OutlineInfo>() == *b.GetPtr<CT::OutlineInfo>();
    if (a.Is<CT::ColorInfo>()) return *a.GetPtr<CT::ColorInfo>() == *b.GetPtr<CT::ColorInfo>();
    using OmpList = std::vector<ZipContainerSchema::OpenMetadataProperty>;
    if (a.Is<OmpList>()) return *a.GetPtr<OmpList>() == *b.GetPtr<OmpList>();
    ADD_FAILURE() << "no comparison for " << a.GetType().name();
    return false;
}

inline MultiLanguageString Languages(std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> entries) {
    MultiLanguageString m;
    for (const auto& [k, v] : entries) m.Set(k, v);
    return m;
}

}  // namespace MetadataTest
