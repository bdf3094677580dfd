// Multilingual text and the list operations shared by all arrays.
#include "metadata/ArrayTypes.h"

#include "metadata/Rdf.h"
#include "metadata/Utf8.h"

namespace Metadata {

namespace rdf = Names::rdf;

void ArrayImpl::WriteItems(Container& container, XmlNS::Node* parent, const std::vector<Any>& items,
                           const QualifiedName& containerName, const DataSerializer& itemType) const {
    XmlNS::Node* list = EnsureChild(container, parent, containerName);
    if (!list) return;
    for (const Any& item : items) {
        XmlNS::Node* li = list->AddChild(rdf::li);
        itemType.Write(container, li, item);
    }
    container.SetModified();
}

bool ArrayImpl::ReadItems(Container& container, XmlNS::Node* node, const QualifiedName& containerName,
                          const DataSerializer& itemType, std::vector<Any>& items) const {
    if (!node) return false;
    XmlNS::Node* list = node->FindChildOrSelf(containerName);
    if (!list) return false;
    for (const auto& child : list->Children()) {
        if (!child->HasName(rdf::li)) continue;
        Any item;
        itemType.Read(item, container, child.get());
        if (!item.IsEmpty()) items.push_back(std::move(item));
    }
    return true;
}

namespace DataType {

bool AltLangStringArray::IsCompatible(const Any& value) const { return value.Is<MultiLanguageString>(); }

void AltLangStringArray::Write(Container& container, XmlNS::Node* node, const Any& value) const {
    const MultiLanguageString* text = value.GetPtr<MultiLanguageString>();
    if (!text || !node) return;
    XmlNS::Node* alt = EnsureChild(container, node, rdf::Alt);
    for (const auto& [language, entry] : text->Entries()) {
        XmlNS::Node* li = alt->AddChild(rdf::li, WideToUtf8(entry));
        BrmStringW lowered = language;
        lowered.MakeLower();
        li->SetAttribute(Names::xml::lang, language.IsEmpty() ? std::string("x-default") : WideToUtf8(lowered));
    }
    container.SetModified();
}

void AltLangStringArray::WriteNamed(Container& container, XmlNS::Node* parent, const QualifiedName& name,
                                    const Any& value) const {
    if (!IsCompatible(value)) return;
    if (XmlNS::Node* node = EnsureChild(container, parent, name)) Write(container, node, value);
}

void AltLangStringArray::Read(Any& out, Container&, XmlNS::Node* node) const {
    out.Clear();
    XmlNS::Node* alt = node ? node->FindChildOrSelf(rdf::Alt) : nullptr;
    if (!alt) return;
    MultiLanguageString text;
    for (const auto& child : alt->Children()) {
        if (!child->HasName(rdf::li)) continue;
        const std::string* lang = child->GetAttribute(Names::xml::lang);
        BrmStringW language;
        if (lang && !lang->empty() && *lang != "x-default") language = Utf8ToWide(*lang);
        text.Set(language, Utf8ToWide(Rdf::GetText(child.get())));
    }
    out = std::move(text);
}

void AltLangStringArray::ReadNamed(Any& out, Container& container, XmlNS::Node* node,
                                   const QualifiedName& name) const {
    Read(out, container, node ? node->FindChildOrSelf(name) : nullptr);
}

}  // namespace DataType
}  // namespace Metadata
