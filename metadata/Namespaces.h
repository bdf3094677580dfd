// The XML namespaces of metadata documents: the standard XMP and RDF ones,
// and this system's own, all built on kNamespaceRoot, the one opaque base
// URI of the system's namespaces. kNamespaceRoot is defined here and
// nowhere else.
#pragma once

#include <array>
#include <cstddef>

#include "metadata/xml/QualifiedName.h"

namespace Metadata {

using XmlNS::NamespaceDef;
using XmlNS::QualifiedName;

// Same scheme as the system's other URIs (urn:brimo:namespaces:zcf:xmlns:...).
inline constexpr char kNamespaceRoot[] = "urn:brimo:namespaces:";

namespace detail {

constexpr std::size_t Length(const char* s) {
    std::size_t n = 0;
    while (s[n]) ++n;
    return n;
}

// The concatenation of string constants, made at compile time so that the
// namespace tables stay constant-initialised.
template <const char*... Parts>
struct Join {
    static constexpr auto Make() {
        std::array<char, (Length(Parts) + ... + 1)> out{};
        std::size_t pos = 0;
        for (const char* part : {Parts...}) {
            for (std::size_t i = 0; part[i]; ++i) out[pos++] = part[i];
        }
        return out;
    }
    static constexpr auto kValue = Make();
    static constexpr const char* Get() { return kValue.data(); }
};

inline constexpr char kKvdPath[] = "kvd/metadata/1.0/";
inline constexpr char kKvdInfoPath[] = "fileinfo/";
inline constexpr char kKvtPath[] = "kvt/metadata/1.0/";
inline constexpr char kBrmPath[] = "zcf/metadata/1.0/";
inline constexpr char kLegacyKvdPath[] = "Kvd/metadata";
inline constexpr char kRectPath[] = "rect/";
inline constexpr char kEffectPath[] = "effectInfo/";
inline constexpr char kObjectPath[] = "objectInfo/";
inline constexpr char kCurvePath[] = "curveInfo/";
inline constexpr char kTextPath[] = "textInfo/";
inline constexpr char kFillPath[] = "fillInfo/";
inline constexpr char kOutlinePath[] = "outlineInfo/";
inline constexpr char kColorPath[] = "colorInfo/";

template <const char* Path>
constexpr const char* Own() {
    return Join<kNamespaceRoot, Path>::Get();
}
template <const char* Path>
constexpr const char* OwnKvd() {
    return Join<kNamespaceRoot, kKvdPath, Path>::Get();
}

}  // namespace detail

namespace Namespaces {

// The XMP packet, RDF and the published XMP schemas.
inline constexpr NamespaceDef x{"x", "adobe:ns:meta/"};
inline constexpr NamespaceDef rdf{"rdf", "http://www.w3.org/1999/02/22-rdf-syntax-ns#"};
inline constexpr NamespaceDef xml{"xml", "dummy:ns:xml/"};
inline constexpr NamespaceDef dc{"dc", "http://purl.org/dc/elements/1.1/"};
inline constexpr NamespaceDef xmp{"xmp", "http://ns.adobe.com/xap/1.0/"};
inline constexpr NamespaceDef xmpMM{"xmpMM", "http://ns.adobe.com/xap/1.0/mm/"};
inline constexpr NamespaceDef xmpRights{"xmpRights", "http://ns.adobe.com/xap/1.0/rights/"};
inline constexpr NamespaceDef xmpidq{"xmpidq", "http://ns.adobe.com/xmp/Identifier/qual/1.0/"};
inline constexpr NamespaceDef xmpTPg{"xmpTPg", "http://ns.adobe.com/xap/1.0/t/pg/"};
inline constexpr NamespaceDef Iptc4xmpCore{"Iptc4xmpCore", "http://iptc.org/std/Iptc4xmpCore/1.0/xmlns/"};
inline constexpr NamespaceDef stRef{"stRef", "http://ns.adobe.com/xap/1.0/sType/ResourceRef#"};
inline constexpr NamespaceDef stDim{"stDim", "http://ns.adobe.com/xap/1.0/sType/Dimensions#"};
inline constexpr NamespaceDef stFnt{"stFnt", "http://ns.adobe.com/xap/1.0/sType/Font#"};
inline constexpr NamespaceDef xmpG{"xmpG", "http://ns.adobe.com/xap/1.0/g/"};
inline constexpr NamespaceDef xmpGImg{"xmpGImg", "http://ns.adobe.com/xap/1.0/g/img/"};
inline constexpr NamespaceDef cc{"cc", "http://creativecommons.org/ns#"};

// The system's own.
inline constexpr NamespaceDef kvd{"kvd", detail::Own<detail::kKvdPath>()};
inline constexpr NamespaceDef kvdinfo{"kvdinfo", detail::OwnKvd<detail::kKvdInfoPath>()};
inline constexpr NamespaceDef kvt{"kvt", detail::Own<detail::kKvtPath>()};
inline constexpr NamespaceDef brm{"brm", detail::Own<detail::kBrmPath>()};
inline constexpr NamespaceDef legacykvd{"legacykvd", detail::Own<detail::kLegacyKvdPath>()};

// The fields of complex properties.
inline constexpr NamespaceDef rect{"rect", detail::OwnKvd<detail::kRectPath>()};
inline constexpr NamespaceDef inEff{"inEff", detail::OwnKvd<detail::kEffectPath>()};
inline constexpr NamespaceDef inObj{"inObj", detail::OwnKvd<detail::kObjectPath>()};
inline constexpr NamespaceDef inCrv{"inCrv", detail::OwnKvd<detail::kCurvePath>()};
inline constexpr NamespaceDef inTxt{"inTxt", detail::OwnKvd<detail::kTextPath>()};
inline constexpr NamespaceDef inFill{"inFill", detail::OwnKvd<detail::kFillPath>()};
inline constexpr NamespaceDef inOtl{"inOtl", detail::OwnKvd<detail::kOutlinePath>()};
inline constexpr NamespaceDef inClr{"inClr", detail::OwnKvd<detail::kColorPath>()};

}  // namespace Namespaces

}  // namespace Metadata
