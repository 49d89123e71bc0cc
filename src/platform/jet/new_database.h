#pragma once

#include <string>

namespace jet {

class Pager;

/// Fills a new file with the header and the system tables.
void makeDatabase(Pager& pager, const std::string& password);

} // namespace jet
