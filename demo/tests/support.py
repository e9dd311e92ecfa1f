"""A demo home for a test, and calls of the tools in it."""

import json
import os
import shutil
import subprocess
import tempfile
import unittest

DEMO = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


class DemoTest(unittest.TestCase):
    def setUp(self):
        self.home = os.path.realpath(tempfile.mkdtemp(prefix="halyard-demo-test-"))
        self.addCleanup(shutil.rmtree, self.home)
        os.mkdir(os.path.join(self.home, ".halyard-demo"))
        self.environment = {
            "PATH": os.path.join(DEMO, "bin") + ":/usr/local/bin:/usr/bin:/bin", "HOME": self.home,
            "LANG": "C.UTF-8", "HALYARD_DEMO_ROOT": DEMO, "HALYARD_DEMO_HOME": self.home,
            "BASH_ENV": os.path.join(DEMO, "bash_env.sh"), "GIT_CONFIG_NOSYSTEM": "1"}

    def call(self, *words, **options):
        options.setdefault("cwd", self.home)
        options.setdefault("env", self.environment)
        return subprocess.run(words, stdout=subprocess.PIPE, stderr=subprocess.PIPE, universal_newlines=True, **options)

    def output(self, *words, **options):
        result = self.call(*words, **options)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return result.stdout

    def make_home(self):
        self.output(os.path.join(DEMO, "make_home"), self.home)
        return os.path.join(self.home, "Harbor")

    def settings(self, **values):
        with open(os.path.join(self.home, ".halyard-demo", "settings.json"), "w", encoding="utf-8") as file:
            json.dump(values, file)

    def journal(self):
        with open(os.path.join(self.home, ".halyard-demo", "journal.jsonl"), encoding="utf-8") as file:
            return [json.loads(line) for line in file]
