"""Builds the compiled module with CMake and puts beside it what it needs to run anywhere.

TARNLET_BUILD names a build folder to use again, for those who build often.
"""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

SOURCE = Path(__file__).resolve().parents[2]

# What the library links and a system may lack.
LIBRARIES = ("libglib-2.0.so.0", "libpcre2-8.so.0")


def version() -> str:
    project = (SOURCE / "CMakeLists.txt").read_text()
    return re.search(r"project\(tarnlet VERSION ([0-9.]+)", project)[1]


def linked_files(module: Path) -> dict[str, Path]:
    """Where the dynamic linker finds what a module links, by name."""
    lines = subprocess.run(["ldd", module], check=True, capture_output=True, text=True).stdout
    return {name: Path(path) for name, path in re.findall(r"(\S+) => (/\S+)", lines)}


def licence_of(library: Path) -> Path:
    """The licence of a library, as its Debian package installs it."""
    owner = (
        subprocess.run(
            ["dpkg", "-S", library.resolve()], capture_output=True, text=True, check=False
        ).stdout
        or subprocess.run(  # asked for by the name without the link /lib -> /usr/lib
            ["dpkg", "-S", str(library.resolve()).removeprefix("/usr")],
            check=True,
            capture_output=True,
            text=True,
        ).stdout
    )
    return Path("/usr/share/doc", owner.split(":")[0], "copyright")


class CMakeBuild(build_ext):
    """The one extension is a target of the project."""

    def run(self) -> None:
        build = Path(os.environ.get("TARNLET_BUILD") or Path(self.build_temp) / "cmake").resolve()
        package = Path(self.build_lib).resolve() / "tarnlet"
        layout = {
            "CMAKE_BUILD_TYPE": "Release",
            "TARNLET_TESTS": "OFF",
            "TARNLET_PYTHON": "ON",
            "Python_EXECUTABLE": sys.executable,
            "CMAKE_INSTALL_LIBDIR": "tarnlet/lib",
            "CMAKE_INSTALL_DATAROOTDIR": "tarnlet/share",
            "TARNLET_PYTHON_DIR": "tarnlet",
        }
        options = [f"-D{name}={value}" for name, value in layout.items()]
        run("cmake", "-S", SOURCE, "-B", build, "-G", "Ninja", *options)
        run("cmake", "--build", build, "--target", "tarnlet_python")
        for component in ("runtime", "python"):
            run("cmake", "--install", build, "--prefix", package.parent, "--component", component)
        self.carry_libraries(package / "lib", package / "licences")

    def carry_libraries(self, folder: Path, licences: Path) -> None:
        # A wheel holds no links: the library gets the one name that is linked.
        library = folder / "libtarnlet.so.1"
        real = library.resolve()
        library.unlink()
        real.rename(library)
        licences.mkdir(exist_ok=True)
        shutil.copy(SOURCE / "LICENSE", licences / "tarnlet")
        found = linked_files(library)
        for name in LIBRARIES:
            shutil.copy(found[name], folder / name)
            shutil.copy(licence_of(found[name]), licences / name.split(".")[0])
        for name in (library.name, *LIBRARIES):
            run("patchelf", "--set-rpath", "$ORIGIN", folder / name)


def run(*command: object) -> None:
    subprocess.run([str(word) for word in command], check=True)


setup(
    version=version(),
    # Named, so that the wheel is made for this interpreter and this system.
    ext_modules=[Extension("tarnlet._native", sources=[])],
    cmdclass={"build_ext": CMakeBuild},
)
