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
          m_variables(file.VariableIdentifiers(m_record.number).front().texts), m_layout(FindLayout(file, m_record)) {}

    ModelDefinition Define() {
        SetComponents();
        LeaveOut();
        AddResponses();
        if (m_request.evolution)
            Evolve(*m_request.evolution);
        if (!m_request.crossValidationIdentifier.empty())
            GroupRows();
        else if (m_request.evolution && m_request.crossValidationGroups > 0)
            GroupBatches();
        AddFactors();
        Transform();
        Scale();
        Weigh();
        if (m_request.localCentring)
            CentreLocally();
        AddLags();
        if (!m_request.blocks.empty())
            ScaleBlocks();
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
        if (m_definition.kind == ModelKind::PlsDiscriminant || !m_request.classes.empty())
            AddClasses();
        for (std::string const &name : m_request.responses)
            if (std::vector<int> const *const columns = m_variables.Find(name)) {
                if (!m_used.insert(columns->front()).second)
                    throw NCError(ExceptionMessage::translate("The variable \"{1}\" is named twice as a response.") %
                                      name,
                                  NCError::Error);
                m_definition.yTerms.push_back(TermOf(columns->front()));
            } else if (auto const texts = FindIdentifier(m_file, m_record, name)) {
                AddLevels(*texts, m_definition.yTerms);
            } else {
                throw NCError(ExceptionMessage::translate("There is no variable \"{1}\" in data set {2} ({3}).") %
                                  name % m_record.number % m_record.name,
                              NCError::Error);
            }
        for (Term &term : m_definition.yTerms)
            term.scaling = ScalingOf(m_request.responseScaling.value_or(m_request.scaling));
    }

    void AddClasses() {
        if (m_request.classes.empty() || !m_request.responses.empty())
            throw NCError(ExceptionMessage::translate("A discriminant model has classes, which an identifier column "
                                                      "tells, and no other response."),
                          NCError::Error);
        AddLevels(TextsNamed(m_request.classes), m_definition.yTerms);
    }

    // The identifier column that is asked for as a qualitative variable.
    TextColumn TextsNamed(std::string const &heading) const {
        if (m_variables.Find(heading))
            throw NCError(ExceptionMessage::translate("\"{1}\" is a variable of data set {2} ({3}), expected is an "
                                                      "identifier column of its observations.") %
                              heading % m_record.number % m_record.name,
                          NCError::Error);
        return IdentifierNamed(m_file, m_record, heading);
    }

    // One term for each level.
    void AddLevels(TextColumn const &column, std::vector<Term> &terms) {
        if (!ColumnsNamed(column.name).empty())
            throw NCError(ExceptionMessage::translate("The qualitative variable \"{1}\" is named twice.") % column.name,
                          NCError::Error);
        std::size_t rows = 0;
        std::set<std::string_view> known;
        for (int const row : m_definition.rows) {
            std::string_view const text = column.texts[static_cast<std::size_t>(row)];
            rows += text.empty() ? 0 : 1;
            if (text.empty() || !known.insert(text).second)
                continue;
            m_definition.levels.push_back({column.name, std::string(text)});
            terms.push_back(TermOf(-static_cast<int>(m_definition.levels.size())));
        }
        if (known.size() < 2 || known.size() == rows)
            throw NCError(
                ExceptionMessage::translate("\"{1}\" has {2} different texts for the {3} observations of the "
                                            "model that have one, expected are two at least, and observations "
                                            "that share one.") %
                    column.name % known.size() % rows,
                NCError::Error);
    }

    // The columns of a variable: of a qualitative one those of its levels, of which each has a name, too.
    std::vector<int> ColumnsNamed(std::string const &name) const {
        if (std::vector<int> const *const columns = m_variables.Find(name))
            return {columns->front()};
        std::vector<int> columns;
        int column = -1;
        for (Level const &level : m_definition.levels) {
            if (level.variable == name || level.Name() == name)
                columns.push_back(column);
            --column;
        }
        return columns;
    }

    // There may be millions of them, which as a rule nobody asks for.
    std::vector<int> const *RowsNamed(std::string const &name) {
        if (!m_observations)
            m_observations.emplace(m_file.ObservationIdentifiers(m_record.number).front().texts);
        return m_observations->Find(name);
    }

    void LeaveOut() {
        std::unordered_set<int> leftOut;
        for (std::string const &name : m_request.excluded) {
            std::vector<int> const *const columns = m_variables.Find(name);
            std::vector<int> const *const rows = columns ? nullptr : RowsNamed(name);
            bool const isBatch = !columns && !rows && m_layout && m_layout->HasBatch(name);
            if (!columns && !rows && !isBatch)
                throw NCError(
                    ExceptionMessage::translate(
                        "There is no variable and no observation \"{1}\" in data set {2} ({3}) to leave out.") %
                        name % m_record.number % m_record.name,
                    NCError::Error);
            bool const isResponse = std::ranges::count(m_request.responses, name) > 0;
            if (columns && (isResponse || !m_used.insert(columns->front()).second))
                throw NCError(ExceptionMessage::translate("The variable \"{1}\" is left out, and is also a response or "
                                                          "left out before.") %
                                  name,
                              NCError::Error);
            if (!columns && rows)
                leftOut.insert(rows->begin(), rows->end());
            if (isBatch)
                m_leftOutBatches.insert(name);
        }
        for (int row = 0; row < static_cast<int>(m_record.observations); ++row)
            if (!leftOut.contains(row) &&
                (m_leftOutBatches.empty() || !m_leftOutBatches.contains(m_layout->BatchOf(row))))
                m_definition.rows.push_back(row);
    }

    // Keeps the rows of the phase.
    void Evolve(EvolutionRequest const &request) {
        if (!m_layout)
            throw NCError(ExceptionMessage::translate("Data set {1} ({2}) has no identifier that tells batches. Import "
                                                      "it with --batch COLUMN.") %
                              m_record.number % m_record.name,
                          NCError::Error);
        if (m_definition.kind != ModelKind::Pls && m_definition.kind != ModelKind::Opls)
            throw NCError(ExceptionMessage::translate("A model of the evolution of batches is PLS or OPLS, not {1}.") %
                              ModelTypeE::GetModelTypeName(m_request.type),
                          NCError::Error);
        if (request.points < 0)
            throw NCError(ExceptionMessage::translate("An aligned batch cannot have {1} points.") % request.points,
                          NCError::Error);
        if (m_definition.yTerms.size() != 1)
            throw NCError(ExceptionMessage::translate("A model of the evolution of batches has one response, their "
                                                      "maturity, not {1}.") %
                              m_definition.yTerms.size(),
                          NCError::Error);
        std::vector<std::string> const phases = m_layout->Phases();
        if (!request.phase.empty() && std::ranges::find(phases, request.phase) == phases.end())
            throw NCError(ExceptionMessage::translate("There is no phase \"{1}\" in data set {2} ({3}).") %
                              request.phase % m_record.number % m_record.name,
                          NCError::Error);
        std::erase_if(m_definition.rows, [&](int row) { return !m_layout->IsIn(row, request.phase); });
        m_definition.evolution = {request.phase, 0, request.treatment,
                                  request.alignByMaturity ? AlignmentMode::Maturity : AlignmentMode::Length,
                                  request.points};
    }

    // Whole batches are left out together, one after the other.
    void GroupBatches() {
        std::unordered_map<std::string_view, int> numbers;
        for (int const row : m_definition.rows) {
            int const number = numbers.emplace(m_layout->BatchOf(row), static_cast<int>(numbers.size())).first->second;
            m_definition.givenGroups.push_back(number % m_request.crossValidationGroups + 1);
        }
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

    // All variables that are left, and the qualitative ones. Dates are no measurements: they are among them only when
    // they are transformed, which names them.
    void AddFactors() {
        for (std::string const &name : HeadingsOf(*ReadRoles(m_file), dateTimeRole))
            if (std::vector<int> const *const columns = m_variables.Find(name);
                columns && !m_request.transformations.contains(name))
                m_used.insert(columns->begin(), columns->end());
        for (int column = 0; column < static_cast<int>(m_record.variables); ++column)
            if (!m_used.contains(column))
                m_definition.xTerms.push_back(TermOf(column));
        m_quantities = static_cast<int>(m_definition.xTerms.size());
        for (std::string const &heading : m_request.qualitative)
            AddLevels(TextsNamed(heading), m_definition.xTerms);
        for (std::size_t place = 0; place < m_definition.xTerms.size(); ++place)
            m_xPlaces[m_definition.xTerms[place].column] = static_cast<int>(place);
    }

    // Null when the column is in neither X nor Y.
    Term *TermAt(int column) {
        if (auto const place = m_xPlaces.find(column); place != m_xPlaces.end())
            return &m_definition.xTerms[static_cast<std::size_t>(place->second)];
        auto const response = std::ranges::find(m_definition.yTerms, column, &Term::column);
        return response == m_definition.yTerms.end() ? nullptr : &*response;
    }

    // The term of a variable, null when it is in neither X nor Y.
    Term *FindTerm(std::string const &name) {
        std::vector<int> const *const columns = m_variables.Find(name);
        return columns ? TermAt(columns->front()) : nullptr;
    }

    [[noreturn]] void ThrowUnknown(std::string const &name, char const *purpose) const {
        throw NCError(
            ExceptionMessage::translate("There is no variable \"{1}\" of the model in data set {2} ({3}) to {4}.") %
                name % m_record.number % m_record.name % purpose,
            NCError::Error);
    }

    Term &TermNamed(std::string const &name, char const *purpose) {
        Term *const term = FindTerm(name);
        if (!term)
            ThrowUnknown(name, purpose);
        return *term;
    }

    // Of a qualitative variable those of all levels.
    std::vector<Term *> TermsNamed(std::string const &name, char const *purpose) {
        std::vector<Term *> terms;
        for (int const column : ColumnsNamed(name))
            if (Term *const term = TermAt(column))
                terms.push_back(term);
        if (terms.empty())
            ThrowUnknown(name, purpose);
        return terms;
    }

    void Transform() {
        for (auto const &[name, transformation] : m_request.transformations)
            TermNamed(name, "transform").transformation = TransformationOf(transformation);
    }

    void Scale() {
        for (auto const &[name, scaling] : m_request.scalings)
            for (Term *const term : TermsNamed(name, "scale"))
                term->scaling = ScalingOf(scaling);
    }

    void Weigh() {
        for (auto const &[name, weight] : m_request.weights) {
            if (!(weight > 0) || !std::isfinite(weight))
                throw NCError(ExceptionMessage::translate("The weight of variable \"{1}\" is {2}, expected is a number "
                                                          "above 0.") %
                                  name % weight,
                              NCError::Error);
            for (Term *const term : TermsNamed(name, "weigh"))
                term->modifier = weight;
        }
    }

    // The block of each column of X that is in one.
    std::map<int, std::string> ColumnsInBlocks() const {
        std::map<int, std::string> blocks;
        for (auto const &[block, names] : m_request.blocks)
            for (std::string const &name : names) {
                std::vector<int> const columns = ColumnsNamed(name);
                if (columns.empty() || !m_xPlaces.contains(columns.front()))
                    throw NCError(
                        ExceptionMessage::translate("\"{1}\" in block \"{2}\" is no X variable of the model.") % name %
                            block,
                        NCError::Error);
                for (int const column : columns)
                    if (auto const [at, isNew] = blocks.emplace(column, block); !isNew)
                        throw NCError(ExceptionMessage::translate("Variable \"{1}\" is in block \"{2}\" and again in "
                                                                  "\"{3}\".") %
                                          name % at->second % block,
                                      NCError::Error);
            }
        return blocks;
    }

    // The lags of a variable are in its block. X has no products yet, which are in none.
    void ScaleBlocks() {
        std::map<int, std::string> const blocks = ColumnsInBlocks();
        auto const blockOf = [&](Term const &term) {
            auto const found = blocks.find(term.column);
            return found == blocks.end() ? std::string() : found->second;
        };
        std::map<std::string, int> sizes;
        for (Term const &term : m_definition.xTerms)
            ++sizes[blockOf(term)];
        for (Term &term : m_definition.xTerms) {
            int const size = sizes.at(blockOf(term));
            term.blockFactor = m_request.hardBlocks ? HardBlockFactor(size) : SoftBlockFactor(size);
        }
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

    // A variable in X, or a response, as a term of X.
    Term MotherNamed(std::string const &name) {
        Term mother = TermNamed(name, "lag");
        if (!m_xPlaces.contains(mother.column) && !m_request.scalings.contains(name))
            mother.scaling = ScalingOf(m_request.scaling);
        return mother;
    }

    // Behind all other columns, by variable and rising lag.
    void AddLags() {
        if (!m_request.lags.empty() && m_layout)
            m_layout->CheckBatches();
        std::map<std::pair<int, int>, Term> lagged; // by column and lag
        auto const add = [&](Term term, VariableLags const &lags) {
            for (term.lag = lags.first; term.lag <= lags.last; ++term.lag)
                lagged.emplace(std::pair(term.column, term.lag), term);
        };
        for (VariableLags const &lags : m_request.lags) {
            if (lags.first < 1 || lags.last < lags.first ||
                static_cast<std::size_t>(lags.last) >= m_record.observations)
                throw NCError(ExceptionMessage::translate("There are no lags {1} to {2} in data set {3} ({4}): they "
                                                          "begin at 1 and end below its {5} observations.") %
                                  lags.first % lags.last % m_record.number % m_record.name % m_record.observations,
                              NCError::Error);
            if (!lags.variable.empty())
                add(MotherNamed(lags.variable), lags);
            else
                for (int place = 0; place < m_quantities; ++place)
                    add(m_definition.xTerms[static_cast<std::size_t>(place)], lags);
        }
        for (auto &[at, term] : lagged)
            m_definition.xTerms.push_back(std::move(term));
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
        for (int first = 0; first < m_quantities; ++first)
            for (int second = first; second < (m_request.crosses ? m_quantities : first + 1); ++second)
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
            std::vector<int> const columns = ColumnsNamed(name);
            auto const factor = columns.size() == 1 ? m_xPlaces.find(columns.front()) : m_xPlaces.end();
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
    std::optional<NameList> m_observations;
    std::optional<BatchLayout> m_layout; // nothing without an identifier of batches
    std::set<std::string, std::less<>> m_leftOutBatches;
    std::set<int> m_used;                   // columns that are not in X
    int m_quantities = 0;                   // terms of X at its start that are columns of the data set
    std::unordered_map<int, int> m_xPlaces; // of columns among the terms of X
    std::set<std::vector<int>> m_products;  // the factors of those that are terms
    ModelDefinition m_definition;
};

} // namespace

NameList::NameList(PackedTexts const &names) {
    for (std::size_t i = 0; i < names.size(); ++i)
        m_places[std::string(names[i])].push_back(static_cast<int>(i));
}

std::optional<BatchLayout> FindLayout(ProjectFile const &file, DataSetRecord const &record) {
    std::unique_ptr<XercesXMLSection> const roles = ReadRoles(file);
    std::vector<TextColumn> columns = file.ObservationIdentifiers(record.number);
    auto const ofRole = [&](char const *role) -> std::optional<TextColumn> {
        std::vector<std::string> const headings = HeadingsOf(*roles, role);
        for (TextColumn &column : columns)
            if (std::ranges::find(headings, column.name) != headings.end())
                return std::move(column);
        return {};
    };
    std::optional<TextColumn> batches = ofRole(batchRole);
    if (!batches)
        return {};
    std::string const name = "data set " + std::to_string(record.number) + " (" + record.name + ")";
    return BatchLayout(name, std::move(*batches), ofRole(phaseRole));
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

std::optional<TextColumn> FindIdentifier(ProjectFile const &file, DataSetRecord const &record,
                                         std::string const &heading) {
    for (TextColumn &column : file.ObservationIdentifiers(record.number))
        if (column.name == heading)
            return std::move(column);
    return {};
}

TextColumn IdentifierNamed(ProjectFile const &file, DataSetRecord const &record, std::string const &heading) {
    if (auto column = FindIdentifier(file, record, heading))
        return std::move(*column);
    throw NCError(ExceptionMessage::translate("The observations of data set {1} ({2}) have no identifier \"{3}\".") %
                      record.number % record.name % heading,
                  NCError::Error);
}

ModelDefinition DefinitionOf(ModelRequest const &request, ProjectFile const &file) {
    return Definer(request, file).Define();
}

} // namespace engine
