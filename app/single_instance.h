#pragma once

#include <QString>
#include <functional>
#include <memory>

namespace tarnwick {

/// Sees to it that one process at a time works with the user's data: two would fight over the
/// container and over the web view's storage. Interface thread.
class SingleInstance {
 public:
  /// `folder` holds the data that one process is to have for itself, and exists.
  explicit SingleInstance(const QString& folder);
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;
  ~SingleInstance();

  enum class Role {
    first,         ///< this process is the one
    raisedOther,   ///< another one is, and has been asked to show its window
    otherIsSilent  ///< another one is, and does not answer
  };

  /// Becomes the one process, or asks the other to show itself, which takes 5 seconds at most.
  /// `onRaise` is called from the event loop whenever a later process asks for that.
  Role enter(std::function<void()> onRaise);

 private:
  class Guard;
  std::unique_ptr<Guard> guard_;
};

}  // namespace tarnwick
