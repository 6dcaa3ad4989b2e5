#include "navigation/SelectedNumbers.h"

#include "navigation/Numbers_internal.h"
#include "platform/project/NCProject.h"
#include "utilities/DefaultSelection.h"

namespace DataSeriesUtilities {

namespace {

using Vector = ProjectVector;

// A number that the terms do not have shares nothing.
ColumnTerm TermAt(ColumnTerms const &terms, std::uint32_t number) {
    bool const known = number >= 1 && number <= static_cast<std::uint32_t>(terms.Size());
    return known ? terms[static_cast<int>(number)] : ColumnTerm();
}

// Once specifications have differed, no term brings them together again.
void MergeTerm(ColumnTerm const &term, ColumnTerm &shared, bool &agree) {
    if (shared.Size() == 0 && agree) {
        shared = term;
    } else if (!(term == shared)) {
        shared.Clear();
        agree = false;
    }
}

// True when the number is taken.
bool MergeNumber(std::uint32_t number, std::uint32_t &shared) {
    if (shared == SelectedNumbers::NoNumber) {
        shared = number;
        return true;
    }
    if (number != shared)
        shared = SelectedNumbers::Disagreement;
    return false;
}

} // namespace

struct SelectedNumbers::Run {
    boost::shared_ptr<NCProject> project;
    boost::shared_ptr<NCModel const> model; // the current one, or that of the last specification
    bool agreesOnX = true;
    bool agreesOnY = true;

    NCModel const *ModelOf(ProjectVectorData const &data) {
        int const number = data.GetModelInfo()->number;
        if (!model || model->GetModelNumber() != number)
            model = project->GetModel(number);
        return model.get();
    }
};

SelectedNumbers::SelectedNumbers(SelectDataSeriesData const *selection) : m_selection(selection) {
    CalculateSelectedItems();
}

void SelectedNumbers::CalculateSelectedItems() {
    Run run{m_selection->GetProject(), nullptr};
    if (!run.project)
        return;
    if (int const model = m_selection->GetCurrentModel(); model > 0)
        run.model = run.project->GetModel(model);
    for (ProjectVectorData const *const data : m_selection->VectorsInUse()) {
        if (!data->GetProjectVector())
            continue;
        if (data->IsModelBased())
            MergeOfModel(*data, run);
        else
            MergeOfData(*data);
    }
}

void SelectedNumbers::MergeOfModel(ProjectVectorData const &data, Run &run) {
    Vector const &vector = *data.GetProjectVector();
    if (vector.IsYVector())
        if (NCModel const *const model = run.ModelOf(data))
            MergeTerm(TermAt(model->GetYColumnTerms(), YNumberOf(data, Defaults())), m_yTerm, run.agreesOnY);
    if (vector.IsXVector())
        MergeXTerm(data, run);
    MergeItem(data);
    if (vector.UseBatchIx())
        MergeBatch(data, run.project);
}

void SelectedNumbers::MergeXTerm(ProjectVectorData const &data, Run &run) {
    Vector const &vector = *data.GetProjectVector();
    NCModel const *const model = run.ModelOf(data);
    if (!model)
        return;
    bool const isOverLags = vector.GetType() == Vector::VectorTypeLag;
    if (isOverLags && !m_laggedMothers) {
        m_laggedMothers = vector.XTermsOf(*run.project, model->GetModelNumber());
        m_isLagged = true;
    }
    MergeTerm(TermAt(isOverLags ? *m_laggedMothers : model->GetXColumnTerms(), data.GetNumber(Defaults())), m_xTerm,
              run.agreesOnX);
}

void SelectedNumbers::MergeOfData(ProjectVectorData const &data) {
    if (data.GetProjectVector()->IsYVector())
        MergeNumber(data.GetNumber(Defaults()), m_dataSourceY);
    if (data.GetProjectVector()->IsXVector())
        MergeNumber(data.GetNumber(Defaults()), m_dataSourceX);
    MergeItem(data);
}

void SelectedNumbers::MergeItem(ProjectVectorData const &data) {
    Vector const &vector = *data.GetProjectVector();
    if (vector.GetNumberType() != Vector::NumberObsOrVar)
        return;
    bool taken = false;
    if (vector.GetType() == Vector::VectorTypeObservationsLoadings) {
        taken = MergeNumber(data.GetNumber(Defaults()), m_observation);
    } else if (vector.GetType() == Vector::VectorTypeVariablesScores) {
        // A variable without model tells it as an X axis alone.
        taken = MergeNumber(data.GetNumber(Defaults()), m_variable) &&
                (data.IsModelBased() || &data == &m_selection->GetXAxis());
    }
    if (taken)
        m_isPredicted = vector.GetObsPredType() == Vector::Predicted;
}

void SelectedNumbers::MergeBatch(ProjectVectorData const &data, ProjectPtr const &project) {
    if (m_batch == NoBatch) {
        m_batch = data.batchIx;
        m_batchName = data.GetBatchName(project);
    } else if (m_batch != data.batchIx) {
        m_batch = BatchDisagreement;
    }
}

void SelectedNumbers::UpdateDefaultSelectedItems() const {
    auto const defaults = m_selection->GetDefaultSelection();
    if (!defaults)
        return;
    auto const isShared = [](std::uint32_t number) { return number != NoNumber && number != Disagreement; };
    if (m_xTerm.Size() > 0 && !m_isLagged)
        defaults->SetDefaultXTerm(&m_xTerm);
    if (m_yTerm.Size() > 0)
        defaults->SetDefaultYTerm(&m_yTerm);
    if (isShared(m_observation))
        defaults->SetDefaultSelectedObservation(m_observation, m_isPredicted);
    if (isShared(m_variable))
        defaults->SetDefaultSelectedVariable(m_variable);
    if (m_batch > 0)
        defaults->SetDefaultSelectedBatch(m_batchName, m_isPredicted);
}

void CurrentSelectedNumbers::operator()(ProjectVectorData const &data) {
    Vector const *const vector = data.GetProjectVector();
    if (!vector)
        return;
    started = 1;
    bool const isOpen = data.GetNumberID() == ProjectVectorData::NotSet;
    auto const merge = [](std::uint32_t number, std::uint32_t &shared, bool isNumberOpen, bool &isUnset) {
        if (shared != 0 && shared != number) {
            shared = ProjectVectorData::NotSet;
            return;
        }
        shared = number;
        isUnset = isUnset || isNumberOpen;
    };
    if (vector->IsXVector())
        merge(data.GetNumber(defaults), xNumber, isOpen, isXUnset);
    if (vector->IsYVector())
        merge(YNumberOf(data, defaults), yNumber, isOpen && vector->GetNumberType() != Vector::NumberXAndYVariable,
              isYUnset);
    if (vector->GetNumberType() == Vector::NumberObsOrVar) {
        if (vector->GetType() == Vector::VectorTypeVariablesScores)
            merge(data.GetNumber(defaults), variable, isOpen, isVariableUnset);
        else if (vector->GetType() == Vector::VectorTypeObservationsLoadings &&
                 vector->GetObsPredType() == Vector::Predicted)
            merge(data.GetNumber(defaults), predictedObservation, isOpen, isPredictedObservationUnset);
        else if (vector->GetType() == Vector::VectorTypeObservationsLoadings)
            merge(data.GetNumber(defaults), observation, isOpen, isObservationUnset);
    }
    if (vector->UseBatchIx() && data.batchIx > 0)
        batch = batch == 0 || batch == data.batchIx ? data.batchIx : -1;
}

} // namespace DataSeriesUtilities
