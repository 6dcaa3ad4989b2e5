#include "app/Commands.h"
#include "app/Marks.h"
#include "app/Output.h"
#include "app/ProgressBar.h"
#include "app/Report.h"

#include <CLI/CLI.hpp>

namespace {

struct ReportRequest {
    std::filesystem::path project;
    std::filesystem::path file;
};

void Report(ReportRequest const &request) {
    auto const project = engine::Project::OpenToRead(request.project);
    ReadMarks(project);
    Output output(request.file, request.project);
    ProgressBar bar("Reporting");
    WriteReport(output, project, request.project.stem().string(), bar.Listener());
    output.Finish();
}

} // namespace

void AddReportCommand(CLI::App &program) {
    auto const request = std::make_shared<ReportRequest>();
    CLI::App *const command = program.add_subcommand("report", "Write a page of a project, its models and saved plots");
    command->add_option("PROJECT", request->project, "The project file")->required();
    command->add_option("-o,--output", request->file, "The page, a file of HTML")->required();
    command->footer("The page needs no other file, and no network. Numbers are rounded; \"show\" gives all digits and "
                    "rows.\n"
                    "Example: dataseries report wine.project -o wine.html");
    command->callback([request] { Report(*request); });
}
