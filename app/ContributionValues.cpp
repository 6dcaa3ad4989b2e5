#include "app/ContributionValues.h"

#include "app/Series.h"
#include "app/SeriesSpecification.h"
#include "contribution/ContributionDataBuilder.h"
#include "platform/containers/Missing.h"
#include "utilities/BatchConverter.h"
#include "utilities/DefaultSelection.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace {

using Axis = ProjectVector::VectorTypeEnum;

// In a chart of batches.
constexpr float limitDeviations = 3;
// More points of rows that nobody asked about can't be told apart.
constexpr std::size_t mostOthers = 3000;

TablePtr Read(boost::shared_ptr<engine::Project> const &project, VariableQuestion const &question, Axis axis,
              int batch) {
    Source const source = ReadSource(*project, "M" + std::to_string(question.model));
    ProjectVector const *const vector = Find(question.vector, axis, source);
    if (!vector)
        throw Unknown(question.vector, axis, source);
    ProjectUtilities::DefaultSelection const defaults(project);
    ProjectVectorData data = DefaultSpecification(*vector, source, defaults);
    data.SetNumber(static_cast<std::uint32_t>(question.term));
    if (vector->HasOneComponent())
        data.SetComponent(question.component);
    data.batchIx = batch;
    return ReadSeries(*project, {.project = {}, .texts = {data.ToStdString(&defaults)}, .axis = axis}).table;
}

std::vector<float> FirstRow(TablePtr const &table) {
    std::span<float const> const row = table->GetMatrix().Row(1);
    return {row.begin(), row.end()};
}

// Of observed values.
class Mean {
public:
    void Add(float value) {
        if (IsMissing(value))
            return;
        m_sum += value;
        ++m_count;
    }
    float Get() const { return m_count == 0 ? missingValue : static_cast<float>(m_sum / m_count); }

private:
    double m_sum = 0;
    int m_count = 0;
};

// Of values at places from 1, of which some may be too many.
float MeanOf(std::vector<float> const &values, std::vector<int> const &places) {
    Mean mean;
    for (int const place : places)
        if (place >= 1 && place <= static_cast<int>(values.size()))
            mean.Add(values[static_cast<std::size_t>(place - 1)]);
    return mean.Get();
}

float MeanOf(std::vector<float> const &values) {
    Mean mean;
    for (float const value : values)
        mean.Add(value);
    return mean.Get();
}

VariableLayer Marked(VariableLayer layer, std::vector<int> const &places, std::vector<float> const &values) {
    for (int const place : places)
        if (place >= 1 && place <= static_cast<int>(values.size())) {
            layer.x.push_back(static_cast<float>(place));
            layer.y.push_back(values[static_cast<std::size_t>(place - 1)]);
        }
    return layer;
}

} // namespace

TablePtr ReadRows(boost::shared_ptr<engine::Project> const &project, VariableQuestion const &question) {
    return Read(project, question, ProjectVector::VectorTypeVariablesScores, ProjectVectorData().batchIx);
}

TablePtr ReadBatch(boost::shared_ptr<engine::Project> const &project, VariableQuestion const &question, int batch) {
    return Read(project, question, ProjectVector::VectorTypeAligned, batch);
}

ContributionValues::ContributionValues(boost::shared_ptr<engine::Project> const &project,
                                       ProjectVectorData const &asked)
    : m_project(project), m_asked(asked), m_model(asked.GetModelInfo()->number) {
    constexpr int ofScores = 1, ofAlignedScores = 5, ofY = 4, ofAlignedY = 7;
    int const kind = asked.GetProjectVector()->GetContributionKind();
    m_isDistance = kind != ofScores && kind != ofAlignedScores;
    m_isOfY = kind == ofY || kind == ofAlignedY;
    // A distance has its group where scores have their reference.
    m_rows = m_isDistance ? asked.obs1 : asked.obs2;
    m_referenceRows = m_isDistance ? std::vector<int>() : asked.obs1;
    m_points = m_isDistance ? asked.contRef : asked.contGroup;
    m_referencePoints = m_isDistance ? m_points : asked.contRef;
    if (!IsAligned())
        return;
    if (m_isDistance)
        for (auto &[batch, maturity] : m_referencePoints)
            batch.clear();
    ProjectUtilities::BatchConverter const places(*m_project, m_model, IsPredicted());
    for (BatchPoints const &group : {m_points, m_referencePoints})
        for (auto const &[batch, maturity] : group)
            if (!batch.empty() && !m_places.contains(batch)) {
                std::vector<int> place;
                places.FromBatchToIndex({batch}, place);
                m_places[batch] = place.at(0);
            }
    ColumnIDs const points = ReadBatch(m_project, Question(1, "Var", false), -1)->GetColumnIDs();
    for (int point = 1; point <= points.Size(); ++point)
        m_maturity.push_back(points.GetFloatValue(point));
}

std::string ContributionValues::HeldAgainst() const {
    if (IsAligned())
        return ContributionDataBuilder::IsOnlyAverageBatch(m_referencePoints) ? "average" : "reference";
    if (m_isDistance && m_asked.GetWeightComp().front() > 0)
        return "predicted";
    return m_referenceRows.empty() ? "average" : "reference";
}

// "Var" and "Pred" are those of the side that the contribution is about.
VariableQuestion ContributionValues::Question(int term, std::string const &vector, bool predicted) const {
    bool const isPrediction = vector == "Pred";
    std::string const name = m_isOfY ? "Y" + vector : isPrediction ? "XVarPred" : "X" + vector;
    return {name + (predicted ? "PS" : ""), m_model, term, isPrediction ? m_asked.GetWeightComp().front() : -1};
}

ContributionValues::Values ContributionValues::Rows(int term, std::string const &vector, bool predicted) const {
    return FirstRow(ReadRows(m_project, Question(term, vector, predicted)));
}

ContributionValues::Values ContributionValues::Batch(int term, std::string const &name) const {
    if (name.empty())
        return FirstRow(ReadBatch(m_project, Question(term, "Var", false), -1));
    return FirstRow(ReadBatch(m_project, Question(term, "Var", IsPredicted()), m_places.at(name)));
}

std::size_t ContributionValues::NearestPoint(float maturity) const {
    auto const distance = [maturity](float each) { return std::abs(each - maturity); };
    return static_cast<std::size_t>(std::ranges::min_element(m_maturity, {}, distance) - m_maturity.begin());
}

float ContributionValues::MeanOf(int term, BatchPoints const &points) const {
    std::map<std::string, Values> batches;
    Mean mean;
    for (auto const &[name, maturity] : points) {
        auto const [batch, isNew] = batches.try_emplace(name);
        if (isNew)
            batch->second = Batch(term, name);
        mean.Add(batch->second[NearestPoint(maturity)]);
    }
    return mean.Get();
}

std::pair<float, float> ContributionValues::Means(int term) const {
    if (IsAligned())
        return {MeanOf(term, m_points), MeanOf(term, m_referencePoints)};
    Values const values = Rows(term, "Var", IsPredicted());
    float const group = ::MeanOf(values, m_rows);
    if (IsHeldAgainstModel())
        return {group, ::MeanOf(Rows(term, "Pred", IsPredicted()), m_rows)};
    if (!m_referenceRows.empty())
        return {group, ::MeanOf(values, m_referenceRows)};
    return {group, ::MeanOf(IsPredicted() ? Rows(term, "Var", false) : values)};
}

VariableView ContributionValues::View(int term) const {
    return IsAligned() ? ViewOfBatches(term) : ViewOfRows(term);
}

VariableView ContributionValues::ViewOfRows(int term) const {
    Values const values = Rows(term, "Var", IsPredicted());
    VariableView view = {IsPredicted() ? "row of the prediction set" : "row of the model", {}};
    VariableLayer others = {VariableLayer::Others, IsPredicted() ? "prediction set" : "model"};
    std::size_t const step = std::max<std::size_t>(1, values.size() / mostOthers);
    for (std::size_t row = 0; row < values.size(); row += step) {
        others.x.push_back(static_cast<float>(row + 1));
        others.y.push_back(values[row]);
    }
    view.layers.push_back(std::move(others));
    std::string const against = HeldAgainst();
    VariableLayer reference = {VariableLayer::Reference, against};
    if (IsHeldAgainstModel())
        reference = Marked(reference, m_rows, Rows(term, "Pred", IsPredicted()));
    else if (!m_referenceRows.empty())
        reference = Marked(reference, m_referenceRows, values);
    else
        reference = {
            VariableLayer::Average, against, {1, static_cast<float>(values.size())}, Values(2, Means(term).second)};
    view.layers.push_back(std::move(reference));
    view.layers.push_back(Marked({VariableLayer::Group, "group"}, m_rows, values));
    return view;
}

void ContributionValues::AddBatches(int term, BatchPoints const &points, VariableLayer const &marks,
                                    VariableView &view) const {
    std::map<std::string, Values> batches;
    VariableLayer marked = marks;
    for (auto const &[name, maturity] : points) {
        if (name.empty())
            continue;
        auto const [batch, isNew] = batches.try_emplace(name);
        if (isNew) {
            batch->second = Batch(term, name);
            view.layers.push_back({VariableLayer::Curve, name, m_maturity, batch->second});
        }
        std::size_t const point = NearestPoint(maturity);
        marked.x.push_back(m_maturity[point]);
        marked.y.push_back(batch->second[point]);
    }
    view.layers.push_back(std::move(marked));
}

VariableView ContributionValues::ViewOfBatches(int term) const {
    TablePtr const table = ReadBatch(m_project, Question(term, "Var", false), -1);
    Values const average = FirstRow(table);
    Values const deviation = FirstRow(ReadBatch(m_project, Question(term, "Var", false), 0));
    VariableView view = {table->GetColumnIDs().GetTitle(), {}};
    for (float const deviations : {limitDeviations, -limitDeviations}) {
        Values limit(average.size(), missingValue);
        for (std::size_t point = 0; point < average.size(); ++point)
            if (!IsMissing(average[point]) && !IsMissing(deviation[point]))
                limit[point] = average[point] + deviations * deviation[point];
        view.layers.push_back(
            {VariableLayer::Limit, deviations > 0 ? "limits of 3 SD" : "", m_maturity, std::move(limit)});
    }
    view.layers.push_back({VariableLayer::Average, "average", m_maturity, average});
    AddBatches(term, m_referencePoints, {VariableLayer::Reference, "reference"}, view);
    AddBatches(term, m_points, {VariableLayer::Group, "group"}, view);
    return view;
}
