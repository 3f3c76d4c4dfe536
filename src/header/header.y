%union {
    PackageName *package_name;
    PackageStandard package_standard;
    UserPackage *user_package;
    DeferredConstant *deferred_constant;
    CellDesc *cell_desc;
    CaptDesc *capt_desc;
};

// ------------------------------------------------------------------------------- names and generic

%type <string> package_string;

component_name_decl: identifier { component_declared(bsdl, $1); };
component_name:      identifier { if (!component_name_matches(bsdl, $1)) RECOVER; };

// Those that may begin the statements of a part in a PPC/PRG file.
component_name_pin_b:  identifier { if (!component_name_opens_part(bsdl, $1)) RECOVER; };
component_name_action: identifier { if (!component_name_opens_part(bsdl, $1)) RECOVER; };

generic_parameter:
  GENERIC '(' PHYSICAL_PIN_MAP ':' STRING ')' ';'
    { generic_passed(bsdl, nullptr, @3); }
| GENERIC '(' PHYSICAL_PIN_MAP ':' STRING COL_EQ quoted_string ')' ';' rescan package_string
    { generic_passed(bsdl, $package_string, @package_string); }
| GENERIC '(' PHYSICAL_PIN_MAP ':' STRING COL_EQ error ')' ';'
    { statement_skipped(bsdl, "skipping generic_parameter due to errors"); }
;

package_string: identifier;

// ------------------------------------------------------------------------------------ use statements

std_use_statement:
  USE std_vhdl_package_id '.' ALL ';' { standard_use_passed(bsdl); }
;

// The keyword set changes with the standard, so these are reduced before the next token is fetched.
std_vhdl_package_id:
  Y_STD_1149_1_1990 { standard_1149_1(bsdl, BSDL_STANDARD_BIT_1990, "STD_1149_1_1990"); }
| Y_STD_1149_1_1994 { standard_1149_1(bsdl, BSDL_STANDARD_BIT_1994, "STD_1149_1_1994"); }
| Y_STD_1149_1_2001 { standard_1149_1(bsdl, BSDL_STANDARD_BIT_2001, "STD_1149_1_2001"); }
| Y_STD_PRG_2001    { standard_prg(bsdl); }
| Y_STD_1149        { if (!standard_unknown(bsdl)) RECOVER; }
| identifier        { if (!standard_unknown(bsdl)) RECOVER; }
;

opt_use_statements:
  %empty         { statement_absent(bsdl, "\tNo use statements"); }
| use_statements { statement_passed(bsdl, "\tUse statements passed"); }
;

use_statements:
  use_stmt
| use_statements use_stmt
;

use_stmt:
  USE mode_use user_vhdl_package_id ';' { bsdl->scan_mode = SCAN_MODE_NONE; }
;

mode_use: %empty { bsdl->scan_mode = SCAN_MODE_USE; };

user_vhdl_package_id: package_searched user_package_or_not;

// The search switches the input to the package file, so it comes before the next token too.
package_searched:
  USE_IDENT         { use_package(bsdl, $1, @1); }
| Y_STD_1532_2001   { if (!use_std_1532_2001(bsdl, $1)) RECOVER; }
| Y_STD_1532_2002   { if (!use_std_1532_2002(bsdl, $1)) RECOVER; }
| Y_STD_PRG_2001    { use_std_prg_2001(bsdl, $1); }
| Y_STD_1149_6_2003 { if (!use_std_1149_6_2003(bsdl, $1)) RECOVER; }
;

user_package_or_not:
  %empty       { if (!package_absent(bsdl, @0)) RECOVER; }
| user_package
;

// -------------------------------------------------------------------------------------- package files

%type <package_name> pack_name;
%type <package_standard> pack_std_use;
%type <integer> std_pack_package_id cell_context capt_instr data_source;
%type <list> opt_def_const_list def_const_list
             opt_cell_desc_const_list cell_desc_const_list capt_desc_list;
%type <deferred_constant> def_const;
%type <user_package> package_body;
%type <cell_desc> cell_desc_const;
%type <capt_desc> capt_descriptor;

user_package:
  PACKAGE pack_name[name] IS
    { package_header_begun(bsdl, $name); }
  pack_std_use[standard] opt_ext_dec_list opt_def_const_list[constants]
  END mode_none pack_name[end] ';'
    { if (!package_header_ends(bsdl, $name, $end)) RECOVER; }
  package_body[body]
    { if (!package_read(bsdl, $name, $standard, $constants, $body, @0)) RECOVER; }
;

pack_name:
  Y_STD_1532_2001   { $$ = package_name(bsdl, $1, BSDL_STANDARD_BIT_1532_2001); }
| Y_STD_1532_2002   { $$ = package_name(bsdl, $1, BSDL_STANDARD_BIT_1532_2002); }
| Y_STD_PRG_2001    { $$ = package_name(bsdl, $1, BSDL_STANDARD_BIT_PRG_2001); }
| Y_STD_1149_6_2003 { $$ = package_name(bsdl, $1, BSDL_STANDARD_BIT_1149_6_2003); }
| identifier        { $$ = package_name(bsdl, $1, 0); }
;

pack_std_use:
  %empty                              { $$ = {}; }
| USE std_pack_package_id '.' ALL ';' { $$ = {$2, @2}; }
;

std_pack_package_id:
  Y_STD_1149_1_1990 { $$ = BSDL_STANDARD_BIT_1990; }
| Y_STD_1149_1_1994 { $$ = BSDL_STANDARD_BIT_1994; }
| Y_STD_1149_1_2001 { $$ = BSDL_STANDARD_BIT_2001; }
;

opt_ext_dec_list:
  %empty
| ext_dec_list
;

ext_dec_list:
  ext_dec
| ext_dec_list ext_dec
;

ext_dec:
  ATTRIBUTE identifier ':' BSDL_EXTENSION ';'
    { extension_declared_in_package(bsdl, $2); }
;

opt_def_const_list:
  %empty { $$ = {}; }
| def_const_list
;

def_const_list:
  def_const                { $$ = model_list(bsdl, $1); }
| def_const_list def_const { $$ = model_append(bsdl, $1, $2); }
;

def_const:
  CONSTANT identifier ':' CELL_INFO ';' { $$ = deferred_constant(bsdl, $2, @identifier); }
;

package_body:
  PACKAGE BODY pack_name[name] IS pack_std_use[standard] opt_cell_desc_const_list[cells]
  END pack_name[end] ';'
    { if (!($$ = package_body_read(bsdl, $name, $end, $standard, $cells))) RECOVER; }
;

opt_cell_desc_const_list:
  %empty { $$ = {}; }
| cell_desc_const_list
;

cell_desc_const_list:
  cell_desc_const                      { $$ = model_list(bsdl, $1); }
| cell_desc_const_list cell_desc_const { $$ = model_append(bsdl, $1, $2); }
;

cell_desc_const:
  CONSTANT identifier ':' CELL_INFO COL_EQ '(' capt_desc_list ')' ';'
    { $$ = cell_desc_new(bsdl, $2, $capt_desc_list, @identifier); }
;

capt_desc_list:
  capt_descriptor                    { $$ = model_list(bsdl, $1); }
| capt_desc_list ',' capt_descriptor { $$ = model_append(bsdl, $1, $3); }
;

capt_descriptor:
  '(' cell_context ',' capt_instr ',' data_source ')'
    { $$ = capt_desc_new(bsdl, $cell_context, $capt_instr, $data_source, @$); }
;

cell_context:
  Y_INPUT        { $$ = CELL_FUNCTION_INPUT; }
| Y_OUTPUT2      { $$ = CELL_FUNCTION_OUTPUT2; }
| Y_OUTPUT3      { $$ = CELL_FUNCTION_OUTPUT3; }
| Y_CONTROL      { $$ = CELL_FUNCTION_CONTROL; }
| Y_CONTROLR     { $$ = CELL_FUNCTION_CONTROLR; }
| Y_INTERNAL     { $$ = CELL_FUNCTION_INTERNAL; }
| Y_CLOCK        { $$ = CELL_FUNCTION_CLOCK; }
| Y_BIDIR_IN     { $$ = CELL_FUNCTION_BIDIR_IN; }
| Y_BIDIR_OUT    { $$ = CELL_FUNCTION_BIDIR_OUT; }
| Y_OBSERVE_ONLY { $$ = CELL_FUNCTION_OBSERVE_ONLY; }
;

capt_instr:
  Y_EXTEST  { $$ = CAPTURE_INSTRUCTION_EXTEST; }
| Y_SAMPLE  { $$ = CAPTURE_INSTRUCTION_SAMPLE; }
| Y_INTEST  { $$ = CAPTURE_INSTRUCTION_INTEST; }
| Y_KEEPER  { $$ = capture_keeper(bsdl); }
| Y_RUNBIST { $$ = capture_runbist(bsdl); }
;

data_source:
  Y_PI   { $$ = CAPTURE_SOURCE_PI; }
| Y_PO   { $$ = CAPTURE_SOURCE_PO; }
| Y_CAP  { $$ = CAPTURE_SOURCE_CAP; }
| Y_UPD  { $$ = CAPTURE_SOURCE_UPD; }
| Y_ZERO { $$ = CAPTURE_SOURCE_ZERO; }
| Y_ONE  { $$ = CAPTURE_SOURCE_ONE; }
| Y_X    { $$ = CAPTURE_SOURCE_X; }
;

// ------------------------------------------------------------------------------ component conformance

%type <integer> conformance_string;

component_conformance:
  %empty
    { conformance_absent(bsdl); }
| ATTRIBUTE_COMPONENT_CONFORMANCE OF component_name ':' ENTITY IS quoted_string ';' rescan
  conformance_string[conformance]
    { conformance_passed(bsdl, $conformance, @conformance); }
| ATTRIBUTE_COMPONENT_CONFORMANCE OF component_name ':' ENTITY IS error ';'
    { statement_skipped(bsdl, "skipping component_conformance due to errors"); }
;

conformance_string:
  Y_STD_1149_1_1990 { $$ = CONFORMANCE_1990; }
| Y_STD_1149_1_1993 { $$ = CONFORMANCE_1993; }
| Y_STD_1149_1_2001 { $$ = CONFORMANCE_2001; }
| error             { $$ = conformance_skipped(bsdl); }
;
