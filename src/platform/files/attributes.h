#pragma once

#include "open_file.h"

namespace files {

/// Gives `file` the owner, group and mode of `model`, and the extended attributes of `source`, where that is
/// open. Where the owner may not be kept the group is; where that may not be either, the rights of the group
/// do not pass to the other group.
void takeRights(const OpenFile& file, const Status& model, const OpenFile& source);

} // namespace files
