#include "app/Summary.h"

#include "engine/Project.h"
#include "platform/containers/Missing.h"
#include "platform/project/GetProjectData.h"
#include "platform/project/ModelUtilities.h"
#include "platform/project/NCModel.h"

#include <algorithm>
#include <limits>
#include <sstream>

namespace {

// A statistic with one value for each component. Null tables are left out.
struct Column {
    std::string heading;
    TablePtr table;
    int row = 1;
};

Listing::Cell CellOf(Column const &column, int component) {
    NCDataMatrix<float> const &matrix = column.table->GetMatrix();
    float const value = component <= matrix.Columns() ? matrix(column.row, component, missingValue) : missingValue;
    return IsMissing(value) ? std::numeric_limits<double>::quiet_NaN() : static_cast<double>(value);
}

std::vector<Column> ColumnsOf(engine::Project const &project, int model) {
    GetProjectData const statistics(project);
    std::vector<Column> columns;
    auto const add = [&columns](char const *heading, TablePtr table) {
        if (table)
            columns.push_back({heading, std::move(table)});
    };
    add("R2X", statistics.GetR2X(model));
    add("R2X(cum)", statistics.GetR2XCum(model));
    add("Eigenvalue", statistics.GetEigenValues(model));
    add("R2Y", statistics.GetR2Y(model));
    add("R2Y(cum)", statistics.GetR2YCum(model));
    add("Q2", statistics.GetQ2(model));
    add("Q2(cum)", statistics.GetQ2Cum(model));
    return columns;
}

// The errors of each response over the components: one column for each.
void AddErrors(engine::Project const &project, int model, std::vector<Column> &columns) {
    GetProjectData const statistics(project);
    auto const object = project.GetModel(model);
    int const responses = object ? object->GetYColumnTerms().Size() : 0;
    auto const heading = [&](char const *name, int response) {
        std::string const suffix =
            responses == 1 ? ""
                           : "(" + object->GetYColumnTerms()[response].GetPrimaryName(project.GetVariables()) + ")";
        return name + suffix;
    };
    if (TablePtr const errors = statistics.GetRMSEE(model, nullptr))
        for (int response = 1; response <= responses; ++response) {
            NCDataMatrix<float> row(1, errors->Rows());
            for (int component = 1; component <= errors->Rows(); ++component)
                row(1, component) = errors->GetMatrix()(component, response, missingValue);
            ColumnIDs::IntegerList numbers(errors->Rows());
            columns.push_back(
                {heading("RMSEE", response),
                 std::make_unique<ProjectData>(RowIDs("RMSEE", project.shared_from_this()),
                                               ColumnIDs(numbers, project.shared_from_this(), model), row)});
        }
    for (int response = 1; response <= responses; ++response)
        if (TablePtr errors = statistics.GetRMSEcvPerComponent(model, nullptr))
            columns.push_back({heading("RMSEcv", response), std::move(errors), response});
}

std::string KindOf(engine::DataSetRecord const &record, NCDataSetInfo const &info) {
    if (!engine::IsDerived(record.kind))
        return record.kind == engine::DataSetKind::Prediction ? "prediction" : "data";
    std::string const kind = !info.sourceModels.empty()                       ? "batch level"
                             : info.oscComponents > 0                         ? "corrected"
                             : (info.kind & NCDataSetInfo::WaveletCompressed) ? "compressed"
                                                                              : "derived";
    return record.kind == engine::DataSetKind::DerivedPrediction ? kind + " of prediction" : kind;
}

} // namespace

Listing ModelsOf(engine::Project const &project) {
    Listing listing({"model", "name", "type", "data_set", "observations", "x_variables", "y_variables", "components",
                     "cross_validated"});
    for (int i = 1; i <= project.GetNumberOfModels(); ++i) {
        boost::shared_ptr<ModelInfo const> const info = project.GetModelInfo(project.GetModelNumberAt(i));
        listing.Add({info->number, info->name, ModelTypeE::GetModelTypeName(info->type), info->dataSets.front(),
                     info->sizeObservations, info->sizeXVariables, info->sizeYVariables, info->SizeComponents(),
                     info->crossValidated ? "yes" : "no"});
    }
    return listing;
}

Listing DataSetsOf(engine::Project const &project) {
    Listing listing({"data_set", "name", "kind", "observations", "variables", "current"});
    for (engine::DataSetRecord const &record : project.DataSets()) {
        bool const isPrediction = record.kind == engine::DataSetKind::Prediction;
        bool const isCurrent = isPrediction && record.number == project.GetPredSet(-1)->GetNumber();
        listing.Add({record.number, record.name, KindOf(record, *project.GetDataSetInfo(record.number)),
                     record.observations, record.variables,
                     isCurrent      ? "yes"
                     : isPrediction ? "no"
                                    : Listing::Cell(std::numeric_limits<double>::quiet_NaN())});
    }
    return listing;
}

std::string Listed(std::vector<std::string> const &names) {
    constexpr std::size_t most = 5;
    std::string text;
    for (std::size_t i = 0; i < std::min(most, names.size()); ++i)
        text += (i == 0 ? "" : ", ") + names[i];
    return names.size() <= most ? text : text + " and " + std::to_string(names.size() - most) + " more";
}

Listing SummaryOf(engine::Project const &project, int model, bool withErrors) {
    std::vector<Column> columns = ColumnsOf(project, model);
    ColumnIDs const components = columns.empty() ? ColumnIDs() : columns.front().table->GetColumnIDs();
    if (withErrors)
        AddErrors(project, model, columns);
    std::vector<std::string> headings = {"component"};
    for (Column const &column : columns)
        headings.push_back(column.heading);
    Listing listing(headings);
    for (int component = 1; component <= components.Size(); ++component) {
        std::vector<Listing::Cell> row = {components.GetName(component)};
        for (Column const &column : columns)
            row.push_back(CellOf(column, component));
        listing.Add(std::move(row));
    }
    return listing;
}

double OfAllComponents(TablePtr const &table) {
    float const value = table ? table->GetMatrix()(1, table->Columns(), missingValue) : missingValue;
    return IsMissing(value) ? std::numeric_limits<double>::quiet_NaN() : static_cast<double>(value);
}

Listing SummaryOfPhases(engine::Project const &project, int model) {
    GetProjectData const statistics(project);
    Listing listing({"phase", "model", "batches", "points", "components", "R2X(cum)", "R2Y(cum)", "Q2(cum)"});
    for (int const number : ModelUtilities::FindMatchingModels(project, model, false, MatchingModelE::SamePhaseGroup)) {
        auto const batches = boost::dynamic_pointer_cast<NCBatchModel const>(project.GetModel(number));
        listing.Add({ModelUtilities::GetPhaseName(project, number), number, batches->GetBatchIndexes().size(),
                     batches->GetTimeMaturityVector().Size(), project.GetModelInfo(number)->SizeComponents(),
                     OfAllComponents(statistics.GetR2XCum(number)), OfAllComponents(statistics.GetR2YCum(number)),
                     OfAllComponents(statistics.GetQ2Cum(number))});
    }
    return listing;
}

std::string NotesOn(engine::Project const &project, int model) {
    engine::FitQuality const quality = project.QualityOf(model);
    std::ostringstream notes;
    for (engine::FitQuality::Stopped const &one : quality.stopped)
        notes << "Component " << one.component << (one.ofCompanion ? " of the PLS model that fills missing cells" : "")
              << " has not converged after " << one.rounds << " rounds: its scores still change by " << one.change
              << " of their size.\n";
    if (quality.scarceObservations > 0)
        notes << "Observations with too few values in X for sure scores: " << quality.scarceObservations << ".\n";
    boost::shared_ptr<ModelInfo const> const info = project.GetModelInfo(model);
    if (info->SizePredictiveComponents() + info->SizeXSideOrthogonalComponents() >= info->sizeXVariables)
        notes << "There are as many components as X variables: nothing is left of X, so that no distances to the model "
                 "(DModX) exist.\n";
    if (quality.withoutMaturity > 0)
        notes << "Observations whose maturity is missing, so that they tell nothing of it: " << quality.withoutMaturity
              << ".\n";
    if (!quality.constantTerms.empty())
        notes << "Constant, so that there is nothing of them to explain: " << Listed(quality.constantTerms) << ".\n";
    if (quality.q2 == engine::ModelRequest::DeflatedMatrices)
        notes << "Q2 is that on deflated matrices.\n";
    return notes.str();
}
