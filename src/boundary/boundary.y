%union {
    CellEntry *cell_entry;
    DisableSpec *disable_spec;
    ClockCycles *clock_cycles;
    WaitSpec *wait_spec;
    RunbistSpec *runbist_spec;
    IntestSpec *intest_spec;
};

// --------------------------------------------------------------- the boundary register

%type <list> boundary_register_stmt cell_table;
%type <cell_entry> cell_entry cell_info cell_spec;
%type <disable_spec> disable_spec;
%type <string> cell_name;
%type <port> port_id_or_null;
%type <integer> boundary_length_stmt cell_number function safe_bit ccell disable_value
                disable_result;

boundary_scan_register_description:
  boundary_cells_stmt boundary_length_stmt boundary_register_stmt
    { boundary_register_made(bsdl, $2, $3, @2, @3); }
;

// A statement that ends at its colon stands for one without a value.
boundary_cells_stmt:
  %empty
    { boundary_cells_absent(bsdl); }
| ATTRIBUTE_BOUNDARY_CELLS OF component_name ':'
    { boundary_cells_passed(bsdl); }
| ATTRIBUTE_BOUNDARY_CELLS OF component_name ':' ENTITY IS quoted_string ';' rescan cell_list
    { boundary_cells_passed(bsdl); }
| ATTRIBUTE_BOUNDARY_CELLS OF component_name ':' ENTITY IS error ';'
    { boundary_cells_skipped(bsdl); }
;

cell_list:
  cell_name
| cell_list ',' cell_name
;

boundary_length_stmt:
  ATTRIBUTE_BOUNDARY_LENGTH OF component_name ':' mode_integer ENTITY IS integer ';'
    { $$ = $integer; boundary_length_passed(bsdl); }
;

boundary_register_stmt:
  ATTRIBUTE_BOUNDARY_REGISTER OF component_name ':' ENTITY IS quoted_string ';' rescan cell_table
    { $$ = $cell_table; boundary_register_passed(bsdl, $$.head); }
| ATTRIBUTE_BOUNDARY_REGISTER OF component_name ':' ENTITY IS error ';'
    { $$ = {}; boundary_register_skipped(bsdl); }
;

cell_table:
  cell_entry                { $$ = cell_table_append({}, $1); }
| cell_table ',' cell_entry { $$ = cell_table_append($1, $3); }
;

cell_entry:
  mode_integer cell_number '(' mode_none cell_info ')'
    { $$ = cell_entry_numbered($cell_info, $cell_number, @cell_number.begin); }
;

cell_number: integer;

cell_info:
  cell_spec
| cell_spec ',' disable_spec { $$ = $1; $$->disable_spec = $3; }
;

cell_spec:
  cell_name ',' port_id_or_null ',' function ',' mode_integer safe_bit
    { $$ = cell_entry_new(bsdl, $1, $3, $5, $8); bsdl->scan_mode = SCAN_MODE_NONE; }
;

cell_name: identifier;

port_id_or_null:
  port_id
| '*' { $$ = nullptr; }
;

function:
  Y_INPUT        { $$ = CELL_FUNCTION_INPUT; }
| Y_OUTPUT2      { $$ = CELL_FUNCTION_OUTPUT2; }
| Y_OUTPUT3      { $$ = CELL_FUNCTION_OUTPUT3; }
| Y_CONTROL      { $$ = CELL_FUNCTION_CONTROL; }
| Y_CONTROLR     { $$ = CELL_FUNCTION_CONTROLR; }
| Y_INTERNAL     { $$ = CELL_FUNCTION_INTERNAL; }
| Y_CLOCK        { $$ = CELL_FUNCTION_CLOCK; }
| Y_BIDIR        { $$ = CELL_FUNCTION_BIDIR; }
| Y_OBSERVE_ONLY { $$ = CELL_FUNCTION_OBSERVE_ONLY; }
;

safe_bit:
  Y_X     { $$ = SAFE_BIT_X; }
| integer { $$ = safe_bit_from(bsdl, $1); }
;

disable_spec:
  mode_signed ccell ',' disable_value ',' mode_none disable_result
    { $$ = disable_spec_new(bsdl, $ccell, $disable_value, $disable_result); }
;

ccell: s_integer { $$ = control_cell_from(bsdl, $1); };

disable_value: integer { $$ = disable_value_from(bsdl, $1); };

disable_result:
  Y_Z      { $$ = DISABLE_RESULT_Z; }
| Y_WEAK0  { $$ = DISABLE_RESULT_WEAK0; }
| Y_WEAK1  { $$ = DISABLE_RESULT_WEAK1; }
| Y_PULL0  { $$ = DISABLE_RESULT_PULL0; }
| Y_PULL1  { $$ = DISABLE_RESULT_PULL1; }
| Y_KEEPER { $$ = disable_result_keeper(bsdl); }
;

// --------------------------------------------------------------- RUNBIST and INTEST

%type <runbist_spec> runbist_spec;
%type <intest_spec> intest_execution_sequence;
%type <wait_spec> wait_spec duration_spec;
%type <list> clock_cycles_list;
%type <integer> run_pin_spec condition cycle_count;
%type <string> signature_spec;
%type <clock_cycles> clock_cycles;
%type <real> time;

runbist_description:
  %empty
    { runbist_absent(bsdl); }
| ATTRIBUTE_RUNBIST_EXECUTION OF component_name ':' ENTITY IS quoted_string ';' rescan runbist_spec
    { runbist_passed(bsdl, $runbist_spec, @$); }
| ATTRIBUTE_RUNBIST_EXECUTION OF component_name ':' ENTITY IS error ';'
    { runbist_skipped(bsdl); }
;

runbist_spec:
  wait_spec ',' run_pin_spec ',' signature_spec { $$ = runbist_spec_new(bsdl, $1, $3, $5, @5); }
;

intest_description:
  %empty
    { intest_absent(bsdl); }
| ATTRIBUTE_INTEST_EXECUTION OF component_name ':' ENTITY IS quoted_string ';' rescan
  intest_execution_sequence
    { intest_passed(bsdl, $intest_execution_sequence, @$); }
| ATTRIBUTE_INTEST_EXECUTION OF component_name ':' ENTITY IS error ';'
    { intest_skipped(bsdl); }
;

intest_execution_sequence:
  wait_spec ',' run_pin_spec { $$ = intest_spec_new(bsdl, $1, $3); }
;

wait_spec:
  WAIT_DURATION mode_real '(' duration_spec ')'
    { $$ = $duration_spec; bsdl->scan_mode = SCAN_MODE_NONE; }
;

duration_spec:
  clock_cycles_list          { $$ = wait_spec_new(bsdl, 0, $1); }
| time                       { $$ = wait_spec_new(bsdl, $1, {}); }
| time ',' clock_cycles_list { $$ = wait_spec_new(bsdl, $1, $3); }
;

clock_cycles_list:
  clock_cycles                       { $$ = model_list(bsdl, $1); }
| clock_cycles_list ',' clock_cycles { $$ = model_append(bsdl, $1, $3); }
;

run_pin_spec: OBSERVING condition AT_PINS { $$ = $condition; };

condition:
  Y_HIGHZ    { $$ = RUN_CONDITION_HIGHZ; }
| Y_BOUNDARY { $$ = RUN_CONDITION_BOUNDARY; }
;

signature_spec:
  EXPECT_DATA mode_bin det_pattern { $$ = $det_pattern; bsdl->scan_mode = SCAN_MODE_NONE; }
;

// A duration begins with a time or with a port. To tell them apart the parser reads the first token
// ahead, so the mode set here holds from the second token on. The count is read ahead too, to see
// where the port ends, so its mode is already set before the port.
clock_cycles:
  mode_integer port_id mode_integer cycle_count { $$ = clock_cycles_new(bsdl, $port_id, $4, @port_id); }
;

cycle_count: integer { $$ = cycle_count_from(bsdl, $1); };

time: mode_real real_number { $$ = duration_from(bsdl, $2); };

// --------------------------------------------------------------- extensions, design warning

bsdl_extensions_and_warning:
  %empty
    { design_warning_absent(bsdl); }
| design_warning
| bsdl_extensions design_warning
| bsdl_extensions
    { design_warning_absent(bsdl); }
| design_warning bsdl_extensions
    { design_warning_misplaced(bsdl, @1); }
;

bsdl_extensions:
  bsdl_extension
| bsdl_extensions bsdl_extension
;

bsdl_extension:
  bsdl_ext_1532     { extensions_found(bsdl, "\tBSDL ISC extensions found"); }
| bsdl_ext_aio_2003 { extensions_found(bsdl, "\tBSDL AIO extensions found"); }
| corvane_bsdl_extension
| std_bsdl_extension
;

std_bsdl_extension:
  extension_declaration
| extension_definition
;

extension_declaration:
  ATTRIBUTE identifier ':' BSDL_EXTENSION ';' { extension_declaration_passed(bsdl, $identifier, @identifier); }
;

extension_definition:
  ATTRIBUTE identifier OF component_name ':' ENTITY IS quoted_string ';'
    { extension_definition_passed(bsdl, $identifier, @identifier); }
| ATTRIBUTE identifier OF component_name ':' ENTITY IS error ';'
    { extension_definition_skipped(bsdl); }
;

corvane_bsdl_extension:
  corvane_extension_declaration
| bsdl_ext_corvane { extensions_found(bsdl, "\tBSDL Corvane extensions found"); }
;

corvane_extension_declaration:
  ATTRIBUTE_CORVANE_CLASS ':' BSDL_EXTENSION ';' { extension_declared(bsdl, "CORVANE_CLASS", @1); }
;

bsdl_ext_corvane:
  ATTRIBUTE_CORVANE_CLASS OF component_name ':' ENTITY IS quoted_string ';' corvane_class_begin
  bsdl_corvane_class
    { corvane_class_passed(bsdl); }
| ATTRIBUTE_CORVANE_CLASS OF component_name ':' ENTITY IS error ';'
    { corvane_class_skipped(bsdl); }
;

corvane_class_begin: %empty { corvane_class_begun(bsdl, @-7); };

bsdl_corvane_class:
  bsdl_corvane_def
| bsdl_corvane_class ',' bsdl_corvane_def
;

bsdl_corvane_def: identifier ':' identifier { corvane_class_append(bsdl, $1, $3); };

design_warning:
  ATTRIBUTE_DESIGN_WARNING OF component_name ':' ENTITY IS quoted_string ';'
    { design_warning_passed(bsdl); }
| ATTRIBUTE_DESIGN_WARNING OF component_name ':' ENTITY IS error ';'
    { design_warning_skipped(bsdl); }
;
