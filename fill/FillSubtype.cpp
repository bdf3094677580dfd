// The fill subtype of the document container (see FillSubtype.h).
#include "fill/FillSubtype.h"

#include "fill/FillInfo.h"
#include "fill/FillNames.h"
#include "zipcontainer/LicenseDocument.h"

namespace FillSubtype {

namespace {

SubtypeSpec MakeSpec() {
    SubtypeSpec spec;
    spec.mediaTypes = {kMediaType};
    spec.mainPart = kMainPart;
    spec.extraDocument = ContainerLicense::Document();
    spec.extraNamespace = &ContainerLicense::kCcNamespace;
    spec.extraElement = ContainerLicense::kLicenseElement;
    spec.rootElement = FillXml::fill;
    spec.partMediaType = kPartMediaType;
    spec.factory = &CreateFillInfo;
    return spec;
}

}  // namespace

const SubtypeSpec& Spec() {
    static const SubtypeSpec spec = MakeSpec();
    return spec;
}

ZipContainerRef Open(IStream* stream, const BrmPlatform::BrmStringW& path) {
    if (!stream) return {};
    return ZipContainerImpl::OpenFromStream(stream, true, path, {}, ZipContainerSubtypeImpl::MakeFactory(Spec()));
}

ZipContainerRef Create(IStream* stream) {
    if (!stream) return {};
    return ZipContainerImpl::CreateOnStream(stream, {}, ZipContainerSubtypeImpl::MakeFactory(Spec()));
}

ZipContainerRef Create(const BrmPlatform::BrmStringW& path) {
    return ZipContainerImpl::CreateOnPath(path, {}, ZipContainerSubtypeImpl::MakeFactory(Spec()));
}

ZipContainerSubtypeImpl* AsFill(ZipContainerImplBase* container) {
    return dynamic_cast<ZipContainerSubtypeImpl*>(container);
}

}  // namespace FillSubtype
