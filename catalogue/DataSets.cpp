#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/identity/AliasAccess.h"
#include "platform/text/Exception.h"
#include "platform/text/Translate.h"

#include <algorithm>
#include <numeric>
#include <optional>

// What stands in data sets and prediction sets, and the identifiers of observations and variables.

namespace {

using namespace rows;

constexpr int AllPhases = -1;

// The number in the source, -1 when it names no data set. NCError for one that the project does not have.
int LoadedDataSet(ProjectPtr const &project, char const *source) {
    int const number = ProjectVector::GetDataSetNumber(project, source);
    if (number != -1 && !project->GetDataSet(number))
        throw NCError(ExceptionMessage::translate("Dataset number {1} could not be loaded.") % number, NCError::Error);
    return number;
}

boost::shared_ptr<NCDataSet const> CurrentPredictionSet(NCProject const &project) {
    return project.GetPredSet(-1);
}

// The columns of a prediction set: its observations or its variables.
ColumnIDs PredictionColumns(ProjectPtr const &project, ColumnIDs::Source kind) {
    auto const set = CurrentPredictionSet(*project);
    if (!set)
        return ColumnIDs(project);
    ColumnIDs::Numbers numbers;
    if (kind == ColumnIDs::Variables)
        for (std::uint32_t const variable : set->GetVariables())
            numbers.push_back(variable);
    else
        for (ObservationInfo const &observation : set->GetObservations())
            numbers.push_back(observation.GetUniqueID());
    return ColumnIDs(kind, std::move(numbers), project, set->GetNumber());
}

ColumnIDs DataSetObservations(ProjectPtr const &project, char const *source) {
    int const dataSet = LoadedDataSet(project, source);
    return dataSet == -1 ? ColumnIDs(project)
                         : GetProjectData(*project).GetVarDSColumnIDs(dataSet, AllBatches, AllPhases);
}

ColumnIDs DataSetVariables(ProjectPtr const &project, char const *source) {
    int const dataSet = LoadedDataSet(project, source);
    return dataSet == -1 ? ColumnIDs(project) : GetProjectData(*project).GetObsDSColumnIDs(dataSet);
}

ColumnIDs ModelObservations(ProjectPtr const &project, char const *source) {
    return Labels(project, source, &GetProjectData::GetTColumnIDs, AllBatches);
}

// Those of X and Y, of X alone for a model without Y.
ColumnIDs ModelVariables(ProjectPtr const &project, char const *source) {
    int const model = ProjectVector::GetModelNumber(project, source);
    boost::shared_ptr<ModelInfo const> const info = model == -1 ? nullptr : project->GetModelInfo(model);
    bool const withY = info && (info->type & ModelTypeE::WithY) != 0;
    return Labels(project, source, withY ? &GetProjectData::GetWStarCColumnIDs : &GetProjectData::GetPColumnIDs,
                  TriState::Undefined);
}

TablePtr OneRow(std::string const &label, ColumnIDs columns, std::span<float const> values) {
    if (columns.Size() == 0 || values.size() != static_cast<std::size_t>(columns.Size()))
        return nullptr;
    NCDataMatrix<float> matrix;
    matrix.AppendRow(values);
    RowIDs rows(label, columns.GetProject());
    return std::make_unique<ProjectData>(std::move(rows), std::move(columns), std::move(matrix));
}

// The items that a text names, in the current prediction set: one row for each that the set has, nothing without any.
// `rowOf` gives label and values of an item.
template <typename RowOf>
TablePtr PredictionRows(ProjectVector const &vector, ProjectPtr const &project, char const *args,
                        ColumnIDs::Source kind, RowOf rowOf) {
    ProjectVector::Arguments arguments;
    auto const set = CurrentPredictionSet(*project);
    if (!set || !vector.ReadArguments(args, arguments))
        return nullptr;
    ColumnIDs columns = PredictionColumns(project, kind);
    NCStringVector labels;
    NCDataMatrix<float> matrix;
    for (int const number : ProjectVector::NamedNumbers(arguments)) {
        auto const [label, values] = rowOf(*set, static_cast<std::uint32_t>(number));
        if (values.Size() == 0)
            continue;
        labels.push_back("PS." + label);
        matrix.AppendRow(values.Values());
    }
    if (labels.Size() == 0)
        return nullptr;
    RowIDs rows(labels, project);
    return std::make_unique<ProjectData>(std::move(rows), std::move(columns), std::move(matrix));
}

// The numbers that a text about a data set names, and the set; nothing for another source.
std::optional<std::pair<int, IntList>> NumbersInDataSet(ProjectVector const &vector, ProjectPtr const &project,
                                                        char const *args) {
    ProjectVector::Arguments arguments;
    vector.ReadArguments(args, arguments);
    int const dataSet = LoadedDataSet(project, arguments.source.c_str());
    return dataSet == -1 ? std::nullopt : std::optional(std::pair(dataSet, ProjectVector::NamedNumbers(arguments)));
}

// The numbers in an identifier column; nothing when there is no such column.
TablePtr IdentifierRow(std::string const &prefix, ColumnIDs columns, AliasAccess const &aliases, unsigned long alias) {
    int const number = static_cast<int>(alias);
    auto const &used = aliases.GetUsedAliases();
    if (std::find(used.begin(), used.end(), number) == used.end())
        return nullptr;
    std::vector<std::uint32_t> items;
    items.reserve(static_cast<std::size_t>(columns.Size()));
    for (int column = 1; column <= columns.Size(); ++column)
        // A product of variables has none of their identifiers.
        items.push_back(columns.GetColumnTerm(column).Size() > 1 ? 0 : columns.GetColumnID(column));
    NCDataVector<float> const values = aliases.GetNumeralValues(number, items);
    return OneRow(prefix + "(" + aliases.GetRawAliasName(number) + ")", std::move(columns), values.Values());
}

TablePtr IndexRow(std::string const &label, ColumnIDs columns) {
    std::vector<float> values(static_cast<std::size_t>(columns.Size()));
    std::iota(values.begin(), values.end(), 1.0f);
    return OneRow(label, std::move(columns), values);
}

bool AnyNumeral(AliasAccess const &aliases) {
    auto const &used = aliases.GetUsedAliases();
    return std::any_of(used.begin(), used.end(), [&](int alias) { return aliases.IsAliasNumeral(alias); });
}

using AliasesOf = AliasAccess (NCDataContainerBase::*)() const;

bool AnyNumeral(NCDataContainerBase const *container, AliasesOf aliases) {
    return container && AnyNumeral((container->*aliases)());
}

class ProjectObsDSVector final : public ProjectVector {
public:
    ProjectObsDSVector() {
        Init("ObsDS", Loadings, DataSet, NoModel, NoComponent, NumberObsOrVar, NoScoreLoading, Observed, Displayable);
        m_longName = "Observation";
    }
    std::string GetHelpString() const override {
        return translate("ObsDS: Values of one observation of a data set, for all its variables.\n"
                         "They are as they were read. In the units of the data set.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        auto const asked = NumbersInDataSet(*this, project, args);
        return asked ? GetProjectData(*project).GetObsDS(asked->first, &asked->second) : nullptr;
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return DataSetVariables(project, source);
    }
} const projectObsDSVector;

class ProjectVarDSVector final : public ProjectVector {
public:
    ProjectVarDSVector() {
        Init("VarDS", Scores, DataSet, NoModel, NoComponent, NumberObsOrVar, NoScoreLoading, Observed, Displayable);
        m_longName = "Variable";
    }
    std::string GetHelpString() const override {
        return translate("VarDS: Values of one variable of a data set, for all its observations.\n"
                         "They are as they were read. In the units of the data set.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        auto const asked = NumbersInDataSet(*this, project, args);
        return asked ? GetProjectData(*project).GetVarDS(asked->first, &asked->second, AllBatches, AllPhases) : nullptr;
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return DataSetObservations(project, source);
    }
} const projectVarDSVector;

class ProjectObsPSVector final : public ProjectVector {
public:
    ProjectObsPSVector() {
        Init("ObsPS", Loadings, PredictionSet, NoModel, NoComponent, NumberObsOrVar, NoScoreLoading, Predicted,
             Displayable);
    }
    std::string GetHelpString() const override {
        return translate("ObsPS: Values of one observation of the prediction set, for all its variables.\n"
                         "They are as they were read. In the units of the data.");
    }

    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return PredictionRows(*this, project, args, ColumnIDs::Variables, [](NCDataSet const &set, std::uint32_t item) {
            return std::pair(set.GetObservationAliases().GetAlias(1, ObservationInfo(item)) +
                                 set.GetDaysLabel(set.GetVariables()),
                             set.GetObservation(item));
        });
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *, int, unsigned long) const override {
        return PredictionColumns(project, ColumnIDs::Variables);
    }
} const projectObsPSVector;

class ProjectVarPSVector final : public ProjectVector {
public:
    ProjectVarPSVector() {
        Init("VarPS", Scores, PredictionSet, NoModel, NoComponent, NumberObsOrVar, NoScoreLoading, Predicted,
             Displayable);
    }
    std::string GetHelpString() const override {
        return translate("VarPS: Values of one variable of the prediction set, for all its observations.\n"
                         "They are as they were read. In the units of the data.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return PredictionRows(*this, project, args, ColumnIDs::Observations,
                              [](NCDataSet const &set, std::uint32_t item) {
                                  return std::pair(set.GetVariableAliases().GetAlias(1, VariableInfo(item)) +
                                                       set.GetDaysLabel(std::span(&item, 1)),
                                                   set.GetVariable(item));
                              });
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *, int, unsigned long) const override {
        return PredictionColumns(project, ColumnIDs::Observations);
    }
} const projectVarPSVector;

class ProjectDSObsIdentifierVector final : public ProjectVector {
public:
    ProjectDSObsIdentifierVector() {
        Init("ObsID", Scores, DataSet, NoModel, NoComponent, NumberIdentifier, NoScoreLoading, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
    }
    std::string GetHelpString() const override {
        return translate(
            "ObsID: Identifier of each observation of a data set, as a number.\n"
            "Use it as the X axis where the identifiers are times, depths or wavelengths. In the units of\n"
            "the identifier.");
    }
    bool IsNumVectorLike() const override { return true; }
    bool IsValidProject(ProjectPtr project) const override { return project->GetObservations().HasNumeralIDs(); }
    bool IsValidDataset(NCProject const &project, int dataset) const override {
        return ProjectVector::IsValidDataset(project, dataset) &&
               AnyNumeral(project.GetDataSet(dataset).get(), &NCDataContainerBase::GetObservationAliases);
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int, unsigned long number, int) const override {
        int const dataSet = LoadedDataSet(project, source);
        return dataSet == -1
                   ? nullptr
                   : IdentifierRow("DS" + std::to_string(dataSet) + ".ObsID", DataSetObservations(project, source),
                                   project->GetDataSet(dataSet)->GetObservationAliases(), number);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return DataSetObservations(project, source);
    }
} const projectDSObsIdentifierVector;

class ProjectPSObsIdentifierVector final : public ProjectVector {
public:
    ProjectPSObsIdentifierVector() {
        Init("ObsID", Scores, PredictionSet, NoModel, NoComponent, NumberIdentifier, NoScoreLoading, Predicted,
             Displayable);
        m_firstComponent = NoFirstComponent;
    }
    std::string GetHelpString() const override {
        return translate(
            "ObsID: Identifier of each observation of the prediction set, as a number.\n"
            "Use it as the X axis where the identifiers are times, depths or wavelengths. In the units of\n"
            "the identifier.");
    }
    bool IsNumVectorLike() const override { return true; }
    bool IsValidProject(ProjectPtr project) const override {
        return project->GetObservations().HasNumeralIDs() ||
               AnyNumeral(CurrentPredictionSet(*project).get(), &NCDataContainerBase::GetObservationAliases);
    }
    TablePtr CreateVector(ProjectPtr project, char const *, int, unsigned long number, int) const override {
        auto const set = CurrentPredictionSet(*project);
        return set ? IdentifierRow("PS.ObsID", PredictionColumns(project, ColumnIDs::Observations),
                                   set->GetObservationAliases(), number)
                   : nullptr;
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *, int, unsigned long) const override {
        return PredictionColumns(project, ColumnIDs::Observations);
    }
} const projectPSObsIdentifierVector;

class ProjectObsIdentifierVector final : public ProjectVector {
public:
    ProjectObsIdentifierVector() {
        Init("ObsID", Scores, Model, AnyModel, NoComponent, NumberIdentifier, Score, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "ObsID: Identifier of each observation of the workset, as a number.\n"
            "Use it as the X axis where the identifiers are times, depths or wavelengths. In the units of\n"
            "the identifier.");
    }
    bool IsNumVectorLike() const override { return true; }
    bool IsValidProject(ProjectPtr project) const override { return project->GetObservations().HasNumeralIDs(); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return AnyNumeral(project.GetWorkset(model.number).get(), &NCDataContainerBase::GetObservationAliases);
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int, unsigned long number, int) const override {
        int const model = GetModelNumber(project, source);
        auto const workset = model == -1 ? nullptr : project->GetWorkset(model);
        return workset ? IdentifierRow("M" + std::to_string(model) + ".ObsID", ModelObservations(project, source),
                                       workset->GetObservationAliases(), number)
                       : nullptr;
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return ModelObservations(project, source);
    }
} const projectObsIdentifierVector;

class ProjectDSVarIdentifierVector final : public ProjectVector {
public:
    ProjectDSVarIdentifierVector() {
        Init("VarID", Loadings, DataSet, NoModel, NoComponent, NumberIdentifier, NoScoreLoading, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
    }
    std::string GetHelpString() const override {
        return translate(
            "VarID: Identifier of each variable of a data set, as a number.\n"
            "Use it as the X axis where the identifiers are times, depths or wavelengths. In the units of\n"
            "the identifier.");
    }
    bool IsNumVectorLike() const override { return true; }
    bool IsValidProject(ProjectPtr project) const override { return project->GetVariables().HasNumeralIDs(); }
    bool IsValidDataset(NCProject const &project, int dataset) const override {
        return ProjectVector::IsValidDataset(project, dataset) &&
               AnyNumeral(project.GetDataSet(dataset).get(), &NCDataContainerBase::GetVariableAliases);
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int, unsigned long number, int) const override {
        int const dataSet = LoadedDataSet(project, source);
        return dataSet == -1
                   ? nullptr
                   : IdentifierRow("DS" + std::to_string(dataSet) + ".VarID", DataSetVariables(project, source),
                                   project->GetDataSet(dataSet)->GetVariableAliases(), number);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return DataSetVariables(project, source);
    }
} const projectDSVarIdentifierVector;

class ProjectPSVarIdentifierVector final : public ProjectVector {
public:
    ProjectPSVarIdentifierVector() {
        Init("VarID", Loadings, PredictionSet, NoModel, NoComponent, NumberIdentifier, NoScoreLoading, Predicted,
             Displayable);
        m_firstComponent = NoFirstComponent;
    }
    std::string GetHelpString() const override {
        return translate(
            "VarID: Identifier of each variable of the prediction set, as a number.\n"
            "Use it as the X axis where the identifiers are times, depths or wavelengths. In the units of\n"
            "the identifier.");
    }
    bool IsNumVectorLike() const override { return true; }
    bool IsValidProject(ProjectPtr project) const override {
        return project->GetVariables().HasNumeralIDs() ||
               AnyNumeral(CurrentPredictionSet(*project).get(), &NCDataContainerBase::GetVariableAliases);
    }
    TablePtr CreateVector(ProjectPtr project, char const *, int, unsigned long number, int) const override {
        auto const set = CurrentPredictionSet(*project);
        return set ? IdentifierRow("PS.VarID", PredictionColumns(project, ColumnIDs::Variables),
                                   set->GetVariableAliases(), number)
                   : nullptr;
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *, int, unsigned long) const override {
        return PredictionColumns(project, ColumnIDs::Variables);
    }
} const projectPSVarIdentifierVector;

class ProjectVarIdentifierVector final : public ProjectVector {
public:
    ProjectVarIdentifierVector() {
        Init("VarID", Loadings, Model, AnyModel, NoComponent, NumberIdentifier, Loading, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
    }
    std::string GetHelpString() const override {
        return translate(
            "VarID: Identifier of each variable of the workset, as a number.\n"
            "Use it as the X axis where the identifiers are times, depths or wavelengths. In the units of\n"
            "the identifier.");
    }
    bool IsNumVectorLike() const override { return true; }
    bool IsValidProject(ProjectPtr project) const override { return project->GetVariables().HasNumeralIDs(); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return AnyNumeral(project.GetWorkset(model.number).get(), &NCDataContainerBase::GetVariableAliases);
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int, unsigned long number, int) const override {
        int const model = GetModelNumber(project, source);
        auto const workset = model == -1 ? nullptr : project->GetWorkset(model);
        return workset ? IdentifierRow("M" + std::to_string(model) + ".VarID", ModelVariables(project, source),
                                       workset->GetVariableAliases(), number)
                       : nullptr;
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return ModelVariables(project, source);
    }
} const projectVarIdentifierVector;

class DSSourceOfVarVector final : public ProjectVector {
public:
    DSSourceOfVarVector() {
        Init("SourceOfVarNum", Loadings, DataSet, NoModel, NoComponent, NumberNone, NoScoreLoading, Observed, Hidden);
        m_firstComponent = NoFirstComponent;
        m_isNumVector = true;
    }
    std::string GetHelpString() const override {
        return translate("SourceOfVarNum: Index of each variable of a data set: 1, 2, 3 and so on.\n"
                         "It is the axis along which profiles of sources of variation are shown.");
    }
    bool IsSourceOfVariationVector() const override { return true; }
    TablePtr CreateVector(ProjectPtr project, char const *source, int, unsigned long, int) const override {
        return IndexRow(std::string(source) + ".SourceOfVarNum", DataSetVariables(project, source));
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return DataSetVariables(project, source);
    }
} const dSSourceOfVarVector;

class PSVarSourceOfVarVector final : public ProjectVector {
public:
    PSVarSourceOfVarVector() {
        Init("SourceOfVarNum", Loadings, PredictionSet, NoModel, NoComponent, NumberNone, NoScoreLoading, Predicted,
             Hidden);
        m_firstComponent = NoFirstComponent;
        m_isNumVector = true;
    }
    std::string GetHelpString() const override {
        return translate("SourceOfVarNum: Index of each variable of the prediction set: 1, 2, 3 and so on.\n"
                         "It is the axis along which profiles of sources of variation are shown.");
    }
    bool IsSourceOfVariationVector() const override { return true; }
    TablePtr CreateVector(ProjectPtr project, char const *, int, unsigned long, int) const override {
        return IndexRow("PS.SourceOfVarNum", PredictionColumns(project, ColumnIDs::Variables));
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *, int, unsigned long) const override {
        return PredictionColumns(project, ColumnIDs::Variables);
    }
} const pSVarSourceOfVarVector;

class SourceOfVarVector final : public ProjectVector {
public:
    SourceOfVarVector() {
        Init("SourceOfVarNum", Loadings, Model, AnyModel, NoComponent, NumberNone, Loading, Observed, Hidden);
        m_firstComponent = NoFirstComponent;
        m_isNumVector = true;
    }
    std::string GetHelpString() const override {
        return translate("SourceOfVarNum: Index of each variable of a model: 1, 2, 3 and so on.\n"
                         "It is the axis along which profiles of sources of variation are shown.");
    }
    bool IsSourceOfVariationVector() const override { return true; }
    TablePtr CreateVector(ProjectPtr project, char const *source, int, unsigned long, int) const override {
        return IndexRow(std::string(source) + ".SourceOfVarNum", ModelVariables(project, source));
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return ModelVariables(project, source);
    }
} const sourceOfVarVector;

} // namespace
