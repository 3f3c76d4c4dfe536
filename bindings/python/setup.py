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

# Below the build folder of the project, as all that is built.
PRODUCTS = SOURCE / "build" / "wheel"
PRODUCTS.mkdir(parents=True, exist_ok=True)

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
    # The package may know the file by the name that it had before /lib became a link.
    for name in (str(library.resolve()), str(library.resolve()).removeprefix("/usr")):
        command = ["dpkg-query", "-S", name]
        found = subprocess.run(command, capture_output=True, text=True, check=False)
        if found.returncode == 0:
            return Path("/usr/share/doc", found.stdout.split(":")[0], "copyright")
    raise FileNotFoundError(f"no licence of {library}, which no Debian package brings")


class CMakeBuild(build_ext):
    """The one extension is a target of the project."""

    def run(self) -> None:
        build = Path(os.environ.get("TARNLET_BUILD") or PRODUCTS).resolve()
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
        shutil.rmtree(package, ignore_errors=True)
        for component in ("runtime", "python"):
            run("cmake", "--install", build, "--prefix", package.parent, "--component", component)
        self.carry_libraries(package / "lib", package / "licences")

    def carry_libraries(self, folder: Path, licences: Path) -> None:
        # A wheel holds no links: the library gets the one name that is linked.
        library = folder / "libtarnlet.so.1"
        real = library.resolve()
        library.unlink()
        real.rename(library)
        shutil.rmtree(folder.parent / "share" / "doc")
        licences.mkdir()
        shutil.copy(SOURCE / "LICENSE", licences / "tarnlet")
        found = linked_files(library)
        for name in LIBRARIES:
            shutil.copy(found[name], folder / name)
            shutil.copy(licence_of(found[name]), licences / name.split(".so")[0])
        for name in (library.name, *LIBRARIES):
            run("patchelf", "--set-rpath", "$ORIGIN", folder / name)


def run(*command: object) -> None:
    subprocess.run([str(word) for word in command], check=True)


setup(
    version=version(),
    # Named, so that the wheel is made for this interpreter and this system.
    ext_modules=[Extension("tarnlet._native", sources=[])],
    cmdclass={"build_ext": CMakeBuild},
    options={"build": {"build_base": str(PRODUCTS)}, "egg_info": {"egg_base": str(PRODUCTS)}},
)
