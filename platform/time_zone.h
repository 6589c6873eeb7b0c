#pragma once

#include <optional>
#include <string>

namespace tarnwick {

/// Where a system says which time zone it keeps. The paths serve the tests.
class TimeZoneSources {
 public:
  std::optional<std::string> variable;              ///< the value of TZ
  std::string localtimeLink = "/etc/localtime";     ///< a link into the zones' folder
  std::string nameFile = "/etc/timezone";           ///< one line with the name
  std::string zonesFolder = "/usr/share/zoneinfo";  ///< names are checked against it if it exists
};

/// The IANA name of the zone, from the first source that gives a valid one; Etc/UTC when none does.
[[nodiscard]] std::string timeZoneName(const TimeZoneSources& sources);

/// The zone of this process: TZ, then the system's. Main thread.
[[nodiscard]] std::string currentTimeZoneName();

}  // namespace tarnwick
