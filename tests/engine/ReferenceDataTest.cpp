// Real data with figures of independent programs, where present. The signs of components are arbitrary in the figures.

#include "engine/models/Prediction.h"
#include "tests/engine/ModelBuilders.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace engine {
namespace {

// A table with a row of names and columns of names; an empty cell is missing.
RowMatrix Read(std::string const &name) {
    std::ifstream file(std::string(REFERENCE_DIR) + "/" + name);
    std::vector<std::vector<double>> rows;
    std::string line;
    std::getline(file, line);
    while (std::getline(file, line)) {
        std::istringstream cells(line + ",");
        std::string cell;
        std::getline(cells, cell, ',');
        auto &row = rows.emplace_back();
        while (std::getline(cells, cell, ','))
            if (cell.empty() || cell == "\r")
                row.push_back(nan);
            else if (std::isalpha(static_cast<unsigned char>(cell.front())) == 0)
                row.push_back(std::stod(cell));
    }
    RowMatrix table(rows.size(), rows.empty() ? 0 : rows.front().size());
    for (Index i = 0; i < table.rows(); ++i)
        table.row(i) = Eigen::Map<Eigen::RowVectorXd const>(rows[i].data(), table.cols());
    return table;
}

struct Expected {
    char const *file;
    Matrix (*quantity)(FittedModel const &);
    double tolerance = 2e-6;
};

struct Case {
    char const *data;
    std::vector<int> xColumns, yColumns;
    int components;
    std::vector<Expected> expected;
};

Matrix T(FittedModel const &model) {
    return model.scores.t;
}
Matrix P(FittedModel const &model) {
    return model.components.p;
}
Matrix W(FittedModel const &model) {
    return model.components.w;
}
Matrix WStar(FittedModel const &model) {
    return model.components.wStar;
}
Matrix C(FittedModel const &model) {
    return model.components.c;
}
Matrix B(FittedModel const &model) {
    return Coefficients(model.components, model.components.Predictive());
}

// For each size of the model, of one response.
Matrix BySize(FittedModel const &model) {
    Matrix coefficients(model.components.w.rows(), model.components.Predictive());
    for (Index size = 1; size <= coefficients.cols(); ++size)
        coefficients.col(size - 1) = Coefficients(model.components, size);
    return coefficients;
}

std::vector<int> Without(int size, std::vector<int> const &left) {
    std::vector<int> columns;
    for (int k = 0; k < size; ++k)
        if (std::ranges::find(left, k) == left.end())
            columns.push_back(k);
    return columns;
}

TEST(ReferenceData, Agrees) {
    if (!std::filesystem::exists(REFERENCE_DIR))
        GTEST_SKIP() << "no reference data";
    std::vector<Case> const cases{
        {"people/people.csv", Counting(12), {}, 11, {{"people/pca_loadings.csv", P}, {"people/pca_scores.csv", T}}},
        {"people/people.csv",
         Without(12, {3}),
         {3},
         4,
         {{"people/pls_classic_T.csv", T},
          {"people/pls_classic_P.csv", P},
          {"people/pls_classic_W.csv", W},
          {"people/pls_classic_Wstar.csv", WStar},
          {"people/pls_classic_C.csv", C}}},
        {"people/people.csv",
         Without(12, {3, 11}),
         {3, 11},
         4,
         {{"people/pls2_classic_shoesize_iq_T.csv", T},
          {"people/pls2_classic_shoesize_iq_Wstar.csv", WStar},
          {"people/pls2_classic_shoesize_iq_C.csv", C}}},
        {"kamyr/kamyr.csv",
         Counting(10),
         {},
         3,
         {{"kamyr/pca_autoscaled_A3_nipals_P.csv", P}, {"kamyr/pca_autoscaled_A3_nipals_T.csv", T}}},
        {"kamyr/kamyr.csv",
         Without(10, {0}),
         {0},
         3,
         {{"kamyr/pyphi_pls_V1_from_rest_A3_T.csv", T},
          {"kamyr/pyphi_pls_V1_from_rest_A3_P.csv", P},
          {"kamyr/pyphi_pls_V1_from_rest_A3_W.csv", W},
          {"kamyr/pyphi_pls_V1_from_rest_A3_C.csv", C},
          {"kamyr/ropls_pls_V1_from_rest_A3_Wstar.csv", WStar}}},
        {"cornell/cornell.csv",
         Counting(7),
         {7},
         3,
         {{"cornell/ropls_pls_A3_T.csv", T},
          {"cornell/ropls_pls_A3_W.csv", W},
          {"cornell/ropls_pls_A3_B_scaled.csv", B}}},
        {"batch_film_coating/film_coating.csv",
         Without(8, {0}),
         {0},
         3,
         {{"batch_film_coating/observation_level_pls_on_time_A3_T.csv", T},
          {"batch_film_coating/observation_level_pls_on_time_A3_P.csv", P},
          {"batch_film_coating/observation_level_pls_on_time_A3_W.csv", W},
          {"batch_film_coating/observation_level_pls_on_time_A3_Wstar.csv", WStar},
          {"batch_film_coating/observation_level_pls_on_time_A3_B_scaled.csv", BySize}}},
        {"linnerud/linnerud.csv",
         {3, 4, 5},
         {0, 1, 2},
         3,
         {{"linnerud/ropls_pls2_exercise_to_physio_A3_P.csv", P, 2e-5},
          {"linnerud/ropls_pls2_exercise_to_physio_A3_C.csv", C, 2e-5},
          {"linnerud/ropls_pls2_exercise_to_physio_A3_B_scaled.csv", B, 2e-5}}},
    };
    for (auto const &[data, xColumns, yColumns, components, expected] : cases) {
        auto const all = Read(data);
        auto columns = xColumns;
        columns.insert(columns.end(), yColumns.begin(), yColumns.end());
        RowMatrix cells(all.rows(), columns.size());
        for (std::size_t k = 0; k < columns.size(); ++k)
            cells.col(k) = all.col(columns[k]);
        Fitted const fitted(cells, Define(cells, static_cast<int>(yColumns.size()), components));
        for (auto const &[file, quantity, tolerance] : expected) {
            auto const figures = Read(file);
            Matrix found = quantity(fitted.model);
            ASSERT_EQ(found.cols(), figures.cols()) << file;
            for (Index a = 0; a < found.cols(); ++a)
                if (found.col(a).dot(figures.col(a)) < 0)
                    found.col(a) *= -1;
            EXPECT_LE(Difference(found, figures), tolerance * figures.cwiseAbs().maxCoeff()) << file;
        }
    }
}

} // namespace
} // namespace engine
