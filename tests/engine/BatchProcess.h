#pragma once

#include "tests/engine/SmallProject.h"

#include <cmath>
#include <random>

namespace small {

// A table with the columns "batch" and, where it has one, "phase".
inline engine::ImportedTable TableOf(std::string const &text, std::string const &name = "batches") {
    std::istringstream stream(text);
    engine::TableOptions options;
    options.batchColumn = "batch";
    if (text.find(",phase,") != text.npos)
        options.phaseColumn = "phase";
    return engine::ReadTable(stream, name, options);
}

// Batches B1, B2, ... of all lengths from 8 to 15 rows over two phases, with missing cells.
inline std::string ManyBatches(int first, int count) {
    std::mt19937 random(17);
    std::normal_distribution<double> noise;
    std::ostringstream text;
    text << "batch,phase,x1,x2,x3,time\n";
    for (int batch = 1; batch < first + count; ++batch) {
        int const rows = 8 + batch % 8;
        double const level = noise(random);
        for (int i = 0; i < rows; ++i) {
            double const way = static_cast<double>(i) / (rows - 1);
            double const x[] = {level + 3 * way + 0.1 * noise(random), way * way + 0.2 * noise(random),
                                std::sin(6 * way) + level / 2 + 0.1 * noise(random)};
            if (batch < first)
                continue;
            text << 'B' << batch << ',' << (i < rows / 3 ? "warm" : "run") << ',' << x[0] << ',';
            if (i % 5 != 3)
                text << x[1];
            text << ',' << x[2] << ',' << 40 * way << '\n';
        }
    }
    return text.str();
}

} // namespace small
