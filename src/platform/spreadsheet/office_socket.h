#pragma once

#include "descriptor.h"
#include "patience.h"

#include <string>
#include <sys/types.h>
#include <vector>

// The single-instance socket of a running LibreOffice: the one over which a second start of the program hands
// its command line to the first. Speaking it needs no library of LibreOffice and cannot start anything. As
// read from LibreOffice 7.4 (desktop/source/app/officeipcthread.cxx, sal/osl/unx/pipe.cxx):
//
//   <tmp>/OSL_PIPE_<uid>_SingleOfficeIPC_<hash of the profile's address>
//   server: "InternalIPC::SendArguments" NUL
//   client: "InternalIPC::Arguments0" { "," argument with "\" before "," and "\" } NUL
//   server: "InternalIPC::ProcessingDone" NUL

namespace spreadsheet {

/// A LibreOffice that accepted our connection, and the process that it runs as.
struct Office {
    std::string socketPath;
    Descriptor connection;
    pid_t process = 0;
    std::string programFolder; ///< where its libraries lie
    bool ownProfile = false;   ///< it was started on the user's standard profile
    std::string heard;         ///< what it said so far, up to its next NUL
    bool asked = false;        ///< it was told what to do and has to confirm it
};

/// The sockets of this user, live or left over.
[[nodiscard]] std::vector<std::string> officeSockets();

/// The live instances behind `sockets`, the one on the standard profile first. A socket that refuses, or that
/// belongs to another user, is passed over.
[[nodiscard]] std::vector<Office> runningOffices(const std::vector<std::string>& sockets);

enum class Greeting { Accepted, Closed, Silent };

/// Asks the instance to accept UNO connections on the pipe `name`. Closed: it ended the talk, as one does
/// that is just starting or closing. Silent: it is there but said nothing for `answerTime`; the talk goes on
/// where it stood when this is called again.
[[nodiscard]] Greeting openPipe(Office& office, const std::string& name, std::chrono::milliseconds answerTime,
                                Patience& patience);

} // namespace spreadsheet
