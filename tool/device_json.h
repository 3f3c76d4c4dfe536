#pragma once

#include "tarnlet/bsdl.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <string>
#include <string_view>

// What a file holds, as the exports give it. Whatever shows or compares a device takes it from
// here, the commands and the Python package, so that all of them, and
// docs/schemas/info.schema.json, speak of the same names and values. A value that a description
// does not give is null.
using Json = nlohmann::ordered_json;

// A device after its checks.
Json pins_of(Bsdl *bsdl);
Json cells_of(Bsdl *bsdl);
Json instructions_of(Bsdl *bsdl);
Json registers_of(const Json &instructions);
Json idcodes_of(Bsdl *bsdl);
Json standards_of(Bsdl *bsdl);

// Pins and cells may be very many: one row after the other.
using TakeRow = std::function<void(Json row)>;
void each_pin(Bsdl *bsdl, const TakeRow &take);
void each_cell(Bsdl *bsdl, const TakeRow &take);

// Families of their own; null when the file has nothing of the kind.
Json isc_of(Bsdl *bsdl);
Json aio_of(Bsdl *bsdl);
Json analog_of(Bsdl *bsdl);
Json prg_of(Bsdl *bsdl);

// Words of a description in valid UTF-8; null for NULL. Bytes that are none are taken as Latin-1,
// which is what older descriptions are written in.
Json text_value(const char *text);
// "DATA(7)"; null for NULL.
Json port_value(const PortId *port);
Json word_value(const char *word);
// As a key: names of the language are the same whatever the case of their letters.
std::string folded(std::string name);

// The same for all references to a port bit; empty for none.
std::string port_key(const PortId *port);

// The document of `tarnlet info --json` but for what the check said.
Json document_of(Bsdl *bsdl, const std::string &path);
// The same without the rows of pins and cells, and those rows.
Json document_without_rows(Bsdl *bsdl, const std::string &path);
void add_rows(Bsdl *bsdl, Json &json);
// What the document has under a name, without rows; null for a name that it does not have.
Json part_of(Bsdl *bsdl, std::string_view name);
