#pragma once

namespace CLI {
class App;
}

namespace cli {

/// Adds the command import; `status` gets its exit status.
void addImport(CLI::App& app, int& status);

} // namespace cli
