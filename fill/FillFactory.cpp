// The factory of fill descriptions: the kind comes from the root's `type`.
#include <cstring>

#include "fill/BitmapPatternInfo.h"
#include "fill/FillNames.h"
#include "fill/FountainFillInfo.h"
#include "fill/VectorPatternInfo.h"
#include "metadata/xml/Node.h"

std::unique_ptr<SubtypeInfo> CreateFillInfo(Metadata::Container&, const XmlNS::Node& root) {
    const std::string* type = root.GetAttribute(FillXml::attr::type);
    if (!type) return nullptr;
    if (*type == "vector-tiles") return std::make_unique<VectorPatternInfo>();
    if (*type == "bitmap-tiles") return std::make_unique<BitmapPatternInfo>();
    if (*type == "fountain") return std::make_unique<FountainFillInfo>();
    return nullptr;
}
