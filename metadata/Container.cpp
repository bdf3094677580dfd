// Loading, normalising and saving the XMP tree, and property access by
// schema row.
#include "metadata/Container.h"

#include <vector>

#include "metadata/ArrayTypes.h"
#include "metadata/DataSerializer.h"
#include "metadata/Names.h"

namespace Metadata {

namespace rdf = Names::rdf;
using XmlNS::Node;

std::unique_ptr<DataSerializer> PropertyDescriptor::CreateSerializer() const { return factory(); }

Container::Container() = default;
Container::~Container() = default;
Container::Container(Container&&) noexcept = default;
Container& Container::operator=(Container&&) noexcept = default;

Container::Container(std::unique_ptr<Node> root, bool modified)
    : state_(std::make_unique<State>(State{std::move(root), modified})) {}

namespace {

// x:xmpmeta holding rdf:RDF, both namespaces declared on the root.
std::unique_ptr<Node> MakeFrame(Node*& rdfNode) {
    auto root = std::make_unique<Node>();
    root->SetNamespace(root->DeclareNamespace(Namespaces::x));
    root->DeclareNamespace(Namespaces::rdf);
    root->SetName(Names::x::xmpmeta.local);
    rdfNode = root->AddChild(rdf::RDF);
    return root;
}

}  // namespace

Container Container::CreateEmpty() {
    Node* rdfNode = nullptr;
    auto root = MakeFrame(rdfNode);
    rdfNode->AddChild(rdf::Description)->SetAttribute(rdf::about, "");
    return Container(std::move(root), true);
}

Container Container::LoadDocument(const Brm::XmlFile& document) {
    if (document.Error()) return Container();
    std::unique_ptr<Node> old = XmlNS::FromElement(document.RootElement(), nullptr);
    if (!old) return Container();

    Node* rdfNode = nullptr;
    auto root = MakeFrame(rdfNode);
    Node* source = old->FindNode(Names::x::xmpmeta, true);
    if (!source) source = old.get();
    if (Node* sourceRdf = source->FindNode(rdf::RDF, false)) {
        Node* first = nullptr;
        for (const auto& child : sourceRdf->Children()) {
            if (!child->HasName(rdf::Description)) continue;
            if (!first) {
                first = child->Clone(*rdfNode, root.get());
            } else {
                // Only the children of further descriptions are merged; their
                // own attributes (attribute-form properties) are dropped.
                for (const auto& property : child->Children()) property->Clone(*first, root.get());
            }
        }
    }
    return Container(std::move(root), false);
}

Container Container::WrapElement(const Brm::XmlFile& document) {
    if (document.Error()) return Container();
    std::unique_ptr<Node> tree = XmlNS::FromElement(document.RootElement(), nullptr);
    if (!tree) return Container();
    return Container(std::move(tree), false);
}

Container Container::LoadText(std::string_view utf8Text) {
    Brm::XmlFile file(utf8Text);
    if (file.Error()) return CreateEmpty();
    Container c = LoadDocument(file);
    return c.IsNull() ? CreateEmpty() : std::move(c);
}

Container Container::LoadStream(IStream* stream) {
    if (!stream) return CreateEmpty();
    std::string text;
    char buffer[16384];
    for (;;) {
        ULONG read = 0;
        const HRESULT hr = stream->Read(buffer, sizeof buffer, &read);
        if (FAILED(hr)) return CreateEmpty();
        if (read == 0) break;
        text.append(buffer, read);
        // Beyond the parser's limit the part could never load; stop reading.
        if (text.size() > Brm::XmlLimits::kMaxDocumentBytes) return CreateEmpty();
        if (hr == S_FALSE || read < sizeof buffer) break;
    }
    return LoadText(text);
}

std::unique_ptr<Brm::XmlFile> Container::SaveDocument() const { return Brm::XmlFile::FromTree(Root()); }

std::string Container::SaveText() const { return SaveDocument()->ToText(); }

bool Container::SaveStream(IStream* stream) const {
    if (!stream) return false;
    const std::string text = SaveText();
    std::size_t done = 0;
    while (done < text.size()) {
        ULONG written = 0;
        const ULONG chunk = static_cast<ULONG>(std::min<std::size_t>(text.size() - done, 1u << 20));
        if (FAILED(stream->Write(text.data() + done, chunk, &written)) || written == 0) return false;
        done += written;
    }
    return true;
}

void Container::CopyFrom(const Container& other) {
    if (!other.state_) {
        state_.reset();
        return;
    }
    state_ = std::make_unique<State>(
        State{other.state_->root ? other.state_->root->CloneTree() : nullptr, other.state_->modified});
}

Node* Container::FindDescription() const {
    Node* root = Root();
    return root ? root->FindNode(rdf::Description, true) : nullptr;
}

void Container::RemoveNamespaceContent(const NamespaceDef& ns) {
    Node* description = FindDescription();
    if (!description) return;
    const std::string_view uri = ns.uri;
    std::vector<const Node*> doomed;
    for (const auto& child : description->Children()) {
        if (child->GetNamespace() && child->GetNamespace()->uri == uri) doomed.push_back(child.get());
    }
    for (const Node* child : doomed) description->RemoveChild(child);
    const std::size_t removedAttributes = std::erase_if(
        description->MutableAttributes(), [&](const auto& entry) { return entry.first.ns && entry.first.ns->uri == uri; });
    Root()->PruneNamespaces();
    if (!doomed.empty() || removedAttributes != 0) SetModified();
}

void Container::GetProperty(Any& out, Node* node, const PropertyDescriptor& row) {
    out.Clear();
    if (!node) return;
    row.CreateSerializer()->ReadNamed(out, *this, node, row.name);
}

Any Container::GetProperty(const PropertyDescriptor& row) {
    Any out;
    GetProperty(out, FindDescription(), row);
    return out;
}

void Container::SetProperty(Node* node, const PropertyDescriptor& row, const Any& value) {
    if (!node) return;
    if (!value.IsEmpty()) {
        row.CreateSerializer()->WriteNamed(*this, node, row.name, value);
    } else if (Node* child = node->FindChild(row.name)) {
        node->RemoveChild(child);
        SetModified();
    }
}

void Container::SetProperty(const PropertyDescriptor& row, const Any& value) {
    SetProperty(FindDescription(), row, value);
}

BrmStringW Container::GetPropertyText(const PropertyDescriptor& row) {
    const Any value = GetProperty(row);
    if (const MultiLanguageString* text = value.GetPtr<MultiLanguageString>()) return text->GetBest(BrmStringW());
    if (const auto* list = value.GetPtr<std::vector<BrmStringW>>()) {
        if (list->empty()) return {};
        if (row.HasType<DataType::AlternativeStringArray>()) return list->front();
        BrmStringW joined;
        for (std::size_t i = 0; i < list->size(); ++i) {
            if (i) joined += L',';
            joined += (*list)[i];
        }
        return joined;
    }
    if (const BrmStringW* text = value.GetPtr<BrmStringW>()) return *text;
    return {};
}

namespace {

// Splits at "," and trims blanks, tabs and line ends from every token;
// empty tokens stay. An empty text has no token.
std::vector<BrmStringW> SplitList(const BrmStringW& text) {
    std::vector<BrmStringW> out;
    if (text.IsEmpty()) return out;
    int start = 0;
    for (;;) {
        const int comma = text.Find(L',', start);
        BrmStringW token = comma < 0 ? text.Mid(start) : text.Mid(start, comma - start);
        token.Trim(L" \t\r\n");
        out.push_back(token);
        if (comma < 0) break;
        start = comma + 1;
    }
    return out;
}

BrmStringW DefaultKey(const BrmStringW& language) {
    return language.Compare(L"x-default") == 0 ? BrmStringW() : language;
}

}  // namespace

void Container::SetPropertyText(const PropertyDescriptor& row, const BrmStringW& text) {
    Any value;
    if (row.HasType<DataType::AltLangStringArray>()) {
        MultiLanguageString m;
        m.Set(BrmStringW(), text);
        value = std::move(m);
    } else if (row.HasType<DataType::OrderedStringArray>() || row.HasType<DataType::UnorderedStringArray>() ||
               row.HasType<DataType::AlternativeStringArray>()) {
        value = SplitList(text);
    } else if (row.HasType<DataType::String>()) {
        value = text;
    }
    if (!value.IsEmpty()) SetProperty(FindDescription(), row, value);
}

BrmStringW Container::GetLocalizedText(const PropertyDescriptor& row, const BrmStringW& language, bool exact) {
    if (!row.HasType<DataType::AltLangStringArray>()) return GetPropertyText(row);
    const Any value = GetProperty(row);
    const MultiLanguageString* text = value.GetPtr<MultiLanguageString>();
    if (!text) return {};
    const BrmStringW key = DefaultKey(language);
    return exact ? text->Get(key) : text->GetBest(key);
}

void Container::SetLocalizedText(const PropertyDescriptor& row, const BrmStringW& language, const BrmStringW& text) {
    if (!row.HasType<DataType::AltLangStringArray>()) {
        SetPropertyText(row, text);
        return;
    }
    Any value = GetProperty(row);
    if (value.IsEmpty()) value = MultiLanguageString();
    if (MultiLanguageString* m = value.GetPtr<MultiLanguageString>()) {
        m->Set(DefaultKey(language), text);
        SetProperty(FindDescription(), row, value);
    }
}

Node* EnsureChild(Container& container, Node* parent, const QualifiedName& name) {
    if (!parent) return nullptr;
    if (name.ns) parent->DeclareNamespace(*name.ns);
    parent->RemoveAttribute(name);
    // Only a direct child is reused: a parent that happens to carry the
    // same name must not be emptied itself.
    Node* child = parent->FindChild(name);
    if (child) {
        child->Clear();
        child->SetText({});
    } else {
        child = parent->AddChild(name);
    }
    container.SetModified();
    return child;
}

void SetValue(Container& container, Node* node, const QualifiedName& name, std::string text) {
    if (!node) return;
    if (name.ns) node->DeclareNamespace(*name.ns);
    if (node->GetAttribute(name)) {
        node->SetAttribute(name, std::move(text));
    } else if (Node* child = node->FindChild(name)) {
        child->Clear();
        child->SetText(std::move(text));
    } else {
        node->AddChild(name, std::move(text));
    }
    container.SetModified();
}

}  // namespace Metadata
