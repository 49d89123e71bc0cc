#include "cal.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace {

void addCal(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand("cal", "Reduce the levels of a book in CSV form");
    const auto options = std::make_shared<cli::CalOptions>();
    command->add_option("IN", options->in, "Book with the ten columns of the grid; - for standard input")
        ->required();
    command->add_option("OUT", options->out, "Where to write it; standard output when left out");
    command->callback([options, &status] { status = cli::cal(*options, std::cin, std::cout, std::cerr); });
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("Field books of levelling surveys without the window.", "zavrogrl-cli");
    app.set_version_flag("--version", "zavrogrl-cli " ZAVRO_VERSION);
    app.require_subcommand(1);
    app.footer("Exit status: 0 done, 1 the work failed (said on standard error), 2 wrong usage.");
    int status = cli::Done;
    addCal(app, status);
    try {
        app.parse(argc, argv);
        return status;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? cli::Done : cli::WrongUsage;
    }
}
