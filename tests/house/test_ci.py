"""How .ci/run goes through its steps and how it ends, shown on a copy of it with stand-ins for what it calls."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / ".ci" / "run"
SUMMARY = "100% tests passed, 0 tests failed out of 7\n\nTotal Test time (real) =   1.00 sec"


class ContinuousIntegration(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name) / "house"
        self.calls = Path(folder.name) / "calls"
        self.bin = Path(folder.name) / "bin"
        text = SCRIPT.read_text(encoding="utf-8")
        for script in sorted(set(re.findall(r"scripts/[\w.-]+", text))):
            self.stand_in(script)
        self.stand_in("run", f"[[ $3 == dev ]] && echo 'started'; echo 'Test #1'; echo '{SUMMARY}'")
        for command in ("clang++", "cmake", "ctest", "shellcheck"):
            self.stand_in(self.bin / command)
        self.stand_in("build/fuzz/tests/adapters/json/fuzz_json")
        (self.root / "build/release").mkdir(parents=True)
        (self.root / "build/release/CMakeCache.txt").write_text("Python3_EXECUTABLE:FILEPATH=/bin/true\n",
                                                                encoding="utf-8")
        (self.root / "tests/nd_data_adapter/model").mkdir(parents=True)
        (self.root / "tests/nd_data_adapter/model/test_generator.py").touch()
        (self.root / ".ci").mkdir()
        shutil.copy(SCRIPT, self.root / ".ci/run")

    def stand_in(self, path, body=""):
        place = self.root / path
        place.parent.mkdir(parents=True, exist_ok=True)
        place.write_text(f'#!{shutil.which("bash")}\necho "{place.name} $*" >> "$CALLS"\n{body}\n', encoding="utf-8")
        place.chmod(0o755)

    def run_script(self, path=os.environ["PATH"]):
        environment = {**os.environ, "PATH": f"{self.bin}:{path}", "CALLS": str(self.calls)}
        return subprocess.run(["bash", self.root / ".ci/run"], capture_output=True, text=True, check=False, cwd="/",
                              stdin=subprocess.DEVNULL, env=environment)

    def test_ends_with_the_summary_of_the_tests(self):
        result = self.run_script()
        self.assertEqual(0, result.returncode, result.stdout + result.stderr)
        self.assertTrue(result.stdout.endswith(SUMMARY + "\n"), result.stdout)
        self.assertEqual(2, result.stdout.count("tests of"))

    def test_every_step_says_how_long_it_took(self):
        said = self.run_script().stdout
        begun = re.findall(r"^== (?!All|The)(.*?)$", said, re.MULTILINE)
        names = [name for name in begun if not re.search(r": ok, \d+\.\d min$", name)]
        self.assertGreater(len(names), 8)
        for name in names:
            self.assertRegex(said, rf"(?m)^== {re.escape(name)}: ok, \d+\.\d min$")

    def test_tests_both_presets(self):
        self.run_script()
        calls = self.calls.read_text(encoding="utf-8").splitlines()
        self.assertIn("run test --preset release", calls)
        self.assertIn("run test --preset dev", calls)

    def test_fuzzes_for_a_minute_from_the_corpus_on(self):
        self.run_script()
        calls = self.calls.read_text(encoding="utf-8").splitlines()
        fuzzing = [call for call in calls if call.startswith("fuzz_json ")]
        self.assertEqual(1, len(fuzzing))
        self.assertIn(" -max_total_time=60 ", fuzzing[0])
        corpus = "tests/adapters/json/corpus"
        self.assertTrue(fuzzing[0].endswith(f" {corpus}/good {corpus}/bad {corpus}/found"), fuzzing[0])

    def assert_fuzzes_nothing(self, result):
        self.assertEqual(0, result.returncode, result.stdout + result.stderr)
        self.assertIn("There is no clang++ here that links its fuzzer: nothing is fuzzed.", result.stdout)
        self.assertIn("== fuzzing: ok", result.stdout)
        calls = self.calls.read_text(encoding="utf-8")
        self.assertNotIn("fuzz_json", calls)
        self.assertNotIn("--preset fuzz", calls)

    def test_fuzzes_nothing_without_clang(self):
        (self.bin / "clang++").unlink()
        others = self.bin.parent / "others"
        others.mkdir()
        for folder in os.environ["PATH"].split(os.pathsep):
            for program in Path(folder).glob("*"):
                if not program.name.startswith("clang++") and not (others / program.name).is_symlink():
                    (others / program.name).symlink_to(program)
        self.assert_fuzzes_nothing(self.run_script(path=str(others)))

    def test_fuzzes_nothing_with_a_clang_that_cannot_link_its_fuzzer(self):
        self.stand_in(self.bin / "clang++", "exit 1")
        self.assert_fuzzes_nothing(self.run_script())

    def test_what_the_fuzzer_finds_fails_its_step(self):
        self.stand_in("build/fuzz/tests/adapters/json/fuzz_json", "exit 77")
        result = self.run_script()
        self.assertEqual(1, result.returncode)
        self.assertEqual("== Failed: fuzzing", result.stdout.splitlines()[-1])

    def test_a_failing_step_is_named_and_the_others_still_run(self):
        self.stand_in("scripts/check_format", "exit 1")
        result = self.run_script()
        self.assertEqual(1, result.returncode)
        self.assertEqual("== Failed: format", result.stdout.splitlines()[-1])
        self.assertIn("== include arrows: ok", result.stdout)
        self.assertIn("== installation and an outside project: ok", result.stdout)

    def test_every_failing_step_is_named(self):
        self.stand_in("scripts/check_format", "exit 1")
        self.stand_in("scripts/check_outside_project", "exit 3")
        result = self.run_script()
        self.assertEqual(["== Failed: format", "== Failed: installation and an outside project"],
                         result.stdout.splitlines()[-2:])

    def test_nothing_follows_a_build_that_fails(self):
        self.stand_in("run", "echo broken; exit 1")
        result = self.run_script()
        self.assertEqual(1, result.returncode)
        self.assertEqual("== Failed: build and tests", result.stdout.splitlines()[-1])
        self.assertNotIn("check_format", self.calls.read_text(encoding="utf-8"))

    def test_failing_tests_under_sanitizers_fail_the_run(self):
        self.stand_in("run", f"echo '{SUMMARY}'; [[ $3 != dev ]]")
        result = self.run_script()
        self.assertEqual(1, result.returncode)
        self.assertEqual("== Failed: build and tests under sanitizers", result.stdout.splitlines()[-1])

    def test_a_generator_without_tests_fails_its_step(self):
        (self.root / "tests/nd_data_adapter/model/test_generator.py").unlink()
        result = self.run_script()
        self.assertEqual(1, result.returncode)
        self.assertEqual("== Failed: generator", result.stdout.splitlines()[-1])


if __name__ == "__main__":
    unittest.main()
