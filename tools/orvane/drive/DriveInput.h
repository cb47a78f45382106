#pragma once

#include <memory>
#include <string>

#include "tools/orvane/drive/IInputSource.h"
#include "tools/orvane/drive/Motion.h"
#include "tools/orvane/drive/Problems.h"
#include "tools/orvane/drive/Profile.h"

namespace orvane::tool {

// What a user gives as the input of a session: the name of a waveform, "-" for a table on standard
// input, the file of a table, or nothing, when the profile moves its inputs itself or none is
// moved.
//
// A file is read to its end at once, so that nothing is sent of one that is wrong in any row;
// standard input is read as it comes. Borrows the profile and the problems.
std::unique_ptr<IInputSource> openDriveInput(const std::string& input, const Profile& profile,
                                             const Wave& settings, Problems& problems);

} // namespace orvane::tool
