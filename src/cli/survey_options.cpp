#include "survey_options.h"

#include "check_command.h"
#include "heading_command.h"
#include "levels_command.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace cli {

void addLevels(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand("levels", "Close the level runs of a book on its known levels");
    const auto options = std::make_shared<LevelsOptions>();
    command->add_option("BOOK", options->book, "Project, book in CSV form, or - for standard input")
        ->required();
    command
        ->add_option_function<std::string>(
            "--by",
            [options](const std::string& method) {
                options->closing.method =
                    method == "distance" ? survey::Method::Distance : survey::Method::Setups;
            },
            "How a misclosure is distributed: setups (unless told otherwise) or distance")
        ->check(CLI::IsMember({"setups", "distance"}));
    command->add_option_function<std::string>(
        "--allow",
        [options](const std::string& text) {
            const auto tolerance = survey::toleranceFrom(text);
            if (!tolerance)
                throw CLI::ValidationError("--allow", text + " is no tolerance such as 2+5rK, 5rN or 8");
            options->closing.tolerance = *tolerance;
        },
        "Tolerance in mm: A+BrK by the root of the km, BrN by that of the set-ups, A, or none; 12rK at "
        "first");
    command->add_option("--length", options->length, "Length of the one section, km")
        ->check(CLI::PositiveNumber);
    command
        ->add_option_function<std::vector<std::string>>(
            "--known",
            [options](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) {
                    const auto known = knownRowFrom(text);
                    if (!known) throw CLI::ValidationError("--known", text + " is not ROW=LEVEL");
                    options->closing.known.push_back(*known);
                }
            },
            "ROW=LEVEL: a known level beside those of the book; may be given again")
        ->allow_extra_args(false);
    command->add_flag("--rise-and-fall", options->riseAndFall, "Also the check by rises and falls");
    command->add_flag("--json", options->json, "The sections as JSON");
    command->add_option("--csv", options->csv, "Write the levels of all rows into this file");
    command->callback([options, &status] { status = levels(*options, std::cin, std::cout, std::cerr); });
}

void addCheck(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand("check", "Print what looks wrong in a book, row by row");
    const auto options = std::make_shared<CheckOptions>();
    command->add_option("BOOK", options->book, "Project, book in CSV form, or - for standard input")
        ->required();
    command->add_flag("--json", options->json, "An array of objects with row, kind, rule and text");
    command->add_option("--staff", options->staff, "Length of the staff, m; 5 at first")
        ->check(CLI::PositiveNumber);
    command->callback([options, &status] { status = check(*options, std::cin, std::cout, std::cerr); });
}

void addHeading(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand("heading", "Show the heading of a book, or set texts of it");
    const auto options = std::make_shared<HeadingOptions>();
    command->add_option("FILE.grl", options->book, "Project")->required();
    command->add_option("KEY=VALUE", options->texts, "Texts to set; an empty one is taken away");
    command->callback([options, &status] { status = heading(*options, std::cout, std::cerr); });
}

} // namespace cli
