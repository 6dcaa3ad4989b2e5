#include "catalogue/Placeholders_internal.h"

#include "platform/text/Translate.h"

#include <array>

namespace {

// Not registered: these are reached by axis alone.
class PlaceholderVector : public ProjectVector {
protected:
    PlaceholderVector(char const *name, VectorTypeEnum type) {
        m_name = name;
        m_type = type;
        m_dataType = DataTypeAny;
        m_modelType = ModelTypeE::Any;
        m_obsPredType = ObsAndPred;
        m_isNumVector = true;
    }
};

class ProjectNumVector final : public PlaceholderVector {
public:
    explicit ProjectNumVector(VectorTypeEnum type) : PlaceholderVector("Num", type) {}
    std::string GetHelpString() const override { return translate("Num: Index number: 1, 2, 3 etc."); }
};

class ProjectMissingVector final : public PlaceholderVector {
public:
    explicit ProjectMissingVector(VectorTypeEnum type) : PlaceholderVector("Missing", type) {}
};

template <typename Vector>
ProjectVector const *OfAxis(ProjectVector::VectorTypeEnum type) {
    using enum ProjectVector::VectorTypeEnum;
    static std::array<Vector, 6> const vectors{
        Vector(VectorTypeVariablesScores), Vector(VectorTypeObservationsLoadings),
        Vector(VectorTypeComponent),       Vector(VectorTypeLag),
        Vector(VectorTypeAligned),         Vector(VectorTypeBatch)};
    bool const known = type >= VectorTypeObservationsLoadings && type <= VectorTypeBatch;
    return &vectors[known ? static_cast<std::size_t>(type) - 1 : 0];
}

} // namespace

ProjectVector const *NumVectorOf(ProjectVector::VectorTypeEnum type) {
    return OfAxis<ProjectNumVector>(type);
}

ProjectVector const *MissingVectorOf(ProjectVector::VectorTypeEnum type) {
    return OfAxis<ProjectMissingVector>(type);
}
