// Fountain fills in fill.xml (see FountainFillInfo.h).
#include "fill/FountainFillInfo.h"

#include <algorithm>

#include "fill/FillNames.h"
#include "fill/FillNodes.h"

namespace X = FillXml;
using namespace FillNodes;
using BrmPlatform::BrmStringW;
using FillText::IsAbout;

namespace {

constexpr double kRadiansToDegrees = 57.29577951308232;
constexpr double kDegreesToRadians = 0.017453292519943295;

// Optional elements of `fountain` stand directly below it.
const Node* Child(const Node& parent, const QualifiedName& name) { return parent.FindChild(name); }

double ChildNumber(const Node& parent, const QualifiedName& name) {
    const Node* child = Child(parent, name);
    return child ? FillText::ParseNumber(child->Text()) : 0.0;
}

BrmStringW ChildText(const Node& parent, const QualifiedName& name, const wchar_t* absent) {
    const Node* child = Child(parent, name);
    return child ? Metadata::Utf8ToWide(child->Text()) : BrmStringW(absent);
}

bool ChildFlag(const Node& parent, const QualifiedName& name) {
    const Node* child = Child(parent, name);
    return child && FillText::ParseBool(child->Text());
}

// A fraction of the gradient; "nan" already reads as 0.
double Fraction(const Node& node, const QualifiedName& name, double absent) {
    const std::string* text = node.GetAttribute(name);
    return text ? std::clamp(FillText::ParseNumber(*text), 0.0, 1.0) : absent;
}

bool WriteStops(Node& fountainNode, const FountainSettings& f) {
    Node* colors = fountainNode.AddChild(X::colors);
    if (!colors) return false;
    for (const auto& [position, stop] : f.stops) {
        Node* color = colors->AddChild(X::color, Metadata::WideToUtf8(FillText::FormatColor(stop.color)));
        if (!color) return false;
        SetNumber(*color, X::attr::position, position);
        if (!IsAbout(stop.opacity, 1.0)) SetNumber(*color, X::attr::opacity, stop.opacity);
        if (stop.blend != L"direct") color->SetAttribute(X::attr::blend, Metadata::WideToUtf8(stop.blend));
        if (!IsAbout(stop.midpoint, 0.5)) SetNumber(*color, X::attr::midpoint, stop.midpoint);
    }
    return true;
}

}  // namespace

bool FountainFillInfo::Write(Metadata::Container& metadata, XmlNS::Node& node, ZipContainerImpl* context) const {
    const std::optional<FillMatrix::Parts> parts = FillMatrix::Decompose(fountain.matrix);
    if (!parts || !FillInfo::Write(metadata, node, context)) return false;
    Node* f = node.AddChild(X::fountain);
    if (!f) return false;
    f->SetAttribute(X::attr::type, Metadata::WideToUtf8(fountain.type));
    // Each optional element is written only away from its default; an
    // element that cannot be added fails the write.
    auto addPair = [&](bool wanted, const QualifiedName& name, double x, double y) {
        if (!wanted) return true;
        Node* pair = f->AddChild(name);
        if (!pair) return false;
        SetNumber(*pair, X::attr::x, x);
        SetNumber(*pair, X::attr::y, y);
        return true;
    };
    auto add = [&](bool wanted, const QualifiedName& name, std::string text) {
        return !wanted || f->AddChild(name, std::move(text)) != nullptr;
    };
    const bool ok =
        addPair(!IsAbout(fountain.offsetX, 0) || !IsAbout(fountain.offsetY, 0), X::offset, fountain.offsetX,
                fountain.offsetY) &&
        addPair(!IsAbout(parts->sx, 1) || !IsAbout(parts->sy, 1), X::scale, parts->sx, parts->sy) &&
        add(!IsAbout(parts->angle, 0), X::angle, FillText::FormatNumber(parts->angle * kRadiansToDegrees)) &&
        add(!IsAbout(parts->skew, 0), X::skew, FillText::FormatNumber(parts->skew * kRadiansToDegrees)) &&
        add(fountain.anisotropic, X::anisotropic, "true") &&
        add(fountain.spread != L"pad", X::spread, Metadata::WideToUtf8(fountain.spread)) &&
        add(fountain.blend != L"simple", X::blend, Metadata::WideToUtf8(fountain.blend)) &&
        add(fountain.steps != 0, X::steps, FillText::FormatInt(fountain.steps)) &&
        add(!IsAbout(fountain.acceleration, 0), X::acceleration, FillText::FormatNumber(fountain.acceleration)) &&
        add(fountain.ROP != 0, X::ROP, FillText::FormatInt(fountain.ROP)) &&
        add(fountain.reverseColors, X::reverseColors, "true");
    if (!ok) return false;
    return WriteStops(*f, fountain);
}

bool FountainFillInfo::Read(Metadata::Container& metadata, const XmlNS::Node& node, ZipContainerImpl* context) {
    if (!FillInfo::Read(metadata, node, context)) return false;
    const Node* f = SelfOrChild(node, X::fountain);
    if (!f) return false;
    fountain.type = WideAttribute(*f, X::attr::type);
    const Node* offset = Child(*f, X::offset);
    fountain.offsetX = offset ? NumberAttribute(*offset, X::attr::x) : 0.0;
    fountain.offsetY = offset ? NumberAttribute(*offset, X::attr::y) : 0.0;

    FillMatrix::Parts parts;
    if (const Node* scale = Child(*f, X::scale)) {
        parts.sx = NumberAttribute(*scale, X::attr::x);
        parts.sy = NumberAttribute(*scale, X::attr::y);
        if (IsAbout(parts.sx, 0) || IsAbout(parts.sy, 0)) return false;
    }
    parts.angle = ChildNumber(*f, X::angle) * kDegreesToRadians;
    parts.skew = ChildNumber(*f, X::skew) * kDegreesToRadians;
    const std::optional<FillMatrix::Matrix> matrix = FillMatrix::Compose(parts);
    if (!matrix) return false;
    fountain.matrix = *matrix;

    fountain.anisotropic = ChildFlag(*f, X::anisotropic);
    fountain.reverseColors = ChildFlag(*f, X::reverseColors);
    fountain.spread = ChildText(*f, X::spread, L"pad");
    fountain.blend = ChildText(*f, X::blend, L"simple");
    const Node* steps = Child(*f, X::steps);
    fountain.steps = steps ? FillText::ParseInt(steps->Text()) : 0;
    const Node* rop = Child(*f, X::ROP);
    fountain.ROP = rop ? FillText::ParseInt(rop->Text()) : 0;
    fountain.acceleration = ChildNumber(*f, X::acceleration);

    const Node* colors = Child(*f, X::colors);
    if (!colors) return false;
    fountain.stops.clear();
    for (const auto& child : colors->Children()) {
        if (!child->HasName(X::color)) continue;
        FillColorStop stop;
        stop.color = FillText::ParseColor(Metadata::Utf8ToWide(child->Text()).StdView());
        stop.position = NumberAttribute(*child, X::attr::position);
        stop.opacity = Fraction(*child, X::attr::opacity, 1.0);
        if (const std::string* blend = child->GetAttribute(X::attr::blend)) stop.blend = Metadata::Utf8ToWide(*blend);
        stop.midpoint = Fraction(*child, X::attr::midpoint, 0.5);
        // The first stop at a position wins.
        fountain.stops.emplace(stop.position, std::move(stop));
    }
    return true;
}
