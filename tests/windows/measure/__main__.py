"""Measures the program in its window, beside other programs. Not a test: it prints numbers. ./bench --window runs it."""

import argparse
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "lib"))
import calls  # noqa: E402
import connections  # noqa: E402
import drain  # noqa: E402
import flood  # noqa: E402
import idle  # noqa: E402
import memory  # noqa: E402
from program import Failure  # noqa: E402

SUBJECTS = {"drain": drain, "flood": flood, "idle": idle, "calls": calls, "connections": connections,
            "memory": memory}


def build(text):
    name, _, folder = text.partition("=")
    if not folder:
        raise argparse.ArgumentTypeError("NAME=FOLDER is wanted")
    return name, folder


def parsed():
    parser = argparse.ArgumentParser(prog="./bench --window", description="Without a subject: all of them.")
    subjects = parser.add_subparsers(dest="subject", metavar="SUBJECT")
    for name, module in SUBJECTS.items():
        one = subjects.add_parser(name, help=module.__doc__.split(".")[0], description=module.__doc__)
        one.add_argument("--build", action="append", type=build, default=[], dest="builds", metavar="NAME=FOLDER",
                         help="measure this build of qxterm, too")
        module.options(one)
    return parser


def main():
    parser = parsed()
    words = sys.argv[1:]
    plans = [parser.parse_args(words)] if words else [parser.parse_args([name]) for name in SUBJECTS]
    for plan in plans:
        plan.builds = dict(plan.builds)
        try:
            SUBJECTS[plan.subject].measure(plan)
        except Failure as failure:
            sys.exit(f"{plan.subject}: {failure}")


main()
