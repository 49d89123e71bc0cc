#include "import_options.h"

#include "import_command.h"

#include "basic/strings.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace cli {

void addImport(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand(
        "import", "Make a book of a table (.xlsx, .ods, .csv) or of a digital level's file (GSI, M5)");
    const auto options = std::make_shared<ImportOptions>();
    command->add_option("FILE", options->file, "What to read; its content tells what it is")->required();
    command->add_option("OUT", options->out, "Where to write the book: .csv, .grl, or - for standard output")
        ->check([](const std::string& path) {
            const std::string lower = basic::lower(path);
            const bool known = path == "-" || lower.ends_with(".csv") || lower.ends_with(".grl");
            return known ? std::string() : path + " ends neither with .csv nor with .grl";
        });
    command->add_flag("--list", options->list,
                      "Only say what sheets and columns, or what lines, the file holds");
    command->add_option("--sheet", options->sheet,
                        "The sheet, by name; the one that the file opens with otherwise");
    command
        ->add_option("--heading", options->heading, "The row of the headings; 0 for none; guessed otherwise")
        ->check(CLI::NonNegativeNumber);
    command->add_option(
        "--columns", options->columns,
        "What the columns are: \"A=chainage,C=is,...\" with chainage, metres, left, center, right, "
        "offset, side, bs, is, fs, level, remark, reading, kind; guessed otherwise");
    command->add_option("--points", options->points,
                        "How point names tell chainage and offset: KKMMM, KKMMM+oo");
    command->add_option("--line", options->line, "The line of a digital level's file, as --list counts");
    command->add_flag("--take", options->take,
                      "Take a line although its readings differ from the levels in the file");
    command->callback([options, &status] {
        if (options->out.empty() != options->list)
            throw CLI::ValidationError("import", "needs either OUT or --list");
        status = importFile(*options, std::cout, std::cerr);
    });
}

} // namespace cli
