"""What the tools remember between calls, and the settings of the demo. All in one folder of the demo's home."""

import contextlib
import fcntl
import json
import os

from halyard_demo import initial


class State:
    """`settings` is what a person or a test chose; `read()` and `change()` give what the tools have made of it."""

    def __init__(self, home, journal_path=None):
        self.home = home
        self.folder = os.path.join(home, ".halyard-demo")
        os.makedirs(self.folder, exist_ok=True)
        self.journal_path = journal_path or os.path.join(self.folder, "journal.jsonl")
        self._settings = None

    @classmethod
    def of_environment(cls):
        home = os.environ.get("HALYARD_DEMO_HOME") or os.environ["HOME"]
        return cls(home, os.environ.get("HALYARD_DEMO_JOURNAL"))

    @property
    def settings(self):
        if self._settings is None:
            self._settings = self._load("settings.json", dict)
        return self._settings

    def read(self):
        """The state as it is now. Changing the result changes nothing."""
        with self._locked():
            return self._load("state.json", initial.state)

    @contextlib.contextmanager
    def change(self):
        """The state to be changed in place; kept when the block ends without an exception."""
        with self._locked():
            data = self._load("state.json", initial.state)
            yield data
            path = os.path.join(self.folder, "state.json")
            with open(path + ".new", "w", encoding="utf-8") as file:
                json.dump(data, file, indent=1)
            os.replace(path + ".new", path)

    def path(self, name):
        """A file of a tool's own, beside the state."""
        return os.path.join(self.folder, name)

    @contextlib.contextmanager
    def _locked(self):
        descriptor = os.open(os.path.join(self.folder, "lock"), os.O_RDWR | os.O_CREAT, 0o644)
        try:
            fcntl.flock(descriptor, fcntl.LOCK_EX)
            yield
        finally:
            os.close(descriptor)

    def _load(self, name, default):
        try:
            with open(os.path.join(self.folder, name), encoding="utf-8") as file:
                return json.load(file)
        except FileNotFoundError:
            return default()
