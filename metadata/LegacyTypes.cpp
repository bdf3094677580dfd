// Field tables and the special forms of the legacy metadata data types.
#include "metadata/LegacyTypes.h"

#include <cstdio>
#include <strings.h>

#include "metadata/ArrayTypes.h"
#include "metadata/Utf8.h"

namespace Metadata::DataType::Legacy {

namespace {

namespace CT = ComplexTypes;

// The fields of legacy structures: local names as in the current form, all
// in legacykvd.
template <typename T>
constexpr PropertyDescriptor L(const char* local) {
    return Row<T>(Namespaces::legacykvd, local);
}

#define FI_INT_FIELD(Name) inline constexpr PropertyDescriptor Name = L<DataType::Int>(#Name)
#define FI_USA_FIELD(Name) inline constexpr PropertyDescriptor Name = L<DataType::UnorderedStringArray>(#Name)
#define FI_UIA_FIELD(Name) inline constexpr PropertyDescriptor Name = L<DataType::UnorderedIntArray>(#Name)
#define FI_STRING_FIELD(Name) inline constexpr PropertyDescriptor Name = L<DataType::String>(#Name)

namespace f {
FI_INT_FIELD(Perspective); FI_INT_FIELD(Envelope); FI_INT_FIELD(DropShadow); FI_INT_FIELD(Blend);
FI_INT_FIELD(Extrude); FI_INT_FIELD(Bevel); FI_INT_FIELD(Contour); FI_INT_FIELD(PowerClip);
FI_INT_FIELD(Clone); FI_INT_FIELD(Lens); FI_INT_FIELD(Transparency); FI_INT_FIELD(Distortion);

FI_INT_FIELD(Total); FI_INT_FIELD(Group); FI_INT_FIELD(Curve); FI_INT_FIELD(Rect); FI_INT_FIELD(Bitmap);
FI_INT_FIELD(Ellipse); FI_INT_FIELD(MeshFill); FI_INT_FIELD(Polygon); FI_INT_FIELD(Linked);
FI_INT_FIELD(Embedded); FI_INT_FIELD(Guideline); FI_INT_FIELD(Definitions); FI_INT_FIELD(Instances);
FI_INT_FIELD(Text);

FI_INT_FIELD(Subpaths); FI_INT_FIELD(Nodes); FI_INT_FIELD(MaxNodes);

FI_UIA_FIELD(Types); FI_USA_FIELD(LinkPaths);

FI_INT_FIELD(ParagraphText); FI_INT_FIELD(ArtisticText); FI_INT_FIELD(Frames); FI_INT_FIELD(EmptyFrames);
FI_INT_FIELD(Paragraphs); FI_INT_FIELD(Lines); FI_INT_FIELD(Words); FI_INT_FIELD(Characters);
FI_INT_FIELD(DocFormatterId); FI_UIA_FIELD(Languages);

FI_INT_FIELD(None); FI_INT_FIELD(Uniform); FI_INT_FIELD(Fountain); FI_INT_FIELD(Texture);
FI_INT_FIELD(Postscript); FI_INT_FIELD(Hatch); FI_INT_FIELD(Pattern);
FI_USA_FIELD(Colors); FI_USA_FIELD(Palettes); FI_USA_FIELD(SpotColors);

FI_INT_FIELD(Solid); FI_INT_FIELD(Dashed); FI_INT_FIELD(Enhanced); FI_INT_FIELD(BehindFill);
FI_INT_FIELD(ScalePen); FI_INT_FIELD(Hairline);

FI_STRING_FIELD(Name);
FI_INT_FIELD(colorMode); FI_INT_FIELD(renderingIntent);
}  // namespace f

#undef FI_INT_FIELD
#undef FI_USA_FIELD
#undef FI_UIA_FIELD
#undef FI_STRING_FIELD

constexpr QualifiedName kOle{&Namespaces::legacykvd, "OLE"};
constexpr QualifiedName kSymbol{&Namespaces::legacykvd, "Symbol"};
constexpr QualifiedName kProfiles{&Namespaces::legacykvd, "Profiles"};
constexpr QualifiedName kRgb{&Namespaces::legacykvd, "Rgb"};
constexpr QualifiedName kCmyk{&Namespaces::legacykvd, "Cmyk"};
constexpr QualifiedName kGrayscale{&Namespaces::legacykvd, "Grayscale"};
constexpr QualifiedName kLeft{&Namespaces::legacykvd, "left"};
constexpr QualifiedName kRight{&Namespaces::legacykvd, "right"};
constexpr QualifiedName kTop{&Namespaces::legacykvd, "top"};
constexpr QualifiedName kBottom{&Namespaces::legacykvd, "bottom"};
constexpr QualifiedName kProperty{&Namespaces::legacykvd, "Property"};
constexpr QualifiedName kFmtid{&Namespaces::legacykvd, "fmtid"};
constexpr QualifiedName kPropid{&Namespaces::legacykvd, "propid"};
constexpr QualifiedName kType{&Namespaces::legacykvd, "type"};
constexpr QualifiedName kArray{&Namespaces::legacykvd, "array"};

int DecimalInt(const std::string* text) {
    if (!text) return 0;
    Any value;
    DataType::Int().FromText(value, *text);
    return value.GetValue<int>(0);
}

}  // namespace

// --- Structures by field table ----------------------------------------------

std::span<const FieldSpec<CT::EffectInfo>> EffectInfo::Fields() {
    using V = CT::EffectInfo;
    static const FieldSpec<V> kFields[] = {
        IntField(f::Perspective, &V::Perspective), IntField(f::Envelope, &V::Envelope),
        IntField(f::DropShadow, &V::DropShadow),   IntField(f::Blend, &V::Blend),
        IntField(f::Extrude, &V::Extrude),         IntField(f::Bevel, &V::Bevel),
        IntField(f::Contour, &V::Contour),         IntField(f::PowerClip, &V::PowerClip),
        IntField(f::Clone, &V::Clone),             IntField(f::Lens, &V::Lens),
        IntField(f::Transparency, &V::Transparency), IntField(f::Distortion, &V::Distortion),
    };
    return kFields;
}

std::span<const FieldSpec<CT::ObjectInfo>> ObjectInfo::Fields() {
    using V = CT::ObjectInfo;
    static const FieldSpec<V> kFields[] = {
        IntField(f::Total, &V::Total),
        IntField(f::Group, &V::Group),
        IntField(f::Curve, &V::Curve),
        IntField(f::Rect, &V::Rect),
        IntField(f::Bitmap, &V::Bitmap),
        IntField(f::Ellipse, &V::Ellipse),
        IntField(f::MeshFill, &V::MeshFill),
        IntField(f::Polygon, &V::Polygon),
        IntField(f::Linked, &V::OLELinked, &kOle),
        IntField(f::Embedded, &V::OLEEmbedded, &kOle),
        IntField(f::Guideline, &V::Guideline),
        IntField(f::Definitions, &V::SymbolDefinitions, &kSymbol),
        IntField(f::Instances, &V::SymbolInstances, &kSymbol),
        IntField(f::Text, &V::Text),
    };
    return kFields;
}

std::span<const FieldSpec<CT::CurveInfo>> CurveInfo::Fields() {
    using V = CT::CurveInfo;
    static const FieldSpec<V> kFields[] = {
        IntField(f::Subpaths, &V::Subpaths),
        IntField(f::Nodes, &V::Nodes),
        IntField(f::MaxNodes, &V::MaxNodes),
    };
    return kFields;
}

std::span<const FieldSpec<CT::BitmapInfo>> BitmapInfo::Fields() {
    using V = CT::BitmapInfo;
    static const FieldSpec<V> kFields[] = {
        IntListField(f::Types, &V::Types),
        StringListField(f::LinkPaths, &V::LinkPaths),
    };
    return kFields;
}

std::span<const FieldSpec<CT::TextInfo>> TextInfo::Fields() {
    using V = CT::TextInfo;
    static const FieldSpec<V> kFields[] = {
        IntField(f::ParagraphText, &V::ParagraphText), IntField(f::ArtisticText, &V::ArtisticText),
        IntField(f::Frames, &V::Frames),               IntField(f::EmptyFrames, &V::EmptyFrames),
        IntField(f::Paragraphs, &V::Paragraphs),       IntField(f::Lines, &V::Lines),
        IntField(f::Words, &V::Words),                 IntField(f::Characters, &V::Characters),
        IntField(f::DocFormatterId, &V::DocFormatterId), IntListField(f::Languages, &V::Languages),
    };
    return kFields;
}

std::span<const FieldSpec<CT::FillInfo>> FillInfo::Fields() {
    using V = CT::FillInfo;
    static const FieldSpec<V> kFields[] = {
        IntField(f::None, &V::None),           IntField(f::Uniform, &V::Uniform),
        IntField(f::Fountain, &V::Fountain),   IntField(f::Texture, &V::Texture),
        IntField(f::Postscript, &V::Postscript), IntField(f::Hatch, &V::Hatch),
        IntField(f::Pattern, &V::Pattern),     StringListField(f::Colors, &V::Colors),
        StringListField(f::Palettes, &V::Palettes), StringListField(f::SpotColors, &V::SpotColors),
    };
    return kFields;
}

std::span<const FieldSpec<CT::OutlineInfo>> OutlineInfo::Fields() {
    using V = CT::OutlineInfo;
    static const FieldSpec<V> kFields[] = {
        IntField(f::None, &V::None),           IntField(f::Solid, &V::Solid),
        IntField(f::Dashed, &V::Dashed),       IntField(f::Enhanced, &V::Enhanced),
        IntField(f::BehindFill, &V::BehindFill), IntField(f::ScalePen, &V::ScalePen),
        IntField(f::Hairline, &V::Hairline),   StringListField(f::Colors, &V::Colors),
        StringListField(f::Palettes, &V::Palettes), StringListField(f::SpotColors, &V::SpotColors),
    };
    return kFields;
}

// --- Colour -------------------------------------------------------------------

void ColorInfo::WriteExtra(Container& container, XmlNS::Node* node, const CT::ColorInfo& value) {
    XmlNS::Node* profiles = EnsureChild(container, node, kProfiles);
    const std::pair<const QualifiedName*, const BrmStringW*> names[] = {
        {&kRgb, &value.RgbProfileName}, {&kCmyk, &value.CmykProfileName}, {&kGrayscale, &value.GrayscaleProfileName}};
    for (const auto& [group, text] : names) {
        container.SetProperty(EnsureChild(container, profiles, *group), f::Name, Any(*text));
    }
    XmlNS::Node* description = container.FindDescription();
    container.SetProperty(description, f::colorMode, Any(value.ColorMode));
    container.SetProperty(description, f::renderingIntent, Any(value.RenderingIntent));
}

void ColorInfo::ReadExtra(Container& container, XmlNS::Node* node, CT::ColorInfo& value) {
    XmlNS::Node* profiles = node->FindChild(kProfiles);
    const std::pair<const QualifiedName*, BrmStringW*> names[] = {
        {&kRgb, &value.RgbProfileName}, {&kCmyk, &value.CmykProfileName}, {&kGrayscale, &value.GrayscaleProfileName}};
    for (const auto& [group, text] : names) {
        Any name;
        container.GetProperty(name, profiles ? profiles->FindChild(*group) : nullptr, f::Name);
        *text = name.GetValue<BrmStringW>();
    }
    XmlNS::Node* description = container.FindDescription();
    Any mode;
    Any intent;
    container.GetProperty(mode, description, f::colorMode);
    container.GetProperty(intent, description, f::renderingIntent);
    value.ColorMode = mode.GetValue<int>(0);
    value.RenderingIntent = intent.GetValue<int>(0);
}

// --- Rectangle ------------------------------------------------------------------

bool CgiRect::IsCompatible(const Any& value) const { return value.Is<RECT>(); }

void CgiRect::Write(Container& container, XmlNS::Node* node, const Any& value) const {
    const RECT* r = value.GetPtr<RECT>();
    if (!r || !node) return;
    const std::pair<const QualifiedName*, LONG> fields[] = {
        {&kLeft, r->left}, {&kRight, r->right}, {&kTop, r->top}, {&kBottom, r->bottom}};
    for (const auto& [name, number] : fields) {
        char buf[32];
        std::snprintf(buf, sizeof buf, "%lld", static_cast<long long>(number));
        node->SetAttribute(*name, buf);
    }
    container.SetModified();
}

void CgiRect::WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                         const Any& value) const {
    if (!IsCompatible(value)) return;
    if (XmlNS::Node* node = EnsureChild(container, parent, name)) Write(container, node, value);
}

void CgiRect::Read(Any& out, Container&, XmlNS::Node* node) const {
    out.Clear();
    if (!node) return;
    RECT r{};
    r.left = DecimalInt(node->GetAttribute(kLeft));
    r.right = DecimalInt(node->GetAttribute(kRight));
    r.top = DecimalInt(node->GetAttribute(kTop));
    r.bottom = DecimalInt(node->GetAttribute(kBottom));
    out = r;
}

void CgiRect::ReadNamed(Any& out, Container& container, XmlNS::Node* node, const QualifiedName& name) const {
    Read(out, container, node ? node->FindChildOrSelf(name) : nullptr);
}

// --- Title ------------------------------------------------------------------------

bool TitleArray::IsCompatible(const Any& value) const { return value.Is<MultiLanguageString>(); }

void TitleArray::Write(Container&, XmlNS::Node*, const Any&) const {}

void TitleArray::WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                            const Any& value) const {
    const MultiLanguageString* text = value.GetPtr<MultiLanguageString>();
    if (!text || !parent) return;
    for (const auto& [language, entry] : text->Entries()) {
        std::string local(name.Local());
        if (!language.IsEmpty()) {
            BrmStringW lowered = language;
            lowered.MakeLower();
            local += '_';
            local += WideToUtf8(lowered);
        }
        const PropertyDescriptor row = Row<DataType::String>(Namespaces::legacykvd, local.c_str());
        container.SetProperty(parent, row, Any(entry));
    }
}

void TitleArray::Read(Any& out, Container&, XmlNS::Node*) const { out.Clear(); }

void TitleArray::ReadNamed(Any& out, Container&, XmlNS::Node* node, const QualifiedName& name) const {
    out.Clear();
    if (!node) return;
    const std::string_view base = name.Local();
    MultiLanguageString text;
    for (const auto& child : node->Children()) {
        const XmlNS::Namespace* ns = child->GetNamespace();
        if (!ns || ns->uri != Namespaces::legacykvd.uri) continue;
        const std::string& local = child->Name();
        const auto underscore = local.find('_');
        if (std::string_view(local).substr(0, underscore) != base) continue;
        BrmStringW language;
        if (underscore != std::string::npos) {
            const std::string_view rest = std::string_view(local).substr(underscore + 1);
            if (rest.find('_') != std::string_view::npos) continue;  // more than two parts
            language = Utf8ToWide(rest);
        }
        text.Set(language, Utf8ToWide(Rdf::GetText(child.get())));
    }
    out = std::move(text);
}

// --- Extended properties ------------------------------------------------------------

bool OpenMetadataProperties::IsCompatible(const Any& value) const { return value.Is<ValueType>(); }

void OpenMetadataProperties::Write(Container& container, XmlNS::Node* node, const Any& value) const {
    const ValueType* list = value.GetPtr<ValueType>();
    if (!list || !node) return;
    for (const auto& p : *list) {
        XmlNS::Node* item = node->AddChild(kProperty, WideToUtf8(p.value));
        BrmStringW id = p.formatId.ToBracedString();
        id.MakeLower();
        item->SetAttribute(kFmtid, WideToUtf8(id));
        item->SetAttribute(kPropid, std::to_string(p.propertyId));
        item->SetAttribute(kType, WideToUtf8(p.type));
        item->SetAttribute(kArray, p.array ? "true" : "false");
    }
    container.SetModified();
}

void OpenMetadataProperties::WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                                        const Any& value) const {
    if (!IsCompatible(value)) return;
    if (XmlNS::Node* node = EnsureChild(container, parent, name)) Write(container, node, value);
}

void OpenMetadataProperties::Read(Any& out, Container&, XmlNS::Node* node) const {
    out.Clear();
    if (!node) return;
    ValueType list;
    for (const auto& child : node->Children()) {
        const std::string* fmtid = child->GetAttribute(kFmtid);
        if (!fmtid) continue;
        ZipContainerSchema::OpenMetadataProperty p;
        p.formatId = BrmUtils::Guid(fmtid->c_str());
        p.propertyId = DecimalInt(child->GetAttribute(kPropid));
        if (const std::string* type = child->GetAttribute(kType)) p.type = Utf8ToWide(*type);
        const std::string* array = child->GetAttribute(kArray);
        p.array = array && strcasecmp(array->c_str(), "true") == 0;
        p.value = Utf8ToWide(child->Text());
        list.push_back(std::move(p));
    }
    out = std::move(list);
}

void OpenMetadataProperties::ReadNamed(Any& out, Container& container, XmlNS::Node* node,
                                       const QualifiedName& name) const {
    Read(out, container, node ? node->FindChildOrSelf(name) : nullptr);
}

}  // namespace Metadata::DataType::Legacy
