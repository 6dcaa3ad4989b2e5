#include "engine/models/Definition_internal.h"

#include "engine/data/DataSet_internal.h"
#include "platform/text/Exception.h"

#include <algorithm>
#include <set>
#include <unordered_set>

namespace engine {

namespace {

ScalingKind ScalingOf(ModelRequest::Scaling scaling) {
    switch (scaling) {
    case ModelRequest::Centred:
        return ScalingKind::Centred;
    case ModelRequest::Pareto:
        return ScalingKind::Pareto;
    case ModelRequest::None:
        return ScalingKind::None;
    default:
        return ScalingKind::UnitVariance;
    }
}

// Puts the names of one request into places.
class Definer {
public:
    Definer(ModelRequest const &request, ProjectFile const &file)
        : m_request(request), m_file(file), m_record(file.DataSet(request.dataSet)),
          m_variables(file.VariableIdentifiers(m_record.number).front().texts),
          m_observations(file.ObservationIdentifiers(m_record.number).front().texts) {}

    ModelDefinition Define() {
        SetComponents();
        AddResponses();
        LeaveOut();
        if (!m_request.crossValidationIdentifier.empty())
            GroupRows();
        AddFactors();
        Transform();
        Scale();
        if (m_request.localCentring)
            CentreLocally();
        for (std::vector<std::string> const &names : m_request.products)
            AddProduct(names);
        AddAllProducts();
        return std::move(m_definition);
    }

private:
    void SetComponents() {
        m_definition.kind = static_cast<ModelKind>(m_request.type);
        m_definition.components = m_request.components;
        if (ModelTypeE::IsOPLSorO2PLS(m_request.type))
            m_definition.xOrthogonal = m_request.xOrthogonal;
        if (ModelTypeE::IsO2PLS(m_request.type))
            m_definition.yOrthogonal = m_request.yOrthogonal;
        m_definition.groups = m_request.crossValidationGroups;
        m_definition.q2 = m_request.q2 == ModelRequest::DeflatedMatrices ? Q2Form::Deflated : Q2Form::Rounds;
        m_definition.alpha = m_request.alpha;
    }

    Term TermOf(int column) const {
        Term term;
        term.column = column;
        term.scaling = ScalingOf(m_request.scaling);
        return term;
    }

    void AddResponses() {
        for (std::string const &name : m_request.responses) {
            std::vector<int> const *const columns = m_variables.Find(name);
            if (!columns)
                throw NCError(ExceptionMessage::translate("There is no variable \"{1}\" in data set {2} ({3}).") %
                                  name % m_record.number % m_record.name,
                              NCError::Error);
            if (!m_used.insert(columns->front()).second)
                throw NCError(ExceptionMessage::translate("The variable \"{1}\" is named twice as a response.") % name,
                              NCError::Error);
            m_definition.yTerms.push_back(TermOf(columns->front()));
            m_definition.yTerms.back().scaling = ScalingOf(m_request.responseScaling.value_or(m_request.scaling));
        }
    }

    void LeaveOut() {
        std::unordered_set<int> leftOut;
        for (std::string const &name : m_request.excluded) {
            std::vector<int> const *const columns = m_variables.Find(name);
            std::vector<int> const *const rows = m_observations.Find(name);
            if (!columns && !rows)
                throw NCError(
                    ExceptionMessage::translate(
                        "There is no variable and no observation \"{1}\" in data set {2} ({3}) to leave out.") %
                        name % m_record.number % m_record.name,
                    NCError::Error);
            if (columns && !m_used.insert(columns->front()).second)
                throw NCError(ExceptionMessage::translate("The variable \"{1}\" is left out, and is also a response or "
                                                          "left out before.") %
                                  name,
                              NCError::Error);
            if (!columns)
                leftOut.insert(rows->begin(), rows->end());
        }
        for (int row = 0; row < static_cast<int>(m_record.observations); ++row)
            if (!leftOut.contains(row))
                m_definition.rows.push_back(row);
    }

    // Rows with the same text are left out together.
    void GroupRows() {
        PackedTexts const texts = IdentifierNamed(m_file, m_record, m_request.crossValidationIdentifier).texts;
        std::unordered_map<std::string, int> groups;
        for (int const row : m_definition.rows) {
            int const next = static_cast<int>(groups.size()) + 1;
            std::string const text(texts[static_cast<std::size_t>(row)]);
            m_definition.givenGroups.push_back(groups.try_emplace(text, next).first->second);
        }
        if (groups.size() < 2)
            throw NCError(
                ExceptionMessage::translate("Cross-validation needs two groups at least; the observations have "
                                            "one and the same \"{1}\".") %
                    m_request.crossValidationIdentifier,
                NCError::Error);
    }

    // All variables that are left. Dates are no measurements: they are among them only when they are transformed, which
    // names them.
    void AddFactors() {
        for (std::string const &name : HeadingsOf(*ReadRoles(m_file), dateTimeRole))
            if (std::vector<int> const *const columns = m_variables.Find(name);
                columns && !m_request.transformations.contains(name))
                m_used.insert(columns->begin(), columns->end());
        for (int column = 0; column < static_cast<int>(m_record.variables); ++column)
            if (!m_used.contains(column)) {
                m_xPlaces[column] = static_cast<int>(m_definition.xTerms.size());
                m_definition.xTerms.push_back(TermOf(column));
            }
    }

    // The term of a variable, null when it is in neither X nor Y.
    Term *FindTerm(std::string const &name) {
        std::vector<int> const *const columns = m_variables.Find(name);
        if (!columns)
            return nullptr;
        if (auto const place = m_xPlaces.find(columns->front()); place != m_xPlaces.end())
            return &m_definition.xTerms[static_cast<std::size_t>(place->second)];
        auto const response = std::ranges::find(m_definition.yTerms, columns->front(), &Term::column);
        return response == m_definition.yTerms.end() ? nullptr : &*response;
    }

    Term &TermNamed(std::string const &name, char const *purpose) {
        Term *const term = FindTerm(name);
        if (!term)
            throw NCError(
                ExceptionMessage::translate("There is no variable \"{1}\" of the model in data set {2} ({3}) to {4}.") %
                    name % m_record.number % m_record.name % purpose,
                NCError::Error);
        return *term;
    }

    void Transform() {
        for (auto const &[name, transformation] : m_request.transformations)
            TermNamed(name, "transform").transformation = TransformationOf(transformation);
    }

    void Scale() {
        for (auto const &[name, scaling] : m_request.scalings)
            TermNamed(name, "scale").scaling = ScalingOf(scaling);
    }

    void CentreLocally() {
        LocalCentring const centring = ReadCentring(m_file);
        for (LocalCentring::Variable const &variable : centring.variables) {
            Term *const term = FindTerm(variable.name);
            if (!term)
                continue;
            if (term->transformation != TransformationOf(variable.transformation))
                throw NCError(
                    ExceptionMessage::translate(
                        "The centre values of \"{1}\" were made with another transformation than the model's. "
                        "Make them anew with the same, or leave local centring out.") %
                        variable.name,
                    NCError::Error);
            term->centres = variable.centres;
            m_definition.centringIdentifier = centring.identifier;
            m_definition.centringGroups = centring.groups;
        }
    }

    void AddUnlessKnown(std::vector<int> factors) {
        if (!m_products.insert(factors).second)
            return;
        Term product = TermOf(0);
        product.factors = std::move(factors);
        m_definition.xTerms.push_back(std::move(product));
    }

    void AddAllProducts() {
        if (!m_request.squares && !m_request.crosses)
            return;
        auto const columns = static_cast<int>(std::ranges::count(m_definition.xTerms, false, &Term::IsProduct));
        for (int first = 0; first < columns; ++first)
            for (int second = first; second < (m_request.crosses ? columns : first + 1); ++second)
                if (first != second || m_request.squares)
                    AddUnlessKnown({first, second});
    }

    void AddProduct(std::vector<std::string> const &names) {
        if (names.size() < 2)
            throw NCError(ExceptionMessage::translate("A square or cross term has two factors at least, not {1}.") %
                              names.size(),
                          NCError::Error);
        std::vector<int> factors;
        for (std::string const &name : names) {
            std::vector<int> const *const columns = m_variables.Find(name);
            auto const factor = columns ? m_xPlaces.find(columns->front()) : m_xPlaces.end();
            if (factor == m_xPlaces.end())
                throw NCError(
                    ExceptionMessage::translate("\"{1}\", a factor of a square or cross term, is no X variable "
                                                "of the model.") %
                        name,
                    NCError::Error);
            factors.push_back(factor->second);
        }
        std::ranges::sort(factors);
        AddUnlessKnown(std::move(factors));
    }

    ModelRequest const &m_request;
    ProjectFile const &m_file;
    DataSetRecord m_record;
    NameList m_variables;
    NameList m_observations;
    std::set<int> m_used;                   // columns that are not in X
    std::unordered_map<int, int> m_xPlaces; // of columns among the terms of X
    std::set<std::vector<int>> m_products;  // the factors of those that are terms
    ModelDefinition m_definition;
};

} // namespace

NameList::NameList(PackedTexts const &names) {
    for (std::size_t i = 0; i < names.size(); ++i)
        m_places[std::string(names[i])].push_back(static_cast<int>(i));
}

std::vector<int> const *NameList::Find(std::string const &name) const {
    auto const found = m_places.find(name);
    return found == m_places.end() ? nullptr : &found->second;
}

Transformation TransformationOf(VariableTransformation const &transformation) {
    using enum TransformationKind;
    static constexpr TransformationKind kinds[] = {None, Log, NegLog, Logit, Exponential, Power};
    return {kinds[transformation.kind], transformation.c1, transformation.c2, transformation.c3};
}

TextColumn IdentifierNamed(ProjectFile const &file, DataSetRecord const &record, std::string const &heading) {
    for (TextColumn &column : file.ObservationIdentifiers(record.number))
        if (column.name == heading)
            return std::move(column);
    throw NCError(ExceptionMessage::translate("The observations of data set {1} ({2}) have no identifier \"{3}\".") %
                      record.number % record.name % heading,
                  NCError::Error);
}

ModelDefinition DefinitionOf(ModelRequest const &request, ProjectFile const &file) {
    return Definer(request, file).Define();
}

} // namespace engine
