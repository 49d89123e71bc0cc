#include "section_options.h"

#include "section_commands.h"

#include "basic/numbers.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>

namespace cli {
namespace {

void addSections(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand("sections", "Print the ground points of a book in road order");
    const auto book = std::make_shared<std::string>();
    const auto json = std::make_shared<bool>(false);
    command->add_option("BOOK", *book, "Project or book in CSV form")->required();
    command->add_flag("--json", *json, "One array of objects");
    command->callback([=, &status] { status = printSections(*book, *json, std::cin, std::cout, std::cerr); });
}

struct DxfArguments {
    std::string book;
    std::string out;
    std::string scale = "1000:100";
    bool onlyLong = false;
    bool onlyCross = false;
    exchange::DxfOptions options;
};

/// "H:V", both above 0; an empty text when it is one.
std::string scaleFault(const std::string& text, drawing::Scale* scale) {
    const std::size_t colon = text.find(':');
    const std::string horizontal = text.substr(0, colon);
    const std::string vertical = colon == std::string::npos ? "" : text.substr(colon + 1);
    if (!basic::isNumber(horizontal) || !basic::isNumber(vertical)) return "two numbers as in 1000:100";
    const drawing::Scale read{basic::val(horizontal), basic::val(vertical)};
    if (!(read.horizontal > 0) || !(read.vertical > 0)) return "two numbers above 0 as in 1000:100";
    if (scale != nullptr) *scale = read;
    return {};
}

void addDxf(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand("dxf", "Write the sections of a book as a drawing (DXF R12)");
    const auto arguments = std::make_shared<DxfArguments>();
    command->add_option("BOOK", arguments->book, "Project or book in CSV form; - for standard input")
        ->required();
    command->add_option("OUT.dxf", arguments->out, "Where to write it")->required();
    command->add_flag("--long", arguments->onlyLong, "Only the long section");
    command->add_flag("--cross", arguments->onlyCross, "Only the cross-sections");
    command
        ->add_option("--scale", arguments->scale,
                     "Scales of the long section, along and upright: 1000:100 unless told")
        ->check([](const std::string& text) { return scaleFault(text, nullptr); });
    command
        ->add_option("--cross-scale", arguments->options.crossScale,
                     "Scale of the cross-sections: 100 unless told")
        ->check(CLI::Range(0.001, 1e9));
    command->callback([arguments, &status] {
        exchange::DxfOptions options = arguments->options;
        options.longSection = arguments->onlyLong || !arguments->onlyCross;
        options.crossSections = arguments->onlyCross || !arguments->onlyLong;
        scaleFault(arguments->scale, &options.longScale);
        status = writeDxf(arguments->book, arguments->out, options, std::cin, std::cerr);
    });
}

void addLandXml(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand("landxml", "Write the sections of a book as LandXML 1.2");
    struct Arguments {
        std::string book, out, road;
    };
    const auto arguments = std::make_shared<Arguments>();
    command->add_option("BOOK", arguments->book, "Project or book in CSV form; - for standard input")
        ->required();
    command->add_option("OUT.xml", arguments->out, "Where to write it")->required();
    command->add_option("--name", arguments->road, "Name of the road; the book's name unless told");
    command->callback([arguments, &status] {
        status = writeLandXml(arguments->book, arguments->out, arguments->road, std::cin, std::cerr);
    });
}

} // namespace

void addSectionCommands(CLI::App& app, int& status) {
    addSections(app, status);
    addDxf(app, status);
    addLandXml(app, status);
}

} // namespace cli
