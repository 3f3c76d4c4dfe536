// The one grammar of descriptions and data files. This file holds what the families share; the
// statements follow in the fragments of their families, joined in the order of a description.

%code requires {
#include "aio/aio.h"
#include "boundary/boundary.h"
#include "frame/model.h"
#include "header/header.h"
#include "isc/isc.h"
#include "ports/ports.h"
#include "prg/prg.h"
#include "registers/registers.h"
#include "scan/scanner.h"
}

%define api.pure full
%define api.prefix {bsdl_yy}
%define parse.error custom
%define parse.trace
%locations
%define api.location.type {Place}
%param { Bsdl *bsdl }
%expect 0
// No input comes near the bound on the stack, so a test lowers it.
%initial-action { yystacksize = std::min<YYPTRDIFF_T>(yystacksize, reader_state.parser_depth); }

%union {
    int32_t integer;
    double real;
    const char *string; // a name, or text in the arena
    QuotedText quoted;
    PortId *port;
    List list;
}

%code {
#include "frame/messages.h"
#include "frame/reader_state.h"
#include "scan/parse_error.h"

#include <algorithm>
#include <cstdlib>

#define YYLLOC_DEFAULT(current, rhs, n) \
    scan_place_set(bsdl, (current) = joined_place(&YYRHSLOC(rhs, 0), n))

// From the begin of the first part that has any text to the end of the last. The strings of a
// statement are read after its ';': then the part before them, an empty one, holds its end.
static inline Place joined_place(const Place *parts, long count)
{
    if (count == 0)
        return {parts[0].end, parts[0].end};
    if (count == 1)
        return parts[1];
    long first = 1;
    while (first < count && !has_text(parts[first]))
        first++;
    return {parts[first].begin, std::max(parts[count].end, parts[count - 1].end)};
}

#define YYINITDEPTH 200
#define YYMAXDEPTH reader_state.parser_depth

// A scanner failure that cannot go on ends the parse from inside the token request, since the
// recovery from an ordinary error would send messages of its own.
#define bsdl_yylex(value, place, bsdl)                                                             \
    scan_token(value, place, bsdl);                                                                 \
    if (scan_stopped(bsdl))                                                                        \
    YYABORT

// After a refusal that has been reported and counted: recovers as from a syntax error. That drops
// the look-ahead when the parser has not yet recovered from an earlier error.
#define RECOVER                                                                                    \
    do {                                                                                           \
        if (yyerrstatus == 3) {                                                                    \
            if (yychar == BSDL_YYEOF)                                                              \
                YYABORT;                                                                           \
            yychar = BSDL_YYEMPTY;                                                                 \
        }                                                                                          \
        YYERROR;                                                                                   \
    } while (0)

static void bsdl_yyerror(const Place *place, Bsdl *bsdl, const char *text);
}

// Messages list what was expected in the order of these declarations.
%token YYEOF 0 "$"
%token Y_BIDIR_IN Y_BIDIR_OUT Y_INPUT Y_OUTPUT2 Y_OUTPUT3 Y_CONTROL Y_CONTROLR Y_INTERNAL Y_CLOCK
       Y_BIDIR Y_OBSERVE_ONLY Y_CAP Y_PI Y_PO Y_UPD Y_ZERO Y_ONE Y_X Y_Z Y_WEAK0 Y_WEAK1 Y_PULL0
       Y_PULL1 Y_KEEPER
%token Y_INTEST Y_SAMPLE Y_RUNBIST Y_EXTEST Y_PRELOAD Y_HIGHZ Y_CLAMP Y_IDCODE USERCODE Y_BOUNDARY
       Y_BYPASS Y_DEVICE_ID CAPTURES
%token ENTITY IS OF END GENERIC USE ALL TO DOWNTO Y_TRUE PORT Y_IN Y_OUT BUFFER INOUT LINKAGE BIT
       BIT_VECTOR CONSTANT STRING ATTRIBUTE BODY PACKAGE POSITIVE RANGE RECORD SUBTYPE TYPE SIGNAL
       LOW BOTH PHYSICAL_PIN_MAP PIN_MAP_STRING CELL_INFO BSDL_EXTENSION BOUNDARY_CELLS
%token <integer> INTEGER
%token <real> REAL
%token <string> IDENTIFIER
%token <quoted> QUOTED_STRING
%token SKIP_QUOTED_STRING
%token <string> BIN_X_PATTERN BIN_PATTERN HEX_PATTERN VARIABLE FILE_NAME USE_IDENT PART_NAME
       DATE_STRING
%token <integer> TAPXXX JCSXX ISCXXXX
%token COL_EQ BOX QUOTE D_COLON SH_R SH_L IO_OP ';' '(' ':' ')' ',' '.' '[' ']' '*' '-' '=' '+' '~'
       '?' '!' '&'
%token Y_STD_1149_1_1990 Y_STD_1149_1_1993 Y_STD_1149_1_1994 Y_STD_1149_1_2001 Y_STD_1149
%token <string> Y_STD_1532_2001 Y_STD_1532_2002 Y_STD_PRG_2001 Y_STD_1149_6_2003
%token ATTRIBUTE_PIN_MAP ATTRIBUTE_COMPONENT_CONFORMANCE ATTRIBUTE_PORT_GROUPING
       ATTRIBUTE_TAP_SCAN_CLOCK ATTRIBUTE_TAP_SCAN_IN ATTRIBUTE_TAP_SCAN_OUT ATTRIBUTE_TAP_SCAN_MODE
       ATTRIBUTE_TAP_SCAN_RESET ATTRIBUTE_COMPLIANCE_PATTERNS ATTRIBUTE_COMPLIANCE_ENABLE
       ATTRIBUTE_INSTRUCTION_LENGTH ATTRIBUTE_INSTRUCTION_OPCODE ATTRIBUTE_INSTRUCTION_CAPTURE
       ATTRIBUTE_INSTRUCTION_SEQUENCE ATTRIBUTE_INSTRUCTION_GUARD ATTRIBUTE_INSTRUCTION_DISABLE
       ATTRIBUTE_INSTRUCTION_PRIVATE ATTRIBUTE_INSTRUCTION_USAGE ATTRIBUTE_IDCODE_REGISTER
       ATTRIBUTE_USERCODE_REGISTER ATTRIBUTE_REGISTER_ACCESS ATTRIBUTE_BOUNDARY_LENGTH
       ATTRIBUTE_BOUNDARY_REGISTER ATTRIBUTE_BOUNDARY_CELLS ATTRIBUTE_RUNBIST_EXECUTION
       ATTRIBUTE_INTEST_EXECUTION ATTRIBUTE_DESIGN_WARNING ATTRIBUTE_CORVANE_CLASS
%token DIFFERENTIAL_VOLTAGE DIFFERENTIAL_CURRENT WAIT_DURATION OBSERVING AT_PINS EXPECT_DATA
%token ATTRIBUTE_ISC_STATUS ATTRIBUTE_ISC_PIN_BEHAVIOR ATTRIBUTE_ISC_CONFORMANCE
       ATTRIBUTE_ISC_BLANK_USERCODE ATTRIBUTE_ISC_SECURITY ATTRIBUTE_ISC_FLOW
       ATTRIBUTE_ISC_PROCEDURE ATTRIBUTE_ISC_ACTION ATTRIBUTE_ISC_ILLEGAL_EXIT
       ATTRIBUTE_ISC_FIXED_SYSTEM_PINS ATTRIBUTE_ISC_DESIGN_WARNING ISC_DISABLE_READ
       ISC_DISABLE_PROGRAM ISC_DISABLE_ERASE ISC_DISABLE_KEY INITIALIZE REPEAT TERMINATE ARRAY
       SECURITY LOOP OST Y_ISC_WAIT Y_ISC_MIN Y_ISC_MAX bsdl_CRC Y_OPTIONAL EXIT_ON_ERROR
       PROPRIETARY RECOMMENDED NOT Y_IMPLEMENTED UNPROCESSED
%token ATTRIBUTE_SERIAL_CHANNELS ATTRIBUTE_PROGRAM_REFERENCE PRG_DATA ATTRIBUTE_DESIGN_REVISION
       ATTRIBUTE_FREQUENCY PROGRAM_ISC PROGRAM_SVF PROGRAM_STAPL PROGRAM_JAM
%token ATTRIBUTE_AIO_COMPONENT_CONFORMANCE ATTRIBUTE_AIO_EXTEST_PULSE_EXECUTION
       ATTRIBUTE_AIO_EXTEST_TRAIN_EXECUTION ATTRIBUTE_AIO_PIN_BEHAVIOR AIO_AC_SELECT AIO_LP_TIME
       AIO_HP_TIME AIO_ON_CHIP AIO_TRAIN AIO_MAXIMUM_TIME

%type <integer> integer s_integer subscript
%type <real> real_number
%type <string> identifier hex_string pattern pattern_32bit det_pattern instruction_name pin_id
%type <port> port_id

%start bsdl_file

%%

bsdl_file:
  bsdl_description
    { description_read(bsdl); }
| prg_data_file
    { prg_data_read(bsdl); }
;

bsdl_description:
  ENTITY component_name_decl IS
  generic_parameter
  logical_port_description
  std_use_statement
  opt_use_statements
  component_conformance
  device_pin_mappings
  grouped_port_identification
  scan_port_identification
  compliance_enable
  instruction_register
  optional_register
  register_access_description
  boundary_scan_register_description
  runbist_description
  intest_description
  bsdl_extensions_and_warning
  END component_name ';'
;

// ------------------------------------------------------------------ what the next text is read as

// Empty rules that tell the scanner how to read on. They are reduced before the next token is
// fetched wherever the state has no other action; tools/check_markers.py holds them to it.

rescan:       %empty { rescan_strings(bsdl); };
mode_none:    %empty { bsdl->scan_mode = SCAN_MODE_NONE; };
mode_integer: %empty { bsdl->scan_mode = SCAN_MODE_INTEGER; };
mode_bin_x:   %empty { bsdl->scan_mode = SCAN_MODE_BIN_X; };
mode_bin:     %empty { bsdl->scan_mode = SCAN_MODE_BIN; };
mode_hex:     %empty { bsdl->scan_mode = SCAN_MODE_HEX; };
mode_real:    %empty { bsdl->scan_mode = SCAN_MODE_REAL; };
mode_signed:  %empty { bsdl->scan_mode = SCAN_MODE_SIGNED; };

// ------------------------------------------------------------------------------ shared terminals

// The strings of an attribute are put aside, to be read as tokens after its ';'.
quoted_string:
  QUOTED_STRING                   { store_string(bsdl, $1); }
| quoted_string '&' QUOTED_STRING { store_string(bsdl, $3); }
;

skip_string:
  SKIP_QUOTED_STRING
| skip_string '&' SKIP_QUOTED_STRING
;

s_integer:  INTEGER;
integer:    INTEGER;
identifier: IDENTIFIER;

real_number:
  REAL
| INTEGER { $$ = $1; }
;

hex_string:
  HEX_PATTERN
| INTEGER { $$ = integer_text(bsdl, $1); }
;

pattern:
  BIN_X_PATTERN
| Y_X { $$ = "X"; }
;

pattern_32bit:
  BIN_X_PATTERN { $$ = pattern_of_32_bits(bsdl, $1); }
;

det_pattern: BIN_PATTERN;

pin_id:
  identifier
| integer { $$ = integer_name(bsdl, $1); }
;

port_id:
  identifier
    { $$ = port_id_whole(bsdl, $1); }
| identifier '(' mode_integer subscript ')'
    { $$ = port_id_bit(bsdl, $1, $4); bsdl->scan_mode = SCAN_MODE_NONE; }
;

subscript: integer;

instruction_name:
  Y_BYPASS   { $$ = model_name(bsdl, "BYPASS"); }
| Y_CLAMP    { $$ = model_name(bsdl, "CLAMP"); }
| Y_HIGHZ    { $$ = model_name(bsdl, "HIGHZ"); }
| Y_EXTEST   { $$ = model_name(bsdl, "EXTEST"); }
| Y_IDCODE   { $$ = model_name(bsdl, "IDCODE"); }
| Y_INTEST   { $$ = model_name(bsdl, "INTEST"); }
| Y_RUNBIST  { $$ = model_name(bsdl, "RUNBIST"); }
| Y_SAMPLE   { $$ = model_name(bsdl, "SAMPLE"); }
| USERCODE   { $$ = model_name(bsdl, "USERCODE"); }
| Y_PRELOAD  { $$ = model_name(bsdl, "PRELOAD"); }
| identifier { $$ = name_upper(&bsdl->names, $1); }
;
