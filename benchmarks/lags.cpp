// A PLS model of lagged variables on the road of the real engine: 100,000 rows of 20 variables with lags 0 to 10, 3
// components and 7 rounds of cross-validation, beside one of the same matrix given as variables of a data set. Each is
// fitted in a process of its own. Told are
//   seconds  of the fit, and as a multiple of the fit of the matrix as given
//   memory   peak of resident memory above what stands before the fit, and as a multiple of the lagged matrix in float

#include "engine/Project.h"
#include "engine/TableReader.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::size_t rows = 100'000;
constexpr int variables = 20;
constexpr int lags = 10;
constexpr double matrixBytes = 4.0 * rows * variables * (1 + lags);

// Slow variables, and a response that follows three of them after some rows.
std::vector<std::vector<float>> Process() {
    std::mt19937 random(5);
    std::normal_distribution<double> noise;
    std::vector<std::vector<float>> columns(variables + 1, std::vector<float>(rows));
    for (int k = 0; k < variables; ++k) {
        double level = 0;
        for (float &value : columns[static_cast<std::size_t>(k)])
            value = static_cast<float>(level = 0.8 * level + noise(random));
    }
    for (std::size_t i = 0; i < rows; ++i)
        columns.back()[i] =
            static_cast<float>((i < 7 ? 0 : columns[0][i - 3] - columns[1][i - 7]) + columns[2][i] + noise(random));
    return columns;
}

// As long as the column, -99 before its first value.
std::vector<float> Lagged(std::vector<float> const &column, std::size_t lag) {
    std::vector<float> lagged(lag, -99.0f);
    lagged.insert(lagged.end(), column.begin(), column.end() - static_cast<std::ptrdiff_t>(lag));
    return lagged;
}

engine::ImportedTable Table(bool isGiven) {
    std::vector<std::vector<float>> const process = Process();
    engine::ImportedTable table;
    table.name = "process";
    std::vector<std::string> headings;
    for (int k = 0; k < variables; ++k)
        for (int lag = 0; lag <= (isGiven ? lags : 0); ++lag) {
            headings.push_back("x" + std::to_string(k + 1) + (lag > 0 ? "L" + std::to_string(lag) : ""));
            table.columns.push_back(Lagged(process[static_cast<std::size_t>(k)], static_cast<std::size_t>(lag)));
        }
    headings.push_back("y");
    table.columns.push_back(process.back());
    std::vector<std::string> ids;
    for (std::size_t i = 1; i <= rows; ++i)
        ids.push_back(std::to_string(i));
    table.observations = {{"id", engine::PackedTexts(ids)}};
    table.variables = {{"name", engine::PackedTexts(headings)}};
    return table;
}

engine::ModelRequest Request(bool isGiven) {
    engine::ModelRequest request;
    request.type = ModelTypeE::PLS;
    request.responses = {"y"};
    request.components = 3;
    if (!isGiven)
        request.lags = {{"", 1, lags}};
    return request;
}

// Resident memory in bytes, by the line of the kernel's account: "VmRSS" now, "VmHWM" the most since it was reset.
double Resident(std::string const &line) {
    std::ifstream account("/proc/self/status");
    for (std::string word; account >> word;)
        if (word == line + ":") {
            double kilobytes = 0;
            account >> kilobytes;
            return 1024 * kilobytes;
        }
    return 0;
}

struct Cost {
    double seconds = 0, memory = 0;
};

Cost CostOfFit(bool isGiven) {
    TemporaryFolder const folder;
    auto const project = engine::Project::Create(folder / "lags.project", Table(isGiven));

    // The data set stands before the fit.
    auto const data = project->GetDataSet(1);
    for (std::uint32_t const variable : data->GetVariables())
        data->GetVariable(variable);
    malloc_trim(0);
    double const before = Resident("VmRSS");
    std::ofstream("/proc/self/clear_refs") << 5; // the peak starts anew
    auto const start = std::chrono::steady_clock::now();
    project->AddModel(Request(isGiven));
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
    return {seconds.count(), Resident("VmHWM") - before};
}

// In a process of its own, which no other fit has left memory in.
Cost CostOfFitApart(bool isGiven) {
    int ends[2];
    Cost cost;
    if (pipe(ends) != 0)
        return cost;
    pid_t const child = fork();
    if (child == 0) {
        cost = CostOfFit(isGiven);
        _exit(write(ends[1], &cost, sizeof cost) == sizeof cost ? 0 : 1);
    }
    close(ends[1]);
    if (read(ends[0], &cost, sizeof cost) != sizeof cost)
        std::fputs("The fit has failed.\n", stderr);
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return cost;
}

} // namespace

int main() {
    constexpr double mebibyte = 1024 * 1024;
    Cost const given = CostOfFitApart(true);
    std::printf("matrix in float: %.0f MiB\n", matrixBytes / mebibyte);
    for (bool const isGiven : {true, false}) {
        Cost const cost = isGiven ? given : CostOfFitApart(false);
        std::printf("%-7s %6.2f s (%.2f)  %4.0f MiB (%.2f)\n", isGiven ? "given" : "lagged", cost.seconds,
                    cost.seconds / given.seconds, cost.memory / mebibyte, cost.memory / matrixBytes);
    }
}
