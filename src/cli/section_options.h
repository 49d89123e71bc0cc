#pragma once

namespace CLI {
class App;
}

namespace cli {

/// Adds the commands sections, dxf and landxml.
void addSectionCommands(CLI::App& app, int& status);

} // namespace cli
