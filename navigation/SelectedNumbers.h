#pragma once

#include "platform/export.h"
#include "platform/forward.h"
#include "platform/identity/ColumnTerm.h"
#include "selection/SelectDataSeriesData.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// What the specifications of a selection, the axes in use and the series, stand on: which items they share, and which
// numbers are in use. One without a vector stands on nothing. An open number is what the defaults of the selection say.
namespace DataSeriesUtilities {

// The items that all specifications of a selection share, each kind among those that have it.
class DATASERIES_API SelectedNumbers {
public:
    static constexpr std::uint32_t NoNumber = 0xFFFFFFFF; // no specification has one
    static constexpr std::uint32_t Disagreement = 0;
    static constexpr std::int32_t NoBatch = -2;
    static constexpr std::int32_t BatchDisagreement = -3;

    // The selection must live longer. NCError where a predicted batch has no predictions.
    explicit SelectedNumbers(SelectDataSeriesData const *selection);

    // Of models; without factors when there is none, or they differ.
    ColumnTerm const &GetSelectedXTerm() const { return m_xTerm; }
    ColumnTerm const &GetSelectedYTerm() const { return m_yTerm; }
    // The X term is a variable behind lagged terms, and need not be a term of the model.
    bool IsLaggedXTerm() const { return m_isLagged; }
    // By their numbers in the project.
    std::uint32_t GetSelectedObservation() const { return m_observation; }
    std::uint32_t GetSelectedVariable() const { return m_variable; }
    // The observation or the variable is that of a predicted vector.
    bool IsPredicted() const { return m_isPredicted; }
    // The batch index of specifications of models, and the name of the first one.
    std::int32_t GetSelectedBatch() const { return m_batch; }
    std::string const &GetBatchName() const { return m_batchName; }
    // Of X and Y vectors without model.
    std::uint32_t GetDataSourceXNumber() const { return m_dataSourceX; }
    std::uint32_t GetDataSourceYNumber() const { return m_dataSourceY; }

    // Makes them the defaults of the selection and its project, so that the next plot opens on the same items. What is
    // not shared, and a lagged X term, leaves the default.
    void UpdateDefaultSelectedItems() const;

private:
    struct Run;

    void CalculateSelectedItems();
    void MergeOfModel(ProjectVectorData const &data, Run &run);
    void MergeXTerm(ProjectVectorData const &data, Run &run);
    void MergeOfData(ProjectVectorData const &data);
    void MergeItem(ProjectVectorData const &data);
    void MergeBatch(ProjectVectorData const &data, ProjectPtr const &project);
    ProjectUtilities::DefaultSelection const *Defaults() const { return m_selection->GetDefaultSelection().get(); }

    SelectDataSeriesData const *m_selection;
    ColumnTerm m_yTerm;
    ColumnTerm m_xTerm;
    std::uint32_t m_observation = NoNumber;
    std::uint32_t m_variable = NoNumber;
    std::int32_t m_batch = NoBatch;
    std::uint32_t m_dataSourceY = NoNumber;
    std::uint32_t m_dataSourceX = NoNumber;
    bool m_isPredicted = false;
    std::string m_batchName;
    std::optional<ColumnTerms> m_laggedMothers; // of the first vector over lags
    bool m_isLagged = false;
};

// Folds specifications, one after the other, into the numbers that they share; 0 where there is none, -1 (all ones)
// where they differ. Tells which of them are chosen, so that they must become defaults before the selection can do
// without.
struct DATASERIES_API CurrentSelectedNumbers {
    int started = 0;
    std::uint32_t xNumber = 0;
    std::uint32_t yNumber = 0;
    std::uint32_t variable = 0;
    std::uint32_t predictedObservation = 0;
    std::uint32_t observation = 0;
    ProjectUtilities::DefaultSelection *defaults;
    // Some specification left that number open.
    bool isYUnset = false;
    bool isXUnset = false;
    bool isVariableUnset = false;
    bool isPredictedObservationUnset = false;
    bool isObservationUnset = false;
    std::int32_t batch = 0;

    explicit CurrentSelectedNumbers(ProjectUtilities::DefaultSelection *selection) : defaults(selection) {}

    void operator()(ProjectVectorData const &data);

    bool NeedDefaultXVar() const { return IsChosen(xNumber, isXUnset); }
    bool NeedDefaultYVar() const { return IsChosen(yNumber, isYUnset); }
    bool NeedDefaultVar() const { return IsChosen(variable, isVariableUnset); }
    // Of predicted vectors, and of observed ones: in this order.
    bool NeedDefaultObs() const { return IsChosen(predictedObservation, isPredictedObservationUnset); }
    bool NeedDefaultPredObs() const { return IsChosen(observation, isObservationUnset); }
    bool NeedBatchIx() const { return batch != 0 && batch != -1; }

private:
    static bool IsChosen(std::uint32_t number, bool isUnset) {
        return number != 0 && number != ProjectVectorData::NotSet && !isUnset;
    }
};

// Numbers in use. Lists are extended, and kept rising without repetitions, unless told otherwise.

// In the order of the specifications (AddPredictiveComponents).
DATASERIES_API void CountDifferentComponents(SelectDataSeriesData const *selection, std::vector<int> &components);
// The numbers of X vectors as they are stored, in a new list. Nothing happens when there is no current model.
DATASERIES_API void CountDifferentXVars(SelectDataSeriesData const *selection, std::vector<std::uint32_t> &numbers);
DATASERIES_API void CountDifferentModels(SelectDataSeriesData const *selection, std::vector<int> &models);
// The components of scores and loadings that are of one of the kinds; that of an X axis is appended, whatever is there.
// Answers the size of the list.
DATASERIES_API int CountScoreLoadingComponents(SelectDataSeriesData const *selection, ProjectVector::ComponentType type,
                                               std::vector<int> &components);
// The component of the first specification of the model with one kind of components, which is among those given; -1
// when there is none.
DATASERIES_API int GetAnyComponent(SelectDataSeriesData const *selection, int model, ProjectVector::ComponentType type);
// The Y number of the first specification of the model that does not leave it open, else the default one.
DATASERIES_API int GetAnyYVar(SelectDataSeriesData const *selection, int model);
// The largest component of the kind that is shown, where a vector that sums up the predictive components shows all of
// them; 0 when there is none.
DATASERIES_API int GetMaxComponent(SelectDataSeriesData const *selection, ProjectVector::ComponentType type);

// The specifications are of more than one model.
DATASERIES_API bool IsMultipleModels(SelectDataSeriesData const *selection);
// The terms that all models of the selection have, in the order of the first one by its number; none without a model.
DATASERIES_API ColumnTerms GetCommonXTerms(SelectDataSeriesData const *selection);
DATASERIES_API ColumnTerms GetCommonYTerms(SelectDataSeriesData const *selection);
// The X term that all specifications share; without factors when there is none, or they differ.
DATASERIES_API ColumnTerm GetSelecterXTerm(SelectDataSeriesData const *selection);

// How many specifications leave to the defaults what `data` leaves to them, counting as such any number of an
// observation or variable: the axes in use unless the mode has AxisX, and the series unless it is Normal. 0 when it
// leaves nothing.
DATASERIES_API int NumberOfEqualDefaultArguments(ProjectVectorData const &data, SelectDataSeriesData const *selection,
                                                 SelectDataSeriesData::Mode mode);

} // namespace DataSeriesUtilities
