#include "platform/project/ModelInfo.h"

#include "platform/storage/VStreamableData.h"
#include "platform/storage/streaming_internal.h"

namespace {

VStreamableData Header() {
    return {1, "ModelInfo"};
}

// All fields, for writing or reading.
void EachField(auto &fields, auto &info) {
    fields(info.number, info.name, info.title, info.type, info.sizeXVariables, info.sizeYVariables,
           info.sizeObservations, info.predictiveComponents, info.xSideOrthogonalComponents,
           info.ySideOrthogonalComponents, info.fitted, info.crossValidated, info.hasLaggedVariables, info.hasDateTime,
           info.isBatchModel, info.isBatchLevel, info.classOrPhaseNames, info.dataSets, info.phaseGroup,
           info.responseWeighting);
}

} // namespace

std::string ModelInfo::GetClassPhaseName(int position) const {
    bool const known = position >= 1 && position <= static_cast<int>(classOrPhaseNames.size());
    return known ? classOrPhaseNames[static_cast<std::size_t>(position - 1)] : std::string();
}

bool ModelInfo::IsBatchLevelModel(ProjectPtr const &) const {
    return isBatchLevel;
}

std::ostream &operator<<(std::ostream &stream, ModelInfo const &info) {
    Header().Write(stream);
    FieldWriter fields(stream);
    EachField(fields, info);
    return stream;
}

std::istream &operator>>(std::istream &stream, ModelInfo &info) {
    Header().Check(stream);
    ModelInfo whole;
    FieldReader fields(stream);
    EachField(fields, whole);
    FieldReader::Require((whole.type & ~ModelTypeE::Any) == 0);
    info = std::move(whole);
    return stream;
}
