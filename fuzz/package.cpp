#include "targets.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

// The input is the text of a package file, which a fixed description uses for cells and for
// extension attributes.

namespace
{

constexpr char DESCRIPTION[] = R"bsdl(entity DEV is
generic (PHYSICAL_PIN_MAP : string := "PKG");
port (TCK, TMS, TDI : in bit; TDO : out bit; A : in bit; Y : out bit);
use STD_1149_1_2001.all;
use FUZZED.all;
attribute COMPONENT_CONFORMANCE of DEV : entity is "STD_1149_1_2001";
attribute PIN_MAP of DEV : entity is PHYSICAL_PIN_MAP;
constant PKG : PIN_MAP_STRING := "TCK:1, TMS:2, TDI:3, TDO:4, A:5, Y:6";
attribute TAP_SCAN_CLOCK of TCK : signal is (10.0e6, BOTH);
attribute TAP_SCAN_MODE of TMS : signal is true;
attribute TAP_SCAN_IN of TDI : signal is true;
attribute TAP_SCAN_OUT of TDO : signal is true;
attribute INSTRUCTION_LENGTH of DEV : entity is 3;
attribute INSTRUCTION_OPCODE of DEV : entity is
    "BYPASS (111), EXTEST (000), SAMPLE (001), PRELOAD (010), INTEST (011)";
attribute INSTRUCTION_CAPTURE of DEV : entity is "X01";
attribute BOUNDARY_LENGTH of DEV : entity is 4;
attribute BOUNDARY_REGISTER of DEV : entity is
    "0 (MY_CELL, *, control, 0), " &
    "1 (MY_CELL, Y, output3, X, 0, 0, Z), " &
    "2 (BC_1, A, input, X), " &
    "3 (OTHER_CELL, *, internal, X)";
attribute MY_EXTENSION of DEV : entity is "text";
attribute OTHER_EXTENSION of DEV : entity is 12;
end DEV;
)bsdl";

// A folder, in memory where that can be, gone at the end of the process.
class Folder
{
  public:
    Folder()
    {
        std::string form = "/dev/shm/fuzz_package.XXXXXX";
        if (!mkdtemp(form.data())) {
            form = std::filesystem::temp_directory_path() / "fuzz_package.XXXXXX";
            if (!mkdtemp(form.data()))
                std::abort();
        }
        path_ = form;
        write("device.bsd", DESCRIPTION, sizeof DESCRIPTION - 1);
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    std::string in(const char *name) const { return path_ + "/" + name; }
    void write(const char *name, const void *data, size_t size) const
    {
        FILE *file = std::fopen(in(name).c_str(), "w");
        if (!file || std::fwrite(data, 1, size, file) != size || std::fclose(file) != 0)
            std::abort();
    }

  private:
    std::string path_;
};

} // namespace

void fuzz_package(const uint8_t *data, size_t size)
{
    static const Folder folder;
    // A package may use other packages, itself among them.
    folder.write("FUZZED.all", data, size);
    exercise(folder.in("device.bsd").c_str(), nullptr, CHECK, fingerprint(data, size));
}
