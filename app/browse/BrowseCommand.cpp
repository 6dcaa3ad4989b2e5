#include "app/Commands.h"
#include "app/Failure.h"
#include "app/browse/BrowserScreen.h"
#include "app/browse/Terminal.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

namespace {

void Handle(Input const &input, Browser &browser, BrowserScreen &screen) {
    switch (input.kind) {
    case Input::Pressed:
        return browser.Press(input.key);
    case Input::MousePressed:
        return screen.PressMouse(input.x, input.y);
    case Input::MouseReleased:
        return screen.ReleaseMouse(input.x, input.y);
    case Input::Resized:
        return;
    }
}

void Run(Browser &browser) {
    BrowserScreen screen(browser);
    Terminal terminal;
    while (browser.IsRunning()) {
        terminal.Show(screen.Draw(terminal.Width(), terminal.Height()));
        std::optional<Input> const input = terminal.Read();
        if (!input)
            return;
        Handle(*input, browser, screen);
    }
}

void Browse(std::filesystem::path const &project) {
    if (isatty(STDIN_FILENO) == 0 || isatty(STDOUT_FILENO) == 0)
        throw UsageError("browse needs a terminal: its standard input and output must not lead elsewhere");
    Browser browser(project);
    Run(browser);
    browser.KeepMarks();
}

} // namespace

void AddBrowseCommand(CLI::App &program) {
    auto const project = std::make_shared<std::filesystem::path>();
    CLI::App *const command =
        program.add_subcommand("browse", "Look at a project in the terminal, with keys and mouse");
    command->add_option("PROJECT", *project, "The project file")->required();
    command->footer("Left stand the vectors of the catalogue that have something to show, right the plot. ? lists the\n"
                    "keys, q leads back and out.\n"
                    "Example: dataseries browse wine.project");
    command->callback([project] { Browse(*project); });
}
