#include "app/Contribution.h"

#include "app/Chart.h"
#include "app/ContributionValues.h"
#include "app/Failure.h"
#include "app/SeriesSpecification.h"
#include "app/Summary.h"
#include "app/VariableOptions.h"
#include "building/ProjectDataBuilder.h"
#include "contribution/ContributionDataBuilder.h"
#include "contribution/OOCBatchContributionBuilder.h"
#include "platform/containers/Missing.h"
#include "platform/project/ModelUtilities.h"
#include "utilities/DefaultSelection.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <unordered_set>

namespace {

using Builder = ContributionDataBuilder;
using Weight = WeightTypeE;

struct NamedWeight {
    char const *name;
    Weight::WeightType weight;
    bool isOfComponent; // and not of a model of some size
    bool needsY;
};

constexpr NamedWeight namedWeights[] = {
    {"p", Weight::P, true, false},     {"w*", Weight::WStar, true, true},
    {"po", Weight::PO, true, false},   {"CoeffCS", Weight::CoeffCS, false, true},
    {"VIP", Weight::VIP, false, true}, {"RX", Weight::RX, false, false},
    {"RY", Weight::RY, false, true},   {"normalized", Weight::Normalized, false, false},
    {"raw", Weight::Raw, false, false}};

NamedWeight const &WeightOf(std::string const &name) {
    auto const found = std::ranges::find(namedWeights, name, &NamedWeight::name);
    if (found == std::end(namedWeights))
        throw UsageError("There is no weight \"" + name + "\": give " + WeightNames());
    return *found;
}

std::string TextOf(float number) {
    std::ostringstream text;
    text << number;
    return text.str();
}

// "p[1], p[2]".
std::string TextOf(ProjectVectorData const &asked) {
    WeightTypes weights = asked.GetWeightTypeVec();
    if (weights.empty())
        weights =
            ContributionWeightEnum::NCWeightType(asked.GetWeightType(), asked.GetModelInfo(), asked.GetWeightComp());
    std::vector<std::string> names;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        auto const named = std::ranges::find(namedWeights, weights[i], &NamedWeight::weight);
        std::string const name = named == std::end(namedWeights) ? "the coefficients" : named->name;
        bool const isNumbered = named != std::end(namedWeights) && named->isOfComponent;
        bool const hasNumber = isNumbered && i < asked.GetWeightComp().size();
        names.push_back(hasNumber ? name + "[" + std::to_string(asked.GetWeightComp()[i]) + "]" : name);
    }
    return Listed(names);
}

// Makes refusals of the library what a user can meet.
template <typename Work>
auto Asking(Work work) {
    try {
        return work();
    } catch (NCError const &) {
        throw;
    } catch (NCInternalError const &) {
        throw;
    } catch (Exception const &refusal) {
        throw Problem(ExceptionMessage::translate("{1}") % refusal.what());
    }
}

class ContributionReader {
public:
    ContributionReader(boost::shared_ptr<engine::Project> const &project, ContributionQuestion const &question)
        : m_project(project), m_question(question), m_info(project->GetModelInfo(question.model)) {
        if (!m_info)
            throw Problem(ExceptionMessage::translate("There is no model {1}.") % question.model);
        m_name = "model " + std::to_string(question.model);
        CheckKind();
    }

    Contribution Read() {
        if (m_question.ofBatches)
            ReadPoints();
        else
            ReadObservations();
        if (m_question.ofBatches && m_points.empty())
            return {m_question.outOf + " of " + m_name + ": nowhere out of its limits in " + m_groupName, {}, {}, 0};
        Builder::SelectionPtr selection = Asking([this] { return Select(); });
        Contribution contribution = BarsOf(*selection);
        if (m_question.down) {
            std::vector<ContributionBar> const followed = Followed(contribution.bars);
            selection = Asking([&] { return Down(*selection, followed); });
            contribution = BarsOf(*selection);
            contribution.title += "; down from " + m_info->name + " by " + NamesOf(followed);
        }
        return contribution;
    }

private:
    bool IsScoreOrYPred() const {
        return m_question.kind == ContributionQuestion::Score || m_question.kind == ContributionQuestion::YPred;
    }
    std::string Where() const { return m_question.ofPredictions ? "the prediction set" : m_name; }

    void CheckKind() const {
        bool const asksForY =
            m_question.kind == ContributionQuestion::DModY || m_question.kind == ContributionQuestion::YPred;
        if (asksForY && m_info->sizeYVariables == 0)
            throw Problem(ExceptionMessage::translate("Model {1} is {2} and has no Y to explain; give --score or "
                                                      "--dmodx.") %
                          m_question.model % ModelTypeE::GetModelTypeName(m_info->type));
        if (!IsScoreOrYPred() && !m_question.reference.empty())
            throw UsageError("--reference is for --score and --ypred: a distance is that of the group to the model");
        if (m_question.ofBatches && (!m_info->isBatchModel || m_info->isBatchLevel))
            throw Problem(ExceptionMessage::translate("Model {1} is no model of the evolution of batches{2}.") %
                          m_question.model %
                          (m_info->isBatchLevel ? "; its observations are batches, which --group names" : ""));
        if (m_question.ofPredictions && !m_project->GetModelPredSet(m_question.model))
            throw Problem(ExceptionMessage::translate("There is no prediction set; \"dataseries predict\" makes one."));
    }

    ObservationInfos const &Observations() const {
        return m_question.ofPredictions ? m_project->GetPredictions(m_question.model, true)->GetObservations()
                                        : m_project->GetModel(m_question.model)->GetObservations();
    }

    // In the order of the rows.
    Builder::Group ObservationsOf(std::vector<std::string> const &names) const {
        std::unordered_set<std::string_view> wanted(names.begin(), names.end()), left = wanted;
        NCObservations const &list = m_project->GetObservations();
        Builder::Group group;
        for (ObservationInfo const &row : Observations()) {
            std::string const &name = list.GetText(row.GetUniqueID(), 1);
            if (wanted.contains(name)) {
                group.push_back(row.GetUniqueID());
                left.erase(name);
            }
        }
        if (!left.empty())
            throw NotFound("observation", std::string(*left.begin()), AllObservations());
        return group;
    }

    std::vector<std::string> AllObservations() const {
        std::vector<std::string> names;
        for (ObservationInfo const &row : Observations())
            names.push_back(m_project->GetObservations().GetText(row.GetUniqueID(), 1));
        return names;
    }

    NCError NotFound(std::string const &what, std::string const &name, std::vector<std::string> const &found) const {
        return Problem(ExceptionMessage::translate("There is no {1} \"{2}\" in {3}, which has {4}.") % what % name %
                       Where() % Listed(found));
    }

    void ReadObservations() {
        std::vector<std::string> const names = NamesIn(m_question.group), against = NamesIn(m_question.reference);
        m_group = ObservationsOf(names);
        m_reference = ObservationsOf(against);
        m_groupName = Listed(names);
        m_referenceName = Listed(against);
    }

    std::vector<std::string> AllBatches() const {
        NCStringVector const names = BatchUtilities::GetBatchRuns(m_project->GetObservations(), Observations()).names;
        return {names.begin(), names.end()};
    }

    void ReadPoints() {
        m_batches = AllBatches();
        ColumnIDs const points = ReadBatch(m_project, {"YVar", m_question.model}, -1)->GetColumnIDs();
        for (int point = 1; point <= points.Size(); ++point)
            m_maturity.push_back(points.GetFloatValue(point));
        std::vector<std::string> const names = NamesIn(m_question.group), against = NamesIn(m_question.reference);
        for (std::string const &name : against)
            AddPoints(name, m_referencePoints);
        m_referenceName = Listed(against);
        if (m_question.outOf.empty()) {
            for (std::string const &name : names)
                AddPoints(name, m_points);
            m_groupName = (names.size() == 1 ? "batch " : "batches ") + Listed(names);
        } else {
            AddPointsOut(names);
        }
    }

    int PlaceOf(std::string const &batch) const {
        auto const found = std::ranges::find(m_batches, batch);
        if (found == m_batches.end())
            throw NotFound("batch", batch, m_batches);
        return static_cast<int>(found - m_batches.begin()) + 1;
    }

    // "NAME", or "NAME@MATURITY"; a name may hold "@" itself.
    void AddPoints(std::string const &text, BatchPoints &points) const {
        std::size_t const at = text.rfind('@');
        if (at == text.npos || std::ranges::count(m_batches, text) > 0)
            return AddWhole(text, points);
        std::string const batch = text.substr(0, at);
        PlaceOf(batch);
        char *end = nullptr;
        float const maturity = std::strtof(text.c_str() + at + 1, &end);
        // Half a step beyond the ends is nearest to a point, too.
        float const half = m_maturity.size() < 2 ? 0.5f : 0.5f * (m_maturity[1] - m_maturity[0]);
        if (end == text.c_str() + at + 1 || *end != '\0' || !(maturity >= m_maturity.front() - half) ||
            !(maturity <= m_maturity.back() + half))
            throw Problem(ExceptionMessage::translate("There is no maturity \"{1}\" in {2}: its points are from {3} to "
                                                      "{4}.") %
                          text.substr(at + 1) % m_name % TextOf(m_maturity.front()) % TextOf(m_maturity.back()));
        auto const distance = [maturity](float each) { return std::abs(each - maturity); };
        points.emplace_back(batch, *std::ranges::min_element(m_maturity, {}, distance));
    }

    // Those that the batch reaches: its means are held against those of the average batch at the same points.
    void AddWhole(std::string const &batch, BatchPoints &points) const {
        int const place = PlaceOf(batch);
        TablePtr const maturity =
            ReadBatch(m_project, {m_question.ofPredictions ? "YVarPS" : "YVar", m_question.model}, place);
        std::size_t const before = points.size();
        for (std::size_t point = 0; point < m_maturity.size(); ++point)
            if (!IsMissing(maturity->GetMatrix().Row(1)[point]))
                points.emplace_back(batch, m_maturity[point]);
        if (points.size() == before)
            throw Problem(ExceptionMessage::translate("Batch \"{1}\" has none of the aligned points of {2}.") % batch %
                          m_name);
    }

    void AddPointsOut(std::vector<std::string> const &names) {
        NCStringVector batches;
        for (std::string const &name : names) {
            PlaceOf(name);
            batches.push_back(name);
        }
        ProjectUtilities::DefaultSelection defaults(m_project);
        ProjectVectorData const sums = ChartedSums(
            m_project, {m_question.model, m_question.outOf, m_question.ofPredictions, m_question.multiplier});
        ColumnIDs const columns(batches, "Batch", m_project, ColumnIDs::Batches, m_question.model);
        Asking([&] {
            OOCBatchContributionBuilder(*m_project).GetContributionVector(sums, &columns, m_points, &defaults);
        });
        m_groupName = (names.size() == 1 ? "batch " : "batches ") + Listed(names);
        if (!m_points.empty())
            m_groupName += " where " + m_question.outOf + " is out of its limits";
    }

    int CheckedComponent(int component, int first, int count, std::string const &kind) const {
        if (component < first || component > count)
            throw Problem(ExceptionMessage::translate("There is no {1} {2} in {3}, which has {4} of that kind.") %
                          kind % component % m_name % count);
        return component;
    }

    // The size of the model for what is of all components up to one.
    int Size(int smallest = 0) const {
        if (m_question.components.size() > 1)
            throw UsageError("--components takes one number here: that of the last component");
        return m_question.components.empty()
                   ? m_info->SizeComponents()
                   : CheckedComponent(m_question.components.front(), smallest, m_info->SizeComponents(), "component");
    }

    void SetScore(Builder &builder) const {
        std::vector<int> components = m_question.components;
        // Those of a plot of scores.
        if (components.empty())
            for (int component = 1; component <= std::min(2, m_info->SizePredictiveComponents()); ++component)
                components.push_back(component);
        WeightTypes weights;
        for (std::string const &name : m_question.weights) {
            NamedWeight const &named = WeightOf(name);
            if (named.needsY && m_info->sizeYVariables == 0)
                throw Problem(ExceptionMessage::translate("Model {1} is {2} and has no weight {3}, which needs Y; give "
                                                          "p.") %
                              m_question.model % ModelTypeE::GetModelTypeName(m_info->type) % name);
            if (!named.isOfComponent) {
                if (m_question.weights.size() > 1)
                    throw UsageError("The weight \"" + name + "\" stands alone");
                builder.SetComponents({Size(named.needsY ? 1 : 0)});
                return builder.SetWeightVector({named.weight});
            }
            weights.push_back(named.weight);
        }
        if (weights.size() == 1)
            weights.resize(components.size(), weights.front());
        if (!weights.empty() && weights.size() != components.size())
            throw UsageError("--weight names " + std::to_string(weights.size()) + " weights for " +
                             std::to_string(components.size()) + " components; give one for all, or for each");
        for (std::size_t i = 0; i < components.size(); ++i) {
            bool const isOrthogonal = !weights.empty() && weights[i] == Weight::PO;
            CheckedComponent(components[i], 1,
                             isOrthogonal ? m_info->SizeXSideOrthogonalComponents()
                                          : m_info->SizePredictiveComponents(),
                             isOrthogonal ? "orthogonal component" : "component");
        }
        builder.SetComponents(components);
        builder.SetWeightVector(weights);
    }

    int Response() const {
        ColumnTerms const &terms = m_project->GetModel(m_question.model)->GetYColumnTerms();
        std::vector<std::string> names;
        for (ColumnTerm const &term : terms) {
            names.push_back(term.GetPrimaryName(m_project->GetVariables()));
            if (names.back() == m_question.response)
                return static_cast<int>(names.size());
        }
        throw Problem(ExceptionMessage::translate("There is no Y variable \"{1}\" in {2}, which has {3}.") %
                      m_question.response % m_name % Listed(names));
    }

    Builder::SelectionPtr Select() const {
        int const model = m_question.model;
        Builder builder(*m_project, m_question.ofPredictions, true);
        bool const aligned = m_question.ofBatches;
        switch (m_question.kind) {
        case ContributionQuestion::Score:
            SetScore(builder);
            return aligned
                       ? builder.CreateAlignScoreContributionDataSeries(model, m_referencePoints, true, m_points, true)
                       : builder.CreateScoreContributionDataSeries(model, m_reference, m_group);
        case ContributionQuestion::DModX:
            return aligned ? builder.CreateAlignDModXContributionDataSeries(model, Size(), m_points, true)
                           : builder.CreateDModXContributionDataSeries(model, Size(), m_group);
        case ContributionQuestion::DModY:
            return aligned ? builder.CreateAlignDModYContributionDataSeries(model, -1, m_points, true)
                           : builder.CreateDModYContributionDataSeries(model, -1, m_group);
        default:
            return aligned ? builder.CreateAlignYPredContributionDataSeries(model, Response(), Size(),
                                                                            m_referencePoints, true, m_points, true)
                           : builder.CreateYPredContributionDataSeries(model, Response(), Size(), m_reference, m_group);
        }
    }

    Contribution BarsOf(SelectDataSeriesData const &selection) const {
        Contribution contribution;
        contribution.asked = selection.GetSeries(1);
        contribution.title = TitleOf(contribution.asked);
        TablePtr const table(ProjectDataUtilities::ProjectDataBuilder(&selection).Build());
        if (!table)
            throw Problem(ExceptionMessage::translate("{1} has no contributions: no X variable of the group, or of its "
                                                      "reference, is observed.") %
                          contribution.asked.GetModelInfo()->name);
        for (int column = 1; column <= table->Columns(); ++column) {
            float const value = table->GetMatrix()(1, column);
            if (IsMissing(value))
                ++contribution.missing;
            else
                contribution.bars.push_back({table->GetColumnName(column), column, value});
        }
        auto const size = [](ContributionBar const &bar) { return std::abs(bar.value); };
        std::ranges::stable_sort(contribution.bars, std::greater<>(), size);
        return contribution;
    }

    std::string TitleOf(ProjectVectorData const &asked) const {
        std::string const model = asked.GetModelInfo()->name;
        std::string const held =
            ": " + m_groupName + ", against " + (m_referenceName.empty() ? "the average" : m_referenceName);
        bool const isBelow = asked.GetModelInfo()->number != m_question.model;
        if (isBelow || m_question.kind == ContributionQuestion::Score)
            return "Scores of " + model + " by " + TextOf(asked) + held;
        if (m_question.kind == ContributionQuestion::YPred)
            return "Prediction of " + m_question.response + " by " + model + held;
        return (m_question.kind == ContributionQuestion::DModX ? "DModX of " : "DModY of ") + model + ": " +
               m_groupName;
    }

    static std::string NamesOf(std::vector<ContributionBar> const &bars) {
        std::vector<std::string> names;
        for (ContributionBar const &bar : bars)
            names.push_back(bar.variable);
        return Listed(names);
    }

    std::vector<ContributionBar> Followed(std::vector<ContributionBar> const &bars) const {
        if (bars.empty())
            throw Problem(
                ExceptionMessage::translate("All contributions are missing: there is nothing to follow down."));
        if (m_question.via.empty()) {
            auto const found =
                std::ranges::find_if(bars, [this](ContributionBar const &bar) { return LeadsDown(bar); });
            return {found == bars.end() ? bars.front() : *found};
        }
        std::vector<ContributionBar> followed;
        for (std::string const &name : NamesIn(m_question.via)) {
            auto const found = std::ranges::find(bars, name, &ContributionBar::variable);
            if (found == bars.end())
                throw Problem(
                    ExceptionMessage::translate("There is no contribution of \"{1}\" to follow down; there are "
                                                "{2}.") %
                    name % NamesOf(bars));
            followed.push_back(*found);
        }
        return followed;
    }

    ColumnTerm TermOf(ContributionBar const &bar) const {
        auto const model = m_project->GetModel(m_question.model);
        bool const isOfY = m_question.kind == ContributionQuestion::DModY;
        return (isOfY ? model->GetYColumnTerms() : model->GetXColumnTerms())[bar.term];
    }

    // A model of results of models may have variables as they are, which lead nowhere.
    bool LeadsDown(ContributionBar const &bar) const {
        int const kind = m_project->GetVariables()[TermOf(bar).GetMotherVariable(1)].kind;
        return m_info->isBatchLevel || kind == VariableInfo::Score || kind == VariableInfo::OrthogonalScore;
    }

    Builder::SelectionPtr Down(SelectDataSeriesData &upper, std::vector<ContributionBar> const &followed) const {
        ColumnTerms terms;
        for (ContributionBar const &bar : followed)
            terms.AppendTerm(TermOf(bar));
        return m_info->isBatchLevel ? DownToBatches(upper, terms) : DownToBase(upper, terms, followed);
    }

    Builder::SelectionPtr EmptySelection(SelectDataSeriesData const &like) const {
        auto selection = boost::make_shared<SelectDataSeriesData>(like);
        selection->RemoveSeries(1);
        return selection;
    }

    // Of an orthogonal model: the variables of batches are named by what they were, "t [1]" or "to[1]".
    bool AreOrthogonalScores(ColumnTerms const &terms) const {
        NCVariables const &variables = m_project->GetVariables();
        auto const isOrthogonal = [&](ColumnTerm const &term) {
            VariableInfo const variable = variables[term.GetMotherVariable(1)];
            return variable.GetSourceName(variables, AliasAccess(variables)).starts_with("to");
        };
        auto const count = std::ranges::count_if(terms, isOrthogonal);
        if (count != 0 && count != terms.Size())
            throw UsageError("--via takes scores t or orthogonal scores to, not both");
        return count != 0;
    }

    Builder::SelectionPtr DownToBatches(SelectDataSeriesData const &upper, ColumnTerms const &terms) const {
        Builder::SelectionPtr const target = EmptySelection(upper);
        Builder const builder(*m_project, m_question.ofPredictions, true);
        builder.SetLowerLevelContributionDataSeries(*target, upper.GetSeries(1), &terms, &terms, true, {});
        // Which components the terms are about, the builder knows.
        ProjectVectorData data = target->GetSeries(1);
        std::vector<int> const components = data.GetWeightComp();
        bool const isPLS = ModelTypeE::IsPlainPLS(data.GetModelInfo()->type);
        Weight::WeightType const ofScores = isPLS ? Weight::WStar : Weight::P;
        data.SetContributionWeight(WeightTypes(components.size(), AreOrthogonalScores(terms) ? Weight::PO : ofScores),
                                   components);
        target->RemoveSeries(1);
        target->AddSeries(data, true);
        return target;
    }

    // The groups are the same observations there.
    Builder::SelectionPtr DownToBase(SelectDataSeriesData &upper, ColumnTerms const &terms,
                                     std::vector<ContributionBar> const &followed) const {
        if (followed.size() > 1)
            throw UsageError("--via takes one variable of a model of results of models");
        Builder::SelectionPtr const target = EmptySelection(upper);
        Builder builder(*m_project, m_question.ofPredictions, true);
        if (!builder.SetHierarchicalContributionDataSeries(*target, &upper, terms[1].GetMotherVariable(1)))
            throw Problem(ExceptionMessage::translate("\"{1}\" is no score of a model below, and can't be followed "
                                                      "down.") %
                          followed.front().variable);
        ProjectVectorData const &data = target->GetSeries(1);
        builder.SetComponents(data.GetWeightComp());
        builder.SetWeightVector(
            ContributionWeightEnum::NCWeightType(data.GetWeightType(), data.GetModelInfo(), data.GetWeightComp()));
        return builder.CreateScoreContributionDataSeries(data.GetModelInfo()->number, m_reference, m_group);
    }

    boost::shared_ptr<engine::Project> m_project;
    ContributionQuestion const &m_question;
    boost::shared_ptr<ModelInfo const> m_info;
    std::string m_name, m_groupName, m_referenceName;
    Builder::Group m_group, m_reference;
    std::vector<std::string> m_batches;
    std::vector<float> m_maturity; // of the aligned points
    BatchPoints m_points, m_referencePoints;
};

} // namespace

std::string WeightNames() {
    std::string names;
    for (NamedWeight const &named : namedWeights)
        names += (names.empty() ? "" : ", ") + std::string(named.name);
    return names;
}

Contribution ReadContribution(boost::shared_ptr<engine::Project> const &project, ContributionQuestion const &question) {
    return ContributionReader(project, question).Read();
}
