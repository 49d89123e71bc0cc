#include "cal.h"
#include "import_options.h"
#include "jet_command.h"
#include "project_files.h"
#include "section_options.h"
#include "survey_options.h"
#include "transfer_command.h"

#include "basic/strings.h"
#include "files/folder.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace {

void addCal(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand("cal", "Reduce the levels of a book in CSV form or of a project");
    const auto options = std::make_shared<cli::CalOptions>();
    command
        ->add_option("IN", options->in,
                     "Book with the ten columns of the grid, - for standard input; or a project, which is "
                     "saved in its place")
        ->required();
    command->add_option("OUT", options->out,
                        "Where to write a book in CSV form; standard output when left out");
    command->callback([options, &status] {
        const bool project = basic::lower(options->in).ends_with(".grl");
        if (project && !options->out.empty()) throw CLI::ExtrasError({options->out});
        status = project ? cli::calProject(options->in, std::cerr)
                         : cli::cal(*options, std::cin, std::cout, std::cerr);
    });
}

void addExport(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand("export", "Write a project as a CSV file");
    const auto options = std::make_shared<cli::CalOptions>();
    command->add_option("FILE.grl", options->in, "Project")->required();
    command->add_option("OUT.csv", options->out,
                        "Where to write it, - for standard output; beside the project when left out");
    command->callback(
        [options, &status] { status = cli::exportProject(options->in, options->out, std::cout, std::cerr); });
}

void addNew(CLI::App& app, int& status) {
    CLI::App* command =
        app.add_subcommand("new", "Make a project of a book in CSV form, replacing an existing file");
    const auto options = std::make_shared<cli::CalOptions>();
    command->add_option("FILE.grl", options->out, "Project to make")->required();
    command->add_option("--from", options->in, "Book with the ten columns of the grid; - for standard input")
        ->required();
    command->callback(
        [options, &status] { status = cli::newProject(options->out, options->in, std::cin, std::cerr); });
}

void addTransfer(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand(
        "transfer", "Make a project of the road-design program: DIR/BASE/Road.mdb and its drawings");
    const auto options = std::make_shared<cli::TransferOptions>();
    command->add_option("FILE", options->book, "Project file; it is reduced and saved")->required();
    auto* target = command->add_option_group("Target");
    target->add_option("--folder", options->folder, "Folder that the project folder is made in");
    target->add_option("--frl", options->frl, "Send the levels as formation levels into this Road.mdb");
    target->add_option("--frl-update", options->frlUpdate,
                       "Only update the formation levels of this Road.mdb");
    target->require_option(1);
    command->add_option("--gutter", options->gutter, "How the gutter is given: slope or top")
        ->check(CLI::IsMember({"slope", "top"}));
    for (std::size_t number = 0; number < cli::frameOptions().size(); ++number) {
        const cli::FrameOption& box = cli::frameOptions()[number];
        command->add_option_function<std::string>(
            box.option,
            [options, number](const std::string& text) { options->boxes.emplace_back(number, text); },
            box.help);
    }
    command->callback([options, &status] { status = cli::transfer(*options, std::cout, std::cerr); });
}

void addJet(CLI::App& app, int& status) {
    CLI::App* jet =
        app.add_subcommand("jet", "Look into a database file (Access 97 to 2003), check or make one");
    jet->require_subcommand(1);
    const auto options = std::make_shared<cli::JetOptions>();
    const auto command = [&](const char* name, const char* help, bool wantsTable) {
        CLI::App* made = jet->add_subcommand(name, help);
        made->add_option("FILE", options->file, "The database file")->required();
        if (wantsTable) made->add_option("TABLE", options->table, "One table instead of all user tables");
        made->add_option("--password", options->password, "Password of the database");
        return made;
    };
    command("schema", "Print the layout of the tables", true)->callback([options, &status] {
        status = cli::jetSchema(*options, std::cout, std::cerr);
    });
    CLI::App* dump = command("dump", "Print the rows as CSV with a header line", true);
    dump->add_flag_callback(
        "--json", [options] { options->form = cli::DumpForm::Json; }, "JSON, one object a row");
    dump->callback([options, &status] { status = cli::jetDump(*options, std::cout, std::cerr); });
    CLI::App* check = command("check", "Check the whole structure; one line a fault", false);
    check->add_flag("--strict", options->strict, "Also what Access itself is careless about");
    check->callback([options, &status] { status = cli::jetCheck(*options, std::cout, std::cerr); });
    CLI::App* create = command("create", "Make a new database", false);
    create->add_option("SCHEMA", options->schema, "Text with its tables; - for standard input")->required();
    create->callback([options, &status] { status = cli::jetCreate(*options, std::cin, std::cerr); });
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("Field books of levelling surveys without the window.", "zavrogrl-cli");
    app.set_version_flag("--version", "zavrogrl-cli " ZAVRO_VERSION);
    app.require_subcommand(1);
    app.footer("Exit status: 0 done, 1 the work failed (said on standard error), 2 wrong usage.");
    int status = cli::Done;
    addCal(app, status);
    addExport(app, status);
    addNew(app, status);
    addTransfer(app, status);
    cli::addLevels(app, status);
    cli::addCheck(app, status);
    cli::addHeading(app, status);
    cli::addImport(app, status);
    addJet(app, status);
    cli::addSectionCommands(app, status);
    try {
        app.parse(argc, argv);
        for (const std::string& warning : files::takeWarnings()) // beside a success
            std::cerr << "zavrogrl-cli: " << warning << '\n';
        return status;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? cli::Done : cli::WrongUsage;
    }
}
