#include "ui/notices/notices.h"

#include <utility>

namespace tarnwick {
namespace {

std::string idOf(const std::optional<PortConflict>& conflict) {
  return conflict ? conflict->id : std::string();
}

}  // namespace

Notices::Notices(DesktopController& controller, DesktopNotifications& notifications,
                 DesktopNotifications::Clicked clicked, std::function<bool()> isInFront)
    : controller_(controller),
      notifications_(notifications),
      clicked_(std::move(clicked)),
      isInFront_(std::move(isInFront)),
      scheduler_([this] { render(); }),
      observation_(controller_.changes().observe([this] {
        note();
        scheduler_.request();
      })) {}

void Notices::attentionChanged() {
  if (isInFront_()) notifications_.withdraw();
}

// At each change the values are still those before it, so that even the shortest run is seen.
void Notices::note() {
  if (controller_.phase.get() != Phase::busy) return;
  if (!run_) run_ = Run{idOf(controller_.portConflict.get())};
  run_->installing = controller_.installing.get();
}

void Notices::render() {
  if (!run_) return;
  if (controller_.phase.get() != Phase::busy) {
    const Run ended = *std::exchange(run_, std::nullopt);
    tellEnd(ended);
    return;
  }
  const bool installing = controller_.installing.get();
  if (std::exchange(run_->renderedInstalling, installing) && !installing) {
    tell("Colima and Docker are installed", "The desktop is being started.");
  }
}

void Notices::tellEnd(const Run& run) {
  if (controller_.phase.get() == Phase::running) {
    // The notice says what the running desktop lacks.
    tell("The desktop is running",
         controller_.notice.get().value_or(controller_.currentFlavor().name + " is ready."));
  } else if (controller_.errorSummary.get()) {
    tell(run.installing ? "The installation failed" : "The desktop could not start",
         *controller_.errorSummary.get());
  } else if (const std::string id = idOf(controller_.portConflict.get());
             !id.empty() && id != run.earlierConflict) {
    tell("The desktop could not start",
         "Port " + std::to_string(controller_.portConflict.get()->port) + " is already in use.");
  }
}

void Notices::tell(const std::string& title, const std::string& text) {
  if (!isInFront_()) notifications_.show(title, text, clicked_);
}

}  // namespace tarnwick
