// PPC/PRG data files: a design, what its scan chains hold, the programs of its parts, and a family
// of IEEE 1532 statements for each part type.

%union {
    PrgComponentSetting *component_setting;
    PrgChannel *channel;
    PrgProgramSpec *program;
    PrgFiles files;
};

mode_file_name: %empty { bsdl->scan_mode = SCAN_MODE_FILE_NAME; };
mode_part_name: %empty { bsdl->scan_mode = SCAN_MODE_PART_NAME; };

prg_data_file:
  PRG_DATA ENTITY design_name_decl IS
  std_use_statement
  opt_use_statements
  design_revision
  frequency
  serial_channels
  program_reference
  opt_mult_bsdl_ext_1532
  prg_end
;

design_name_decl: identifier { design_declared(bsdl, $1); };
design_name:      identifier { design_named(bsdl, $1); };

prg_end: END mode_none design_name ';';

// --------------------------------------------------------------------------- revision, frequency

%type <string> revision_string;
%type <integer> frequency_string;

design_revision:
  ATTRIBUTE_DESIGN_REVISION OF design_name ':' ENTITY IS revision_string ';'
    { design_revision_passed(bsdl, $revision_string); }
| ATTRIBUTE_DESIGN_REVISION OF design_name ':' ENTITY IS error ';'
    { design_revision_skipped(bsdl); }
;

revision_string: identifier;

frequency:
  ATTRIBUTE_FREQUENCY OF design_name ':' ENTITY IS quoted_string ';' mode_integer rescan
  frequency_string
    { frequency_passed(bsdl, $frequency_string); }
;

frequency_string: integer;

// -------------------------------------------------------------------------------- scan channels

%type <list> serial_channels_string component_settings patterns;
%type <channel> channel_description;
%type <integer> channel_id;
%type <component_setting> component_setting;
%type <string> register_values part_name bsdl_part;

serial_channels:
  %empty
    { serial_channels_absent(bsdl); }
| ATTRIBUTE_SERIAL_CHANNELS OF design_name ':' ENTITY IS quoted_string ';' rescan
  serial_channels_string
    { serial_channels_passed(bsdl, $serial_channels_string); }
| ATTRIBUTE_SERIAL_CHANNELS OF design_name ':' ENTITY IS error ';'
    { serial_channels_skipped(bsdl); }
;

serial_channels_string:
  channel_description
    { $$ = model_list(bsdl, $1); }
| serial_channels_string ',' channel_description
    { $$ = model_append(bsdl, $1, $3); }
;

channel_description:
  channel_id mode_part_name component_settings
    { $$ = channel_new(bsdl, $channel_id, $component_settings, @1); }
;

channel_id: TAPXXX;

component_settings:
  %empty
    { $$ = List{}; }
| component_settings component_setting mode_part_name
    { $$ = model_append(bsdl, $1, $2); }
;

component_setting:
  part_name instruction_name register_values
    { $$ = component_setting_new(bsdl, $1, $2, $3); }
;

register_values:
  mode_bin_x '(' patterns ')' mode_none
    { $$ = register_values_join(bsdl, $patterns); }
;

patterns:
  pattern          { $$ = model_list(bsdl, $1); }
| patterns pattern { $$ = model_append(bsdl, $1, $2); }
;

// Read where the text before it has set the mode of part names.
part_name: bsdl_part mode_none;

bsdl_part:
  PART_NAME
| identifier
;

// ------------------------------------------------------------------------------------- programs

%type <list> program_reference_string;
%type <program> part_program_spec;
%type <integer> program_type;
%type <string> part_type file_name;
%type <files> data_files;

program_reference:
  mode_none ATTRIBUTE_PROGRAM_REFERENCE OF design_name ':' ENTITY IS quoted_string ';' rescan
  program_reference_string
    { program_reference_passed(bsdl, $program_reference_string); }
;

program_reference_string:
  part_program_spec
    { $$ = model_list(bsdl, $1); }
| program_reference_string part_program_spec
    { $$ = model_append(bsdl, $1, $2); }
;

part_program_spec:
  program_type mode_part_name part_name part_type mode_file_name data_files mode_none
    { $$ = program_new(bsdl, $1, $part_name, $part_type, $data_files, @part_type); }
;

program_type:
  PROGRAM_SVF   { $$ = PRG_PROGRAM_TYPE_SVF; }
| PROGRAM_STAPL { $$ = PRG_PROGRAM_TYPE_STAPL; }
| PROGRAM_JAM   { $$ = PRG_PROGRAM_TYPE_JAM; }
| JCSXX         { $$ = program_type_jcs($1); }
| ISCXXXX       { $$ = PRG_PROGRAM_TYPE_ISC; }
| PROGRAM_ISC   { $$ = PRG_PROGRAM_TYPE_ISC; }
;

part_type: identifier;

data_files:
  %empty                      { $$ = PrgFiles{nullptr, nullptr}; }
| file_name                   { $$ = PrgFiles{$1, nullptr}; }
| D_COLON file_name           { $$ = PrgFiles{nullptr, $2}; }
| file_name D_COLON file_name { $$ = PrgFiles{$1, $3}; }
;

file_name:
  FILE_NAME
| identifier
;

// ----------------------------------------------------------------------------------- part types

opt_mult_bsdl_ext_1532:
  %empty
| mult_bsdl_ext_1532
;

mult_bsdl_ext_1532:
  prg_bsdl_ext_1532
| mult_bsdl_ext_1532 prg_bsdl_ext_1532
;

prg_bsdl_ext_1532: bsdl_ext_1532 { isc_component_passed(bsdl, @1); };
