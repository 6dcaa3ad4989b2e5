#pragma once

namespace CLI {
class App;
}

// Each adds the commands of one group to the program. A command runs while the command line is parsed, after all of it
// was found to be right.
void AddImportCommands(CLI::App &program);    // import, predict
void AddModelCommands(CLI::App &program);     // fit, models, datasets
void AddTransformCommands(CLI::App &program); // osc, compress
void AddCatalogueCommands(CLI::App &program); // catalogue, vectors
void AddCentreCommand(CLI::App &program);
void AddTableCommand(CLI::App &program);
void AddPlotCommand(CLI::App &program);
void AddChartCommand(CLI::App &program);
void AddContributionCommand(CLI::App &program);
void AddClassesCommand(CLI::App &program);
void AddBuildCommand(CLI::App &program);
void AddSavedPlotCommands(CLI::App &program); // save, plots, show, export-plot, import-plot, rename, remove
void AddBrowseCommand(CLI::App &program);
void AddReportCommand(CLI::App &program);
void AddMarkCommand(CLI::App &program);
void AddDefaultsCommand(CLI::App &program);
void AddSummaryCommand(CLI::App &program);
void AddTreeCommand(CLI::App &program);
void AddExplainCommand(CLI::App &program);
