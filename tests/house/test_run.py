"""What ./run does in which order, shown on a copy of it with stand-ins for cmake, ctest and the programs."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "run"

CMAKE = r"""
echo "cmake $*" >> "$CALLS"
case "$1 $2" in
  "--preset broken") echo "CMake Error: nonsense"; exit 1 ;;
  "--preset "*) mkdir -p "build/$2"; : > "build/$2/build.ninja" ;;
  "--build --preset")
    for step in $(seq 40); do echo "[$step/40] Building CXX object $step.o"; done
    if [[ -e break ]]; then echo "FAILED: 40.o"; echo "error: no such thing"; exit 1; fi ;;
esac
"""


class Run(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name) / "house"
        self.bin = Path(folder.name) / "bin"
        self.calls = Path(folder.name) / "calls"
        self.put(self.root / "scripts/install-dependencies", 'echo "install-dependencies $*" >> "$CALLS"')
        self.put(self.bin / "cmake", CMAKE)
        self.put(self.bin / "ctest", 'echo "ctest $*" >> "$CALLS"; echo "100% tests passed"; [[ ! -e fail ]]')
        self.put(self.bin / "nproc", "echo 7")
        (self.root / "CMakePresets.json").write_text("{}", encoding="utf-8")
        os.utime(self.root / "CMakePresets.json", (0, 0))
        shutil.copy(SCRIPT, self.root / "run")

    def put(self, place, body):
        place.parent.mkdir(parents=True, exist_ok=True)
        place.write_text(f"#!{shutil.which('bash')}\n{body}\n", encoding="utf-8")
        place.chmod(0o755)

    def run_script(self, *arguments, folder=None):
        environment = {**os.environ, "PATH": f"{self.bin}:{os.environ['PATH']}", "CALLS": str(self.calls)}
        environment.pop("CMAKE_BUILD_PARALLEL_LEVEL", None)
        result = subprocess.run([self.root / "run", *arguments], capture_output=True, text=True, check=False,
                                cwd=folder or self.root, env=environment)
        calls = self.calls.read_text(encoding="utf-8").splitlines() if self.calls.exists() else []
        self.calls.unlink(missing_ok=True)
        return result, calls

    def test_installs_configures_builds_and_tests_in_this_order(self):
        result, calls = self.run_script("test")
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertEqual(["install-dependencies", "cmake --preset release",
                          "cmake --build --preset release --parallel 7"], [call.rstrip() for call in calls[:3]])
        self.assertIn("ctest --preset release --output-on-failure --no-tests=error --parallel 7", calls[3])
        self.assertEqual("100% tests passed", result.stdout.splitlines()[-1])

    def test_works_from_any_folder(self):
        result, _ = self.run_script("test", folder="/")
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertTrue((self.root / "build/release/build.ninja").exists())

    def test_configures_once_and_again_when_the_presets_have_changed(self):
        self.run_script("test")
        _, calls = self.run_script("test")
        self.assertNotIn("cmake --preset release", calls)
        ninja = (self.root / "build/release/build.ninja").stat().st_mtime
        os.utime(self.root / "CMakePresets.json", (ninja + 10, ninja + 10))
        _, calls = self.run_script("test")
        self.assertIn("cmake --preset release", calls)

    def test_hands_further_arguments_to_ctest(self):
        _, calls = self.run_script("test", "-R", "two words")
        self.assertTrue(calls[-1].endswith(" -R two words"), calls[-1])

    def test_takes_another_preset(self):
        _, calls = self.run_script("test", "--preset", "dev", "-j", "1")
        self.assertIn("cmake --preset dev", calls)
        self.assertTrue(calls[-1].startswith("ctest --preset dev "), calls[-1])
        self.assertTrue(calls[-1].endswith(" -j 1"), calls[-1])

    def test_a_failed_configuration_shows_its_log_and_builds_nothing(self):
        result, calls = self.run_script("test", "--preset", "broken")
        self.assertEqual(1, result.returncode)
        self.assertIn("CMake Error: nonsense", result.stderr)
        self.assertEqual("cmake --preset broken", calls[-1])

    def test_a_failed_build_shows_what_failed_and_tests_nothing(self):
        (self.root / "break").touch()
        result, calls = self.run_script("test")
        self.assertEqual(1, result.returncode)
        self.assertIn("FAILED: 40.o\nerror: no such thing", result.stdout)
        self.assertIn("building in build/release failed", result.stderr)
        self.assertFalse(any(call.startswith("ctest") for call in calls))

    def test_failed_tests_fail_the_command(self):
        (self.root / "fail").touch()
        result, _ = self.run_script("test")
        self.assertEqual(1, result.returncode)

    def test_thins_the_status_lines_of_a_long_build(self):
        result, _ = self.run_script("test")
        shown = [line for line in result.stdout.splitlines() if line.startswith("[")]
        self.assertEqual(10, len(shown))
        self.assertEqual("[40/40] Building CXX object 40.o", shown[-1])

    def test_the_job_count_can_be_given(self):
        os.environ["CMAKE_BUILD_PARALLEL_LEVEL"] = "3"
        self.addCleanup(os.environ.pop, "CMAKE_BUILD_PARALLEL_LEVEL")
        environment = {**os.environ, "PATH": f"{self.bin}:{os.environ['PATH']}", "CALLS": str(self.calls)}
        subprocess.run([self.root / "run", "test"], capture_output=True, check=True, env=environment)
        self.assertIn("cmake --build --preset release --parallel 3", self.calls.read_text(encoding="utf-8"))

    def test_bench_runs_every_program_or_the_one_that_is_named(self):
        for name in ("bench_json", "bench_model"):
            self.put(self.root / "build/release/benchmarks" / name, f'echo "{name} $*" >> "$CALLS"')
        (self.root / "build/release/benchmarks/CTestTestfile.cmake").touch()
        _, calls = self.run_script("bench")
        self.assertEqual(["bench_json", "bench_model"], [call.split()[0] for call in calls[-2:]])
        for name in ("json", "bench_json"):
            _, calls = self.run_script("bench", name, "--benchmark_filter=Read")
            self.assertIn("cmake --build --preset release --parallel 7 --target bench_json", calls)
            self.assertEqual("bench_json --benchmark_filter=Read", calls[-1])

    def test_bench_without_a_program_says_so(self):
        result, _ = self.run_script("bench")
        self.assertEqual(1, result.returncode)
        self.assertIn("no benchmark program", result.stderr)

    WALKS = ("platform/foundation/random/platform_foundation_random_tests",
             "nd_data_adapter/model/random/nd_data_adapter_model_random_tests")

    def put_walks(self, failing=None):
        for number, program in enumerate(self.WALKS):
            status = int(number == failing)
            self.put(self.root / "build/release/tests" / program,
                     f'echo "walks {number} $* for $ND_WALK_SECONDS" >> "$CALLS"; exit {status}')

    def test_soak_builds_the_random_walks_and_goes_each_for_half_the_time(self):
        self.put_walks()
        names = " ".join(Path(program).name for program in self.WALKS)
        for arguments, seconds in (([], 300), (["3"], 90), (["1"], 30)):
            result, calls = self.run_script("soak", *arguments)
            self.assertEqual(0, result.returncode, result.stderr)
            self.assertIn(f"cmake --build --preset release --parallel 7 --target {names}", calls)
            wanted = [f"walks {number} --gtest_filter=RandomWalk.* for {seconds}" for number in (0, 1)]
            self.assertEqual(wanted, calls[-2:])

    def test_soak_fails_with_a_walk_that_fails_and_goes_the_others(self):
        for failing in (0, 1):
            self.put_walks(failing)
            result, calls = self.run_script("soak")
            self.assertEqual(1, result.returncode)
            self.assertEqual(["0", "1"], [call.split()[1] for call in calls[-2:]])

    def test_soak_refuses_what_is_no_number_of_minutes(self):
        self.put_walks()
        for arguments in (["0"], ["long"], ["-1"], ["1.5"], [""]):
            result, calls = self.run_script("soak", *arguments)
            self.assertEqual((1, []), (result.returncode, calls), arguments)
            self.assertIn("is no number of minutes", result.stderr)
        result, calls = self.run_script("soak", "1", "2")
        self.assertEqual((1, []), (result.returncode, calls))
        self.assertIn("'soak' takes one argument", result.stderr)

    def test_help_shows_an_example_for_each_command(self):
        result, calls = self.run_script("--help")
        self.assertEqual((0, []), (result.returncode, calls))
        for intention in ("demo", "test", "bench", "soak"):
            self.assertIn(f"  ./run {intention}\n", result.stdout)

    def test_an_unknown_command_is_named(self):
        result, calls = self.run_script("tset")
        self.assertEqual((1, []), (result.returncode, calls))
        self.assertIn("there is no command 'tset'", result.stderr)

    def test_no_command_shows_the_usage_and_fails(self):
        result, calls = self.run_script()
        self.assertEqual((2, []), (result.returncode, calls))
        self.assertIn("Usage: ./run", result.stderr)


if __name__ == "__main__":
    unittest.main()
