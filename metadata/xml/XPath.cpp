// Absolute child-step paths over node trees and parsed documents.
#include "metadata/xml/XPath.h"

#include <vector>

namespace XmlNS {

namespace {

bool IsNameChar(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-' ||
           c == '.' || c == ':' || static_cast<unsigned char>(c) >= 0x80;
}

// Splits "/a/b" into {"a", "b"}; false for anything that is not a non-empty
// chain of plain name steps.
bool SplitSteps(std::string_view path, std::vector<std::string_view>& steps) {
    if (path.size() < 2 || path[0] != '/') return false;
    std::size_t pos = 1;
    while (pos <= path.size()) {
        std::size_t end = path.find('/', pos);
        if (end == std::string_view::npos) end = path.size();
        std::string_view step = path.substr(pos, end - pos);
        if (step.empty() || step.front() == ':' || step.back() == ':') return false;
        for (char c : step) {
            if (!IsNameChar(c)) return false;
        }
        steps.push_back(step);
        pos = end + 1;
    }
    return true;
}

}  // namespace

const Node* SelectFirstElement(const Node* root, std::string_view path) {
    std::vector<std::string_view> steps;
    if (!root || !SplitSteps(path, steps)) return nullptr;
    // The first step is tested against the root itself: "/" is the document.
    if (root->QualifiedText() != steps[0]) return nullptr;
    const Node* current = root;
    for (std::size_t i = 1; i < steps.size(); ++i) {
        const Node* next = nullptr;
        for (const auto& c : current->Children()) {
            if (c->QualifiedText() == steps[i]) {
                next = c.get();
                break;
            }
        }
        if (!next) return nullptr;
        current = next;
    }
    return current;
}

pugi::xml_node SelectFirstElement(const pugi::xml_document& document, std::string_view path) {
    std::vector<std::string_view> steps;
    if (!SplitSteps(path, steps)) return {};
    pugi::xml_node current = document;
    for (std::string_view step : steps) {
        pugi::xml_node next;
        for (pugi::xml_node c = current.first_child(); c; c = c.next_sibling()) {
            if (c.type() == pugi::node_element && step == c.name()) {
                next = c;
                break;
            }
        }
        if (!next) return {};
        current = next;
    }
    return current;
}

}  // namespace XmlNS
