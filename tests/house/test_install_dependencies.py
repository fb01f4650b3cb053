"""What scripts/install-dependencies asks of apt, shown with stand-ins for the commands that it calls."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "install-dependencies"
REAL_COMMANDS = ["awk", "bash", "cat", "env", "grep", "mktemp", "paste", "rm"]


class InstallDependencies(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.bin = Path(folder.name)
        self.calls = self.bin / "calls"
        for name in REAL_COMMANDS:
            (self.bin / name).symlink_to(shutil.which(name))
        self.packages = subprocess.run([SCRIPT, "--list", "build", "check"], capture_output=True, text=True,
                                       check=True).stdout.split()
        self.act_as("id", "echo 0")
        self.act_as("apt-get", 'echo "apt-get $*" >> ' + str(self.calls))
        self.have(self.packages)

    def act_as(self, name, body):
        place = self.bin / name
        place.write_text(f"#!{shutil.which('bash')}\n{body}\n", encoding="utf-8")
        place.chmod(0o755)

    def have(self, packages):
        """Lets the stand-in for dpkg-query know these packages, and fail over any other as the real one does."""
        known = " ".join(packages)
        self.act_as("dpkg-query", f"""
status=0
for name in "$@"; do
  case "$name" in -*) continue ;; esac
  case " {known} " in *" $name "*) echo "installed $name" ;; *) echo "no package $name" >&2; status=1 ;; esac
done
exit $status""")

    def run_script(self, *arguments):
        return subprocess.run([SCRIPT, *arguments], capture_output=True, text=True, check=False,
                              env={"PATH": str(self.bin), "TMPDIR": os.environ.get("TMPDIR", "/tmp")})

    def calls_of_apt(self):
        return self.calls.read_text(encoding="utf-8").splitlines() if self.calls.exists() else []

    def test_says_and_does_nothing_when_all_is_there(self):
        result = self.run_script("build", "check")
        self.assertEqual((0, "", ""), (result.returncode, result.stdout, result.stderr))
        self.assertEqual([], self.calls_of_apt())

    def test_installs_exactly_what_is_missing(self):
        self.have([name for name in self.packages if name not in ("ccache", "libicu-dev")])
        result = self.run_script()
        self.assertEqual(0, result.returncode, result.stderr)
        update, simulation, install = self.calls_of_apt()
        self.assertIn("update", update)
        self.assertIn("--simulate", simulation)
        self.assertTrue(install.endswith(" install ccache libicu-dev"), install)

    def test_a_package_whose_files_are_gone_counts_as_missing(self):
        self.act_as("dpkg-query", 'for name in "$@"; do echo "config-files $name"; done')
        self.run_script("check")
        wanted = " install git clang-format clang-tidy shellcheck clang libclang-rt-14-dev"
        self.assertTrue(self.calls_of_apt()[-1].endswith(wanted))

    def test_looks_at_the_sets_that_it_is_given_only(self):
        self.have([name for name in self.packages if name != "clang-tidy"])
        self.assertEqual(0, self.run_script("build").returncode)
        self.assertEqual([], self.calls_of_apt())

    def test_goes_through_sudo_when_not_root(self):
        self.have([])
        self.act_as("id", "echo 1000")
        self.act_as("sudo", f'echo sudo >> {self.calls}; exec "$@"')
        self.assertEqual(0, self.run_script("check").returncode)
        self.assertEqual(["sudo", "apt-get"] * 3, [call.split()[0] for call in self.calls_of_apt()])

    def test_without_root_and_sudo_it_says_what_to_install(self):
        self.have([])
        self.act_as("id", "echo 1000")
        result = self.run_script("check")
        self.assertEqual(1, result.returncode)
        self.assertIn("apt-get install git clang-format clang-tidy", result.stderr)
        self.assertEqual([], self.calls_of_apt())

    def test_removes_nothing_without_being_told_to(self):
        self.have([name for name in self.packages if name != "libboost1.81-dev"])
        self.act_as("apt-get", f'echo "$*" >> {self.calls}; [[ "$*" != *--simulate* ]] || '
                    'printf "Remv libboost-dev [1.74]\\nRemv libboost1.74-dev [1.74]\\nInst libboost1.81-dev\\n"')
        result = self.run_script()
        self.assertEqual(1, result.returncode)
        self.assertIn("apt has to remove: libboost-dev libboost1.74-dev", result.stderr)
        self.assertIn("libboost1.81-dev cannot stand beside libboost-dev", result.stderr)
        self.assertIn("--replace", result.stderr)
        self.assertIn("--simulate", self.calls_of_apt()[-1])

        result = self.run_script("--replace")
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertIn("apt has to remove: libboost-dev libboost1.74-dev", result.stderr)
        self.assertTrue(self.calls_of_apt()[-1].endswith("--yes --no-install-recommends install libboost1.81-dev"))

    def test_a_failure_of_apt_is_shown_and_passed_on(self):
        self.have([])
        self.act_as("apt-get", 'case "$*" in *--yes*) echo "E: no space left"; exit 100 ;; esac')
        result = self.run_script("check")
        self.assertEqual(1, result.returncode)
        self.assertIn("E: no space left", result.stderr)
        self.assertIn("failed", result.stderr)

    def test_goes_on_with_the_old_lists_when_they_cannot_be_renewed(self):
        self.have([])
        self.act_as("apt-get", f'echo "$*" >> {self.calls}; case "$*" in *update*) exit 100 ;; esac')
        result = self.run_script("check")
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertIn("could not be renewed", result.stderr)
        self.assertIn("install git", self.calls_of_apt()[-1])

    def test_names_the_packages_on_a_machine_without_debian_packages(self):
        (self.bin / "dpkg-query").unlink()
        result = self.run_script()
        self.assertEqual(0, result.returncode)
        self.assertIn("libboost1.81-dev", result.stderr)
        self.assertEqual([], self.calls_of_apt())

    def test_refuses_a_set_that_does_not_exist(self):
        result = self.run_script("everything")
        self.assertEqual(1, result.returncode)
        self.assertIn("'everything' is neither an option nor a set of packages", result.stderr)


if __name__ == "__main__":
    unittest.main()
