#include "app/Decorations.h"

#include "building/CreateProjectData.h"
#include "catalogue/ProjectVectorHandler.h"
#include "platform/GetProjectData.h"
#include "platform/Missing.h"
#include "platform/NCProject.h"
#include "platform/Sta.h"
#include "utilities/DefaultSelection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>

namespace {

constexpr double significance = 0.05;

bool StartsWith(ProjectVectorData const &data, char const *name) {
    return std::string_view(data.GetProjectVector()->GetName()).starts_with(name);
}

bool IsScore(ProjectVectorData const &data) {
    return data.GetProjectVector()->GetScoreLoadingType() == ProjectVector::Score &&
           data.GetProjectVector()->HasOneComponent();
}

// The standard deviation of a workset's scores on the component of a specification; 0 when there is none.
double ScoreDeviation(NCProject const &project, ProjectVectorData const &data) {
    IntList const components{data.GetComponent(true)};
    int const model = data.GetModelInfo()->number;
    GetProjectData const statistics(project);
    bool const orthogonal = data.GetProjectVector()->GetComponentType() == ProjectVector::ComponentXSideOrthogonal;
    TablePtr const scores =
        orthogonal ? statistics.GetTo(model, &components, -1) : statistics.GetT(model, &components, -1);
    if (!scores)
        return 0;
    NCDataVector<float> const row = scores->GetMatrix()[1];
    int observed = 0;
    for (float const value : row)
        observed += IsMissing(value) ? 0 : 1;
    return observed > 1 ? std::sqrt(row.GetSS() / (observed - 1)) : 0;
}

// The ellipse that a new observation leaves with a probability of 5 % (Tracy et al. 1992).
void AddEllipse(NCProject const &project, ProjectVectorData const &x, ProjectVectorData const &y, PlotStyle &style) {
    bool const sameModel = x.GetModelInfo() && y.GetModelInfo() && x.GetModelInfo()->number == y.GetModelInfo()->number;
    bool const ofX = !StartsWith(x, "u") && !StartsWith(y, "u");
    if (!sameModel || !ofX || !IsScore(x) || !IsScore(y))
        return;
    double const rows = x.GetModelInfo()->sizeObservations;
    constexpr double components = 2;
    if (rows <= components)
        return;
    double const critical = components * (rows * rows - 1) / (rows * (rows - components)) *
                            Sta::FFTest(components, rows - components, significance);
    style.ellipseX = std::sqrt(critical) * ScoreDeviation(project, x);
    style.ellipseY = std::sqrt(critical) * ScoreDeviation(project, y);
}

// The distance that an observation of the model exceeds with the model's significance level.
void AddLimit(NCProject const &project, ProjectVectorData const &data, float significanceOverride, PlotStyle &style) {
    if (!StartsWith(data, "DModX") || !data.GetModelInfo())
        return;
    auto const model =
        boost::dynamic_pointer_cast<ProjectionModel const>(project.GetModel(data.GetModelInfo()->number));
    if (!model)
        return;
    int const component = data.GetProjectVector()->HasOneComponent() ? data.GetComponent(true) : -1;
    float const limit = model->GetDModXCrit(component, significanceOverride, TriState::Undefined);
    if (IsMissing(limit))
        return;
    char label[32];
    std::snprintf(label, sizeof label, "D-Crit %.3g", static_cast<double>(limit));
    style.limit = limit;
    style.limitLabel = label;
}

// The vector that holds the jack-knife standard errors of another one; empty when there is none.
std::string ErrorsOf(std::string const &name) {
    static constexpr std::array<std::string_view, 14> names = {"p",  "w",  "w*", "c",  "q",   "po",      "wo",
                                                               "co", "qo", "pc", "pq", "w*c", "CoeffCS", "VIP"};
    return std::ranges::find(names, name) != names.end() ? name + "cvSE" : std::string();
}

// Jack-knife intervals about the values of a series; empty where there are none.
std::vector<double> IntervalsOf(NCProject const &project, ProjectUtilities::DefaultSelection const &defaults,
                                ProjectVectorData const &data, ProjectData const &table) {
    ModelInfo const *const model = data.GetModelInfo();
    std::string const name = ErrorsOf(data.GetProjectVector()->GetName());
    if (!model || !model->crossValidated || name.empty())
        return {};
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    auto const found =
        handler.Find(name.c_str(), data.GetProjectVector()->GetType(), ProjectVector::DataTypeModel, model);
    auto const object = boost::dynamic_pointer_cast<ProjectionModel const>(project.GetModel(model->number));
    if (found == handler.end() || !object)
        return {};
    ProjectVectorData errors(data);
    errors.SetProjectVector(*found);
    TablePtr const row = ProjectDataUtilities::CreateProjectData(project).GetProjectData(
        errors.ToStdString(&defaults), data.GetProjectVector()->GetType());
    TablePtr const shown = row ? row->UseOnly(table.GetColumnIDs()) : nullptr;
    double const freedom = object->GetCVStdDevDF((*found)->HasOneComponent() ? errors.GetComponent(true) : -1);
    if (!shown || shown->Columns() != table.Columns() || freedom < 1)
        return {};
    double const quantile = std::sqrt(Sta::FFTest(1, freedom, significance));
    std::vector<double> intervals;
    for (float const error : shown->GetMatrix().Row(1))
        intervals.push_back(IsMissing(error) ? -1 : quantile * static_cast<double>(error));
    return intervals;
}

} // namespace

void Decorate(SelectDataSeriesData const &selection, ProjectData const &table, PlotStyle &style) {
    boost::shared_ptr<NCProject> const project = selection.GetProject();
    std::vector<ProjectVectorData const *> const vectors = selection.VectorsInUse();
    if (style.isScatter) {
        ProjectVectorData const &x = *vectors[0];
        ProjectVectorData const &y = *vectors[1];
        AddEllipse(*project, x, y, style);
        style.hasDiagonal =
            (StartsWith(x, "YVar") && StartsWith(y, "YPred")) || (StartsWith(x, "YPred") && StartsWith(y, "YVar"));
    } else {
        AddLimit(*project, *vectors.front(), selection.GetExtraOptions().significance, style);
        if (vectors.size() == static_cast<std::size_t>(table.Rows()))
            for (ProjectVectorData const *const vector : vectors)
                style.errors.push_back(IntervalsOf(*project, *selection.GetDefaultSelection(), *vector, table));
    }
}
