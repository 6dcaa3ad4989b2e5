#include "engine/models/CrossValidation.h"

#include "engine/models/Fit.h"
#include "engine/models/Parallel.h"
#include "engine/models/Prediction.h"

#include <algorithm>
#include <limits>
#include <map>

namespace engine {

std::vector<int> RoundsOfRows(ModelDefinition const &definition, Index rows) {
    std::vector<int> groups = definition.givenGroups;
    if (groups.empty() && definition.groups > 0)
        for (Index i = 0; i < rows; ++i)
            groups.push_back(
                static_cast<int>(definition.HasLags() ? i * definition.groups / rows : i % definition.groups));
    std::map<int, int> rounds;
    for (auto const group : groups)
        rounds[group] = 0;
    if (rounds.size() < 2)
        return {};
    int next = 0;
    for (auto &[group, round] : rounds)
        round = next++;
    for (auto &group : groups)
        group = rounds[group];
    return groups;
}

std::vector<RoundRows> SplitRows(std::vector<int> const &roundOfRow) {
    std::vector<RoundRows> rounds(*std::ranges::max_element(roundOfRow) + 1);
    for (std::size_t i = 0; i < roundOfRow.size(); ++i)
        for (std::size_t g = 0; g < rounds.size(); ++g)
            (roundOfRow[i] == static_cast<int>(g) ? rounds[g].out : rounds[g].in).push_back(static_cast<Index>(i));
    return rounds;
}

namespace {

ComparedErrors Compare(Matrix const &press, Matrix const &deflatedPress, Components const &model, Index component) {
    if (deflatedPress.cols() > 0)
        return {deflatedPress.col(component - 1), (model.c.cols() > 0 ? model.ssY : model.ssX).col(component - 1)};
    auto const last = press.cols() - 1;
    return {press.col(std::min(component, last)), press.col(std::min(component - 1, last))};
}

// What the first components leave of a block.
Block Deflated(Block const &block, Matrix const &t, Matrix const &loadings) {
    RowMatrix left = block.Values();
    left.noalias() -= t * loadings.transpose();
    for (Index i = 0; i < left.rows(); ++i)
        for (auto const k : block.MissingIn(i))
            left(i, k) = std::numeric_limits<double>::quiet_NaN();
    return Block(std::move(left), block.Complete());
}

} // namespace

ComparedErrors ErrorsOf(CrossValidation const &validation, Components const &model, Index component) {
    return Compare(validation.press, validation.deflatedPress, model, component);
}

ComparedErrors CrossValidator::LastErrors() const {
    return Compare(m_press, m_deflatedPress, m_model.Found(), m_model.Found().Predictive());
}

CrossValidator::CrossValidator(Workset const &workset, std::vector<int> roundOfRow, Extraction const &model,
                               Q2Form form)
    : m_workset(workset), m_hasY(workset.y.Size() > 0), m_model(model), m_form(form),
      m_roundOfRow(std::move(roundOfRow)) {
    for (RoundRows &rows : SplitRows(m_roundOfRow)) {
        Matrix const none(rows.out.size(), 0);
        m_rounds.push_back({std::move(rows), nullptr, {}, none, {}});
    }
    m_press = m_hasY ? model.Found().ssY.leftCols(1) : model.Found().ssX.leftCols(1);
}

void CrossValidator::ExtendRound(Round &round, Index to) {
    if (!round.extraction) {
        auto const view = [&round](Block const &block) { return BlockView(block, round.rows.in); };
        round.extraction = Extraction::Start(view(m_workset.x), view(m_workset.y), &m_model.Found());
    }
    round.extraction->Extract(to - round.extraction->Found().Predictive());
    round.model = round.extraction->Found();
}

void CrossValidator::Extend(Rounds rounds, Progress const &progress) {
    auto const from = m_press.cols();
    auto const to = m_model.Found().Predictive();
    if (from > to)
        return;
    m_press.conservativeResize(Eigen::NoChange, to + 1);
    m_press.rightCols(to + 1 - from).setZero();
    InParallel(
        m_rounds.size(),
        [&](std::size_t g) {
            auto &round = m_rounds[g];
            ExtendRound(round, to);
            if (rounds == Rounds::End)
                round.extraction.reset();
            BlockView const outX(m_workset.x, round.rows.out);
            ExtendScores(round.model, outX, round.t);
            round.press.setZero(m_press.rows(), to + 1);
            if (m_hasY)
                AddPress(round, BlockView(m_workset.y, round.rows.out), from);
            else
                AddPcaPress(round, outX, from);
        },
        progress);
    for (auto const &round : m_rounds)
        m_press.rightCols(to + 1 - from) += round.press.rightCols(to + 1 - from);
    while (m_form == Q2Form::Deflated && m_deflatedPress.cols() < to)
        AppendColumn(m_deflatedPress, DeflatedPress(m_deflatedPress.cols()));
}

// Full rounds of one component on what is left of X and Y.
Vector CrossValidator::DeflatedPress(Index before) const {
    auto const &found = m_model.Found();
    Matrix const t = m_model.FoundScores().t.leftCols(before);
    Workset left;
    left.x = Deflated(m_workset.x, t, found.p.leftCols(before));
    left.y = m_hasY ? Deflated(m_workset.y, t, found.c.leftCols(before)) : m_workset.y;
    auto const next = Extraction::Start(left.x, left.y, nullptr);
    next->Extract(1);
    CrossValidator validator(left, m_roundOfRow, *next, Q2Form::Rounds);
    validator.Extend(Rounds::End, Progress());
    return validator.m_press.rightCols(1);
}

void CrossValidator::AddPress(Round &round, BlockView const &outY, Index from) {
    auto const &model = round.model;
    for (Index i = 0; i < outY.Rows(); ++i) {
        Vector error = outY.Row(i);
        for (Index a = 1; a < round.press.cols(); ++a) {
            if (a <= model.Predictive())
                error -= round.t(i, a - 1) * model.c.col(a - 1);
            for (auto const m : outY.MissingIn(i))
                error[m] = 0;
            if (a >= from)
                round.press.col(a) += error.cwiseAbs2();
        }
    }
}

namespace {

// The loadings restricted to the observed terms, made orthonormal one after the other. Ends before the first that
// depends on those before it.
Matrix OrthonormalLoadings(Matrix const &p, Block::Columns missing) {
    Matrix q = p;
    for (auto const k : missing)
        q.row(k).setZero();
    for (Index a = 0; a < q.cols(); ++a) {
        auto const before = q.col(a).norm();
        for (int pass = 0; pass < 2; ++pass)
            q.col(a) -= q.leftCols(a) * (q.leftCols(a).transpose() * q.col(a));
        auto const left = q.col(a).norm();
        if (!(left > 1e-8 * before))
            return q.leftCols(a);
        q.col(a) /= left;
    }
    return q;
}

// 1/(1 - h_k) after each number of components: what turns a residual into that of predicting the element from the
// others of its row. 0 marks an element that nothing else in the row tells about.
Matrix Inflations(Matrix const &q) {
    Matrix inflations(q.rows(), q.cols());
    Vector leverage = Vector::Zero(q.rows());
    for (Index a = 0; a < q.cols(); ++a) {
        leverage += q.col(a).cwiseAbs2();
        inflations.col(a) = (1 - leverage.array() > 1e-6).select(1 / (1 - leverage.array()), 0.0);
    }
    return inflations;
}

} // namespace

void CrossValidator::AddPcaPress(Round &round, BlockView const &outX, Index from) {
    auto const &p = round.model.p;
    Matrix const completeQ = OrthonormalLoadings(p, {});
    Matrix const completeInflations = Inflations(completeQ);
    for (Index i = 0; i < outX.Rows(); ++i) {
        auto const missing = outX.MissingIn(i);
        Matrix const ownQ = missing.empty() ? Matrix() : OrthonormalLoadings(p, missing);
        Matrix const ownInflations = missing.empty() ? Matrix() : Inflations(ownQ);
        auto const &q = missing.empty() ? completeQ : ownQ;
        auto const &inflations = missing.empty() ? completeInflations : ownInflations;
        Vector const x = outX.Row(i);
        Vector residual = x;
        Vector errors = x;
        for (Index a = 1; a < round.press.cols(); ++a) {
            if (a <= q.cols()) {
                residual -= q.col(a - 1).dot(residual) * q.col(a - 1);
                errors = (inflations.col(a - 1).array() > 0)
                             .select(residual.array() * inflations.col(a - 1).array(), x.array());
            } else if (a <= p.cols())
                errors = x;
            if (a >= from)
                round.press.col(a) += errors.cwiseAbs2();
        }
    }
}

CrossValidation CrossValidator::Result(Index components) const {
    CrossValidation result;
    result.roundOfRow = m_roundOfRow;
    result.press = m_press.leftCols(std::min(m_press.cols(), components + 1));
    result.deflatedPress = m_deflatedPress.leftCols(std::min(m_deflatedPress.cols(), components));
    auto const rows = static_cast<Index>(m_roundOfRow.size());
    result.excluded = ZeroScores(rows, FirstComponents(m_model.Found(), components));
    for (auto const &round : m_rounds) {
        auto const view = [&round](Block const &block) { return BlockView(block, round.rows.in); };
        // Rounds of a model without components have not begun.
        bool const hasBegun = round.model.ssX.cols() > 0;
        result.rounds.push_back(hasBegun ? FirstComponents(round.model, components)
                                         : NoComponents(view(m_workset.x), view(m_workset.y)));
        auto const &model = result.rounds.back();
        auto scores = NoScores(round.t.rows());
        scores.t = round.t.leftCols(model.Predictive());
        PredictYScores(model, BlockView(m_workset.y, round.rows.out), scores);
        PutScores(scores, round.rows.out, result.excluded);
    }
    return result;
}

Scores ZeroScores(Index rows, Components const &model) {
    return {Matrix::Zero(rows, model.Predictive()), Matrix::Zero(rows, model.c.cols()),
            Matrix::Zero(rows, model.XOrthogonal()), Matrix::Zero(rows, model.YOrthogonal())};
}

void PutScores(Scores const &some, std::vector<Index> const &rows, Scores &all) {
    for (auto const member : {&Scores::t, &Scores::u, &Scores::to, &Scores::uo})
        for (std::size_t i = 0; i < rows.size(); ++i)
            (all.*member).row(rows[i]).head((some.*member).cols()) = (some.*member).row(static_cast<Index>(i));
}

Vector CrossValidatedY(CrossValidation const &validation, Index term, Index predictive) {
    auto const &t = validation.excluded.t;
    Vector predicted(t.rows());
    for (Index i = 0; i < t.rows(); ++i) {
        auto const &model = validation.rounds[validation.roundOfRow[i]];
        auto const count = std::min(predictive, model.Predictive());
        predicted[i] = t.row(i).head(count).dot(model.c.row(term).head(count));
    }
    return predicted;
}

Matrix CrossValidatedY(CrossValidation const &validation, Index predictive) {
    Matrix predicted(validation.excluded.t.rows(), validation.rounds.front().c.rows());
    for (Index term = 0; term < predicted.cols(); ++term)
        predicted.col(term) = CrossValidatedY(validation, term, predictive);
    return predicted;
}

JackknifeError Jackknife(CrossValidation const &validation,
                         std::function<std::optional<Matrix>(Components const &)> const &quantity) {
    std::vector<Matrix> values;
    for (auto const &round : validation.rounds)
        if (auto value = quantity(round))
            values.push_back(std::move(*value));
    auto const count = static_cast<double>(values.size());
    if (values.size() < 2)
        return {};
    Matrix mean = values.front();
    for (std::size_t g = 1; g < values.size(); ++g)
        mean += values[g];
    mean /= count;
    Matrix squares = Matrix::Zero(mean.rows(), mean.cols());
    for (auto const &value : values)
        squares += (value - mean).cwiseAbs2();
    return {(squares * ((count - 1) / count)).cwiseSqrt(), static_cast<int>(values.size()) - 1};
}

} // namespace engine
