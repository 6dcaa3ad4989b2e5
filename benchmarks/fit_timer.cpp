// fit_timer DATA ROWS COLUMNS RESPONSES COMPONENTS REPEATS RESULT
//
// Fits PLS, or PCA with no responses, to raw doubles (row by row, X then Y), REPEATS times after one to warm up. Prints
// the seconds of each fit, from the columns of a data set to the fitted model, and writes T and P (column by column).

#include "benchmarks/FitData.h"
#include "engine/models/Fit.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>

int main(int count, char **arguments) {
    using namespace engine;
    if (count != 8) {
        std::fputs("usage: fit_timer DATA ROWS COLUMNS RESPONSES COMPONENTS REPEATS RESULT\n", stderr);
        return 2;
    }
    auto const number = [&](int i) { return std::atoi(arguments[i]); };
    auto const responses = number(4);
    RowMatrix data(number(2), number(3) + responses);
    std::ifstream in(arguments[1], std::ios::binary);
    auto const bytes = data.size() * static_cast<Index>(sizeof(double));
    if (!in.read(reinterpret_cast<char *>(data.data()), bytes)) {
        std::fprintf(stderr, "%s holds less than %td bytes\n", arguments[1], bytes);
        return 1;
    }
    Matrix const cells = data;
    FloatColumns const source(cells);
    auto const scaling = responses > 0 ? ScalingKind::UnitVariance : ScalingKind::Centred;
    auto const definition = DefineFit(cells, responses, number(5), scaling);
    FittedModel model;
    for (int i = 0; i <= number(6); ++i) {
        auto const start = std::chrono::steady_clock::now();
        model = Fit(definition, Workset::Build(definition, source));
        std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
        if (i > 0)
            std::printf("%.6f\n", seconds.count());
    }
    std::ofstream out(arguments[7], std::ios::binary);
    for (auto const *const matrix : {&model.scores.t, &model.components.p})
        out.write(reinterpret_cast<char const *>(matrix->data()), matrix->size() * static_cast<Index>(sizeof(double)));
    return out.good() ? 0 : 1;
}
