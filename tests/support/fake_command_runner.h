#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/async/sleep.h"
#include "core/process/command_runner.h"

namespace tarnwick {

/// Records every command and answers it, after a virtual delay, by the beginning of its words: the
/// tool's base name and the arguments. The answer that was set last goes first; a command without
/// an answer could not be started.
///
///     runner.on({"docker", "info"}, 5s, success("27.0"));
class FakeCommandRunner final : public CommandRunner {
 public:
  struct Call {
    std::string exe;
    std::vector<std::string> args;
    double timeout = 0;
    Environment env;
    /// Base name of `exe`, then `args`.
    [[nodiscard]] std::vector<std::string> words() const {
      std::vector<std::string> all = {exe.substr(exe.rfind('/') + 1)};
      all.insert(all.end(), args.begin(), args.end());
      return all;
    }
  };
  /// Makes the answer at the moment the command ends, so that it may also change what is there.
  using Answer = std::function<CommandResult(const Call&)>;

  explicit FakeCommandRunner(MainThread& mainThread) : mainThread_(mainThread) {}

  std::vector<Call> calls;

  static CommandResult success(std::string out = {}, std::string err = {}) {
    return CommandResult(0, std::move(out), std::move(err), false);
  }
  static CommandResult failure(std::string err = {}, std::int32_t status = 1) {
    return CommandResult(status, {}, std::move(err), false);
  }
  static CommandResult timeOut() { return CommandResult(143, {}, {}, true); }

  void on(std::vector<std::string> beginning, Duration delay, Answer answer) {
    rules_.push_front(Rule{std::move(beginning), delay, std::move(answer), false});
  }
  void on(std::vector<std::string> beginning, CommandResult result) {
    on(std::move(beginning), Duration(), always(std::move(result)));
  }
  /// As `on`, for one command only; the one set first answers first, before all others.
  void once(std::vector<std::string> beginning, CommandResult result, Duration delay = {}) {
    const auto firstLasting = std::ranges::find(rules_, false, &Rule::once);
    rules_.insert(firstLasting, Rule{std::move(beginning), delay, always(std::move(result)), true});
  }
  /// An answer that is the same whenever it is asked for.
  static Answer always(CommandResult result) {
    return [result = std::move(result)](const Call&) { return result; };
  }
  /// Number of commands that began with these words.
  [[nodiscard]] std::size_t count(const std::vector<std::string>& beginning) const {
    return static_cast<std::size_t>(std::ranges::count_if(
        calls, [&](const Call& call) { return begins(call.words(), beginning); }));
  }

  Task<CommandResult> run(std::string exe, std::vector<std::string> args, double timeout,
                          Environment env) override {
    Call call;
    call.exe = std::move(exe);
    call.args = std::move(args);
    call.timeout = timeout;
    call.env = std::move(env);
    calls.push_back(call);
    const Rule rule = take(call);
    CancellationToken never;
    co_await sleepFor(mainThread_, rule.delay, std::move(never));
    co_return rule.answer(call);
  }

 private:
  struct Rule {
    std::vector<std::string> beginning;
    Duration delay{};
    Answer answer;
    bool once = false;
  };

  static bool begins(const std::vector<std::string>& words,
                     const std::vector<std::string>& beginning) {
    return words.size() >= beginning.size() &&
           std::equal(beginning.begin(), beginning.end(), words.begin());
  }
  Rule take(const Call& call) {
    const auto words = call.words();
    const auto found = std::ranges::find_if(
        rules_, [&](const Rule& rule) { return begins(words, rule.beginning); });
    if (found == rules_.end()) {
      return Rule{{}, Duration(), always(failure("no answer for this command", -1)), false};
    }
    Rule rule = *found;
    if (rule.once) rules_.erase(found);
    return rule;
  }

  MainThread& mainThread_;
  std::deque<Rule> rules_;
};

}  // namespace tarnwick
