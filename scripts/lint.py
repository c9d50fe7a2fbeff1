#!/usr/bin/python3
"""clang-tidy over the project's sources: lint.py BUILD_FOLDER [FILE ...]

A source that was clean is not looked at again until it, a project's header that it includes or the
configuration has changed: a first run over everything takes half an hour of two cores, the next
ones seconds. Needs a finished build with Ninja, which knows the includes.
"""

import concurrent.futures
import hashlib
import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LEFT_OUT = ("bench/", "tests/fuzz/")  # not part of a release build


def project_sources() -> list[str]:
    listed = subprocess.run(["git", "ls-files", "*.cpp"], cwd=ROOT, check=True,
                            capture_output=True, text=True).stdout.split()
    return [name for name in listed if not name.startswith(LEFT_OUT)]


def includes(build: pathlib.Path) -> dict[str, list[pathlib.Path]]:
    """The project's files that each source was compiled from, the source itself among them."""
    text = subprocess.run(["ninja", "-C", str(build), "-t", "deps"], check=True,
                          capture_output=True, text=True).stdout
    found: dict[str, list[pathlib.Path]] = {}
    for block in text.split("\n\n"):
        names = [line.strip() for line in block.splitlines()[1:]]
        paths = [(build / name).resolve() for name in names if not name.startswith("/usr/")]
        inside = [path for path in paths if path.is_relative_to(ROOT) and path.is_file()]
        if inside:
            found[str(inside[0].relative_to(ROOT))] = inside
    return found


def fingerprint(files: list[pathlib.Path]) -> str:
    digest = hashlib.sha256()
    for path in sorted(set(files) | {ROOT / ".clang-tidy"}):
        digest.update(hashlib.sha256(path.read_bytes()).digest())
    return digest.hexdigest()


def look_at(source: str, build: pathlib.Path) -> str:
    """What clang-tidy finds; empty when the source is clean."""
    run = subprocess.run(["clang-tidy", "-p", str(build), "--quiet",
                          "--extra-arg=-Wno-unknown-warning-option", source],
                         cwd=ROOT, capture_output=True, text=True)
    return "" if run.returncode == 0 else run.stdout + run.stderr


def main() -> int:
    build = pathlib.Path(sys.argv[1]).resolve()
    sources = sys.argv[2:] or project_sources()
    known = includes(build)
    clean = build / "lint"
    clean.mkdir(exist_ok=True)

    def lint(source: str) -> str:
        stamp = clean / source.replace("/", ".")
        key = fingerprint(known.get(source, [ROOT / source]))
        if source in known and stamp.exists() and stamp.read_text() == key:
            return ""
        found = look_at(source, build)
        if not found:
            stamp.write_text(key)
        return found

    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for source, found in zip(sources, pool.map(lint, sources)):
            if found:
                failed += 1
                print(f"{source}:\n{found}", flush=True)
    print(f"{len(sources)} sources, {failed} with findings")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
