#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/async/main_thread.h"
#include "core/process/command_result.h"
#include "core/process/tool_finder.h"

namespace tarnwick {

struct ModelContainer {
  std::string image;
  std::string volume;
  std::int64_t httpPort = 0;
  std::string composeFile;  ///< the text it was made from; empty for a plain run
  bool runs = false;
  TimePoint answersFrom;  ///< of its page, while it runs
};

/// What is true of the machine: the tools, the virtual machine, images, volumes and the one
/// container. The simulated tools ask and change it; what the controller shows is compared with it.
class EngineModel final : public ToolFinder {
 public:
  struct Page {
    std::int64_t port = 0;
    std::optional<int> status;  ///< that a request gets; none when nobody answers
  };

  std::set<std::string> installed;  ///< tools, by name
  bool hasCompose = true;           ///< as docker's plug-in
  bool colimaUp = false;
  std::set<std::string> images;
  std::set<std::string> volumes;
  std::optional<ModelContainer> container;
  Duration bootTime{};     ///< from a container's start to its page's first answer
  bool pageIsIll = false;  ///< a container that runs, whose page answers with an error

  [[nodiscard]] std::optional<std::string> find(const std::string& name) const override;

  [[nodiscard]] bool containerRuns() const { return container && container->runs; }
  [[nodiscard]] Page page(TimePoint now) const;

  void startContainer(TimePoint now);
  void stopContainer();
  void stopColima();

  /// Carries a command out, as a tool that works does. `words` are its base name and arguments.
  CommandResult carryOut(const std::vector<std::string>& words, TimePoint now);

 private:
  CommandResult docker(const std::vector<std::string>& args, TimePoint now);
  CommandResult composeUp(const std::vector<std::string>& args, TimePoint now);
  CommandResult runPlain(const std::vector<std::string>& args, TimePoint now);
  CommandResult removeVolume(const std::string& name);
  void createContainer(const std::string& description, TimePoint now);
};

}  // namespace tarnwick
