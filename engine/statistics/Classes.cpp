#include "engine/statistics/Classes.h"

#include "engine/statistics/RowStatistics.h"
#include "platform/text/Exception.h"

namespace engine {

namespace {

// Rows by classes, in the units of the data set.
template <typename OfTerm>
Matrix ByClass(RowSet const &rows, OfTerm ofTerm) {
    Matrix values(rows.Size(), rows.Model().YTerms().Size());
    for (Index term = 0; term < values.cols(); ++term)
        values.col(term) = ofTerm(term);
    return values;
}

// `known` is 1 for the class of a row, NaN in a row of none that the model knows.
ClassPredictions Compare(Matrix const &known, Matrix const &predicted) {
    auto const classes = static_cast<std::size_t>(known.cols());
    ClassPredictions result{ConfusionTable(classes), {}};
    std::vector<std::vector<double>> scores(classes);
    std::vector<Index> trueClasses;
    for (Index row = 0; row < known.rows(); ++row) {
        if (known.row(row).hasNaN() || predicted.row(row).hasNaN())
            continue;
        Index predictedClass = 0;
        known.row(row).maxCoeff(&trueClasses.emplace_back());
        predicted.row(row).maxCoeff(&predictedClass);
        result.table.Add(static_cast<std::size_t>(trueClasses.back()), static_cast<std::size_t>(predictedClass));
        for (std::size_t each = 0; each < classes; ++each)
            scores[each].push_back(predicted(row, static_cast<Index>(each)));
    }
    for (std::size_t each = 0; each < (classes == 2 ? 1 : classes); ++each) {
        std::vector<bool> isOfClass;
        for (Index const trueClass : trueClasses)
            isOfClass.push_back(trueClass == static_cast<Index>(each));
        result.curves.push_back(RocOf(scores[each], isOfClass));
    }
    return result;
}

Matrix TrueClasses(RowSet const &rows) {
    return ByClass(rows, [&](Index term) { return YValues(rows, term, Units::Source); });
}

ClassPredictions Predicted(RowSet const &rows) {
    Index const size = rows.Model().Fit().components.Predictive();
    return Compare(TrueClasses(rows),
                   ByClass(rows, [&](Index term) { return YPredictions(rows, term, size, Units::Source); }));
}

ClassPredictions CrossValidated(RowSet const &rows) {
    Index const size = rows.Model().Fit().components.Predictive();
    return Compare(TrueClasses(rows),
                   ByClass(rows, [&](Index term) { return ValidatedYPredictions(rows, term, size); }));
}

} // namespace

Classification ClassificationOf(ModelView const &model, PredictedRows const *predicted) {
    std::vector<std::string> classes = model.Fit().definition.Classes();
    if (classes.empty())
        throw NCError(
            ExceptionMessage::translate("Model {1} tells no classes apart: its responses are not the levels of "
                                        "one qualitative variable.") %
                model.GetModelNumber(),
            NCError::Error);
    if (model.Fit().components.Predictive() == 0)
        throw NCError(ExceptionMessage::translate("Model {1} has no components.") % model.GetModelNumber(),
                      NCError::Error);
    RowSet const rows = *RowSource{model}.Rows();
    Classification result{std::move(classes), Predicted(rows), {}, {}};
    if (HasValidatedY(model))
        result.crossValidated = CrossValidated(rows);
    if (auto const newRows = RowSource{model, true, predicted}.Rows())
        if (ClassPredictions ofNew = Predicted(*newRows); ofNew.table.Size() > 0)
            result.predicted = std::move(ofNew);
    return result;
}

} // namespace engine
