#include "app/Choice.h"
#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Output.h"
#include "app/ProgressBar.h"
#include "app/VariableOptions.h"
#include "engine/Project.h"
#include "platform/text/VqString.h"

#include <CLI/CLI.hpp>

#include <charconv>

// Commands that make a data set of another one, row by row.

namespace {

struct CorrectRequest {
    std::filesystem::path project;
    engine::CorrectionRequest correction;
    std::vector<std::string> responses, excluded; // as given: lists of names
};

struct CompressRequest {
    std::filesystem::path project;
    engine::CompressionRequest compression;
    std::vector<std::string> excluded; // as given
    std::string keep;
};

void Report(engine::Project const &project, std::filesystem::path const &path, int dataSet, std::string const &what) {
    boost::shared_ptr<NCDataSetInfo const> const info = project.GetDataSetInfo(dataSet);
    Output output;
    output << path.string() << ": data set " << std::to_string(dataSet) << " \"" << info->name << "\"\n"
           << "  observations  " << std::to_string(info->observations) << "\n"
           << "  variables     " << std::to_string(info->variables) << what << "\n";
    output.Finish();
}

void Correct(CorrectRequest request) {
    request.correction.responses = NamesIn(request.responses);
    request.correction.excluded = NamesIn(request.excluded);
    auto const project = engine::Project::OpenToWrite(request.project);
    int const dataSet = [&] {
        ProgressBar bar("Correcting");
        return project->AddCorrection(request.correction, bar.Listener());
    }();
    int const components = project->GetDataSetInfo(dataSet)->oscComponents;
    std::string const fewer =
        components < request.correction.components ? ": no more of X has nothing to do with Y" : "";
    Report(*project, request.project, dataSet, "\n  components    " + std::to_string(components) + fewer);
}

// "64": so many coefficients; "99.5%": as many as have that share of the sum of squares of all.
void SetKeep(engine::CompressionRequest &request, std::string const &text) {
    char const *const end = text.data() + text.size();
    auto const read = std::from_chars(text.data(), end, request.keep);
    if (read.ec == std::errc() && read.ptr == end && request.keep > 0)
        return;
    request.keep = 0;
    char *rest = nullptr;
    request.share = VqString::vqstrtod(text.c_str(), &rest) / 100;
    if (rest == text.c_str() || std::string(rest) != "%" || !(request.share > 0 && request.share <= 1))
        throw UsageError("\"" + text + "\" is no number of coefficients such as 64, and no share such as 99.5%");
}

void Compress(CompressRequest request) {
    request.compression.excluded = NamesIn(request.excluded);
    if (!request.keep.empty())
        SetKeep(request.compression, request.keep);
    auto const project = engine::Project::OpenToWrite(request.project);
    int const dataSet = [&] {
        ProgressBar bar("Compressing");
        return project->AddCompression(request.compression, bar.Listener());
    }();
    auto const compressed =
        project->GetDataSetInfo(request.compression.dataSet)->variables - request.compression.excluded.size();
    Report(*project, request.project, dataSet,
           request.compression.denoise ? "" : "\n  compressed    " + std::to_string(compressed) + " variables");
}

} // namespace

void AddTransformCommands(CLI::App &program) {
    auto const correct = std::make_shared<CorrectRequest>();
    CLI::App *const osc = program.add_subcommand(
        "osc", "Take off a data set what has nothing to do with Y (orthogonal signal correction)");
    osc->add_option("PROJECT", correct->project, "The project file")->required();
    osc->add_option("--data", correct->correction.dataSet, "The number of the data set (1)")->type_name("N");
    osc->add_option("--y", correct->responses, "The Y variables; all others are X variables, and are corrected")
        ->type_name("NAMES")
        ->allow_extra_args(false)
        ->required();
    osc->add_option("--exclude", correct->excluded,
                    "Variables that stay as they are, and observations that the correction is not made of")
        ->type_name("NAMES")
        ->allow_extra_args(false);
    osc->add_option("--components", correct->correction.components, "How many components are taken off (1)")
        ->type_name("N")
        ->check(CLI::Range(1, 1000));
    AddChoice(*osc, "--scaling", correct->correction.scaling,
              {{"uv", engine::ModelRequest::UnitVariance},
               {"ctr", engine::ModelRequest::Centred},
               {"par", engine::ModelRequest::Pareto},
               {"none", engine::ModelRequest::None}},
              "How variables are scaled meanwhile");
    osc->footer("The corrected data set has all variables, and is a data set like any other. Prediction sets are\n"
                "corrected alike. OSC-t shows what was taken off.\n"
                "Example: dataseries osc oil.project --y octane --components 2 --scaling ctr");
    osc->callback([correct] { Correct(*correct); });

    auto const request = std::make_shared<CompressRequest>();
    engine::CompressionRequest &compression = request->compression;
    CLI::App *const compress = program.add_subcommand(
        "compress", "Put the rows of a data set into wavelet coefficients, or clear them of noise");
    compress->add_option("PROJECT", request->project, "The project file")->required();
    compress->add_option("--data", compression.dataSet, "The number of the data set (1)")->type_name("N");
    compress
        ->add_option("--exclude", request->excluded,
                     "Variables that stay as they are, such as responses; all others are\n"
                     "a row of neighbours, such as wavelengths")
        ->type_name("NAMES")
        ->allow_extra_args(false);
    AddChoice(*compress, "--function", compression.function,
              {{"daubechies", Wavelet::Daubechies}, {"symmlet", Wavelet::Symmlet}, {"coiflet", Wavelet::Coiflet}},
              "Family of wavelets (daubechies)");
    compress->add_option("--order", compression.order, "Of the family: 1 to 10, 4 to 9, or 1 to 2 (4)")
        ->type_name("N")
        ->check(CLI::Range(1, 10));
    compress
        ->add_option("--keep", request->keep,
                     "How many coefficients, the largest over all rows, or which\nshare of their sum of squares (99%)")
        ->type_name("N|SHARE%");
    compress->add_flag("--denoise", compression.denoise,
                       "Keep the variables, less what the other coefficients tell of them");
    compress->footer("Statistics of models of coefficients are shown at the variables that the coefficients were made\n"
                     "of. Prediction sets are compressed alike.\n"
                     "Example: dataseries compress oil.project --exclude octane --keep 99.9%");
    compress->callback([request] { Compress(*request); });
}
