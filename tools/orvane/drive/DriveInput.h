#pragma once

#include <string>

#include "tools/orvane/drive/InputSource.h"
#include "tools/orvane/drive/Motion.h"
#include "tools/orvane/drive/Profile.h"
#include "tools/orvane/files/Problems.h"

namespace orvane::tool {

// Opens what a user gives as the input of a session: the name of a waveform, "-" for a table on
// standard input, the file of a table, or nothing, if the profile moves its inputs itself.
//
// A file is read completely first, so that a wrong row anywhere means that nothing is sent;
// standard input is read as it comes. Borrows the profile and the problems.
InputSource openDriveInput(const std::string& input, const Profile& profile, const Wave& settings,
                           Problems& problems);

} // namespace orvane::tool
