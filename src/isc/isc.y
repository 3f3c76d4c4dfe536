// IEEE 1532: the statements of in-system configuration.

%union {
    IscPinBehaviorSet *isc_pin_set;
    IscSecurity *isc_security;
    IscProcedure *isc_procedure;
    IscAction *isc_action;
    IscActionSpec *isc_action_spec;
    IscFlow *isc_flow;
    IscFlowDescriptor *isc_flow_descriptor;
    IscBlock *isc_block;
    IscActivity *isc_activity;
    IscUpdateField *isc_update_field;
    IscCaptureField *isc_capture_field;
    IscExpression *isc_expression;
    IscFieldData isc_field_data;
    IscWait *isc_wait;
    IscDuration *isc_duration;
};

%type <integer> isc_conformance conformance_option isc_pin_behavior pin_behavior_option
                isc_status status_option;
%type <isc_pin_set> isc_pinbehavior_fixedpins_status;
%type <list> isc_fixed_system_pins fixed_pin_list;
%type <port> fixed_pin;
%type <string> isc_blank_usercode_description blank_usercode_string blank_usercode_pattern_32bit;
%type <isc_security> isc_security_description security_string key_spec;
%type <integer> read_spec program_spec erase_spec bit_spec;
%type <list> isc_procedure_description procedure_list proc_flow_descriptor_list;
%type <isc_procedure> procedure;
%type <string> procedure_name action_name data_name_opt data_name standard_data_name
               data_identifier;
%type <list> isc_action_description action_list action_specification_list;
%type <isc_action> action;
%type <isc_action_spec> action_specification;
%type <integer> exclusivity_opt action_option;
%type <list> isc_illegal_exit_description exit_instruction_list;
%type <string> isc_design_warning;

bsdl_ext_1532:
  isc_conformance isc_family_open isc_pinbehavior_fixedpins_status[pins]
  isc_blank_usercode_description[blank_usercode]
  isc_security_description[security]
  isc_flow_description[flows]
  isc_procedure_description[procedures]
  isc_action_description[actions]
  isc_illegal_exit_description[exits]
  isc_design_warning[warning]
    {
      isc_family_passed(bsdl, {
          .conformance = $isc_conformance,
          .pin_behavior = $pins->pin_behavior,
          .fixed_pins = $pins->fixed_pins,
          .status = $pins->status,
          .blank_usercode = $blank_usercode,
          .security = $security,
          .flows = $flows.head,
          .procedures = $procedures.head,
          .actions = $actions.head,
          .illegal_exits = $exits.head,
          .design_warning = $warning,
          .fixed_pins_place = $pins->fixed_pins_place,
          .blank_usercode_place = @blank_usercode,
          .security_place = @security,
          .procedures_place = @procedures,
          .illegal_exits_place = @exits});
    }
;

isc_family_open: %empty { isc_family_begins(bsdl); };

// Reduced where the string of a statement is to be read: like `rescan`. Seven symbols before the ';'
// stands the attribute's name.
isc_conformance_text:    %empty { isc_string_begins(bsdl, ISC_STATEMENT_CONFORMANCE, @-7); };
isc_pin_behavior_text:   %empty { isc_string_begins(bsdl, ISC_STATEMENT_PIN_BEHAVIOR, @-7); };
isc_fixed_pins_text:     %empty { isc_string_begins(bsdl, ISC_STATEMENT_FIXED_PINS, @-7); };
isc_status_text:         %empty { isc_string_begins(bsdl, ISC_STATEMENT_STATUS, @-7); };
isc_blank_usercode_text: %empty { isc_string_begins(bsdl, ISC_STATEMENT_BLANK_USERCODE, @-7); };
isc_security_text:       %empty { isc_string_begins(bsdl, ISC_STATEMENT_SECURITY, @-7); };
isc_flow_text:           %empty { isc_flow_statement_begins(bsdl, @-7); };
isc_procedure_text:      %empty { isc_string_begins(bsdl, ISC_STATEMENT_PROCEDURE, @-7); };
isc_action_text:         %empty { isc_string_begins(bsdl, ISC_STATEMENT_ACTION, @-7); };
isc_illegal_exit_text:   %empty { isc_string_begins(bsdl, ISC_STATEMENT_ILLEGAL_EXIT, @-7); };

isc_conformance:
  %empty
    { $$ = isc_conformance_missing(bsdl); }
| ATTRIBUTE_ISC_CONFORMANCE OF component_name_pin_b ':' ENTITY IS quoted_string ';'
  isc_conformance_text conformance_option
    { $$ = $conformance_option; isc_passed(bsdl, ISC_STATEMENT_CONFORMANCE); }
;

conformance_option:
  Y_STD_1532_2001 { $$ = isc_conformance_option(bsdl, ISC_CONFORMANCE_1532_2001); }
| Y_STD_1532_2002 { $$ = isc_conformance_option(bsdl, ISC_CONFORMANCE_1532_2002); }
;

// ------------------------------------------ ISC_Pin_Behavior, ISC_Fixed_System_Pins, ISC_Status

isc_pinbehavior_fixedpins_status:
  isc_pin_behavior isc_fixed_system_pins isc_status
    { $$ = isc_pin_set(bsdl, ISC_ORDER_PIN_FIXED_STATUS, $1, $2, $3, @1, @2); if (!$$) RECOVER; }
| isc_pin_behavior isc_status
    { $$ = isc_pin_set(bsdl, ISC_ORDER_PIN_STATUS, $1, {}, $2, @1, {}); if (!$$) RECOVER; }
| isc_status isc_pin_behavior
    { $$ = isc_pin_set(bsdl, ISC_ORDER_STATUS_PIN, $2, {}, $1, @1, {}); if (!$$) RECOVER; }
| isc_status isc_fixed_system_pins isc_pin_behavior
    { $$ = isc_pin_set(bsdl, ISC_ORDER_STATUS_FIXED_PIN, $3, $2, $1, @1, @2); if (!$$) RECOVER; }
| isc_status isc_pin_behavior isc_fixed_system_pins
    { $$ = isc_pin_set(bsdl, ISC_ORDER_STATUS_PIN_FIXED, $2, $3, $1, @1, @3); if (!$$) RECOVER; }
| isc_fixed_system_pins isc_pin_behavior isc_status
    { $$ = isc_pin_set(bsdl, ISC_ORDER_FIXED_PIN_STATUS, $2, $1, $3, @1, @1); if (!$$) RECOVER; }
| isc_fixed_system_pins isc_status isc_pin_behavior
    { $$ = isc_pin_set(bsdl, ISC_ORDER_FIXED_STATUS_PIN, $3, $1, $2, @1, @1); if (!$$) RECOVER; }
;

isc_pin_behavior:
  ATTRIBUTE_ISC_PIN_BEHAVIOR OF component_name_pin_b ':' ENTITY IS quoted_string ';'
  isc_pin_behavior_text pin_behavior_option
    { $$ = $pin_behavior_option; isc_passed(bsdl, ISC_STATEMENT_PIN_BEHAVIOR); }
;

pin_behavior_option:
  Y_HIGHZ { $$ = ISC_PIN_BEHAVIOR_HIGHZ; }
| Y_CLAMP { $$ = ISC_PIN_BEHAVIOR_CLAMP; }
;

isc_fixed_system_pins:
  ATTRIBUTE_ISC_FIXED_SYSTEM_PINS OF component_name ':' ENTITY IS quoted_string ';'
  isc_fixed_pins_text fixed_pin_list
    { $$ = $fixed_pin_list; isc_passed(bsdl, ISC_STATEMENT_FIXED_PINS); }
| ATTRIBUTE_ISC_FIXED_SYSTEM_PINS OF component_name ':' ENTITY IS error ';'
    { $$ = {}; isc_skipped(bsdl, ISC_STATEMENT_FIXED_PINS); }
;

fixed_pin_list:
  fixed_pin                    { $$ = model_list(bsdl, $1); }
| fixed_pin_list ',' fixed_pin { $$ = model_append(bsdl, $1, $3); }
;

fixed_pin: port_id;

isc_status:
  ATTRIBUTE_ISC_STATUS OF component_name ':' ENTITY IS quoted_string ';' isc_status_text
  status_option
    { $$ = $status_option; isc_passed(bsdl, ISC_STATEMENT_STATUS); }
| ATTRIBUTE_ISC_STATUS OF component_name ':' ENTITY IS error ';'
    { $$ = ISC_STATUS_NONE; isc_skipped(bsdl, ISC_STATEMENT_STATUS); }
;

status_option:
  Y_IMPLEMENTED     { $$ = ISC_STATUS_IMPLEMENTED; }
| NOT Y_IMPLEMENTED { $$ = ISC_STATUS_NOT_IMPLEMENTED; }
;

// ----------------------------------------------------------- ISC_Blank_Usercode, ISC_Security

isc_blank_usercode_description:
  ATTRIBUTE_ISC_BLANK_USERCODE OF component_name ':' ENTITY IS quoted_string ';'
  isc_blank_usercode_text blank_usercode_string
    { $$ = $blank_usercode_string; isc_passed(bsdl, ISC_STATEMENT_BLANK_USERCODE); }
| ATTRIBUTE_ISC_BLANK_USERCODE OF component_name ':' ENTITY IS error ';'
    { $$ = nullptr; isc_skipped(bsdl, ISC_STATEMENT_BLANK_USERCODE); }
;

blank_usercode_string:
  mode_bin_x blank_usercode_pattern_32bit { $$ = $2; bsdl->scan_mode = SCAN_MODE_NONE; }
;

blank_usercode_pattern_32bit: pattern_32bit;

isc_security_description:
  %empty
    { $$ = nullptr; isc_absent(bsdl, ISC_STATEMENT_SECURITY); }
| ATTRIBUTE_ISC_SECURITY OF component_name ':' ENTITY IS quoted_string ';' isc_security_text
  security_string
    { $$ = $security_string; isc_passed(bsdl, ISC_STATEMENT_SECURITY); }
| ATTRIBUTE_ISC_SECURITY OF component_name ':' ENTITY IS error ';'
    { $$ = nullptr; isc_skipped(bsdl, ISC_STATEMENT_SECURITY); }
;

security_string:
  mode_integer read_spec ',' program_spec ',' erase_spec ',' key_spec
    { $$ = isc_security_new(bsdl, $read_spec, $program_spec, $erase_spec, $key_spec); }
;

read_spec:    ISC_DISABLE_READ bit_spec    { $$ = $2; };
program_spec: ISC_DISABLE_PROGRAM bit_spec { $$ = $2; };
erase_spec:   ISC_DISABLE_ERASE bit_spec   { $$ = $2; };

key_spec:
  ISC_DISABLE_KEY '*'
    { $$ = isc_security_key(bsdl, ISC_SECURITY_ANY, ISC_SECURITY_ANY); }
| ISC_DISABLE_KEY integer[msb] '-' integer[lsb]
    { $$ = isc_security_key(bsdl, $msb, $lsb); }
;

bit_spec:
  '*' { $$ = ISC_SECURITY_ANY; }
| integer
;

// ------------------------------------------------------------------------------------- ISC_Flow

%type <list> isc_flow_description flow_definition_list opt_repeat_list repeat_list
             activity_or_loop_list activity_or_loop loop_block activity_list
             opt_update_field_list update_field_list opt_capture_field_list capture_field_list;
%type <isc_flow> flow_definition;
%type <isc_flow_descriptor> flow_descriptor;
%type <string> flow_name variable;
%type <integer> opt_unprocessed opt_exit opt_min_loop;
%type <isc_block> initialize_block repeat_block terminate_block;
%type <isc_activity> activity;
%type <isc_update_field> update_field;
%type <isc_capture_field> capture_field;
%type <isc_expression> opt_update_expression opt_data_expression data_expression
                       variable_expression variable_assignment variable_update;
%type <isc_field_data> expected_data opt_compare_mask compare_mask;
%type <integer> opt_tdo_output opt_compared_output output_operator input_specifier input_operator
                io_operator binary_operator opt_crc_ost_tag field_width repeat_count loop_count;
%type <isc_wait> wait_specification;
%type <isc_duration> duration_specification;

isc_flow_description:
  ATTRIBUTE_ISC_FLOW OF component_name ':' ENTITY IS quoted_string ';' isc_flow_text
  flow_definition_list
    { $$ = $flow_definition_list; isc_flow_statement_passed(bsdl); }
| ATTRIBUTE_ISC_FLOW OF component_name ':' ENTITY IS error ';'
    { $$ = {}; isc_flow_statement_skipped(bsdl); }
;

flow_definition_list:
  flow_definition                          { $$ = isc_flow_append(bsdl, {}, $1); }
| flow_definition_list ',' flow_definition { $$ = isc_flow_append(bsdl, $1, $3); }
;

flow_definition:
  flow_descriptor isc_flow_open initialize_block opt_repeat_list terminate_block
    { $$ = isc_flow_new(bsdl, $1, $initialize_block, $opt_repeat_list, $terminate_block); }
;

isc_flow_open: %empty { isc_flow_begins(bsdl); };

flow_descriptor:
  flow_name data_name_opt opt_unprocessed opt_exit
    { $$ = isc_flow_descriptor_new(bsdl, $1, $2, $3, $4, @1); }
;

flow_name: identifier;

data_name_opt:
  %empty            { $$ = nullptr; }
| '(' data_name ')' { $$ = $data_name; }
;

data_name:
  standard_data_name
| data_identifier
;

standard_data_name:
  ARRAY     { $$ = model_name(bsdl, "ARRAY"); }
| USERCODE  { $$ = model_name(bsdl, "USERCODE"); }
| SECURITY  { $$ = model_name(bsdl, "SECURITY"); }
| Y_IDCODE  { $$ = model_name(bsdl, "IDCODE"); }
| Y_PRELOAD { $$ = model_name(bsdl, "PRELOAD"); }
;

data_identifier: identifier { $$ = isc_data_name(bsdl, $1); };

opt_unprocessed:
  %empty      { $$ = 0; }
| UNPROCESSED { $$ = 1; }
;

opt_exit:
  %empty        { $$ = 0; }
| EXIT_ON_ERROR { $$ = 1; }
;

initialize_block:
  %empty
    { $$ = nullptr; }
| INITIALIZE activity_or_loop_list
    { $$ = isc_block_new(bsdl, ISC_BLOCK_TYPE_INITIALIZE, 1, $2, @1); }
;

opt_repeat_list:
  %empty { $$ = {}; }
| repeat_list
;

repeat_list:
  repeat_block             { $$ = model_list(bsdl, $1); }
| repeat_list repeat_block { $$ = model_append(bsdl, $1, $2); }
;

repeat_block:
  mode_integer REPEAT repeat_count mode_none activity_or_loop_list
    { $$ = isc_block_new(bsdl, ISC_BLOCK_TYPE_REPEAT, $repeat_count, $activity_or_loop_list, @2); }
;

terminate_block:
  %empty
    { $$ = nullptr; }
| TERMINATE activity_or_loop_list
    { $$ = isc_block_new(bsdl, ISC_BLOCK_TYPE_TERMINATE, 1, $2, @1); }
;

activity_or_loop_list:
  activity_or_loop
| activity_or_loop_list activity_or_loop { $$ = list_join($1, $2); }
;

activity_or_loop:
  activity { $$ = model_list(bsdl, $1); }
| loop_block
;

loop_block:
  mode_integer LOOP opt_min_loop Y_ISC_MAX loop_count mode_none '(' activity_list ')'
    { $$ = isc_loop(bsdl, $opt_min_loop, $loop_count, $activity_list, @2); }
;

opt_min_loop:
  %empty               { $$ = 0; }
| Y_ISC_MIN loop_count { $$ = $2; }
;

activity_list:
  activity               { $$ = model_list(bsdl, $1); }
| activity_list activity { $$ = model_append(bsdl, $1, $2); }
;

activity:
  '(' instruction_name mode_integer opt_update_field_list[updates] mode_real
  wait_specification[wait] mode_integer opt_capture_field_list[captures] ')'
    { $$ = isc_activity_new(bsdl, $instruction_name, $updates, $wait, $captures,
                            {@$, @updates, @captures}); }
;

opt_update_field_list:
  %empty { $$ = {}; }
| update_field_list
;

update_field_list:
  update_field                       { $$ = model_list(bsdl, $1); }
| update_field_list ',' update_field { $$ = model_append(bsdl, $1, $3); }
;

// The integer of a width is read in the mode that the text before it has left: fields end in it.
update_field:
  field_width mode_hex opt_update_expression
    { $$ = isc_update_field(bsdl, $field_width, $opt_update_expression); }
;

opt_update_expression:
  %empty              { $$ = nullptr; }
| ':' data_expression { $$ = $2; }
;

opt_capture_field_list:
  %empty { $$ = {}; }
| capture_field_list
;

capture_field_list:
  capture_field                        { $$ = model_list(bsdl, $1); }
| capture_field_list ',' capture_field { $$ = model_append(bsdl, $1, $3); }
;

capture_field:
  field_width ':' mode_hex expected_data opt_compare_mask mode_integer opt_crc_ost_tag
    { $$ = isc_capture_field(bsdl, $field_width, $expected_data, $opt_compare_mask, $opt_crc_ost_tag); }
;

expected_data:
  opt_tdo_output opt_data_expression { $$ = {.expression = $2, .output = $1}; }
;

opt_tdo_output:
  %empty { $$ = ISC_OUTPUT_NONE; }
| output_operator
;

opt_compare_mask:
  %empty { $$ = {}; }
| compare_mask
;

compare_mask:
  '*' opt_compared_output opt_data_expression { $$ = {.expression = $3, .output = $2}; }
;

opt_compared_output:
  %empty { $$ = ISC_OUTPUT_NONE; }
| output_operator
;

opt_data_expression:
  %empty { $$ = nullptr; }
| data_expression
;

data_expression:
  hex_string      { $$ = isc_literal(bsdl, $1); }
| input_specifier { $$ = isc_input(bsdl, $1); }
| variable_expression
;

variable_expression:
  variable
    { $$ = isc_variable_used(bsdl, $1, ISC_OPERATION_VARIABLE, 0); if (!$$) RECOVER; }
| variable_assignment
| variable_update
;

variable_assignment:
  variable '=' hex_string  { $$ = isc_variable_assigned(bsdl, $1, $3); }
| variable input_specifier { $$ = isc_variable_set(bsdl, $1, $2); }
;

variable_update:
  variable complement_operator
    { $$ = isc_variable_used(bsdl, $1, ISC_OPERATION_COMPLEMENT, 0); if (!$$) RECOVER; }
| variable binary_operator mode_integer integer mode_hex
    { $$ = isc_variable_used(bsdl, $1, $2, $4); if (!$$) RECOVER; }
;

variable: VARIABLE;

input_specifier:
  input_operator
| io_operator
;

binary_operator:
  '+'  { $$ = ISC_OPERATION_ADD; }
| '-'  { $$ = ISC_OPERATION_SUBTRACT; }
| SH_L { $$ = ISC_OPERATION_SHIFT_LEFT; }
| SH_R { $$ = ISC_OPERATION_SHIFT_RIGHT; }
;

complement_operator: '~';
input_operator:      '?' { $$ = ISC_OPERATION_INPUT; };
output_operator:     '!' { $$ = ISC_OUTPUT_GIVEN; };
io_operator:         IO_OP { $$ = ISC_OPERATION_IO; };

wait_specification:
  Y_ISC_WAIT duration_specification
    { $$ = isc_wait_new(bsdl, $2, nullptr); }
| Y_ISC_WAIT duration_specification Y_ISC_MIN
    { $$ = isc_wait_new(bsdl, $2, nullptr); }
| Y_ISC_WAIT duration_specification[min] Y_ISC_MIN ',' mode_real duration_specification[max] Y_ISC_MAX
    { $$ = isc_wait_new(bsdl, $min, $max); }
| error
    { $$ = isc_wait_refused(bsdl); }
;

duration_specification:
  clock_cycles          { $$ = isc_duration_new(bsdl, $1, 0); }
| time                  { $$ = isc_duration_new(bsdl, nullptr, $1); }
| clock_cycles ',' time { $$ = isc_duration_new(bsdl, $1, $3); }
| error                 { $$ = isc_duration_refused(bsdl); }
;

field_width:  integer { $$ = isc_field_width(bsdl, $1); };
repeat_count: integer { $$ = isc_repeat_count(bsdl, $1); };
loop_count:   integer { $$ = isc_loop_count(bsdl, $1); };

opt_crc_ost_tag:
  %empty                { $$ = ISC_TAG_NONE; }
| ':' bsdl_CRC          { $$ = ISC_TAG_CRC; }
| ':' OST               { $$ = ISC_TAG_OST; }
| ':' bsdl_CRC ':' OST  { $$ = ISC_TAG_CRC_OST; }
| ':' OST ':' bsdl_CRC  { $$ = isc_tags_turned(bsdl); }
;

// -------------------------------------------------------------------- ISC_Procedure, ISC_Action

isc_procedure_description:
  ATTRIBUTE_ISC_PROCEDURE OF component_name ':' ENTITY IS quoted_string ';' isc_procedure_text
  procedure_list
    { $$ = $procedure_list; isc_passed(bsdl, ISC_STATEMENT_PROCEDURE); }
| ATTRIBUTE_ISC_PROCEDURE OF component_name ':' ENTITY IS error ';'
    { $$ = {}; isc_skipped(bsdl, ISC_STATEMENT_PROCEDURE); }
;

procedure_list:
  procedure                    { $$ = model_list(bsdl, $1); }
| procedure_list ',' procedure { $$ = model_append(bsdl, $1, $3); }
;

procedure:
  procedure_name data_name_opt '=' '(' proc_flow_descriptor_list ')'
    { $$ = isc_procedure_new(bsdl, $1, $2, $proc_flow_descriptor_list, @1); }
;

proc_flow_descriptor_list:
  flow_descriptor                               { $$ = model_list(bsdl, $1); }
| proc_flow_descriptor_list ',' flow_descriptor { $$ = model_append(bsdl, $1, $3); }
;

procedure_name: identifier;

isc_action_description:
  ATTRIBUTE_ISC_ACTION OF component_name_action ':' ENTITY IS quoted_string ';' isc_action_text
  action_list
    { $$ = $action_list; isc_passed(bsdl, ISC_STATEMENT_ACTION); }
;

action_list:
  action                 { $$ = model_list(bsdl, $1); }
| action_list ',' action { $$ = model_append(bsdl, $1, $3); }
;

action:
  action_name data_name_opt exclusivity_opt '=' '(' action_specification_list ')'
    { $$ = isc_action_new(bsdl, $1, $2, $3, $action_specification_list, @1); }
;

action_name: identifier;

action_specification_list:
  action_specification                               { $$ = model_list(bsdl, $1); }
| action_specification_list ',' action_specification { $$ = model_append(bsdl, $1, $3); }
;

action_specification:
  procedure_name data_name_opt exclusivity_opt action_option
    { $$ = isc_action_spec_new(bsdl, $1, $2, $3 | $4, @1); }
;

exclusivity_opt:
  %empty      { $$ = ISC_EXCLUSIVITY_NONE; }
| PROPRIETARY { $$ = ISC_EXCLUSIVITY_PROPRIETARY; }
;

action_option:
  %empty      { $$ = 0; }
| Y_OPTIONAL  { $$ = ISC_SPEC_OPTIONAL; }
| RECOMMENDED { $$ = ISC_SPEC_RECOMMENDED; }
;

// -------------------------------------------------------- ISC_Illegal_Exit, ISC_Design_Warning

isc_illegal_exit_description:
  %empty
    { $$ = {}; isc_absent(bsdl, ISC_STATEMENT_ILLEGAL_EXIT); }
| ATTRIBUTE_ISC_ILLEGAL_EXIT OF component_name ':' ENTITY IS quoted_string ';'
  isc_illegal_exit_text exit_instruction_list
    { $$ = $exit_instruction_list; isc_passed(bsdl, ISC_STATEMENT_ILLEGAL_EXIT); }
| ATTRIBUTE_ISC_ILLEGAL_EXIT OF component_name ':' ENTITY IS error ';'
    { $$ = {}; isc_skipped(bsdl, ISC_STATEMENT_ILLEGAL_EXIT); }
;

exit_instruction_list:
  instruction_name                           { $$ = model_list(bsdl, $1); }
| exit_instruction_list ',' instruction_name { $$ = model_append(bsdl, $1, $3); }
;

// Kept as it stands, never read as tokens.
isc_design_warning:
  %empty
    { $$ = nullptr; isc_absent(bsdl, ISC_STATEMENT_DESIGN_WARNING); }
| ATTRIBUTE_ISC_DESIGN_WARNING OF component_name ':' ENTITY IS quoted_string ';'
    { $$ = isc_design_warning_passed(bsdl, @1); }
| ATTRIBUTE_ISC_DESIGN_WARNING OF component_name ':' ENTITY IS error ';'
    { $$ = nullptr; isc_skipped(bsdl, ISC_STATEMENT_DESIGN_WARNING); }
;
