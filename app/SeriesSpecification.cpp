#include "app/SeriesSpecification.h"

#include "app/Failure.h"
#include "app/VectorSearch.h"
#include "utilities/DefaultSelection.h"

#include <vector>

namespace {

using Axis = ProjectVector::VectorTypeEnum;

// "M2", "DS1" or "PS", whether or not it is there.
bool IsSource(std::string_view text) {
    std::size_t const prefix = text.starts_with("DS") ? 2 : text.starts_with("M") ? 1 : 0;
    bool const isNumbered = prefix > 0 && text.size() > prefix;
    return text == "PS" || (isNumbered && text.find_first_not_of("0123456789", prefix) == text.npos);
}

// Where a vector may come from, the likeliest first.
std::vector<Source> SourcesOf(engine::Project const &project, VectorText const &text) {
    if (text.source)
        return {ReadSource(project, *text.source, text.whole)};
    std::vector<Source> sources;
    if (int const model = project.GetActiveModelNumber(); model > 0)
        sources.push_back(ReadSource(project, "M" + std::to_string(model)));
    if (int const dataSet = project.GetFirstDataSet(0); dataSet > 0)
        sources.push_back(ReadSource(project, "DS" + std::to_string(dataSet)));
    if (project.GetPredSet(-1))
        sources.push_back(ReadSource(project, "PS"));
    if (sources.empty())
        throw Problem(ExceptionMessage::translate("The project is empty; \"dataseries import\" reads a table."));
    return sources;
}

std::optional<int> PositionOf(ColumnTerms const &terms, NCVariables const &variables, std::string const &name) {
    int position = 0;
    for (ColumnTerm const &term : terms) {
        ++position;
        if (term.GetPrimaryName(variables) == name)
            return position;
    }
    return {};
}

// Fills in what a vector is about, as the kind of its number says.
class ArgumentReader {
public:
    ArgumentReader(engine::Project const &project, VectorText const &text, Source const &source,
                   ProjectVectorData &data)
        : m_project(project), m_text(text), m_source(source), m_data(data), m_vector(*data.GetProjectVector()) {}

    void Read(std::string const &argument) {
        if (m_vector.GetNumberType() == ProjectVector::NumberComponentRange ||
            m_vector.GetNumberType() == ProjectVector::NumberBatchComponentRange)
            return ReadRange(argument);
        if (!TakesNumber())
            return m_vector.HasOneComponent() ? ReadComponent(argument) : Refuse(argument);
        if (SetNumber(argument))
            return;
        // Behind the item a component may stand.
        std::size_t const colon = argument.rfind(':');
        bool const both = colon != std::string::npos && m_vector.HasOneComponent();
        if (!both || !SetNumber(argument.substr(0, colon)))
            throw Problem(ExceptionMessage::translate("There is no {1} \"{2}\" in {3}, which \"{4}\" asks for.") %
                          NumberName() % argument % m_source.name % m_text.whole);
        ReadComponent(argument.substr(colon + 1));
    }

private:
    bool TakesNumber() const {
        return m_vector.IsXVector() || m_vector.IsYVector() ||
               m_vector.GetNumberType() == ProjectVector::NumberObsOrVar ||
               m_vector.GetNumberType() == ProjectVector::NumberIdentifier;
    }

    bool IsOverObservations() const { return m_vector.GetType() == ProjectVector::VectorTypeVariablesScores; }

    std::string NumberName() const {
        if (m_vector.GetNumberType() == ProjectVector::NumberIdentifier)
            return "identifier column";
        if (m_vector.GetNumberType() == ProjectVector::NumberObsOrVar)
            return IsOverObservations() ? "variable" : "observation";
        return m_vector.IsYVector() ? "Y variable" : "X variable";
    }

    [[noreturn]] void Refuse(std::string const &argument) const {
        throw Problem(ExceptionMessage::translate("The vector \"{1}\" takes no argument, found \"{2}\".") %
                      m_vector.GetName() % argument);
    }

    int CheckedComponent(std::string const &text, int count) const {
        std::optional<int> const component = NumberIn(text);
        if (!component || *component < m_vector.GetFirstComponent() || *component > count)
            throw Problem(ExceptionMessage::translate("There is no component \"{1}\", which \"{2}\" asks for: {3} has "
                                                      "{4} of that kind.") %
                          text % m_text.whole % m_source.name % count);
        return *component;
    }

    void ReadComponent(std::string const &text) {
        auto const kind = static_cast<ProjectVector::ComponentType>(m_vector.GetComponentType());
        m_data.SetComponent(CheckedComponent(text, ProjectVector::SelectMaxComponents(kind, *m_source.model)));
    }

    void ReadRange(std::string const &text) {
        std::size_t const dash = text.find('-', 1);
        int const count = m_source.model->SizeComponents();
        int const first = CheckedComponent(text.substr(0, dash), count);
        int const last = dash == std::string::npos ? first : CheckedComponent(text.substr(dash + 1), count);
        m_data.SetNumber(static_cast<std::uint32_t>(first));
        m_data.SetNumberID2(static_cast<std::uint32_t>(last));
    }

    bool SetNumber(std::string const &name) {
        std::optional<std::uint32_t> number;
        if (m_vector.GetNumberType() == ProjectVector::NumberIdentifier)
            number = IsOverObservations() ? IdentifierNamed(m_project.GetObservations(), name)
                                          : IdentifierNamed(m_project.GetVariables(), name);
        else if (m_vector.GetNumberType() == ProjectVector::NumberObsOrVar)
            number = IsOverObservations() ? ItemOfName(m_project.GetVariables(), name)
                                          : ItemOfName(m_project.GetObservations(), name);
        else
            number = TermOf(name);
        if (number)
            m_data.SetNumber(*number);
        return number.has_value();
    }

    std::optional<std::uint32_t> TermOf(std::string const &name) const {
        auto const model = m_project.GetModel(m_source.model->number);
        if (!model)
            return {};
        ColumnTerms const terms = m_vector.IsYVector() && !m_vector.IsXVector()
                                      ? model->GetYColumnTerms()
                                      : m_vector.XTermsOf(m_project, m_source.model->number);
        std::optional<int> const position = PositionOf(terms, m_project.GetVariables(), name);
        return position ? std::optional(static_cast<std::uint32_t>(*position)) : std::nullopt;
    }

    engine::Project const &m_project;
    VectorText const &m_text;
    Source const &m_source;
    ProjectVectorData &m_data;
    ProjectVector const &m_vector;
};

// The first source that has the vector on the axis (or on any); the last one's error when none has.
Source ChooseSource(engine::Project const &project, VectorText const &text, std::optional<Axis> axis) {
    std::vector<Source> const sources = SourcesOf(project, text);
    for (Source const &source : sources)
        if (axis ? Find(text.name, *axis, source) != nullptr : AxisOf(text.name, source).has_value())
            return source;
    throw Unknown(text.name, axis, sources.front());
}

} // namespace

std::optional<std::uint32_t> ItemOfName(VarObs const &list, std::string const &name) {
    for (std::uint32_t item = 1; item <= list.Size(); ++item)
        if (list.GetText(item, 1) == name)
            return item;
    return {};
}

std::optional<std::uint32_t> IdentifierNamed(VarObs const &list, std::string const &heading) {
    for (int alias = 1; alias <= list.SizeAliases(); ++alias)
        if (list.GetAlias(alias)->name == heading)
            return static_cast<std::uint32_t>(alias);
    return {};
}

VectorText ReadVectorText(std::string const &text) {
    VectorText read{text, text, {}, {}};
    std::size_t const at = text.rfind('@');
    // Behind a colon, what is no source is a part of a name: "XVar:p@25C".
    if (at != std::string::npos && (at < text.find(':') || IsSource(std::string_view(text).substr(at + 1)))) {
        read.source = read.name.substr(at + 1);
        read.name.erase(at);
        if (read.source->empty())
            throw UsageError("\"" + text + "\" has nothing behind \"@\", expected a source such as M1, DS1 or PS");
    }
    if (std::size_t const colon = read.name.find(':'); colon != std::string::npos) {
        read.argument = read.name.substr(colon + 1);
        read.name.erase(colon);
        if (read.argument->empty())
            throw UsageError("\"" + text + "\" has nothing behind \":\", expected a component or a name");
    }
    if (read.name.empty())
        throw UsageError("\"" + text + "\" is no vector, such as \"t\", \"t:2\" or \"YPred:octane@M2\"");
    return read;
}

Axis FindAxis(engine::Project const &project, VectorText const &text) {
    return *AxisOf(text.name, ChooseSource(project, text, {}));
}

// How many standard deviations from their average the limits of batches are.
constexpr double usualMultiplier = 3;

ProjectVectorData DefaultSpecification(ProjectVector const &vector, Source const &source,
                                       ProjectUtilities::DefaultSelection const &defaults) {
    ProjectVectorData data;
    data.SetProjectVector(&vector);
    if (source.model)
        data.SetModelInfoPtr(source.model);
    else
        data.SetDataSet(source.dataSet);
    data.SetDefaultNumberID(defaults);
    if (vector.HasOneComponent() && !vector.PredictiveComponentDefaultsToLast())
        data.SetComponent(1);
    if (vector.IsT2RangeVector())
        data.SetNumberID2(ProjectVectorData::NotSet); // to the last component
    if (vector.HasMultiplier()) {
        data.multiplier1 = usualMultiplier;
        data.multiplier2 = -usualMultiplier;
    }
    return data;
}

ProjectVectorData Specify(boost::shared_ptr<engine::Project> const &project, VectorText const &text, Axis axis,
                          ProjectUtilities::DefaultSelection const &defaults) {
    Source const source = ChooseSource(*project, text, axis);
    ProjectVectorData data = DefaultSpecification(*Find(text.name, axis, source), source, defaults);
    if (text.argument)
        ArgumentReader(*project, text, source, data).Read(*text.argument);
    return data;
}

std::uint32_t VariableNumber(engine::Project const &project, std::string const &name) {
    std::optional<std::uint32_t> const number = ItemOfName(project.GetVariables(), name);
    if (!number)
        throw Problem(ExceptionMessage::translate("There is no variable \"{1}\" in the project.") % name);
    return *number;
}

std::uint32_t ObservationNumber(engine::Project const &project, std::string const &name) {
    std::optional<std::uint32_t> const number = ItemOfName(project.GetObservations(), name);
    if (!number)
        throw Problem(ExceptionMessage::translate("There is no observation \"{1}\" in the project.") % name);
    return *number;
}
