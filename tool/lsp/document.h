#pragma once

#include "tarnlet/symbols.h"

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lsp
{

using nlohmann::json;

// What the columns of positions count.
enum class Encoding : uint8_t { UTF16, UTF8 };

struct Position {
    uint32_t line = 0;
    uint32_t column = 0;
};

struct ReleaseSymbols {
    void operator()(BsdlSymbols *symbols) const { bsdlSymbolsRelease(symbols); }
};

// A text with its symbols: one that the client has open, or a package file that was read. The text
// is UTF-8; a file that is none is taken for Latin-1.
class Document
{
  public:
    Document(std::string uri, std::string text, int64_t version, Encoding counted);

    const std::string &uri() const { return name; }
    const std::string &path() const { return file; }
    const std::string &text() const { return *content; }
    std::shared_ptr<const std::string> shared_text() const { return content; }
    int64_t version() const { return number; }

    // Changes as the client tells them, each of a range or of everything; a range is one of the
    // text that the changes before it have made.
    void change(const json &changes);
    void set_version(int64_t version) { number = version; }

    uint32_t line_count() const { return static_cast<uint32_t>(lines.size()); }
    uint32_t line_begin(uint32_t line) const { return lines[line]; }
    uint32_t line_end(uint32_t line) const; // before its line end
    uint32_t line_of(uint32_t offset) const;
    Position position(uint32_t offset) const;
    uint32_t offset(const json &position) const; // of the protocol; clamped into the text
    json position_json(uint32_t offset) const;
    json range(uint32_t begin, uint32_t end) const;

    // ------------------------------------------------------------------------------- symbols

    std::span<const BsdlSymbol> symbols() const;
    std::span<const BsdlStatement> statements() const;
    std::string_view raw(uint32_t begin, uint32_t end) const
    {
        return std::string_view(*content).substr(begin, end - begin);
    }
    // The word as the language takes it: without what lies between the pieces of a string.
    std::string word(const BsdlSymbol &symbol) const;
    const BsdlStatement &statement_of(const BsdlSymbol &symbol) const;
    // Name of the attribute, constant or component, in capitals; empty without one.
    std::string statement_name(const BsdlStatement &statement) const;
    // Index of the symbol that covers the offset or ends there.
    std::optional<uint32_t> symbol_at(uint32_t offset) const;
    // Where the parts of a word stand: one, or those in the pieces of a string.
    std::vector<std::pair<uint32_t, uint32_t>> parts(const BsdlSymbol &symbol) const;

  private:
    struct Replaced {
        uint32_t begin, end;
        std::string text;
    };

    void replace(std::vector<Replaced> &from_the_end);
    void find_lines();
    BsdlSymbols *found_symbols() const;

    std::string name;
    std::string file;
    std::shared_ptr<const std::string> content;
    int64_t number;
    Encoding encoding;
    std::vector<uint32_t> lines;
    // Found when somebody asks, as the text of most versions is never looked at.
    mutable std::unique_ptr<BsdlSymbols, ReleaseSymbols> found;
};

std::string path_of_uri(std::string_view uri);
std::string uri_of_path(std::string_view path);

// Text of a file as UTF-8; nothing when it cannot be read.
std::optional<std::string> read_file(const std::string &path);

std::string upper(std::string_view text);
bool same_name(std::string_view a, std::string_view b);

} // namespace lsp
