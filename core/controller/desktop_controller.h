#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/async/cancellation.h"
#include "core/async/published.h"
#include "core/async/task_scope.h"
#include "core/controller/container_start.h"
#include "core/controller/controller_services.h"
#include "core/controller/launch_state.h"
#include "core/controller/line_channel.h"
#include "core/controller/log_text.h"
#include "core/engine/colima_manager.h"
#include "core/engine/docker.h"
#include "core/engine/port_check.h"
#include "core/engine/pull_progress.h"
#include "core/settings/settings_store.h"

namespace tarnwick {

/// The single holder of the application's state, and its work engine. Screens read the published
/// values and call the operations; each operation returns at once and goes on by itself. Lives as
/// long as the process. Main thread only.
class DesktopController {
 public:
  explicit DesktopController(ControllerServices services);
  DesktopController(const DesktopController&) = delete;
  DesktopController& operator=(const DesktopController&) = delete;
  ~DesktopController();

 private:
  ControllerServices services_;
  Keychain keychain_;
  ChangeSignal changes_;

 public:
  SettingsStore settings;

  Published<Phase> phase;
  Published<std::vector<Stage>> stages;
  Published<std::optional<double>> progress;  ///< 0 to 1; none for a step without a measure
  Published<std::string> progressText;
  Published<LogText> log;
  Published<std::optional<std::string>> errorSummary;
  Published<std::optional<std::string>> notice;
  Published<bool> showDesktop;
  Published<bool> askInstall;
  Published<bool> installing;
  Published<bool> isStopping;
  Published<std::optional<PortConflict>> portConflict;
  Published<std::int64_t> reloadToken;

  /// Announced before any of the values above changes (the settings have a signal of their own).
  [[nodiscard]] ChangeSignal& changes() { return changes_; }

  // Derived values.

  /// "Stopped", "Starting…", "Installing…", "Stopping…" or "Running (Standard)".
  [[nodiscard]] std::string statusText() const;
  /// The desktop page's address; none when the HTTPS port makes no valid one.
  [[nodiscard]] std::optional<std::string> desktopURL() const;
  [[nodiscard]] const Flavor& currentFlavor() const;
  /// Both docker and colima are found. Looks at each call.
  [[nodiscard]] bool toolsInstalled() const;
  /// An image is on its way; where it begins and ends, values above change.
  [[nodiscard]] bool downloading() const { return downloading_; }
  [[nodiscard]] const std::string& imageRegistry() const { return services_.imageRegistry; }

  // Starting.

  /// The main button: shows the desktop, launches it, offers to install what is missing, or opens
  /// Homebrew's home page.
  void primary();
  /// Does nothing while busy. `forcePull` downloads the image even when it is there; `recreate`
  /// makes a new container.
  void startLaunch(bool forcePull, bool recreate);
  /// Installs the missing tools with Homebrew and goes on into a launch.
  void confirmInstall();
  /// Starts the loop that adopts a running desktop and notices when it goes. Later calls do
  /// nothing.
  void startMonitor();
  /// The monitor has looked for a running desktop at least once.
  [[nodiscard]] bool hasLooked() const { return looked_; }

  // Stopping and maintenance.

  /// Stops the desktop; while busy, cancels the run instead.
  void stop();
  /// Ends a launch or install: asks the running tool to end, and the run ends with a notice.
  void cancel();
  /// Downloads the newest image and makes a new container from it; the data stays.
  void update();
  /// Makes a new container with the present settings.
  void applySettings();
  /// Stops the desktop and Colima, so that the next start uses the present sizes.
  void restartColima();
  /// Records the choice and tells Homebrew's service manager; goes back when that fails.
  void setColimaAtLogin(bool on);
  /// Deletes the flavor's volume, and the container if it is of this flavor.
  void removeFlavor(Flavor flavor);

  // Small answers of the screens.

  void dismissInstallOffer();
  void dismissPortConflict();
  /// Stores the suggested ports of the conflict and launches again.
  void useSuggestedPorts();
  /// Back from the desktop to the home screen; the container keeps running.
  void showHome();
  void reloadDesktop();
  /// Tells the user something that is not an error.
  void report(const std::string& information);

 private:
  // State operations; what each assigns, and in which order, is part of the contract with screens.
  void setStage(std::size_t index, StageState state);
  void fail(const std::string& message, std::optional<std::size_t> stage);
  void beginRun();
  void finishCancelled();
  /// Back to idle with a fresh checklist, unless a run has begun meanwhile.
  void settleIdle();
  void appendLog(std::string_view text);
  LineCallback lineSink();
  LineCallback lineSink(LineChannel::Consumer consume);
  /// A new streaming process, kept so that cancel() reaches it.
  std::shared_ptr<StreamingProcess> newStream();
  CancellationToken newRun();

  // The launch, step by step. Those that give a bool tell whether the run goes on.
  Task<void> runLaunch(bool forcePull, bool recreate, CancellationToken cancellation);
  Task<bool> makeColimaReady();
  Task<bool> startColima();
  [[nodiscard]] std::vector<std::string> colimaStartArguments() const;
  Task<bool> makeImagePresent(std::string docker, std::string image, bool forcePull);
  Task<bool> pullImage(std::string docker, std::string image);
  Task<bool> checkPorts();
  Task<bool> createContainer(std::string docker, Flavor flavor, bool recreate);
  Task<void> waitForDesktop(Flavor flavor, CancellationToken cancellation);
  void finishLaunch(const Flavor& flavor);
  bool finishedByCancel();

  Task<void> runInstallThenLaunch(CancellationToken cancellation);
  Task<void> stopDesktop();
  Task<void> stopColima();
  Task<void> changeColimaAtLogin(bool on);
  Task<void> removeFlavorData(Flavor flavor);
  Task<void> stopContainer(std::string docker);

  Task<bool> probe(std::int64_t port);
  Task<void> pollOnce();
  Task<void> monitorLoop();
  void adopt(const ContainerInfo& info);

  Docker docker_;
  ColimaManager colima_;
  PortCheck ports_;
  ContainerStarter starter_;

  std::shared_ptr<StreamingProcess> stream_;
  std::shared_ptr<LineChannel> lines_;
  CancellationSource run_;
  bool cancelRequested_ = false;
  bool downloading_ = false;
  bool monitoring_ = false;
  bool looked_ = false;
  /// Counts runs that began and containers that were ended: an answer that was asked for before
  /// tells nothing about what is there since.
  std::uint64_t turningPoints_ = 0;
  PullProgress pull_;
  // Last, so that suspended tasks go before anything they use.
  TaskScope tasks_;
};

}  // namespace tarnwick
