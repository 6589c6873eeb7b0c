#!/usr/bin/env python3
"""Finds coroutine forms that g++ 12 compiles into wrong code without a word.

  1. co_await stands as a statement of its own, as `= co_await …` that initialises one named local, or after
     co_return: never in a condition, an argument, an assignment or an expression with && || ?:, and not on the line
     of a condition either, where nobody sees at a glance that it is none.
  2. Nothing in such a statement is braced: no temporary aggregate, no braced list, no lambda with captures.
  3. No coroutine is a lambda with captures.

usage: lint-coroutines.py FILE…       lists the offending lines; status 1 when there are any
       lint-coroutines.py --self-test  proves on samples that each rule strikes, and strikes nothing else
"""

import re
import sys

DECLARATION = re.compile(
    r"^(?:(?:const|constexpr|static|\[\[maybe_unused\]\])\s+)*"
    r"[\w:]+(?:\s*<[^;=]*>)?(?:::\w+)*[\s*&]+\w+(?:\s*\[\[maybe_unused\]\])?\s*=$"
)
STATEMENT_HEAD = re.compile(
    r"^(?:else\b|do\b|case\b(?:[^:;]|::)*:(?!:)|default\s*:|\w+\s*:(?!:)|(?:if|for|while|switch)\b(?:\s*constexpr)?\s*(?=\())\s*"
)
CONDITION_ON_LINE = re.compile(r"\s*(?:\}\s*)?(?:else\b\s*)?(?:if|for|while|switch)\b(?:\s*constexpr)?\s*\(")
LAMBDA = re.compile(
    r"\[(?P<captures>[^\[\]]*)\]\s*(?:<[^<>]*>\s*)?(?:\((?:[^()]|\((?:[^()]|\([^()]*\))*\))*\))?\s*"
    r"(?:mutable\b\s*|constexpr\b\s*|noexcept\b\s*|->\s*[\w:<>,\s*&]+)*$"
)


def blank(source):
    """The source with comments, strings and character literals replaced by spaces; line ends stay."""
    token = re.compile(
        r'//[^\n]*|/\*.*?\*/|R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"|(?<![\w])\'(?:\\.|[^\'\\\n])+\'', re.S
    )
    return token.sub(lambda found: re.sub(r"[^\n]", " ", found.group()), source)


def skip_parentheses(text):
    """The rest of a text that begins with "(" after the matching ")"; None when that is missing."""
    depth = 0
    for index, character in enumerate(text):
        depth += (character == "(") - (character == ")")
        if depth == 0:
            return text[index + 1 :]
    return None


def without_heads(prefix):
    """The prefix without `if (…)`, `else`, `case x:` and the like; None when co_await is inside such a head."""
    while found := STATEMENT_HEAD.match(prefix):
        prefix = prefix[found.end() :]
        if prefix.startswith("("):
            rest = skip_parentheses(prefix)
            if rest is None:
                return None
            prefix = rest.lstrip()
    return prefix


def statement_start(text, position):
    """Where the statement around a position begins: after the last ; { or } that is not inside parentheses."""
    depth = 0
    for index in range(position - 1, -1, -1):
        character = text[index]
        if character in ")]":
            depth += 1
        elif character in "([":
            depth -= 1
        elif character in "{}" or (character == ";" and depth == 0):
            return index + 1
    return 0


def statement_end(text, position):
    """Where the statement ends: at the first ; outside of brackets, or at the bracket that closes around it."""
    depth = 0
    for index in range(position, len(text)):
        character = text[index]
        if character in "([{":
            depth += 1
        elif character in ")]}":
            depth -= 1
            if depth < 0:
                return index
        elif character == ";" and depth == 0:
            return index
    return len(text)


def outermost(text):
    """The text without what stands in parentheses."""
    result, depth = [], 0
    for character in text:
        depth += character == "("
        if depth == 0:
            result.append(character)
        depth -= character == ")"
    return "".join(result)


def await_fault(text, position):
    prefix = without_heads(" ".join(text[statement_start(text, position) : position].split()))
    rest = text[position + len("co_await") : statement_end(text, position)]
    if prefix is None:
        return "co_await in a condition"
    if CONDITION_ON_LINE.match(text, text.rfind("\n", 0, position) + 1, position):
        return "co_await on the line of a condition: give it braces and a line of its own"
    if prefix not in ("", "co_return") and not DECLARATION.match(prefix):
        return "co_await inside an expression: name a local for its result"
    if re.search(r"&&|\|\||\?", outermost(rest)):
        return "co_await in an expression with && || ?: may be skipped: name a local for its result"
    for brace in re.finditer(r"\{", rest):
        lambda_head = LAMBDA.search(rest[: brace.start()])
        if not (lambda_head and not lambda_head["captures"].strip()):
            return "braces in an await statement: name the value first and move it in"
    return None


def capturing_lambda_around(text, position):
    """Whether the innermost lambda around a position, if there is one, has captures."""
    depth = 0
    for index in range(position - 1, -1, -1):
        if text[index] == "}":
            depth += 1
        elif text[index] == "{":
            if depth:
                depth -= 1
                continue
            found = LAMBDA.search(text[max(0, index - 600) : index])
            if found:
                return bool(found["captures"].strip())
    return False


def faults(source):
    """(line number, what is wrong) of each offence in a file's text."""
    text = blank(source)
    for found in re.finditer(r"(?<!operator )\bco_(await|return|yield)\b", text):
        line = text.count("\n", 0, found.start()) + 1
        if found.group(1) == "await":
            fault = await_fault(text, found.start())
            if fault:
                yield line, fault
        if capturing_lambda_around(text, found.start()):
            yield line, "a lambda with captures is a coroutine"


GOOD = (
    "co_await wait();",
    "co_return co_await f(a, std::move(b));",
    "const bool ok = co_await f();",
    "std::optional<std::pair<int, Thing>> found = co_await look(name);",
    "const auto unused [[maybe_unused]] = co_await f();",
    "if (ready) {\n  co_await f();\n} else {\n  co_await g();\n}",
    "for (int i = 0; i < 3; ++i) {\n  co_await f(i);\n}",
    "switch (x) {\n  case Kind::One: co_await f(); break;\n  default: co_await g();\n}",
    "auto sorted = co_await runBlocking([] { return 1; });",
    "log(\"if (co_await f())\"); // if (co_await f())",
    "scope.start([](Thing thing) -> Task<void> { co_await thing.wait(); }(thing));",
    "auto handle = [&] { return 1; }; co_await f(handle);",
    "T value = co_await f(a && b, c ? d : e);",
    "Awaiter operator co_await() && noexcept { return Awaiter(frame_); }",
)
BAD = (
    "if (ready) co_await f();",
    "if (ready) { use(); } else if (late) co_await f();",
    "while (more()) co_await f();",
    "if (co_await f()) { }",
    "if (const auto x = co_await f(); x) { }",
    "while (!co_await f()) { }",
    "for (auto x = co_await f(); x; ) { }",
    "switch (co_await f()) { }",
    "use(co_await f());",
    "EXPECT_TRUE(co_await f());",
    "x = co_await f();",
    "const bool both = co_await f() && g();",
    "const int n = co_await f() ? 1 : 2;",
    "const auto v = (co_await f()).value();",
    "auto [a, b] = co_await f();",
    "co_await f({1, 2});",
    "co_await f(Options{.seconds = 3});",
    "const auto r = co_await run([x] { return x; });",
    "const auto r = co_await run([&] { return x; });",
    "co_await f(std::vector<int>{});",
    "auto task = [this]() -> Task<void> { co_await f(); };",
    "auto task = [&x](int y) mutable -> Task<int> { if (y) { co_return x; } co_return 1; };",
)


def self_test():
    def code(sample):
        return f"Task<int> body() {{\n  {sample}\n}}\n"

    wrong = [f"missed: {sample}" for sample in BAD if not list(faults(code(sample)))]
    wrong += [f"false alarm: {sample}: {list(faults(code(sample)))}" for sample in GOOD if list(faults(code(sample)))]
    print("\n".join(wrong) or f"{len(GOOD) + len(BAD)} samples judged rightly")
    return 1 if wrong else 0


def main(arguments):
    if arguments == ["--self-test"]:
        return self_test()
    status = 0
    for path in arguments:
        with open(path, encoding="utf-8") as file:
            for line, fault in faults(file.read()):
                print(f"{path}:{line}: {fault}")
                status = 1
    return status


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
