#include "app/diagnostics_copier.h"

#include <QClipboard>
#include <QGuiApplication>
#include <utility>

#include "core/diagnostics/report.h"

namespace tarnwick {

DiagnosticsCopier::DiagnosticsCopier(Backend& backend, std::function<Facts()> moreFacts)
    : backend_(backend), moreFacts_(std::move(moreFacts)), tasks_(backend.mainThread()) {}

void DiagnosticsCopier::copy() {
  if (tasks_.size() > 0) return;
  tasks_.start(copyReport());
}

Task<void> DiagnosticsCopier::copyReport() {
  Facts facts = {
      {"Tarnwick", QCoreApplication::applicationVersion().toStdString()},
      {"Qt", std::string(qVersion()) + ", " + QGuiApplication::platformName().toStdString()}};
  const Facts more = moreFacts_();
  facts.insert(facts.end(), more.begin(), more.end());
  DiagnosticSources sources{backend_.controller(), backend_.cli(), backend_.tools(),
                            backend_.paths().homeFolder()};
  const std::string report = co_await diagnosticReport(std::move(sources), std::move(facts));
  QGuiApplication::clipboard()->setText(QString::fromStdString(report));
  backend_.controller().report("The diagnostics are copied. Paste them into your bug report.");
}

}  // namespace tarnwick
