#include "navigation/SwitchModelUpdate.h"

#include "catalogue/ProjectVectorHandler.h"
#include "navigation/SwitchedItems_internal.h"
#include "utilities/DefaultSelection.h"
#include "utilities/ProjectQueries.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace DataSeriesUtilities {

namespace {

using Vector = ProjectVector;
using Weight = ContributionWeightEnum;

// Coefficients go by several names; only that of a wavelet model is the same vector there.
char const *NameOnModel(char const *name, NCModel const &model, bool isWCS) {
    static constexpr char const *byKind[] = {"CoeffCS", "CoeffMLR", "Coeff", "CoeffRot"};
    std::string_view const own = name;
    if (isWCS)
        return own == "CoeffCS" ? "CoeffC" : name;
    int const kind = model.GetCoefficientKind();
    return own == "CoeffC" && kind >= 0 && kind < static_cast<int>(std::size(byKind)) ? byKind[kind] : name;
}

// The last component of the predictive kind that a vector can show: with orthogonal ones the number of all of them,
// which stands for the whole model elsewhere, is beyond it.
int LastPredictive(Vector const &vector, ModelInfo const &info) {
    return vector.GetComponentType() == Vector::ComponentPredictive && !vector.PredictiveComponentDefaultsToLast()
               ? info.SizePredictiveComponents()
               : info.SizeComponents();
}

// A contribution with a weight that the model does not have would show nothing.
bool HasWeight(ModelInfo const &info, WeightTypeE::WeightType weight) {
    switch (weight) {
    case WeightTypeE::PO:
        return info.SizeXSideOrthogonalComponents() > 0;
    case WeightTypeE::WStar:
    case WeightTypeE::RY:
    case WeightTypeE::CoeffCS:
    case WeightTypeE::CoeffCSRaw:
    case WeightTypeE::VIP:
        return (info.type & ModelTypeE::WithY) != 0;
    default:
        return true;
    }
}

// The last component that such a weight can be of.
int LastOfWeight(ModelInfo const &info, WeightTypeE::WeightType weight) {
    switch (weight) {
    case WeightTypeE::P:
    case WeightTypeE::WStar:
        return info.SizePredictiveComponents();
    case WeightTypeE::PO:
        return info.SizeXSideOrthogonalComponents();
    default:
        return info.SizeComponents();
    }
}

} // namespace

ModelTypeVectorUpdate::ModelTypeVectorUpdate(ProjectPtr const &ofProject, int modelNumber)
    : project(ofProject), info(project->GetModelInfo(modelNumber)), model(project->GetModel(modelNumber)),
      isWCS(ProjectUtilities::IsWCSModel(*project, modelNumber)) {}

bool ModelTypeVectorUpdate::operator()(ProjectVectorData &data) const {
    Vector const *const old = data.GetProjectVector();
    if (!old || old->IsNumVector())
        return false;
    ProjectVectorHandler const &catalogue = *ProjectVectorHandler::Instance();
    auto const place =
        catalogue.Find(NameOnModel(old->GetName(), *model, isWCS), old->GetType(), old->GetDataType(), info.get());
    Vector const *const found = place == catalogue.end() ? nullptr : *place;
    bool const isValid = found && found->IsValidModel(*project, *info);
    if (isValid && found == old)
        return false;
    data.SetProjectVector(isValid ? found : nullptr);
    if (!isValid)
        return false;
    if (found->PredictiveComponentDefaultsToLast())
        for (auto const kind :
             {Vector::ComponentPredictive, Vector::ComponentXSideOrthogonal, Vector::ComponentYSideOrthogonal})
            if ((found->GetComponentType() & ~old->GetComponentType() & kind) != 0)
                data.SetComponent(kind, -1);
    return true;
}

// The model that specifications are brought to.
struct SwitchModelUpdate::Target {
    int number;
    ModelInfo const &info;
    NCModel const &model;
    XTermsOfModel xTerms;
    RowsOfModel rows;
    BatchesOfModels batches; // of the models that are left, too
};

SwitchModelUpdate::SwitchModelUpdate(NCProject const &project, ModelInfo const *target,
                                     ProjectUtilities::DefaultSelection *defaults, bool keepOnMismatch)
    : m_project(project), m_defaults(defaults), m_keepOnMismatch(keepOnMismatch),
      m_vectorUpdate(project.shared_from_this(), target->number),
      m_target(new Target{target->number, *m_vectorUpdate.info, *m_vectorUpdate.model,
                          XTermsOfModel(project, m_vectorUpdate.model), RowsOfModel(project, target->number),
                          BatchesOfModels(project)}) {}

SwitchModelUpdate::~SwitchModelUpdate() = default;

bool SwitchModelUpdate::operator()(ProjectVectorData &data) const {
    if (!data.GetModelInfo() || !data.GetProjectVector() || data.GetProjectVector()->IsNumVector())
        return true;
    m_vectorUpdate(data);
    Vector const *const vector = data.GetProjectVector();
    if (!vector || !HasAxis(m_target->info, *vector))
        return false;
    if (IsPredicted(data))
        m_target->rows.Get(true);
    UpdateComponents(data, *data.GetModelInfo());
    UpdatePair(data);
    if ((vector->IsXVector() && !UpdateXTerm(data)) || (vector->IsYVector() && !UpdateYTerm(data)) ||
        (vector->UseBatchIx() && !UpdateBatch(data)))
        return false;
    return !vector->IsContribution() || UpdateContribution(data);
}

void SwitchModelUpdate::UpdateComponents(ProjectVectorData &data, ModelInfo const &source) const {
    Vector const &vector = *data.GetProjectVector();
    ModelInfo const &info = m_target->info;
    int const kinds = vector.GetComponentType();
    if ((kinds & Vector::ComponentPredictive) != 0) {
        int const last = LastPredictive(vector, info);
        int const stored = data.GetPredComponent(false);
        int const current = stored == -1 ? source.SizeComponents() : stored;
        bool const isOpenBeyond = stored == -1 && info.SizeComponents() > last;
        if (current > last || isOpenBeyond)
            data.SetPredComponent(vector.PredictiveComponentDefaultsToLast() ? -1 : last);
    }
    if ((kinds & Vector::ComponentXSideOrthogonal) != 0) {
        int const stored = data.GetXSideOrthoComponent(false);
        if ((stored == -1 ? source.SizeXSideOrthogonalComponents() : stored) > info.SizeXSideOrthogonalComponents())
            data.SetXSideOrthoComponent(-1);
    }
    if ((kinds & Vector::ComponentYSideOrthogonal) != 0) {
        int const last = info.SizeYSideOrthogonalComponents();
        int const stored = data.GetYSideOrthoComponent(false);
        if ((stored == -1 ? source.SizeYSideOrthogonalComponents() : stored) > last)
            data.SetYSideOrthoComponent(vector.YOrthoComponentDefaultsToLast() ? -1 : last);
    }
}

void SwitchModelUpdate::UpdatePair(ProjectVectorData &data) const {
    Vector const &vector = *data.GetProjectVector();
    if (vector.GetNumberType() != Vector::NumberComponentRange &&
        vector.GetNumberType() != Vector::NumberBatchComponentRange)
        return;
    int const first = Vector::SelectMaxComponents(vector.GetDoubleCompComponentType(1), m_target->info);
    int const second = Vector::SelectMaxComponents(vector.GetDoubleCompComponentType(2), m_target->info);
    if (static_cast<int>(data.GetNumber(nullptr)) > first)
        data.SetNumber(static_cast<std::uint32_t>(first));
    // An open one is below any limit.
    if (static_cast<int>(data.GetNumberID2(nullptr, false)) > second)
        data.SetNumberID2(static_cast<std::uint32_t>(second));
}

bool SwitchModelUpdate::TakeDefaultNumber(ProjectVectorData &data) const {
    if (!m_keepOnMismatch)
        return false;
    boost::shared_ptr<ModelInfo const> const source = data.GetModelInfoPtr();
    data.SetModelInfoPtr(m_vectorUpdate.info);
    data.SetDefaultNumberID(*m_defaults);
    data.SetModelInfoPtr(source);
    return true;
}

bool SwitchModelUpdate::UpdateXTerm(ProjectVectorData &data) const {
    int const position = m_target->xTerms.Find(data, m_defaults);
    if (position == 0)
        return TakeDefaultNumber(data);
    data.SetNumber(static_cast<std::uint32_t>(position));
    return true;
}

bool SwitchModelUpdate::UpdateYTerm(ProjectVectorData &data) const {
    auto const source = ModelOf(data, m_project);
    ColumnTerms const &terms = m_target->model.GetYColumnTerms();
    bool const isSecond = data.GetProjectVector()->GetNumberType() == Vector::NumberXAndYVariable;
    std::uint32_t const number = isSecond ? data.GetNumberID2(m_defaults, true) : data.GetNumber(m_defaults);
    ColumnTerm const *const term = source ? TermAt(source->GetYColumnTerms(), number) : nullptr;
    if (!term || terms.Size() == 0)
        return false;
    auto const store = [&](int position) {
        if (isSecond)
            data.SetNumberID2(static_cast<std::uint32_t>(position));
        else
            data.SetNumber(static_cast<std::uint32_t>(position));
        return true;
    };
    if (int const position = terms.Find(*term); position != -1)
        return store(position);
    if (TakeDefaultNumber(data))
        return true;
    return source->GetYColumnTerms().Size() == 1 && terms.Size() == 1 && store(-1);
}

bool SwitchModelUpdate::UpdateBatch(ProjectVectorData &data) const {
    BatchesOfModels &batches = m_target->batches;
    int const source = data.GetModelInfo()->number;
    if (!batches.AreThere(m_target->number) || !batches.AreThere(source))
        return false;
    if (data.batchIx < 1)
        return true;
    bool const isPredicted = IsPredicted(data);
    std::string const name = batches.NameOf(source, isPredicted, data.batchIx);
    int const index = batches.Find(m_target->number, isPredicted, name);
    if (index == 0)
        return TakeDefaultNumber(data);
    data.batchIx = index;
    return true;
}

bool SwitchModelUpdate::UpdateContribution(ProjectVectorData &data) const {
    if (!UpdateYVar(data) || !UpdateWeights(data))
        return false;
    if (m_target->batches.AreThere(m_target->number))
        return UpdatePoints(data);
    UpdateRows(data);
    return true;
}

bool SwitchModelUpdate::UpdateYVar(ProjectVectorData &data) const {
    if (!data.IsYVarContribution())
        return true;
    auto const source = ModelOf(data, m_project);
    ColumnTerm const *const term =
        source ? TermAt(source->GetYColumnTerms(), static_cast<std::uint32_t>(data.GetYVar(*m_defaults))) : nullptr;
    int const position = term ? m_target->model.GetYColumnTerms().FindFirst(term->GetMotherVariable(1)) : -1;
    if (position == -1)
        return false;
    data.SetYVar(position);
    return true;
}

bool SwitchModelUpdate::UpdateWeights(ProjectVectorData &data) const {
    std::vector<int> const &components = data.GetWeightComp();
    if (components.empty())
        return true;
    ModelInfo const &info = m_target->info;
    bool const areListed = data.GetWeightTypeVec().size() == components.size();
    WeightTypes const weights =
        areListed ? data.GetWeightTypeVec() : Weight::NCWeightType(data.GetWeightType(), &info, components);
    auto const isThere = [&info](WeightTypeE::WeightType weight) { return HasWeight(info, weight); };
    if (!(areListed ? std::ranges::any_of(weights, isThere) : std::ranges::all_of(weights, isThere)))
        return false;
    WeightTypes keptWeights;
    std::vector<int> kept;
    for (std::size_t i = 0; i < components.size(); ++i) {
        auto const weight = i < weights.size() ? weights[i] : WeightTypeE::Normalized;
        if (components[i] > LastOfWeight(info, weight) || (areListed && !isThere(weight)))
            continue;
        kept.push_back(components[i]);
        keptWeights.push_back(weight);
    }
    if (kept.empty()) {
        int const last = LastOfWeight(info, weights.empty() ? WeightTypeE::Normalized : weights.front());
        if (last < data.GetProjectVector()->GetFirstComponent())
            return false;
        kept.push_back(last);
    }
    if (areListed)
        data.SetContributionWeight(keptWeights, kept);
    else
        data.SetWeightComp(kept);
    return true;
}

// Observations that are not there go.
void SwitchModelUpdate::UpdateRows(ProjectVectorData &data) const {
    bool const isPredicted = IsPredicted(data);
    RowsOfModel source(m_project, data.GetModelInfo()->number);
    ObservationInfos const *const rows = source.Get(isPredicted);
    for (std::vector<int> *const group : {&data.obs1, &data.obs2}) {
        std::vector<int> moved;
        for (int const position : *group)
            if (int const found = rows ? m_target->rows.Find(*rows, position, isPredicted) : 0; found != 0)
                moved.push_back(found);
        *group = std::move(moved);
    }
}

bool SwitchModelUpdate::UpdatePoints(ProjectVectorData &data) const {
    bool const isPredicted = IsPredicted(data);
    auto const isThere = [&](std::string const &batch) {
        return m_target->batches.Find(m_target->number, isPredicted, batch) != 0;
    };
    // The average batch, which has no name, is there as a reference alone.
    auto const isGone = [&](BatchPoints &points, bool withAverage) {
        bool const hadPoints = !points.empty();
        std::erase_if(points, [&](BatchPoints::value_type const &point) {
            return !(withAverage && point.first.empty()) && !isThere(point.first);
        });
        return hadPoints && points.empty();
    };
    return !isGone(data.contRef, true) && !isGone(data.contGroup, false);
}

} // namespace DataSeriesUtilities
