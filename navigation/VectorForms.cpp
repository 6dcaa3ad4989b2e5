#include "navigation/VectorForms.h"

#include "catalogue/ProjectVectorHandler.h"
#include "platform/containers/Missing.h"
#include "platform/project/NCModel.h"
#include "selection/SelectDataSeriesData.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace DataSeriesUtilities {

namespace {

struct Pair {
    std::string_view vector, form;
};

// Looked up from the top, either way.
constexpr Pair correlationScaled[] = {{"t", "t(corr)"},   {"p", "p(corr)"},      {"c", "c(corr)"},
                                      {"pc", "pc(corr)"}, {"pq", "pq(corr)"},    {"po", "po(corr)"},
                                      {"w*", "p(corr)"},  {"w*c", "pc(corr)"},   {"po", "po(corr)"},
                                      {"to", "to(corr)"}, {"poso", "poso(corr)"}};

constexpr Pair standardErrors[] = {{"t", "tcvSE"},
                                   {"tPS", "tPScvSE"},
                                   {"to", "tocvSE"},
                                   {"p", "pcvSE"},
                                   {"po", "pocvSE"},
                                   {"pc", "pccvSE"},
                                   {"pq", "pqcvSE"},
                                   {"q", "qcvSE"},
                                   {"qo", "qocvSE"},
                                   {"w", "wcvSE"},
                                   {"w*", "w*cvSE"},
                                   {"w*c", "w*ccvSE"},
                                   {"wo", "wocvSE"},
                                   {"c", "ccvSE"},
                                   {"co", "cocvSE"},
                                   {"CoeffCS", "CoeffCScvSE"},
                                   {"CoeffCSLag", "CoeffCScvSELag"},
                                   {"VIP", "VIPcvSE"},
                                   {"YPredPS", "YPredPScvSE"},
                                   {"YPredErrcv", "YPredErrcvSE"}};

template <std::size_t size>
Pair const *Find(Pair const (&pairs)[size], std::string_view Pair::*side, std::string_view name) {
    auto const found = std::ranges::find(pairs, name, side);
    return found == std::end(pairs) ? nullptr : found;
}

std::string Translated(std::string_view Pair::*from, std::string_view Pair::*to, char const *name) {
    if (ProjectVectorHandler::Instance()->IsNumVector(name))
        return "Num";
    Pair const *const pair = Find(correlationScaled, from, name);
    return std::string(pair ? pair->*to : name);
}

ProjectVector const *LoadingOf(ModelInfo const &model, char const *name) {
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    auto const found =
        handler.Find(name, ProjectVector::VectorTypeObservationsLoadings, ProjectVector::DataTypeModel, &model);
    return found == handler.end() ? nullptr : *found;
}

bool AreCorrelationScaled(SelectDataSeriesData const &selection, bool skipsNumVectors) {
    bool any = false;
    for (ProjectVectorData const *const data : selection.VectorsInUse()) {
        ProjectVector const *const vector = data->GetProjectVector();
        if (skipsNumVectors && (!vector || vector->IsNumVector()))
            continue;
        if (!vector || !CorrelationScaleChecker::IsCorrelationScaledVector(vector->GetName()))
            return false;
        any = true;
    }
    return any;
}

} // namespace

bool CorrelationScaleChecker::IsCorrelationScaledVector(char const *name) {
    return Find(correlationScaled, &Pair::form, name) != nullptr;
}

std::string CorrelationScaleChecker::ToNonCorr(char const *name) {
    return Translated(&Pair::form, &Pair::vector, name);
}

std::string CorrelationScaleChecker::ToCorr(char const *name) {
    return Translated(&Pair::vector, &Pair::form, name);
}

ProjectVector const *CorrelationScaleChecker::DefaultLoadingCorr(ModelInfo const &model,
                                                                 SelectDataSeriesData const *selection) {
    auto const vectors = selection->VectorsInUse();
    auto const first = std::ranges::find_if(vectors, [](ProjectVectorData const *data) {
        return data->GetProjectVector() && data->GetProjectVector()->GetComponentType() != ProjectVector::ComponentNone;
    });
    if (first != vectors.end() &&
        (*first)->GetProjectVector()->GetComponentType() == ProjectVector::ComponentXSideOrthogonal)
        return LoadingOf(model, "po(corr)");
    bool const isOrthogonal = (model.type & (ModelTypeE::OPLS | ModelTypeE::O2PLS)) != 0;
    return LoadingOf(model, model.sizeYVariables == 0 ? "p(corr)" : isOrthogonal ? "pq(corr)" : "pc(corr)");
}

ProjectVector const *CorrelationScaleChecker::GetAltCorr(ProjectVector const *vector, ModelInfo const &model) {
    std::string_view const name = vector ? vector->GetName() : "";
    if (name == "pq(corr)" || name == "po(corr)")
        return LoadingOf(model, "pc(corr)");
    return name == "pc(corr)" ? LoadingOf(model, "p(corr)") : nullptr;
}

bool IsCorrelationScaled(SelectDataSeriesData const *selection) {
    return AreCorrelationScaled(*selection, true);
}

bool IsPurelyCorrelationScaled(SelectDataSeriesData const *selection) {
    return AreCorrelationScaled(*selection, false);
}

std::string ToSEVector(char const *name) {
    Pair const *const pair = Find(standardErrors, &Pair::vector, name);
    return std::string(pair ? pair->form : "");
}

bool IsCVSEVector(char const *name) {
    return Find(standardErrors, &Pair::form, name) != nullptr;
}

double GetDF(char const *name, ProjectionModel const &model, int component) {
    return IsCVSEVector(name) ? model.GetCVStdDevDF(component) : missingValue;
}

} // namespace DataSeriesUtilities
