"""The tag of the wheel: any Python 3, the platform of the library inside, as KINEDLL_PLATFORM names it."""

import os

from setuptools import Distribution, setup

try:
    from setuptools.command.bdist_wheel import bdist_wheel
except ImportError:
    from wheel.bdist_wheel import bdist_wheel


class PlatformDistribution(Distribution):
    def has_ext_modules(self):
        return True  # a library of a platform is inside, though not one of Python


class PlatformWheel(bdist_wheel):
    def get_tag(self):
        return "py3", "none", os.environ.get("KINEDLL_PLATFORM") or super().get_tag()[2]


setup(distclass=PlatformDistribution, cmdclass={"bdist_wheel": PlatformWheel})
