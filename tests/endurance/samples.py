"""The samples of all sittings, as files of comma-separated values."""

import csv
import json
import shutil


class Table:
    """A file that grows by a line for each sample, and is whole whenever the run is cut off."""

    def __init__(self, path, columns):
        self.path, self._columns = path, columns
        if not path.exists():
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(",".join(columns) + "\n")

    def add(self, row):
        with open(self.path, "a", newline="") as file:
            csv.DictWriter(file, self._columns, lineterminator="\n").writerow(row)


def rows(path):
    """The samples, with numbers as numbers; an empty field is None."""
    if not path.exists():
        return []
    with open(path, newline="") as file:
        return [{name: value(text) for name, text in row.items()} for row in csv.DictReader(file)]


def value(text):
    if text in (None, ""):
        return None
    try:
        return float(text)
    except ValueError:
        return text


def withElsewhere(rows):
    """Samples at rest, each with what the heaps hold without the changes of serial phases: those are Wine's for the most."""
    before, elsewhere, found = {}, {}, []
    for row in rows:
        sitting = row["sitting"]
        if sitting in before and not row["phase"].endswith(" serial"):
            elsewhere[sitting] += row["heap"] - before[sitting]
        elsewhere.setdefault(sitting, row["heap"])
        before[sitting] = row["heap"]
        found.append(row | {"elsewhere": elsewhere[sitting]})
    return found


class Run:
    """The folder of a run: samples, what the sittings were, latencies."""

    def __init__(self, folder):
        self.folder = folder
        self._file = folder / "run.json"
        self.known = json.loads(self._file.read_text()) if self._file.exists() else {"build": "", "sittings": []}

    def save(self):
        self.folder.mkdir(parents=True, exist_ok=True)
        self._file.write_text(json.dumps(self.known, indent=1) + "\n")

    def begin(self, build, anew):
        """Goes on with the run that is there, when it is one of the same program. Another one is put aside."""
        if self.known["sittings"] and (anew or self.known["build"] != build):
            aside = self.folder.with_name(self.folder.name + "-before")
            shutil.rmtree(aside, ignore_errors=True)
            self.folder.rename(aside)
            self.known = {"build": build, "sittings": []}
        self.known["build"] = build
        self.save()

    def sittings(self, part):
        return [sitting for sitting in self.known["sittings"] if sitting["part"] == part]

    def add(self, sitting):
        """Notes a sitting, once it has been."""
        self.known["sittings"].append(sitting)
        self.save()

    def path(self, name):
        self.folder.mkdir(parents=True, exist_ok=True)
        return self.folder / name
