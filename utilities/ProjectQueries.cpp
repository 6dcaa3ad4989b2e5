#include "utilities/ProjectQueries.h"

#include "platform/project/ModelUtilities.h"
#include "platform/project/NCProject.h"

#include <algorithm>
#include <sstream>
#include <unordered_set>

namespace ProjectUtilities {

namespace {

// The fitted models, last first, at most as many as asked for.
std::vector<int> LastFittedModels(NCProject const &project, std::size_t count) {
    std::vector<int> models;
    for (int index = project.GetNumberOfModels(); index >= 1 && models.size() < count; --index)
        if (int const model = project.GetModelNumberAt(index); project.IsModelFitted(model))
            models.push_back(model);
    return models;
}

// A term that is a product, or no term at all, stands for no single variable.
bool IsSingleVariable(ColumnIDs const &columns, int column) {
    return columns.GetSource() != ColumnIDs::Terms || columns.GetColumnTerm(column).Size() == 1;
}

} // namespace

int GetFirstFittedModel(NCProject const &project) {
    for (int index = 1; index <= project.GetNumberOfModels(); ++index)
        if (int const model = project.GetModelNumberAt(index); ModelUtilities::ModelHasComponents(project, model))
            return model;
    return 0;
}

int GetLastFittedModel(NCProject const &project) {
    std::vector<int> const models = LastFittedModels(project, 1);
    return models.empty() ? 0 : models.back();
}

int GetSecondLastFittedModel(NCProject const &project) {
    std::vector<int> const models = LastFittedModels(project, 2);
    return models.empty() ? 0 : models.back();
}

bool CheckIfProjectHasLags(NCProject const &project) {
    for (int index = 1; index <= project.GetNumberOfModels(); ++index) {
        auto const info = project.GetModelInfo(project.GetModelNumberAt(index));
        if (info && info->hasLaggedVariables)
            return true;
    }
    return false;
}

unsigned GetXTermIndex(NCProject const &project, int model, char const *name) {
    if (auto const object = project.GetModel(model)) {
        unsigned position = 0;
        for (ColumnTerm const &term : object->GetXColumnTerms()) {
            ++position;
            if (term.GetPrimaryName(project.GetVariables()) == name)
                return position;
        }
    }
    return static_cast<unsigned>(-1);
}

std::string GetXTermName(NCProject const &project, int model, int index) {
    auto const object = project.GetModel(model);
    bool const known = object && index >= 1 && index <= object->GetXColumnTerms().Size();
    return known ? object->GetXColumnTerms()[index].GetPrimaryName(project.GetVariables()) : std::string();
}

bool IsWCSModel(NCProject const &project, int model) {
    auto const info = project.GetModelInfo(model);
    if (!info)
        return false;
    return std::any_of(info->dataSets.begin(), info->dataSets.end(), [&project](int number) {
        auto const dataSet = project.GetDataSetInfo(number);
        return dataSet && (dataSet->kind & NCDataSetInfo::WaveletCompressed) != 0 && project.GetDataSet(number);
    });
}

bool HasNonWSPredictions(NCProject const &project, int model) {
    auto const predictions = project.GetPredictions(model, false);
    auto const fitted = predictions ? predictions->GetModel() : nullptr;
    if (!fitted)
        return false;
    std::unordered_set<std::uint32_t> own;
    for (ObservationInfo const &observation : fitted->GetObservations())
        own.insert(observation.GetUniqueID());
    ObservationInfos const &rows = predictions->GetObservations();
    return std::any_of(rows.begin(), rows.end(),
                       [&own](ObservationInfo const &row) { return !own.contains(row.GetUniqueID()); });
}

std::string AddContributionBatchPoints(BatchPoints const &reference, BatchPoints const &compared) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    auto const write = [&text](BatchPoints const &points) {
        char const *separator = points.size() > 1 ? "{" : "";
        for (auto const &[batch, maturity] : points) {
            text << separator << (batch.empty() ? "Average" : batch) << " at " << maturity;
            separator = ", ";
        }
        text << (points.empty() ? "Average" : points.size() > 1 ? "}" : "");
    };
    text << '(';
    write(compared);
    text << " - ";
    write(reference);
    text << ')';
    return text.str();
}

bool IsSpecialULVariable(VariableInfo const *variable) {
    int const kind = variable->kind;
    return variable->dateTime || (kind >= 1 && kind <= 3) || (kind >= 6 && kind <= 13);
}

bool IsHierarchicalVariable(VariableInfo const *variable) {
    return variable->IsHierarchical();
}

bool HasNonSpecialVariables(ColumnIDs const *columns) {
    ProjectPtr const project = columns->GetProject();
    if (!project)
        return false;
    for (int column = 1; column <= columns->Size(); ++column) {
        VariableInfo const variable = project->GetVariables()[columns->GetColumnID(column)];
        if (IsSingleVariable(*columns, column) && !IsSpecialULVariable(&variable) && !IsHierarchicalVariable(&variable))
            return true;
    }
    return false;
}

void SkipSpecialVariables(ColumnIDs const *columns, int &first, int &last) {
    ProjectPtr const project = columns->GetProject();
    if (last == -1)
        last = columns->Size();
    if (!project)
        return;
    bool const ofModel = columns->GetSource() == ColumnIDs::Terms && columns->GetOwner() > 0;
    auto const model = ofModel ? project->GetModel(columns->GetOwner()) : nullptr;
    auto const isSkipped = [&](int column) {
        VariableInfo const variable = project->GetVariables()[columns->GetColumnID(column)];
        return !IsSingleVariable(*columns, column) || IsSpecialULVariable(&variable);
    };
    auto const isY = [&](int column) {
        return model && model->GetYColumnTerms().Find(columns->GetColumnTerm(column)) != -1;
    };
    while (first < last && isSkipped(first))
        ++first;
    while (last > first && (isSkipped(last) || isY(last)))
        --last;
}

ColumnIDs CreateBatchStrColumnIDs(ColumnIDs const &ids, std::list<int> const *columns) {
    ColumnIDs chosen = ids;
    if (columns)
        chosen.Reduce(ColumnIDs::Positions(std::vector<int>(columns->begin(), columns->end())));
    ProjectPtr const project = ids.GetProject();
    NCStringVector names;
    if (chosen.GetSource() == ColumnIDs::AlignedPoints && chosen.Size() > 0)
        names = chosen.GetBatches().GetBatchNames();
    if (chosen.GetSource() == ColumnIDs::Observations && project) {
        std::unordered_set<std::string> known{""}; // no batch
        for (int column = 1; column <= chosen.Size(); ++column) {
            std::string name = ObservationInfo(chosen.GetColumnID(column)).GetBatchName(project->GetObservations());
            if (known.insert(name).second)
                names.push_back(std::move(name));
        }
    }
    return ColumnIDs(std::move(names), "Batch", project, ColumnIDs::Batches, ids.GetOwner());
}

} // namespace ProjectUtilities
