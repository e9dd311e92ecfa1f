import os
import signal
import subprocess
import time
import unittest

from tests.support import DEMO, DemoTest

RUN = os.path.join(DEMO, "run")


class Run(DemoTest):
    def setUp(self):
        super().setUp()
        del self.environment["HALYARD_DEMO_HOME"]
        self.environment["TMPDIR"] = self.home
        # Whatever a test does, the home has to go.
        self.addCleanup(self.wait_until, lambda: not self.homes())

    def start(self, *words, **options):
        child = subprocess.Popen([RUN] + list(words), env=self.environment, stdout=subprocess.PIPE,
                                 universal_newlines=True, **options)
        self.addCleanup(child.stdout.close)
        return child

    def wait_until(self, condition):
        deadline = time.monotonic() + 10
        while not condition():
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.01)

    def homes(self):
        return [name for name in os.listdir(self.home) if name.startswith("halyard-demo-")]

    def test_the_program_is_in_the_sample_app_with_the_demos_tools(self):
        lines = self.output(RUN, "bash", "-c", "pwd; echo $HOME; which xcrun; /usr/bin/xcrun --version").splitlines()
        self.assertTrue(lines[0].startswith(self.home + "/halyard-demo-"))
        self.assertEqual(lines[0], lines[1] + "/Harbor")
        self.assertEqual(lines[2:], [DEMO + "/bin/xcrun", "xcrun version 70."])

    def test_the_exit_status_is_the_programs(self):
        self.assertEqual(self.call(RUN, "bash", "-c", "exit 37").returncode, 37)

    def test_a_program_given_by_a_relative_path_is_found(self):
        os.symlink("/bin/echo", os.path.join(self.home, "prog"))
        self.assertEqual(self.output(RUN, "./prog", "words"), "words\n")

    def test_without_a_program_it_says_how_it_is_used(self):
        self.assertEqual(self.call(RUN).returncode, 64)

    def test_a_named_home_stays_and_keeps_its_state(self):
        self.environment["HALYARD_DEMO_HOME"] = os.path.join(self.home, "named")
        self.output(RUN, "xcode-select", "-s", "/Applications/Other.app")
        self.assertEqual(self.output(RUN, "xcode-select", "-p"), "/Applications/Other.app/Contents/Developer\n")
        self.assertEqual(self.homes(), [])

    def test_a_signal_reaches_the_program_and_the_home_goes(self):
        for number in (signal.SIGTERM, signal.SIGHUP, signal.SIGKILL):
            child = self.start("bash", "-c", "echo up; exec sleep 60")
            self.assertEqual(child.stdout.readline(), "up\n")
            child.send_signal(number)
            self.assertEqual(child.wait(), -number)
            self.wait_until(lambda: not self.homes())

    def test_the_terminals_interrupt_of_the_whole_group_leaves_no_home(self):
        child = self.start("bash", "-c", "echo up; exec sleep 60", preexec_fn=os.setpgrp)
        self.assertEqual(child.stdout.readline(), "up\n")
        os.killpg(child.pid, signal.SIGINT)
        self.assertEqual(child.wait(), -signal.SIGINT)

    def test_a_stop_is_seen_outside_and_continuing_goes_on(self):
        child = self.start("bash", "-c", "echo up; read -r line; echo $line", stdin=subprocess.PIPE,
                           preexec_fn=os.setpgrp)
        self.addCleanup(child.stdin.close)
        self.assertEqual(child.stdout.readline(), "up\n")
        os.killpg(child.pid, signal.SIGTSTP)
        status = os.waitpid(child.pid, os.WUNTRACED)[1]
        self.assertTrue(os.WIFSTOPPED(status))
        self.assertEqual(len(self.homes()), 1)
        os.killpg(child.pid, signal.SIGCONT)
        child.stdin.write("on\n")
        child.stdin.flush()
        self.assertEqual(child.stdout.readline(), "on\n")
        self.assertEqual(child.wait(), 0)


if __name__ == "__main__":
    unittest.main()
