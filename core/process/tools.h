#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "core/process/environment.h"
#include "core/process/tool_finder.h"
#include "core/settings/app_paths.h"

namespace tarnwick {

/// Where tools are looked for, and what environment they get. Any thread.
class Tools final : public ToolFinder {
 public:
  struct Config {
    std::vector<std::string> toolFolders;    ///< where find() looks, in this order
    std::vector<std::string> systemFolders;  ///< only on the tools' own search path, after those
    std::vector<std::string>
        pluginFolders;      ///< where docker looks for plug-ins besides its defaults
    Environment inherited;  ///< the application's own environment

    /// The standard folders. The variable TARNWICK_TOOL_FOLDERS, absolute paths separated by
    /// colons, replaces the tool folders when it names at least one.
    [[nodiscard]] static Config forEnvironment(Environment inherited);
    /// The same for the environment of this process.
    [[nodiscard]] static Config fromProcess();
  };

  Tools(Config config, AppPaths paths);

  [[nodiscard]] std::optional<std::string> find(const std::string& name) const override;

  /// The complete environment of a child process, the same for good. Its first call is the first
  /// call of dockerOverride().
  [[nodiscard]] const Environment& environment() const;
  /// The same with `extra`, which wins over everything else.
  [[nodiscard]] Environment environment(const Environment& extra) const;

  /// What keeps docker clear of a user's configuration whose credential helper cannot be found:
  /// empty, or DOCKER_CONFIG and perhaps DOCKER_HOST. Worked out at the first call (which reads and
  /// may write a small file) and the same for good.
  [[nodiscard]] const Environment& dockerOverride() const;

 private:
  const Config config_;
  const AppPaths paths_;
  const std::string searchPath_;
  mutable std::once_flag overrideOnce_;
  mutable Environment override_;
  mutable std::once_flag environmentOnce_;
  mutable Environment environment_;
};

}  // namespace tarnwick
