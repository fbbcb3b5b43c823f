#pragma once

#include "desk/door/CallRequest.h"

#include <iosfwd>
#include <string>

namespace desk {

/// `orderdesk call FOLDER FUNCTION JSON [--algo JSON]`: sends one call to the desk that runs in the folder,
/// waits until it is carried out, and prints what came of it. A mistake, and the lack of a desk or of an
/// answer, are printed to `err`. Returns the process's exit code: 0 if something was sent, 1 if nothing was
/// sent, 2 for texts that cannot be a call, 3 if no desk answers in the folder, 4 if the desk has not
/// answered, or an error has ended the request, so that it is not known what came of the call.
int runCall(const std::string& folder, const CCallRequest& request, std::ostream& out, std::ostream& err);

/// Prints an answer of the control door for people. Returns the exit code, as above.
int printAnswer(const std::string& answer, std::ostream& out, std::ostream& err);

} // namespace desk
