#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Output.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <csignal>
#include <new>
#include <sstream>

namespace {

constexpr int done = 0;
constexpr int failed = 1;
constexpr int misused = 2;

int TellMisuse(CLI::App const &program, std::string text) {
    std::vector<CLI::App *> const commands = program.get_subcommands();
    if (commands.empty() && !program.remaining().empty())
        text = "There is no command \"" + program.remaining().front() + "\"";
    else if (commands.empty())
        text = "A command is missing";
    if (text.empty() || text.back() != '.')
        text += '.';
    Tell(text + " See \"dataseries" + (commands.empty() ? "" : " " + commands.front()->get_name()) + " --help\".");
    return misused;
}

int Print(CLI::App const &program, CLI::ParseError const &request) {
    std::ostringstream text;
    program.exit(request, text, text);
    Output output;
    output << text.str();
    output.Finish();
    return done;
}

int Run(int count, char **arguments) {
    CLI::App program("Named statistics of multivariate models as tables and pictures.", "dataseries");
    program.footer("Example:\n"
                   "  dataseries import wine.project wine.csv\n"
                   "  dataseries fit wine.project --type pca\n"
                   "  dataseries vectors wine.project\n"
                   "  dataseries table wine.project \"t M1,1,0,0\" \"t M1,2,0,0\"\n"
                   "  dataseries plot wine.project \"t M1,1,0,0\" \"t M1,2,0,0\" --xy -o scores.png\n"
                   "Exit status: 0 done, 1 a problem that standard error tells, 2 wrong usage.");
    program.set_version_flag("--version", "dataseries " DATASERIES_VERSION);
    program.require_subcommand(1);
    AddImportCommands(program);
    AddCentreCommand(program);
    AddModelCommands(program);
    AddTransformCommands(program);
    AddCatalogueCommands(program);
    AddTableCommand(program);
    AddPlotCommand(program);
    AddChartCommand(program);
    AddContributionCommand(program);
    AddClassesCommand(program);
    AddBuildCommand(program);
    AddSavedPlotCommands(program);
    AddBrowseCommand(program);
    AddReportCommand(program);
    AddMarkCommand(program);
    AddDefaultsCommand(program);
    AddSummaryCommand(program);
    AddTreeCommand(program);
    AddExplainCommand(program);
    try {
        program.parse(count, arguments);
        return done;
    } catch (CLI::ParseError const &error) {
        return error.get_exit_code() == 0 ? Print(program, error) : TellMisuse(program, error.what());
    } catch (UsageError const &error) {
        return TellMisuse(program, error.what());
    }
}

} // namespace

int main(int count, char **arguments) {
    // A reader that closes its end, or a limit on the size of files, makes the write fail instead of ending the
    // program.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return Run(count, arguments);
    } catch (ReaderGone const &) {
        return done;
    } catch (NCError const &error) {
        Tell(error.what());
    } catch (std::bad_alloc const &) {
        Tell("There is not enough memory.");
    } catch (std::exception const &error) {
        Tell("This should not have happened: " + std::string(error.what()));
    }
    return failed;
}
