#include "contribution/OOCBatchContributionBuilder.h"

#include "contribution/ModelRows_internal.h"
#include "platform/containers/Missing.h"
#include "platform/numerics/Sta.h"
#include "platform/project/GetProjectData.h"
#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"
#include "specification/ProjectVectorData.h"

#include <cstdlib>
#include <functional>
#include <string_view>
#include <unordered_map>

using Builder = OOCBatchContributionBuilder;
using ProjectUtilities::DefaultSelection;
using Matrix = NCDataMatrix<float>;

namespace {

// The values of an out-of-control sum, batches by points: those it is about, and those of the workset, which make the
// limits.
struct Values {
    Matrix shown;
    Matrix workset;
};

// Reads them for one specification.
class ValuesReader {
public:
    ValuesReader(NCProject const &project, ProjectVectorData const &data, DefaultSelection *defaults)
        : m_data(data), m_defaults(defaults), m_model(project.GetModel(data.GetModelInfo()->number)),
          m_matrices(project, {}, data.backTransformed) {}

    // Empty for any other vector, and where there is no such variable.
    Values Read() const {
        int const model = m_model->GetModelNumber(), component = m_data.GetComponent(true);
        std::string_view const name = m_data.GetProjectVector()->GetName();
        if (name == "TPSAlignedOOCSum")
            return {m_matrices.GetAlignedTPSMat(model, component), OfModel(&NCBatchModel::GetAlignedScores)};
        if (name == "TAlignedOOCSum")
            return Own(OfModel(&NCBatchModel::GetAlignedScores));
        if (name == "TOAlignedOOCSum")
            return Own(m_matrices.GetAlignedTOMat(model, component));
        if (name == "DModXPSAlignedOOCSum")
            return {m_matrices.GetAlignedDModXPSMat(model, component), OfModel(&NCBatchModel::GetAlignedDModX)};
        if (name == "DModXAlignedOOCSum")
            return Own(OfModel(&NCBatchModel::GetAlignedDModX));
        if (name == "XVarPSAlignedOOCSum" || name == "XVarAlignedOOCSum")
            return OfTerm(m_model->GetXColumnTerms(), [&](ColumnTerm const &term, bool isPredicted) {
                return isPredicted ? m_matrices.GetAlignedXVarPSMat(model, term)
                                   : m_matrices.GetAlignedXVarMatrix(model, term);
            });
        if (name == "YPredPSAlignedOOCSum" || name == "YPredAlignedOOCSum")
            return OfTerm(m_model->GetYColumnTerms(), [&](ColumnTerm const &term, bool isPredicted) {
                return isPredicted ? m_matrices.GetAlignedYPredPSMat(model, component, term)
                                   : m_matrices.GetAlignedYPredMat(model, component, term);
            });
        return {};
    }

private:
    static Values Own(Matrix const &matrix) { return {matrix, matrix}; }

    Matrix OfModel(Matrix (NCBatchModel::*aligned)(int) const) const {
        auto const *const ofBatches = dynamic_cast<NCBatchModel const *>(m_model.get());
        return ofBatches ? (ofBatches->*aligned)(m_data.GetComponent(true)) : Matrix();
    }

    Values OfTerm(ColumnTerms const &terms, std::function<Matrix(ColumnTerm const &, bool)> const &read) const {
        std::uint32_t const number = m_data.GetNumber(m_defaults);
        if (number < 1 || number > static_cast<std::uint32_t>(terms.Size()))
            return {};
        ColumnTerm const &term = terms[static_cast<int>(number)];
        if (m_data.GetProjectVector()->GetObsPredType() == ProjectVector::Predicted)
            return {read(term, true), read(term, false)};
        return Own(read(term, false));
    }

    ProjectVectorData const &m_data;
    DefaultSelection *m_defaults;
    boost::shared_ptr<NCModel const> m_model;
    GetProjectDataMatrix m_matrices;
};

// The points of each batch at which the value is beyond the limit.
template <typename IsOut>
void AddPoints(Matrix const &matrix, IsOut isOut, std::vector<std::set<int>> &out) {
    for (int batch = 1; batch <= matrix.Rows(); ++batch) {
        std::set<int> &points = out[static_cast<std::size_t>(batch - 1)];
        int point = 0;
        for (float const value : matrix.Row(batch))
            if (++point; !IsMissing(value) && isOut(value, point))
                points.insert(points.end(), point);
    }
}

} // namespace

void Builder::CalculateOOCBatches(Matrix const &matrix, NCDataVector<float> const &average,
                                  NCDataVector<float> const &deviation, double multiplier1, double multiplier2,
                                  PointSets &out) {
    out.assign(static_cast<std::size_t>(matrix.Rows()), {});
    for (double const multiplier : {multiplier1, multiplier2}) {
        if (multiplier == ProjectVectorData::NoMultiplier)
            continue;
        AddPoints(
            matrix,
            [&](double value, int point) {
                if (IsMissing(average[point]) || IsMissing(deviation[point]))
                    return false;
                double const limit = average[point] + deviation[point] * multiplier;
                return multiplier > 0 ? value > limit : limit > value;
            },
            out);
    }
}

void Builder::GetOOCOfT2(ProjectVectorData const &data, bool predicted, PointSets &out) const {
    int const first = static_cast<int>(data.GetNumber(nullptr)), last = data.GetNumberID2Component();
    int const components = std::abs(last - first) + 1;
    int const model = data.GetModelInfo()->number;
    int const batches = ModelRows(*m_project, model, false).Batches().names.Size();
    if (batches <= components)
        throw Exception(ExceptionMessage::translate("T2Crit can not be calculated."));
    constexpr float probability = 0.01f;
    float const quotient = static_cast<float>((batches - 1) * components) / static_cast<float>(batches - components);
    double const critical = Sta::FFTest(components, batches - components, probability) * quotient;
    GetProjectDataMatrix const matrices(*m_project, {}, true);
    Matrix const matrix = predicted ? matrices.GetAlignedT2RangePSMat(model, first, last)
                                    : matrices.GetAlignedT2RangeMat(model, first, last);
    out.assign(static_cast<std::size_t>(matrix.Rows()), {});
    AddPoints(
        matrix, [critical](double value, int) { return value > critical; }, out);
}

void Builder::GetOOCBatches(ProjectVectorData const &data, PointSets &out, DefaultSelection *defaults) const {
    std::string_view const name = data.GetProjectVector()->GetName();
    if (name == "T2RangeAlignedOOCSum" || name == "T2RangePSAlignedOOCSum")
        return GetOOCOfT2(data, name == "T2RangePSAlignedOOCSum", out);
    Values const values = ValuesReader(*m_project, data, defaults).Read();
    if (values.shown.Rows() == 0 || values.shown.Columns() != values.workset.Columns())
        return;
    Matrix const limits = GetProjectDataMatrix::CreateAlignedStdDevAndAverageMatrix(values.workset);
    CalculateOOCBatches(values.shown, limits[1], limits[2], data.multiplier1, data.multiplier2, out);
}

void Builder::GetContributionVector(ProjectVectorData const &data, ColumnIDs const *batches, BatchPoints &group,
                                    DefaultSelection *defaults) const {
    ModelInfo const *const info = data.GetModelInfo();
    if (!data.GetProjectVector() || !info || !batches)
        return;
    bool const isPredicted = data.GetProjectVector()->GetObsPredType() == ProjectVector::Predicted;
    NCStringVector const names = ModelRows(*m_project, info->number, isPredicted).Batches().names;
    GetProjectData const labels(*m_project);
    ColumnIDs const points = isPredicted ? labels.GetAlignedPSColumnIDs(info->number, nullptr)
                                         : labels.GetAlignedColumnIDs(info->number, nullptr);
    PointSets sets;
    GetOOCBatches(data, sets, defaults);
    std::unordered_map<std::string_view, std::size_t> placeOf;
    for (std::size_t place = 0; place < names.size(); ++place)
        placeOf.emplace(names.Values()[place], place);
    for (int column = 1; column <= batches->Size(); ++column) {
        std::string const name = batches->GetName(column);
        if (auto const found = placeOf.find(name); found != placeOf.end() && found->second < sets.size())
            for (int const point : sets[found->second])
                group.emplace_back(name, points.GetFloatValue(point));
    }
}
