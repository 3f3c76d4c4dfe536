#include "package_file.h"

#include <algorithm>
#include <cctype>
#include <strings.h>

// Takes the first word off the text, after white space and comments.
static std::string_view next_word(std::string_view &text)
{
    while (!text.empty()) {
        const size_t code = std::min(text.find_first_not_of(" \t\r\n\f\v"), text.size());
        text.remove_prefix(code);
        if (!text.starts_with("--"))
            break;
        text.remove_prefix(std::min(text.find_first_of("\r\n"), text.size()));
    }
    size_t length = 0;
    while (length < text.size() &&
           (std::isalnum(static_cast<unsigned char>(text[length])) || text[length] == '_'))
        length++;
    const std::string_view word = text.substr(0, length);
    text.remove_prefix(length);
    return word;
}

std::string package_name(std::string_view text)
{
    if (strcasecmp(std::string(next_word(text)).c_str(), "package") != 0)
        return {};
    return std::string(next_word(text));
}

std::string description_using(const std::string &package)
{
    return R"BSDL(entity USER is
generic (PHYSICAL_PIN_MAP : string := "P");
port (TCK, TMS, TDI, A : in bit; TDO : out bit);
use STD_1149_1_2001.all;
use )BSDL" +
           package +
           R"BSDL(.all;
attribute COMPONENT_CONFORMANCE of USER : entity is "STD_1149_1_2001";
attribute PIN_MAP of USER : entity is PHYSICAL_PIN_MAP;
constant P : PIN_MAP_STRING := "TCK:1, TMS:2, TDI:3, A:4, TDO:5";
attribute TAP_SCAN_CLOCK of TCK : signal is (1.0e6, BOTH);
attribute TAP_SCAN_MODE of TMS : signal is true;
attribute TAP_SCAN_IN of TDI : signal is true;
attribute TAP_SCAN_OUT of TDO : signal is true;
attribute INSTRUCTION_LENGTH of USER : entity is 2;
attribute INSTRUCTION_OPCODE of USER : entity is "BYPASS (11), EXTEST (00), SAMPLE (01), PRELOAD (01)";
attribute INSTRUCTION_CAPTURE of USER : entity is "01";
attribute BOUNDARY_LENGTH of USER : entity is 1;
attribute BOUNDARY_REGISTER of USER : entity is "0 (BC_4, A, input, X)";
end USER;
)BSDL";
}
