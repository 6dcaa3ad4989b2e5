#include "app/Explanation.h"

#include "app/ContributionText.h"
#include "app/Reason.h"
#include "catalogue/ProjectVectorHandler.h"
#include "platform/project/GetProjectData.h"
#include "platform/text/VqString.h"
#include "specification/ProjectVectorData.h"

#include <algorithm>
#include <sstream>

namespace {

using Vector = ProjectVector;

constexpr char const *notUsed = "not used by this statistic";

std::string Quoted(std::string const &text) {
    return '"' + text + '"';
}

std::string ComponentCounts(ModelInfo const &model) {
    std::string counts = std::to_string(model.predictiveComponents);
    if ((model.type & ModelTypeE::AnyOPLS) != 0)
        counts += "+" + std::to_string(model.xSideOrthogonalComponents);
    if (model.type == ModelTypeE::O2PLS)
        counts += "+" + std::to_string(model.ySideOrthogonalComponents);
    return counts;
}

// The meaning of each argument of one string.
class ArgumentReader {
public:
    ArgumentReader(engine::Project const &project, NamedSeries const &series)
        : m_project(project), m_vector(*series.vector), m_source(series.source), m_text(series.arguments) {
        m_vector.ReadArguments(m_text.c_str(), m_arguments);
    }

    std::vector<ExplainedPart> Read() const {
        std::vector<ExplainedPart> parts;
        std::istringstream texts(m_text);
        for (auto const &[name, meaning] : Fields()) {
            std::string text;
            std::getline(texts, text, ',');
            parts.push_back({name, text, text.empty() ? "left out" : (this->*meaning)()});
        }
        std::string rest;
        if (!m_vector.IsContribution() && std::getline(texts, rest, '\0') && !rest.empty())
            parts.push_back(Rest(rest));
        return parts;
    }

private:
    struct Field {
        char const *name;
        std::string (ArgumentReader::*meaning)() const;
    };

    // In the order of the text.
    std::vector<Field> Fields() const {
        std::vector<Field> fields = {{"source", &ArgumentReader::SourceMeaning}};
        if (HasAllKinds())
            fields.insert(fields.end(), {{"predictive", &ArgumentReader::PredictiveMeaning},
                                         {"X-side", &ArgumentReader::XSideMeaning},
                                         {"Y-side", &ArgumentReader::YSideMeaning}});
        else
            fields.push_back({"component", &ArgumentReader::ComponentMeaning});
        fields.push_back({"number", &ArgumentReader::NumberMeaning});
        fields.push_back({"round", &ArgumentReader::RoundMeaning});
        if (m_vector.UseUnscalingTransform())
            fields.insert(fields.end(), {{"unscaled", &ArgumentReader::UnscaledMeaning},
                                         {"back-transformed", &ArgumentReader::BackTransformedMeaning}});
        if (m_vector.UseNumberID2())
            fields.push_back({"second number", &ArgumentReader::SecondNumberMeaning});
        if (m_vector.UseBatchIx())
            fields.push_back({"batch", &ArgumentReader::BatchMeaning});
        return fields;
    }

    bool HasAllKinds() const {
        return m_vector.GetComponentType() != Vector::ComponentNone && !m_vector.HasOneComponent();
    }

    std::string DataSet(int number) const {
        auto const info = m_project.GetDataSetInfo(number);
        return "data set " + std::to_string(number) + (info ? " " + Quoted(info->name) : "");
    }

    std::string PredictionSet() const {
        auto const set = m_project.GetPredSet(-1);
        return set ? "prediction set " + std::to_string(set->GetNumber()) + " " + Quoted(set->GetName())
                   : "no prediction set";
    }

    std::string SourceMeaning() const {
        if (!m_source.model)
            return m_source.data == Vector::DataTypeDataSet ? DataSet(m_source.dataSet) : PredictionSet();
        ModelInfo const &model = *m_source.model;
        std::string meaning = m_source.name + ", " + ModelTypeE::GetModelTypeName(model.type) + " " +
                              ComponentCounts(model) + " of " +
                              (model.dataSets.empty() ? "no data set" : DataSet(model.dataSets.front()));
        if (m_vector.GetObsPredType() == Vector::Predicted)
            meaning += ", on " + PredictionSet();
        return meaning;
    }

    // This is the form of a whole model, which others ask of by a component.
    bool IsOfWholeModel() const {
        auto const &all = *ProjectVectorHandler::Instance();
        return m_vector.GetModelType() == ModelTypeE::AnyOPLS &&
               std::any_of(all.begin(), all.end(), [this](Vector const *other) {
                   return other != &m_vector && other->GetType() == m_vector.GetType() &&
                          std::string_view(other->GetName()) == m_vector.GetName() && other->UseModel();
               });
    }

    std::string ComponentMeaning() const {
        if (m_vector.HasOneComponent() && m_source.model)
            return OfKind(m_arguments.component, static_cast<Vector::ComponentType>(m_vector.GetComponentType()));
        if (m_vector.GetComponentType() == Vector::ComponentOSC)
            return OfCorrection(m_arguments.component);
        if (!IsOfWholeModel())
            return notUsed;
        return "whole model, " + std::to_string(m_source.model->predictiveComponents) + "+" +
               std::to_string(m_source.model->xSideOrthogonalComponents) +
               " components (predictive + X-side orthogonal)";
    }

    std::string OfCorrection(int component) const {
        auto const info = m_project.GetDataSetInfo(m_source.dataSet);
        int const count = info ? info->oscComponents : 0;
        std::string const all = std::to_string(count) + " components of the correction";
        return component < 1 || component > count
                   ? "there is no component " + std::to_string(component) + " among " + all
                   : "component " + std::to_string(component) + " of " + all;
    }

    std::string OfKind(int component, Vector::ComponentType kind) const {
        bool const isOverall = m_vector.PredictiveComponentDefaultsToLast() && kind == Vector::ComponentPredictive;
        int const count =
            isOverall ? m_source.model->SizeComponents() : Vector::SelectMaxComponents(kind, *m_source.model);
        std::string const all = std::to_string(count) + " " + (isOverall ? "components" : NameOfKind(kind));
        if (component == 0)
            return "no component, of " + all;
        if (component < 0 || component > count)
            return "there is no component " + std::to_string(component) + " among " + all;
        return "component " + std::to_string(component) + " of " + all;
    }

    std::string Taken(int count, Vector::ComponentType kind) const {
        int const all = Vector::SelectMaxComponents(kind, *m_source.model);
        int const taken = count < 0 ? all : std::min(count, all);
        return std::to_string(taken) + " of " + std::to_string(all) + " " + NameOfKind(kind) + " taken away";
    }
    std::string PredictiveMeaning() const { return Taken(m_arguments.component, Vector::ComponentPredictive); }
    std::string XSideMeaning() const { return Taken(m_arguments.xSide, Vector::ComponentXSideOrthogonal); }
    std::string YSideMeaning() const { return Taken(m_arguments.ySide, Vector::ComponentYSideOrthogonal); }

    std::string Term(char side, unsigned long number) const {
        auto const model = m_project.GetModel(m_source.model->number);
        if (!model)
            return "an unfitted model has no terms";
        ColumnTerms const terms =
            side == 'X' ? m_vector.XTermsOf(m_project, m_source.model->number) : model->GetYColumnTerms();
        bool const isMother = side == 'X' && m_vector.GetType() == Vector::VectorTypeLag;
        std::string const which =
            (isMother ? "lagged " : "") + std::string(1, side) + " variable " + std::to_string(number);
        if (number < 1 || number > static_cast<unsigned long>(terms.Size()))
            return "there is no " + which + " among " + std::to_string(terms.Size());
        return which + ", " + Quoted(terms[static_cast<int>(number)].GetPrimaryName(m_project.GetVariables()));
    }

    std::string Item(unsigned long number) const {
        bool const isVariable = m_vector.GetType() == Vector::VectorTypeVariablesScores;
        VarObs const &items =
            isVariable ? static_cast<VarObs const &>(m_project.GetVariables()) : m_project.GetObservations();
        std::string const which = (isVariable ? "variable " : "observation ") + std::to_string(number);
        if (number < 1 || number > items.Size())
            return "there is no " + which + " in the project";
        return which + " of the project, " + Quoted(items.GetText(static_cast<std::uint32_t>(number), 1));
    }

    std::string Identifier() const {
        bool const ofObservations = m_vector.GetType() == Vector::VectorTypeVariablesScores;
        VarObs const &items =
            ofObservations ? static_cast<VarObs const &>(m_project.GetObservations()) : m_project.GetVariables();
        auto const *const alias = items.GetAlias(static_cast<int>(m_arguments.number));
        return "identifier column " + std::to_string(m_arguments.number) + " of the " +
               (ofObservations ? "observations" : "variables") +
               (alias ? ", " + Quoted(alias->name) : ": there is none");
    }

    bool IsRange() const {
        return m_vector.GetNumberType() == Vector::NumberComponentRange ||
               m_vector.GetNumberType() == Vector::NumberBatchComponentRange;
    }

    std::string InRange(char const *end, unsigned long number) const {
        auto const component = static_cast<int>(number);
        if (m_vector.IsT2RangeVector() && component == -1)
            return std::string(end) + " component: the last one";
        return std::string(end) + " component: " + std::to_string(component);
    }

    std::string NumberMeaning() const {
        if (m_arguments.number == Vector::noSingleItem && !IsRange())
            return "the list behind the other arguments";
        if (m_vector.IsXVector() || m_vector.IsYVector())
            return Term(m_vector.IsXVector() ? 'X' : 'Y', m_arguments.number);
        switch (m_vector.GetNumberType()) {
        case Vector::NumberObsOrVar:
            return Item(m_arguments.number);
        case Vector::NumberIdentifier:
            return Identifier();
        case Vector::NumberComponentRange:
        case Vector::NumberBatchComponentRange:
            return InRange("first", m_arguments.number);
        default:
            return notUsed;
        }
    }

    std::string SecondNumberMeaning() const {
        if (IsRange())
            return InRange(m_vector.IsT2RangeVector() ? "last" : "second", m_arguments.number2);
        return m_vector.GetNumberType() == Vector::NumberXAndYVariable ? Term('Y', m_arguments.number2) : "a phase";
    }

    std::string RoundMeaning() const {
        if (!m_vector.NeedsValidationRounds())
            return notUsed;
        TablePtr const groups = GetProjectData(m_project).GetCVGroups(m_source.model->number);
        if (!groups)
            return "the model is not cross-validated";
        auto const row = groups->GetMatrix().Row(1);
        auto const rounds = static_cast<int>(*std::max_element(row.begin(), row.end()));
        auto const out = std::count(row.begin(), row.end(), static_cast<float>(m_arguments.round));
        return "round " + std::to_string(m_arguments.round) + " of " + std::to_string(rounds) + ", without " +
               std::to_string(out) + " of " + std::to_string(row.size()) + " observations";
    }

    std::string UnscaledMeaning() const {
        return m_arguments.unscaled || m_arguments.backTransformed ? "before centring and scaling"
                                                                   : "centred and scaled as in the workset";
    }
    std::string BackTransformedMeaning() const {
        return m_arguments.backTransformed ? "in the units of the data set" : "after the transformation";
    }

    bool IsAligned() const { return m_vector.GetType() == Vector::VectorTypeAligned; }
    // The batches that are asked for stand behind the other arguments.
    bool HasBatchList() const { return m_vector.UseBatchIx() && IsAligned() && m_arguments.batch == -2; }

    std::string Batch(int batch) const {
        ProjectVectorData data;
        data.SetProjectVector(&m_vector);
        data.SetModelInfoPtr(m_source.model);
        data.batchIx = batch;
        std::string const name = batch < 1 ? "" : data.GetBatchName(m_project.shared_from_this());
        std::string const which = "batch " + std::to_string(batch);
        return name.empty() ? "there is no " + which : which + ", " + Quoted(name);
    }

    std::string BatchMeaning() const {
        if (HasBatchList())
            return "the list behind the other arguments";
        if (IsAligned() && m_arguments.batch == -1)
            return "the average over all batches";
        if (IsAligned() && m_arguments.batch == 0)
            return "the standard deviation over all batches";
        return Batch(m_arguments.batch);
    }

    ExplainedPart Rest(std::string const &rest) const {
        if (m_vector.HasMultiplier())
            return {"multipliers", rest, MultipliersMeaning(rest)};
        return HasBatchList() ? ExplainedPart{"batches", rest, BatchesMeaning(rest)}
                              : ExplainedPart{"further", rest, RestMeaning()};
    }

    std::string BatchesMeaning(std::string const &list) const {
        std::string batches;
        std::istringstream texts(list);
        for (std::string text; std::getline(texts, text, ',');)
            batches += (batches.empty() ? "" : "; ") + Batch(NumberIn(text).value_or(0));
        return batches;
    }

    // How many multipliers the statistic takes of the two that its text has.
    int MultipliersTaken() const {
        std::string_view const name = m_vector.GetName();
        if (IsAligned())
            return 1;
        return name.starts_with("T2Range") ? 0 : name.starts_with("DModX") ? 1 : 2;
    }

    std::string LimitBy(std::string const &multiplier) const {
        double const value = VqString::vqstrtod(multiplier.c_str());
        if (!IsAligned() && value == ProjectVectorData::NoMultiplier)
            return "no limit";
        std::string const distance = multiplier.substr(multiplier.find_first_not_of("+-")) + " standard deviations";
        return value > 0   ? "upper limit, the average and " + distance
               : value < 0 ? "lower limit, the average less " + distance
                           : "the average as a limit";
    }

    std::string MultipliersMeaning(std::string const &rest) const {
        if (MultipliersTaken() == 0)
            return "not used: the limit is the critical value of T2";
        std::size_t const comma = rest.find(',');
        std::string meaning = LimitBy(rest.substr(0, comma));
        if (comma != std::string::npos)
            meaning += "; " + (MultipliersTaken() == 2 ? LimitBy(rest.substr(comma + 1)) : "the second is not used");
        return meaning;
    }

    std::string RestMeaning() const {
        if (m_vector.IsImpulseResponseVector())
            return "the first and the last lag at which the X variable is 1";
        if (m_vector.HasResolvableCoefficients())
            return "how coefficients of hierarchical models are resolved";
        std::string items;
        if (m_arguments.number == Vector::noSingleItem)
            for (int const number : Vector::NamedNumbers(m_arguments)) {
                auto const item = static_cast<unsigned long>(number);
                items += (items.empty() ? "" : "; ") + (m_vector.IsXVector() ? Term('X', item) : Item(item));
            }
        return items.empty() ? notUsed : items;
    }

    engine::Project const &m_project;
    Vector const &m_vector;
    Source const &m_source;
    std::string const &m_text;
    Vector::Arguments m_arguments;
};

} // namespace

std::vector<ExplainedPart> ExplainArguments(engine::Project const &project, NamedSeries const &series) {
    std::vector<ExplainedPart> parts = ArgumentReader(project, series).Read();
    if (series.vector->IsContribution()) {
        std::vector<ExplainedPart> const further = ExplainContribution(project, series);
        parts.insert(parts.end(), further.begin(), further.end());
    }
    return parts;
}
