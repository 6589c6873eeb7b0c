#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace tarnwick {

/// Replaces the content of the file at `path`, or creates it, with permissions `mode` (the umask
/// does not apply). Whoever looks finds the old content or the new one, also after a crash or a
/// power cut; on success the new one is on the disk. When `path` is a symbolic link the link stays
/// and the file it names is replaced. The folder must exist.
///
/// Gives the system's reason when it fails ("No space left on device"), none when it worked. Blocks
/// for as long as the disk takes. Any thread.
[[nodiscard]] std::optional<std::string> writeFileAtomically(const std::string& path,
                                                             std::string_view bytes,
                                                             mode_t mode = 0600);

/// The file that `path` names once all symbolic links of its last component are followed, whether
/// or not it exists; `path` itself when they run in a circle. Any thread.
[[nodiscard]] std::string followLinks(const std::string& path);

}  // namespace tarnwick
