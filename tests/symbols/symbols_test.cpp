#include "tarnlet/symbols.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace
{

using Symbols = std::unique_ptr<BsdlSymbols, decltype(&bsdlSymbolsRelease)>;
using Names = std::vector<std::string>;

Symbols symbols_of(const std::string &text)
{
    return {bsdlSymbolsOf(text.data(), text.size()), bsdlSymbolsRelease};
}

// A letter for each kind, in the order of the codes.
std::string listed(const std::string &text)
{
    static constexpr const char *KINDS[] = {
        "?",    "key",  "value", "number", "bits", "sub",  "--",    "text", "func",
        "comp", "port", "pin",   "map",    "cell", "name", "instr", "reg",  "attr",
        "ext",  "pack", "flow",  "proc",   "act",  "data", "var",   "part"};
    const Symbols symbols = symbols_of(text);
    std::string list;
    for (uint32_t i = 0; i < bsdlSymbolCount(symbols.get()); i++) {
        const BsdlSymbol *symbol = bsdlSymbolAt(symbols.get(), i);
        if (symbol->kind == BSDL_SYMBOL_KEYWORD || symbol->kind == BSDL_SYMBOL_ATTRIBUTE)
            continue;
        list += (list.empty() ? "" : " ") + std::string(KINDS[symbol->kind]) +
                (symbol->flags & BSDL_SYMBOL_DEFINES ? "!" : "") + ":" +
                text.substr(symbol->begin, symbol->end - symbol->begin);
    }
    return list;
}

struct Case {
    const char *name;
    const char *text;
    const char *symbols; // without words of the language
};

constexpr Case CASES[] = {
    {"a row of cells has a place for each kind of word",
     "attribute BOUNDARY_REGISTER of D : entity is \"17 (BC_1, A(3), output3, X, 016, 0, Z), \" &"
     " \"16 (BC_2, *, control, 0)\";",
     "comp:D cell!:17 name:BC_1 port:A sub:3 func:output3 value:X cell:016 value:0 value:Z "
     "cell!:16 name:BC_2 func:control value:0"},
    {"a word that goes on in the next piece is one",
     "constant P : PIN_MAP_STRING := \"AB\" & -- split\n \"C : (1, 2)\" & \", D : 3\";",
     "map!:P port:AB\" & -- split\n \"C --:-- split pin!:1 pin!:2 port:D pin!:3"},
    {"a missing semicolon ends no later than the next statement",
     "attribute IDCODE_REGISTER of D : entity is \"01\"\nconstant P : PIN_MAP_STRING := \"A:1\";",
     "comp:D bits:01 map!:P port:A pin!:1"},
    {"a missing quotation mark ends with its line",
     "constant P : PIN_MAP_STRING :=\n\"A : 1, &\n\"B : 2, \" &\n\"C : 3\";",
     "map!:P port:A pin!:1 port:B pin!:2 port:C pin!:3"},
    {"a string may go on over lines",
     "attribute DESIGN_WARNING of D : entity is \"a\nb\n\" & \"c\"; use X.all;",
     "comp:D text:a\nb\n text:c pack:X"},
    {"ports of the clause, and the parenthesis that is missing",
     "port (A, B : in bit; C : out bit_vector(0 to 3)\nuse P.all;",
     "port!:A port!:B port!:C sub:0 sub:3 pack:P"},
    {"captures stand behind an instruction",
     "attribute REGISTER_ACCESS of D : entity is \"R[8] (I, J CAPTURES 01), BYPASS (K)\";",
     "comp:D reg!:R number:8 instr:I instr:J bits:01 reg!:BYPASS instr:K"},
    {"groups and compliance patterns",
     "attribute PORT_GROUPING of D : entity is \"Differential_Voltage ((A, B), (C(1), E(1)))\";"
     "attribute COMPLIANCE_PATTERNS of D : entity is \"(A, C(2)) (01, 1X)\";",
     "comp:D port:A port:B port:C sub:1 port:E sub:1 comp:D port:A port:C sub:2 bits:01 bits:1X"},
    {"flows with their data, and what names them",
     "attribute ISC_FLOW of D : entity is \"F(ARRAY) INITIALIZE (I 16:$v=0A WAIT TCK 5, 1.0e-3 "
     "8:3F*FF:CRC), F REPEAT 4 LOOP MAX 3 ((J 4:$v+1 WAIT 2.0e-6))\";"
     "attribute ISC_PROCEDURE of D : entity is \"P(ARRAY) = (F(ARRAY), F)\";"
     "attribute ISC_ACTION of D : entity is \"A = (P(ARRAY) OPTIONAL)\";",
     "comp:D flow!:F data:ARRAY instr:I number:16 var!:$v bits:0A port:TCK number:5 "
     "number:1.0e-3 number:8 bits:3F bits:FF flow!:F number:4 number:3 instr:J number:4 var!:$v "
     "number:1 number:2.0e-6 comp:D proc!:P data:ARRAY flow:F data:ARRAY flow:F comp:D act!:A "
     "proc:P data:ARRAY"},
    {"AC pins with their cells",
     "attribute AIO_PIN_BEHAVIOR of D : entity is \"A, B[3, 4] : AC_SELECT=5 LP_TIME=1.0e-6; C\";",
     "comp:D port:A port:B cell:3 cell:4 cell:5 number:1.0e-6 port:C"},
    {"a package and its cells",
     "package P is\nattribute X : BSDL_EXTENSION;\nconstant C : CELL_INFO;\nend P;\npackage body P "
     "is\nconstant C : CELL_INFO := ((INPUT, EXTEST, PI));\nend P;",
     "pack!:P ext!:X name!:C pack:P pack:P name:C pack:P"},
    {"nothing but signs", ";;)(]\"", ""},
};

std::string file_text(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string upper(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return std::toupper(c); });
    return text;
}

void drop(void *, BsdlMessage *) {}

std::string port_text(const PortId *port)
{
    if (!port)
        return "*";
    return port->subscripted ? std::string(port->name) + "(" + std::to_string(port->subscript) + ")"
                             : port->name;
}

// What the parser has made of the tables that are read most.
Names names_of_model(Bsdl *bsdl)
{
    Names names;
    for (CellEntry *cell = bsdlGetFirstCellEntry(bsdl); cell; cell = bsdlGetNextCellEntry(bsdl)) {
        names.push_back("cell " + std::to_string(bsdlGetCellNumber(cell)) + " " +
                        bsdlGetCellName(cell) + " " + port_text(bsdlGetCellPort(cell)));
        if (bsdlGetCellControlCell(cell) >= 0)
            names.back() += " by " + std::to_string(bsdlGetCellControlCell(cell));
    }
    for (InstructionEntry *entry = bsdlGetFirstInstruction(bsdl); entry;
         entry = bsdlGetNextInstruction(bsdl))
        names.push_back("instruction " + std::string(bsdlGetInstructionName(entry)) + " " +
                        std::to_string(bsdlGetNbrOfInstrPatterns(entry)));
    for (int32_t i = 0; i < bsdlGetNbrOfPinMaps(bsdl); i++) {
        const char *name = i ? bsdlGetNextPinMap(bsdl) : bsdlGetFirstPinMap(bsdl);
        names.push_back("map " + std::string(name ? name : ""));
    }
    bsdl_check(bsdl);
    std::string last;
    for (PinEntry *pin = bsdlGetFirstPin(bsdl); pin; pin = bsdlGetNextPin(bsdl)) {
        const char *name = bsdlGetPinPortID(pin)->name;
        if (name != last)
            names.push_back("port " + std::string(name));
        last = name;
    }
    std::sort(names.begin(), names.end());
    return names;
}

// The same from the words of the text alone.
Names names_of_symbols(const std::string &text)
{
    const Symbols symbols = symbols_of(text);
    const auto word = [&](uint32_t index) {
        const BsdlSymbol *symbol = bsdlSymbolAt(symbols.get(), index);
        std::string name = text.substr(symbol->begin, symbol->end - symbol->begin);
        for (size_t quote; (quote = name.find('"')) != std::string::npos;)
            name.erase(quote, name.find('"', quote + 1) - quote + 1);
        return name;
    };
    const auto number = [&](uint32_t index) { return std::to_string(std::stoi(word(index))); };
    Names names;
    for (uint32_t at = 0; at < bsdlStatementCount(symbols.get()); at++) {
        const BsdlStatement *statement = bsdlStatementAt(symbols.get(), at);
        const std::string attribute =
            statement->name < 0 ? "" : upper(word(static_cast<uint32_t>(statement->name)));
        int patterns = 0;
        for (uint32_t i = statement->first_symbol;
             i < statement->first_symbol + statement->symbol_count; i++) {
            const BsdlSymbol *symbol = bsdlSymbolAt(symbols.get(), i);
            if (statement->kind == BSDL_STATEMENT_PORT && symbol->kind == BSDL_SYMBOL_PORT)
                names.push_back("port " + word(i));
            if (statement->kind == BSDL_STATEMENT_CONSTANT && symbol->kind == BSDL_SYMBOL_PIN_MAP)
                names.push_back("map " + word(i));
            if (attribute == "INSTRUCTION_OPCODE" && symbol->kind == BSDL_SYMBOL_INSTRUCTION) {
                patterns = 0;
                names.push_back("instruction " + upper(word(i)) + " 0");
            }
            if (attribute == "INSTRUCTION_OPCODE" && symbol->kind == BSDL_SYMBOL_PATTERN) {
                names.back().erase(names.back().rfind(' ') + 1);
                names.back() += std::to_string(++patterns);
            }
            if (attribute != "BOUNDARY_REGISTER")
                continue;
            if (symbol->kind == BSDL_SYMBOL_CELL_NUMBER && symbol->column == 0)
                names.push_back("cell " + number(i));
            else if (symbol->kind == BSDL_SYMBOL_CELL_NAME)
                names.back() += " " + word(i) + " *";
            else if (symbol->kind == BSDL_SYMBOL_PORT)
                names.back().replace(names.back().size() - 1, 1, word(i));
            else if (symbol->kind == BSDL_SYMBOL_SUBSCRIPT)
                names.back() += "(" + number(i) + ")";
            else if (symbol->kind == BSDL_SYMBOL_CELL_NUMBER)
                names.back() += " by " + number(i);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

Names without(const Names &names, const Names &others)
{
    Names rest;
    std::set_difference(names.begin(), names.end(), others.begin(), others.end(),
                        std::back_inserter(rest));
    return rest;
}

std::vector<std::filesystem::path> descriptions()
{
    std::vector<std::filesystem::path> files;
    for (const char *folder : {TARNLET_SOURCE_DIR "/examples", TARNLET_CORPUS})
        if (*folder)
            for (const auto &entry : std::filesystem::directory_iterator(folder))
                if (upper(entry.path().extension()) == ".BSD")
                    files.push_back(entry.path());
    return files;
}

} // namespace

TEST(Symbols, EachWordByItsPlace)
{
    for (const Case &row : CASES)
        EXPECT_EQ(listed(row.text), row.symbols) << row.name;
}

// Which symbol each name leads to: by its spelling, or "-".
TEST(Symbols, NamesLeadToWhereTheyAreIntroduced)
{
    const std::string text =
        "entity D is generic (PHYSICAL_PIN_MAP : string := \"p\");\n"
        "port (A : in bit; a : out bit);\n"
        "constant P : PIN_MAP_STRING := \"a : 1, Z : 1\";\n"
        "attribute BOUNDARY_REGISTER of d : entity is \"007 (C, A, input, X), 7 (C, A, output3, X, "
        "7, 0, Z)\";\n"
        "attribute INSTRUCTION_OPCODE of D : entity is \"I (0)\";\n"
        "attribute INSTRUCTION_PRIVATE of D : entity is \"i\";\nend D;";
    const Symbols symbols = symbols_of(text);
    std::string list;
    for (uint32_t i = 0; i < bsdlSymbolCount(symbols.get()); i++) {
        const BsdlSymbol *symbol = bsdlSymbolAt(symbols.get(), i);
        if (symbol->kind < BSDL_SYMBOL_COMPONENT || symbol->kind == BSDL_SYMBOL_ATTRIBUTE)
            continue;
        list += text.substr(symbol->begin, symbol->end - symbol->begin);
        if (symbol->refers_to == BSDL_SYMBOL_ELSEWHERE) {
            list += "- ";
            continue;
        }
        const BsdlSymbol *to =
            bsdlSymbolAt(symbols.get(), static_cast<uint32_t>(symbol->refers_to));
        list += "=" + text.substr(to->begin, to->end - to->begin) + " ";
    }
    EXPECT_EQ(list, "D=D p=P A=A a=A P=P a=A 1=1 Z- 1=1 d=D 007=007 C- A=A 7=007 C- A=A 7=007 D=D "
                    "I=I D=D i=I D=D ");
}

// All words of a text in their order, none twice, each within its statement.
TEST(Symbols, OrderedWhateverTheText)
{
    std::string text = file_text(TARNLET_SOURCE_DIR "/examples/demo.bsd");
    uint32_t random = 1;
    for (int round = 0; round < 300; round++) {
        random = random * 1664525 + 1013904223;
        const size_t at = (random >> 8) % text.size();
        text[at] = "\"();,:-\n A1&"[random % 12];
        const Symbols symbols = symbols_of(text);
        uint32_t last = 0;
        for (uint32_t i = 0; i < bsdlSymbolCount(symbols.get()); i++) {
            const BsdlSymbol *symbol = bsdlSymbolAt(symbols.get(), i);
            const BsdlStatement *statement = bsdlStatementAt(symbols.get(), symbol->statement);
            ASSERT_LT(symbol->begin, symbol->end) << round;
            ASSERT_GE(symbol->begin, statement->begin) << round;
            ASSERT_GE(i, statement->first_symbol) << round;
            ASSERT_LT(i, statement->first_symbol + statement->symbol_count) << round;
            // A comment may lie between the two ends of a split word.
            ASSERT_GE(symbol->begin, symbol->kind == BSDL_SYMBOL_COMMENT ? 0 : last) << round;
            last = symbol->kind == BSDL_SYMBOL_COMMENT ? last : symbol->end;
        }
    }
}

TEST(Symbols, AgreeWithTheModel)
{
    BsdlContext context = {drop, nullptr, 0};
    size_t compared = 0;
    for (const std::filesystem::path &path : descriptions()) {
        const std::string text = file_text(path);
        Bsdl *bsdl = readBsdlText(text.data(), text.size(), path.c_str(), nullptr, nullptr, 0,
                                  &context, nullptr, 0);
        if (bsdl && bsdlGetNumErrors(bsdl) == 0 && !bsdlIsPrg(bsdl)) {
            Names model = names_of_model(bsdl);
            Names symbols = names_of_symbols(text);
            // Ports that no pin list could be made of are not in the model.
            if (bsdlGetNbrOfPins(bsdl) <= 0)
                std::erase_if(symbols, [](const std::string &name) { return name[0] == 'p'; });
            EXPECT_EQ(without(model, symbols), Names()) << path;
            EXPECT_EQ(without(symbols, model), Names()) << path;
            compared++;
        }
        bsdlRelease(bsdl);
    }
    EXPECT_GE(compared, 6u);
}

// Shapes of text that would make a careless search start over at each word.
TEST(Symbols, LinearInTheText)
{
    const auto repeated = [](const std::string &piece) {
        std::string text = "attribute BOUNDARY_REGISTER of D : entity is ";
        while (text.size() < 4'000'000)
            text += piece;
        return text;
    };
    for (const char *piece :
         {"\"1(\"&", "\"", "\"\n", "\"a\n\n", "\"a\" & --c\n", "((", "\"((", "\"a\"&"}) {
        const std::string text = repeated(piece);
        const auto begin = std::chrono::steady_clock::now();
        const Symbols symbols = symbols_of(text);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10)) << piece;
    }
}

TEST(Symbols, NothingForNothing)
{
    EXPECT_EQ(bsdlSymbolsOf(nullptr, 1), nullptr);
    const Symbols empty(bsdlSymbolsOf(nullptr, 0), bsdlSymbolsRelease);
    ASSERT_TRUE(empty);
    EXPECT_EQ(bsdlSymbolAt(empty.get(), 0), nullptr);
    EXPECT_EQ(bsdlStatementAt(empty.get(), 0), nullptr);
    EXPECT_EQ(bsdlSymbolCount(nullptr) + bsdlStatementCount(nullptr), 0u);
    bsdlSymbolsRelease(nullptr);
}
