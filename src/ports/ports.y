// Ports and pins: the port clause, the pin mappings, port groups, the test access port and the
// compliance patterns. The orders of the test access port statements follow in a file of their own.

%union {
    PinSpec *pin_spec;
    PortRange range;
    PinMapEntry *pin_map;
    PortMap *port_map;
    TwinGroupEntry *twin_group_entry;
    TwinGroup *twin_group;
    ClockRecord *clock;
    ComplianceRecord *compliance;
};

// ---------------------------------------------------------------------------------- logical ports

%type <list> pin_spec_list identifier_list;
%type <pin_spec> pin_spec;
%type <range> port_dimension range;
%type <integer> pin_type range_keyword integer_1 integer_2;
%type <string> port_name;

logical_port_description:
  PORT '(' pin_spec_list ')' ';'
    { logical_ports_passed(bsdl, $pin_spec_list); }
| PORT '(' error ')' ';'
    { logical_ports_skipped(bsdl); }
;

pin_spec_list:
  pin_spec
    { $$ = model_list(bsdl, $1); }
| pin_spec_list ';' pin_spec
    { $$ = model_append(bsdl, $1, $3); }
;

pin_spec:
  mode_integer identifier_list ':' pin_type port_dimension
    { $$ = pin_spec_new(bsdl, $2, $4, $5, @2); }
;

identifier_list:
  port_name
    { $$ = model_list(bsdl, $1); }
| identifier_list ',' port_name
    { $$ = model_append(bsdl, $1, $3); }
;

pin_type:
  Y_IN    { $$ = PIN_TYPE_IN; }
| Y_OUT   { $$ = PIN_TYPE_OUT; }
| BUFFER  { $$ = PIN_TYPE_BUFFER; }
| INOUT   { $$ = PIN_TYPE_INOUT; }
| LINKAGE { $$ = PIN_TYPE_LINKAGE; }
;

port_name: identifier;

port_dimension:
  BIT
    { $$ = PortRange{0, RANGE_NONE, 0}; }
| BIT_VECTOR '(' range ')'
    { $$ = $range; }
;

range:
  integer_1 range_keyword integer_2
    { $$ = PortRange{$1, $2, $3}; }
;

range_keyword:
  TO     { $$ = RANGE_TO; }
| DOWNTO { $$ = RANGE_DOWNTO; }
;

integer_1: integer;
integer_2: integer;

// ----------------------------------------------------------------------------------- pin mappings

%type <list> pin_mappings port_map_list pin_ids;
%type <pin_map> pin_mapping;
%type <port_map> port_map pin_list;
%type <string> pin_mapping_name;

device_pin_mappings:
  pin_map_statement pin_mappings
    { bsdl->data->pin_maps = $pin_mappings.head; }
| pin_map_statement error
    { pin_maps_skipped(bsdl); }
;

pin_map_statement:
  ATTRIBUTE_PIN_MAP OF component_name ':' ENTITY IS PHYSICAL_PIN_MAP ';'
;

pin_mappings:
  pin_mapping
    { $$ = model_list(bsdl, $1); }
| pin_mappings pin_mapping
    { $$ = model_append(bsdl, $1, $2); }
;

pin_mapping:
  CONSTANT pin_mapping_name ':' PIN_MAP_STRING COL_EQ skip_string ';'
    { $$ = pin_map_passed(bsdl, $pin_mapping_name, List{}, @$); }
| CONSTANT pin_mapping_name ':' PIN_MAP_STRING COL_EQ quoted_string ';' rescan port_map_list
    { $$ = pin_map_passed(bsdl, $pin_mapping_name, $port_map_list, @$); }
| CONSTANT pin_mapping_name ':' PIN_MAP_STRING COL_EQ error ';'
    { $$ = pin_map_skipped(bsdl); }
;

pin_mapping_name: identifier;

port_map_list:
  port_map
    { $$ = model_list(bsdl, $1); }
| port_map_list ',' port_map
    { $$ = model_append(bsdl, $1, $3); }
;

port_map:
  mode_integer port_name ':' pin_list
    { $$ = port_map_named(bsdl, $port_name, $pin_list, @2.begin); }
;

pin_list:
  pin_id
    { $$ = port_map_new(bsdl, false, model_list(bsdl, $1)); }
| '(' pin_ids ')'
    { $$ = port_map_new(bsdl, true, $pin_ids); }
;

pin_ids:
  pin_id
    { $$ = model_list(bsdl, $1); }
| pin_ids ',' pin_id
    { $$ = model_append(bsdl, $1, $3); }
;

// ------------------------------------------------------------------------------------ port groups

%type <list> group_table twin_group_list;
%type <twin_group_entry> twin_group_entry;
%type <twin_group> twin_group;
%type <integer> twin_group_type;

grouped_port_identification:
  %empty
    { grouped_ports_absent(bsdl); }
| ATTRIBUTE_PORT_GROUPING OF component_name ':' ENTITY IS quoted_string ';' rescan group_table
    { grouped_ports_passed(bsdl); }
| ATTRIBUTE_PORT_GROUPING OF component_name ':' ENTITY IS error ';'
    { grouped_ports_skipped(bsdl); }
;

group_table:
  twin_group_entry
    { $$ = grouped_ports_append(bsdl, List{}, $1); }
| group_table ',' twin_group_entry
    { $$ = grouped_ports_append(bsdl, $1, $3); }
;

twin_group_entry:
  twin_group_type '(' twin_group_list ')'
    { $$ = twin_group_entry_new(bsdl, $1, $3, @$); }
;

twin_group_type:
  DIFFERENTIAL_VOLTAGE { $$ = TWIN_TYPE_VOLTAGE; }
| DIFFERENTIAL_CURRENT { $$ = TWIN_TYPE_CURRENT; }
;

twin_group_list:
  twin_group
    { $$ = model_list(bsdl, $1); }
| twin_group_list ',' twin_group
    { $$ = model_append(bsdl, $1, $3); }
;

twin_group:
  '(' port_id ',' port_id ')'
    { $$ = twin_group_new(bsdl, $2, $4, @$); }
;

// --------------------------------------------------------------------------------- compliance

%type <compliance> compliance_pattern_string;
%type <list> compliance_port_list compliance_pattern_list;

compliance_enable:
  %empty
    { compliance_absent(bsdl); }
| ATTRIBUTE_COMPLIANCE_PATTERNS OF component_name ':' ENTITY IS quoted_string ';' rescan
  compliance_pattern_string[record]
    { compliance_passed(bsdl, $record, @$); }
| ATTRIBUTE_COMPLIANCE_PATTERNS OF component_name ':' ENTITY IS error ';'
    { compliance_skipped(bsdl); }
;

compliance_pattern_string:
  '(' compliance_port_list ')' mode_bin_x '(' compliance_pattern_list ')'
    { $$ = compliance_new(bsdl, $2, $6); }
;

compliance_port_list:
  port_id
    { $$ = model_list(bsdl, $1); }
| compliance_port_list ',' port_id
    { $$ = model_append(bsdl, $1, $3); }
;

compliance_pattern_list:
  pattern
    { $$ = model_list(bsdl, $1); }
| compliance_pattern_list ',' pattern
    { $$ = model_append(bsdl, $1, $3); }
;

// ------------------------------------------------------------------------------- test access port

%type <clock> clock_record;
%type <integer> halt_state_value;

tck_stmt:
  ATTRIBUTE_TAP_SCAN_CLOCK OF port_id ':' SIGNAL IS mode_real '(' clock_record ')' ';'
    { tap_clock_passed(bsdl, $port_id, $clock_record, @$); }
;

tms_stmt:
  ATTRIBUTE_TAP_SCAN_MODE OF port_id ':' SIGNAL IS Y_TRUE ';'
    { tap_port_passed(bsdl, TAP_TMS, $port_id, @$); }
;

tdi_stmt:
  ATTRIBUTE_TAP_SCAN_IN OF port_id ':' SIGNAL IS Y_TRUE ';'
    { tap_port_passed(bsdl, TAP_TDI, $port_id, @$); }
;

tdo_stmt:
  ATTRIBUTE_TAP_SCAN_OUT OF port_id ':' SIGNAL IS Y_TRUE ';'
    { tap_port_passed(bsdl, TAP_TDO, $port_id, @$); }
;

trst_stmt:
  ATTRIBUTE_TAP_SCAN_RESET OF port_id ':' SIGNAL IS Y_TRUE ';'
    { tap_port_passed(bsdl, TAP_TRST, $port_id, @$); }
;

clock_record:
  real_number ',' halt_state_value
    { $$ = clock_record_new(bsdl, $1, $3); }
;

halt_state_value:
  LOW  { $$ = HALT_STATE_LOW; }
| BOTH { $$ = HALT_STATE_BOTH; }
;
