#include "navigation/Availability_internal.h"

#include "building/TolerantCompare_internal.h"
#include "catalogue/ProjectVectorHandler.h"
#include "navigation/Numbers_internal.h"
#include "platform/text/Exception.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace DataSeriesUtilities {

namespace {

using Vector = ProjectVector;
using Weight = ContributionWeightEnum;

// What the project fails to give is not there.
template <typename Ask>
auto OrNothing(Ask ask) -> decltype(ask()) {
    try {
        return ask();
    } catch (NCError const &) {
        return {};
    }
}

// The predictive kind counts all components of the model.
int Count(int kind, ModelInfo const &info) {
    return kind == Vector::ComponentPredictive
               ? info.SizeComponents()
               : Vector::SelectMaxComponents(static_cast<Vector::ComponentType>(kind), info);
}

bool Lacks(Vector const &vector, int kind, ModelInfo const &info) {
    return vector.GetFirstComponent() > 0 && Count(kind, info) == 0;
}

} // namespace

bool CheckIfVectorIsAvailable::operator()(ProjectVectorData const &data) {
    if (!data.GetModelInfo())
        return true;
    Vector const *vector = data.GetProjectVector();
    if ((vector->GetModelType() & m_info->type) == 0 && vector->UseModel()) {
        ProjectVectorHandler const &catalogue = *ProjectVectorHandler::Instance();
        auto const found = catalogue.Find(vector->GetName(), vector->GetType(), vector->GetDataType(), m_info.get());
        if (found == catalogue.end())
            return false;
        vector = *found;
        VectorChanged = true;
    }
    if (!HasAxis(*m_info, *vector))
        return false;
    if (vector->GetObsPredType() == Vector::Predicted)
        return OrNothing([this] { return m_rows.Get(true); }) != nullptr;
    // Of the model that is left, whatever the other one has.
    return vector->GetType() != Vector::VectorTypeLag || data.GetModelInfo()->hasLaggedVariables;
}

bool CheckIfComponentIsAvailable::operator()(ProjectVectorData const &data) {
    Vector const &vector = *data.GetProjectVector();
    return std::ranges::none_of(
        std::initializer_list<int>{Vector::ComponentPredictive, Vector::ComponentXSideOrthogonal,
                                   Vector::ComponentYSideOrthogonal},
        [&](int kind) { return (vector.GetComponentType() & kind) != 0 && Lacks(vector, kind, *m_info); });
}

bool CheckIfDoubleCompAvailable::operator()(ProjectVectorData const &data) {
    Vector const &vector = *data.GetProjectVector();
    if (vector.GetNumberType() != Vector::NumberComponentRange &&
        vector.GetNumberType() != Vector::NumberBatchComponentRange)
        return true;
    return std::ranges::none_of(std::initializer_list<int>{1, 2}, [&](int which) {
        int const kind = vector.GetDoubleCompComponentType(which);
        bool const isCounted = kind == Vector::ComponentPredictive || kind == Vector::ComponentXSideOrthogonal ||
                               kind == Vector::ComponentYSideOrthogonal;
        return isCounted && Lacks(vector, kind, *m_info);
    });
}

bool CheckIfXVarIsAvailable::operator()(ProjectVectorData const &data) {
    return !data.GetProjectVector()->IsXVector() || !data.GetModelInfo() || m_terms.Find(data, m_defaults) != 0;
}

bool CheckIfYVarIsAvailable::operator()(ProjectVectorData const &data) {
    if (!data.GetProjectVector()->IsYVector() || !data.GetModelInfo())
        return true;
    auto const source = ModelOf(data, m_project);
    if (!source || source->GetYColumnTerms().Size() == 0 || m_model->GetYColumnTerms().Size() == 0)
        return false;
    if (source->GetYColumnTerms().Size() == 1 && m_model->GetYColumnTerms().Size() == 1)
        return true;
    ColumnTerm const *const term = TermAt(source->GetYColumnTerms(), YNumberOf(data, m_defaults));
    return term && m_model->GetYColumnTerms().Find(*term) != -1;
}

bool CheckIfObsIsAvailable::operator()(ProjectVectorData const &data) {
    Vector const &vector = *data.GetProjectVector();
    bool const isOfObservation =
        vector.GetNumberType() == Vector::NumberObsOrVar || vector.GetNumberType() == Vector::NumberBatchIndexOnly;
    if (!vector.UseModel() || vector.GetType() != Vector::VectorTypeObservationsLoadings || !isOfObservation)
        return true;
    return OrNothing([&] { return m_rows.Find(data.GetNumberID(), IsPredicted(data)); }) != 0;
}

bool CheckIfBatchIsAvailable::operator()(ProjectVectorData const &data) {
    Vector const &vector = *data.GetProjectVector();
    if (!vector.UseModel() || !vector.UseBatchIx())
        return true;
    ModelInfo const *const source = data.GetModelInfo();
    if (!source || !m_batches.AreThere(m_model) || !m_batches.AreThere(source->number))
        return false;
    bool const isPredicted = IsPredicted(data);
    return OrNothing([&] {
        if (data.batchIx < 1)
            return m_batches.Count(m_model, isPredicted) > 0;
        std::string const name = m_batches.NameOf(source->number, isPredicted, data.batchIx);
        return m_batches.Find(m_model, isPredicted, name) != 0;
    });
}

bool CheckIfContribVectorIsAvailable::operator()(ProjectVectorData const &data) {
    if (!data.GetProjectVector()->IsContribution() || !data.GetModelInfo())
        return true;
    return FitsModel(data) && HasResponse(data) && HasRows(data) && HasComponents(data);
}

bool CheckIfContribVectorIsAvailable::FitsModel(ProjectVectorData const &data) const {
    Weight::WeightType const weight = data.GetWeightType();
    bool const isByWStar = weight == Weight::WStar || weight == Weight::WStarWStar || weight == Weight::WStarRange;
    return (!data.GetProjectVector()->IsAlignedContribution() || m_info->isBatchModel) &&
           (!isByWStar || (m_info->type & ModelTypeE::WithY) != 0);
}

bool CheckIfContribVectorIsAvailable::HasResponse(ProjectVectorData const &data) const {
    if (!data.IsYVarContribution())
        return true;
    auto const source = ModelOf(data, m_project);
    ColumnTerm const *const term =
        source ? TermAt(source->GetYColumnTerms(), static_cast<std::uint32_t>(data.GetYVar(*m_defaults))) : nullptr;
    return term && m_model->GetYColumnTerms().FindFirst(term->GetMotherVariable(1)) != -1;
}

bool CheckIfContribVectorIsAvailable::HasRows(ProjectVectorData const &data) {
    bool const isPredicted = IsPredicted(data);
    RowsOfModel source(m_project, data.GetModelInfo()->number);
    ObservationInfos const *const rows = OrNothing([&] { return source.Get(isPredicted); });
    if (!rows || !OrNothing([&] { return m_rows.Get(isPredicted); }))
        return false;
    auto const isThere = [&](int position) { return m_rows.Find(*rows, position, isPredicted) != 0; };
    return std::ranges::all_of(data.obs1, isThere) && std::ranges::all_of(data.obs2, isThere);
}

bool CheckIfContribVectorIsAvailable::HasComponents(ProjectVectorData const &data) const {
    std::vector<int> const &components = data.GetWeightComp();
    int const last = m_info->SizeComponents();
    if (components.empty() || std::ranges::any_of(components, [last](int component) { return component <= last; }))
        return true;
    return last >= data.GetProjectVector()->GetFirstComponent() &&
           (data.GetWeightType() == Weight::Normalized || data.GetWeightType() == Weight::Raw);
}

bool CheckBatchContribProject::operator()(ProjectVectorData const &data) {
    if (!m_model || !IsPredicted(data))
        return true;
    return std::ranges::all_of(data.contRef, [&](BatchPoints::value_type const &point) {
        auto const findBatch = [&] { return m_batches.Find(m_model->GetModelNumber(), true, point.first); };
        return (point.first.empty() || OrNothing(findBatch) != 0) && IsOnGrid(point.second, data.alignedMaturity1);
    });
}

bool CheckBatchContribProject::IsOnGrid(float maturity, bool isAligned) {
    std::optional<std::vector<float>> &grid = m_grids[isAligned ? 1 : 0];
    if (!grid) {
        NCDataVector<float> const points = isAligned ? m_model->GetTimeMaturityVector() : m_model->GetMaturity();
        grid.emplace(points.begin(), points.end());
        std::ranges::sort(*grid);
    }
    // All that can be equal lie within twice the largest tolerance.
    float const slack = 4 * std::numeric_limits<float>::epsilon() * std::abs(maturity);
    auto const first = std::ranges::lower_bound(*grid, maturity - slack);
    auto const last = std::ranges::upper_bound(*grid, maturity + slack);
    return std::any_of(first, last,
                       [maturity](float point) { return ProjectDataUtilities::TolerantCompare(maturity, point) == 0; });
}

} // namespace DataSeriesUtilities
