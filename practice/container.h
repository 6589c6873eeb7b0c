#pragma once

#include "practice/faults.h"
#include "practice/state.h"

namespace tarnwick::practice {

/// The one container that the practice engine keeps. All operations work on a State that the caller
/// holds locked through StateFolder::update(), and throw Refusal like the daemon answers, with
/// `refusalStatus` (run: 125, compose: 1) as the status.
struct ContainerHost {
  const StateFolder& folder;
  const Faults& faults;
  int refusalStatus;

  /// Makes and starts a new container; there must be none. The sign-in comes from our environment.
  void create(State& state, const ContainerRequest& request) const;

  /// Starts the stopped container again.
  void start(State& state) const;

  /// Whether `request`, made now, asks for exactly what runs: same settings and same password.
  bool runsAsAsked(const State& state, const ContainerRequest& request) const;
};

bool isRunning(const State& state);

/// Stops the container for the user: it stays down when the engine comes back.
void stopContainer(State& state);
void removeContainer(State& state);

/// What happens to the container when the virtual machine goes away and comes back. A container
/// with a password comes back locked, because the password is kept nowhere.
void suspendContainer(State& state);
void resumeContainer(const StateFolder& folder, const Faults& faults, State& state);

}  // namespace tarnwick::practice
