#include "engine/statistics/DerivedTable.h"
#include "platform/containers/Missing.h"
#include "platform/numerics/Wavelet.h"
#include "platform/project/NCProject.h"

#include <algorithm>
#include <numeric>

// Data sets that are made of another one, row by row: corrected by what has nothing to do with Y, or put into wavelet
// coefficients.

namespace engine {

namespace {

std::vector<std::string> NamesOf(DataSet const &source, std::vector<int> const &columns) {
    std::vector<std::string> names;
    for (int const column : columns)
        names.push_back(source.Name(column));
    return names;
}

// The values of a column of the source data set in other rows; empty where they do not have the variable.
std::span<float const> ValuesIn(DataSet const &rows, DataSet const &source, int column) {
    std::optional<int> const place = rows.ColumnOf(source.GetVariables()[static_cast<std::size_t>(column)]);
    return place ? rows.Values(*place) : std::span<float const>();
}

std::vector<float> Copied(std::span<float const> values, std::size_t size) {
    return values.empty() ? std::vector<float>(size, missingValue) : std::vector<float>(values.begin(), values.end());
}

DerivedTable TableOf(std::vector<TextColumn> const &identifiers, std::vector<std::string> const &names,
                     std::vector<std::vector<float>> columns) {
    return {identifiers, {{"Name", PackedTexts(names)}}, std::move(columns)};
}

// Reads missing cells off the line between their neighbours, and those at the ends off the nearest one. False when
// there is none.
bool FillGaps(std::span<float> row) {
    std::size_t before = row.size(); // the last observed cell
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (IsMissing(row[i]))
            continue;
        std::size_t const from = before == row.size() ? i : before;
        for (std::size_t gap = before == row.size() ? 0 : before + 1; gap < i; ++gap) {
            double const share = from == i ? 0 : static_cast<double>(gap - from) / static_cast<double>(i - from);
            row[gap] = static_cast<float>(row[from] + share * (row[i] - row[from]));
        }
        before = i;
    }
    if (before == row.size())
        return false;
    std::fill(row.begin() + static_cast<std::ptrdiff_t>(before) + 1, row.end(), row[before]);
    return true;
}

// The wavelet coefficients of one row after the other.
class Transformer {
public:
    Transformer(CompressionRecipe const &recipe, DataSet const &rows, DataSet const &source)
        : m_filter(Wavelet::GetDecompositionFilter(static_cast<Wavelet::WaveletFunctionType>(recipe.function),
                                                   recipe.order)),
          m_row(recipe.columns.size()) {
        for (int const column : recipe.columns)
            m_columns.push_back(ValuesIn(rows, source, column));
    }

    Wavelet::Filter const &Filter() const { return m_filter; }

    // Null for a row without observed cell.
    NCDataVector<float> const *Coefficients(std::size_t row) {
        for (std::size_t k = 0; k < m_row.size(); ++k)
            m_row[k] = m_columns[k].empty() ? missingValue : m_columns[k][row];
        if (!FillGaps(m_row))
            return nullptr;
        long double lo = 0, hi = 0;
        Wavelet::ForwardTransform(m_row, m_filter, Wavelet::None, lo, hi, m_coefficients, true);
        return &m_coefficients;
    }

private:
    Wavelet::Filter m_filter;
    std::vector<std::span<float const>> m_columns;
    std::vector<float> m_row;
    NCDataVector<float> m_coefficients;
};

// What the kept coefficients alone tell of a row.
std::vector<double> Denoised(NCDataVector<float> const &coefficients, std::vector<int> const &kept,
                             Wavelet::Filter const &filter) {
    std::vector<float> chosen(static_cast<std::size_t>(coefficients.Size()));
    for (int const place : kept)
        chosen[static_cast<std::size_t>(place)] = coefficients[place + 1];
    return Wavelet::InverseTransform(chosen, filter);
}

} // namespace

CorrectionRecipe CorrectionOf(ModelDefinition definition, boost::shared_ptr<DataSet const> const &source,
                              Index components) {
    Workset const workset = Workset::Build(definition, ModelColumns(definition, source, source, definition.rows));
    CorrectionRecipe recipe;
    recipe.dataSet = source->GetNumber();
    for (TermScale const &scale : workset.xScales) {
        recipe.offsets.push_back(scale.offset);
        recipe.weights.push_back(scale.weight);
    }
    recipe.correction = CorrectOrthogonally(workset.x, workset.y, components).correction;
    recipe.definition = std::move(definition);
    return recipe;
}

std::vector<TermScale> ScalesOf(CorrectionRecipe const &recipe) {
    std::vector<TermScale> scales;
    for (std::size_t k = 0; k < recipe.offsets.size(); ++k)
        scales.push_back({recipe.offsets[k], recipe.weights[k]});
    return scales;
}

DerivedTable CorrectedRows(CorrectionRecipe const &recipe, boost::shared_ptr<DataSet const> const &source,
                           boost::shared_ptr<DataSet const> const &rows, std::vector<TextColumn> const &identifiers) {
    std::size_t const size = rows->GetObservations().size();
    std::vector<int> all(size);
    std::iota(all.begin(), all.end(), 0);
    ModelColumns const values(recipe.definition, source, rows, all);
    std::vector<TermScale> const scales = ScalesOf(recipe);
    std::vector<Term> const &terms = recipe.definition.xTerms;
    RowMatrix const corrected = recipe.correction.Corrected(ScaleRows(terms, scales, values, all));
    std::vector<int> columns(source->GetVariables().size());
    std::iota(columns.begin(), columns.end(), 0);
    std::vector<std::vector<float>> result;
    for (int const column : columns)
        result.push_back(Copied(ValuesIn(*rows, *source, column), size));
    auto const put = [&](RowMatrix const &left, Index from, int row) {
        for (std::size_t k = 0; k < terms.size(); ++k)
            result[static_cast<std::size_t>(terms[k].column)][static_cast<std::size_t>(row)] =
                ToStored(scales[k].Unscale(left(from, static_cast<Index>(k))));
    };
    for (int const row : all)
        put(corrected, row, row);
    if (rows == source) {
        Workset const workset = Workset::Build(recipe.definition, values);
        // The correction was made of filled cells, which are not missing in what is left.
        RowMatrix const left = CorrectOrthogonally(workset.x, workset.y, recipe.correction.Size()).x;
        for (std::size_t i = 0; i < recipe.definition.rows.size(); ++i)
            if (!workset.x.MissingIn(static_cast<Index>(i)).empty())
                put(left, static_cast<Index>(i), recipe.definition.rows[i]);
    }
    return TableOf(identifiers, NamesOf(*source, columns), std::move(result));
}

std::vector<double> SizesOfCoefficients(CompressionRecipe const &recipe, DataSet const &source) {
    Transformer transformer(recipe, source, source);
    std::vector<double> sums(
        static_cast<std::size_t>(Wavelet::TransformedLength(static_cast<int>(recipe.columns.size()), true)));
    std::vector<double> means = sums;
    double rows = 0;
    for (std::size_t row = 0; row < source.GetObservations().size(); ++row) {
        NCDataVector<float> const *const coefficients = transformer.Coefficients(row);
        if (!coefficients)
            continue;
        ++rows;
        for (std::size_t place = 0; place < sums.size(); ++place) {
            double const value = (*coefficients)[static_cast<int>(place) + 1];
            double const change = value - means[place];
            if (!recipe.denoised)
                means[place] += change / rows;
            sums[place] += change * (value - means[place]);
        }
    }
    for (double &sum : sums)
        sum /= std::max(rows, 1.0);
    return sums;
}

std::string CoefficientName(CompressionRecipe const &recipe, int place) {
    static constexpr char const *families[] = {"db", "sym", "coif"};
    return "D" + std::to_string(recipe.dataSet) + "." + families[recipe.function] + std::to_string(recipe.order) + "[" +
           std::to_string(place + 1) + "]";
}

DerivedTable CompressedRows(CompressionRecipe const &recipe, DataSet const &source, DataSet const &rows,
                            std::vector<TextColumn> const &identifiers) {
    std::size_t const size = rows.GetObservations().size();
    std::vector<std::vector<float>> columns(recipe.denoised ? recipe.columns.size() : recipe.kept.size(),
                                            std::vector<float>(size, missingValue));
    Transformer transformer(recipe, rows, source);
    for (std::size_t row = 0; row < size; ++row) {
        NCDataVector<float> const *const coefficients = transformer.Coefficients(row);
        if (!coefficients)
            continue;
        std::vector<double> const cleared =
            recipe.denoised ? Denoised(*coefficients, recipe.kept, transformer.Filter()) : std::vector<double>();
        for (std::size_t k = 0; k < columns.size(); ++k)
            columns[k][row] = recipe.denoised ? ToStored(cleared[k]) : (*coefficients)[recipe.kept[k] + 1];
    }
    std::vector<std::string> names;
    if (recipe.denoised)
        names = NamesOf(source, recipe.columns);
    else
        for (int const place : recipe.kept)
            names.push_back(CoefficientName(recipe, place));
    for (int const column : recipe.others) {
        names.push_back(source.Name(column));
        columns.push_back(Copied(ValuesIn(rows, source, column), size));
    }
    return TableOf(identifiers, names, std::move(columns));
}

} // namespace engine
