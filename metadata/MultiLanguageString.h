// A text in several languages: an ordered map from language to text, keys
// in lower case, the default language under the empty key (so it comes
// first). The first language set also becomes the default, and the
// default follows a language whose text it still equals.
#pragma once

#include <map>

#include "utils/strings/BrmString.h"

namespace Metadata {

class MultiLanguageString {
public:
    using BrmStringW = BrmPlatform::BrmStringW;

    struct CodeUnitLess {
        bool operator()(const BrmStringW& a, const BrmStringW& b) const { return a.Compare(b) < 0; }
    };
    using Map = std::map<BrmStringW, BrmStringW, CodeUnitLess>;

    // The text of exactly this language, or "".
    BrmStringW Get(const BrmStringW& language) const;
    // This language, else the default, else the first entry; "" when empty.
    BrmStringW GetBest(const BrmStringW& language) const;
    // Empty text erases the language.
    void Set(const BrmStringW& language, const BrmStringW& text);

    const Map& Entries() const { return entries_; }
    bool IsEmpty() const { return entries_.empty(); }
    std::size_t Size() const { return entries_.size(); }

    friend bool operator==(const MultiLanguageString& a, const MultiLanguageString& b) {
        if (a.entries_.size() != b.entries_.size()) return false;
        for (auto i = a.entries_.begin(), j = b.entries_.begin(); i != a.entries_.end(); ++i, ++j) {
            if (i->first.Compare(j->first) != 0 || i->second.Compare(j->second) != 0) return false;
        }
        return true;
    }

private:
    Map entries_;
};

}  // namespace Metadata
