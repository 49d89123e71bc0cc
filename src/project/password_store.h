#pragma once

#include "desktop/desktop.h"

#include <string>
#include <string_view>

// The program's one password, in the program folder: the field "pwd" of the first record of table "Pwd" in
// the database "suprt.dll" or, without that file, the first line of "lgn.lgn". Both are readable by their
// owner only.

namespace project {

/// The stored password; empty when there is no store. Raises the error of a store that is there and cannot be
/// read, and of a program folder that does not tell; one that another program holds is tried for two seconds.
[[nodiscard]] std::string storedPassword(desktop::Desktop& desktop);

/// The same for the login, which makes an empty "lgn.lgn" where there is neither store.
[[nodiscard]] std::string passwordForLogin(desktop::Desktop& desktop);

/// What the user is told of a store that could not be read, and what to do: nobody is let in, and no password
/// is set, who might not know the one in it.
[[nodiscard]] std::string unreadableStore(desktop::Desktop& desktop, const basic::RuntimeError& error);

/// Stores `password` as it stands. Raises the store's error; the old password then holds.
void storePassword(desktop::Desktop& desktop, std::string_view password);

} // namespace project
