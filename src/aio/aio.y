// The statements of IEEE 1149.6: conformance, execution of EXTEST_PULSE and EXTEST_TRAIN, behaviour
// of AC pins.

%union {
    AioExtest *aio_extest;
    AioPulse *aio_pulse;
    AioTrain *aio_train;
    AioPinInfo *aio_pin_info;
    AioPort *aio_port;
    AioTimeConstants *aio_time_constants;
    AioHpTime *aio_hp_time;
};

%type <integer> aio_component_conformance aio_conformance_string;
%type <aio_extest> opt_aio_extest;
%type <aio_pulse> aio_pulse aio_pulse_option aio_time_spec;
%type <aio_train> aio_train aio_train_option;
%type <real> opt_max_time;

bsdl_ext_aio_2003:
  aio_component_conformance aio_words opt_aio_extest opt_aio_pin_behavior
    { aio_data_made(bsdl, $1, $opt_aio_extest, $opt_aio_pin_behavior, @1); }
;

aio_words: %empty { aio_words_begin(bsdl); };

// The statements enter their names in the list of extensions before their strings are read. Seven
// symbols before the ';' stands the name.
aio_conformance_named:  %empty { extension_defined(bsdl, "AIO_Component_Conformance", @-7); };
aio_pulse_named:        %empty { extension_defined(bsdl, "AIO_EXTEST_Pulse_Execution", @-7); };
aio_train_named:        %empty { extension_defined(bsdl, "AIO_EXTEST_Train_Execution", @-7); };
aio_pin_behavior_named: %empty { extension_defined(bsdl, "AIO_Pin_Behavior", @-7); };

aio_component_conformance:
  ATTRIBUTE_AIO_COMPONENT_CONFORMANCE OF component_name ':' ENTITY IS quoted_string ';'
  aio_conformance_named rescan aio_conformance_string[conformance]
    { $$ = aio_conformance_passed(bsdl, $conformance); }
| ATTRIBUTE_AIO_COMPONENT_CONFORMANCE OF component_name ':' ENTITY IS error ';'
    { $$ = aio_conformance_skipped(bsdl); }
;

aio_conformance_string: Y_STD_1149_6_2003 { $$ = AIO_CONFORMANCE_1149_6_2003; };

// ------------------------------------------------------------------------------ pulse and train

opt_aio_extest:
  %empty              { $$ = nullptr; }
| aio_pulse           { $$ = aio_extest_new(bsdl, $1, nullptr); }
| aio_train           { $$ = aio_extest_new(bsdl, nullptr, $1); }
| aio_pulse aio_train { $$ = aio_extest_new(bsdl, $1, $2); }
| aio_train aio_pulse { $$ = aio_extest_new(bsdl, $2, $1); }
;

aio_pulse:
  ATTRIBUTE_AIO_EXTEST_PULSE_EXECUTION OF component_name ':' ENTITY IS quoted_string ';'
  aio_pulse_named rescan aio_pulse_option
    { $$ = aio_pulse_passed(bsdl, $aio_pulse_option, @$); }
| ATTRIBUTE_AIO_EXTEST_PULSE_EXECUTION OF component_name ':' ENTITY IS error ';'
    { $$ = aio_pulse_skipped(bsdl); }
;

aio_pulse_option: WAIT_DURATION mode_real aio_time_spec mode_none { $$ = $aio_time_spec; };

aio_time_spec:
  clock_cycles { $$ = aio_pulse_new(bsdl, $1, 0); }
| real_number  { $$ = aio_pulse_new(bsdl, nullptr, $1); }
;

aio_train:
  ATTRIBUTE_AIO_EXTEST_TRAIN_EXECUTION OF component_name ':' ENTITY IS quoted_string ';'
  aio_train_named rescan aio_train_option
    { $$ = aio_train_passed(bsdl, $aio_train_option, @$); }
| ATTRIBUTE_AIO_EXTEST_TRAIN_EXECUTION OF component_name ':' ENTITY IS error ';'
    { $$ = aio_train_skipped(bsdl); }
;

aio_train_option:
  AIO_TRAIN mode_integer integer mode_none opt_max_time
    { $$ = aio_train_new(bsdl, $integer, $opt_max_time); }
;

opt_max_time:
  %empty                                             { $$ = 0; }
| ',' AIO_MAXIMUM_TIME mode_real real_number mode_none { $$ = $real_number; }
;

// ------------------------------------------------------------------------------- pin behaviour

%type <list> opt_aio_pin_behavior ac_pin_info_list ac_port_list opt_input_cell_list input_cell_list;
%type <aio_pin_info> ac_pin_info;
%type <aio_port> ac_port;
%type <aio_time_constants> opt_select_time time_constants;
%type <integer> opt_select_cell opt_on_chip;
%type <real> opt_lp_time;
%type <aio_hp_time> opt_hp_time;

opt_aio_pin_behavior:
  %empty
    { $$ = List{}; }
| ATTRIBUTE_AIO_PIN_BEHAVIOR OF component_name ':' ENTITY IS quoted_string ';'
  aio_pin_behavior_named rescan ac_pin_info_list
    { $$ = aio_pin_behavior_passed(bsdl, $ac_pin_info_list); }
;

ac_pin_info_list:
  ac_pin_info
    { $$ = model_list(bsdl, $1); }
| ac_pin_info_list ';' ac_pin_info
    { $$ = model_append(bsdl, $1, $3); }
;

ac_pin_info:
  ac_port_list opt_select_time
    { $$ = aio_pin_info_new(bsdl, $1, $2, @1); }
;

ac_port_list:
  ac_port
    { $$ = model_list(bsdl, $1); }
| ac_port_list ',' ac_port
    { $$ = model_append(bsdl, $1, $3); }
;

ac_port:
  port_id opt_input_cell_list
    { $$ = aio_port_new(bsdl, $1, $2, @1); }
;

opt_input_cell_list:
  %empty
    { $$ = List{}; }
| '[' mode_integer input_cell_list mode_none ']'
    { $$ = $input_cell_list; }
;

input_cell_list:
  cell_number
    { $$ = aio_input_cells(bsdl, List{}, $1); }
| input_cell_list ',' cell_number
    { $$ = aio_input_cells(bsdl, $1, $3); }
;

opt_select_time:
  %empty                             { $$ = nullptr; }
| ':' opt_select_cell time_constants { $$ = aio_select_cell($3, $2, @2); }
;

opt_select_cell:
  %empty                                             { $$ = AIO_NO_SELECT_CELL; }
| AIO_AC_SELECT '=' mode_integer cell_number mode_none { $$ = $cell_number; }
;

time_constants: opt_lp_time opt_hp_time { $$ = aio_time_constants_new(bsdl, $1, @1, $2, @2); };

opt_lp_time:
  %empty                                        { $$ = 0; }
| AIO_LP_TIME '=' mode_real real_number mode_none { $$ = $real_number; }
;

opt_hp_time:
  %empty
    { $$ = nullptr; }
| AIO_HP_TIME '=' mode_real real_number mode_none opt_on_chip
    { $$ = aio_hp_time_new(bsdl, $real_number, $opt_on_chip); }
;

opt_on_chip:
  %empty      { $$ = 0; }
| AIO_ON_CHIP { $$ = 1; }
;
