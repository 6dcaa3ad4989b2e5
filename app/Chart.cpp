#include "app/Chart.h"

#include "app/Failure.h"
#include "app/Series.h"
#include "app/SeriesSpecification.h"
#include "building/CreateProjectData.h"
#include "platform/containers/Missing.h"
#include "platform/project/ModelUtilities.h"
#include "utilities/DefaultSelection.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr auto aligned = ProjectVector::VectorTypeAligned;
constexpr auto perBatch = ProjectVector::VectorTypeBatch;

// Batch indexes of argument texts.
constexpr int listOfBatches = -2;
constexpr int averageOfBatches = -1;
constexpr int deviationOfBatches = 0;

struct ChartedVector {
    std::string name;
    std::string sumName; // with "PS" for predictions, and "AlignedOOCSum"
    bool hasLower;
};

ChartedVector const &Charted(std::string const &name) {
    static ChartedVector const all[] = {{"t", "T", true},          {"to", "TO", true},
                                        {"DModX", "DModX", false}, {"T2Range", "T2Range", false},
                                        {"YPred", "YPred", true},  {"XVar", "XVar", true}};
    auto const found = std::ranges::find(all, name, &ChartedVector::name);
    if (found == std::end(all))
        throw UsageError("\"" + name + "\" has no control chart: give t:1, to:1, DModX, T2Range, YPred or XVar:NAME");
    return *found;
}

// Asks one model after the other.
class ChartReader {
public:
    ChartReader(boost::shared_ptr<engine::Project> const &project, ChartQuestion const &question)
        : m_project(project), m_question(question), m_defaults(project), m_text(ReadVectorText(question.vector)),
          m_charted(Charted(m_text.name)) {
        auto const info = project->GetModelInfo(question.model);
        if (!info)
            throw Problem(ExceptionMessage::translate("There is no model {1}.") % question.model);
        if (!info->isBatchModel || info->isBatchLevel)
            throw Problem(ExceptionMessage::translate("Model {1} is no model of the evolution of batches; "
                                                      "\"dataseries fit --type batch\" makes one.") %
                          question.model);
        if (info->SizeComponents() == 0)
            throw Problem(ExceptionMessage::translate("Model {1} has no components.") % question.model);
        if (m_text.source && *m_text.source != SourceOf(question.model))
            throw UsageError("\"" + m_text.whole + "\" asks for another model than --model " +
                             std::to_string(question.model));
        for (int const model :
             ModelUtilities::FindMatchingModels(*project, question.model, true, MatchingModelE::SamePhaseGroup))
            if (auto const phase = Find(model))
                m_phases.push_back(*phase);
    }

    std::vector<ChartPhase> Chart() const {
        std::vector<ChartPhase> chart;
        for (Phase const &phase : m_phases)
            chart.push_back(ReadPhase(phase));
        return chart;
    }

    ChartSums Sums() const {
        ChartSums all;
        for (Phase const &phase : m_phases) {
            std::size_t const place = all.phases.size();
            all.phases.push_back(phase.name);
            TablePtr const table = Read(SumsText(phase), perBatch);
            for (int batch = 1; batch <= table->Columns(); ++batch) {
                BatchSum &sum = SumOf(all, table->GetColumnName(batch));
                sum.sums[place] = table->GetMatrix()(1, batch);
            }
        }
        std::ranges::stable_sort(all.batches, std::greater<>(), &BatchSum::Total);
        return all;
    }

    ProjectVectorData SumsOfModelAsked() const { return Find(m_question.model)->sums; }

private:
    struct Phase {
        std::string name;
        ProjectVectorData values, spread, sums;
    };

    static std::string SourceOf(int model) { return "M" + std::to_string(model); }

    ProjectVectorData Specification(std::string const &name, int model, ProjectVector::VectorTypeEnum axis) const {
        return Specify(m_project, {m_text.whole, name, m_text.argument, SourceOf(model)}, axis, m_defaults);
    }

    // Nothing for another model than the one asked, when it lacks the component or the variable.
    std::optional<Phase> Find(int model) const {
        std::string const set = m_question.ofPredictions ? "PS" : "";
        try {
            Phase phase = {ModelUtilities::GetPhaseName(*m_project, model),
                           Specification(m_charted.name + set, model, aligned),
                           Specification(m_charted.name, model, aligned),
                           Specification(m_charted.sumName + set + "AlignedOOCSum", model, perBatch)};
            phase.sums.multiplier1 = m_question.multiplier;
            phase.sums.multiplier2 = m_charted.hasLower ? -m_question.multiplier : ProjectVectorData::NoMultiplier;
            return phase;
        } catch (NCError const &) {
            if (model == m_question.model)
                throw;
            return {};
        }
    }

    // The range of a specification ends with the predictive components. T2Range of OPLS is of those and the X-side
    // orthogonal ones, and so are its sums.
    std::string SumsText(Phase const &phase) const {
        ModelInfo const &model = *phase.sums.GetModelInfo();
        if (m_charted.name != "T2Range" || !ModelTypeE::IsOPLSorO2PLS(model.type))
            return phase.sums.ToStdString(&m_defaults);
        int const last = model.SizePredictiveComponents() + model.SizeXSideOrthogonalComponents();
        return std::string(phase.sums.GetProjectVector()->GetName()) + " " + SourceOf(model.number) + ",0,1,0," +
               std::to_string(last) + "," + std::to_string(m_question.multiplier);
    }

    TablePtr Read(std::string const &text, ProjectVector::VectorTypeEnum axis) const {
        return ReadSeries(*m_project, {.project = {}, .texts = {text}, .axis = axis}).table;
    }
    TablePtr Read(ProjectVectorData data, int batch, std::string const &list = {}) const {
        data.batchIx = batch;
        return Read(data.ToStdString(&m_defaults) + list, aligned);
    }

    static std::vector<float> Row(TablePtr const &table, int row) {
        std::span<float const> const values = table->GetMatrix().Row(row);
        return {values.begin(), values.end()};
    }

    // The average and so many standard deviations.
    static std::vector<float> Limit(std::vector<float> const &average, std::vector<float> const &deviation,
                                    double multiplier) {
        std::vector<float> limit(average.size(), missingValue);
        for (std::size_t point = 0; point < average.size(); ++point)
            if (!IsMissing(average[point]) && !IsMissing(deviation[point]))
                limit[point] = static_cast<float>(average[point] + multiplier * deviation[point]);
        return limit;
    }

    ChartPhase ReadPhase(Phase const &phase) const {
        TablePtr const average = Read(phase.spread, averageOfBatches);
        std::vector<float> const deviation = Row(Read(phase.spread, deviationOfBatches), 1);
        ChartPhase read = {phase.name, average->GetColumnIDs().GetTitle(), {}, Row(average, 1), {}, {}, {}};
        for (int point = 1; point <= average->Columns(); ++point)
            read.maturity.push_back(average->GetColumnIDs().GetFloatValue(point));
        read.upper = Limit(read.average, deviation, m_question.multiplier);
        if (m_charted.hasLower)
            read.lower = Limit(read.average, deviation, -m_question.multiplier);
        ColumnIDs const batches =
            ProjectDataUtilities::CreateProjectData(*m_project).GetColumnIDs(SumsText(phase), perBatch);
        std::string list;
        for (int batch = 1; batch <= batches.Size(); ++batch)
            list += "," + std::to_string(batch);
        TablePtr const curves = Read(phase.values, listOfBatches, list);
        for (int batch = 1; batch <= curves->Rows(); ++batch)
            read.curves.push_back({batches.GetName(batch), Row(curves, batch), {}});
        return read;
    }

    BatchSum &SumOf(ChartSums &all, std::string const &batch) const {
        auto const found = std::ranges::find(all.batches, batch, &BatchSum::batch);
        return found != all.batches.end() ? *found
                                          : all.batches.emplace_back(batch, std::vector<float>(m_phases.size()));
    }

    boost::shared_ptr<engine::Project> m_project;
    ChartQuestion const &m_question;
    ProjectUtilities::DefaultSelection m_defaults;
    VectorText m_text;
    ChartedVector const &m_charted;
    std::vector<Phase> m_phases;
};

} // namespace

bool ChartPhase::IsOutside(BatchCurve const &curve, std::size_t point) const {
    float const value = curve.values[point];
    if (IsMissing(value) || IsMissing(upper[point]))
        return false;
    return value > upper[point] || (!lower.empty() && value < lower[point]);
}

double BatchSum::Total() const {
    return std::accumulate(sums.begin(), sums.end(), 0.0);
}

std::vector<ChartPhase> ReadChart(boost::shared_ptr<engine::Project> const &project, ChartQuestion const &question) {
    return ChartReader(project, question).Chart();
}

ChartSums ReadSums(boost::shared_ptr<engine::Project> const &project, ChartQuestion const &question) {
    return ChartReader(project, question).Sums();
}

ProjectVectorData ChartedSums(boost::shared_ptr<engine::Project> const &project, ChartQuestion const &question) {
    return ChartReader(project, question).SumsOfModelAsked();
}
