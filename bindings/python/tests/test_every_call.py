"""Every call of the package against the naive model of the library: results, codes, printed bytes.

The calls are random: sensible ones, hostile ones, and runs before any initialisation. What is compared and how close
is the business of the comparison that the library's own tests use.
"""

from types import SimpleNamespace

import pytest
from compare import Comparison
from conftest import EXPORTS
from package_calls import METHODS, PackageCalls

from kinedll import ResultCode

SEED = 20
SEQUENCES = 90
# No record can cause the first five, and the last never leaves the library.
UNREACHED = {0x6030, 0x6051, 0x6052, 0x6053, 0x6054, 0x6091}


class Package(Comparison):
    """The comparison with the package in the place of the bare library."""

    def __init__(self, seed):
        super().__init__(SimpleNamespace(shared_library=None, only="all", seed=seed, exports=frozenset(EXPORTS)))
        self.built = PackageCalls()

    def run_sequence(self, number):
        self.built.restart()
        super().run_sequence(number)


@pytest.fixture(scope="module")
def comparison():
    made = Package(SEED)
    for number in (-1, *range(SEQUENCES)):
        made.run_sequence(number)
    return made


def test_every_export_has_one_method():
    assert sorted(METHODS) == sorted(EXPORTS)
    assert len(set(METHODS.values())) == len(EXPORTS)


def test_every_answer_is_that_of_the_model(comparison):
    assert not comparison.reports, "\n".join(map(str, comparison.reports[:3]))
    assert comparison.count > 3000
    assert sum(comparison.skipped.values()) < comparison.count / 50


def test_every_method_was_called(comparison):
    assert [name for name, count in comparison.built.by_method.items() if count == 0] == []


def test_every_method_but_one_has_succeeded(comparison):
    succeeded = {name for name, code in comparison.codes if code == 0}
    assert set(EXPORTS) - succeeded == {"SafeArea_Check"}


def test_result_codes_that_records_can_cause_were_met(comparison):
    met = {code for _, code in comparison.codes}
    assert {code.value for code in ResultCode} - met <= UNREACHED
