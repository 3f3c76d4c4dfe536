#pragma once

// What the server answers. Each takes the text that the request is about and gives the result of
// the protocol; what cannot be answered is a RequestError.

#include "lsp/messages.h"
#include "lsp/workspace.h"

namespace lsp
{

// diagnostics.cpp
json diagnostics(const Document &document, const Findings &findings);
json code_actions(const Workspace &workspace, const Document &document, const json &params);
// Throws when the text has syntax errors, with the first of them.
void require_readable(const Workspace &workspace, const Document &document, const char *action);

// hover.cpp
json hover(Workspace &workspace, const Document &document, uint32_t offset);

// names.cpp
json definition(Workspace &workspace, const Document &document, uint32_t offset);
json references(Workspace &workspace, const Document &document, uint32_t offset, bool declaration);
json highlights(const Document &document, uint32_t offset);
json prepare_rename(Workspace &workspace, const Document &document, uint32_t offset);
json rename(Workspace &workspace, const Document &document, uint32_t offset,
            const std::string &new_name);

// outline.cpp
json document_symbols(const Document &document);
json folding_ranges(const Document &document);
json selection_ranges(const Document &document, const json &positions);

// completion.cpp
json completion(Workspace &workspace, const Document &document, uint32_t offset, bool snippets);

// semantic_tokens.cpp
json semantic_tokens_legend();
json semantic_tokens(const Document &document, uint32_t begin, uint32_t end);

// formatting.cpp
json formatting(const Workspace &workspace, const Document &document, uint32_t first_line,
                uint32_t last_line);

// ---------------------------------------------------------------------------- shared by the above

// A row of the boundary register table as it is written; a field that is not there is empty.
struct CellRow {
    std::string number, name, port, subscript, function, safe, control, disable, result;
};
CellRow cell_row(const Document &document, uint32_t symbol);

// The first symbol of the row that a symbol stands in, and the one after its last.
std::pair<uint32_t, uint32_t> row_of(const Document &document, uint32_t symbol);

// The symbol that introduces what a symbol names, in this text or a package file of it.
struct Introduced {
    const Document *document = nullptr; // NULL: nowhere
    uint32_t symbol = 0;
};
Introduced introduced(Workspace &workspace, const Document &document, uint32_t index);

// What a statement is for and the form that it has.
struct StatementGuide {
    const char *name; // of the attribute, in capitals
    const char *meaning;
    const char *form;     // for people
    const char *skeleton; // as a snippet: $1, ${2:text}, $E for the name of the component
    uint32_t standards;   // BsdlStandardBit of those that know it
};
const StatementGuide *statement_guide(std::string_view name);
// In the order in which they stand in a description.
const std::vector<StatementGuide> &statement_guides();

} // namespace lsp
