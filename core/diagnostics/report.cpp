#include "core/diagnostics/report.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <iterator>
#include <string_view>
#include <utility>

#include "core/diagnostics/redaction.h"
#include "core/text/utf8.h"

namespace tarnwick {
namespace {

constexpr double answerLimit = 3;
constexpr std::size_t lastLines = 60;
constexpr std::size_t longestLine = 500;

struct Question {
  const char* title;
  const char* tool;
  std::vector<std::string> arguments;
};

std::vector<Question> questions() {
  return {{"colima", "colima", {"version"}},
          {"docker", "docker", {"--version"}},
          {"docker compose", "docker", {"compose", "version"}},
          {"engine", "docker", {"info", "--format", "{{.ServerVersion}}"}},
          {"brew", "brew", {"--version"}}};
}

std::string firstLine(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n");
  if (begin == std::string::npos) return {};
  const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
  return text.substr(begin, std::min(end - begin, longestLine));
}

std::string answerOf(const CommandResult& result) {
  if (result.timedOut) return "does not answer";
  const std::string line = firstLine(result.combined());
  if (result.succeeded()) return line.empty() ? "says nothing" : line;
  return fmt::format("failed with status {}: {}", result.status, line);
}

Task<std::string> askTool(DiagnosticSources sources, Question question) {
  const auto exe = sources.tools.find(question.tool);
  if (!exe) co_return fmt::format("{}: not found\n", question.title);
  Environment nothing;
  const CommandResult result = co_await sources.runner.run(*exe, std::move(question.arguments),
                                                           answerLimit, std::move(nothing));
  co_return fmt::format("{}: {} ({})\n", question.title, answerOf(result), *exe);
}

std::string textOf(const Facts& facts) {
  std::string text;
  for (const auto& [name, value] : facts) text += fmt::format("{}: {}\n", name, value);
  return text;
}

const char* textOf(PasswordStorage storage) {
  switch (storage) {
    case PasswordStorage::loading:
      return "the keychain has not answered yet";
    case PasswordStorage::keychain:
      return "the keychain answers";
    case PasswordStorage::sessionOnly:
      return "no keychain that can be used";
  }
  return "";
}

Facts settingsOf(const SettingsStore& settings) {
  const auto yesNo = [](bool yes) { return std::string(yes ? "yes" : "no"); };
  const auto number = [](std::int64_t value) { return std::to_string(value); };
  return {
      {"Desktop", settings.flavorID.get()},
      {"CPUs, memory and disk of the VM", fmt::format("{}, {} GB, {} GB", settings.cpu.get(),
                                                      settings.memory.get(), settings.disk.get())},
      {"Ports", number(settings.httpPort.get()) + " and " + number(settings.httpsPort.get())},
      {"Shared folder", settings.shareFolder.get().empty() ? "none" : settings.shareFolder.get()},
      {"Password protection", yesNo(settings.requirePassword())},
      {"Password storage", textOf(settings.passwordStorage.get())},
      {"Stop Colima on quit", yesNo(settings.stopColimaOnQuit.get())},
      {"Colima at login", yesNo(settings.colimaAtLogin.get())},
      {"Launch at login", yesNo(settings.launchAtLogin.get())},
      {"Launched before", fmt::format("{}", fmt::join(settings.launchedFlavors.get(), ", "))}};
}

std::string stateOf(const DesktopController& controller) {
  constexpr std::array<const char*, 4> names = {"pending", "active", "done", "failed"};
  std::string text =
      fmt::format("{}\nShown: {}\nAddress: {}\nImage registry: {}\n", controller.statusText(),
                  controller.showDesktop.get() ? "the desktop" : "the home screen",
                  controller.desktopURL().value_or("none"), controller.imageRegistry());
  for (const Stage& stage : controller.stages.get()) {
    text += fmt::format("- {}: {}\n", stage.title, names.at(static_cast<std::size_t>(stage.state)));
  }
  if (const auto& error = controller.errorSummary.get()) text += "Error: " + *error + "\n";
  if (const auto& notice = controller.notice.get()) text += "Notice: " + *notice + "\n";
  return text;
}

std::string logOf(const DesktopController& controller) {
  std::string text;
  for (const std::string_view line : controller.log.get().tail(lastLines)) {
    text.append(decodeUtf8(std::string(line.substr(0, longestLine)))).append("\n");
  }
  return text.empty() ? "(empty)\n" : text;
}

}  // namespace

Task<std::string> diagnosticReport(DiagnosticSources sources, Facts facts) {
  std::string tools;
  std::vector<Question> all = questions();
  for (Question& question : all) {
    const std::string line = co_await askTool(sources, std::move(question));
    tools += line;
  }
  const DesktopController& controller = sources.controller;
  const std::string report = fmt::format(
      "# Tarnwick diagnostics\n\n{}{}\n## Tools\n\n{}\n## Settings\n\n{}\n## State\n\n{}\n"
      "## Last lines of the log\n\n{}",
      textOf(facts), textOf(systemFacts()), tools, textOf(settingsOf(controller.settings)),
      stateOf(controller), logOf(controller));
  const Redaction redaction(sources.homeFolder, {controller.settings.password.get()});
  co_return redaction.apply(report);
}

}  // namespace tarnwick
