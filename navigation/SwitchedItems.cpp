#include "navigation/SwitchedItems_internal.h"

namespace DataSeriesUtilities {

boost::shared_ptr<NCModel const> ModelOf(ProjectVectorData const &data, NCProject const &project) {
    ModelInfo const *const info = data.GetModelInfo();
    return info ? project.GetModel(info->number) : nullptr;
}

bool IsPredicted(ProjectVectorData const &data) {
    return data.GetProjectVector()->GetObsPredType() == ProjectVector::Predicted;
}

bool HasAxis(ModelInfo const &info, ProjectVector const &vector) {
    switch (vector.GetType()) {
    case ProjectVector::VectorTypeComponent:
        return info.SizeComponents() > 0;
    case ProjectVector::VectorTypeAligned:
    case ProjectVector::VectorTypeBatch:
        return info.isBatchModel;
    default:
        return true;
    }
}

ColumnTerm const *TermAt(ColumnTerms const &terms, std::uint32_t position) {
    bool const known = position >= 1 && position <= static_cast<std::uint32_t>(terms.Size());
    return known ? &terms[static_cast<int>(position)] : nullptr;
}

XTermsOfModel::Terms &XTermsOfModel::TermsFor(ProjectVector const &vector) {
    bool const isOverLags = vector.GetType() == ProjectVector::VectorTypeLag;
    Terms &terms = isOverLags ? m_lagged : m_terms;
    if (!terms.terms && isOverLags && m_model)
        terms.mothers = vector.XTermsOf(m_project, m_model->GetModelNumber());
    if (!terms.terms)
        terms.terms = isOverLags || !m_model ? &terms.mothers : &m_model->GetXColumnTerms();
    return terms;
}

int XTermsOfModel::Find(ProjectVectorData const &data, ProjectUtilities::DefaultSelection const *defaults) {
    XTermsOfModel source(m_project, ModelOf(data, m_project));
    std::uint32_t const number = data.GetNumber(defaults);
    ColumnTerm const *const term = TermAt(*source.TermsFor(*data.GetProjectVector()).terms, number);
    if (!term)
        return 0;
    Terms &own = TermsFor(*data.GetProjectVector());
    if (ColumnTerm const *const same = TermAt(*own.terms, number); same && *same == *term)
        return static_cast<int>(number);
    if (!own.places)
        own.places.emplace(*own.terms);
    return (*own.places)(*term);
}

RowsOfModel::Rows &RowsOfModel::Fetched(bool predicted) {
    Rows &rows = predicted ? m_predicted : m_own;
    if (std::exchange(rows.isFetched, true))
        return rows;
    if (predicted) {
        m_predictions = m_project.GetPredictions(m_number, false);
        rows.rows = m_predictions ? &m_predictions->GetObservations() : nullptr;
    } else {
        m_model = m_project.GetModel(m_number);
        rows.rows = m_model ? &m_model->GetObservations() : nullptr;
    }
    return rows;
}

int RowsOfModel::Find(std::uint32_t observation, bool predicted) {
    Rows &rows = Fetched(predicted);
    if (!rows.rows)
        return 0;
    if (!rows.positions)
        rows.positions.emplace(*rows.rows);
    return rows.positions->Of(observation);
}

int RowsOfModel::Find(ObservationInfos const &others, int position, bool predicted) {
    auto const isIn = [](ObservationInfos const &rows, int place) {
        return place >= 1 && place <= static_cast<int>(rows.size());
    };
    auto const at = [](ObservationInfos const &rows, int place) {
        return rows[static_cast<std::size_t>(place - 1)].GetUniqueID();
    };
    Rows &own = Fetched(predicted);
    if (!own.rows || !isIn(others, position))
        return 0;
    std::uint32_t const observation = at(others, position);
    int const likely = position + own.shift;
    if (isIn(*own.rows, likely) && at(*own.rows, likely) == observation)
        return likely;
    int const found = Find(observation, predicted);
    if (found != 0)
        own.shift = found - position;
    return found;
}

bool BatchesOfModels::AreThere(int model) const {
    return boost::dynamic_pointer_cast<NCBatchModel const>(m_project.GetModel(model)) != nullptr;
}

std::vector<std::string> BatchesOfModels::NamesOfModel(int model) const {
    std::vector<std::string> names;
    auto const batchModel = boost::dynamic_pointer_cast<NCBatchModel const>(m_project.GetModel(model));
    std::size_t const batches = batchModel ? batchModel->GetBatchIndexes().size() : 0;
    for (std::size_t index = 1; index <= batches; ++index)
        names.push_back(batchModel->GetBatchName(static_cast<int>(index)));
    return names;
}

std::vector<std::string> BatchesOfModels::NamesOfPredictions(int model) const {
    std::vector<std::string> names;
    auto const set = m_project.GetPredSet(-1);
    auto const predictions = m_project.GetPredictions(model, false);
    if (!set || !predictions)
        return names;
    BatchInfoVector const known = set->GetBatchInfo();
    NCStringVector const inOrder = known.GetBatchNames();
    for (int const batch :
         BatchUtilities::GetBatchIndexes(predictions->GetObservations(), m_project.GetObservations(), known))
        names.push_back(inOrder(batch, {}));
    return names;
}

BatchesOfModels::Batches const &BatchesOfModels::Of(int model, bool predicted) {
    auto const [place, isNew] = m_batches.try_emplace({model, predicted});
    Batches &batches = place->second;
    if (!isNew)
        return batches;
    batches.names = predicted ? NamesOfPredictions(model) : NamesOfModel(model);
    int index = 0;
    for (std::string const &name : batches.names)
        batches.indexOf.try_emplace(name, ++index);
    return batches;
}

std::string BatchesOfModels::NameOf(int model, bool predicted, int index) {
    std::vector<std::string> const &names = Of(model, predicted).names;
    bool const known = index >= 1 && index <= static_cast<int>(names.size());
    return known ? names[static_cast<std::size_t>(index - 1)] : std::string();
}

int BatchesOfModels::Find(int model, bool predicted, std::string const &name) {
    Batches const &batches = Of(model, predicted);
    auto const found = batches.indexOf.find(name);
    return name.empty() || found == batches.indexOf.end() ? 0 : found->second;
}

} // namespace DataSeriesUtilities
