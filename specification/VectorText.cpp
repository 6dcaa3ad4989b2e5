#include "navigation/DataSeriesUtilities.h"
#include "platform/project/BatchYVarTreatment.h"
#include "platform/project/ModelUtilities.h"
#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"
#include "platform/text/Translate.h"
#include "specification/ProjectVectorData.h"
#include "utilities/DefaultSelection.h"
#include "utilities/ProjectQueries.h"

#include <algorithm>
#include <cmath>
#include <sstream>

// The two texts of a specification: the one that the catalogue reads, and the label for the user.

using ProjectUtilities::DefaultSelection;

namespace {

constexpr int notSet = -1;
constexpr std::size_t shownObservations = 3; // a larger group is shown as a group

bool IsUnset(std::uint32_t number) {
    return static_cast<int>(number) == -1 || static_cast<int>(number) == -2;
}

template <typename List>
void WriteList(std::ostream &text, List const &list) {
    text << ',' << list.size();
    for (auto const &entry : list)
        text << ',' << entry;
}

void WritePoints(std::ostream &text, BatchPoints const &points) {
    text << ',' << points.size();
    for (auto const &[batch, maturity] : points)
        text << ',' << batch << "$," << maturity;
}

// The weights, both groups, the response and the components of a contribution.
void WriteContribution(std::ostream &text, ProjectVectorData const &data, int yVar) {
    WeightTypes weights = data.GetWeightTypeVec();
    if (weights.empty())
        weights = ContributionWeightEnum::NCWeightType(data.GetWeightType(), data.GetModelInfo(), data.GetWeightComp());
    text << ',' << weights.size();
    for (WeightTypeE::WeightType const weight : weights)
        text << ',' << static_cast<int>(weight);
    text << ',' << yVar;
    if (data.GetProjectVector()->IsAlignedContribution()) {
        text.precision(8);
        WritePoints(text, data.contRef);
        WritePoints(text, data.contGroup);
    } else {
        WriteList(text, data.obs1);
        WriteList(text, data.obs2);
        // Readers expect the response a second time here.
        text << ',' << yVar;
    }
    for (int const component : data.GetWeightComp())
        text << ',' << component;
}

} // namespace

std::string ProjectVectorData::GetDataSourceName() const {
    if (Vector().GetDataType() == ProjectVector::DataTypePredictionSet)
        return "PS";
    if (m_dataset != 0)
        return "DS" + std::to_string(m_dataset);
    return m_model ? "M" + std::to_string(m_model->number) : std::string();
}

// A field of a vector that is indexed by several kinds of components at once; there -2 is the last one, too.
int ProjectVectorData::ComponentField(ProjectVector::ComponentType kind) const {
    int const component = GetComponent(kind, true);
    bool const last = component == -2 && kind != ProjectVector::ComponentOSC;
    return last ? GetMaxComponents(nullptr, kind) : component;
}

std::string ProjectVectorData::ToStdString(DefaultSelection const *defaults) const {
    if (!m_vector)
        return {};
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << m_vector->GetName();
    if (m_vector->UseModel() && HasComponents())
        text << " M" << m_model->number;
    else if (m_vector->GetObsPredType() == ProjectVector::Predicted)
        text << " PS";
    else
        text << " DS" << m_dataset;

    int const kinds = m_vector->GetComponentType();
    if (m_vector->HasOneComponent())
        text << ',' << GetComponent(true);
    else if (kinds == ProjectVector::ComponentNone)
        text << ",0";
    else
        for (int const kind : {1, 2, 4, 8})
            if ((kinds & kind) != 0)
                text << ',' << ComponentField(static_cast<ProjectVector::ComponentType>(kind));

    ProjectVector::NumberType const numberType = m_vector->GetNumberType();
    bool const range =
        numberType == ProjectVector::NumberComponentRange || numberType == ProjectVector::NumberBatchComponentRange;
    if (numberType == ProjectVector::NumberNone || numberType == ProjectVector::NumberBatch) {
        text << ",0";
    } else if (range) {
        int const number = static_cast<int>(m_numberID);
        bool const within = m_numberID <= static_cast<std::uint32_t>(MaxOfPair(1));
        text << ',' << (number == notSet ? m_vector->GetFirstComponent() : within ? number : notSet);
    } else if (numberType == ProjectVector::NumberObsOrVar && m_numberID == NotSet &&
               m_vector->GetType() != ProjectVector::VectorTypeVariablesScores &&
               m_vector->GetType() != ProjectVector::VectorTypeObservationsLoadings) {
        text << ',' << m_numberID;
    } else {
        text << ',' << GetNumber(defaults);
    }

    text << ',' << (m_vector->NeedsValidationRounds() ? selCV : 0);
    if (m_vector->UseUnscalingTransform())
        text << ',' << (unscaled ? 1 : 0) << ',' << (backTransformed ? 1 : 0);
    if (m_vector->IsContribution())
        WriteContribution(text, *this, m_yVar);
    if (m_vector->UseNumberID2()) {
        if (range) {
            int limit = MaxOfPair(2);
            std::string const name = m_vector->GetName();
            if ((name == "T2Range" || name == "T2RangePS") && ModelTypeE::IsOPLSorO2PLS(Model().type))
                limit += Model().SizeXSideOrthogonalComponents();
            text << ',' << std::min(m_numberID2, static_cast<std::uint32_t>(limit));
        } else {
            text << ',' << GetNumberID2(defaults, true);
        }
    }
    if (m_vector->UseBatchIx())
        text << ',' << batchIx;
    if (m_vector->IsImpulseResponseVector())
        text << ',' << startLag << '-' << endLag;
    if (m_vector->HasMultiplier())
        text << ',' << multiplier1 << ',' << multiplier2;
    if (m_vector->HasResolvableCoefficients())
        text << ',' << static_cast<int>(m_coefficientStatus);
    return text.str();
}

std::string ProjectVectorData::GetBatchName(ProjectPtr const &project) const {
    if (batchIx == -1 || batchIx == -2)
        return "Average";
    if (batchIx == 0)
        return "Std.Dev.";
    auto const picked = [this](auto const &rows) {
        return rows ? rows->GetBatchRuns().names(batchIx, std::string()) : std::string();
    };
    bool const predicted = Vector().GetObsPredType() == ProjectVector::Predicted;
    if (ModelInfo const *const model = GetModelInfo()) {
        if (predicted)
            return picked(project->GetPredictions(model->number, true));
        auto const batchModel = boost::dynamic_pointer_cast<NCBatchModel const>(project->GetModel(model->number));
        if (batchModel) {
            bool const known = batchIx >= 1 && batchIx <= static_cast<int>(batchModel->GetBatchIndexes().size());
            return known ? batchModel->GetBatchName(batchIx) : std::string();
        }
        return picked(project->GetWorkset(model->number));
    }
    if (predicted)
        return picked(project->GetPredSet(-1));
    if (m_dataset == -1)
        return {};
    auto const set = project->GetDataSet(m_dataset);
    if (!set)
        throw NCError(ExceptionMessage::translate("Dataset number {1} could not be loaded.") % m_dataset,
                      NCError::Error);
    return picked(set);
}

std::string ProjectVectorData::GetProjectVectorName(DefaultSelection const *defaults, bool removePrefix,
                                                    std::string const &prefix, int aliasID, bool compact) const {
    constexpr double tolerance = 1.1920928955078125e-7;
    std::string label = GetFormattedName(defaults, aliasID, compact);
    // The prefix goes with the point behind it.
    if (removePrefix && !Vector().IsNumVector() && label.starts_with(prefix))
        label.erase(0, prefix.size() + 1);
    bool const scaled = std::abs(scaling - 1.0) > tolerance;
    bool const shifted = std::abs(offset) > tolerance;
    if (!scaled && !shifted)
        return label;
    std::ostringstream text;
    if (scaled)
        text << scaling << " * ";
    text << label;
    if (shifted)
        text << (offset < 0 ? " - " : " + ") << std::abs(offset);
    return text.str();
}

namespace {

// Puts a label together, piece by piece.
class LabelWriter {
public:
    LabelWriter(ProjectVectorData const &data, DefaultSelection const &defaults, int aliasID, bool compact)
        : m_data(data), m_vector(*data.GetProjectVector()), m_defaults(defaults), m_project(defaults.GetProject()),
          m_aliasID(aliasID), m_compact(compact) {}

    std::string Label() {
        m_text << m_data.GetDataSourceName() << '.';
        bool const pureDataSource = m_vector.GetDataType() == ProjectVector::DataTypeDataSet ||
                                    m_vector.GetDataType() == ProjectVector::DataTypePredictionSet;
        if (pureDataSource) {
            WriteDataItem();
        } else {
            WriteName();
            WriteComponent();
            WriteDistanceFlavour();
            if (m_vector.NeedsValidationRounds())
                m_text << "[CV. " << m_data.selCV << ']';
            if (m_vector.GetContributionKind() != 0) {
                WriteGroups();
                WriteWeight();
            }
            WriteNumber();
            WriteTreatment();
            if (m_vector.IsImpulseResponseVector())
                m_text << translate(", Start Lag=") << m_data.startLag << translate(", End Lag=") << m_data.endLag;
        }
        if (m_vector.UseBatchIx())
            m_text << ", Batch: " << m_data.GetBatchName(m_project);
        if (m_vector.UseUnscalingTransform() && !m_data.backTransformed)
            m_text << translate(m_data.unscaled ? "(trans)" : "(as WS)");
        return m_text.str();
    }

private:
    bool OfScores() const { return m_vector.GetType() == ProjectVector::VectorTypeVariablesScores; }

    std::string VariableName(std::uint32_t variable) const {
        return AliasAccess(m_project->GetVariables()).GetAlias(m_aliasID, VarObsInfo(variable));
    }

    std::string ObservationName(std::uint32_t observation) const {
        return AliasAccess(m_project->GetObservations()).GetAlias(m_aliasID, VarObsInfo(observation));
    }

    char const *ObservationBracket() const { return m_aliasID == 1 ? "(Obs " : "("; }

    // Step 2 of a label: what a data set or the prediction set shows.
    void WriteDataItem() {
        if (m_vector.GetNumberType() == ProjectVector::NumberIdentifier)
            m_text << m_data.GetUsedAliases(*m_project).GetAliasNameWithDescription(m_aliasID);
        else if (m_vector.GetNumberType() == ProjectVector::NumberObsOrVar)
            m_text << m_vector.GetLongName() << '('
                   << (OfScores() ? VariableName(m_data.GetNumber(&m_defaults))
                                  : ObservationName(m_data.GetNumber(&m_defaults)))
                   << ')';
    }

    void WriteName() {
        VariableInfo const *const time =
            DataSeriesUtilities::IsTimeVector(&m_vector) ? m_project->GetVariables().GetDefaultTimeVariable() : nullptr;
        if (m_vector.GetContributionKind() != 0 && m_data.GetWeightType() == ContributionWeightEnum::CoeffCSRaw)
            m_text << translate("Contribution vector", "YPred Contrib");
        else if (time)
            m_text << VariableName(time->GetUniqueID());
        else
            m_text << m_vector.GetLongName();
    }

    void WriteComponent() {
        if (!m_vector.HasOneComponent())
            return;
        int const component = m_data.GetComponent(false);
        if (m_compact) {
            m_text << '[' << (component == notSet ? m_data.GetComponent(true) : component) << ']';
        } else if (component == notSet) {
            m_text << translate("[Last comp.]");
        } else {
            if (m_vector.GetComponentType() == ProjectVector::ComponentXSideOrthogonal)
                m_text << translate("[XSide Comp. ");
            else if (m_vector.GetComponentType() == ProjectVector::ComponentYSideOrthogonal)
                m_text << translate("[YSide Comp. ");
            else
                m_text << translate("Model component", "[Comp. ");
            m_text << component << ']';
        }
    }

    void WriteDistanceFlavour() {
        static constexpr char const *names[] = {"DModX", "DModXPS", "DModY", "DModYPS", "DModXPS+"};
        std::string const name = m_vector.GetName();
        ModelInfo const *const model = m_data.GetModelInfo();
        if (!model || std::find(std::begin(names), std::end(names), name) == std::end(names))
            return;
        auto const projection = boost::dynamic_pointer_cast<ProjectionModel const>(m_project->GetModel(model->number));
        if (!projection)
            return;
        bool const normalized = projection->IsDModNormalized();
        bool const weighted = projection->IsDModXWeighted() && name[4] != 'Y';
        m_text << (normalized ? translate(weighted ? "(Weighted and Normalized)" : "(Normalized)")
                   : weighted ? translate("(Weighted residuals)")
                              : translate("Absolute value", "(Abs)"));
    }

    // The observations that the groups of a contribution count in.
    ObservationInfos GroupRows() const {
        ModelInfo const *const model = m_data.GetModelInfo();
        if (!model)
            return {};
        if (m_vector.GetObsPredType() == ProjectVector::Observed) {
            auto const object = m_project->GetModel(model->number);
            return object ? object->GetObservations() : ObservationInfos();
        }
        auto const predictions = m_project->GetPredictions(model->number, true);
        return predictions ? predictions->GetObservations() : ObservationInfos();
    }

    template <typename NameOf>
    void WriteObservations(std::vector<int> const &group, NameOf const &nameOf) {
        ObservationInfos const rows = GroupRows();
        char const *separator = group.size() > 1 ? "{" : "";
        for (int const index : group) {
            bool const known = index >= 1 && index <= static_cast<int>(rows.size());
            m_text << separator << (known ? nameOf(rows[static_cast<std::size_t>(index - 1)]) : std::to_string(index));
            separator = ", ";
        }
        if (group.size() > 1)
            m_text << '}';
    }

    void WriteGroups() {
        int const kind = m_vector.GetContributionKind();
        if ((kind == 5 && m_data.alignedMaturity1 && m_data.alignedMaturity2) ||
            ((kind == 6 || kind == 7) && m_data.alignedMaturity1))
            m_text << translate("Aligned to some value", " Aligned");
        if (kind == 3 || kind == 4)
            WriteOneGroup();
        else if (m_vector.IsAlignedContribution())
            m_text << ProjectUtilities::AddContributionBatchPoints(m_data.contRef, m_data.contGroup);
        else
            WriteTwoGroups();
    }

    void WriteOneGroup() {
        m_text << ObservationBracket();
        if (m_data.obs1.size() > shownObservations)
            m_text << translate("Group of observations", "Group");
        else
            WriteObservations(m_data.obs1,
                              [this](ObservationInfo const &row) { return ObservationName(row.GetUniqueID()); });
        m_text << ')';
    }

    // What was compared, then what with.
    void WriteTwoGroups() {
        bool const large1 = m_data.obs1.size() > shownObservations;
        bool const large2 = m_data.obs2.size() > shownObservations;
        AliasAccess const aliases(m_project->GetObservations());
        auto const preferred = [&](ObservationInfo const &row) {
            return aliases.GetPreferredAlias(m_project->GetPreferredObservationAlias(), row);
        };
        if (large2) {
            m_text << translate("Group of observations", "(Group") << (large1 ? " 2" : "");
        } else {
            m_text << ObservationBracket();
            WriteObservations(m_data.obs2, preferred);
        }
        if (m_data.obs1.empty()) {
            m_text << translate(" - Average");
        } else if (large1) {
            m_text << translate("Group of observations", " - Group") << (large2 ? " 1" : "");
        } else {
            m_text << " - Obs ";
            WriteObservations(m_data.obs1, preferred);
        }
        m_text << ')';
    }

    void WriteWeight() {
        using Weight = ContributionWeightEnum;
        std::string const weightWord = translate("Statistical weight", ", Weight=");
        std::vector<int> const &components = m_data.GetWeightComp();
        Weight::WeightType const weight = m_data.GetWeightType();
        std::string const name = Weight::GetWeightName(weight);
        auto const writeEach = [&](std::string const &symbol) {
            m_text << weightWord;
            for (int const component : components)
                m_text << symbol << '[' << component << ']';
        };
        auto const writeRange = [&](char const *symbol) {
            m_text << weightWord;
            if (!components.empty())
                m_text << symbol << '[' << components.front() << "]-" << symbol << '[' << components.back() << ']';
        };
        int const kind = m_vector.GetContributionKind();
        bool const ofDistance = kind == 3 || kind == 4 || kind == 6 || kind == 7;
        switch (weight) {
        case Weight::Normalized:
            if (!ofDistance) {
                m_text << weightWord << name;
            } else {
                m_text << translate(", Comp: ");
                if (!components.empty())
                    m_text << components.front();
            }
            break;
        case Weight::PP:
            writeEach("p");
            break;
        case Weight::WStarWStar:
            writeEach("w*");
            break;
        case Weight::CoeffCS:
        case Weight::CoeffCSRaw:
            m_text << "(YVar " << YTermName(m_data.GetYVar(m_defaults)) << ')';
            writeEach(name);
            break;
        case Weight::PRange:
            writeRange("p");
            break;
        case Weight::WStarRange:
            writeRange("w*");
            break;
        case Weight::Raw:
            m_text << weightWord << name;
            break;
        default:
            writeEach(name);
        }
    }

    std::string TermName(ColumnTerms const &terms, int index) const {
        if (index < 1 || index > terms.Size())
            return {};
        NCVariables const &variables = m_project->GetVariables();
        return terms[index].GetName(variables, m_aliasID, AliasAccess(variables));
    }

    std::string YTermName(int index) const {
        auto const model = ModelObject();
        return model ? TermName(model->GetYColumnTerms(), index) : std::string();
    }

    std::string XTermName(int index) const {
        ModelInfo const *const model = m_data.GetModelInfo();
        return model ? TermName(m_vector.XTermsOf(*m_project, model->number), index) : std::string();
    }

    boost::shared_ptr<NCModel const> ModelObject() const {
        ModelInfo const *const model = m_data.GetModelInfo();
        return model ? m_project->GetModel(model->number) : nullptr;
    }

    void WriteNumber() {
        int const number = static_cast<int>(m_data.GetNumber(&m_defaults));
        switch (m_vector.GetNumberType()) {
        case ProjectVector::NumberObsOrVar:
            if (OfScores())
                m_text << "(Var " << VariableName(m_data.GetNumberID()) << ')';
            else
                m_text << ObservationBracket() << ObservationName(m_data.GetNumber(&m_defaults)) << ')';
            break;
        case ProjectVector::NumberYVariable:
        case ProjectVector::NumberBatchYVariable:
            m_text << '(' << YTermName(number) << ')';
            break;
        case ProjectVector::NumberXVariable:
        case ProjectVector::NumberBatchXVariable:
            m_text << '(' << XTermName(number) << ')';
            break;
        case ProjectVector::NumberXAndYVariable:
            m_text << "(XVar " << XTermName(number) << ")(YVar "
                   << YTermName(static_cast<int>(m_data.GetNumberID2(&m_defaults, true))) << ')';
            break;
        case ProjectVector::NumberBatchVIPPhase:
            m_text << '(' << YTermName(number) << ')';
            WritePhase();
            break;
        case ProjectVector::NumberBatchVIPSecond:
            WritePhase();
            break;
        case ProjectVector::NumberComponentRange:
        case ProjectVector::NumberBatchComponentRange:
            WriteRange();
            break;
        default:
            break;
        }
    }

    void WritePhase() {
        ModelInfo const *const model = m_data.GetModelInfo();
        if (!model)
            return;
        int const phase = static_cast<int>(m_data.GetNumberID2(&m_defaults, false));
        int const source = ModelUtilities::GetBatchLevelSourceDS(*m_project, model->number);
        if (source < 1) {
            m_text << translate(", Phase ") << model->GetClassPhaseName(phase);
            return;
        }
        auto const info = m_project->GetDataSetInfo(source);
        if (!info)
            return;
        std::vector<std::string> const &phases = info->GetPhaseInfoVector();
        if (phase > 0 && phase <= static_cast<int>(phases.size()) && phases.size() > 1)
            m_text << translate(", Phase ") << phases[static_cast<std::size_t>(phase - 1)];
    }

    void WriteRange() {
        std::uint32_t const first = m_data.GetNumberID();
        std::uint32_t const last = m_data.GetNumberID2(nullptr, false);
        int const a = static_cast<int>(first);
        int const b = static_cast<int>(last);
        ModelInfo const *const model = m_data.GetModelInfo();
        if (model && ModelTypeE::IsO2PLS(model->type) && model->SizeXSideOrthogonalComponents() > 0) {
            if (a == notSet && b == notSet)
                m_text << translate("[Last comp. - Last comp.]");
            else if (a != notSet && b != notSet)
                m_text << translate("[Comp. ") << std::min(a, b) << " - " << std::max(a, b) << ']';
            else
                // The X side counts from the stored first component, open or not.
                m_text << translate("[Comp. ") << (a == notSet ? b : a) << translate(" - Last comp., XSide comp. ") << a
                       << " - Last comp.]";
        } else if (IsUnset(first) && a == b) {
            m_text << translate("[Last comp. - Last comp.]");
        } else if (IsUnset(first) || IsUnset(last)) {
            m_text << translate("[Comp. ") << (IsUnset(first) ? b : a) << translate(" - Last comp.]");
        } else {
            m_text << translate("[Comp. ") << std::min(a, b) << " - " << std::max(a, b) << ']';
        }
    }

    void WriteTreatment() {
        std::string const name = m_vector.GetName();
        if (name != "YVar" && name != "YVarPS")
            return;
        auto const batchModel = boost::dynamic_pointer_cast<NCBatchModel const>(ModelObject());
        int const treatment = batchModel ? BatchYVarTreatment::GetTreatment(*batchModel) : 0;
        if (treatment != 0)
            m_text << '(' << BatchYVarTreatment::ToString(treatment) << ')';
    }

    ProjectVectorData const &m_data;
    ProjectVector const &m_vector;
    DefaultSelection const &m_defaults;
    boost::shared_ptr<NCProject> m_project;
    int m_aliasID;
    bool m_compact;
    std::ostringstream m_text;
};

} // namespace

std::string ProjectVectorData::GetFormattedName(DefaultSelection const *defaults, int aliasID, bool compact) const {
    if (!m_vector || m_vector->IsNumVector())
        return Vector().GetName();
    return LabelWriter(*this, *defaults, aliasID, compact).Label();
}
