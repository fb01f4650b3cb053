"""What scripts/check_include_arrows.py lets pass and what it refuses, shown on small trees."""

import contextlib
import io
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))

import check_include_arrows as checker  # noqa: E402


class IncludeArrows(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name) / "house"
        self.generated = Path(folder.name) / "generated"
        self.generated_arguments = []

    def write(self, path, *lines):
        self.put(self.root / path, lines)

    def generate(self, path, *lines):
        self.put(self.generated / path, lines)
        self.generated_arguments = [str(self.generated)]

    def put(self, place, lines):
        place.parent.mkdir(parents=True, exist_ok=True)
        place.write_text("".join(line + "\n" for line in lines), encoding="utf-8")

    def check(self):
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            status = checker.main(["--root", str(self.root), *self.generated_arguments])
        return status, out.getvalue() + err.getvalue()

    def assert_passes(self):
        status, said = self.check()
        self.assertEqual(0, status, said)

    def assert_refused(self, place, *words):
        status, said = self.check()
        self.assertEqual(1, status, said)
        self.assertIn(place, said)
        for word in words:
            self.assertIn(word, said)
        self.assertEqual(2, len(said.splitlines()), "one complaint and the sum:\n" + said)

    def test_every_layer_includes_what_lies_below_it(self):
        self.write("platform/text/Text.h", '#include "platform/export.h"')
        self.write("platform/services/Service.h", '#include "platform/text/Text.h"')
        self.write("platform/host/Host.cpp", '#include "platform/services/Service.h"')
        self.write("platform/foundation/Base.cpp", '#include "platform/text/Text.h"')
        self.write("platform/binding/Binding.cpp", '#include "platform/host/Host.h"',
                   '#include "platform/foundation/Base.h"')
        self.write("nd_data_adapter/model/Pack.cpp", '#include "platform/foundation/Base.h"')
        self.write("nd_data_adapter/addressing/Uri.cpp", '#include "nd_data_adapter/model/Pack.h"')
        self.write("nd_data_adapter/broker/Broker.cpp", '#include "nd_data_adapter/addressing/Uri.h"')
        self.write("nd_data_adapter/first_generation/Old.cpp", '#include "nd_data_adapter/broker/Broker.h"')
        self.write("nd_data_adapter/builtin_adapters/Test.cpp", '#include "nd_data_adapter/broker/Broker.h"')
        self.write("nd_data_adapter/host_binding/Up.cpp", '#include "nd_data_adapter/first_generation/Old.h"',
                   '#include "nd_data_adapter/builtin_adapters/Test.h"')
        self.write("nd_data_adapter/nd_data_adapter.h", '#include "nd_data_adapter/host_binding/Up.h"')
        self.write("adapters/json/JsonAdapter.cpp", '#include "nd_data_adapter/nd_data_adapter.h"')
        self.write("adapters/Shipped.cpp", '#include "adapters/json/register.h"')
        self.write("tools/ndx/Main.cpp", '#include "adapters/json/register.h"', '#include "tools/ndx/Other.h"')
        self.write("examples/embed/main.cpp", '#include "adapters/json/JsonAdapter.h"')
        self.write("benchmarks/Read.cpp", '#include "adapters/json/register.h"')
        self.write("tests/tools/ndx/MainTest.cpp", '#include "tools/ndx/Main.h"', '#include "tests/support/Probe.h"')
        self.assert_passes()

    def test_text_includes_nothing_of_the_platform_but_itself(self):
        self.write("platform/text/Text.h", "#pragma once", '#include "platform/services/Service.h"')
        self.assert_refused("platform/text/Text.h:2:", "platform/text -> platform/services", "points back")

    def test_services_know_no_foundation(self):
        self.write("platform/services/Service.cpp", '#include "platform/foundation/Model.h"')
        self.assert_refused("Service.cpp:1:", "platform/services -> platform/foundation")

    def test_host_and_foundation_do_not_know_each_other(self):
        self.write("platform/host/Host.cpp", '#include "platform/foundation/Model.h"')
        self.assert_refused("Host.cpp:1:", "platform/host -> platform/foundation")
        self.write("platform/host/Host.cpp")
        self.write("platform/foundation/Model.cpp", '#include "platform/host/Array.h"')
        self.assert_refused("Model.cpp:1:", "platform/foundation -> platform/host")

    def test_no_platform_folder_knows_the_binding(self):
        self.write("platform/host/Host.cpp", '#include "platform/binding/Wrapper.h"')
        self.assert_refused("Host.cpp:1:", "platform/host -> platform/binding")

    def test_the_platform_knows_nothing_of_the_library(self):
        self.write("platform/binding/Wrapper.cpp", '#include "nd_data_adapter/export.h"')
        self.assert_refused("Wrapper.cpp:1:", "platform/binding -> nd_data_adapter")

    def test_the_library_does_not_know_its_adapters(self):
        self.write("nd_data_adapter/host_binding/Up.cpp", '#include "adapters/json/Json.h"')
        self.assert_refused("Up.cpp:1:", "nd_data_adapter/host_binding -> adapters/json")

    def test_the_broker_does_not_know_the_first_generation(self):
        self.write("nd_data_adapter/broker/Facade.cpp", '#include "nd_data_adapter/first_generation/Old.h"')
        self.assert_refused("Facade.cpp:1:", "nd_data_adapter/broker -> nd_data_adapter/first_generation")

    def test_the_builtin_adapters_and_the_first_generation_do_not_know_each_other(self):
        self.write("nd_data_adapter/builtin_adapters/Test.cpp", '#include "nd_data_adapter/first_generation/Old.h"')
        self.assert_refused("Test.cpp:1:", "nd_data_adapter/builtin_adapters -> nd_data_adapter/first_generation")

    def test_only_users_of_the_library_include_the_header_of_everything(self):
        self.write("nd_data_adapter/broker/Facade.cpp", '#include "nd_data_adapter/nd_data_adapter.h"')
        self.assert_refused("Facade.cpp:1:", "nd_data_adapter/broker -> nd_data_adapter/nd_data_adapter.h")

    def test_an_adapter_does_not_know_another_adapter(self):
        self.write("adapters/xml/Xml.cpp", '#include "adapters/json/Json.h"')
        self.assert_refused("Xml.cpp:1:", "adapters/xml -> adapters/json")

    def test_an_adapter_does_not_know_what_gathers_the_adapters(self):
        self.write("adapters/json/Json.cpp", '#include "adapters/Shipped.h"')
        self.assert_refused("Json.cpp:1:", "adapters/json -> adapters")

    def test_an_adapter_knows_no_tool(self):
        self.write("adapters/json/Json.cpp", '#include "tools/ndx/Table.h"')
        self.assert_refused("Json.cpp:1:", "adapters/json -> tools/ndx")

    def test_nobody_but_the_tests_includes_what_lies_in_tests(self):
        self.write("tools/ndx/Main.cpp", '#include "tests/support/Probe.h"')
        self.assert_refused("Main.cpp:1:", "tools/ndx -> tests")

    def test_a_folder_without_a_place_is_refused_as_source_and_as_target(self):
        self.write("platform/misc/Junk.h")
        self.assert_refused("platform/misc/Junk.h:1:", "no place in the layers")
        (self.root / "platform/misc/Junk.h").unlink()
        self.write("tools/ndx/Main.cpp", '#include "platform/misc/Junk.h"')
        self.assert_refused("Main.cpp:1:", "no place in the layers")

    def test_a_bare_header_name_is_refused(self):
        self.write("platform/text/Text.cpp", '#include "Text.h"')
        self.assert_refused("Text.cpp:1:", '"Text.h"', "from the root of the repository")

    def test_a_way_up_is_refused(self):
        self.write("platform/text/Text.cpp", '#include "platform/host/../text/Text.h"')
        self.assert_refused("Text.cpp:1:", "from the root of the repository")

    def test_a_foreign_header_between_quotation_marks_is_refused(self):
        self.write("adapters/json/Json.cpp", '#include "simdjson.h"')
        self.assert_refused("Json.cpp:1:", "angle brackets")

    def test_a_header_of_the_project_between_angle_brackets_is_refused(self):
        self.write("tools/ndx/Main.cpp", "#include <platform/text/Text.h>")
        self.assert_refused("Main.cpp:1:", "quotation marks")

    def test_a_computed_include_is_refused(self):
        self.write("tools/ndx/Main.cpp", "#include HEADER")
        self.assert_refused("Main.cpp:1:", "not computed")

    def test_foreign_headers_are_free(self):
        self.write("platform/text/Text.cpp", "#include <vector>", "#  include <boost/optional.hpp>",
                   "#include <sys/stat.h>")
        self.assert_passes()

    def test_spaces_around_the_directive_do_not_hide_it(self):
        self.write("platform/text/Text.cpp", '  #  include   "platform/host/Array.h"  // why not')
        self.assert_refused("Text.cpp:1:", "platform/text -> platform/host")

    def test_comments_and_strings_are_no_includes(self):
        self.write("platform/text/Text.cpp", '// #include "platform/host/Array.h"', "/*", '#include "Array.h"',
                   "*/", 'const char* a = R"x(', '#include "Array.h"', ')x";', 'const char* b = "/*";',
                   "const char c = '\"';")
        self.assert_passes()

    def test_a_string_that_looks_like_a_comment_hides_no_include_behind_it(self):
        self.write("platform/text/Text.cpp", 'const char* a = "/*";', '#include "platform/host/Array.h"',
                   'const char* b = "*/";')
        self.assert_refused("Text.cpp:2:", "platform/text -> platform/host")

    def test_an_example_is_a_project_with_a_root_of_its_own(self):
        self.write("examples/adapter/params/Reader.h")
        self.write("examples/adapter/tests/Read.h")
        self.write("examples/adapter/tests/ReaderTest.cpp", '#include "params/Reader.h"', "#include <tests/Read.h>")
        self.assert_passes()
        self.write("examples/embed/main.cpp", '#include "params/Reader.h"')
        self.assert_refused("embed/main.cpp:1:", "from the root of the repository")

    def test_a_private_header_serves_its_own_folder_and_the_tests(self):
        self.write("platform/host/internal/Slots.h")
        self.write("platform/host/Array.cpp", '#include "platform/host/internal/Slots.h"')
        self.write("platform/host/internal/Slots.cpp", '#include "platform/host/internal/Slots.h"')
        self.write("platform/host/internal/Rows.h", '#include "platform/host/internal/Slots.h"')
        self.write("tests/platform/host/SlotsTest.cpp", '#include "platform/host/internal/Slots.h"')
        self.assert_passes()

    def test_a_private_header_is_out_of_reach_for_other_folders(self):
        self.write("platform/text/internal/Table.h")
        self.write("platform/services/Service.cpp", '#include "platform/text/internal/Table.h"')
        self.assert_refused("Service.cpp:1:", "private header", "for platform/text, tests and benchmarks only")

    def test_a_public_header_includes_no_private_one(self):
        self.write("platform/host/internal/Slots.h")
        self.write("platform/host/Array.h", '#include "platform/host/internal/Slots.h"')
        self.assert_refused("Array.h:1:", "installed without it")

    def test_an_adapters_headers_are_private_but_for_the_few_that_its_users_need(self):
        self.write("adapters/json/Reader.cpp", '#include "adapters/json/Reader.h"')
        self.write("tests/adapters/json/ReaderTest.cpp", '#include "adapters/json/Reader.h"')
        self.write("benchmarks/Read.cpp", '#include "adapters/json/Reader.h"')
        self.assert_passes()
        self.write("tools/ndx/Main.cpp", '#include "adapters/json/Reader.h"')
        self.assert_refused("Main.cpp:1:", "tools/ndx -> adapters/json", "for adapters/json, tests and benchmarks")

    def test_a_public_header_of_an_adapter_includes_no_private_one(self):
        self.write("adapters/json/JsonAdapter.h", '#include "adapters/json/Reader.h"')
        self.assert_refused("JsonAdapter.h:1:", "installed without it")

    def test_the_checks_for_adapters_are_for_tests_and_examples(self):
        self.write("nd_data_adapter/conformance/Check.h", '#include "nd_data_adapter/broker/Facade.h"')
        self.write("tests/adapters/json/JsonTest.cpp", '#include "nd_data_adapter/conformance/Check.h"')
        self.write("examples/adapter/tests/Test.cpp", '#include "nd_data_adapter/conformance/Check.h"')
        self.assert_passes()
        self.write("adapters/json/Json.cpp", '#include "nd_data_adapter/conformance/Check.h"')
        self.assert_refused("Json.cpp:1:", "adapters/json -> nd_data_adapter/conformance")

    def test_a_generated_class_is_included_from_anywhere_in_the_library(self):
        self.generate("nd_data_adapter/model/Adapter.h", '#include "platform/foundation/Model.h"')
        self.write("nd_data_adapter/Catalogue.cpp", '#include "nd_data_adapter/model/Adapter.h"')
        self.write("nd_data_adapter/addressing/Uri.cpp", '#include "nd_data_adapter/model/Adapter.h"')
        self.assert_passes()

    def test_a_generated_file_outside_the_model_is_no_exception(self):
        self.generate("nd_data_adapter/host_binding/Wrapper.h")
        self.write("nd_data_adapter/broker/Facade.cpp", '#include "nd_data_adapter/host_binding/Wrapper.h"')
        self.assert_refused("Facade.cpp:1:", "nd_data_adapter/broker -> nd_data_adapter/host_binding")

    def test_the_platform_includes_no_generated_class(self):
        self.generate("nd_data_adapter/model/Adapter.h")
        self.write("platform/host/Host.cpp", '#include "nd_data_adapter/model/Adapter.h"')
        self.assert_refused("Host.cpp:1:", "platform/host -> nd_data_adapter/model")

    def test_a_generated_file_obeys_the_layers_too(self):
        self.generate("platform/services/messages.h", '#include "platform/foundation/Model.h"')
        self.write("platform/export.h")
        self.assert_refused("generated/platform/services/messages.h:1:", "platform/services -> platform/foundation")

    def test_a_generated_header_does_not_include_an_adapters_interface(self):
        self.write("nd_data_adapter/broker/CPPAdapterV2.h")
        self.generate("nd_data_adapter/model/CPPAdapterV2Entry.h", '#include "nd_data_adapter/broker/CPPAdapterV2.h"')
        self.assert_refused("model/CPPAdapterV2Entry.h:1:", "nd_data_adapter/model -> nd_data_adapter/broker")

    def test_generated_code_of_a_higher_layer_includes_an_adapters_interface_in_sources_only(self):
        self.write("nd_data_adapter/broker/CPPAdapterV2.h")
        self.generate("nd_data_adapter/host_binding/Wrapper.cpp", '#include "nd_data_adapter/broker/CPPAdapterV2.h"')
        self.assert_passes()
        self.generate("nd_data_adapter/host_binding/Wrapper.h", '#include "nd_data_adapter/broker/CPPAdapterV2.h"')
        self.assert_refused("Wrapper.h:1:", "from generated code to a hand-written header")

    def test_generated_code_includes_hand_written_headers_of_its_own_folder(self):
        self.write("nd_data_adapter/model/Support.h")
        self.write("nd_data_adapter/export.h")
        self.generate("nd_data_adapter/model/Adapter.h", '#include "nd_data_adapter/model/Support.h"',
                      '#include "nd_data_adapter/export.h"')
        self.assert_passes()

    def test_golden_outputs_are_not_part_of_the_house(self):
        self.write("tests/nd_data_adapter/model/golden/Small.h", '#include "Small.h"')
        self.write("platform/export.h")
        self.assert_passes()

    def test_nothing_to_read_is_an_error(self):
        self.root.mkdir()
        with self.assertRaises(SystemExit) as ended, contextlib.redirect_stderr(io.StringIO()) as said:
            checker.main(["--root", str(self.root)])
        self.assertEqual(2, ended.exception.code)
        self.assertIn("there is no C++ file", said.getvalue())

    def test_an_empty_folder_of_generated_files_is_an_error(self):
        self.write("platform/export.h")
        self.generated.mkdir()
        with self.assertRaises(SystemExit) as ended, contextlib.redirect_stderr(io.StringIO()) as said:
            checker.main(["--root", str(self.root), str(self.generated)])
        self.assertEqual(2, ended.exception.code)
        self.assertIn("there is no generated C++ file", said.getvalue())


if __name__ == "__main__":
    unittest.main()
