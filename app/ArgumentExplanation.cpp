#include "app/Explanation.h"
#include "catalogue/ProjectVectorHandler.h"
#include "platform/project/GetProjectData.h"

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

std::string NameOfKind(Vector::ComponentType kind) {
    switch (kind) {
    case Vector::ComponentXSideOrthogonal:
        return "X-side orthogonal components";
    case Vector::ComponentYSideOrthogonal:
        return "Y-side orthogonal components";
    default:
        return "predictive components";
    }
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
        if (std::getline(texts, rest, '\0') && !rest.empty())
            parts.push_back({"further", rest, RestMeaning()});
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
        if (!IsOfWholeModel())
            return notUsed;
        return "whole model, " + std::to_string(m_source.model->predictiveComponents) + "+" +
               std::to_string(m_source.model->xSideOrthogonalComponents) +
               " components (predictive + X-side orthogonal)";
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
        ColumnTerms const &terms = side == 'X' ? model->GetXColumnTerms() : model->GetYColumnTerms();
        std::string const which = std::string(1, side) + " variable " + std::to_string(number);
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

    std::string InRange(char const *end, unsigned long number) const {
        auto const component = static_cast<int>(number);
        if (m_vector.IsT2RangeVector() && component == -1)
            return std::string(end) + " component: the last one";
        return std::string(end) + " component: " + std::to_string(component);
    }

    std::string NumberMeaning() const {
        if (m_arguments.number == Vector::noSingleItem && m_vector.GetNumberType() != Vector::NumberComponentRange)
            return "the list behind the other arguments";
        if (m_vector.IsXVector() || m_vector.IsYVector())
            return Term(m_vector.IsXVector() ? 'X' : 'Y', m_arguments.number);
        switch (m_vector.GetNumberType()) {
        case Vector::NumberObsOrVar:
            return Item(m_arguments.number);
        case Vector::NumberIdentifier:
            return Identifier();
        case Vector::NumberComponentRange:
            return InRange("first", m_arguments.number);
        default:
            return notUsed;
        }
    }

    std::string SecondNumberMeaning() const {
        if (m_vector.GetNumberType() == Vector::NumberComponentRange)
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

    std::string BatchMeaning() const { return "batch " + std::to_string(m_arguments.batch); }

    std::string RestMeaning() const {
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
    return ArgumentReader(project, series).Read();
}
