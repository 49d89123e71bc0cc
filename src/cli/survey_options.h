#pragma once

namespace CLI {
class App;
}

namespace cli {

// Each adds one command with its options; `status` gets the exit status of the command that runs.

void addLevels(CLI::App& app, int& status);
void addCheck(CLI::App& app, int& status);
void addHeading(CLI::App& app, int& status);

} // namespace cli
