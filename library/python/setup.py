"""Takes along the shared library that ATTENUATE_LIBRARY names, if it is set.

Without it the module looks for an installed library when it is imported.
"""

import os
import pathlib
import shutil

from setuptools import setup
from setuptools.command.build_py import build_py


class BuildWithLibrary(build_py):
    def run(self) -> None:
        to = pathlib.Path(self.build_lib, "attenuate", "libattenuate.so.1")
        to.unlink(missing_ok=True)  # of an earlier run
        super().run()
        library = os.environ.get("ATTENUATE_LIBRARY")
        if library:
            shutil.copyfile(library, to)


# A wheel with the library would not be for any platform; pip builds it for
# this one and installs it right away.
setup(cmdclass={"build_py": BuildWithLibrary})
