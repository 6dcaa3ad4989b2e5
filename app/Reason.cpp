#include "app/Reason.h"

#include "app/Failure.h"

#include <algorithm>
#include <cstdint>

namespace {

using Vector = ProjectVector;

// Tries one cause after the other; each is the empty text when it is not the cause.
class ReasonSearch {
public:
    ReasonSearch(engine::Project const &project, Vector const &vector, Source const &source,
                 std::string const &arguments)
        : m_project(project), m_vector(vector), m_source(source) {
        m_vector.ReadArguments(arguments.c_str(), m_arguments);
        m_fields = static_cast<int>(std::count(arguments.begin(), arguments.end(), ',')) + 1;
    }

    std::string Find() const {
        for (auto const cause : {&ReasonSearch::OfPredictions, &ReasonSearch::OfModel, &ReasonSearch::OfComponent,
                                 &ReasonSearch::OfTerms, &ReasonSearch::OfItem, &ReasonSearch::OfIdentifier})
            if (std::string const reason = (this->*cause)(); !reason.empty())
                return reason;
        constexpr int fewest = 4;
        if (m_fields < fewest)
            return "It has " + std::to_string(m_fields) + " of the first " + std::to_string(fewest) +
                   " arguments: source, component, number and round.";
        if (m_vector.NeedsValidationRounds())
            return "The fourth argument is a cross-validation round, from 1.";
        return "There is nothing of it in " + m_source.name + ".";
    }

private:
    std::string Sentence(std::string const &rest) const {
        std::string sentence = m_source.name + rest + ".";
        if (sentence.starts_with("model"))
            sentence.front() = 'M';
        return sentence;
    }

    std::string OfPredictions() const {
        bool const lacks = m_vector.GetObsPredType() == Vector::Predicted && m_source.model &&
                           !m_project.GetModelPredSet(m_source.model->number);
        return lacks ? "There is no prediction set; \"dataseries predict\" makes one." : "";
    }

    std::string OfModel() const {
        if (!m_source.model)
            return {};
        if (!m_source.model->fitted)
            return "The model is not fitted.";
        if ((m_vector.OnlyCrossValidated() || m_vector.NeedsValidationRounds()) && !m_source.model->crossValidated)
            return "The model is not cross-validated.";
        if ((m_vector.UseBatchIx() || m_vector.IsAlignedContribution()) && !m_source.model->isBatchModel)
            return Sentence(" is no model of batches");
        if (m_vector.GetType() == Vector::VectorTypeLag && !m_source.model->hasLaggedVariables)
            return Sentence(" has no lagged variables");
        return {};
    }

    std::string NoComponent(int component, int count, std::string const &kind) const {
        if (count == 0)
            return Sentence(" has no " + kind);
        return "There is no component \"" + std::to_string(component) + "\": " + m_source.name + " has " +
               std::to_string(count) + " of that kind.";
    }

    std::string OfComponent() const {
        if (!m_source.model)
            return {};
        ModelInfo const &model = *m_source.model;
        if (m_vector.GetNumberType() == Vector::NumberComponentRange) {
            int const all = model.SizeComponents();
            for (unsigned long const number : {m_arguments.number, m_arguments.number2})
                if (number != Vector::noSingleItem && (number < 1 || number > static_cast<unsigned long>(all)))
                    return NoComponent(static_cast<int>(number), all, "components");
            return {};
        }
        if (!m_vector.HasOneComponent())
            return {};
        auto const kind = static_cast<Vector::ComponentType>(m_vector.GetComponentType());
        // What adds up over components counts all of them in one order.
        int const count = m_vector.PredictiveComponentDefaultsToLast() ? model.SizeComponents()
                                                                       : Vector::SelectMaxComponents(kind, model);
        int const component = m_arguments.component;
        bool const known = component >= m_vector.GetFirstComponent() && component <= count;
        return known && count > 0 ? std::string()
                                  : NoComponent(component, count,
                                                kind == Vector::ComponentPredictive ? "components" : NameOfKind(kind));
    }

    std::string NoTerm(char side, ColumnTerms const &terms, unsigned long number) const {
        if (number == Vector::noSingleItem || (number >= 1 && number <= static_cast<unsigned long>(terms.Size())))
            return {};
        if (terms.Size() == 0)
            return Sentence(std::string(" has no ") + side + " variables");
        return std::string("There is no ") + side + " variable number " + std::to_string(static_cast<int>(number)) +
               ": " + m_source.name + " has " + std::to_string(terms.Size()) + ".";
    }

    std::string OfTerms() const {
        auto const model = m_source.model ? m_project.GetModel(m_source.model->number) : nullptr;
        if (!model)
            return {};
        std::string reason = m_vector.IsXVector()
                                 ? NoTerm('X', m_vector.XTermsOf(m_project, m_source.model->number), m_arguments.number)
                                 : "";
        if (reason.empty() && m_vector.IsYVector())
            reason =
                NoTerm('Y', model->GetYColumnTerms(), m_vector.IsXVector() ? m_arguments.number2 : m_arguments.number);
        return reason;
    }

    // The rows and columns that a number stands for.
    boost::shared_ptr<NCDataContainerBase const> Container() const {
        if (m_source.model && m_vector.GetObsPredType() == Vector::Predicted)
            return m_project.GetModelPredSet(m_source.model->number);
        if (m_source.model)
            return m_project.GetWorkset(m_source.model->number);
        return m_source.data == Vector::DataTypeDataSet ? m_project.GetDataSet(m_source.dataSet)
                                                        : m_project.GetPredSet(-1);
    }

    std::string OfItem() const {
        auto const container = Container();
        auto const number = static_cast<std::uint32_t>(m_arguments.number);
        if (m_vector.GetNumberType() != Vector::NumberObsOrVar || !container || number == Vector::noSingleItem)
            return {};
        bool const ofVariables = m_vector.GetType() == Vector::VectorTypeVariablesScores;
        auto const &variables = container->GetVariables();
        auto const &rows = container->GetObservations();
        if (ofVariables ? std::find(variables.begin(), variables.end(), number) != variables.end()
                        : std::find(rows.begin(), rows.end(), ObservationInfo(number)) != rows.end())
            return {};
        std::string const item = ofVariables ? "variable" : "observation";
        VarObs const &list =
            ofVariables ? static_cast<VarObs const &>(m_project.GetVariables()) : m_project.GetObservations();
        std::string const where = m_vector.GetObsPredType() == Vector::Predicted ? "the prediction set" : m_source.name;
        if (number < 1 || number > list.Size())
            return "There is no " + item + " number " + std::to_string(number) + " in the project.";
        return "The " + item + " \"" + list.GetText(number, 1) + "\", number " + std::to_string(number) +
               ", is not in " + where + ".";
    }

    std::string OfIdentifier() const {
        auto const container = Container();
        if (m_vector.GetNumberType() != Vector::NumberIdentifier || !container)
            return {};
        bool const ofObservations = m_vector.GetType() == Vector::VectorTypeVariablesScores;
        AliasAccess const aliases =
            ofObservations ? container->GetObservationAliases() : container->GetVariableAliases();
        std::string const items = ofObservations ? "observations" : "variables";
        int const alias = static_cast<int>(m_arguments.number);
        if (aliases.IsAliasNumeral(alias))
            return {};
        std::string const name = aliases.GetRawAliasName(alias);
        if (name.empty())
            return "There is no identifier column " + std::to_string(alias) + " of the " + items + " of " +
                   m_source.name + ".";
        return "The identifier \"" + name + "\" of the " + items + " of " + m_source.name + " is no number.";
    }

    engine::Project const &m_project;
    Vector const &m_vector;
    Source const &m_source;
    Vector::Arguments m_arguments;
    int m_fields = 0;
};

} // namespace

std::string NameOfKind(ProjectVector::ComponentType kind) {
    switch (kind) {
    case ProjectVector::ComponentXSideOrthogonal:
        return "X-side orthogonal components";
    case ProjectVector::ComponentYSideOrthogonal:
        return "Y-side orthogonal components";
    default:
        return "predictive components";
    }
}

std::string ReasonForNothing(engine::Project const &project, ProjectVector const &vector, Source const &source,
                             std::string const &arguments) {
    return ReasonSearch(project, vector, source, arguments).Find();
}

NCError GivesNothing(engine::Project const &project, ProjectVector const &vector, Source const &source,
                     std::string const &arguments, std::string const &text) {
    return Problem(ExceptionMessage::translate("\"{1}\" gives no data. {2}") % text %
                   ReasonForNothing(project, vector, source, arguments));
}

NCError GivesNothing(engine::Project const &project, std::string const &text, ProjectVectorData const &data,
                     ProjectUtilities::DefaultSelection const &defaults) {
    std::string const arguments = data.ToStdString(&defaults);
    return GivesNothing(project, *data.GetProjectVector(), ReadSource(project, data.GetDataSourceName(), text),
                        arguments.substr(arguments.find(' ') + 1), text);
}
