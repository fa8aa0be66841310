#!/usr/bin/env python3
"""Checks what may include what.

A unit is a header with its source. The library's graph of units must be acyclic, and these fences
hold: operating-system headers stay in platform/posix/, ICU in one private wrapper, kernel/ serves
the mutex, the memory manager and the thread pool alone, and the umbrella header is for hosts.
Programs and translators include public headers of the library alone, and operating-system headers
in apps/*/system/posix/ only.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LIBRARY = ROOT / "kovabase"
UMBRELLA = "kovabase/KOVABase.h"
ICU_WRAPPER = "kovabase/strings/internal/"
KERNEL_USERS = {
    "kovabase/concurrency/KOVAMutex",
    "kovabase/concurrency/KOVASingletonThreadPool",
    "kovabase/foundation/KOVAMemoryManager",
}
# Headers of the operating system; those of the C and C++ standard libraries are not among them.
SYSTEM = re.compile(
    r"^(sys/|linux/|netinet/|arpa/|(aio|cpio|dirent|dlfcn|fcntl|fnmatch|glob|grp|iconv|langinfo|"
    r"libgen|link|locale_t|nl_types|poll|pthread|pwd|regex|sched|semaphore|spawn|strings|syslog|"
    r"termios|ucontext|unistd|utime|wordexp|xlocale)\.h$)")
SYSTEM_OF_PROGRAM = re.compile(r"^apps/[^/]+/system/posix/")
INCLUDE = re.compile(r'^\s*#\s*include\s+([<"])([^>"]+)[>"]')


def unit_of(path):
    """kovabase/strings/KOVAString.cpp -> kovabase/strings/KOVAString; posix/X.cpp belongs to X.h."""
    text = str(path.with_suffix(""))
    return text.replace("kovabase/platform/posix/", "kovabase/platform/")


def find_cycle(graph):
    state = {}
    stack = []

    def visit(node):
        state[node] = "open"
        stack.append(node)
        for successor in sorted(graph.get(node, ())):
            if state.get(successor) == "open":
                return stack[stack.index(successor):] + [successor]
            if successor not in state:
                cycle = visit(successor)
                if cycle:
                    return cycle
        stack.pop()
        state[node] = "done"
        return None

    for node in sorted(graph):
        if node not in state:
            cycle = visit(node)
            if cycle:
                return cycle
    return None


def main():
    sys.setrecursionlimit(10000)
    problems = []
    graph = {}
    files = sorted(p for p in LIBRARY.rglob("*") if p.suffix in (".h", ".cpp"))
    public = set()

    for path in files:
        relative = path.relative_to(ROOT)
        name = str(relative)
        unit = unit_of(relative)
        is_private = any(part in name for part in ("/internal/", "/platform/", "/kernel/"))
        if path.suffix == ".h" and not is_private and name != UMBRELLA:
            public.add(name)
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            quoted, target = match.group(1) == '"', match.group(2)
            where = f"{name}:{number}"
            if quoted:
                if not target.startswith("kovabase/"):
                    problems.append(f"{where}: include '{target}' from the include root")
                elif not (ROOT / target).exists():
                    problems.append(f"{where}: '{target}' does not exist")
                elif name != UMBRELLA:
                    graph.setdefault(unit, set()).add(unit_of(pathlib.PurePath(target)))
                if target == UMBRELLA:
                    problems.append(f"{where}: the umbrella header is for hosts and examples")
                if target.startswith("kovabase/kernel/") and not (
                        unit in KERNEL_USERS or name.startswith("kovabase/kernel/")):
                    problems.append(f"{where}: kernel/ serves {', '.join(sorted(KERNEL_USERS))} alone")
                if (path.suffix == ".h" and not is_private and name != UMBRELLA and any(
                        part in target for part in ("/internal/", "/platform/", "/kernel/"))):
                    problems.append(f"{where}: a public header includes the private '{target}'")
            else:
                if target.startswith("unicode/") and not name.startswith(ICU_WRAPPER):
                    problems.append(f"{where}: ICU belongs to {ICU_WRAPPER}")
                if SYSTEM.match(target) and not name.startswith("kovabase/platform/posix/"):
                    problems.append(f"{where}: <{target}> belongs to kovabase/platform/posix/")

    for unit in graph:
        graph[unit].discard(unit)
    cycle = find_cycle(graph)
    if cycle:
        problems.append("include cycle: " + " -> ".join(cycle))

    users = sorted(p for folder in ("apps", "translators") for p in (ROOT / folder).rglob("*")
                   if p.suffix in (".h", ".cpp"))
    for path in users:
        name = str(path.relative_to(ROOT))
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            target, where = match.group(2), f"{name}:{number}"
            is_library = target.startswith("kovabase/") and target not in public
            if is_library or target.startswith("unicode/"):
                problems.append(f"{where}: '{target}' is not of the public interface")
            if SYSTEM.match(target) and not SYSTEM_OF_PROGRAM.match(name):
                problems.append(f"{where}: <{target}> belongs to apps/*/system/posix/")

    umbrella = set(re.findall(r'#include "(kovabase/[^"]+)"', (ROOT / UMBRELLA).read_text(encoding="utf-8")))
    for name in sorted(public - umbrella):
        problems.append(f"{UMBRELLA}: lacks {name}")
    for name in sorted(umbrella - public):
        problems.append(f"{UMBRELLA}: {name} is not a public header")

    for problem in problems:
        print(problem)
    print(f"{len(files)} files, {len(graph)} units, {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
