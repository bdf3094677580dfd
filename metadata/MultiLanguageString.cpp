// Lookup with fallback, and the rule by which the default follows a language.
#include "metadata/MultiLanguageString.h"

namespace Metadata {

namespace {

BrmPlatform::BrmStringW Lowered(const BrmPlatform::BrmStringW& language) {
    BrmPlatform::BrmStringW key = language;
    key.MakeLower();
    return key;
}

}  // namespace

BrmPlatform::BrmStringW MultiLanguageString::Get(const BrmStringW& language) const {
    auto it = entries_.find(Lowered(language));
    return it == entries_.end() ? BrmStringW() : it->second;
}

BrmPlatform::BrmStringW MultiLanguageString::GetBest(const BrmStringW& language) const {
    if (entries_.empty()) return {};
    const BrmStringW key = Lowered(language);
    if (auto it = entries_.find(key); it != entries_.end()) return it->second;
    if (!key.IsEmpty()) {
        if (auto def = entries_.find(BrmStringW()); def != entries_.end()) return def->second;
    }
    return entries_.begin()->second;
}

void MultiLanguageString::Set(const BrmStringW& language, const BrmStringW& text) {
    const BrmStringW key = Lowered(language);
    if (!key.IsEmpty()) {
        auto def = entries_.find(BrmStringW());
        if (def != entries_.end()) {
            auto current = entries_.find(key);
            const BrmStringW currentText = current == entries_.end() ? BrmStringW() : current->second;
            if (def->second.Compare(currentText) == 0) {
                if (text.IsEmpty()) {
                    entries_.erase(def);
                } else {
                    def->second = text;
                }
            }
        } else if (!text.IsEmpty()) {
            entries_.emplace(BrmStringW(), text);
        }
    }
    if (text.IsEmpty()) {
        entries_.erase(key);
    } else {
        entries_.insert_or_assign(key, text);
    }
}

}  // namespace Metadata
