%union {
    InstructionEntry *instruction;
    RegisterEntry *data_register;
    InstructionCapture *capture;
    RegisterList *register_list;
};

// ------------------------------------------------------------------------ the instruction register

instruction_register:
  instr_length_stmt
  instr_opcode_stmt
  instr_capture_stmt
  instr_disable_stmt
  instr_guard_stmt
  instr_private_stmt
;

instr_length_stmt:
  ATTRIBUTE_INSTRUCTION_LENGTH OF component_name ':' mode_integer ENTITY IS instruction_length ';'
    { instruction_length_passed(bsdl); }
;

instruction_length:
  integer { instruction_length_set(bsdl, $1, @1); }
;

%type <list> opcode_table instruction_pattern_list capture_pattern_list instruction_list;
%type <instruction> opcode_description;

instr_opcode_stmt:
  ATTRIBUTE_INSTRUCTION_OPCODE OF component_name ':' ENTITY IS quoted_string ';' rescan
  opcode_table[table]
    { instruction_opcode_passed(bsdl, $table, @$); }
| ATTRIBUTE_INSTRUCTION_OPCODE OF component_name ':' ENTITY IS error ';'
    { instruction_opcode_skipped(bsdl); }
;

opcode_table:
  opcode_description                  { $$ = model_list(bsdl, $1); }
| opcode_table ',' opcode_description { $$ = model_append(bsdl, $1, $3); }
;

opcode_description:
  instruction_name mode_bin_x '(' instruction_pattern_list[patterns] ')'
    { $$ = instruction_entry(bsdl, $1, $patterns, @1); }
;

instruction_pattern_list:
  pattern                              { $$ = model_list(bsdl, $1); }
| instruction_pattern_list ',' pattern { $$ = model_append(bsdl, $1, $3); }
;

instr_capture_stmt:
  ATTRIBUTE_INSTRUCTION_CAPTURE OF component_name ':' ENTITY IS quoted_string ';' rescan mode_bin_x
  capture_pattern_list[patterns]
    { instruction_capture_passed(bsdl, $patterns, @$); }
| ATTRIBUTE_INSTRUCTION_CAPTURE OF component_name ':' ENTITY IS error ';'
    { instruction_capture_skipped(bsdl); }
;

capture_pattern_list:
  pattern                          { $$ = model_list(bsdl, $1); }
| capture_pattern_list ',' pattern { $$ = model_append(bsdl, $1, $3); }
;

instr_disable_stmt:
  %empty
    { instruction_disable_absent(bsdl); }
| ATTRIBUTE_INSTRUCTION_DISABLE OF component_name ':' ENTITY IS quoted_string ';' rescan
  instruction_name
    { instruction_disable_passed(bsdl); }
| ATTRIBUTE_INSTRUCTION_DISABLE OF component_name ':' ENTITY IS error ';'
    { instruction_disable_skipped(bsdl); }
;

instr_guard_stmt:
  %empty
    { instruction_guard_absent(bsdl); }
| ATTRIBUTE_INSTRUCTION_GUARD OF component_name ':' ENTITY IS quoted_string ';' rescan
  instruction_name
    { instruction_guard_passed(bsdl); }
| ATTRIBUTE_INSTRUCTION_GUARD OF component_name ':' ENTITY IS error ';'
    { instruction_guard_skipped(bsdl); }
;

instr_private_stmt:
  %empty
    { instruction_private_absent(bsdl); }
| ATTRIBUTE_INSTRUCTION_PRIVATE OF component_name ':' ENTITY IS quoted_string ';' rescan
  instruction_list[names]
    { instruction_private_passed(bsdl, $names); }
| ATTRIBUTE_INSTRUCTION_PRIVATE OF component_name ':' ENTITY IS error ';'
    { instruction_private_skipped(bsdl); }
;

instruction_list:
  instruction_name                      { $$ = model_list(bsdl, $1); }
| instruction_list ',' instruction_name { $$ = model_append(bsdl, $1, $3); }
;

// ------------------------------------------------------------------- the identification registers

%type <list> pattern_32bit_list;

optional_register:
  %empty
| idcode_stmt
| idcode_stmt usercode_stmt
| usercode_stmt idcode_stmt
;

rescan_last_when_fast:
  %empty { rescan_last_when_fast(bsdl); }
;

idcode_stmt:
  ATTRIBUTE_IDCODE_REGISTER OF component_name ':' ENTITY IS quoted_string ';' rescan_last_when_fast
  mode_bin_x pattern_32bit_list[patterns]
    { if (idcode_passed(bsdl, $patterns, @$)) YYABORT; }
| ATTRIBUTE_IDCODE_REGISTER OF component_name ':' ENTITY IS error ';'
    { idcode_skipped(bsdl); }
;

usercode_stmt:
  ATTRIBUTE_USERCODE_REGISTER OF component_name ':' ENTITY IS quoted_string ';' rescan mode_bin_x
  pattern_32bit_list[patterns]
    { usercode_passed(bsdl, $patterns, @$); }
| ATTRIBUTE_USERCODE_REGISTER OF component_name ':' ENTITY IS error ';'
    { usercode_skipped(bsdl); }
;

pattern_32bit_list:
  pattern_32bit                        { $$ = model_list(bsdl, $1); }
| pattern_32bit_list ',' pattern_32bit { $$ = model_append(bsdl, $1, $3); }
;

// --------------------------------------------------------------------------------- register access

%type <register_list> register_association_list;
%type <data_register> register_association aregister sized_register;
%type <list> instruction_capture_list;
%type <capture> instruction_capture;
%type <string> captures_opt;
%type <integer> register_length;

register_access_description:
  %empty
    { register_access_absent(bsdl); }
| ATTRIBUTE_REGISTER_ACCESS OF component_name ':' ENTITY IS quoted_string ';' rescan_last_when_fast
  register_association_list[list]
    { if (register_access_passed(bsdl, $list)) YYABORT; }
| ATTRIBUTE_REGISTER_ACCESS OF component_name ':' ENTITY IS error ';'
    { register_access_skipped(bsdl); }
;

register_association_list:
  register_association
    { $$ = register_list_start(bsdl, $1); }
| register_association_list ',' register_association
    { $$ = $1; if (!register_list_append(bsdl, $1, $3)) RECOVER; }
;

register_association:
  aregister '(' instruction_capture_list ')' { $$ = register_association($1, $3); }
;

instruction_capture_list:
  instruction_capture                              { $$ = model_list(bsdl, $1); }
| instruction_capture_list ',' instruction_capture { $$ = model_append(bsdl, $1, $3); }
;

instruction_capture:
  instruction_name captures_opt { $$ = instruction_capture(bsdl, $1, $2, @1); }
;

captures_opt:
  %empty                      { $$ = nullptr; }
| CAPTURES mode_bin_x pattern { $$ = capture_pattern(bsdl, $3); }
;

aregister:
  sized_register
| sized_register '[' mode_integer register_length ']'
    { $$ = register_sized(bsdl, $1, $4); }
| Y_IDCODE
    { $$ = register_idcode(bsdl, @1); if (!$$) RECOVER; }
;

sized_register:
  Y_BOUNDARY  { $$ = register_named(bsdl, REGISTER_KIND_BOUNDARY, "BOUNDARY", @1); }
| Y_BYPASS    { $$ = register_named(bsdl, REGISTER_KIND_BYPASS, "BYPASS", @1); }
| Y_DEVICE_ID { $$ = register_named(bsdl, REGISTER_KIND_DEVICE_ID, "DEVICE_ID", @1); }
| identifier  { $$ = register_named(bsdl, REGISTER_KIND_USER, $1, @1); }
;

register_length: integer;
