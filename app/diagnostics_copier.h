#pragma once

#include <functional>

#include "app/backend.h"
#include "core/async/task_scope.h"
#include "core/diagnostics/system_facts.h"

namespace tarnwick {

/// Puts a report for bug reports on the clipboard. Interface thread.
class DiagnosticsCopier {
 public:
  /// `moreFacts` is asked at each report, for what only the caller knows.
  DiagnosticsCopier(Backend& backend, std::function<Facts()> moreFacts);
  DiagnosticsCopier(const DiagnosticsCopier&) = delete;
  DiagnosticsCopier& operator=(const DiagnosticsCopier&) = delete;

  /// Asks the tools and copies what they answer; a notice of the home screen says when. Does
  /// nothing while it is at it.
  void copy();

 private:
  Task<void> copyReport();

  Backend& backend_;
  std::function<Facts()> moreFacts_;
  TaskScope tasks_;
};

}  // namespace tarnwick
