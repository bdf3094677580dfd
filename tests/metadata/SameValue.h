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

// The bytes of the leading int fields of a structure, up to `end`.
template <typename T, typename M>
bool SamePrefix(const T& x, const T& y, const M& endOfX) {
    const auto length = reinterpret_cast<const char*>(&endOfX) - reinterpret_cast<const char*>(&x);
    return std::memcmp(&x, &y, static_cast<size_t>(length)) == 0;
}

template <typename T>
bool SameBytes(const Any& a, const Any& b) {
    return a.Is<T>() && b.Is<T>() && std::memcmp(a.GetPtr<T>(), b.GetPtr<T>(), sizeof(T)) == 0;
}

inline bool SameStrings(const StringList& a, const StringList& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) if (a[i].Compare(b[i]) != 0) return false;
    return true;
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
    if (a.Is<StringList>()) return SameStrings(*a.GetPtr<StringList>(), *b.GetPtr<StringList>());
    using Guids = std::vector<BrmUtils::Guid>;
    if (a.Is<Guids>()) return a.GetValue<Guids>() == b.GetValue<Guids>();
    if (a.Is<SYSTEMTIME>()) return SameBytes<SYSTEMTIME>(a, b);
    if (a.Is<RECT>()) return SameBytes<RECT>(a, b);
    if (a.Is<CT::EffectInfo>()) return SameBytes<CT::EffectInfo>(a, b);
    if (a.Is<CT::ObjectInfo>()) return SameBytes<CT::ObjectInfo>(a, b);
    if (a.Is<CT::CurveInfo>()) return SameBytes<CT::CurveInfo>(a, b);
    if (a.Is<CT::BitmapInfo>()) {
        const auto &x = *a.GetPtr<CT::BitmapInfo>(), &y = *b.GetPtr<CT::BitmapInfo>();
        return x.Types == y.Types && SameStrings(x.LinkPaths, y.LinkPaths);
    }
    if (a.Is<CT::TextInfo>()) {
        const auto &x = *a.GetPtr<CT::TextInfo>(), &y = *b.GetPtr<CT::TextInfo>();
        return SamePrefix(x, y, x.Languages) && x.Languages == y.Languages;
    }
    if (a.Is<CT::FillInfo>()) {
        const auto &x = *a.GetPtr<CT::FillInfo>(), &y = *b.GetPtr<CT::FillInfo>();
        return SamePrefix(x, y, x.Colors) && SameStrings(x.Colors, y.Colors) &&
               SameStrings(x.Palettes, y.Palettes) && SameStrings(x.SpotColors, y.SpotColors);
    }
    if (a.Is<CT::OutlineInfo>()) {
        const auto &x = *a.GetPtr<CT::OutlineInfo>(), &y = *b.GetPtr<CT::OutlineInfo>();
        return SamePrefix(x, y, x.Colors) && SameStrings(x.Colors, y.Colors) &&
               SameStrings(x.Palettes, y.Palettes) && SameStrings(x.SpotColors, y.SpotColors);
    }
    if (a.Is<CT::ColorInfo>()) {
        const auto &x = *a.GetPtr<CT::ColorInfo>(), &y = *b.GetPtr<CT::ColorInfo>();
        return x.RgbProfileName.Compare(y.RgbProfileName) == 0 && x.CmykProfileName.Compare(y.CmykProfileName) == 0 &&
               x.GrayscaleProfileName.Compare(y.GrayscaleProfileName) == 0 && x.ColorMode == y.ColorMode &&
               x.RenderingIntent == y.RenderingIntent;
    }
    using OmpList = std::vector<ZipContainerSchema::OpenMetadataProperty>;
    if (a.Is<OmpList>()) {
        const auto &x = *a.GetPtr<OmpList>(), &y = *b.GetPtr<OmpList>();
        if (x.size() != y.size()) return false;
        for (size_t i = 0; i < x.size(); ++i) {
            if (x[i].formatId != y[i].formatId || x[i].propertyId != y[i].propertyId ||
                x[i].type.Compare(y[i].type) != 0 || x[i].array != y[i].array || x[i].value.Compare(y[i].value) != 0)
                return false;
        }
        return true;
    }
    ADD_FAILURE() << "no comparison for " << a.GetType().name();
    return false;
}

inline MultiLanguageString Languages(std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> entries) {
    MultiLanguageString m;
    for (const auto& [k, v] : entries) m.Set(k, v);
    return m;
}

}  // namespace MetadataTest
